#include "tests/infr_libs/ZNLoader/HandMadeNetwork.h"

#include <gtest/gtest.h>

namespace {

// True for success.
bool build(HandMadeNetwork& network) {
    network.associate();
    return network.loader.buildAsPile("zn");
}

std::vector<unsigned> routingIds(const HandMadeNetwork& network) {
    std::vector<unsigned> ids;
    for (const ZNLoader::Node* node : network.loader.m_procNodes)
        ids.push_back(node->m_routingId);
    return ids;
}

// A line of processors n0, n1, ... in natural order.
void addLine(HandMadeNetwork& network, unsigned numNodes) {
    for (unsigned i = 0; i < numNodes; ++i)
        network.processor("n" + std::to_string(i));
    for (unsigned i = 1; i < numNodes; ++i)
        network.link("n" + std::to_string(i - 1), "n" + std::to_string(i));
}

// The identifiers of a line of three, by the place of the processor that they start from.
struct RootRow {
    unsigned root;
    std::vector<unsigned> ids;
};
const RootRow s_identifiersByRoot[] = {
    {0, {0, 0x8000, 0xC000}},
    {1, {0x8000, 0, 0x4000}},
    {2, {0x8000, 0x4000, 0}},
};

} // namespace

TEST(Pile, FewerThanTwoProcessorsAreNone) {
    HandMadeNetwork network;
    EXPECT_FALSE(build(network));
    network.processor("a");
    EXPECT_FALSE(build(network));
}

TEST(Pile, ALineOfThreeIsWalkedInOrder) {
    HandMadeNetwork network;
    network.processors({"b", "a", "c"});
    const ZNLoader::Zlink& ab = network.link("a", "b");
    const ZNLoader::Zlink& bc = network.link("b", "c");
    EXPECT_TRUE(build(network));
    // From b the two others differ in different bits; a and c differ from each other in b's bit for a.
    EXPECT_EQ(routingIds(network), (std::vector<unsigned>{0, 0x8000, 0x4000}));
    EXPECT_EQ(HandMadeNetwork::ids(network.loader.m_nodeOrder), "a b c");
    EXPECT_EQ(HandMadeNetwork::users(ab), "c>a a>c b>a a>b");
    EXPECT_EQ(HandMadeNetwork::users(bc), "c>b b>c c>a a>c");
}

TEST(Pile, ARingOfThreeFailsAfterItsIdentifiersWereWritten) {
    HandMadeNetwork network;
    network.processors({"a", "b", "c"});
    network.link("a", "b");
    network.link("b", "c");
    network.link("c", "a");
    EXPECT_FALSE(build(network));
    for (const ZNLoader::Node* node : network.loader.m_procNodes)
        EXPECT_TRUE(node->m_routingIdSet);
    EXPECT_EQ(routingIds(network), (std::vector<unsigned>{0, 0xC000, 0x6000}));
    EXPECT_TRUE(network.loader.m_nodeOrder.empty());
}

TEST(Pile, AStarOfFourIsNone) {
    HandMadeNetwork network;
    network.processors({"a", "b", "c", "d"});
    for (const char* id : {"b", "c", "d"})
        network.link("a", id);
    EXPECT_FALSE(build(network));
}

TEST(Pile, ALineOfSeventeenInNaturalOrderIsTheLongest) {
    for (const auto& [numNodes, isAccepted] : {std::pair(17U, true), std::pair(18U, false)}) {
        HandMadeNetwork network;
        addLine(network, numNodes);
        EXPECT_EQ(build(network), isAccepted) << numNodes;
    }
}

TEST(Pile, SodLinksAndZsscNodesEachTakeABit) {
    for (const auto& [hasSod, hasZssc, longest] :
         {std::tuple(true, false, 16U), std::tuple(false, true, 16U), std::tuple(true, true, 15U)}) {
        for (const unsigned numNodes : {longest, longest + 1}) {
            HandMadeNetwork network;
            addLine(network, numNodes);
            if (hasSod)
                network.sodLink("n0", "1", "n1");
            if (hasZssc)
                network.zssc("z");
            EXPECT_EQ(build(network), numNodes == longest) << numNodes << hasSod << hasZssc;
        }
    }
}

TEST(Pile, AProcessorThatIsNotLinkedIsNone) {
    HandMadeNetwork network;
    addLine(network, 3);
    network.processor("alone");
    EXPECT_FALSE(build(network));
}

TEST(Pile, AFixedRoutingIdStays) {
    HandMadeNetwork network;
    network.processors({"a", "b", "c"});
    network.loader.m_procNodes[1]->m_routingId = 7;
    network.loader.m_procNodes[1]->m_routingIdSet = true;
    network.link("a", "b");
    network.link("b", "c");
    EXPECT_TRUE(build(network));
    EXPECT_EQ(network.loader.m_procNodes[1]->m_routingId, 7U);
}

TEST(Pile, ParallelLinksGetTheSameUsers) {
    HandMadeNetwork network;
    addLine(network, 3);
    const ZNLoader::Zlink& parallel = network.link("n1", "n0");
    EXPECT_TRUE(build(network));
    EXPECT_EQ(HandMadeNetwork::users(parallel), HandMadeNetwork::users(*network.loader.m_links[0]));
    EXPECT_EQ(HandMadeNetwork::users(parallel), "n2>n0 n0>n2 n1>n0 n0>n1");
}

TEST(Pile, IdentifiersStartFromTheProcessorThatBootsFromItsFlash) {
    // It keeps zeros in every bit, whatever the scan chain begins with.
    for (const auto& [root, ids] : s_identifiersByRoot) {
        HandMadeNetwork network;
        addLine(network, 3);
        network.loader.m_jtagNodes = {network.loader.m_procNodes[root == 0 ? 1 : 0]};
        for (unsigned i = 0; i < 3; ++i) {
            ZNLoader::Node* node = network.loader.m_procNodes[i];
            if (i == root)
                node->m_boot = new ZNLoader::BootTypeSPIMaster;
            else
                node->m_boot = new ZNLoader::BootTypeFromLink;
        }
        EXPECT_TRUE(build(network));
        EXPECT_EQ(routingIds(network), ids) << root;
    }
}

TEST(Pile, OfSeveralThatBootFromTheirFlashTheFirstProcessorCounts) {
    HandMadeNetwork network;
    addLine(network, 3);
    for (const unsigned i : {2, 1})
        network.loader.m_procNodes[i]->m_boot = new ZNLoader::BootTypeSPIMaster;
    EXPECT_TRUE(build(network));
    EXPECT_EQ(routingIds(network), s_identifiersByRoot[1].ids);
}

TEST(Pile, IdentifiersStartFromTheFirstOfTheChainWhereNoneBootsFromItsFlash) {
    for (const auto& [root, ids] : s_identifiersByRoot) {
        HandMadeNetwork network;
        addLine(network, 3);
        for (const unsigned offset : {0, 1, 2})
            network.loader.m_jtagNodes.push_back(network.loader.m_procNodes[(root + offset) % 3]);
        EXPECT_TRUE(build(network));
        EXPECT_EQ(routingIds(network), ids) << root;
    }
}

TEST(Pile, IdentifiersStartFromTheFirstProcessorWhereTheChainBeginsWithADevice) {
    HandMadeNetwork network;
    addLine(network, 3);
    network.loader.m_jtagNodes = {&network.device("x"), network.loader.m_procNodes[2]};
    EXPECT_TRUE(build(network));
    EXPECT_EQ(routingIds(network), s_identifiersByRoot[0].ids);
}

TEST(Pile, ALineBesideRingsIsCoveredAlone) {
    HandMadeNetwork network;
    addLine(network, 2);
    network.processors({"a", "b", "c"});
    network.link("a", "b");
    network.link("b", "c");
    network.link("c", "a");
    EXPECT_TRUE(build(network));
    EXPECT_EQ(HandMadeNetwork::ids(network.loader.m_nodeOrder), "n0 n1");
    EXPECT_EQ(HandMadeNetwork::users(*network.loader.m_links[0]), "n1>n0 n0>n1");
    EXPECT_EQ(HandMadeNetwork::users(*network.loader.m_links[1]), "");
}

TEST(Pile, ProcessorsLinkedToThemselvesEndTheWalkAtOnce) {
    HandMadeNetwork network;
    network.processors({"a", "b", "x", "y", "z"});
    network.link("a", "a");
    network.link("b", "b");
    network.link("x", "y");
    network.link("y", "z");
    network.link("z", "x");
    EXPECT_TRUE(build(network));
    EXPECT_EQ(HandMadeNetwork::ids(network.loader.m_nodeOrder), "a");
}

TEST(Pile, ADeviceBetweenProcessorsMakesNone) {
    HandMadeNetwork network;
    network.processors({"a", "b", "c"});
    network.device("x");
    network.link("a", "x");
    network.link("x", "b");
    network.link("b", "c");
    EXPECT_FALSE(build(network));
    EXPECT_TRUE(network.loader.m_nodeOrder.empty());
    for (const ZNLoader::Zlink* link : network.loader.m_links)
        EXPECT_EQ(HandMadeNetwork::users(*link), "");
}

TEST(Pile, ADeviceAtTheEndOfALineMakesNone) {
    HandMadeNetwork network;
    addLine(network, 3);
    network.device("x");
    network.link("n2", "x");
    EXPECT_FALSE(build(network));
}

TEST(Pile, ADeviceInALineBesideRingsMakesNone) {
    // The number of ends alone doesn't give it away.
    HandMadeNetwork network;
    network.processors({"a", "b", "n0", "n1", "n2"});
    network.device("x");
    network.link("a", "x");
    network.link("x", "b");
    network.link("n0", "n1");
    network.link("n1", "n2");
    network.link("n2", "n0");
    EXPECT_FALSE(build(network));
}

// ---- First hops ----

TEST(ShortestRoute, OfTwoWaysTheOneWhoseSortedIdsComeFirstIsTaken) {
    HandMadeNetwork network;
    network.processors({"s", "m", "z", "a", "b", "t"});
    network.link("s", "m");
    network.link("m", "b");
    network.link("b", "t");
    network.link("s", "z"); // b m t against a t z: the second
    network.link("z", "a");
    network.link("a", "t");
    network.associate();
    EXPECT_EQ(network.loader.findShortestRouteRoot("s", "t"), "z");
}

TEST(ShortestRoute, AShorterWayIsTakenWhateverItsIds) {
    HandMadeNetwork network;
    network.processors({"s", "a", "b", "z", "t"});
    network.link("s", "a");
    network.link("a", "b");
    network.link("b", "t");
    network.link("s", "z");
    network.link("z", "t");
    network.associate();
    EXPECT_EQ(network.loader.findShortestRouteRoot("s", "t"), "z");
}

TEST(ShortestRoute, WaysLeadThroughDevices) {
    HandMadeNetwork network;
    network.processors({"s", "t"});
    network.device("x");
    network.link("s", "x");
    network.link("x", "t");
    network.associate();
    EXPECT_EQ(network.loader.findShortestRouteRoot("s", "t"), "x");
}

TEST(ShortestRoute, WhatCantBeReachedOrIsUnknownHasNoFirstHop) {
    HandMadeNetwork network;
    network.processors({"s", "t"});
    network.associate();
    EXPECT_EQ(network.loader.findShortestRouteRoot("s", "t"), "");
    EXPECT_EQ(network.loader.findShortestRouteRoot("s", "nobody"), "");
    EXPECT_EQ(network.loader.findShortestRouteRoot("s", "s"), "");
}

#include "tests/infr_libs/ZNLoader/HandMadeNetwork.h"

#include <gtest/gtest.h>

namespace {

// What `buildPositions` throws; empty when it doesn't.
std::string errorOf(HandMadeNetwork& network) {
    try {
        network.associate();
        network.loader.buildPositions("zn");
    } catch (const std::string& error) {
        return error;
    }
    return {};
}

// True for success.
bool build(HandMadeNetwork& network) {
    network.associate();
    return !network.loader.buildPositions("zn");
}

std::vector<unsigned> routingIds(const HandMadeNetwork& network) {
    std::vector<unsigned> ids;
    for (const ZNLoader::Node* node : network.loader.m_procNodes)
        ids.push_back(node->m_routingId);
    return ids;
}

// 2^d processors n0, n1, ... and the links of a hypercube over their numbers in Gray code: neighbours in the
// list are neighbours in the network, as the walk wants them.
void addHypercube(HandMadeNetwork& network, unsigned numDimensions) {
    const unsigned numNodes = 1U << numDimensions;
    std::vector<std::string> idAt(numNodes);
    for (unsigned i = 0; i < numNodes; ++i) {
        network.processor("n" + std::to_string(i));
        idAt[i ^ i >> 1] = "n" + std::to_string(i);
    }
    for (unsigned position = 0; position < numNodes; ++position) {
        for (unsigned bit = 0; bit < numDimensions; ++bit) {
            if ((position >> bit & 1) == 0)
                network.link(idAt[position], idAt[position | 1U << bit]);
        }
    }
}

} // namespace

TEST(Hypercube, OneProcessorWithoutLinksIsOneOfNoDimension) {
    HandMadeNetwork network;
    network.processor("a");
    EXPECT_TRUE(build(network));
    EXPECT_EQ(network.loader.m_topology, 1);
    EXPECT_EQ(routingIds(network), std::vector<unsigned>{0});
    EXPECT_TRUE(network.loader.m_procNodes[0]->m_routingIdSet);
    EXPECT_EQ(HandMadeNetwork::ids(network.loader.m_nodeOrder), "a");
    EXPECT_EQ(network.loader.m_positions, (std::map<std::string, ZNLoader::Position>{{"a", {}}}));
}

TEST(Hypercube, TwoProcessorsDifferInTheTopBitOfSixteen) {
    HandMadeNetwork network;
    network.processors({"a", "b"});
    const ZNLoader::Zlink& link = network.link("a", "b");
    EXPECT_TRUE(build(network));
    EXPECT_EQ(routingIds(network), (std::vector<unsigned>{0, 0x8000}));
    EXPECT_EQ(HandMadeNetwork::users(link), "a>b b>a");
    EXPECT_EQ(HandMadeNetwork::ids(network.loader.m_nodeOrder), "a b");
}

TEST(Hypercube, TwoProcessorsDifferInTheTopBitOfEightOnTheNarrowArchitecture) {
    HandMadeNetwork network;
    network.loader.m_switchArch = ZNLoader::SwitchArchG4;
    network.processors({"a", "b"});
    network.link("a", "b");
    EXPECT_TRUE(build(network));
    EXPECT_EQ(routingIds(network), (std::vector<unsigned>{0, 0x80}));
}

TEST(Hypercube, SodLinksTakeABitOfTheIdentifier) {
    HandMadeNetwork network;
    network.processors({"a", "b"});
    network.link("a", "b");
    const ZNLoader::Zlink& sod = network.sodLink("a", "1", "b");
    EXPECT_TRUE(build(network));
    EXPECT_EQ(routingIds(network), (std::vector<unsigned>{0, 0x4000}));
    EXPECT_EQ(HandMadeNetwork::users(sod), "b>a a>b");
}

TEST(Hypercube, SodLinksTakeNoBitOnTheNarrowArchitecture) {
    HandMadeNetwork network;
    network.loader.m_switchArch = ZNLoader::SwitchArchG4;
    network.processors({"a", "b"});
    network.link("a", "b");
    network.sodLink("a", "1", "b");
    EXPECT_TRUE(build(network));
    EXPECT_EQ(routingIds(network), (std::vector<unsigned>{0, 0x80}));
}

TEST(Hypercube, ASodLinkToNoNodeIsUsedByANullNode) {
    HandMadeNetwork network;
    network.processor("a");
    const ZNLoader::Zlink& sod = network.sodLink("a", "1", "");
    EXPECT_TRUE(build(network));
    EXPECT_EQ(HandMadeNetwork::users(sod), "null>a a>null");
}

TEST(Hypercube, ARingOfFourHasTwoDimensions) {
    HandMadeNetwork network;
    network.processors({"a", "b", "c", "d"});
    const ZNLoader::Zlink& ab = network.link("a", "b");
    const ZNLoader::Zlink& bc = network.link("b", "c");
    network.link("c", "d");
    network.link("d", "a");
    EXPECT_TRUE(build(network));
    // The walk finds a, b, then d and c opposite them.
    EXPECT_EQ(routingIds(network), (std::vector<unsigned>{0, 0x4000, 0xC000, 0x8000}));
    EXPECT_EQ(network.loader.m_positions["c"], (ZNLoader::Position{1, 1}));
    EXPECT_EQ(network.loader.m_positionNames[(ZNLoader::Position{1, 0})], "d");
    EXPECT_EQ(HandMadeNetwork::ids(network.loader.m_nodeOrder), "a d c b");
    // The most significant digit is changed first: between a and b go those to or from d's half last.
    EXPECT_EQ(HandMadeNetwork::users(ab), "a>b b>a c>a d>b");
    EXPECT_EQ(HandMadeNetwork::users(bc), "b>c b>d c>a c>b");
}

TEST(Hypercube, ParallelLinksCountOnceAndGetTheSameUsers) {
    HandMadeNetwork network;
    network.processors({"a", "b"});
    const ZNLoader::Zlink& first = network.link("a", "b");
    const ZNLoader::Zlink& second = network.link("b", "a");
    EXPECT_TRUE(build(network));
    EXPECT_EQ(HandMadeNetwork::users(first), "a>b b>a");
    EXPECT_EQ(HandMadeNetwork::users(second), "a>b b>a");
}

TEST(Hypercube, AFixedRoutingIdStaysAndOthersAreNotAdjusted) {
    HandMadeNetwork network;
    network.processors({"a", "b"});
    network.loader.m_procNodes[0]->m_routingId = 0x8000;
    network.loader.m_procNodes[0]->m_routingIdSet = true;
    network.link("a", "b");
    EXPECT_TRUE(build(network));
    EXPECT_EQ(routingIds(network), (std::vector<unsigned>{0x8000, 0x8000}));
}

TEST(Hypercube, EightNodesOfThreeLinksFitTheNarrowArchitecture) {
    HandMadeNetwork network;
    network.loader.m_switchArch = ZNLoader::SwitchArchG4;
    addHypercube(network, 3);
    EXPECT_TRUE(build(network));
    std::vector<unsigned> ids = routingIds(network);
    std::sort(ids.begin(), ids.end());
    EXPECT_EQ(ids, (std::vector<unsigned>{0, 0x20, 0x40, 0x60, 0x80, 0xA0, 0xC0, 0xE0}));
}

TEST(Hypercube, NineDimensionsDontFitTheNarrowArchitecture) {
    HandMadeNetwork network;
    network.loader.m_switchArch = ZNLoader::SwitchArchG4;
    addHypercube(network, 9);
    EXPECT_EQ(errorOf(network), "Error: ZN11063 Node ID is insufficiently wide (8; need 9).\n");
}

TEST(Hypercube, AZsscNodeLeavesNoRoomForAFullWidth) {
    HandMadeNetwork network;
    network.loader.m_switchArch = ZNLoader::SwitchArchG4;
    addHypercube(network, 8);
    network.zssc("z");
    EXPECT_EQ(errorOf(network), "Error: ZN11063 Node ID is insufficiently wide (8; need 8).\n");
}

TEST(Hypercube, AsManyDimensionsAsBitsFitWithoutAZsscNode) {
    HandMadeNetwork network;
    network.loader.m_switchArch = ZNLoader::SwitchArchG4;
    addHypercube(network, 8);
    EXPECT_TRUE(build(network));
}

TEST(Hypercube, UsersOfALinkAreAsManyAsThereAreNodes) {
    HandMadeNetwork network;
    addHypercube(network, 6);
    EXPECT_TRUE(build(network));
    for (const ZNLoader::Zlink* link : network.loader.m_normalLinks)
        EXPECT_EQ(link->m_users.size(), 64U);
    EXPECT_EQ(network.loader.m_nodeOrder.size(), 64U);
}

TEST(Hypercube, TheWalkRefusesTheNaturalOrderFrom128NodesOn) {
    // The first node that qualifies leads it astray. It never goes back: wanted.
    for (const auto& [numDimensions, isAccepted] : {std::pair(6U, true), std::pair(7U, false)}) {
        HandMadeNetwork network;
        for (unsigned i = 0; i < 1U << numDimensions; ++i)
            network.processor("n" + std::to_string(i));
        for (unsigned i = 0; i < 1U << numDimensions; ++i) {
            for (unsigned bit = 0; bit < numDimensions; ++bit) {
                if ((i >> bit & 1) == 0)
                    network.link("n" + std::to_string(i), "n" + std::to_string(i | 1U << bit));
            }
        }
        EXPECT_EQ(errorOf(network),
                  isAccepted ? "" : "zn: Error: ZN11050 Internal error building network.\n");
    }
}

TEST(Hypercube, ARegularGraphThatIsNoneIsAnErrorEvenWhereAPileWouldBeAllowed) {
    // Two pairs of nodes that are also linked to themselves: as many nodes and neighbours as in a ring of
    // four, but no way from one pair to the other.
    HandMadeNetwork network;
    network.processors({"a", "b", "c", "d"});
    network.link("a", "b");
    network.link("c", "d");
    network.link("a", "a");
    network.link("b", "b");
    network.link("c", "c");
    network.link("d", "d");
    EXPECT_EQ(errorOf(network), "zn: Error: ZN11050 Internal error building network.\n");
}

TEST(Hypercube, ADeviceInAProcessorsPlaceIsAnError) {
    HandMadeNetwork network;
    network.processors({"a", "b"});
    network.device("x");
    network.device("y");
    network.link("a", "x");
    network.link("b", "y");
    EXPECT_EQ(errorOf(network), "zn: Error: ZN11050 Internal error building network.\n");
}

TEST(Hypercube, DifferingDegreesAreNone) {
    HandMadeNetwork network;
    network.loader.m_switchArch = ZNLoader::SwitchArchG4; // no pile
    network.processors({"a", "b", "c", "d"});
    network.link("a", "b");
    network.link("b", "c");
    network.link("c", "d");
    EXPECT_FALSE(build(network));
    EXPECT_EQ(network.loader.m_topology, 1);
}

TEST(Hypercube, NoProcessorsAreNone) {
    HandMadeNetwork network;
    EXPECT_FALSE(build(network));
    EXPECT_EQ(network.loader.m_topology, 2);
}

// ---- Devices beside a hypercube ----

TEST(DeviceRoutes, TwoDevicesLinkedToEachOtherUseTheirLinkOnceForEachPair) {
    HandMadeNetwork network;
    network.processor("a");
    network.device("x");
    network.device("y");
    const ZNLoader::Zlink& link = network.link("x", "y");
    EXPECT_TRUE(build(network));
    EXPECT_EQ(HandMadeNetwork::users(link), "y>x x>a x>y y>a");
}

TEST(DeviceRoutes, ADeviceWithoutANormalLinkIsPassedOver) {
    HandMadeNetwork network;
    network.processors({"a", "b"});
    network.device("x");
    const ZNLoader::Zlink& link = network.link("a", "b");
    EXPECT_TRUE(build(network));
    EXPECT_EQ(HandMadeNetwork::users(link), "a>b b>a");
}

TEST(DeviceRoutes, ADeviceSharesTheRoutesOfTheProcessorItIsLinkedTo) {
    HandMadeNetwork network;
    network.processors({"a", "b"});
    network.device("x");
    ZNLoader::Zlink& ab = network.link("a", "b");
    const ZNLoader::Zlink& ax = network.link("a", "x");
    network.associate();
    ab.m_users = {{network.loader.m_nodes[0], network.loader.m_nodes[1]},
                  {network.loader.m_nodes[1], network.loader.m_nodes[0]}};
    network.loader.addDeviceRouteInfo();
    EXPECT_EQ(HandMadeNetwork::users(ab), "a>b b>a x>b b>x");
    EXPECT_EQ(HandMadeNetwork::users(ax), "a>x x>a x>b");
}

// ---- ZSSC nodes ----

namespace {

std::string zsscErrorOf(HandMadeNetwork& network) {
    network.associate();
    try {
        network.loader.assignRoutingIdsForZssc("zn");
    } catch (const std::string& error) {
        return error;
    }
    return {};
}

} // namespace

TEST(ZsscRouting, TheNodeTakesItsProcessorsIdentifierWithBitZeroSet) {
    HandMadeNetwork network;
    network.processor("a").m_routingId = 0x4000;
    const ZNLoader::ZsscNode& zssc = network.zssc("z");
    network.link("z", "a");
    EXPECT_EQ(zsscErrorOf(network), "");
    EXPECT_EQ(zssc.m_routingId, 0x4001U);
}

TEST(ZsscRouting, ANodeWithoutALinkIsAnError) {
    HandMadeNetwork network;
    network.processor("a");
    network.zssc("z");
    EXPECT_EQ(zsscErrorOf(network), "zn: Error: ZN11168 ZSSC node \"z\" is not connected to any zcore.\n");
}

TEST(ZsscRouting, ANodeThatOnlyOthersLinksLeaveOutIsAnError) {
    HandMadeNetwork network;
    network.processor("a");
    network.zssc("y");
    network.zssc("z");
    network.link("y", "a");
    EXPECT_EQ(zsscErrorOf(network), "zn: Error: ZN11168 ZSSC node \"z\" is not connected to any zcore.\n");
}

TEST(ZsscRouting, ASecondLinkIsAnError) {
    HandMadeNetwork network;
    network.processors({"a", "b"});
    network.zssc("z");
    network.link("z", "a");
    network.link("b", "z");
    EXPECT_EQ(zsscErrorOf(network),
              "zn: Error: ZN11167 ZSSC node \"z\" is connected to more than one zcore.\n");
}

TEST(ZsscRouting, OnlyANodeOnTheFirstOfAllLinksPasses) {
    // The place in the list is what counts, so a second node with a single link is refused: wanted.
    HandMadeNetwork network;
    network.processors({"a", "b"});
    network.zssc("y");
    network.zssc("z");
    network.link("y", "a");
    network.link("z", "b");
    EXPECT_EQ(zsscErrorOf(network),
              "zn: Error: ZN11167 ZSSC node \"z\" is connected to more than one zcore.\n");
}

TEST(ZsscRouting, NothingHappensWithoutAZsscNode) {
    HandMadeNetwork network;
    network.processors({"a", "b"});
    network.link("a", "b");
    EXPECT_EQ(zsscErrorOf(network), "");
}

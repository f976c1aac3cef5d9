// The loader's routing against the plain one, on random networks: small, with device nodes, parallel links,
// links from a node to itself, repeated link ends, shuffled order. Every result must be the same.

#include "tests/infr_libs/ZNLoader/HandMadeNetwork.h"
#include "tests/infr_libs/ZNLoader/PlainTopology.h"

#include <algorithm>
#include <bit>
#include <gtest/gtest.h>
#include <map>
#include <random>
#include <sstream>

namespace {

using Random = std::mt19937;

unsigned below(Random& random, unsigned bound) {
    return static_cast<unsigned>(random() % bound);
}

// A network as it would be read: everything that the passes look at, in an order that can be made twice.
struct Drawing {
    struct Link {
        unsigned node0, node1;
        unsigned link0, link1;
        bool isSod;
    };
    std::vector<std::string> ids; // processors first
    unsigned numProcessors = 0;
    unsigned numDevices = 0;
    unsigned numZssc = 0;
    std::vector<unsigned> order; // in which the nodes are made
    std::vector<Link> links;
    std::vector<int> fixedIds; // a processor's routing id, or -1
    std::vector<int> bootStyles;
    int firstOfChain = -1;
    unsigned numLinkNumbers = 1'000'000; // few: ends are likely to repeat
    ZNLoader::SwitchArch arch = ZNLoader::SwitchArchL1;
};

enum class Shape { Any, Line, Ring, Cube, Complete };

void join(Drawing& drawing, unsigned a, unsigned b, Random& random) {
    const auto number = [&] { return below(random, drawing.numLinkNumbers); };
    drawing.links.push_back({a, b, number(), number(), false});
}

Drawing draw(Random& random) {
    Drawing drawing;
    if (below(random, 6) == 0)
        drawing.numLinkNumbers = 30;
    const auto shape = static_cast<Shape>(below(random, 5));
    drawing.numProcessors = shape == Shape::Cube ? 1U << below(random, 4) : below(random, 8);
    drawing.numDevices = below(random, 3) == 0 ? below(random, 3) : 0;
    drawing.numZssc = below(random, 6) == 0 ? 1 : 0;
    const unsigned numNodes = drawing.numProcessors + drawing.numDevices;

    // Ids whose order as texts isn't their order as numbers.
    for (unsigned i = 0; i < numNodes + drawing.numZssc; ++i)
        drawing.ids.push_back(std::string(1, static_cast<char>('a' + below(random, 26))) + std::to_string(i));
    for (unsigned i = 0; i < drawing.ids.size(); ++i)
        drawing.order.push_back(i);
    std::shuffle(drawing.order.begin(), drawing.order.end(), random);

    std::vector<unsigned> places(numNodes);
    for (unsigned i = 0; i < numNodes; ++i)
        places[i] = i;
    if (below(random, 2) == 0)
        std::shuffle(places.begin(), places.end(), random);
    const unsigned numPlaces = below(random, 3) == 0 ? numNodes : drawing.numProcessors;
    for (unsigned i = 0; i < numPlaces; ++i) {
        if ((shape == Shape::Line || shape == Shape::Ring) && i + 1 < numPlaces)
            join(drawing, places[i], places[i + 1], random);
        if (shape == Shape::Ring && i + 1 == numPlaces && i > 0)
            join(drawing, places[i], places[0], random);
        for (unsigned j = i + 1; j < numPlaces; ++j) {
            if (shape == Shape::Complete || (shape == Shape::Cube && std::has_single_bit(i ^ j)))
                join(drawing, places[i], places[j], random);
        }
    }
    const unsigned numExtra = shape == Shape::Any     ? below(random, 9)
                              : below(random, 3) == 0 ? below(random, 3)
                                                      : 0;
    for (unsigned i = 0; i < numExtra && numNodes > 0; ++i)
        join(drawing, below(random, numNodes), below(random, numNodes), random);
    if (!drawing.links.empty() && below(random, 4) == 0) // in parallel
        join(drawing, drawing.links[0].node0, drawing.links[0].node1, random);
    for (Drawing::Link& link : drawing.links) {
        if (below(random, 3) == 0) {
            std::swap(link.node0, link.node1);
            std::swap(link.link0, link.link1);
        }
    }
    if (below(random, 2) == 0)
        std::shuffle(drawing.links.begin(), drawing.links.end(), random);
    if (numNodes > 0 && below(random, 5) == 0)
        drawing.links.push_back({below(random, numNodes), below(random, numNodes), 5000, 0, true});
    for (unsigned i = 0; i < drawing.numZssc && drawing.numProcessors > 0; ++i)
        drawing.links.push_back({numNodes + i, below(random, drawing.numProcessors), 6000, 6001, false});

    for (unsigned i = 0; i < drawing.numProcessors; ++i) {
        drawing.fixedIds.push_back(below(random, 6) == 0 ? static_cast<int>(below(random, 0x10000)) : -1);
        drawing.bootStyles.push_back(static_cast<int>(below(random, 3)));
    }
    if (drawing.numProcessors > 0 && below(random, 2) == 0)
        drawing.firstOfChain = static_cast<int>(below(random, drawing.numProcessors));
    drawing.arch = static_cast<ZNLoader::SwitchArch>(below(random, 8) == 0 ? 1 : 2);
    return drawing;
}

void make(const Drawing& drawing, HandMadeNetwork& network) {
    ZNLoader& loader = network.loader;
    for (const unsigned i : drawing.order) {
        const std::string& id = drawing.ids[i];
        if (i >= drawing.numProcessors + drawing.numDevices) {
            network.zssc(id);
        } else if (i >= drawing.numProcessors) {
            network.device(id);
        } else {
            ZNLoader::ProcNode& processor = network.processor(id);
            processor.m_routingIdSet = drawing.fixedIds[i] >= 0;
            processor.m_routingId = processor.m_routingIdSet ? static_cast<unsigned>(drawing.fixedIds[i]) : 0;
            if (drawing.bootStyles[i] == 1)
                processor.m_boot = new ZNLoader::BootTypeSPIMaster;
            if (drawing.bootStyles[i] == 2)
                processor.m_boot = new ZNLoader::BootTypeFromLink;
        }
    }
    if (drawing.firstOfChain >= 0)
        loader.m_jtagNodes.push_back(
            loader.findNodeForId(drawing.ids[static_cast<unsigned>(drawing.firstOfChain)]));
    for (const Drawing::Link& link : drawing.links) {
        if (link.isSod)
            network.sodLink(drawing.ids[link.node0], std::to_string(link.link0), drawing.ids[link.node1]);
        else
            network.link(drawing.ids[link.node0], std::to_string(link.link0), drawing.ids[link.node1],
                         std::to_string(link.link1));
    }
    loader.m_switchArch = drawing.arch;
    network.associate();
}

// The bare texts of an error: every line without "zn:12 Error: ZN11164 " or "zn: Error: ZN11050 ".
std::string withoutPlaces(const std::string& error) {
    std::istringstream lines(error);
    std::string text;
    for (std::string line; std::getline(lines, line);) {
        const std::size_t mark = line.find("Error: ZN");
        text += (mark == std::string::npos ? line : line.substr(mark + 15)) + "\n";
    }
    return text;
}

template<typename Passes>
std::string verdictOf(HandMadeNetwork& network, const Passes& passes) {
    std::string verdict;
    try {
        verdict = passes() ? "refused\n" : "accepted\n";
    } catch (const std::string& error) {
        return "error: " + withoutPlaces(error); // what the model holds then is not looked at
    }
    const ZNLoader& loader = network.loader;
    verdict += "topology " + std::to_string(loader.m_topology) + "\n";
    for (const ZNLoader::Node* node : loader.m_nodes)
        verdict +=
            node->m_id + " " + std::to_string(node->m_routingId) + (node->m_routingIdSet ? "!" : "") + "\n";
    verdict += "order " + HandMadeNetwork::ids(loader.m_nodeOrder) + "\n";
    for (const auto& [id, position] : loader.m_positions) {
        verdict += "position " + id + " ";
        for (const unsigned digit : position)
            verdict += std::to_string(digit);
        verdict += "\n";
    }
    for (const ZNLoader::Zlink* link : loader.m_links)
        verdict += "users " + HandMadeNetwork::users(*link) + "\n";
    return verdict;
}

} // namespace

TEST(PlainComparison, RandomNetworksHaveTheSameResultsAsThePlainProcedure) {
    Random random(20);
    std::map<std::string, unsigned>
        outcomes; // the first words of the verdicts, to see that all kinds are met
    for (unsigned i = 0; i < 8000; ++i) {
        const Drawing drawing = draw(random);
        HandMadeNetwork network;
        HandMadeNetwork plainNetwork;
        make(drawing, network);
        make(drawing, plainNetwork);

        const std::string verdict = verdictOf(
            network, [&] { return network.loader.checkLinkDups() || network.loader.buildPositions("zn"); });
        const std::string plainVerdict = verdictOf(plainNetwork, [&] {
            PlainTopology plain(plainNetwork.loader);
            plain.checkLinkDups();
            return plain.buildPositions();
        });
        ASSERT_EQ(verdict, plainVerdict) << "network " << i;
        const std::size_t topology = verdict.find("topology");
        ++outcomes[topology == std::string::npos ? verdict.substr(0, verdict.find_first_of("\"\n"))
                                                 : verdict.substr(0, topology + 10)];
    }
    for (const char* outcome : {"accepted\ntopology 1", "accepted\ntopology 2", "refused\ntopology 1",
                                "refused\ntopology 2", "error: LinkEndpoint", "error: Internal error bui"}) {
        const auto met =
            std::ranges::find_if(outcomes, [&](const auto& o) { return o.first.starts_with(outcome); });
        EXPECT_TRUE(met != outcomes.end() && met->second > 20) << outcome;
    }
}

TEST(PlainComparison, FirstHopsAreTheSameAsThoseOfTryingEveryWay) {
    Random random(21);
    for (unsigned i = 0; i < 2000; ++i) {
        const Drawing drawing = draw(random);
        HandMadeNetwork network;
        make(drawing, network);
        PlainTopology plain(network.loader);
        for (const ZNLoader::Node* from : network.loader.m_nodes) {
            for (const ZNLoader::Node* to : network.loader.m_nodes) {
                if (from == to)
                    continue;
                ASSERT_EQ(network.loader.findShortestRouteRoot(from->m_id, to->m_id),
                          plain.findShortestRouteRoot(from->m_id, to->m_id))
                    << "network " << i << ", " << from->m_id << " to " << to->m_id;
            }
        }
    }
}

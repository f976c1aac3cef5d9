// How reading and routing grow with the network: documents in, loaded models out. The plain procedure of the
// tests runs beside it on the networks that it can still do.
//
// Each network is loaded in a process of its own, so that its peak memory is its own.

#include "infr_libs/ZNLoader/ZNLoader.h"
#include "tests/infr_libs/ZNLoader/PlainTopology.h"
#include "tests/support/TemporaryFolder.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <set>
#include <sstream>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace {

using Edges = std::vector<std::pair<unsigned, unsigned>>;

struct Network {
    unsigned numNodes;
    Edges edges;
};

// In Gray code order: neighbours in the list are neighbours in the network, as the walk wants them.
Network hypercube(unsigned numDimensions) {
    Network network{1U << numDimensions, {}};
    std::vector<unsigned> nodeAt(network.numNodes);
    for (unsigned node = 0; node < network.numNodes; ++node)
        nodeAt[node ^ node >> 1] = node;
    for (unsigned position = 0; position < network.numNodes; ++position) {
        for (unsigned bit = 0; bit < numDimensions; ++bit) {
            if ((position >> bit & 1) == 0)
                network.edges.emplace_back(nodeAt[position], nodeAt[position | 1U << bit]);
        }
    }
    return network;
}

Network complete(unsigned numNodes) {
    Network network{numNodes, {}};
    for (unsigned a = 0; a < numNodes; ++a) {
        for (unsigned b = a + 1; b < numNodes; ++b)
            network.edges.emplace_back(a, b);
    }
    return network;
}

Network grid(unsigned width, unsigned height) {
    Network network{width * height, {}};
    for (unsigned node = 0; node < network.numNodes; ++node) {
        if (node % width + 1 < width)
            network.edges.emplace_back(node, node + 1);
        if (node + width < network.numNodes)
            network.edges.emplace_back(node, node + width);
    }
    return network;
}

Network random(unsigned numNodes, unsigned numLinks) {
    Network network{numNodes, {}};
    unsigned state = 1;
    const auto next = [&] { return (state = state * 1664525 + 1013904223) >> 8; };
    for (unsigned i = 0; i < numLinks; ++i)
        network.edges.emplace_back(next() % numNodes, next() % numNodes);
    return network;
}

Network lineOf(const std::vector<unsigned>& order) {
    Network network{static_cast<unsigned>(order.size()), {}};
    for (std::size_t i = 1; i < order.size(); ++i)
        network.edges.emplace_back(order[i - 1], order[i]);
    return network;
}

Network line(unsigned numNodes) {
    std::vector<unsigned> order(numNodes);
    for (unsigned i = 0; i < numNodes; ++i)
        order[i] = i;
    return lineOf(order);
}

// A line whose list starts with its middle, then has the middles of the halves, and so on: the order in which
// bits last longest.
Network halvedLine(unsigned numNodes) {
    std::vector<unsigned> order(numNodes);
    unsigned next = 0;
    std::vector<std::pair<unsigned, unsigned>> pieces{{0, numNodes}};
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        const auto [first, end] = pieces[i];
        if (first == end)
            continue;
        const unsigned middle = first + (end - first) / 2;
        order[middle] = next++;
        pieces.emplace_back(first, middle);
        pieces.emplace_back(middle + 1, end);
    }
    return lineOf(order);
}

std::string documentOf(const Network& network) {
    std::ostringstream text;
    text << "<Network>\n<Declarations><Declaration>core c[" << network.numNodes
         << "]</Declaration></Declarations>\n<Nodes>\n";
    for (unsigned node = 0; node < network.numNodes; ++node)
        text << "<Node Id=\"n" << node << "\" Type=\"model\"><Core Number=\"0\" Reference=\"c[" << node
             << "]\"/></Node>\n";
    text << "</Nodes>\n<JTAGChain>\n";
    for (unsigned node = 0; node < network.numNodes; ++node)
        text << "<JTAGDevice NodeId=\"n" << node << "\"/>\n";
    text << "</JTAGChain>\n<Links>\n";
    std::vector<unsigned> nextLink(network.numNodes);
    for (const auto& [a, b] : network.edges) {
        const unsigned linkA = nextLink[a]++;
        const unsigned linkB = nextLink[b]++;
        text << "<Link Encoding=\"5wire\" Delays=\"3,4\"><LinkEndpoint NodeId=\"n" << a << "\" Link=\""
             << linkA << "\"/><LinkEndpoint NodeId=\"n" << b << "\" Link=\"" << linkB << "\"/></Link>\n";
    }
    text << "</Links>\n</Network>\n";
    return text.str();
}

double millisecondsOf(const std::function<void()>& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

void load(const char* name, const Network& network) {
    std::fflush(stdout);
    const pid_t child = fork();
    if (child != 0) {
        waitpid(child, nullptr, 0);
        return;
    }
    std::istringstream stream(documentOf(network));
    std::string verdict;
    const double milliseconds = millisecondsOf([&] {
        try {
            std::string warnings;
            const ZNLoader loader("zn", &stream, &warnings);
            std::size_t numUsers = 0;
            for (const ZNLoader::Zlink* link : loader.m_links)
                numUsers += link->m_users.size();
            verdict =
                (loader.m_topology == 1 ? "hypercube, " : "pile, ") + std::to_string(numUsers) + " pairs";
        } catch (const std::string& error) {
            verdict = error.substr(0, error.find('\n'));
        }
    });
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    std::printf("%-28s %6u nodes %7zu links %10.1f ms %8.1f MB   %s\n", name, network.numNodes,
                network.edges.size(), milliseconds, static_cast<double>(usage.ru_maxrss) / 1024,
                verdict.c_str());
    std::fflush(stdout);
    std::_Exit(0);
}

// Nodes and bound links alone: what routing starts from.
void fill(ZNLoader& loader, const Network& network) {
    for (unsigned node = 0; node < network.numNodes; ++node) {
        auto* processor = new ZNLoader::ProcNode;
        processor->m_id = "n" + std::to_string(node);
        loader.m_nodes.push_back(processor);
        loader.m_procNodes.push_back(processor);
    }
    loader.m_switchArch = ZNLoader::SwitchArchL1;
    for (const auto& [a, b] : network.edges) {
        auto* link = new ZNLoader::Zlink;
        for (const auto& [end, node] : {std::pair(&link->m_end0, a), std::pair(&link->m_end1, b)}) {
            *end = new ZNLoader::ZlinkNormalEnd;
            (*end)->m_node = loader.m_nodes[node];
            (*end)->m_nodeId = loader.m_nodes[node]->m_id;
        }
        loader.m_links.push_back(link);
        loader.m_normalLinks.push_back(link);
    }
}

void compare(const char* name, const Network& network) {
    const auto timeOf = [&](const std::function<void(ZNLoader&)>& route) {
        ZNLoader loader;
        fill(loader, network);
        return millisecondsOf([&] {
            try {
                route(loader);
            } catch (const std::string&) { // a refusal takes its time as well
            }
        });
    };
    const double fast = timeOf([](ZNLoader& loader) { loader.buildPositions("zn"); });
    const double plain = timeOf([](ZNLoader& loader) { PlainTopology(loader).buildPositions(); });
    std::printf("%-28s %6u nodes %10.3f ms %12.3f ms   %8.0f times\n", name, network.numNodes, fast, plain,
                plain / fast);
    std::fflush(stdout);
}

} // namespace

int main() {
    const TemporaryFolder folder;
    folder.write(
        "config_model.xml",
        "<ZSystem><System><Nodes><Node number=\"0\" jtagId=\"0x2633\"><Processor number=\"0\" "
        "numThreads=\"8\" numTimers=\"10\" numChanEnds=\"32\"/></Node></Nodes><Connections/></System>"
        "</ZSystem>\n");
    setenv("ZCC_DEVICE_PATH", folder.path().c_str(), 1);

    std::puts("document to loaded model");
    for (unsigned numDimensions = 2; numDimensions <= 12; ++numDimensions)
        load("hypercube", hypercube(numDimensions));
    load("complete graph", complete(64));
    load("grid 8 x 16", grid(8, 16));
    load("random graph", random(128, 400));
    load("line, natural order", line(17));
    load("line, one longer", line(18));
    load("line, natural order", line(65536));
    for (const unsigned numNodes : {50U, 100U, 200U, 400U, 800U})
        load("line, halves first", halvedLine(numNodes));

    std::puts("\nrouting alone, and the plain procedure");
    for (unsigned numDimensions = 2; numDimensions <= 6; ++numDimensions)
        compare("hypercube", hypercube(numDimensions));
    for (unsigned numNodes = 5; numNodes <= 9; ++numNodes)
        compare("complete graph", complete(numNodes));
    for (unsigned numNodes = 4; numNodes <= 16; numNodes *= 2)
        compare("line", line(numNodes));
    compare("grid 3 x 4", grid(3, 4));
    return 0;
}

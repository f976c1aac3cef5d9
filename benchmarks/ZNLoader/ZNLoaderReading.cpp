// Reading a large network beside parsing its document alone. The goal is less than twice the parser's time:
// the readers take no longer than the parser does. Both run in turn, and the best of each counts.
// usage: ZNLoaderBenchmark [ROUNDS]

#include "infr_libs/XmlParser/XmlParser.h"
#include "infr_libs/ZNLoader/ZNLoader.h"
#include "tests/support/NetworkBuilder.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <sstream>

namespace {

constexpr unsigned s_numNodes = 4096;
constexpr unsigned s_numCores = 8;
constexpr unsigned s_numLinks = 20000;

std::string nodeName(unsigned number) {
    return "node" + std::to_string(number % s_numNodes);
}

std::string largeNetwork() {
    NetworkBuilder network;
    network.coreChildren("<Port Location=\"ZS1_PORT_1A\" Name=\"PORT_LED\"/>");
    for (unsigned node = 0; node < s_numNodes; ++node)
        network.processor(nodeName(node), "Eight", s_numCores,
                          "Oscillator=\"20MHz\" SystemFrequency=\"400MHz\"");
    for (unsigned link = 0; link < s_numLinks; ++link)
        network.link(nodeName(link), std::to_string(link), nodeName(link * 7 + 1), "Z0LA", "Delays=\"3,4\"");
    return network.text();
}

template<class Operation>
double millisecondsOf(const Operation& operation) {
    const auto start = std::chrono::steady_clock::now();
    operation();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

// Parses the document and hands the tree to `use`, whose time counts too.
template<class Use>
double parsingTime(const std::string& text, const Use& use) {
    std::istringstream stream(text);
    ZNLoader loader;
    return millisecondsOf([&] {
        loader.m_parser = new XmlParser("zn", loader.m_zelmUtils, &stream);
        use(loader);
    });
}

} // namespace

int main(int argc, char** argv) {
    const int numRounds = argc > 1 ? std::atoi(argv[1]) : 15;
    DeviceFolder devices;
    devices.addNodeType("Eight", 0x2633, s_numCores);
    const std::string text = largeNetwork();

    double parse = 1e9;
    double read = 1e9;
    for (int round = 0; round < numRounds; ++round) {
        parse = std::min(parse, parsingTime(text, [](ZNLoader&) {}));
        read = std::min(read, parsingTime(text, [](ZNLoader& loader) {
                            if (loader.readNetwork(loader.m_parser->getRoot()))
                                std::abort();
                        }));
    }
    std::printf("%u nodes of %u cores, %u links: %.1f MB\n", s_numNodes, s_numCores, s_numLinks,
                static_cast<double>(text.size()) / 1e6);
    std::printf("%-24s %8.1f ms\n%-24s %8.1f ms\n%-24s %8.2f\n", "XmlParser alone", parse,
                "with the network's readers", read, "ratio (goal: below 2)", read / parse);
    return 0;
}

// Reading a large network beside parsing its document alone. The goal is less than twice the parser's time:
// the readers take no longer than the parser does. Both run in turn, each round in a process of its own, as
// at a start: what an earlier round has left of the heap doesn't count. The best of each is shown. usage:
// ZNLoaderBenchmark [ROUNDS]

#include "infr_libs/XmlParser/XmlParser.h"
#include "infr_libs/ZNLoader/ZNLoader.h"
#include "tests/support/NetworkBuilder.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <sstream>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

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

// Of this process alone: what else the machine does isn't counted.
double processorMilliseconds() {
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

// Parses the document and hands the tree to `use`, whose time counts too. In a fork of this process.
template<class Use>
double parsingTime(const std::string& text, const Use& use) {
    int ends[2];
    if (pipe(ends) != 0)
        std::abort();
    const pid_t child = fork();
    if (child == 0) {
        std::istringstream stream(text);
        ZNLoader loader;
        const double start = processorMilliseconds();
        loader.m_parser = new XmlParser("zn", loader.m_zelmUtils, &stream);
        use(loader);
        const double time = processorMilliseconds() - start;
        std::_Exit(write(ends[1], &time, sizeof time) == sizeof time ? 0 : 1);
    }
    double time = 0;
    const bool isRead = child > 0 && read(ends[0], &time, sizeof time) == sizeof time;
    waitpid(child, nullptr, 0);
    close(ends[0]);
    close(ends[1]);
    if (!isRead)
        std::abort();
    return time;
}

} // namespace

int main(int argc, char** argv) {
    const int numRounds = argc > 1 ? std::atoi(argv[1]) : 15;
    DeviceFolder devices;
    devices.addNodeType("Eight", 0x2633, s_numCores);
    const std::string text = largeNetwork();

    double parse = 1e9;
    double readers = 1e9;
    for (int round = 0; round < numRounds; ++round) {
        parse = std::min(parse, parsingTime(text, [](ZNLoader&) {}));
        readers = std::min(readers, parsingTime(text, [](ZNLoader& loader) {
                               if (loader.readNetwork(loader.m_parser->getRoot()))
                                   std::abort();
                           }));
    }
    std::printf("%u nodes of %u cores, %u links: %.1f MB\n", s_numNodes, s_numCores, s_numLinks,
                static_cast<double>(text.size()) / 1e6);
    std::printf("%-24s %8.1f ms\n%-24s %8.1f ms\n%-24s %8.2f\n", "XmlParser alone", parse,
                "with the network's readers", readers, "ratio (goal: below 2)", readers / parse);
    return 0;
}

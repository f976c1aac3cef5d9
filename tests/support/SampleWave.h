#pragma once

#include <string>
#include <utility>
#include <vector>

// A port of a sample core, as the simulator names it.
struct TracedPort {
    std::string name;
    unsigned int width = 1;
    std::string userName; // of the network document; empty: the port has no entry there
};

// What is traced on one core.
struct TracedCore {
    std::string name = "stdcore[0]";
    std::string tag = "00"; // routing id and core number
    std::vector<TracedPort> ports;
    bool hasDetailedPorts = false;
    bool hasCycles = false;
    unsigned int numThreads = 0;
    unsigned int numClockBlocks = 0;
    unsigned int numTimers = 0;
    bool hasInstructions = false;
    std::vector<std::pair<std::string, std::string>> functions; // name and short name
    unsigned int numFunctionThreads = 0;
};

// A waveform as the plugin writes it: everything before the first time line. Initial values are 0, or unknown
// where the plugin writes them so. The steps are the test's own lines.
struct SampleWave {
    std::string timescale = "2.500000 ns";
    std::string date = "Sat Nov 21 12:00:00 2026";
    std::vector<std::string> pads;
    std::vector<TracedCore> cores;

    std::string start() const;
};

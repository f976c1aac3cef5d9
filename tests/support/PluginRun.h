#pragma once

#include "tests/support/ChildProcess.h"
#include "tests/support/StubSimulator.h"

#include <functional>
#include <string>

// What a run of the plugin left.
struct PluginResult {
    ChildResult process;  // how the process that held the plugin ended
    std::string waveform; // the output file; empty when there is none

    // The waveform from the end of its head on: first values and clocks.
    std::string values() const;
    // The waveform from behind the head's date, version and timescale up to the values.
    std::string declarations() const;
    // The waveform from behind the first values on.
    std::string clocks() const;
};

// Cores for an image, one a line: name, node number, core number.
inline constexpr const char* s_oneCore = "stdcore[0] 0 0\n";
inline constexpr const char* s_twoCores = "stdcore[0] 0 0\nstdcore[1] 0 1\n";

// Runs one instance in a child process, so that its numbers and tables are fresh, with the options given
// and a -ze and an -o of its own in front of them. `play` drives it by number between PluginInitialise and
// the end of the process; it is to call PluginTerminate itself where that matters.
PluginResult runPlugin(StubSimulator& simulator, const std::string& options,
                       const std::function<void(unsigned int instance)>& play = {},
                       const std::string& cores = s_oneCore);

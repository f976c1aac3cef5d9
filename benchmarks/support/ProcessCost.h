#pragma once

#include <string>
#include <vector>

// What one run of a program took.
struct ProcessCost {
    double ms = 1e9;     // of the processors, in user and system mode together
    double peakMb = 1e9; // of resident memory

    // Keeps the smaller of each, so that the best of several runs counts.
    void take(const ProcessCost& other);
};

// Runs a program, found by PATH when its name has no slash, with its output going to a file (/dev/null, or
// one that is replaced). Ends this process, after a message, when the program fails.
ProcessCost costOf(const std::vector<std::string>& words, const std::string& output = "/dev/null");

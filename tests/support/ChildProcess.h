#pragma once

#include <functional>
#include <string>
#include <vector>

// How a process ended and what it wrote.
struct ChildResult {
    int exitStatus = -1; // the status given to exit, or -1 when a signal ended the process
    int signal = 0;      // the signal that ended the process, or 0
    std::string output;  // all of standard output
    std::string error;   // all of standard error
};

// Runs the body in a fork of this process, as if by `exit(0)` at its end. For what ends the process, and
// for what writes to the standard streams.
ChildResult runInChild(const std::function<void()>& body);

// Runs a program (found by PATH when the name has no slash) with these arguments and an empty standard
// input. A program that can't be started gives exit status 127.
ChildResult runProgram(const std::vector<std::string>& words);

#pragma once

#include <functional>
#include <string>
#include <vector>

// An operation in a process of its own. The libraries are made for a plugin: on some inputs they end the
// process that they run in, by exit or by an assertion. What they would do is found out here without harm.
struct Trial {
    bool cameBack = false;          // else the operation ended its process
    std::vector<std::string> lines; // what it said, on standard output and standard error, and how it ended
};

// The operation may throw: that counts as ending the process with that text.
Trial tryOut(const std::function<void()>& operation);

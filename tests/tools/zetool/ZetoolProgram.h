#pragma once

#include "tests/support/ChildProcess.h"

#include <string>
#include <vector>

// Runs the program that was built with these words behind its name.
ChildResult zetool(const std::vector<std::string>& words);

// Runs a line of the shell in a folder, with the program found as `zetool`.
ChildResult zetoolShell(const std::string& folder, const std::string& line);

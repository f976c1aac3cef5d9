#pragma once

#include "tests/support/TemporaryFolder.h"

#include <string>
#include <vector>

// Runs commands on a file that is cut at its lengths, and whose bytes are changed one by one, and says where
// one ended otherwise than it should: by a signal, with another status than 0, 1 and 2, or with 1 or 2 and no
// message. Empty if all did well. `step`: every so manieth length and byte. The commands name the file as
// `name`, and run in the folder.
std::string damageFailures(const TemporaryFolder& folder, const std::string& name, const std::string& bytes,
                           const std::vector<std::vector<const char*>>& commands, std::size_t step = 1);

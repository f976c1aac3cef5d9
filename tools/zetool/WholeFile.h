#pragma once

#include <string>
#include <string_view>

// All bytes of a file, or of standard input for `-`. A failure throws a ToolFailure that names the file.
std::string readWhole(std::string_view path);

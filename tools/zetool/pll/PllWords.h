#pragma once

#include <cstdint>
#include <string>

// The values of the command's options. What can't be read throws a ToolFailure that names the option.

// In Hz: a number with Hz, kHz or MHz, or their first letters but that of Hz, in any case.
std::uint32_t frequencyOf(const std::string& option, const std::string& text);

std::uint32_t dividerOf(const std::string& option, const std::string& text);

// In halves: 10.5 is 21.
std::uint32_t halvesOf(const std::string& option, const std::string& text);

#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// Bytes of files, for builders of inputs and for expectations.

// The low bytes of a number, lowest first.
std::string littleEndian(std::uint64_t value, unsigned numBytes);

// Bytes from pairs of hexadecimal digits; what stands between the pairs is ignored if it is blank.
std::string fromHex(std::string_view text);

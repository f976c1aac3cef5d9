#pragma once

#include <string>
#include <string_view>

// Names in the files that the tool reads are bytes of any kind; what it writes is UTF-8 or ASCII.

bool isUtf8(std::string_view text);

// The text itself where it is UTF-8; else each byte above 127 as the character of that number, so that
// different names stay different.
std::string toUtf8(std::string_view text);

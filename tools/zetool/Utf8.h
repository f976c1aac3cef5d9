#pragma once

#include <string>
#include <string_view>

// Names in the files that the tool reads are bytes of any kind; what it writes is UTF-8 or ASCII.

bool isUtf8(std::string_view text);

// For people: the text itself where it is UTF-8; else each byte above 127 as the character of that number, as
// in Latin-1. Two names may come to look alike.
std::string toUtf8(std::string_view text);

// For programs: different texts stay different. What is UTF-8 in the text stays as it is, and each other byte
// is the character U+F700 plus the byte, from U+F780 to U+F7FF, where Unicode has no characters of its own.
// Should a text hold these characters themselves, their three bytes are told in the same way.
std::string toDistinctUtf8(std::string_view text);

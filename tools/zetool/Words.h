#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

// Small text helpers that commands, help, man page and completions share.

// The texts with `between` between each two.
std::string joined(std::span<const char* const> texts, std::string_view between);

// A text broken at blanks into lines of at most `width` characters; a word that is longer has its own line.
std::vector<std::string> wrapped(std::string_view text, std::size_t width);

// The lines of a text without their ends, empty ones too. The last one may lack its end.
std::vector<std::string> linesOf(std::string_view text);

// A number in hexadecimal digits, small letters, at least so many: "1f"; and behind its mark: "0x1f".
std::string hexDigits(std::uint64_t number, std::size_t numDigits = 1);
std::string hexText(std::uint64_t number, std::size_t numDigits = 1);

// A text as XML holds it: with entities in place of &, < and >, and of quotes where an attribute is quoted by
// them.
enum class Quotes { Kept, Replaced };
std::string withEntities(std::string_view text, Quotes quotes = Quotes::Kept);

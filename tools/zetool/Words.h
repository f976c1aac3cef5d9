#pragma once

#include <charconv>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

// Small text helpers that commands, help, man page and completions share.

// The texts with `between` between each two.
std::string joined(std::span<const char* const> texts, std::string_view between);

// A text broken at blanks into lines of at most `width` characters; a word that is longer has its own line.
std::vector<std::string> wrapped(std::string_view text, std::size_t width);

// The lines of a text without their ends, empty ones too. The last one may lack its end.
std::vector<std::string> linesOf(std::string_view text);

// The number that a whole text is; nothing for any other text, and for a number beyond the type's limits. An
// unsigned one has no sign.
template<typename Number>
std::optional<Number> wholeNumber(std::string_view text, int base = 10) {
    Number number = 0;
    const char* const last = text.data() + text.size();
    const auto [end, error] = std::from_chars(text.data(), last, number, base);
    return error == std::errc() && end == last ? std::optional<Number>(number) : std::nullopt;
}

// A number in hexadecimal digits, small letters, at least so many: "1f"; and behind its mark: "0x1f".
std::string hexDigits(std::uint64_t number, std::size_t numDigits = 1);
std::string hexText(std::uint64_t number, std::size_t numDigits = 1);

// A text as XML holds it: with entities in place of &, < and >, and of quotes where an attribute is quoted by
// them.
enum class Quotes { Kept, Replaced };
std::string withEntities(std::string_view text, Quotes quotes = Quotes::Kept);

#include "tools/zetool/Utf8.h"

#include <cstddef>

namespace {

// Length of the well-formed sequence at the start of a text (Unicode 15, table 3-7), or 0.
std::size_t sequenceLength(std::string_view text) {
    const auto byte = [&](std::size_t index) { return static_cast<unsigned char>(text[index]); };
    const auto continues = [&](std::size_t index, unsigned low, unsigned high) {
        return index < text.size() && byte(index) >= low && byte(index) <= high;
    };
    const unsigned first = byte(0);
    if (first < 0x80)
        return 1;
    if (first >= 0xC2 && first <= 0xDF)
        return continues(1, 0x80, 0xBF) ? 2 : 0;
    if (first >= 0xE0 && first <= 0xEF) {
        const unsigned low = first == 0xE0 ? 0xA0 : 0x80;
        const unsigned high = first == 0xED ? 0x9F : 0xBF;
        return continues(1, low, high) && continues(2, 0x80, 0xBF) ? 3 : 0;
    }
    if (first >= 0xF0 && first <= 0xF4) {
        const unsigned low = first == 0xF0 ? 0x90 : 0x80;
        const unsigned high = first == 0xF4 ? 0x8F : 0xBF;
        return continues(1, low, high) && continues(2, 0x80, 0xBF) && continues(3, 0x80, 0xBF) ? 4 : 0;
    }
    return 0;
}

// Whether the well-formed sequence at the start of a text is one of the characters that stand for bytes:
// U+F780 to U+F7FF.
bool standsForByte(std::string_view text) {
    return text.starts_with("\xEF\x9E") || text.starts_with("\xEF\x9F");
}

} // namespace

bool isUtf8(std::string_view text) {
    while (!text.empty()) {
        const std::size_t length = sequenceLength(text);
        if (length == 0)
            return false;
        text.remove_prefix(length);
    }
    return true;
}

std::string toUtf8(std::string_view text) {
    if (isUtf8(text))
        return std::string(text);
    std::string result;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x80) {
            result += c;
            continue;
        }
        result += static_cast<char>(0xC0 | byte >> 6);
        result += static_cast<char>(0x80 | (byte & 0x3F));
    }
    return result;
}

std::string toDistinctUtf8(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        const std::size_t length = sequenceLength(text);
        if (length != 0 && !standsForByte(text)) {
            result += text.substr(0, length);
            text.remove_prefix(length);
            continue;
        }
        // The first byte of the characters that stand for bytes is enough: the other two don't begin one.
        const auto byte = static_cast<unsigned char>(text.front());
        result += '\xEF';
        result += static_cast<char>(0x9C | byte >> 6);
        result += static_cast<char>(0x80 | (byte & 0x3F));
        text.remove_prefix(1);
    }
    return result;
}

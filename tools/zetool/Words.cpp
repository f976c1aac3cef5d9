#include "tools/zetool/Words.h"

std::string joined(std::span<const char* const> texts, std::string_view between) {
    std::string all;
    for (const char* text : texts) {
        if (!all.empty())
            all += between;
        all += text;
    }
    return all;
}

std::vector<std::string> wrapped(std::string_view text, std::size_t width) {
    std::vector<std::string> lines;
    std::string line;
    while (!text.empty()) {
        const std::size_t end = text.find(' ');
        const std::string_view word = text.substr(0, end);
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        if (word.empty())
            continue;
        if (!line.empty() && line.size() + 1 + word.size() > width) {
            lines.push_back(line);
            line.clear();
        }
        if (!line.empty())
            line += ' ';
        line += word;
    }
    if (!line.empty())
        lines.push_back(line);
    return lines;
}

std::vector<std::string> linesOf(std::string_view text) {
    std::vector<std::string> lines;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        lines.emplace_back(text.substr(0, end));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
    return lines;
}

std::string hexDigits(std::uint64_t number, std::size_t numDigits) {
    char digits[16];
    const std::string_view text(digits, std::to_chars(digits, digits + sizeof digits, number, 16).ptr);
    return std::string(numDigits > text.size() ? numDigits - text.size() : 0, '0').append(text);
}

std::string hexText(std::uint64_t number, std::size_t numDigits) {
    return "0x" + hexDigits(number, numDigits);
}

std::string withEntities(std::string_view text, Quotes quotes) {
    std::string result;
    for (const char c : text) {
        switch (c) {
        case '&':
            result += "&amp;";
            break;
        case '<':
            result += "&lt;";
            break;
        case '>':
            result += "&gt;";
            break;
        case '"':
            result += quotes == Quotes::Replaced ? "&quot;" : "\"";
            break;
        default:
            result += c;
        }
    }
    return result;
}

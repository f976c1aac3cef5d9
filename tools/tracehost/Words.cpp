#include "tools/tracehost/Words.h"

#include <charconv>

namespace {

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r';
}

// Reads a quoted word from behind its opening quote, and leaves the rest of the line behind the closing one.
std::string takeQuoted(std::string_view& line) {
    std::string text;
    while (!line.empty()) {
        const char c = line.front();
        line.remove_prefix(1);
        if (c == '"')
            return text;
        if (c != '\\') {
            text += c;
            continue;
        }
        if (line.empty())
            break;
        const char escape = line.front();
        line.remove_prefix(1);
        switch (escape) {
        case 'n':
            text += '\n';
            break;
        case 'r':
            text += '\r';
            break;
        case 't':
            text += '\t';
            break;
        case '\\':
            text += '\\';
            break;
        case '"':
            text += '"';
            break;
        case 'x': {
            unsigned byte = 0;
            const std::string_view digits = line.substr(0, 2);
            const auto [end, fault] = std::from_chars(digits.data(), digits.data() + digits.size(), byte, 16);
            if (fault != std::errc() || end != digits.data() + 2)
                throw ScenarioError("\\x needs two hexadecimal digits");
            text += static_cast<char>(byte);
            line.remove_prefix(2);
            break;
        }
        default:
            throw ScenarioError(std::string("unknown escape '\\") + escape + "'");
        }
    }
    throw ScenarioError("a quote is not closed");
}

} // namespace

Words::Words(std::string_view line) {
    while (true) {
        while (!line.empty() && isBlank(line.front()))
            line.remove_prefix(1);
        if (line.empty() || line.front() == '#')
            return;
        if (line.front() == '"') {
            line.remove_prefix(1);
            m_words.push_back({takeQuoted(line), true});
            continue;
        }
        std::size_t length = 0;
        while (length < line.size() && !isBlank(line[length]) && line[length] != '#' && line[length] != '"')
            ++length;
        m_words.push_back({std::string(line.substr(0, length)), false});
        line.remove_prefix(length);
    }
}

const Words::Word& Words::takeWord(std::string_view missing) {
    if (empty())
        throw ScenarioError(std::string(missing));
    return m_words[m_next++];
}

bool Words::takeIf(std::string_view word) {
    if (empty() || m_words[m_next].isQuoted || m_words[m_next].text != word)
        return false;
    ++m_next;
    return true;
}

std::uint32_t Words::takeNumber(std::string_view what, std::uint32_t least, std::uint32_t most) {
    return numberOf(take(std::string(what) + " is missing"), what, least, most);
}

void Words::expectEnd() const {
    if (!empty())
        throw ScenarioError("unexpected '" + m_words[m_next].text + "'");
}

std::uint32_t numberOf(std::string_view text, std::string_view what, std::uint32_t least,
                       std::uint32_t most) {
    const bool isHex = text.starts_with("0x");
    const bool isBinary = text.starts_with("0b");
    const std::string_view digits = isHex || isBinary ? text.substr(2) : text;
    std::uint32_t number = 0;
    const auto [end, fault] = std::from_chars(digits.data(), digits.data() + digits.size(), number,
                                              isHex      ? 16
                                              : isBinary ? 2
                                                         : 10);
    if (fault == std::errc::invalid_argument || end != digits.data() + digits.size())
        throw ScenarioError(std::string(what) + " is not a number: '" + std::string(text) + "'");
    if (fault == std::errc::result_out_of_range || number < least || number > most)
        throw ScenarioError(std::string(what) + " must be from " + std::to_string(least) + " to " +
                            std::to_string(most) + ", not " + std::string(text));
    return number;
}

#include "Plugins/WavePlugin/ShortFunctionNames.h"

namespace {

constexpr std::size_t s_startSize = 4;

// What tells the names of one numbering from those of another: the first four bytes. A shorter name stands
// for itself, as if zeros followed.
std::string_view startOf(std::string_view name) {
    return name.substr(0, s_startSize);
}

std::string shortName(std::string_view name, unsigned int number) {
    std::string text(startOf(name));
    // The zeros behind a shorter name end the text: wanted, though the number is then not seen.
    if (text.size() == s_startSize)
        text.append(".").append(std::to_string(number));
    return text;
}

std::string firstBytes(std::string_view name) {
    return std::string(name.substr(0, ShortFunctionNames::s_numBytes));
}

} // namespace

std::string ShortFunctionNames::create(std::string_view name) {
    if (const auto found = m_numbers.find(name); found != m_numbers.end())
        return shortName(name, found->second);
    const std::string_view start = startOf(name);
    auto next = m_nextNumbers.find(start);
    if (next == m_nextNumbers.end())
        next = m_nextNumbers.emplace(start, Number{0}).first;
    if (next->second == s_numNumbers)
        return firstBytes(name);
    const Number number = next->second++;
    m_numbers.emplace(name, number);
    return shortName(name, number);
}

std::string ShortFunctionNames::get(std::string_view name) const {
    const auto found = m_numbers.find(name);
    return found == m_numbers.end() ? firstBytes(name) : shortName(name, found->second);
}

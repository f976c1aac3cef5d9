#include "tools/zetool/wave/SignalPattern.h"

#include <utility>

namespace {

constexpr std::string_view s_unknown = "(){}|^$";

void addRange(std::bitset<256>& characters, unsigned char first, unsigned char last) {
    for (unsigned int c = first; c <= last; ++c)
        characters.set(c);
}

// An escaped character: `\d`, or the character itself. False for other letters, which would mean something.
bool addEscaped(std::bitset<256>& characters, char c) {
    if (c == 'd')
        addRange(characters, '0', '9');
    else if ((c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9'))
        return false;
    else
        characters.set(static_cast<unsigned char>(c));
    return true;
}

// A class, behind its opening bracket.
bool addClass(std::bitset<256>& characters, std::string_view& text) {
    const auto end = text.find(']');
    if (end == std::string_view::npos || end == 0 || text.front() == '^')
        return false;
    const std::string_view inner = text.substr(0, end);
    text.remove_prefix(end + 1);
    for (std::size_t at = 0; at < inner.size(); ++at) {
        if (inner[at] == '\\')
            return false;
        const bool isRange = at + 2 < inner.size() && inner[at + 1] == '-';
        const auto last = static_cast<unsigned char>(isRange ? inner[at + 2] : inner[at]);
        addRange(characters, static_cast<unsigned char>(inner[at]), last);
        at += isRange ? 2 : 0;
    }
    return true;
}

} // namespace

SignalPattern::SignalPattern(std::string_view text) {
    while (!text.empty() && m_isKnown)
        m_isKnown = addStep(text);
}

bool SignalPattern::addStep(std::string_view& text) {
    Step step;
    const char c = text.front();
    text.remove_prefix(1);
    if (c == '\\') {
        if (text.empty() || !addEscaped(step.characters, text.front()))
            return false;
        text.remove_prefix(1);
    } else if (c == '[') {
        if (!addClass(step.characters, text))
            return false;
    } else if (c == '.') {
        step.characters.set();
    } else if (c == '*' || c == '+' || c == '?' || s_unknown.find(c) != std::string_view::npos) {
        return false;
    } else {
        step.characters.set(static_cast<unsigned char>(c));
    }
    if (!text.empty() && (text.front() == '*' || text.front() == '+' || text.front() == '?')) {
        step.canSkip = text.front() != '+';
        step.canRepeat = text.front() != '?';
        text.remove_prefix(1);
    }
    m_steps.push_back(step);
    return true;
}

bool SignalPattern::matches(std::string_view name) const {
    if (!m_isKnown)
        return false;
    // Place p is reached when the first p steps have taken what was read so far.
    std::vector<char> reached(m_steps.size() + 1);
    std::vector<char> next(reached.size());
    const auto skipOn = [&](std::vector<char>& places) {
        for (std::size_t p = 0; p < m_steps.size(); ++p)
            if (places[p] && m_steps[p].canSkip)
                places[p + 1] = 1;
    };
    reached[0] = 1;
    skipOn(reached);
    for (const char c : name) {
        next.assign(next.size(), 0);
        bool any = false;
        for (std::size_t p = 0; p < m_steps.size(); ++p) {
            if (!m_steps[p].characters.test(static_cast<unsigned char>(c)))
                continue;
            if (reached[p])
                next[p + 1] = 1;
            if (reached[p + 1] && m_steps[p].canRepeat)
                next[p + 1] = 1;
            any = any || next[p + 1];
        }
        if (!any)
            return false;
        skipOn(next);
        std::swap(reached, next);
    }
    return reached.back() != 0;
}

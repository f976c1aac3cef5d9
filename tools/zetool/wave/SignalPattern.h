#pragma once

#include <bitset>
#include <cstddef>
#include <string_view>
#include <vector>

// A regular expression of the structure document, which must match a signal's whole name. It knows what the
// documents use: characters, `\` before one that stands for itself, `\d`, `.`, classes such as `[A-Z]`, and
// `*`, `+` and `?` behind one of these. Matching takes time in proportion to pattern and name, whatever a
// file holds for a pattern.
class SignalPattern {
public:
    explicit SignalPattern(std::string_view text);

    // False for an expression that uses more than that; it matches nothing then.
    bool isKnown() const { return m_isKnown; }

    bool matches(std::string_view name) const;

private:
    struct Step {
        std::bitset<256> characters;
        bool canSkip = false;   // ? and *
        bool canRepeat = false; // + and *
    };

    bool addStep(std::string_view& text);

    std::vector<Step> m_steps;
    bool m_isKnown = true;
};

#pragma once

#include "tools/tracehost/Scenario.h"
#include "tools/tracehost/Words.h"

#include <cstdint>
#include <map>
#include <string>

// The numbers of a scenario's texts: each text has one, however often it occurs.
class TextNumbers {
public:
    // Keeps the list, to which new texts are appended.
    explicit TextNumbers(std::deque<std::string>& texts);

    std::uint32_t numberOf(const std::string& text);

    // A mnemonic's number: every reader takes eight bytes, so a shorter text is filled up with blanks.
    std::uint32_t mnemonicNumberOf(std::string text);

private:
    std::deque<std::string>& m_texts;
    std::map<std::string, std::uint32_t, std::less<>> m_numbers;
};

// Reads what stands behind a field's name, to the end of the line: "[from CLOCK] PATTERN". Throws
// `ScenarioError`.
Segment readSegment(Words& words, const Field& field, TextNumbers& texts);

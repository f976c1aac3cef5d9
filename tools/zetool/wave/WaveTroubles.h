#pragma once

#include "tools/zetool/wave/BodyFault.h"

#include <array>
#include <cstddef>

// What readers of waveforms stumble over.
enum class Trouble {
    Timescale,
    NoScopes,
    NameHasBlank,
    NameEndsStatement,
    NameIsBit,
    NameIsDouble,
    IdentifierIsDouble,
    WidthsDiffer,
    WidthIsZero,
    TextSignal,
    Header,
    DocumentIllFormed,
    DocumentEndsEarly,
    DocumentUnreadable,
    DocumentUndeclared,
    DocumentUnlisted,
    ValuesBeforeTime,
    NegativeTime,
    FallingTime,
    BadTime,
    NumberForBit,
    UnknownIdentifier,
    UnknownDigit,
    TooManyDigits,
    ScalarForVector,
    UnknownWord,
    Cut,
};

// One row a trouble, in their order: the key of the JSON form, what it is, and which readers it hits how.
struct TroubleRow {
    Trouble trouble;
    const char* key;
    const char* text;
    const char* readers;
};

inline constexpr std::size_t s_numTroubles = static_cast<std::size_t>(Trouble::Cut) + 1;

extern const std::array<TroubleRow, s_numTroubles> s_troubleRows;

// What was found of each.
class TroubleList {
public:
    BodyFault& operator[](Trouble trouble) { return m_faults[static_cast<std::size_t>(trouble)]; }
    const BodyFault& operator[](Trouble trouble) const { return m_faults[static_cast<std::size_t>(trouble)]; }

private:
    std::array<BodyFault, s_numTroubles> m_faults;
};

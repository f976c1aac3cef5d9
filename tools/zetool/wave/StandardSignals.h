#pragma once

#include "tools/zetool/wave/IdentifierTable.h"
#include "tools/zetool/wave/WaveSignals.h"

#include <cstdint>
#include <string>
#include <vector>

// Which signals of a waveform a standard file takes.
enum class StandardChoice {
    All,
    OneBit, // at most s_mostChannels signals of one bit, pads and ports first
};

// What the values of a signal are.
enum class ValueKind : std::uint8_t { Bits, Real, Event, Text };

ValueKind valueKind(const VcdVariable& variable);

// What the value lines of one identifier become.
struct StandardSlot {
    std::uint32_t width = 1;
    ValueKind kind = ValueKind::Bits;
    bool isKept = false;               // false: its values are passed over
    std::string identifier;            // in the standard file
    std::vector<std::uint32_t> copies; // further slots that take the same value, in other widths
};

// The signals that a standard file takes, and the way from a source's identifier to them. An identifier that
// is declared twice with one width stays one identifier of two names; with two widths, the second gets one
// of its own.
class StandardSignals {
public:
    static constexpr std::size_t s_mostChannels = 64;

    StandardSignals(const WaveSignals& signals, StandardChoice choice);

    // By signal.
    const std::vector<bool>& isKept() const { return m_isKept; }
    const std::string& identifier(std::size_t signal) const { return m_slots[m_slotOf[signal]].identifier; }

    // How many signals the choice left out, and how many there is no standard form for.
    std::size_t numLeftOut() const { return m_numLeftOut; }
    std::size_t numTexts() const { return m_numTexts; }

    const IdentifierTable& table() const { return m_table; }
    const StandardSlot& slot(std::uint32_t number) const { return m_slots[number]; }

private:
    void chooseOneBit(const WaveSignals& signals);
    std::uint32_t slotFor(const VcdVariable& variable);

    std::vector<bool> m_isKept;
    std::vector<std::uint32_t> m_slotOf;
    std::vector<StandardSlot> m_slots;
    IdentifierTable m_table;
    std::size_t m_numLeftOut = 0;
    std::size_t m_numTexts = 0;
};

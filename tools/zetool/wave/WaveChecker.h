#pragma once

#include "tools/zetool/Progress.h"
#include "tools/zetool/wave/IdentifierTable.h"
#include "tools/zetool/wave/TimeScale.h"
#include "tools/zetool/wave/VcdBody.h"
#include "tools/zetool/wave/WaveSignals.h"
#include "tools/zetool/wave/WaveTroubles.h"

#include <cstdint>
#include <string>
#include <vector>

// What a signal's own name and width hold that readers stumble over.
std::vector<Trouble> nameTroubles(const VcdVariable& variable, bool isOfPlugin);

// Looks for what readers stumble over: in the header at once, in the body as a handler of VcdBodyScanner.
class WaveChecker {
public:
    WaveChecker(const VcdHeader& header, const WaveSignals& signals, const VcdSource& source);

    // The end of the file was reached.
    void finish();

    const TroubleList& troubles() const { return m_troubles; }

    // The last step of the file: whether there is one, whether it is whole, its time and the line where it
    // begins.
    bool hasStep() const { return m_hasTime; }
    bool lastStepIsWhole() const { return m_troubles[Trouble::Cut].count == 0; }
    std::uint64_t lastTime() const { return m_lastTime; }
    std::uint64_t lastStepLine() const { return m_stepLine; }

    // What the scanner calls.
    void time(std::string_view text, std::uint64_t line);
    void scalar(std::string_view word, std::uint64_t line);
    void vector(std::string_view whole, std::string_view value, std::string_view identifier, bool isBits,
                std::uint64_t line);
    void word(VcdWord kind, std::string_view word, std::uint64_t line);
    void blankLine(std::uint64_t) { m_stepHasValues = m_stepHasValues && !m_isOfPlugin; }
    void cut(std::string_view text, std::uint64_t line);
    void progress() { m_progress.update(m_source.numBytesRead()); }

private:
    void checkDeclarations();
    void checkName(const VcdVariable& variable);
    void checkStructure(const WaveSignals& signals);
    void noteValue(std::string_view text, std::uint64_t line) {
        m_stepHasValues = true;
        if (!m_hasTime)
            m_troubles[Trouble::ValuesBeforeTime].note(text, line);
    }
    bool isNumberForBit(std::string_view word) const;

    const VcdHeader& m_header;
    const VcdSource& m_source;
    bool m_isOfPlugin;
    Progress m_progress;
    TroubleList m_troubles;
    IdentifierTable m_table; // to the first variable of an identifier
    TimeNumbers m_numbers;
    bool m_hasTime = false;
    bool m_stepHasValues = false;
    std::uint64_t m_lastTime = 0;
    std::uint64_t m_stepLine = 0;
};

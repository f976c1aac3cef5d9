#pragma once

#include "tools/zetool/OutputFile.h"
#include "tools/zetool/Progress.h"
#include "tools/zetool/wave/BodyFault.h"
#include "tools/zetool/wave/StandardSignals.h"
#include "tools/zetool/wave/TimeScale.h"
#include "tools/zetool/wave/VcdBody.h"

#include <cstdint>
#include <cstring>
#include <memory>
#include <string>

// Writes the values of a standard file: a handler of VcdBodyScanner. A step goes out when it is known to be
// whole; one that the file's end cuts off is left away. Memory grows with the largest step, not with the
// file.
class StandardBody {
public:
    StandardBody(const VcdHeader& header, const VcdSource& source, const StandardSignals& signals,
                 const TimeScale& scale, OutputFile& output);

    // The end of the file was reached: writes what is whole of the rest.
    void finish();

    // Whether the file's end cut off a step, which is then left away; and the line where that step begins.
    bool lostLastStep() const { return m_lostLastStep; }
    std::uint64_t lostStepLine() const { return m_stepLine; }

    // What the source holds and a standard file can't.
    BodyFault unknownIdentifiers;
    BodyFault badTimes;
    BodyFault fallingTimes;
    BodyFault badValues;
    BodyFault unknownWords;

    // What the scanner calls.
    void time(std::string_view text, std::uint64_t line);
    void scalar(std::string_view word, std::uint64_t line);
    void vector(std::string_view whole, std::string_view value, std::string_view identifier, bool isBits,
                std::uint64_t line);
    void word(VcdWord kind, std::string_view word, std::uint64_t line);
    void blankLine(std::uint64_t) {
        if (m_isOfPlugin)
            closeStep();
    }
    void cut(std::string_view text, std::uint64_t line);
    void progress() { m_progress.update(m_source.numBytesRead()); }

private:
    void closeStep() {
        m_stepStart = m_used;
        m_stepHasValues = false;
    }
    void noteValue(std::uint64_t line) {
        if (!m_hasTime || !m_stepHasValues)
            beginValues(line);
    }
    void beginValues(std::uint64_t line);
    void closeInitialValues();

    void writeDigits(const StandardSlot& slot, std::string_view digits);
    void writeToAll(const StandardSlot& slot, std::string_view digits);
    std::string_view legalDigits(std::string_view digits, std::uint64_t line);
    bool readNumber(std::string_view word, std::uint64_t line);

    void append(std::string_view text) {
        std::memcpy(room(text.size()), text.data(), text.size());
        m_used += text.size();
    }
    void append(char c) {
        *room(1) = c;
        ++m_used;
    }
    char* room(std::size_t size) {
        if (m_capacity - m_used < size)
            makeRoom(size);
        return m_buffer.get() + m_used;
    }
    void makeRoom(std::size_t size);

    const VcdSource& m_source;
    const StandardSignals& m_signals;
    const TimeScale& m_scale;
    OutputFile& m_output;
    Progress m_progress;
    bool m_isOfPlugin;
    TimeNumbers m_numbers;

    std::unique_ptr<char[]> m_buffer; // text that isn't written yet: m_used bytes
    std::size_t m_capacity;
    std::size_t m_used = 0;
    std::size_t m_stepStart = 0;  // where in it the open step begins
    std::uint64_t m_stepLine = 0; // where in the source
    bool m_stepHasValues = false;
    bool m_hasTime = false; // a time line has been read
    bool m_wroteTime = false;
    std::uint64_t m_lastTime = 0; // as written last
    bool m_isInitial = false;     // within the plugin's initial values, which make one block here
    unsigned int m_numOpenDumps = 0;
    bool m_isCut = false;
    bool m_lostLastStep = false;
    std::string m_digits; // room for digits that had to be changed
};

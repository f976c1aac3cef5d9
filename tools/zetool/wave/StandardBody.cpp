#include "tools/zetool/wave/StandardBody.h"

#include "tools/zetool/Messages.h"
#include "tools/zetool/Words.h"

#include <algorithm>
#include <array>

namespace {

constexpr std::size_t s_firstCapacity = 1 << 18;

// A step of more than this is written before it is known to be whole.
constexpr std::size_t s_largestHeld = std::size_t(64) << 20;

// What a value of nine states (IEEE 1164) is in four, or 0 for what is no value.
constexpr char fourState(char c) {
    switch (c) {
    case '0':
    case '1':
    case 'x':
    case 'z':
        return c;
    case 'X':
    case 'u':
    case 'U':
    case 'w':
    case 'W':
    case '-':
        return 'x';
    case 'Z':
        return 'z';
    case 'l':
    case 'L':
        return '0';
    case 'h':
    case 'H':
        return '1';
    default:
        return 0;
    }
}

} // namespace

StandardBody::StandardBody(const VcdHeader& header, const VcdSource& source, const StandardSignals& signals,
                           const TimeScale& scale, OutputFile& output)
    : m_source(source),
      m_signals(signals),
      m_scale(scale),
      m_output(output),
      m_progress(source.input().size()),
      m_isOfPlugin(header.isOfPlugin()),
      m_numbers(m_isOfPlugin),
      m_buffer(std::make_unique_for_overwrite<char[]>(s_firstCapacity)),
      m_capacity(s_firstCapacity),
      m_stepLine(header.lastLine) {}

void StandardBody::finish() {
    // The plugin closes each step with a blank line: one with values and without it was cut off, wherever the
    // cut is.
    if (m_isOfPlugin && m_stepHasValues)
        m_isCut = true;
    if (m_isCut) {
        m_lostLastStep = true;
        m_used = m_stepStart;
    }
    closeInitialValues();
    m_output.write({m_buffer.get(), m_used});
    m_used = 0;
}

void StandardBody::time(std::string_view text, std::uint64_t line) {
    std::uint64_t count = 0;
    if (!m_numbers.read(text, count)) {
        badTimes.note(text, line);
        return;
    }
    std::uint64_t units = 0;
    if (!m_scale.convert(count, units))
        throw ToolFailure(m_source.input().path(), "line " + std::to_string(line) + ": time " +
                                                       std::string(text) + " is past what 64 bits hold in " +
                                                       m_scale.unit());
    closeStep();
    m_stepLine = line;
    m_hasTime = true;
    closeInitialValues();
    if (m_wroteTime && units < m_lastTime) {
        // No reader takes a time that falls: the values join the step before.
        fallingTimes.note(text, line);
        units = m_lastTime;
    }
    if (m_wroteTime && units == m_lastTime)
        return;
    char* at = room(24);
    *at = '#';
    char* end = std::to_chars(at + 1, at + 23, units).ptr;
    *end = '\n';
    m_used += static_cast<std::size_t>(end + 1 - at);
    m_wroteTime = true;
    m_lastTime = units;
}

// Values before the first time line are those at the start.
void StandardBody::beginValues(std::uint64_t line) {
    m_stepHasValues = true;
    if (m_hasTime)
        return;
    if (m_wroteTime) {
        m_stepLine = m_stepStart == m_used ? line : m_stepLine;
        return;
    }
    append("#0\n");
    m_wroteTime = true;
    if (m_isOfPlugin) {
        append("$dumpvars\n");
        m_isInitial = true;
    }
    m_stepStart = m_used;
    m_stepLine = line;
}

void StandardBody::closeInitialValues() {
    if (!m_isInitial)
        return;
    append("$end\n");
    m_isInitial = false;
    m_stepStart = m_used;
}

void StandardBody::scalar(std::string_view word, std::uint64_t line) {
    noteValue(line);
    const std::uint32_t number = m_signals.table().find(word.substr(1));
    const char value = fourState(word.front());
    if (number == IdentifierTable::s_none || value == 0) {
        if (!readNumber(word, line))
            unknownIdentifiers.note(word, line);
        return;
    }
    const StandardSlot& slot = m_signals.slot(number);
    if (slot.isKept && slot.copies.empty() && slot.width == 1 && slot.kind != ValueKind::Real) {
        append(value);
        append(word.substr(1));
        append('\n');
        return;
    }
    writeToAll(slot, {&value, 1});
}

void StandardBody::vector(std::string_view whole, std::string_view value, std::string_view identifier,
                          bool isBits, std::uint64_t line) {
    noteValue(line);
    const std::uint32_t number = m_signals.table().find(identifier);
    if (number == IdentifierTable::s_none) {
        unknownIdentifiers.note(identifier, line);
        return;
    }
    const StandardSlot& slot = m_signals.slot(number);
    // The line as it stands, which is how nearly every line of every file is.
    if (isBits && slot.isKept && value.size() == slot.width + std::size_t(1) && slot.width > 1 &&
        whole.size() == value.size() + 1 + identifier.size() && slot.copies.empty() &&
        slot.kind == ValueKind::Bits) {
        append(whole);
        append('\n');
        return;
    }
    const std::string_view digits = value.substr(1);
    if (value.front() == 'b' || value.front() == 'B') {
        writeToAll(slot, legalDigits(digits, line));
        return;
    }
    const bool isReal = value.front() == 'r' || value.front() == 'R';
    if (isReal && slot.kind == ValueKind::Real) {
        if (!slot.isKept)
            return;
        append('r');
        append(digits);
        append(' ');
        append(slot.identifier);
        append('\n');
        return;
    }
    // A text has no form here; that its signals are left away is said once, with their number.
    if (slot.kind != ValueKind::Text)
        badValues.note(whole, line);
}

void StandardBody::word(VcdWord kind, std::string_view word, std::uint64_t line) {
    if (m_isOfPlugin) {
        // One block takes the place of one for each tracer.
        if (kind == VcdWord::DumpVars && !m_hasTime)
            noteValue(line);
        else if (kind == VcdWord::Unknown)
            unknownWords.note(word, line);
        return;
    }
    if (kind == VcdWord::Unknown) {
        unknownWords.note(word, line);
        return;
    }
    if (kind == VcdWord::End && m_numOpenDumps == 0)
        return;
    noteValue(line);
    m_numOpenDumps = kind == VcdWord::End ? 0 : 1;
    append(word);
    append('\n');
}

void StandardBody::cut(std::string_view text, std::uint64_t line) {
    // A new time, even half of one, says that the step before it is whole.
    if (text.starts_with('#')) {
        closeStep();
        m_stepLine = line;
    }
    m_isCut = true;
}

// Digits of a vector in four states. Valid until the next call.
std::string_view StandardBody::legalDigits(std::string_view digits, std::uint64_t line) {
    m_digits = digits;
    for (char& c : m_digits) {
        const char legal = fourState(c);
        if (legal == 0)
            badValues.note(digits, line);
        c = legal == 0 ? 'x' : legal;
    }
    if (m_digits.empty())
        m_digits = "x";
    return m_digits;
}

void StandardBody::writeToAll(const StandardSlot& slot, std::string_view digits) {
    writeDigits(slot, digits);
    for (const std::uint32_t copy : slot.copies)
        writeDigits(m_signals.slot(copy), digits);
}

// Digits in the declared width: the low ones of more, while fewer stand for themselves.
void StandardBody::writeDigits(const StandardSlot& slot, std::string_view digits) {
    if (!slot.isKept || slot.kind == ValueKind::Real || slot.kind == ValueKind::Text)
        return;
    if (digits.size() > slot.width)
        digits.remove_prefix(digits.size() - slot.width);
    if (slot.width == 1) {
        append(digits.back());
    } else {
        append('b');
        append(digits);
        append(' ');
    }
    append(slot.identifier);
    append('\n');
}

// A scalar as the plugin prints one whose value isn't 0 or 1: a decimal number, signed, with the identifier
// right behind.
bool StandardBody::readNumber(std::string_view word, std::uint64_t line) {
    const auto end = word.find_first_not_of("0123456789", word.front() == '-' ? 1 : 0);
    if (end == std::string_view::npos || end == 0)
        return false;
    const std::uint32_t slotNumber = m_signals.table().find(word.substr(end));
    const auto value = wholeNumber<std::int64_t>(word.substr(0, end));
    if (slotNumber == IdentifierTable::s_none || !value)
        return false;
    if (!m_isOfPlugin)
        badValues.note(word, line);
    const auto bits = static_cast<std::uint32_t>(*value);
    std::array<char, 32> digits = {};
    for (std::size_t index = 0; index < digits.size(); ++index)
        digits[index] = (bits >> (digits.size() - 1 - index) & 1) ? '1' : '0';
    writeToAll(m_signals.slot(slotNumber), {digits.data(), digits.size()});
    return true;
}

void StandardBody::makeRoom(std::size_t size) {
    // A step that outgrows all bounds is written as it is.
    if (m_used > s_largestHeld)
        m_stepStart = m_used;
    m_output.write({m_buffer.get(), m_stepStart});
    m_used -= m_stepStart;
    std::memmove(m_buffer.get(), m_buffer.get() + m_stepStart, m_used);
    m_stepStart = 0;
    if (m_capacity - m_used >= size && m_used < m_capacity / 2)
        return;
    const std::size_t capacity = std::max(2 * m_capacity, m_used + size);
    auto larger = std::make_unique_for_overwrite<char[]>(capacity);
    std::memcpy(larger.get(), m_buffer.get(), m_used);
    m_buffer = std::move(larger);
    m_capacity = capacity;
}

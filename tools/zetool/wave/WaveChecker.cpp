#include "tools/zetool/wave/WaveChecker.h"

#include "tools/zetool/wave/StandardSignals.h"

#include <algorithm>
#include <set>

namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

// "a[3]"
bool endsInBitNumber(std::string_view name) {
    if (!name.ends_with(']'))
        return false;
    const auto open = name.rfind('[');
    if (open == std::string_view::npos || open == 0 || open + 2 >= name.size())
        return false;
    const std::string_view inner = name.substr(open + 1, name.size() - open - 2);
    return std::ranges::all_of(inner, isDigit);
}

} // namespace

std::vector<Trouble> nameTroubles(const VcdVariable& variable, bool isOfPlugin) {
    std::vector<Trouble> troubles;
    if (holdsEndWord(variable.name))
        troubles.push_back(Trouble::NameEndsStatement);
    else if (!isPlainName(variable.name))
        troubles.push_back(Trouble::NameHasBlank);
    if (variable.width <= 1 && isOfPlugin && endsInBitNumber(variable.name))
        troubles.push_back(Trouble::NameIsBit);
    if (variable.width == 0)
        troubles.push_back(Trouble::WidthIsZero);
    return troubles;
}

WaveChecker::WaveChecker(const VcdHeader& header, const WaveSignals& signals, const VcdSource& source)
    : m_header(header),
      m_source(source),
      m_isOfPlugin(header.isOfPlugin()),
      m_progress(source.input().size()),
      m_numbers(m_isOfPlugin),
      m_stepLine(header.lastLine) {
    checkDeclarations();
    checkStructure(signals);
}

void WaveChecker::checkDeclarations() {
    for (const VcdHeaderFault& fault : m_header.faults)
        m_troubles[Trouble::Header].note(fault.text, fault.line);
    if (!TimeScale::of(m_header.timescale, m_isOfPlugin).isStandard() && m_header.isWhole)
        m_troubles[Trouble::Timescale].note(m_header.timescale.empty() ? "none" : m_header.timescale,
                                            m_header.timescaleLine);
    std::set<std::string> paths;
    for (std::size_t index = 0; index < m_header.variables.size(); ++index) {
        const VcdVariable& variable = m_header.variables[index];
        checkName(variable);
        const bool isNewPath = paths.insert(m_header.path(variable) + ' ' + variable.range).second;
        if (!isNewPath)
            m_troubles[Trouble::NameIsDouble].note(variable.name, variable.line);
        const auto number = static_cast<std::uint32_t>(index);
        const std::uint32_t first = m_table.add(variable.identifier, number);
        if (first == number)
            continue;
        const VcdVariable& other = m_header.variables[first];
        if (std::max(other.width, 1u) != std::max(variable.width, 1u))
            m_troubles[Trouble::WidthsDiffer].note(variable.name, variable.line);
        // Two names in two scopes are how hierarchies spell one wire; in a flat file they are two signals.
        else if (isNewPath && variable.scope == other.scope && m_isOfPlugin)
            m_troubles[Trouble::IdentifierIsDouble].note(variable.name, variable.line);
    }
}

void WaveChecker::checkName(const VcdVariable& variable) {
    if (variable.scope == 0)
        m_troubles[Trouble::NoScopes].note(variable.name, variable.line);
    for (const Trouble trouble : nameTroubles(variable, m_isOfPlugin))
        m_troubles[trouble].note(variable.name, variable.line);
    if (valueKind(variable) == ValueKind::Text)
        m_troubles[Trouble::TextSignal].note(variable.name, variable.line);
}

void WaveChecker::checkStructure(const WaveSignals& signals) {
    const StructureDocument& document = m_header.structure;
    for (const std::uint64_t line : document.illFormedLines)
        m_troubles[Trouble::DocumentIllFormed].note("", line);
    for (const std::uint64_t line : document.unreadableLines)
        m_troubles[Trouble::DocumentUnreadable].note("", line);
    for (const std::uint64_t line : document.endLines)
        m_troubles[Trouble::DocumentEndsEarly].note("", line);
    for (const StructureSignal* signal : signals.undeclared())
        m_troubles[Trouble::DocumentUndeclared].note(signal->name, signal->line);
    if (!document.isThere)
        return;
    for (const WaveSignal& signal : signals.all())
        if (!signal.isListed)
            m_troubles[Trouble::DocumentUnlisted].note(signal.variable->name, signal.variable->line);
}

void WaveChecker::finish() {
    if (m_isOfPlugin && m_stepHasValues && lastStepIsWhole())
        m_troubles[Trouble::Cut].note("its blank line is missing", m_stepLine);
}

void WaveChecker::time(std::string_view text, std::uint64_t line) {
    std::uint64_t count = 0;
    if (!m_numbers.read(text, count)) {
        // Past 2^31 the numbers of the plugin are negative; those of other tools never should be.
        m_troubles[text.starts_with('-') ? Trouble::NegativeTime : Trouble::BadTime].note(text, line);
        return;
    }
    // A clock may be past the negative numbers before anything is written again.
    constexpr std::uint64_t s_half = std::uint64_t(1) << 31;
    if (m_numbers.isNegative() || (m_isOfPlugin && m_lastTime < s_half && count >= s_half))
        m_troubles[Trouble::NegativeTime].note(text, line);
    if (m_hasTime && count < m_lastTime)
        m_troubles[Trouble::FallingTime].note(text, line);
    m_hasTime = true;
    m_stepHasValues = false;
    m_lastTime = std::max(m_lastTime, count);
    m_stepLine = line;
}

void WaveChecker::scalar(std::string_view word, std::uint64_t line) {
    noteValue(word, line);
    const std::uint32_t number = m_table.find(word.substr(1));
    if (number == IdentifierTable::s_none) {
        m_troubles[isNumberForBit(word) ? Trouble::NumberForBit : Trouble::UnknownIdentifier].note(word,
                                                                                                   line);
        return;
    }
    const VcdVariable& variable = m_header.variables[number];
    const char value = word.front();
    if (s_vcdCharacters.classes[static_cast<unsigned char>(value)] != VcdCharacters::s_bit)
        m_troubles[isDigit(value) ? Trouble::NumberForBit : Trouble::UnknownDigit].note(word, line);
    if (variable.width > 1)
        m_troubles[Trouble::ScalarForVector].note(word, line);
}

void WaveChecker::vector(std::string_view whole, std::string_view value, std::string_view identifier,
                         bool isBits, std::uint64_t line) {
    noteValue(whole, line);
    const std::uint32_t number = m_table.find(identifier);
    if (number == IdentifierTable::s_none) {
        m_troubles[Trouble::UnknownIdentifier].note(identifier, line);
        return;
    }
    const VcdVariable& variable = m_header.variables[number];
    const bool isBinary = value.front() == 'b' || value.front() == 'B';
    if (isBinary && !isBits)
        m_troubles[Trouble::UnknownDigit].note(whole, line);
    if (isBinary && value.size() - 1 > std::max(variable.width, 1u))
        m_troubles[Trouble::TooManyDigits].note(whole, line);
}

void WaveChecker::word(VcdWord kind, std::string_view word, std::uint64_t line) {
    if (kind == VcdWord::Unknown)
        m_troubles[Trouble::UnknownWord].note(word, line);
}

void WaveChecker::cut(std::string_view text, std::uint64_t line) {
    m_troubles[Trouble::Cut].note(text, line);
}

// A decimal number with a known identifier right behind.
bool WaveChecker::isNumberForBit(std::string_view word) const {
    const auto end = word.find_first_not_of("0123456789", word.front() == '-' ? 1 : 0);
    return end != std::string_view::npos && end > 0 &&
           m_table.find(word.substr(end)) != IdentifierTable::s_none;
}

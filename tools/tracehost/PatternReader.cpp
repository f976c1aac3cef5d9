#include "tools/tracehost/PatternReader.h"

#include <algorithm>
#include <charconv>

TextNumbers::TextNumbers(std::deque<std::string>& texts) : m_texts(texts) {
    for (const std::string& text : texts)
        m_numbers.emplace(text, static_cast<std::uint32_t>(m_numbers.size()));
}

std::uint32_t TextNumbers::numberOf(const std::string& text) {
    const auto [place, isNew] = m_numbers.emplace(text, static_cast<std::uint32_t>(m_texts.size()));
    if (isNew)
        m_texts.push_back(text);
    return place->second;
}

std::uint32_t TextNumbers::mnemonicNumberOf(std::string text) {
    constexpr std::size_t s_mnemonicSize = 8;
    if (text.size() < s_mnemonicSize)
        text.resize(s_mnemonicSize, ' ');
    return numberOf(text);
}

namespace {

struct Options {
    std::uint32_t every = 1;
    std::uint32_t period = 0;
    std::uint32_t start = 0;
    std::uint32_t below = 0;
    std::uint32_t gap = 0;
    std::uint32_t seed = 0;
    std::uint32_t phase = 0;
    std::int32_t by = 1;
    bool repeat = false;
};

// What follows a pattern's operands: a word and a number.
struct NumberOption {
    std::string_view word;
    std::uint32_t Options::*value;
    std::uint32_t least;
    std::uint32_t most;
};

constexpr NumberOption s_numberOptions[] = {
    {"every", &Options::every, 1, s_maxClock}, {"period", &Options::period, 1, s_maxClock},
    {"start", &Options::start, 0, UINT32_MAX}, {"below", &Options::below, 1, UINT32_MAX},
    {"gap", &Options::gap, 0, s_maxClock},     {"seed", &Options::seed, 0, UINT32_MAX},
    {"phase", &Options::phase, 0, s_maxClock},
};
constexpr std::string_view s_by = "by";         // followed by a number that may be negative
constexpr std::string_view s_repeat = "repeat"; // stands alone

bool isOption(const Words::Word& word) {
    return !word.isQuoted &&
           (word.text == s_by || word.text == s_repeat ||
            std::ranges::any_of(s_numberOptions, [&](const auto& row) { return row.word == word.text; }));
}

std::int32_t signedNumberOf(const std::string& text) {
    try {
        const bool isNegative = text.starts_with('-');
        const auto number =
            static_cast<std::int32_t>(numberOf(text.substr(isNegative ? 1 : 0), "", 0, INT32_MAX));
        return isNegative ? -number : number;
    } catch (const ScenarioError&) {
        throw ScenarioError("by must be a number from -2147483647 to 2147483647, not " + text);
    }
}

// Operands as the pattern's words give them, and how a value among them is spelled.
struct PatternInput {
    std::vector<Words::Word> operands;
    Options options;
    const Field& field;
    TextNumbers& texts;

    std::uint32_t valueOf(const std::string& text) const {
        if (!field.isText)
            return numberOf(text, "value");
        return field.name == "mnemonic" ? texts.mnemonicNumberOf(text) : texts.numberOf(text);
    }
};

// Appends a value that lasts for some clocks to a table whose length so far is `end`.
void append(TablePattern& table, std::uint64_t& end, std::uint32_t value, std::uint64_t clocks) {
    if (table.entries.empty() || table.entries.back().value != value)
        table.entries.push_back({static_cast<Clock>(end), value});
    end += clocks;
    if (end > s_maxClock)
        throw ScenarioError("the pattern is longer than " + std::to_string(s_maxClock) + " clocks");
}

Pattern makeConstant(const PatternInput& input) {
    return constantPattern(input.valueOf(input.operands.front().text));
}

Pattern makeValues(const PatternInput& input) {
    TablePattern table;
    std::uint64_t end = 0;
    for (const auto& [text, isQuoted] : input.operands) {
        const std::size_t star = isQuoted ? std::string::npos : text.rfind('*');
        const std::uint64_t times =
            star == std::string::npos ? 1 : numberOf(text.substr(star + 1), "count", 1, s_maxClock);
        append(table, end, input.valueOf(text.substr(0, star)), times * input.options.every);
    }
    if (input.options.repeat)
        table.period = static_cast<Clock>(end);
    return table;
}

Pattern makeChanges(const PatternInput& input) {
    TablePattern table;
    for (const Words::Word& operand : input.operands) {
        const std::size_t colon = operand.text.find(':');
        if (colon == std::string::npos)
            throw ScenarioError("a change is CLOCK:VALUE, not '" + operand.text + "'");
        const Clock start = numberOf(operand.text.substr(0, colon), "clock", 0, s_maxClock);
        if (table.entries.empty() ? start != 0 : start <= table.entries.back().start)
            throw ScenarioError("the clocks of changes begin with 0 and ascend");
        table.entries.push_back({start, input.valueOf(operand.text.substr(colon + 1))});
    }
    table.period = input.options.period;
    if (table.period != 0 && table.period <= table.entries.back().start)
        throw ScenarioError("a period of " + std::to_string(table.period) + " ends before the last change");
    return table;
}

Pattern makeToggle(const PatternInput& input) {
    return CountPattern{.start = 0, .by = 1, .below = 2, .every = input.options.every};
}

Pattern makeCount(const PatternInput& input) {
    const Options& options = input.options;
    return CountPattern{options.start, options.by, options.below, options.every};
}

// Bytes on a line that rests high: a low start bit, eight data bits from the lowest up, a high stop bit.
Pattern makeSerial(const PatternInput& input) {
    const std::string& text = input.operands.front().text;
    const Clock bit = input.options.every;
    TablePattern table;
    std::uint64_t end = 0;
    for (const char c : text) {
        append(table, end, 0, bit);
        for (unsigned i = 0; i < 8; ++i)
            append(table, end, (static_cast<unsigned char>(c) >> i) & 1U, bit);
        append(table, end, 1, bit);
    }
    append(table, end, 1, input.options.gap);
    if (input.options.repeat)
        table.period = static_cast<Clock>(end);
    return table;
}

Pattern makeRandom(const PatternInput& input) {
    return RandomPattern{input.options.seed, input.options.below, input.options.every};
}

struct PatternRow {
    std::string_view word;
    std::size_t minOperands;
    std::size_t maxOperands;
    std::string_view operands; // in an error
    std::string_view options;  // those that it takes, a blank around each; `phase` goes with all
    bool takesTexts;
    Pattern (*make)(const PatternInput& input);
};

// The first row is the pattern that has no word: a value by itself.
constexpr PatternRow s_patterns[] = {
    {"", 1, 1, "one value", "", true, makeConstant},
    {"values", 1, SIZE_MAX, "values", " every repeat ", true, makeValues},
    {"changes", 1, SIZE_MAX, "changes", " period ", true, makeChanges},
    {"toggle", 0, 0, "no value", " every ", false, makeToggle},
    {"count", 0, 0, "no value", " start by below every ", false, makeCount},
    {"serial", 1, 1, "one text", " every gap repeat ", false, makeSerial},
    {"random", 0, 0, "no value", " seed below every ", false, makeRandom},
};

const PatternRow& takePatternRow(Words& words) {
    for (const PatternRow& row : s_patterns) {
        if (!row.word.empty() && words.takeIf(row.word))
            return row;
    }
    return s_patterns[0];
}

void readOptions(Words& words, const PatternRow& pattern, Options& options) {
    while (!words.empty()) {
        const bool isKnown = isOption(words.peek());
        const std::string& word = words.take("");
        if (!isKnown || (word != "phase" && pattern.options.find(" " + word + " ") == std::string_view::npos))
            throw ScenarioError("'" + word + "' doesn't go with " +
                                (pattern.word.empty() ? "a value" : "'" + std::string(pattern.word) + "'"));
        if (word == s_repeat) {
            options.repeat = true;
        } else if (word == s_by) {
            options.by = signedNumberOf(words.take("by is missing"));
        } else {
            const auto* row = std::ranges::find(s_numberOptions, word, &NumberOption::word);
            options.*row->value = words.takeNumber(row->word, row->least, row->most);
        }
    }
}

} // namespace

Segment readSegment(Words& words, const Field& field, TextNumbers& texts) {
    Segment segment;
    if (words.takeIf("from"))
        segment.from = words.takeNumber("from", 0, s_maxClock);
    if (words.empty())
        throw ScenarioError(std::string(field.name) + " needs a value");

    const PatternRow& row = takePatternRow(words);
    if (field.isText && !row.takesTexts)
        throw ScenarioError("'" + std::string(row.word) + "' makes numbers, and " + std::string(field.name) +
                            " is a text");
    PatternInput input{{}, {}, field, texts};
    while (!words.empty() && !isOption(words.peek()))
        input.operands.push_back(words.takeWord(""));
    if (input.operands.size() < row.minOperands || input.operands.size() > row.maxOperands)
        throw ScenarioError((row.word.empty() ? std::string(field.name) : "'" + std::string(row.word) + "'") +
                            " takes " + std::string(row.operands));
    readOptions(words, row, input.options);
    segment.phase = input.options.phase;
    segment.pattern = std::make_shared<const Pattern>(row.make(input));
    return segment;
}

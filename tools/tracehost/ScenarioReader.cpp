#include "tools/tracehost/ScenarioReader.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace {

// Enough for any device, and it keeps a slip of the pen from filling the memory.
constexpr std::uint32_t s_maxResources = 1'000'000;

// Stands for the number of the resource.
constexpr std::string_view s_placeholder = "{n}";

std::string withNumber(std::string_view text, std::size_t number) {
    std::string result;
    while (true) {
        const std::size_t place = text.find(s_placeholder);
        result += text.substr(0, place);
        if (place == std::string_view::npos)
            return result;
        result += std::to_string(number);
        text.remove_prefix(place + s_placeholder.size());
    }
}

struct Range {
    std::uint32_t first;
    std::uint32_t last;
};

// "3" or "0..7".
Range rangeOf(const std::string& text) {
    const std::size_t dots = text.find("..");
    const std::uint32_t first = numberOf(text.substr(0, dots), "resource number", 0, s_maxResources - 1);
    if (dots == std::string::npos)
        return {first, first};
    return {first, numberOf(text.substr(dots + 2), "resource number", first, s_maxResources - 1)};
}

void checkLength(bool fits) {
    if (!fits)
        throw ScenarioError("the program is longer than " + std::to_string(s_maxClock) +
                            " turns, or has more than a million runs");
}

} // namespace

const ScenarioReader::LineRow ScenarioReader::s_lines[] = {
    {"clocks", &ScenarioReader::readClocks},   {"frequency", &ScenarioReader::readFrequency},
    {"version", &ScenarioReader::readVersion}, {"start", &ScenarioReader::readStart},
    {"garbage", &ScenarioReader::readGarbage}, {"instance", &ScenarioReader::readInstance},
    {"notify", &ScenarioReader::readNotify},   {"node", &ScenarioReader::readNode},
    {"core", &ScenarioReader::readCore},       {"program", &ScenarioReader::readProgram},
    {"run", &ScenarioReader::readRun},         {"idle", &ScenarioReader::readIdle},
    {"loop", &ScenarioReader::readLoop},       {"end", &ScenarioReader::readEnd},
};

ScenarioReader::ScenarioReader(std::string fileName) : m_fileName(std::move(fileName)) {}

namespace {

// The next line, whether it ends as in Unix or with a carriage return before its end.
bool nextLine(std::istream& stream, std::string& line) {
    if (!std::getline(stream, line))
        return false;
    if (line.ends_with('\r'))
        line.pop_back();
    return true;
}

} // namespace

Scenario ScenarioReader::read(std::istream& stream) {
    std::string line;
    std::string rest;
    try {
        for (unsigned int next = 1; nextLine(stream, line);) {
            m_line = next++;
            for (; line.ends_with('\\') && nextLine(stream, rest); ++next)
                line.replace(line.size() - 1, 1, rest);
            readLine(line);
        }
        closeProgram();
    } catch (const ScenarioError& error) {
        throw ScenarioError(m_fileName + ":" + std::to_string(m_line) + ": " + error.what());
    }
    std::ranges::stable_sort(m_scenario.notifications, {}, &Notification::clock);
    return std::move(m_scenario);
}

void ScenarioReader::readLine(const std::string& line) {
    Words words(line);
    if (words.empty())
        return;
    const std::string word = words.take("");
    if (readKeyword(word, words) || readResource(word, words, line))
        return;
    readField(line);
}

bool ScenarioReader::readKeyword(const std::string& word, Words& words) {
    const LineRow* row = std::ranges::find(s_lines, word, &LineRow::word);
    if (row == std::end(s_lines))
        return false;
    (this->*row->read)(words);
    words.expectEnd();
    return true;
}

// ---- Settings

void ScenarioReader::readClocks(Words& words) {
    m_scenario.clocks = words.takeNumber("the number of clocks", 0, s_maxClock);
    m_scenario.hasClocks = true;
}

void ScenarioReader::readFrequency(Words& words) {
    const std::string& text = words.take("the frequency is missing");
    const char* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, m_scenario.frequency);
    if (result.ec != std::errc() || result.ptr != end || !std::isfinite(m_scenario.frequency) ||
        m_scenario.frequency <= 0)
        throw ScenarioError("the frequency must be a number of MHz above 0, not " + text);
}

void ScenarioReader::readVersion(Words& words) {
    m_scenario.version = words.take("the version is missing");
}

void ScenarioReader::readStart(Words& words) {
    m_scenario.firstCycle = words.takeNumber("the first cycle");
}

void ScenarioReader::readGarbage(Words&) {
    m_scenario.garbage = true;
}

void ScenarioReader::readInstance(Words& words) {
    m_scenario.instances.push_back(words.take("instance needs its arguments, in one pair of quotes"));
}

void ScenarioReader::readNotify(Words& words) {
    Notification notification{};
    notification.line = m_line;
    notification.instance = words.takeNumber("the instance");
    notification.number = words.takeNumber("the notification");
    if (!words.takeIf("at"))
        throw ScenarioError("notify needs a clock: notify INSTANCE NOTIFICATION at CLOCK");
    notification.clock = words.takeNumber("the clock", 1, s_maxClock);
    m_scenario.notifications.push_back(notification);
}

// ---- The device

void ScenarioReader::readNode(Words& words) {
    m_node = words.takeNumber("the node number", 0, 0xffff);
    m_hasNode = true;
    closeProgram();
    m_core = nullptr;
    m_kind = nullptr;
}

void ScenarioReader::readCore(Words& words) {
    const std::uint32_t number = words.takeNumber("the core number", 0, 0xffff);
    if (!m_hasNode)
        throw ScenarioError("a core needs a 'node' line before it");
    closeProgram();
    m_kind = nullptr;
    std::vector<Core>& cores = m_scenario.cores;
    const Core core{m_node, number, {}, {}};
    const auto [place, isNew] = m_places.try_emplace(core.pid(), cores.size());
    if (isNew)
        cores.push_back(core);
    m_core = &cores[place->second];
}

Core& ScenarioReader::currentCore(std::string_view wanted) {
    if (!m_core)
        throw ScenarioError("'" + std::string(wanted) + "' needs a 'core' line before it");
    return *m_core;
}

// Opens a range of resources: those that exist already, or new ones behind them.
bool ScenarioReader::readResource(const std::string& word, Words& words, const std::string& line) {
    const auto kinds = resourceKinds();
    const auto kind = std::ranges::find(kinds, word, &ResourceKindInfo::word);
    if (kind == kinds.end())
        return false;
    closeProgram();
    std::vector<Resource>& resources = kind->isOfDevice ? m_scenario.pads : currentCore(word).of(kind->kind);
    Range range{0, 0}; // a core's instruction has no number
    if (kind->kind != ResourceKind::Instruction)
        range = rangeOf(words.take(word + " needs a number or a range, such as 0..7"));
    if (kind->kind == ResourceKind::Instruction && !m_core->programs.empty())
        throw ScenarioError("the core has programs; it can't have 'instruction' too");

    const bool isNew = range.first == resources.size();
    if (!isNew && range.last >= resources.size())
        throw ScenarioError("the next new " + word + " is number " + std::to_string(resources.size()));
    const bool isNamed = !words.empty() && kind->isNamed;
    if (isNew && kind->isNamed && !isNamed)
        throw ScenarioError("a new " + word + " needs a name");
    if (!isNew && isNamed)
        throw ScenarioError(word + " " + std::to_string(range.first) + " has its name already");
    if (isNamed)
        words.take("");
    words.expectEnd();

    for (std::uint32_t number = range.first; isNew && number <= range.last; ++number) {
        Resource& resource = resources.emplace_back();
        if (kind->isNamed) {
            Words numbered(withNumber(line, number));
            numbered.take("");
            numbered.take("");
            resource.name = numbered.take("");
        }
    }
    m_kind = &*kind;
    m_resources = &resources;
    m_first = range.first;
    m_last = range.last;
    return true;
}

void ScenarioReader::readField(const std::string& line) {
    const auto readOne = [&](std::string_view text, std::size_t firstTaker, std::size_t lastTaker) {
        Words words(text);
        const std::string& name = words.take("");
        if (!m_kind)
            throw ScenarioError("unknown word '" + name + "'");
        const auto field = std::ranges::find(m_kind->fields, name, &Field::name);
        if (field == m_kind->fields.end())
            throw ScenarioError(std::string(m_kind->word) + " has no field '" + name + "'");
        const Segment segment = readSegment(words, *field, m_texts);
        for (std::size_t number = firstTaker; number <= lastTaker; ++number)
            addSegment((*m_resources)[number], *field, segment);
    };
    // One pattern serves the whole range, unless the line differs from number to number.
    if (line.find(s_placeholder) == std::string::npos) {
        readOne(line, m_first, m_last);
        return;
    }
    for (std::size_t number = m_first; number <= m_last; ++number)
        readOne(withNumber(line, number), number, number);
}

void ScenarioReader::addSegment(Resource& resource, const Field& field, Segment segment) {
    const auto wave = std::ranges::find(resource.waves, &field, &Wave::field);
    if (wave == resource.waves.end()) {
        resource.waves.push_back({&field, {std::move(segment)}});
        return;
    }
    if (segment.from <= wave->segments.back().from)
        throw ScenarioError(std::string(field.name) + " from " + std::to_string(segment.from) +
                            " must come later than its line before, from " +
                            std::to_string(wave->segments.back().from));
    wave->segments.push_back(std::move(segment));
}

// ---- What a thread executes

void ScenarioReader::readProgram(Words& words) {
    closeProgram();
    Core& core = currentCore("program");
    if (!core.of(ResourceKind::Instruction).empty())
        throw ScenarioError("the core has 'instruction'; it can't have programs too");
    const std::uint32_t thread = words.takeNumber("the thread of the program");
    if (std::ranges::any_of(core.programs, [&](const Program& each) { return each.thread() == thread; }))
        throw ScenarioError("thread " + std::to_string(thread) + " has its program already");
    core.programs.emplace_back(thread, words.takeIf("repeat"));
    m_kind = nullptr;
    m_inProgram = true;
}

Program& ScenarioReader::currentProgram(std::string_view word) {
    if (!m_inProgram)
        throw ScenarioError("'" + std::string(word) + "' needs a 'program' line before it");
    return m_core->programs.back();
}

void ScenarioReader::readRun(Words& words) {
    Program& program = currentProgram("run");
    const std::uint32_t functionName = m_texts.numberOf(words.take("run needs the name of a function"));
    const std::uint32_t firstPc = words.takeNumber("the program counter");
    std::vector<std::uint32_t> mnemonics;
    Clock times = 1;
    while (!words.empty()) {
        if (words.takeIf("times")) {
            times = words.takeNumber("times", 1, s_maxClock);
            words.expectEnd();
        } else {
            mnemonics.push_back(m_texts.mnemonicNumberOf(words.take("")));
        }
    }
    if (mnemonics.empty())
        throw ScenarioError("run needs mnemonics behind the program counter");
    checkLength(program.run(functionName, firstPc, mnemonics, times));
}

void ScenarioReader::readIdle(Words& words) {
    Program& program = currentProgram("idle");
    checkLength(program.idle(words.takeNumber("the number of turns", 1, s_maxClock)));
}

void ScenarioReader::readLoop(Words& words) {
    currentProgram("loop").openLoop();
    m_loopTimes.push_back(words.takeNumber("the number of passes", 1, s_maxClock));
}

void ScenarioReader::readEnd(Words&) {
    Program& program = currentProgram("end");
    if (m_loopTimes.empty())
        throw ScenarioError("'end' needs a 'loop' line before it");
    const Clock times = m_loopTimes.back();
    m_loopTimes.pop_back();
    checkLength(program.closeLoop(times));
}

// Every line that opens something else ends the program.
void ScenarioReader::closeProgram() {
    if (!m_loopTimes.empty())
        throw ScenarioError("the program's 'loop' has no 'end'");
    m_inProgram = false;
}

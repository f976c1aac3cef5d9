#include "tests/support/SampleWave.h"

#include <functional>

namespace {

// One declared signal, where it stands and how it starts.
struct Signal {
    std::string identifier;
    std::string name;
    unsigned int width = 1;
    bool startsUnknown = false;
    bool isListed = true;
};

struct Group {
    std::string name; // empty: the signals stand in the category itself
    std::string radix;
    std::vector<Signal> signals;
    std::string indent;
};

struct Category {
    std::string name;
    std::vector<Group> groups;
};

struct Row {
    const char* letter;
    unsigned int width;
    const char* suffix;
    bool isDetailed = false;
    bool isListed = true;
};

constexpr Row s_portRows[] = {
    {"a", 0, ""},
    {"b", 1, "_inuse"},
    {"c", 1, "_tWaiting"},
    {"d", 1, "_direction"},
    {"l", 32, "_outputThreadPc"},
    {"m", 32, "_portDetails"},
    {"e", 32, "_shiftReg", true},
    {"f", 1, "_shiftRegValid", true, false},
    {"g", 32, "_shiftRegSize", true},
    {"h", 32, "_shiftRegCount", true},
    {"i", 32, "_transferReg", true},
    {"j", 1, "_transferRegFull", true},
    {"k", 32, "_transferRegSize", true},
    {"n", 32, "_portTime", true},
    {"o", 32, "_timeReg", true},
};
constexpr Row s_threadRows[] = {
    {"a", 1, "_inuse"},
    {"b", 1, "_waiting"},
    {"c", 64, "_waitingResourceType"},
    {"d", 8, "_waitingResourceNumber"},
};
constexpr Row s_clockBlockRows[] = {
    {"a", 1, "_inuse"},    {"b", 1, "_started"},  {"c", 8, "_tWaiting"},
    {"e", 1, "_riseEdge"}, {"f", 1, "_fallEdge"},
};
constexpr Row s_timerRows[] = {{"a", 64, "_time"}, {"b", 1, "_inuse"}, {"c", 1, "_tWaiting"}};

template<std::size_t size>
Category numbered(const TracedCore& core, const char* category, const char* resource, const char* prefix,
                  unsigned int count, const Row (&rows)[size]) {
    Category result{category, {}};
    for (unsigned int index = 0; index < count; ++index) {
        const std::string name = resource + std::to_string(index);
        Group group{name, "HEX", {}, std::string(20, ' ')};
        for (const Row& row : rows)
            group.signals.push_back({prefix + core.tag + row.letter + std::to_string(index),
                                     core.name + "_" + name + row.suffix, row.width});
        result.groups.push_back(group);
    }
    return result;
}

Category ports(const TracedCore& core) {
    Category result{"Ports", {}};
    for (std::size_t index = 0; index < core.ports.size(); ++index) {
        const TracedPort& port = core.ports[index];
        Group group{port.name, "HEX", {}, std::string(20, ' ')};
        for (const Row& row : s_portRows)
            if (!row.isDetailed || core.hasDetailedPorts)
                group.signals.push_back({"po" + core.tag + row.letter + std::to_string(index),
                                         core.name + "_" + port.name + row.suffix,
                                         row.width == 0 ? port.width : row.width, false, row.isListed});
        result.groups.push_back(group);
    }
    return result;
}

Category instructions(const TracedCore& core) {
    const std::string start = core.name + "_INSTRUCTION_";
    const std::string indent(16, ' ');
    return {"Instructions",
            {{"", "HEX", {{"in" + core.tag + "a0", start + "PC", 32, true}}, indent},
             {"", "HEX", {{"in" + core.tag + "b0", start + "THREAD_ID", 8, true}}, indent},
             {"", "ASCII", {{"in" + core.tag + "c0", start + "MNEMONIC", 64, true}}, indent}}};
}

Category functions(const TracedCore& core) {
    Group group{"", "ASCII", {}, std::string(20, ' ')};
    for (unsigned int thread = 0; thread < core.numFunctionThreads; ++thread)
        group.signals.push_back({"fu" + core.tag + "a" + std::to_string(thread),
                                 core.name + "_Functions_Thread" + std::to_string(thread), 64, true});
    return {"Functions", {group}};
}

// In the order of the plugin's tracers.
std::vector<Category> categories(const TracedCore& core) {
    std::vector<Category> all;
    if (!core.ports.empty())
        all.push_back(ports(core));
    if (core.hasCycles)
        all.push_back(
            {"Cycles",
             {{"", "DECIMAL", {{"_" + core.tag, core.name + "_CYCLES", 32}}, std::string(16, ' ')}}});
    if (core.numThreads > 0)
        all.push_back(numbered(core, "Threads", "Thread", "t", core.numThreads, s_threadRows));
    if (core.numClockBlocks > 0)
        all.push_back(numbered(core, "ClockBlocks", "ClkBlk", "c", core.numClockBlocks, s_clockBlockRows));
    if (core.numTimers > 0)
        all.push_back(numbered(core, "Timers", "Timer", "ti", core.numTimers, s_timerRows));
    if (core.hasInstructions)
        all.push_back(instructions(core));
    if (core.numFunctionThreads > 0)
        all.push_back(functions(core));
    return all;
}

Category padCategory(const std::vector<std::string>& pads) {
    Group group{"", "HEX", {}, std::string(8, ' ')};
    for (std::size_t index = 0; index < pads.size(); ++index)
        group.signals.push_back({"paa" + std::to_string(index), pads[index], 1});
    return {"Pads", {group}};
}

std::string hierarchy(const Category& category, const std::string& indent) {
    std::string text = indent + "<Category name=\"" + category.name + "\">\n";
    for (const Group& group : category.groups) {
        if (!group.name.empty())
            text += std::string(16, ' ') + "<Group name=\"" + group.name + "\">\n";
        for (const Signal& signal : group.signals)
            if (signal.isListed)
                text +=
                    group.indent + "<Signal name=\"" + signal.name + "\" radix=\"" + group.radix + "\"/>\n";
        if (!group.name.empty())
            text += std::string(16, ' ') + "</Group>\n";
    }
    return text + indent + "</Category>\n";
}

std::string declarations(const Category& category) {
    std::string text;
    for (const Group& group : category.groups)
        for (const Signal& signal : group.signals)
            text += "$var wire " + std::to_string(signal.width) + " " + signal.identifier + " " +
                    signal.name + " $end\n";
    return text;
}

std::string initialValues(const Category& category) {
    std::string text = "$dumpvars\n";
    for (const Group& group : category.groups)
        for (const Signal& signal : group.signals)
            text += signal.width < 2 ? "0" + signal.identifier + "\n"
                                     : "b" + std::string(signal.width, signal.startsUnknown ? 'x' : '0') +
                                           " " + signal.identifier + "\n";
    return text + "$end\n\n";
}

struct ValueRow {
    const char* value;
    const char* text;
};

std::string doc(const std::string& name, const std::string& description, std::vector<ValueRow> values = {}) {
    std::string text = "        <SignalDoc name=\"" + name + "\" description=\"" + description + "\">\n" +
                       "            <ValueDocs>\n";
    for (const ValueRow& row : values)
        text += std::string("                <ValueDoc value=\"") + row.value + "\" text=\"" + row.text +
                "\"/>\n";
    return text + "            </ValueDocs>\n        </SignalDoc>\n";
}

std::string docs(const SampleWave& wave) {
    std::string text;
    if (!wave.pads.empty())
        text += doc(".*Pad\\d+", "The value on the pad");
    if (wave.cores.empty())
        return text;
    const TracedCore& core = wave.cores.front();
    const std::string port = "stdcore\\[\\d+\\]_ZS1_PORT_\\d+[A-Z]";
    if (!core.ports.empty())
        text +=
            doc(port + "_direction", "High if the port is in output mode, low if in input mode",
                {{"0", "The port is in input mode"}, {"1", "The port is in output mode"}}) +
            doc(port + "_inuse", "High if the port is in use",
                {{"0", "The port is not in use"}, {"1", "The port is in use"}}) +
            doc(port + "_tWaiting", "High if any threads are waiting on the port",
                {{"0", "No threads are waiting on this port"}, {"1", "Threads are waiting on this port"}}) +
            doc(port, "Provides a view of the retimed pads for the port") +
            doc(port + "_portTime", "The value of the port counter") +
            doc(port + "_timeReg", "The value of the ports timestamp (ZC's @ operator)") +
            doc(port + "_transferReg", "The data in the ports transfer register") +
            doc(port + "_shiftReg", "The data in the ports shift register");
    if (core.hasCycles)
        text += doc(".*CYCLES", "The current core clock cycle number");
    if (core.numThreads > 0)
        text += doc(".*Thread\\d+_inuse", "High if the thread is in use",
                    {{"0", "The thread is not in use"}, {"1", "The thread is in use"}}) +
                doc(".*Thread\\d+_waiting", "High if the thread is waiting on a resource",
                    {{"0", "The thread is not waiting on a resource"},
                     {"1", "The thread is waiting on a resource"}}) +
                doc(".*Thread\\d+_waitingResourceType", "If the thread is waiting, this is the resource type "
                                                        "that is causing the wait (ASCII format)") +
                doc(".*Thread\\d+_waitingResourceNumber",
                    "If the thread is waiting, this is the resource id that is causing the wait");
    if (core.hasInstructions)
        text += doc(".*INSTRUCTION_PC", "The PC value of the instruction") +
                doc(".*INSTRUCTION_THREAD_ID", "The thread number of the instruction") +
                doc(".*INSTRUCTION_MNEMONIC", "The mnemonic of the instruction (ASCII format)");
    return text;
}

std::string structure(const SampleWave& wave) {
    std::string text =
        "$comment\n<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Structure>\n    <Date value=\"" + wave.date +
        "\"/>\n    <Hierarchy>\n";
    if (!wave.pads.empty())
        text += hierarchy(padCategory(wave.pads), std::string(4, ' '));
    for (const TracedCore& core : wave.cores) {
        text += "        <Core name=\"" + core.name + "\">\n";
        for (const Category& category : categories(core))
            text += hierarchy(category, std::string(12, ' '));
        text += "        </Core>\n";
    }
    text += "    </Hierarchy>\n    <ValueAliases>\n";
    for (const TracedCore& core : wave.cores) {
        if (core.numFunctionThreads == 0)
            continue;
        text += "        <ValueAliasMap coreName=\"" + core.name + "\" category=\"functions\">\n";
        for (const auto& [name, alias] : core.functions)
            text += "            <Entry name=\"" + name + "\" alias=\"" + alias + "\"/>\n";
        text += "        </ValueAliasMap>\n";
    }
    text +=
        "    </ValueAliases>\n    <SignalDocs>\n" + docs(wave) + "    </SignalDocs>\n    <SignalAliases>\n";
    for (const TracedCore& core : wave.cores) {
        text += "        <SignalAliasMap coreName=\"" + core.name + "\">\n";
        for (const TracedPort& port : core.ports)
            if (!port.userName.empty())
                text += "            <Entry name=\"" + port.name + "\" alias=\"" + port.userName + "\"/>\n";
        text += "        </SignalAliasMap>\n";
    }
    return text + "    </SignalAliases>\n</Structure>\n$end\n\n";
}

} // namespace

std::string SampleWave::start() const {
    std::vector<Category> all;
    if (!pads.empty())
        all.push_back(padCategory(pads));
    for (const TracedCore& core : cores)
        for (const Category& category : categories(core))
            all.push_back(category);

    std::string text = "$date\n  " + date + "\n$end\n\n" +
                       "$version\n  Zcore C-Simulator + WaveTrace plugin (interface version: 1.0)\n$end\n\n" +
                       "$timescale\n  " + timescale + "\n$end\n\n" + structure(*this);
    for (const Category& category : all)
        text += declarations(category);
    text += "\n$enddefinitions $end\n\n";
    for (const Category& category : all)
        text += initialValues(category);
    return text;
}

#include "tools/tracehost/Simulation.h"

#include "tools/tracehost/PluginWatch.h"

#include <algorithm>
#include <cstring>

Simulation* Simulation::s_current = nullptr;

namespace {

void reservedSlot() {
    PluginWatch::fault("it called a slot of the callback record that is reserved");
}

// A port that nobody describes is one bit wide; everything else rests at 0.
void setDefaults(TracePortState& port, const Resource& resource) {
    port.name = resource.name.c_str();
    port.width = 1;
}

void setDefaults(TracePadState& pad, const Resource& resource) {
    pad.name = resource.name.c_str();
}

template<class Record>
void setDefaults(Record&, const Resource&) {}

template<class Record>
const Record& recordAt(const std::vector<Record>& records, unsigned int number, ResourceKind kind) {
    if (number >= records.size())
        PluginWatch::fault("it asked for " + std::string(resourceKind(kind).word) + " " +
                           std::to_string(number) + " of " + std::to_string(records.size()));
    return records[number];
}

// The fields that a plugin may rely on: those that the kind lists, and the texts.
template<class Record>
void copyListed(Record& to, const Record& from, ResourceKind kind) {
    for (const Field& field : resourceKind(kind).fields)
        std::memcpy(reinterpret_cast<char*>(&to) + field.offset,
                    reinterpret_cast<const char*>(&from) + field.offset, sizeof(unsigned int));
    if constexpr (requires { to.name; })
        to.name = from.name;
}

void copyListed(TraceInstructionState& to, const TraceInstructionState& from, ResourceKind) {
    to.valid = from.valid;
    to.thread = from.thread;
    to.pc = from.pc;
    to.mnemonic = from.mnemonic;
    to.functionName = from.functionName;
}

// Fills a record with numbers that differ from call to call.
void spoil(void* record, std::size_t size, std::uint32_t& garbage) {
    for (std::size_t i = 0; i < size; i += sizeof garbage) {
        garbage = garbage * 1664525U + 1013904223U; // a linear congruential generator of full period
        std::memcpy(static_cast<char*>(record) + i, &garbage, sizeof garbage);
    }
}

} // namespace

// ---- What plugins see

template<bool withGarbage>
struct Simulation::Slots {
    template<class Record>
    static void give(Record* state, const Record& truth, ResourceKind kind) {
        if constexpr (withGarbage) {
            spoil(state, sizeof *state, s_current->m_garbage);
            copyListed(*state, truth, kind);
        } else {
            *state = truth;
        }
    }

    static const char* getInterfaceVersion() { return s_current->m_scenario.version.c_str(); }
    static double getClockFrequency() { return s_current->m_scenario.frequency; }
    static unsigned int getCycleCount() { return s_current->m_scenario.firstCycle + s_current->m_clock; }

    static void getInstructionState(unsigned int pid, unsigned int index, TraceInstructionState* state) {
        const CoreState& core = s_current->core(pid);
        if (index != 0)
            PluginWatch::fault("it asked for instruction " + std::to_string(index) + " of 1");
        give(state, s_current->instructionOf(core), ResourceKind::Instruction);
    }

    static unsigned int getNumThreads(unsigned int pid) {
        return static_cast<unsigned int>(s_current->core(pid).threads.size());
    }
    static void getThreadState(unsigned int pid, unsigned int thread, TraceThreadState* state) {
        give(state, recordAt(s_current->core(pid).threads, thread, ResourceKind::Thread),
             ResourceKind::Thread);
    }
    static unsigned int getNumPorts(unsigned int pid) {
        return static_cast<unsigned int>(s_current->core(pid).ports.size());
    }
    static void getPortState(unsigned int pid, unsigned int port, TracePortState* state) {
        give(state, recordAt(s_current->core(pid).ports, port, ResourceKind::Port), ResourceKind::Port);
    }
    static unsigned int getNumTimers(unsigned int pid) {
        return static_cast<unsigned int>(s_current->core(pid).timers.size());
    }
    static void getTimerState(unsigned int pid, unsigned int timer, TraceTimerState* state) {
        give(state, recordAt(s_current->core(pid).timers, timer, ResourceKind::Timer), ResourceKind::Timer);
    }
    static unsigned int getNumClockBlocks(unsigned int pid) {
        return static_cast<unsigned int>(s_current->core(pid).clockBlocks.size());
    }
    static void getClockBlockState(unsigned int pid, unsigned int clockBlock, TraceClockBlockState* state) {
        give(state, recordAt(s_current->core(pid).clockBlocks, clockBlock, ResourceKind::ClockBlock),
             ResourceKind::ClockBlock);
    }
    static unsigned int getNumPads() { return static_cast<unsigned int>(s_current->m_pads.size()); }
    static void getPadState(unsigned int pad, TracePadState* state) {
        give(state, recordAt(s_current->m_pads, pad, ResourceKind::Pad), ResourceKind::Pad);
    }

    static TracePluginCallbacks record() {
        TracePluginCallbacks record{};
        const auto reserve = [](auto& slots) { std::fill(std::begin(slots), std::end(slots), reservedSlot); };
        record.getInterfaceVersion = getInterfaceVersion;
        record.getClockFrequency = getClockFrequency;
        record.getCycleCount = getCycleCount;
        reserve(record.reserved3);
        record.getInstructionState = getInstructionState;
        record.getNumThreads = getNumThreads;
        record.getThreadState = getThreadState;
        record.getNumPorts = getNumPorts;
        record.getPortState = getPortState;
        reserve(record.reserved23);
        record.getNumTimers = getNumTimers;
        record.getTimerState = getTimerState;
        reserve(record.reserved28);
        record.getNumClockBlocks = getNumClockBlocks;
        record.getClockBlockState = getClockBlockState;
        record.getNumPads = getNumPads;
        record.getPadState = getPadState;
        return record;
    }
};

const Simulation::CoreState& Simulation::core(std::uint32_t pid) {
    if (m_lastCore && m_lastCore->pid == pid)
        return *m_lastCore;
    const auto place = m_places.find(pid);
    if (place != m_places.end())
        return *(m_lastCore = &m_cores[place->second]);
    PluginWatch::fault("it asked for core " + std::to_string(pid & 0xffff) + " of node " +
                       std::to_string(pid >> 16) + ", which the scenario doesn't have");
}

TraceInstructionState Simulation::instructionOf(const CoreState& core) const {
    TraceInstructionState state{};
    state.valid = core.instruction.valid;
    state.thread = core.instruction.thread;
    state.pc = core.instruction.pc;
    state.mnemonic = m_scenario.texts[core.instruction.mnemonic].c_str();
    state.functionName = m_scenario.texts[core.instruction.functionName].c_str();
    return state;
}

// ---- The device in motion

Simulation::Simulation(const Scenario& scenario)
    : m_scenario(scenario), m_callbacks(scenario.garbage ? Slots<true>::record() : Slots<false>::record()) {
    m_cores.reserve(scenario.cores.size());
    for (const Core& core : scenario.cores) {
        CoreState& state = m_cores.emplace_back();
        state.pid = core.pid();
        m_places.emplace(core.pid(), m_places.size());
        state.core = &core;
        state.instruction = {.mnemonic = Scenario::s_blankMnemonic, .functionName = Scenario::s_noFunction};
        addRecords(core.of(ResourceKind::Port), state.ports);
        addRecords(core.of(ResourceKind::Thread), state.threads);
        addRecords(core.of(ResourceKind::Timer), state.timers);
        addRecords(core.of(ResourceKind::ClockBlock), state.clockBlocks);
        for (const Resource& instruction : core.of(ResourceKind::Instruction))
            addDrivers(instruction, &state.instruction);
        if (!core.programs.empty())
            m_busyCores.push_back(&state);
    }
    addRecords(scenario.pads, m_pads);
    for (Driver& driver : m_drivers)
        drive(driver);
    execute();
    s_current = this;
}

Simulation::~Simulation() {
    s_current = nullptr;
}

template<class Record>
void Simulation::addRecords(const std::vector<Resource>& resources, std::vector<Record>& records) {
    records.resize(resources.size()); // once: drivers keep the addresses
    for (std::size_t i = 0; i < resources.size(); ++i) {
        setDefaults(records[i], resources[i]);
        addDrivers(resources[i], &records[i]);
    }
}

void Simulation::addDrivers(const Resource& resource, void* record) {
    for (const Wave& wave : resource.waves) {
        auto* target = reinterpret_cast<unsigned int*>(static_cast<char*>(record) + wave.field->offset);
        m_drivers.push_back({target, &wave.segments.front(), &wave.segments.back(), 0, nullptr});
    }
}

// Brings the field to what it shows at the present clock, and puts it where its next change is found.
void Simulation::drive(Driver& driver) {
    while (driver.segment != driver.lastSegment && driver.segment[1].from <= m_clock)
        ++driver.segment;
    const Segment& segment = *driver.segment;
    if (segment.from > m_clock) {
        driver.due = segment.from;
    } else {
        const PatternStep step = stepAt(*segment.pattern, m_clock - segment.from + segment.phase);
        *driver.target = step.value;
        driver.due = s_never;
        if (step.until != s_never && step.until - segment.phase < s_never - segment.from)
            driver.due = segment.from + (step.until - segment.phase);
        if (driver.segment != driver.lastSegment)
            driver.due = std::min(driver.due, driver.segment[1].from);
    }
    if (driver.due == s_never)
        return;
    Driver*& slot = m_slots[driver.due % s_numSlots];
    driver.next = slot;
    slot = &driver;
}

void Simulation::advance() {
    ++m_clock;
    Driver*& slot = m_slots[m_clock % s_numSlots];
    Driver* driver = slot;
    slot = nullptr; // those of later rounds come back, and so does a field that moves once a round
    while (driver) {
        Driver& each = *driver;
        driver = each.next;
        if (each.due == m_clock) {
            drive(each);
        } else {
            each.next = slot;
            slot = &each;
        }
    }
    execute();
}

void Simulation::execute() {
    for (CoreState* core : m_busyCores) {
        const std::vector<Program>& programs = core->core->programs;
        const auto numPrograms = static_cast<Clock>(programs.size());
        const Program& program = programs[m_clock % numPrograms];
        const Program::Instruction instruction = program.at(m_clock / numPrograms);
        core->instruction.valid = instruction.valid;
        if (!instruction.valid)
            continue;
        core->instruction.thread = program.thread();
        core->instruction.pc = instruction.pc;
        core->instruction.mnemonic = instruction.mnemonic;
        core->instruction.functionName = instruction.functionName;
    }
}

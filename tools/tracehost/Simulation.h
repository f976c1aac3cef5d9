#pragma once

#include "Plugins/WavePlugin/TracePluginCallbacks.h"
#include "tools/tracehost/Scenario.h"

#include <array>
#include <cstdint>
#include <unordered_map>
#include <vector>

// The simulated device at one clock, behind the callback record that plugins poll. A clock costs what
// changes in it: fields rest in a ring of slots until the clock of their next change.
//
// The callbacks carry no context, so there is one simulation at a time. A plugin that asks for what the
// scenario doesn't have ends the process with a message and status 1.
class Simulation {
public:
    // The scenario must outlive the simulation. The device then stands at clock 0.
    explicit Simulation(const Scenario& scenario);
    ~Simulation();

    Simulation(const Simulation&) = delete;
    Simulation& operator=(const Simulation&) = delete;

    // Valid as long as the simulation. Not const, since plugins take it so; none may write to it.
    TracePluginCallbacks* callbacks() { return &m_callbacks; }

    Clock clock() const { return m_clock; }

    // Moves the device on by one clock.
    void advance();

private:
    struct CoreState {
        std::uint32_t pid;
        const Core* core;
        std::vector<TracePortState> ports;
        std::vector<TraceThreadState> threads;
        std::vector<TraceTimerState> timers;
        std::vector<TraceClockBlockState> clockBlocks;
        InstructionWords instruction;
    };

    // One field in motion.
    struct Driver {
        unsigned int* target;
        const Segment* segment; // that rules now or, before the first, comes next
        const Segment* lastSegment;
        Clock due;    // the clock of its next change
        Driver* next; // in the same slot
    };

    // What the callbacks do; they differ only in what they leave in the words that nobody reads.
    template<bool withGarbage>
    struct Slots;

    static constexpr std::size_t s_numSlots = 1024; // a power of two

    template<class Record>
    void addRecords(const std::vector<Resource>& resources, std::vector<Record>& records);
    void addDrivers(const Resource& resource, void* record);
    void drive(Driver& driver);
    void execute(); // the turn of each core's programs

    const CoreState& core(std::uint32_t pid);
    TraceInstructionState instructionOf(const CoreState& core) const;

    static Simulation* s_current; // what the callbacks answer for

    const Scenario& m_scenario;
    TracePluginCallbacks m_callbacks;
    Clock m_clock = 0;
    std::vector<CoreState> m_cores;
    std::unordered_map<std::uint32_t, std::size_t> m_places; // among the cores, by pid
    std::vector<CoreState*> m_busyCores;                     // those with programs
    const CoreState* m_lastCore = nullptr; // the core that was asked for last: the next call is for it too
    std::vector<TracePadState> m_pads;
    std::vector<Driver> m_drivers;
    std::array<Driver*, s_numSlots> m_slots{}; // by clock modulo their number; other rounds wait in between
    std::uint32_t m_garbage = 1;
};

#pragma once

#include "Plugins/WavePlugin/TracePluginCallbacks.h"

#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

// A simulator of a few lines: the states are plain fields that a test sets, and the callbacks hand them
// out. The callbacks carry no context, so there is one stub simulator at a time: the one made last.
//
//     StubSimulator simulator;
//     simulator.core().ports = {StubSimulator::port("ZS1_PORT_1A", 1)};
//     ... PluginInitialise(simulator.callbacks(), "...");
//     simulator.cycle = 1;
//     simulator.core().ports[0].value = 1;
//     PluginClock(id);
class StubSimulator {
public:
    // The state of one core. Counts are those of the vectors.
    struct Core {
        std::vector<TracePortState> ports;
        std::vector<TraceThreadState> threads;
        std::vector<TraceTimerState> timers;
        std::vector<TraceClockBlockState> clockBlocks;
        TraceInstructionState instruction{};
    };

    StubSimulator();
    ~StubSimulator();

    StubSimulator(const StubSimulator&) = delete;
    StubSimulator& operator=(const StubSimulator&) = delete;

    TracePluginCallbacks* callbacks() { return &m_callbacks; }

    // The core of a packed id; made at the first mention.
    Core& core(unsigned int pid = 0) { return m_cores[pid]; }

    // Records with every other field zero.
    static TracePortState port(const char* name, unsigned int width);
    static TracePadState pad(const char* name, unsigned int value = 0);

    std::vector<TracePadState> pads;
    const char* interfaceVersion = "1.0";
    double clockFrequency = 400; // in MHz
    unsigned int cycle = 0;

    // Leaves other garbage at each call in every word of a record that the interface doesn't list.
    bool garbage = false;

    // Texts live in a buffer that the next callback overwrites, as the interface allows.
    bool textsExpire = false;

    // Calls so far, by slot number.
    std::array<unsigned int, 36> calls{};

private:
    template<typename State>
    void answer(State* state, const State& held, const State& listed);
    const char* text(const char* held);

    static const TracePluginCallbacks s_callbacks;
    static StubSimulator* s_current;

    TracePluginCallbacks m_callbacks;
    std::map<unsigned int, Core> m_cores; // by packed id
    std::uint32_t m_noise = 1;
    std::array<std::array<char, 64>, 2> m_texts{};
    std::size_t m_nextText = 0;
};

#pragma once

#include "Plugins/WavePlugin/TracePluginCallbacks.h"

#include <cstdint>
#include <vector>

// A simulated device of 1,072 signals, as fast as its callbacks can be: 64 ports, 8 threads and their
// functions, 6 clock blocks, 10 timers, the cycle count and an instruction stream on one core, and 8 pads.
// Its state lies in words of its own, which the callbacks copy one by one, as a simulator's would.
class Device {
public:
    static constexpr unsigned int s_ports = 64;
    static constexpr unsigned int s_threads = 8;
    static constexpr unsigned int s_clockBlocks = 6;
    static constexpr unsigned int s_timers = 10;
    static constexpr unsigned int s_pads = 8;

    // Signals of each kind of resource, and of all.
    static constexpr unsigned int s_portSignals = 15;
    static constexpr unsigned int s_threadSignals = 4;
    static constexpr unsigned int s_clockBlockSignals = 5;
    static constexpr unsigned int s_timerSignals = 3;
    static constexpr unsigned int s_instructionSignals = 3;
    static constexpr unsigned int s_cycleSignals = 1;
    static constexpr unsigned int s_signals = s_ports * s_portSignals + s_threads * s_threadSignals +
                                              s_clockBlocks * s_clockBlockSignals +
                                              s_timers * s_timerSignals + s_instructionSignals + s_pads +
                                              s_cycleSignals + s_threads; // a function a thread
    static_assert(s_signals == 1072);

    // There is one device: the callbacks carry no context.
    static TracePluginCallbacks* callbacks();

    // One clock: the cycle number grows, and so many signals change, other ones on each clock.
    static void step(unsigned int changes);
};

#pragma once

#include "tests/support/SampleWave.h"

// One core with a bit of everything, and two pads.
inline SampleWave fullSample() {
    TracedCore core;
    core.ports = {{"ZS1_PORT_1A", 1, "uart_tx"}, {"ZS1_PORT_4A", 4, ""}};
    core.hasDetailedPorts = true;
    core.hasCycles = true;
    core.numThreads = 2;
    core.numClockBlocks = 1;
    core.numTimers = 1;
    core.hasInstructions = true;
    core.functions = {{"main", "main.0"}, {"uart_transmit_a_whole_byte", "uart.0"}};
    core.numFunctionThreads = 2;
    return {"2.500000 ns", "Sat Nov 21 12:00:00 2026", {"Pad0", "Pad1"}, {core}};
}

// One core with one timer: three signals.
inline SampleWave timerSample() {
    SampleWave wave;
    wave.cores.emplace_back();
    wave.cores.back().numTimers = 1;
    return wave;
}

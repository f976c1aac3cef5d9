#include "benchmarks/PluginClock/Device.h"

#include <array>
#include <cstdio>

namespace {

struct Port {
    unsigned int timeStamp, counter, transferRegisterSize, transferRegisterFull, transferRegister,
        shiftRegisterCount, shiftRegisterSize, shiftRegisterValid, shiftRegister, details, outputThreadPc,
        direction, threadsWaiting, inUse, value;
};
struct Thread {
    unsigned int resourceNumber, resourceType, waiting, inUse;
};
struct ClockBlock {
    unsigned int risingEdge, fallingEdge, threadsWaiting, started, inUse;
};
struct Timer {
    unsigned int threadsWaiting, inUse, time;
};

Port s_portStates[Device::s_ports];
Thread s_threadStates[Device::s_threads];
ClockBlock s_clockBlockStates[Device::s_clockBlocks];
Timer s_timerStates[Device::s_timers];
unsigned int s_padValues[Device::s_pads];
unsigned int s_pc = 0x10000;
unsigned int s_cycle;

constexpr unsigned int s_portWidths[] = {1, 1, 4, 8, 16, 32};
char s_portNames[Device::s_ports][24];
char s_padNames[Device::s_pads][8];

// What can change and how: a word, and the largest value that it takes.
struct Changeable {
    unsigned int* word;
    unsigned int mask;
};

std::vector<Changeable> changeableWords() {
    std::vector<Changeable> words;
    for (unsigned int i = 0; i < Device::s_ports; ++i) {
        Port& port = s_portStates[i];
        const unsigned int width = s_portWidths[i % std::size(s_portWidths)];
        words.push_back({&port.value, width == 32 ? ~0U : (1U << width) - 1});
        for (unsigned int* flag : {&port.inUse, &port.threadsWaiting, &port.direction,
                                   &port.shiftRegisterValid, &port.transferRegisterFull})
            words.push_back({flag, 1});
        for (unsigned int* word : {&port.outputThreadPc, &port.details, &port.shiftRegister,
                                   &port.shiftRegisterSize, &port.shiftRegisterCount, &port.transferRegister,
                                   &port.transferRegisterSize, &port.counter, &port.timeStamp})
            words.push_back({word, ~0U});
    }
    for (Thread& thread : s_threadStates) {
        words.push_back({&thread.inUse, 1});
        words.push_back({&thread.waiting, 1});
        words.push_back({&thread.resourceType, 7});
        words.push_back({&thread.resourceNumber, 0xff});
    }
    for (ClockBlock& block : s_clockBlockStates) {
        for (unsigned int* flag : {&block.inUse, &block.started, &block.fallingEdge, &block.risingEdge})
            words.push_back({flag, 1});
        words.push_back({&block.threadsWaiting, 0xff});
    }
    for (Timer& timer : s_timerStates) {
        words.push_back({&timer.time, ~0U});
        words.push_back({&timer.inUse, 1});
        words.push_back({&timer.threadsWaiting, 1});
    }
    for (unsigned int& pad : s_padValues)
        words.push_back({&pad, 1});
    words.push_back({&s_pc, ~0U});
    return words;
}

TracePluginCallbacks makeCallbacks() {
    for (unsigned int i = 0; i < Device::s_ports; ++i)
        std::snprintf(s_portNames[i], sizeof s_portNames[i], "ZS1_PORT_%u%c",
                      s_portWidths[i % std::size(s_portWidths)],
                      static_cast<char>('A' + i / std::size(s_portWidths)));
    for (unsigned int i = 0; i < Device::s_pads; ++i)
        std::snprintf(s_padNames[i], sizeof s_padNames[i], "Pad%u", i);

    TracePluginCallbacks callbacks{};
    callbacks.getInterfaceVersion = [] { return "benchmark"; };
    callbacks.getClockFrequency = [] { return 400.0; };
    callbacks.getCycleCount = [] { return s_cycle; };
    callbacks.getInstructionState = [](unsigned int, unsigned int, TraceInstructionState* state) {
        state->valid = 1;
        state->thread = 0;
        state->pc = s_pc;
        state->mnemonic = "add     ";
        state->functionName = "main";
    };
    callbacks.getNumThreads = [](unsigned int) { return Device::s_threads; };
    callbacks.getThreadState = [](unsigned int, unsigned int number, TraceThreadState* state) {
        const Thread& thread = s_threadStates[number];
        state->inUse = thread.inUse;
        state->waiting = thread.waiting;
        state->resourceType = thread.resourceType;
        state->resourceNumber = thread.resourceNumber;
    };
    callbacks.getNumPorts = [](unsigned int) { return Device::s_ports; };
    callbacks.getPortState = [](unsigned int, unsigned int number, TracePortState* state) {
        const Port& port = s_portStates[number];
        state->name = s_portNames[number];
        state->width = s_portWidths[number % std::size(s_portWidths)];
        state->value = port.value;
        state->inUse = port.inUse;
        state->direction = port.direction;
        state->threadsWaiting = port.threadsWaiting;
        state->transferRegister = port.transferRegister;
        state->shiftRegister = port.shiftRegister;
        state->outputThreadPc = port.outputThreadPc;
        state->details = port.details;
        state->counter = port.counter;
        state->timeStamp = port.timeStamp;
        state->shiftRegisterCount = port.shiftRegisterCount;
        state->shiftRegisterValid = port.shiftRegisterValid;
        state->shiftRegisterSize = port.shiftRegisterSize;
        state->transferRegisterFull = port.transferRegisterFull;
        state->transferRegisterSize = port.transferRegisterSize;
    };
    callbacks.getNumTimers = [](unsigned int) { return Device::s_timers; };
    callbacks.getTimerState = [](unsigned int, unsigned int number, TraceTimerState* state) {
        const Timer& timer = s_timerStates[number];
        state->time = timer.time;
        state->inUse = timer.inUse;
        state->threadsWaiting = timer.threadsWaiting;
    };
    callbacks.getNumClockBlocks = [](unsigned int) { return Device::s_clockBlocks; };
    callbacks.getClockBlockState = [](unsigned int, unsigned int number, TraceClockBlockState* state) {
        const ClockBlock& block = s_clockBlockStates[number];
        state->inUse = block.inUse;
        state->started = block.started;
        state->threadsWaiting = block.threadsWaiting;
        state->fallingEdge = block.fallingEdge;
        state->risingEdge = block.risingEdge;
    };
    callbacks.getNumPads = [] { return Device::s_pads; };
    callbacks.getPadState = [](unsigned int number, TracePadState* state) {
        state->name = s_padNames[number];
        state->value = s_padValues[number];
    };
    return callbacks;
}

} // namespace

TracePluginCallbacks* Device::callbacks() {
    static TracePluginCallbacks callbacks = makeCallbacks();
    return &callbacks;
}

void Device::step(unsigned int changes) {
    static const std::vector<Changeable> words = changeableWords();
    static std::uint32_t noise = 1;
    static std::size_t next = 0;
    ++s_cycle;
    for (unsigned int i = 0; i < changes; ++i) {
        next = (next + 379) % words.size(); // visits all before it meets one again
        noise = noise * 1664525 + 1013904223;
        const Changeable& changeable = words[next];
        *changeable.word ^= (noise & changeable.mask) | 1U; // differs from before in one bit at least
    }
}

#include "tools/tracehost/Scenario.h"

#include "Plugins/WavePlugin/TracePluginCallbacks.h"

namespace {

constexpr Field s_portFields[] = {
    {"width", offsetof(TracePortState, width)},
    {"value", offsetof(TracePortState, value)},
    {"inUse", offsetof(TracePortState, inUse)},
    {"direction", offsetof(TracePortState, direction)},
    {"threadsWaiting", offsetof(TracePortState, threadsWaiting)},
    {"transferRegister", offsetof(TracePortState, transferRegister)},
    {"shiftRegister", offsetof(TracePortState, shiftRegister)},
    {"outputThreadPc", offsetof(TracePortState, outputThreadPc)},
    {"details", offsetof(TracePortState, details)},
    {"counter", offsetof(TracePortState, counter)},
    {"timeStamp", offsetof(TracePortState, timeStamp)},
    {"shiftRegisterCount", offsetof(TracePortState, shiftRegisterCount)},
    {"shiftRegisterValid", offsetof(TracePortState, shiftRegisterValid)},
    {"shiftRegisterSize", offsetof(TracePortState, shiftRegisterSize)},
    {"transferRegisterFull", offsetof(TracePortState, transferRegisterFull)},
    {"transferRegisterSize", offsetof(TracePortState, transferRegisterSize)},
};

constexpr Field s_threadFields[] = {
    {"inUse", offsetof(TraceThreadState, inUse)},
    {"waiting", offsetof(TraceThreadState, waiting)},
    {"resourceType", offsetof(TraceThreadState, resourceType)},
    {"resourceNumber", offsetof(TraceThreadState, resourceNumber)},
};

constexpr Field s_timerFields[] = {
    {"time", offsetof(TraceTimerState, time)},
    {"inUse", offsetof(TraceTimerState, inUse)},
    {"threadsWaiting", offsetof(TraceTimerState, threadsWaiting)},
};

constexpr Field s_clockBlockFields[] = {
    {"inUse", offsetof(TraceClockBlockState, inUse)},
    {"started", offsetof(TraceClockBlockState, started)},
    {"threadsWaiting", offsetof(TraceClockBlockState, threadsWaiting)},
    {"fallingEdge", offsetof(TraceClockBlockState, fallingEdge)},
    {"risingEdge", offsetof(TraceClockBlockState, risingEdge)},
};

// `threadNumber` and not `thread`, which opens a resource in a scenario.
constexpr Field s_instructionFields[] = {
    {"valid", offsetof(InstructionWords, valid)},
    {"threadNumber", offsetof(InstructionWords, thread)},
    {"pc", offsetof(InstructionWords, pc)},
    {"mnemonic", offsetof(InstructionWords, mnemonic), true},
    {"functionName", offsetof(InstructionWords, functionName), true},
};

constexpr Field s_padFields[] = {
    {"value", offsetof(TracePadState, value)},
};

// In the order of the enumeration.
constexpr ResourceKindInfo s_kinds[s_numResourceKinds] = {
    {ResourceKind::Port, "port", true, false, s_portFields},
    {ResourceKind::Thread, "thread", false, false, s_threadFields},
    {ResourceKind::Timer, "timer", false, false, s_timerFields},
    {ResourceKind::ClockBlock, "clockBlock", false, false, s_clockBlockFields},
    {ResourceKind::Instruction, "instruction", false, false, s_instructionFields},
    {ResourceKind::Pad, "pad", true, true, s_padFields},
};

} // namespace

std::span<const ResourceKindInfo, s_numResourceKinds> resourceKinds() {
    return s_kinds;
}

const ResourceKindInfo& resourceKind(ResourceKind kind) {
    return s_kinds[static_cast<std::size_t>(kind)];
}

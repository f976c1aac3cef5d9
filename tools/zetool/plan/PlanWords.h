#pragma once

#include "Plugins/WavePlugin/TraceInfo.h"

#include <span>
#include <string_view>

// The options of the plugin that make signals, without their dashes, in the order of the plugin's output.

// Of the whole device.
inline constexpr const char* s_padsWord = "pads";

// What a word sets on a core.
struct PlanWord {
    const char* word;
    void (*apply)(TraceInfo& info);
};

inline constexpr PlanWord s_coreWords[] = {
    {"ports", [](TraceInfo& info) { info.setTracePorts(TraceInfo::Ports); }},
    {"ports-detailed", [](TraceInfo& info) { info.setTracePorts(TraceInfo::DetailedPorts); }},
    {"cycles", [](TraceInfo& info) { info.setTraceCycles(true); }},
    {"threads", [](TraceInfo& info) { info.setTraceThreads(true); }},
    {"clock-blocks", [](TraceInfo& info) { info.setTraceClocks(true); }},
    {"timers", [](TraceInfo& info) { info.setTraceTimers(true); }},
    {"instructions", [](TraceInfo& info) { info.setTraceInstructions(true); }},
    {"functions", [](TraceInfo& info) { info.setTraceFunctions(true); }},
};

inline constexpr const char* s_functionsWord = "functions";

// All of them, for the command's own option.
inline constexpr const char* s_planWords[] = {
    s_padsWord,     "ports",  "ports-detailed", "cycles",        "threads",
    "clock-blocks", "timers", "instructions",   s_functionsWord,
};
static_assert(std::size(s_planWords) == std::size(s_coreWords) + 1);

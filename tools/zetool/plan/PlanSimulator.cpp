#include "tools/zetool/plan/PlanSimulator.h"

#include <map>

namespace {

const PlanImage* s_image = nullptr;
std::map<unsigned int, const PlanCore*> s_cores; // by packed id

// The tracers know no other cores than those of the image.
const PlanCore& coreOf(unsigned int pid) {
    return *s_cores.at(pid);
}

TracePluginCallbacks makeCallbacks() {
    TracePluginCallbacks callbacks{};
    callbacks.getInterfaceVersion = [] { return ""; };
    callbacks.getClockFrequency = [] { return 1.0; };
    callbacks.getCycleCount = [] { return 0U; };
    callbacks.getInstructionState = [](unsigned int, unsigned int, TraceInstructionState* state) {
        *state = {};
    };
    callbacks.getNumThreads = [](unsigned int pid) { return coreOf(pid).threads.number; };
    callbacks.getThreadState = [](unsigned int, unsigned int, TraceThreadState* state) { *state = {}; };
    callbacks.getNumPorts = [](unsigned int pid) {
        return static_cast<unsigned int>(coreOf(pid).ports.size());
    };
    callbacks.getPortState = [](unsigned int pid, unsigned int port, TracePortState* state) {
        *state = {};
        state->name = coreOf(pid).ports[port].name.c_str();
        state->width = coreOf(pid).ports[port].width;
    };
    callbacks.getNumTimers = [](unsigned int pid) { return coreOf(pid).timers.number; };
    callbacks.getTimerState = [](unsigned int, unsigned int, TraceTimerState* state) { *state = {}; };
    callbacks.getNumClockBlocks = [](unsigned int pid) { return coreOf(pid).clockBlocks.number; };
    callbacks.getClockBlockState = [](unsigned int, unsigned int, TraceClockBlockState* state) {
        *state = {};
    };
    callbacks.getNumPads = [] { return static_cast<unsigned int>(s_image->pads().size()); };
    callbacks.getPadState = [](unsigned int pad, TracePadState* state) {
        *state = {};
        state->name = s_image->pads()[pad].c_str();
    };
    return callbacks;
}

} // namespace

PlanSimulator::PlanSimulator(const PlanImage& image) : m_callbacks(makeCallbacks()) {
    s_image = &image;
    s_cores.clear();
    for (const PlanCore& core : image.cores())
        s_cores.emplace(core.pid(), &core);
}

PlanSimulator::~PlanSimulator() {
    s_image = nullptr;
    s_cores.clear();
}

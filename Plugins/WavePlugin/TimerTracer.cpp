#include "Plugins/WavePlugin/TimerTracer.h"

#include <utility>

// The time is 64 bits wide although its word has 32: wanted, the upper half stays zero.
const TimerTracer::Row TimerTracer::s_signals[] = {
    {"a", 64, &TraceTimerState::time, "_time", Shown},
    {"b", 1, &TraceTimerState::inUse, "_inuse", Shown},
    {"c", 1, &TraceTimerState::threadsWaiting, "_tWaiting", Shown},
};

namespace {

std::string timerName(unsigned int timer) {
    return "Timer" + std::to_string(timer);
}

} // namespace

TimerTracer::TimerTracer(TracePluginCallbacks* callbacks, unsigned int pid, std::string coreName)
    : TableTracer(callbacks, pid, std::move(coreName), "ti", s_signals, callbacks->getNumTimers(pid)) {}

void TimerTracer::dumpSignalHierarchy(StructureFileWriter* writer) {
    writer->openCategory("Timers", true);
    for (unsigned int timer = 0; timer < count(); ++timer)
        listGroup(writer, timerName(timer));
    writer->closeCategory(true);
}

void TimerTracer::dumpSignalValueAliases(StructureFileWriter*, ElfHandler*, std::string) {}

// Timers alone have groups and no description: wanted.
void TimerTracer::dumpSignalDocs(StructureFileWriter*) {}

void TimerTracer::declareVariables(FILE* fp) {
    // No state is asked for here, unlike for threads and clock blocks: wanted.
    for (unsigned int timer = 0; timer < count(); ++timer)
        declareSignals(fp, timer, timerName(timer));
}

void TimerTracer::initialiseVariables(FILE* fp) {
    pollTimers();
    writeAll(fp);
}

void TimerTracer::traceVariables(FILE* fp, bool* firstChange) {
    pollTimers();
    writeChanges(fp, firstChange);
}

void TimerTracer::pollTimers() {
    pollAll([getState = m_callbacks->getTimerState, pid = m_pid](unsigned int timer, TraceTimerState* state) {
        getState(pid, timer, state);
    });
}

#include "Plugins/WavePlugin/ClockBlockTracer.h"

#include <utility>

// The letters skip d, the threads' signal is eight bits wide, and the rising edge comes first although the
// record has it last: all wanted.
const ClockBlockTracer::Row ClockBlockTracer::s_signals[] = {
    {"a", 1, &TraceClockBlockState::inUse, "_inuse", Shown},
    {"b", 1, &TraceClockBlockState::started, "_started", Shown},
    {"c", 8, &TraceClockBlockState::threadsWaiting, "_tWaiting", Shown},
    {"e", 1, &TraceClockBlockState::risingEdge, "_riseEdge", Shown},
    {"f", 1, &TraceClockBlockState::fallingEdge, "_fallEdge", Shown},
};

namespace {

// The first text says port: wanted.
constexpr SignalDoc s_docs[] = {
    {R"(.*ClkBlk\d+_inuse)",
     "High if the port is in use",
     {{"0", "The clockblock is not in use"}, {"1", "The clockblock is in use"}}},
    {R"(.*ClkBlk\d+_started)",
     "High if the clockblock has started",
     {{"0", "The clockblock has not started"}, {"1", "The clockblock has started"}}},
    {R"(.*ClkBlk\d+_tWaiting)",
     "High if any threads are waiting on the clockblock",
     {{"0", "No threads are waiting on this clockblock"}, {"1", "Threads are waiting on this clockblock"}}},
    {R"(.*ClkBlk\d+_riseEdge)", "High on rising edges of the clockblock", {}},
    {R"(.*ClkBlk\d+_fallEdge)", "High on falling edges of the clockblock", {}},
};

std::string clockBlockName(unsigned int clockBlock) {
    return "ClkBlk" + std::to_string(clockBlock);
}

} // namespace

ClockBlockTracer::ClockBlockTracer(TracePluginCallbacks* callbacks, unsigned int pid, std::string coreName)
    : TableTracer(callbacks, pid, std::move(coreName), "c", s_signals, callbacks->getNumClockBlocks(pid)) {}

void ClockBlockTracer::dumpSignalHierarchy(StructureFileWriter* writer) {
    writer->openCategory("ClockBlocks", true);
    for (unsigned int clockBlock = 0; clockBlock < count(); ++clockBlock)
        listGroup(writer, clockBlockName(clockBlock));
    writer->closeCategory(true);
}

void ClockBlockTracer::dumpSignalValueAliases(StructureFileWriter*, ElfHandler*, std::string) {}

void ClockBlockTracer::dumpSignalDocs(StructureFileWriter* writer) {
    writer->addSignalDocEntries(s_docs);
}

void ClockBlockTracer::declareVariables(FILE* fp) {
    for (unsigned int clockBlock = 0; clockBlock < count(); ++clockBlock) {
        // Asked for and not used: wanted, a simulator may count the calls.
        TraceClockBlockState state{};
        m_callbacks->getClockBlockState(m_pid, clockBlock, &state);
        declareSignals(fp, clockBlock, clockBlockName(clockBlock));
    }
}

void ClockBlockTracer::initialiseVariables(FILE* fp) {
    pollClockBlocks();
    writeAll(fp);
}

void ClockBlockTracer::traceVariables(FILE* fp, bool* firstChange) {
    pollClockBlocks();
    writeChanges(fp, firstChange);
}

void ClockBlockTracer::pollClockBlocks() {
    pollAll([getState = m_callbacks->getClockBlockState, pid = m_pid](
                unsigned int clockBlock, TraceClockBlockState* state) { getState(pid, clockBlock, state); });
}

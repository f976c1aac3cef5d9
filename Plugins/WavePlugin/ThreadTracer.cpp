#include "Plugins/WavePlugin/ThreadTracer.h"

#include "infr_libs/ErrorHandler/Assertion.h"

#include <utility>

const ThreadTracer::Row ThreadTracer::s_signals[] = {
    {"a", 1, &TraceThreadState::inUse, "_inuse", Shown},
    {"b", 1, &TraceThreadState::waiting, "_waiting", Shown},
    {"c", 64, &TraceThreadState::resourceType, "_waitingResourceType", Shown}, // shows a text
    {"d", 8, &TraceThreadState::resourceNumber, "_waitingResourceNumber", Shown},
};

namespace {

// By the number of the kind. Eight characters each, since eight are always read.
constexpr const char* s_waitingTypes[] = {
    "N/A     ", "PORT    ", "TIMER   ", "CHANEND ", "SYNC    ", "THREAD  ",
    "LOCK    ", "CLKBLK  ", "COPROC  ", "PS      ", "CONFIG  ", "INSTR   ",
};

// The type is called ASCII here although its radix in the hierarchy is HEX: wanted.
constexpr SignalDoc s_docs[] = {
    {R"(.*Thread\d+_inuse)",
     "High if the thread is in use",
     {{"0", "The thread is not in use"}, {"1", "The thread is in use"}}},
    {R"(.*Thread\d+_waiting)",
     "High if the thread is waiting on a resource",
     {{"0", "The thread is not waiting on a resource"}, {"1", "The thread is waiting on a resource"}}},
    {R"(.*Thread\d+_waitingResourceType)",
     "If the thread is waiting, this is the resource type that is causing the wait (ASCII format)",
     {}},
    {R"(.*Thread\d+_waitingResourceNumber)",
     "If the thread is waiting, this is the resource id that is causing the wait",
     {}},
};

std::string threadName(unsigned int thread) {
    return "Thread" + std::to_string(thread);
}

} // namespace

ThreadTracer::ThreadTracer(TracePluginCallbacks* callbacks, unsigned int pid, std::string coreName)
    : TableTracer(callbacks, pid, std::move(coreName), "t", s_signals, callbacks->getNumThreads(pid)) {}

void ThreadTracer::dumpSignalHierarchy(StructureFileWriter* writer) {
    writer->openCategory("Threads", true);
    for (unsigned int thread = 0; thread < count(); ++thread)
        listGroup(writer, threadName(thread));
    writer->closeCategory(true);
}

void ThreadTracer::dumpSignalValueAliases(StructureFileWriter*, ElfHandler*, std::string) {}

void ThreadTracer::dumpSignalDocs(StructureFileWriter* writer) {
    writer->addSignalDocEntries(s_docs);
}

void ThreadTracer::declareVariables(FILE* fp) {
    for (unsigned int thread = 0; thread < count(); ++thread) {
        // Asked for and not used: wanted, a simulator may count the calls.
        TraceThreadState state{};
        m_callbacks->getThreadState(m_pid, thread, &state);
        declareSignals(fp, thread, threadName(thread));
    }
}

// The type is mapped before the thread's first line, also while the thread doesn't wait: a type beyond the
// table ends the process with nothing of the thread written.
auto ThreadTracer::reader() {
    return [this](const TraceThreadState& state) {
        const std::uint64_t type = GetWaitingTypeAscii(state.resourceType);
        return [&state, type](const Row& row) {
            return SignalValue{row.width,
                               row.field == &TraceThreadState::resourceType ? type : state.*row.field};
        };
    };
}

void ThreadTracer::initialiseVariables(FILE* fp) {
    pollThreads();
    writeAll(fp, reader());
}

void ThreadTracer::traceVariables(FILE* fp, bool* firstChange) {
    pollThreads();
    writeChanges(fp, firstChange, reader());
}

std::uint64_t ThreadTracer::GetWaitingTypeAscii(uint type) {
    if (type >= std::size(s_waitingTypes))
        ZELM_ASSERT(0);
    return bytesToInt64(reinterpret_cast<const unsigned char*>(s_waitingTypes[type]));
}

void ThreadTracer::pollThreads() {
    pollAll([getState = m_callbacks->getThreadState,
             pid = m_pid](unsigned int thread, TraceThreadState* state) { getState(pid, thread, state); });
}

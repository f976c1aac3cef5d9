#pragma once

#include "Plugins/WavePlugin/TableTracer.h"

// Shows the timers of a core: the current time of each, whether it is in use, whether threads wait on it.
class TimerTracer : public TableTracer<TraceTimerState, offsetof(TraceTimerState, time),
                                       offsetof(TraceTimerState, reserved5)> {
public:
    TimerTracer(TracePluginCallbacks* callbacks, unsigned int pid, std::string coreName);

    void dumpSignalHierarchy(StructureFileWriter* writer) override;
    void dumpSignalValueAliases(StructureFileWriter* writer, ElfHandler* elf, std::string coreName) override;
    void dumpSignalDocs(StructureFileWriter* writer) override;
    void declareVariables(FILE* fp) override;
    void initialiseVariables(FILE* fp) override;
    void traceVariables(FILE* fp, bool* firstChange) override;

private:
    void pollTimers();

    static const Row s_signals[3];
};

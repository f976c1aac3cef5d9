#pragma once

#include "Plugins/WavePlugin/TableTracer.h"

// Shows the clock blocks of a core: whether each is in use, running and waited on, and its edges.
class ClockBlockTracer : public TableTracer<TraceClockBlockState, offsetof(TraceClockBlockState, inUse),
                                            offsetof(TraceClockBlockState, reserved6)> {
public:
    ClockBlockTracer(TracePluginCallbacks* callbacks, unsigned int pid, std::string coreName);

    void dumpSignalHierarchy(StructureFileWriter* writer) override;
    void dumpSignalValueAliases(StructureFileWriter* writer, ElfHandler* elf, std::string coreName) override;
    void dumpSignalDocs(StructureFileWriter* writer) override;
    void declareVariables(FILE* fp) override;
    void initialiseVariables(FILE* fp) override;
    void traceVariables(FILE* fp, bool* firstChange) override;

private:
    void pollClockBlocks();

    static const Row s_signals[5];
};

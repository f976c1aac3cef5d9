#pragma once

#include "Plugins/WavePlugin/TableTracer.h"

// Shows the value on each pad of the device: the one tracer that belongs to no core.
class PadTracer
    : public TableTracer<TracePadState, offsetof(TracePadState, value), offsetof(TracePadState, reserved2)> {
public:
    explicit PadTracer(TracePluginCallbacks* callbacks);

    void dumpSignalHierarchy(StructureFileWriter* writer) override;
    void dumpSignalValueAliases(StructureFileWriter* writer, ElfHandler* elf, std::string coreName) override;
    void dumpSignalDocs(StructureFileWriter* writer) override;
    void declareVariables(FILE* fp) override;
    void initialiseVariables(FILE* fp) override;
    void traceVariables(FILE* fp, bool* firstChange) override;

private:
    void pollPads();
    std::string padName(unsigned int pad);

    static const Row s_signals[1];
};

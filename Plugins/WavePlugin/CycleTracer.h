#pragma once

#include "Plugins/WavePlugin/ResourceTracer.h"

// Shows the clock count of a core as a signal. It is written on every clock, since it always differs.
class CycleTracer : public ResourceTracer {
public:
    CycleTracer(TracePluginCallbacks* callbacks, unsigned int pid, std::string coreName);

    void dumpSignalHierarchy(StructureFileWriter* writer) override;
    void dumpSignalValueAliases(StructureFileWriter* writer, ElfHandler* elf, std::string coreName) override;
    void dumpSignalDocs(StructureFileWriter* writer) override;
    void declareVariables(FILE* fp) override;
    void initialiseVariables(FILE* fp) override;
    void traceVariables(FILE* fp, bool* firstChange) override;

private:
    std::string m_line; // the value line; each clock puts its digits in
};

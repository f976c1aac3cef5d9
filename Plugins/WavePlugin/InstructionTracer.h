#pragma once

#include "Plugins/WavePlugin/ResourceTracer.h"

// Shows what a core executes: program counter, thread and mnemonic of the latest instruction. One set of
// signals serves the whole core, and jumps between its threads as they take turns.
class InstructionTracer : public ResourceTracer {
public:
    InstructionTracer(TracePluginCallbacks* callbacks, unsigned int pid, std::string coreName);

    void dumpSignalHierarchy(StructureFileWriter* writer) override;
    void dumpSignalValueAliases(StructureFileWriter* writer, ElfHandler* elf, std::string coreName) override;
    void dumpSignalDocs(StructureFileWriter* writer) override;
    void declareVariables(FILE* fp) override;
    void initialiseVariables(FILE* fp) override;
    void traceVariables(FILE* fp, bool* firstChange) override;

private:
    // Last written. They begin at zero while the file begins unknown, so a first value of zero writes
    // nothing: wanted.
    std::uint64_t m_pc = 0;
    std::uint64_t m_threadId = 0;
    std::uint64_t m_mnemonic = 0; // eight characters
};

#pragma once

#include "Plugins/WavePlugin/TableTracer.h"

// Shows the hardware threads of a core: whether each is in use, whether it waits, and on what.
class ThreadTracer : public TableTracer<TraceThreadState, offsetof(TraceThreadState, inUse),
                                        offsetof(TraceThreadState, reserved13)> {
public:
    ThreadTracer(TracePluginCallbacks* callbacks, unsigned int pid, std::string coreName);

    void dumpSignalHierarchy(StructureFileWriter* writer) override;
    void dumpSignalValueAliases(StructureFileWriter* writer, ElfHandler* elf, std::string coreName) override;
    void dumpSignalDocs(StructureFileWriter* writer) override;
    void declareVariables(FILE* fp) override;
    void initialiseVariables(FILE* fp) override;
    void traceVariables(FILE* fp, bool* firstChange) override;

    // The name of a kind of resource (0 to 11), as eight characters in one number. Any other kind ends the
    // process.
    std::uint64_t GetWaitingTypeAscii(unsigned int type);

private:
    void pollThreads();
    auto reader();

    static const Row s_signals[4];
};

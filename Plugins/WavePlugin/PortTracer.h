#pragma once

#include "Plugins/WavePlugin/TableTracer.h"

// Shows the ports of a core: the value on the pins and the state behind it, in six signals a port, or
// fifteen in detail. With many ports, visited on every clock, it is what a clock costs.
class PortTracer : public TableTracer<TracePortState, offsetof(TracePortState, width),
                                      offsetof(TracePortState, reserved24)> {
public:
    PortTracer(TracePluginCallbacks* callbacks, unsigned int pid, std::string coreName, bool detailed);

    void dumpSignalHierarchy(StructureFileWriter* writer) override;
    void dumpSignalValueAliases(StructureFileWriter* writer, ElfHandler* elf, std::string coreName) override;
    void dumpSignalDocs(StructureFileWriter* writer) override;
    void declareVariables(FILE* fp) override;
    void initialiseVariables(FILE* fp) override;
    void traceVariables(FILE* fp, bool* firstChange) override;

private:
    TracePortState portState(unsigned int port);
    void pollPorts();

    static constexpr std::size_t s_numBasicSignals = 6; // the rest of the table is for detailed tracing
    static const Row s_signals[15];
};

#pragma once

#include "Plugins/WavePlugin/TracePluginCallbacks.h"

#include <cstdio>
#include <list>
#include <memory>
#include <string>

class PluginLibrary;
class ResourceTracer;
class StructureFileWriter;

// What the user asked for on one core: first the settings, one for each kind of tracer, then the tracers
// themselves. The entry points make and own one for each core that a trace option names, and drive the
// core through it.
class TraceInfo {
public:
    enum PortLevel { NoPorts = 0, Ports = 1, DetailedPorts = 2 };

    // The pid is the packed core id of the callbacks, the name that of the network.
    TraceInfo(unsigned int pid, std::string coreName);
    ~TraceInfo();

    TraceInfo(const TraceInfo&) = delete;
    TraceInfo& operator=(const TraceInfo&) = delete;

    unsigned int getPid() const { return m_pid; }

    void setTracePorts(PortLevel level) { m_tracePorts = level; }
    void setTraceCycles(bool on) { m_traceCycles = on; }
    void setTraceThreads(bool on) { m_traceThreads = on; }
    void setTraceClocks(bool on) { m_traceClocks = on; }
    void setTraceTimers(bool on) { m_traceTimers = on; }
    void setTraceInstructions(bool on) { m_traceInstructions = on; }
    void setTraceFunctions(bool on) { m_traceFunctions = on; }

    // Makes the tracers that the settings ask for, in a fixed order that is that of all output, whatever
    // the order of the options. Once, when the settings are complete. The library is used until the
    // structure document is written.
    void initialise(TracePluginCallbacks* callbacks, PluginLibrary* library);

    // Each of these passes on to the tracers, in order.
    void dumpSignalHierarchy(StructureFileWriter* writer);
    void dumpSignalValueAliases(StructureFileWriter* writer); // one pass for each ELF image of the core
    void dumpSignalDocs(StructureFileWriter* writer);
    void declareVariables(FILE* fp);
    void initialiseVariables(FILE* fp);
    void traceVariables(FILE* fp, bool* firstChange);

private:
    template<typename Tracer, typename... Arguments>
    void addTracer(TracePluginCallbacks* callbacks, Arguments... arguments);

    std::list<std::unique_ptr<ResourceTracer>> m_tracers; // in output order
    PluginLibrary* m_library = nullptr;                   // not owned; gone before the first clock
    unsigned int m_pid;                                   // node in the high 16 bits, core in the low ones
    std::string m_coreName;
    PortLevel m_tracePorts = NoPorts;
    bool m_traceCycles = false;
    bool m_traceThreads = false;
    bool m_traceClocks = false;
    bool m_traceTimers = false;
    bool m_traceInstructions = false;
    bool m_traceFunctions = false;
};

#include "Plugins/WavePlugin/TraceInfo.h"

#include "infr_libs/PluginLibrary/PluginLibrary.h"
#include "Plugins/WavePlugin/ClockBlockTracer.h"
#include "Plugins/WavePlugin/CycleTracer.h"
#include "Plugins/WavePlugin/FunctionTracer.h"
#include "Plugins/WavePlugin/InstructionTracer.h"
#include "Plugins/WavePlugin/PortTracer.h"
#include "Plugins/WavePlugin/StructureFileWriter.h"
#include "Plugins/WavePlugin/ThreadTracer.h"
#include "Plugins/WavePlugin/TimerTracer.h"

#include <utility>

TraceInfo::TraceInfo(unsigned int pid, std::string coreName) : m_pid(pid), m_coreName(std::move(coreName)) {}

TraceInfo::~TraceInfo() = default;

template<typename Tracer, typename... Arguments>
void TraceInfo::addTracer(TracePluginCallbacks* callbacks, Arguments... arguments) {
    m_tracers.push_back(std::make_unique<Tracer>(callbacks, m_pid, m_coreName, arguments...));
}

void TraceInfo::initialise(TracePluginCallbacks* callbacks, PluginLibrary* library) {
    if (m_tracePorts != NoPorts)
        addTracer<PortTracer>(callbacks, m_tracePorts == DetailedPorts);
    if (m_traceCycles)
        addTracer<CycleTracer>(callbacks);
    if (m_traceThreads)
        addTracer<ThreadTracer>(callbacks);
    if (m_traceClocks)
        addTracer<ClockBlockTracer>(callbacks);
    if (m_traceTimers)
        addTracer<TimerTracer>(callbacks);
    if (m_traceInstructions)
        addTracer<InstructionTracer>(callbacks);
    if (m_traceFunctions)
        addTracer<FunctionTracer>(callbacks);
    m_library = library;
}

void TraceInfo::dumpSignalHierarchy(StructureFileWriter* writer) {
    writer->openCore(m_coreName);
    for (const auto& tracer : m_tracers)
        tracer->dumpSignalHierarchy(writer);
    writer->closeCore();
}

void TraceInfo::dumpSignalValueAliases(StructureFileWriter* writer) {
    for (ElfHandler* elf : m_library->getElfHandlers(m_coreName)) {
        for (const auto& tracer : m_tracers)
            tracer->dumpSignalValueAliases(writer, elf, m_coreName);
    }
}

void TraceInfo::dumpSignalDocs(StructureFileWriter* writer) {
    for (const auto& tracer : m_tracers)
        tracer->dumpSignalDocs(writer);
}

void TraceInfo::declareVariables(FILE* fp) {
    for (const auto& tracer : m_tracers)
        tracer->declareVariables(fp);
}

void TraceInfo::initialiseVariables(FILE* fp) {
    for (const auto& tracer : m_tracers)
        tracer->initialiseVariables(fp);
}

void TraceInfo::traceVariables(FILE* fp, bool* firstChange) {
    for (const auto& tracer : m_tracers)
        tracer->traceVariables(fp, firstChange);
}

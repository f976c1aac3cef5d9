#include "Plugins/WavePlugin/CycleTracer.h"

#include "Plugins/WavePlugin/BinaryDigits.h"
#include "Plugins/WavePlugin/StructureFileWriter.h"

#include <algorithm>
#include <utility>

namespace {

constexpr unsigned int s_width = 32;
constexpr std::size_t s_lineRoom = s_width + sizeof("b _4294967295\n"); // the line with the longest tag

constexpr SignalDoc s_docs[] = {
    {".*CYCLES", "The current core clock cycle number", {}},
};

} // namespace

// The identifier is an underscore and the core's tag: the one that isn't made of four pieces.
CycleTracer::CycleTracer(TracePluginCallbacks* callbacks, unsigned int pid, std::string coreName)
    : ResourceTracer(callbacks, pid, std::move(coreName)),
      m_line("b" + std::string(s_width, '0') + " _" + getTag() + "\n") {}

void CycleTracer::dumpSignalHierarchy(StructureFileWriter* writer) {
    writer->openCategory("Cycles", true);
    writer->addSignal(m_prefix + "CYCLES", false, "DECIMAL", true);
    writer->closeCategory(true);
}

void CycleTracer::dumpSignalValueAliases(StructureFileWriter*, ElfHandler*, std::string) {}

void CycleTracer::dumpSignalDocs(StructureFileWriter* writer) {
    writer->addSignalDocEntries(s_docs);
}

void CycleTracer::declareVariables(FILE* fp) {
    std::fprintf(fp, "$var wire %d _%s %sCYCLES $end\n", s_width, getTag(), getPrefix());
}

void CycleTracer::initialiseVariables(FILE* fp) {
    // Zero, with the simulator not asked: wanted.
    std::fprintf(fp, "$dumpvars\n%s$end\n\n", m_line.c_str());
}

void CycleTracer::traceVariables(FILE* fp, bool* firstChange) {
    char text[s_timeLineRoom + s_lineRoom];
    char* at = text;
    if (*firstChange)
        at = appendTimeLine(at, firstChange);
    writeBinary32(&m_line[1], m_callbacks->getCycleCount());
    at = std::copy(m_line.begin(), m_line.end(), at);
    // Neither compared nor flushed, unlike the value lines of other tracers: wanted.
    std::fwrite(text, 1, static_cast<std::size_t>(at - text), fp);
}

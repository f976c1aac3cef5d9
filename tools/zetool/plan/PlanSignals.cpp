#include "tools/zetool/plan/PlanSignals.h"

#include "Plugins/WavePlugin/FunctionTracer.h"
#include "Plugins/WavePlugin/PadTracer.h"
#include "Plugins/WavePlugin/StructureFileWriter.h"
#include "tools/zetool/Messages.h"
#include "tools/zetool/plan/PlanSimulator.h"
#include "tools/zetool/wave/VcdSource.h"

#include <cstdio>
#include <cstdlib>
#include <list>
#include <memory>
#include <string_view>
#include <sys/mman.h>
#include <unistd.h>

namespace {

// A file in memory: the tracers write to a stream, the reader reads from a file.
class MemoryFile {
public:
    MemoryFile() : m_stream(make()) {}
    ~MemoryFile() { std::fclose(m_stream); }

    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;

    FILE* stream() { return m_stream; }

    // A descriptor of its own at the file's start.
    int reopen() {
        if (std::fflush(m_stream) != 0 || lseek(fileno(m_stream), 0, SEEK_SET) != 0)
            throw ToolFailure(withSystemError("the plan can't be kept"));
        const int descriptor = dup(fileno(m_stream));
        if (descriptor < 0)
            throw ToolFailure(withSystemError("the plan can't be kept"));
        return descriptor;
    }

private:
    static FILE* make() {
        const int descriptor = memfd_create("plan", MFD_CLOEXEC);
        FILE* const stream = descriptor < 0 ? nullptr : fdopen(descriptor, "w+");
        if (!stream)
            throw ToolFailure(withSystemError("the plan can't be kept"));
        return stream;
    }

    FILE* m_stream;
};

// The short names of functions go the same way as the plugin's.
void writeFunctionAliases(StructureFileWriter& writer, TracePluginCallbacks* callbacks,
                          const PlanTrace& trace) {
    for (const PlanWord* const word : trace.words) {
        if (std::string_view(word->word) != s_functionsWord)
            continue;
        FunctionTracer tracer(callbacks, trace.core->pid(), trace.core->name);
        for (const auto& program : trace.core->programs)
            tracer.dumpSignalValueAliases(&writer, program.get(), trace.core->name);
    }
}

void writeHead(FILE* fp, const PlanImage& image, bool pads, const std::vector<PlanTrace>& traces,
               bool withAliases) {
    PlanSimulator simulator(image);
    std::unique_ptr<PadTracer> padTracer;
    if (pads)
        padTracer = std::make_unique<PadTracer>(simulator.callbacks());
    std::list<TraceInfo> infos;
    for (const PlanTrace& trace : traces) {
        TraceInfo& info = infos.emplace_back(trace.core->pid(), trace.core->name);
        for (const PlanWord* const word : trace.words)
            word->apply(info);
        info.initialise(simulator.callbacks(), nullptr);
    }

    StructureFileWriter writer(fp, simulator.callbacks(), nullptr);
    writer.initialise("");
    writer.openHierachy();
    if (padTracer)
        padTracer->dumpSignalHierarchy(&writer);
    for (TraceInfo& info : infos)
        info.dumpSignalHierarchy(&writer);
    writer.closeHierachy();
    if (withAliases) {
        writer.openValueAliases();
        for (const PlanTrace& trace : traces)
            writeFunctionAliases(writer, simulator.callbacks(), trace);
        writer.closeValueAliases();
        writer.addSignalAliases(image.network());
    }
    writer.terminate();

    if (padTracer)
        padTracer->declareVariables(fp);
    for (TraceInfo& info : infos)
        info.declareVariables(fp);
    std::fputs("\n$enddefinitions $end\n\n", fp);
}

} // namespace

PlanHead::PlanHead(const PlanImage& image, bool pads, const std::vector<PlanTrace>& traces, Aliases aliases) {
    MemoryFile file;
    writeHead(file.stream(), image, pads, traces, aliases == Aliases::With);
    InputFile whole(file.reopen(), "plan");
    std::vector<char> piece(1 << 16);
    while (const std::size_t size = whole.read(piece.data(), piece.size()))
        text.append(piece.data(), size);
    InputFile input(file.reopen(), "plan");
    VcdSource source(input);
    header = readVcdHeader(source);
}

#include "Plugins/WavePlugin/FunctionTracer.h"

#include "infr_libs/ElfHandler/ElfHandler.h"
#include "Plugins/WavePlugin/StructureFileWriter.h"

#include <cstring>
#include <utility>

namespace {

constexpr const char* s_prefix = "fu";
constexpr const char* s_letter = "a";
constexpr unsigned int s_numBytes = ShortFunctionNames::s_numBytes;
constexpr unsigned int s_width = 64; // in bits

constexpr std::uint32_t s_typeMask = 0xf; // of a symbol's info: ELF32_ST_TYPE
constexpr std::uint32_t s_function = 2;   // STT_FUNC

} // namespace

FunctionTracer::FunctionTracer(TracePluginCallbacks* callbacks, unsigned int pid, std::string coreName)
    : ResourceTracer(callbacks, pid, std::move(coreName)), m_threadFunctions(callbacks->getNumThreads(pid)) {}

std::string FunctionTracer::createShortFunctionName(const char* name) {
    return m_shortNames.create(name);
}

std::string FunctionTracer::getShortFunctionName(const char* name) const {
    return m_shortNames.get(name);
}

void FunctionTracer::dumpSignalHierarchy(StructureFileWriter* writer) {
    writer->openCategory("Functions", true);
    // Indented as if in a group, though none is open: wanted.
    for (std::size_t thread = 0; thread < m_threadFunctions.size(); ++thread)
        writer->addSignal(m_prefix + "Functions_Thread" + std::to_string(thread), true, "ASCII", true);
    writer->closeCategory(true);
}

void FunctionTracer::dumpSignalValueAliases(StructureFileWriter* writer, ElfHandler* elf,
                                            std::string coreName) {
    writer->openValueAliasMap(std::move(coreName), "functions");
    // Symbol 0 is the null symbol. A function that occurs again is listed again, with the same short name.
    for (unsigned int symbol = 1; symbol < elf->numSymbols(); ++symbol) {
        if ((elf->getSymbolInfo(symbol) & s_typeMask) != s_function)
            continue;
        const char* name = elf->getSymbolName(symbol);
        writer->addValueAliasEntry(name, createShortFunctionName(name));
    }
    writer->closeValueAliasMap();
}

void FunctionTracer::dumpSignalDocs(StructureFileWriter*) {}

void FunctionTracer::declareVariables(FILE* fp) {
    for (unsigned int thread = 0; thread < m_threadFunctions.size(); ++thread)
        std::fprintf(fp, "$var wire %u %s %sFunctions_Thread%u $end\n", s_width,
                     getTag(s_prefix, s_letter, thread), getPrefix(), thread);
}

void FunctionTracer::initialiseVariables(FILE* fp) {
    // Unknown until a thread first runs; nothing is asked of the simulator.
    const std::string unknown(s_width, 'x');
    std::fputs("$dumpvars\n", fp);
    for (unsigned int thread = 0; thread < m_threadFunctions.size(); ++thread)
        std::fprintf(fp, "b%s %s\n", unknown.c_str(), getTag(s_prefix, s_letter, thread));
    std::fputs("$end\n\n", fp);
}

void FunctionTracer::traceVariables(FILE* fp, bool* firstChange) {
    TraceInstructionState state;
    getInstruction(&state);
    // Without an instruction all signals hold; only the thread that executed one can have moved.
    if (state.valid == 0 || !state.functionName || state.thread >= m_threadFunctions.size())
        return;
    ThreadFunction& last = m_threadFunctions[state.thread];
    if (last.written && std::strcmp(last.name.c_str(), state.functionName) == 0)
        return;
    last.name = state.functionName; // a copy: the text is gone with the next callback

    char shortName[s_numBytes + 1] = {};
    const std::string text = m_shortNames.get(last.name);
    text.copy(shortName, s_numBytes);
    if (!last.written) {
        // Anything is a change from x, also an empty name.
        last.written = true;
        last.shortName[0] = static_cast<char>(shortName[0] + 1);
    }
    outputIfChangedString(fp, s_numBytes, last.shortName, shortName, firstChange, s_prefix, s_letter,
                          state.thread);
}

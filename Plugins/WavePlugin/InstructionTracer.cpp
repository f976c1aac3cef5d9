#include "Plugins/WavePlugin/InstructionTracer.h"

#include "Plugins/WavePlugin/StructureFileWriter.h"

#include <utility>

namespace {

struct InstructionSignal {
    const char* letter;
    unsigned int width;
    const char* name;
    const char* radix;
};

// Row order is output order.
constexpr InstructionSignal s_signals[] = {
    {"a", 32, "INSTRUCTION_PC", "HEX"},
    {"b", 8, "INSTRUCTION_THREAD_ID", "HEX"},
    {"c", 64, "INSTRUCTION_MNEMONIC", "ASCII"},
};
constexpr const InstructionSignal& s_pc = s_signals[0];
constexpr const InstructionSignal& s_threadId = s_signals[1];
constexpr const InstructionSignal& s_mnemonic = s_signals[2];

constexpr const char* s_prefix = "in";

constexpr SignalDoc s_docs[] = {
    {".*INSTRUCTION_PC", "The PC value of the instruction", {}},
    {".*INSTRUCTION_THREAD_ID", "The thread number of the instruction", {}},
    {".*INSTRUCTION_MNEMONIC", "The mnemonic of the instruction (ASCII format)", {}},
};

} // namespace

InstructionTracer::InstructionTracer(TracePluginCallbacks* callbacks, unsigned int pid, std::string coreName)
    : ResourceTracer(callbacks, pid, std::move(coreName)) {}

void InstructionTracer::dumpSignalHierarchy(StructureFileWriter* writer) {
    writer->openCategory("Instructions", true);
    for (const InstructionSignal& signal : s_signals)
        writer->addSignal(m_prefix + signal.name, false, signal.radix, true);
    writer->closeCategory(true);
}

void InstructionTracer::dumpSignalValueAliases(StructureFileWriter*, ElfHandler*, std::string) {}

void InstructionTracer::dumpSignalDocs(StructureFileWriter* writer) {
    writer->addSignalDocEntries(s_docs);
}

void InstructionTracer::declareVariables(FILE* fp) {
    for (const InstructionSignal& signal : s_signals)
        std::fprintf(fp, "$var wire %d %s %s%s $end\n", signal.width, getTag(s_prefix, signal.letter, 0),
                     getPrefix(), signal.name);
}

void InstructionTracer::initialiseVariables(FILE* fp) {
    // Unknown, with nothing asked of the simulator.
    std::fputs("$dumpvars\n", fp);
    for (const InstructionSignal& signal : s_signals)
        std::fprintf(fp, "b%s %s\n", std::string(signal.width, 'x').c_str(),
                     getTag(s_prefix, signal.letter, 0));
    std::fputs("$end\n\n", fp);
}

void InstructionTracer::traceVariables(FILE* fp, bool* firstChange) {
    TraceInstructionState state;
    getInstruction(&state);
    // Whether an instruction was executed isn't looked at, unlike for functions: wanted.
    const std::uint64_t mnemonic =
        state.mnemonic ? bytesToInt64(reinterpret_cast<const unsigned char*>(state.mnemonic)) : 0;

    const auto trace = [&](const InstructionSignal& signal, std::uint64_t* cached, std::uint64_t value) {
        outputIfChanged(fp, signal.width, cached, value, firstChange, s_prefix, signal.letter, 0);
    };
    trace(s_pc, &m_pc, state.pc);
    trace(s_threadId, &m_threadId, state.thread);
    trace(s_mnemonic, &m_mnemonic, mnemonic);
}

#include "Plugins/WavePlugin/PadTracer.h"

const PadTracer::Row PadTracer::s_signals[] = {
    {"a", 1, &TracePadState::value, "", Shown},
};

namespace {

constexpr SignalDoc s_docs[] = {
    {R"(.*Pad\d+)", "The value on the pad", {}},
};

} // namespace

PadTracer::PadTracer(TracePluginCallbacks* callbacks)
    : TableTracer(callbacks, "pa", s_signals, callbacks->getNumPads()) {}

void PadTracer::dumpSignalHierarchy(StructureFileWriter* writer) {
    // Neither in a core nor in groups: the pads stand right under the hierarchy.
    writer->openCategory("Pads", false);
    for (unsigned int pad = 0; pad < count(); ++pad)
        writer->addSignal(padName(pad), false, "HEX", false);
    writer->closeCategory(false);
}

void PadTracer::dumpSignalValueAliases(StructureFileWriter*, ElfHandler*, std::string) {}

void PadTracer::dumpSignalDocs(StructureFileWriter* writer) {
    writer->addSignalDocEntries(s_docs);
}

void PadTracer::declareVariables(FILE* fp) {
    for (unsigned int pad = 0; pad < count(); ++pad)
        declareSignals(fp, pad, padName(pad));
}

void PadTracer::initialiseVariables(FILE* fp) {
    pollPads();
    writeAll(fp);
}

void PadTracer::traceVariables(FILE* fp, bool* firstChange) {
    pollPads();
    writeChanges(fp, firstChange);
}

void PadTracer::pollPads() {
    pollAll(m_callbacks->getPadState);
}

std::string PadTracer::padName(unsigned int pad) {
    TracePadState state{};
    m_callbacks->getPadState(pad, &state);
    return rationaliseName(state.name ? state.name : s_unnamed);
}

#include "Plugins/WavePlugin/PortTracer.h"

#include <utility>

// Row order is output order. The letters l and m stand among the basic signals, out of the alphabet's
// order: wanted. The value's width is the port's own.
const PortTracer::Row PortTracer::s_signals[] = {
    {"a", 0, &TracePortState::value, "", Shown},
    {"b", 1, &TracePortState::inUse, "_inuse", Shown},
    {"c", 1, &TracePortState::threadsWaiting, "_tWaiting", Shown},
    {"d", 1, &TracePortState::direction, "_direction", Shown},
    {"l", 32, &TracePortState::outputThreadPc, "_outputThreadPc", Shown},
    {"m", 32, &TracePortState::details, "_portDetails", Shown},
    // in detail
    {"e", 32, &TracePortState::shiftRegister, "_shiftReg", Shown},
    {"f", 1, &TracePortState::shiftRegisterValid, "_shiftRegValid", Hidden}, // declared, never listed: wanted
    {"g", 32, &TracePortState::shiftRegisterSize, "_shiftRegSize", Shown},
    {"h", 32, &TracePortState::shiftRegisterCount, "_shiftRegCount", Shown},
    {"i", 32, &TracePortState::transferRegister, "_transferReg", Shown},
    {"j", 1, &TracePortState::transferRegisterFull, "_transferRegFull", Shown},
    {"k", 32, &TracePortState::transferRegisterSize, "_transferRegSize", Shown},
    {"n", 32, &TracePortState::counter, "_portTime", Shown},
    {"o", 32, &TracePortState::timeStamp, "_timeReg", Shown},
};

namespace {

// The patterns are fixed texts that presume the usual names of cores and ports, and the same for both
// levels of detail: wanted, as are their order and the signals that none of them describes.
constexpr SignalDoc s_docs[] = {
    {R"(stdcore\[\d+\]_ZS1_PORT_\d+[A-Z]_direction)",
     "High if the port is in output mode, low if in input mode",
     {{"0", "The port is in input mode"}, {"1", "The port is in output mode"}}},
    {R"(stdcore\[\d+\]_ZS1_PORT_\d+[A-Z]_inuse)",
     "High if the port is in use",
     {{"0", "The port is not in use"}, {"1", "The port is in use"}}},
    {R"(stdcore\[\d+\]_ZS1_PORT_\d+[A-Z]_tWaiting)",
     "High if any threads are waiting on the port",
     {{"0", "No threads are waiting on this port"}, {"1", "Threads are waiting on this port"}}},
    {R"(stdcore\[\d+\]_ZS1_PORT_\d+[A-Z])", "Provides a view of the retimed pads for the port", {}},
    {R"(stdcore\[\d+\]_ZS1_PORT_\d+[A-Z]_portTime)", "The value of the port counter", {}},
    {R"(stdcore\[\d+\]_ZS1_PORT_\d+[A-Z]_timeReg)", "The value of the ports timestamp (ZC's @ operator)", {}},
    {R"(stdcore\[\d+\]_ZS1_PORT_\d+[A-Z]_transferReg)", "The data in the ports transfer register", {}},
    {R"(stdcore\[\d+\]_ZS1_PORT_\d+[A-Z]_shiftReg)", "The data in the ports shift register", {}},
};

// The value signal is as wide as the port is now, whatever its declaration said.
unsigned int widthOf(const SignalRow<TracePortState>& row, const TracePortState& state) {
    return row.field == &TracePortState::value ? state.width : row.width;
}

constexpr auto s_reader = [](const TracePortState& state) {
    return [&state](const SignalRow<TracePortState>& row) {
        return SignalValue{widthOf(row, state), state.*row.field};
    };
};

} // namespace

PortTracer::PortTracer(TracePluginCallbacks* callbacks, unsigned int pid, std::string coreName, bool detailed)
    : TableTracer(callbacks, pid, std::move(coreName), "po",
                  std::span(s_signals).first(detailed ? std::size(s_signals) : s_numBasicSignals),
                  callbacks->getNumPorts(pid)) {}

void PortTracer::dumpSignalHierarchy(StructureFileWriter* writer) {
    writer->openCategory("Ports", true);
    // The count is asked for again here, and only here: wanted.
    const unsigned int numPorts = m_callbacks->getNumPorts(m_pid);
    for (unsigned int port = 0; port < numPorts; ++port)
        listGroup(writer, portState(port).name);
    writer->closeCategory(true);
}

void PortTracer::dumpSignalValueAliases(StructureFileWriter*, ElfHandler*, std::string) {}

void PortTracer::dumpSignalDocs(StructureFileWriter* writer) {
    writer->addSignalDocEntries(s_docs);
}

void PortTracer::declareVariables(FILE* fp) {
    for (unsigned int port = 0; port < count(); ++port) {
        const TracePortState state = portState(port);
        // The name as it stands, colons included, unlike that of a pad: wanted.
        declareSignals(fp, port, state.name, [&](const Row& row) { return widthOf(row, state); });
    }
}

void PortTracer::initialiseVariables(FILE* fp) {
    pollPorts();
    writeAll(fp, s_reader);
}

void PortTracer::traceVariables(FILE* fp, bool* firstChange) {
    pollPorts();
    writeChanges(fp, firstChange, s_reader);
}

TracePortState PortTracer::portState(unsigned int port) {
    TracePortState state{};
    m_callbacks->getPortState(m_pid, port, &state);
    if (!state.name)
        state.name = s_unnamed;
    return state;
}

void PortTracer::pollPorts() {
    pollAll([getState = m_callbacks->getPortState, pid = m_pid](unsigned int port, TracePortState* state) {
        getState(pid, port, state);
    });
}

#pragma once

// The schema of the ZSystem document: for each element its attributes and sub-elements, with their defaults
// and their help texts. Documents, checks, look-ups and the annotated template all come from these tables;
// there is no schema file and no other list of defaults.
//
// A table ends at a row whose name is null; an element without attributes or sub-elements has a table of
// that row alone. Row order is output order. An element name may stand several times in a table of
// sub-elements, each time with its own defaults: each row is built and shown, and the first one decides
// when a document is checked.
//
// Help texts are shown to users as they stand, misspelt words included; they must stay so.

struct attribute_t {
    const char* name;
    const char* value; // default, always text, possibly empty
    const char* help;  // empty when there is none
    bool inDefault;    // whether the default document has it
};

struct node_t {
    const char* name;
    const attribute_t* attributes;
    const node_t* subNodes;
    bool inDefault; // whether the default document has it, given that it has the parent
};

inline constexpr attribute_t s_endOfAttributes = {nullptr, nullptr, nullptr, false};
inline constexpr node_t s_endOfSubNodes = {nullptr, nullptr, nullptr, false};

inline constexpr attribute_t s_noAttributes[] = {s_endOfAttributes};
inline constexpr node_t s_noSubNodes[] = {s_endOfSubNodes};

// --- TraceConfig: the names that the complete document has. Reporting knows two more, which may stand in a
// document too, since the values of attributes aren't part of the schema.

inline constexpr attribute_t s_trace0Attributes[] = {
    {"name", "TRACE_SWITCH_DATA", "Simulator: Enables switch data tracing.", false},
    {"value", "false", "", false},
    s_endOfAttributes,
};

inline constexpr attribute_t s_trace1Attributes[] = {
    {"name", "TRACE_SWITCH_CTRL", "Simulator: Enables switch control tracing.", false},
    {"value", "false", "", false},
    s_endOfAttributes,
};

inline constexpr attribute_t s_trace2Attributes[] = {
    {"name", "TRACE_ISTREAM", "Simulator: Enables istream tracing.", false},
    {"value", "false", "", false},
    s_endOfAttributes,
};

inline constexpr attribute_t s_trace3Attributes[] = {
    {"name", "TRACE_ASYNC", "Simulator: Enables async tracing.", false},
    {"value", "false", "", false},
    s_endOfAttributes,
};

inline constexpr attribute_t s_trace4Attributes[] = {
    {"name", "TRACE_CHECKER", "Simulator: Enables checker tracing.", false},
    {"value", "false", "", false},
    s_endOfAttributes,
};

inline constexpr node_t s_traceSubNodes[] = {s_endOfSubNodes};

inline constexpr attribute_t s_traceConfigAttributes[] = {
    {"value", "true", "", false},
    s_endOfAttributes,
};

inline constexpr node_t s_traceConfigSubNodes[] = {
    {"Trace", s_trace0Attributes, s_traceSubNodes, false},
    {"Trace", s_trace1Attributes, s_traceSubNodes, false},
    {"Trace", s_trace2Attributes, s_traceSubNodes, false},
    {"Trace", s_trace3Attributes, s_traceSubNodes, false},
    {"Trace", s_trace4Attributes, s_traceSubNodes, false},
    s_endOfSubNodes,
};

// --- Plugins and TracePlugins

inline constexpr attribute_t s_pluginAttributes[] = {
    {"name", "", "Simulator: Name of plugin e.g. 'LoopbackPort.dll'", false},
    {"args", "", "Simulator: The plugin arguments.", false},
    s_endOfAttributes,
};

inline constexpr node_t s_pluginsSubNodes[] = {
    {"Plugin", s_pluginAttributes, s_noSubNodes, false},
    s_endOfSubNodes,
};

inline constexpr attribute_t s_tracePluginAttributes[] = {
    {"name", "", "Simulator: Trace plugin dll name.", false},
    {"args", "", "Simulator: Arguments to the trace plugin dll.", false},
    s_endOfAttributes,
};

inline constexpr node_t s_tracePluginsSubNodes[] = {
    {"TracePlugin", s_tracePluginAttributes, s_noSubNodes, false},
    s_endOfSubNodes,
};

// --- Nodes

inline constexpr attribute_t s_switchAttributes[] = {
    {"tracingOn", "false", "", false},
    {"sLinks", "16", "", false},
    s_endOfAttributes,
};

inline constexpr attribute_t s_ramAttributes[] = {
    {"base", "0x10000", "Memory controller ram base.", true},
    {"size", "0x10000", "Memory controller ram size.", true},
    s_endOfAttributes,
};

inline constexpr attribute_t s_extRamAttributes[] = {
    {"base", "0x10000", "External Memory controller ram base.", true},
    {"size", "0x4000000000", "External Memory controller ram size.", true},
    s_endOfAttributes,
};

inline constexpr attribute_t s_romAttributes[] = {
    {"base", "0xffffc000", "Memory controller rom base.", true},
    {"size", "0x2000", "Memory controller rom size.", true},
    s_endOfAttributes,
};

inline constexpr node_t s_memoryControllerSubNodes[] = {
    {"Ram", s_ramAttributes, s_noSubNodes, true},
    {"ExtRam", s_extRamAttributes, s_noSubNodes, true},
    {"Rom", s_romAttributes, s_noSubNodes, true},
    s_endOfSubNodes,
};

inline constexpr attribute_t s_otpAttributes[] = {
    {"name", "", "", true},
    s_endOfAttributes,
};

inline constexpr attribute_t s_loadAttributes[] = {
    {"name", "", "", true},
    s_endOfAttributes,
};

inline constexpr node_t s_loadSubNodes[] = {
    {"Flags", s_noAttributes, s_noSubNodes, false},
    s_endOfSubNodes,
};

// clang-format off
inline constexpr attribute_t s_processorAttributes[] = {
    {"number", "0", "Processor ID number.", true},
    {"numThreads", "8", "Number of avaliable threads.", true},
    {"numTimers", "10", "Number of avaliable timers.", true},
    {"numLocks", "4", "Number of avaliable locks.", true},
    {"numSyncs", "7", "Number of avaliable synchronisers.", true},
    {"numChanEnds", "32", "Number of avaliable channels ends.", true},
    {"numClkBlks", "6", "Number of avaliable clock blocks.", true},
    {"numMemMaps", "16", "Number of avaliable memory maps.", true},
    {"tracingOn", "false", "Simulator: Instruction stream tracing.", false},
    {"traceFile", "", "Simulator: Trace to the given file.", false},
    {"profilingOn", "false", "Simulator: Enable (gprof) profiling output.", false},
    {"traceFNops", "false", "Simulator: Print FNOPs in the trace.", false},
    {"traceRamOnly", "false", "Simulator: Display only ram based instructions in the trace.", false},
    {"traceUserModeOnly", "false", "Simulator: Display only user mode instructions in the trace.", false},
    {"symbolsOn", "true", "Simulator: Enables symbols in the instruction trace.", false},
    {"bootFromRom", "false", "Simulator: Boots from ROM rather than RAM - what the hardware does by default", false},
    {"bootSecure", "false", "Simulator: If true, sets the SECURE_BOOT bit in the BOOT_CONFIG register.", false},
    {"resourceWarnings", "false", "Simulator: Print warnings on improper resource usage.", false},
    {"readBeforeWriteChecks", "true", "Simulator: Warn if a register is read before being written.", false},
    {"stackCheck", "false", "Simulator: Warn if if one threads stack overlaps that of another.", false},
    {"securityConfig", "0x0", "Simulator: Value of the security configuration register.", false},
    {"startTime", "0x0", "Simulator: System time at reset - not supported on hardward.", false},
    {"startPortTime", "0x0", "Simulator: Port time at reset, prevents clkblk resetting timers - not supported on hardward.", false},
    {"resetAddress", "0x10000", "Simulator: Sets the zcore boot address.", false},
    {"syscallAddress", "0x0", "Simulator: Sets the default zcore syscall address.", false},
    {"exceptionCallAddress", "0x0", "Simulator: Sets the default zcore exception call address.", false},
    {"codeReference", "", "Code reference to this core.", false},
    s_endOfAttributes,
};
// clang-format on

inline constexpr node_t s_processorSubNodes[] = {
    {"MemoryController", s_noAttributes, s_memoryControllerSubNodes, true},
    {"Otp", s_otpAttributes, s_noSubNodes, true},
    {"Load", s_loadAttributes, s_loadSubNodes, false},
    s_endOfSubNodes,
};

// The default jtagId is none that names an architecture: wanted.
inline constexpr attribute_t s_nodeAttributes[] = {
    {"bootMode", "0", "Simulator: Boot from RAM", true},
    {"number", "0", "", true},
    {"jtagId", "0x0fff1731", "Node JTAG identifier", true},
    {"userId", "0x0", "Node user identifier", true},
    {"interconnectMhz", "400", "Interconnect speed.", false},
    {"processorMhz", "400", "Processor speed.", false},
    {"referenceMhz", "100", "Refrence clock speed.", false},
    s_endOfAttributes,
};

inline constexpr node_t s_nodeSubNodes[] = {
    {"Switch", s_switchAttributes, s_noSubNodes, true},
    {"Processor", s_processorAttributes, s_processorSubNodes, true},
    s_endOfSubNodes,
};

inline constexpr attribute_t s_glxNodeAttributes[] = {
    {"number", "0", "", true},
    s_endOfAttributes,
};

inline constexpr node_t s_nodesSubNodes[] = {
    {"Node", s_nodeAttributes, s_nodeSubNodes, true},
    {"GlxNode", s_glxNodeAttributes, s_noSubNodes, true},
    s_endOfSubNodes,
};

// --- Connections: links inside a node, and between nodes

inline constexpr attribute_t s_pLink0Attributes[] = {
    {"width", "9", "", false},
    {"pLink", "0,0,0", "", false},
    {"outBufferBytes", "16", "", false},
    {"inBufferBytes", "16", "", false},
    s_endOfAttributes,
};

inline constexpr attribute_t s_pLink1Attributes[] = {
    {"width", "9", "", false},
    {"pLink", "0,0,1", "", false},
    {"outBufferBytes", "16", "", false},
    {"inBufferBytes", "16", "", false},
    s_endOfAttributes,
};

inline constexpr attribute_t s_pLink2Attributes[] = {
    {"width", "9", "", false},
    {"pLink", "0,0,2", "", false},
    {"outBufferBytes", "16", "", false},
    {"inBufferBytes", "16", "", false},
    s_endOfAttributes,
};

inline constexpr attribute_t s_pLink3Attributes[] = {
    {"width", "9", "", false},
    {"pLink", "0,0,3", "", false},
    {"outBufferBytes", "16", "", false},
    {"inBufferBytes", "16", "", false},
    s_endOfAttributes,
};

inline constexpr attribute_t s_sLink0Attributes[] = {
    {"width", "9", "", false},           {"end1", "0,0", "", false},         {"end2", "0,1", "", false},
    {"outBufferBytes", "16", "", false}, {"inBufferBytes", "16", "", false}, s_endOfAttributes,
};

inline constexpr node_t s_connectionsSubNodes[] = {
    {"PLink", s_pLink0Attributes, s_noSubNodes, false}, {"PLink", s_pLink1Attributes, s_noSubNodes, false},
    {"PLink", s_pLink2Attributes, s_noSubNodes, false}, {"PLink", s_pLink3Attributes, s_noSubNodes, false},
    {"SLink", s_sLink0Attributes, s_noSubNodes, false}, s_endOfSubNodes,
};

// --- JtagChain

inline constexpr attribute_t s_jtagNodeAttributes[] = {
    {"id", "0", "NodeID in JTAG chain", true},
    s_endOfAttributes,
};

inline constexpr node_t s_jtagChainSubNodes[] = {
    {"Node", s_jtagNodeAttributes, s_noSubNodes, true},
    s_endOfSubNodes,
};

// --- Pins: what each pin of the package is connected to

inline constexpr attribute_t s_zLinkAttributes[] = {
    {"node", "0", "", false}, {"number", "0", "", false}, {"bitNum", "0", "", false},
    {"dir", "in", "", false}, s_endOfAttributes,
};

inline constexpr attribute_t s_portAttributes[] = {
    {"name", "", "", false},      {"node", "0", "", false},   {"core", "0", "", false},
    {"priority", "0", "", false}, {"bitNum", "0", "", false}, s_endOfAttributes,
};

inline constexpr attribute_t s_pinAttributes[] = {
    {"name", "", "", false},
    {"number", "0", "", false},
    s_endOfAttributes,
};

inline constexpr node_t s_pinSubNodes[] = {
    {"ZLink", s_zLinkAttributes, s_noSubNodes, false},
    {"Port", s_portAttributes, s_noSubNodes, false},
    s_endOfSubNodes,
};

inline constexpr node_t s_pinsSubNodes[] = {
    {"Pin", s_pinAttributes, s_pinSubNodes, false},
    s_endOfSubNodes,
};

// --- System and the root

// clang-format off
inline constexpr attribute_t s_systemAttributes[] = {
    {"displayStats", "false", "Simulator: If true, statistics are displayed when the simuation completes.", false},
    {"maximumCycles", "0", "Simulator: If non-zero, exits when the given number of cycles are reached.", false},
    {"gdbMiOutput", "false", "Simulator: If true, simulator output uses the gdb mi protocol.", false},
    {"loadElves", "true", "Simulator: If false, simulator won't load elf files from the given ZE (to use only the config.xml found therein).", false},
    s_endOfAttributes,
};
// clang-format on

inline constexpr node_t s_systemSubNodes[] = {
    {"TraceConfig", s_traceConfigAttributes, s_traceConfigSubNodes, false},
    {"Plugins", s_noAttributes, s_pluginsSubNodes, false},
    {"TracePlugins", s_noAttributes, s_tracePluginsSubNodes, false},
    {"Nodes", s_noAttributes, s_nodesSubNodes, true},
    {"Connections", s_noAttributes, s_connectionsSubNodes, true},
    {"JtagChain", s_noAttributes, s_jtagChainSubNodes, false},
    {"Pins", s_noAttributes, s_pinsSubNodes, false},
    s_endOfSubNodes,
};

inline constexpr attribute_t s_zSystemAttributes[] = {
    {"xmlns:xsi", "http://www.w3.org/2001/XMLSchema-instance", "", true},
    {"xsi:noNamespaceSchemaLocation", "ZSystem.xsd", "", true},
    s_endOfAttributes,
};

inline constexpr node_t s_zSystemSubNodes[] = {
    {"System", s_systemAttributes, s_systemSubNodes, true},
    s_endOfSubNodes,
};

#include "tools/zetool/zn/ZnCommands.h"

#include "tools/zetool/zn/ZnCheck.h"
#include "tools/zetool/zn/ZnGraph.h"
#include "tools/zetool/zn/ZnNames.h"
#include "tools/zetool/zn/ZnShow.h"

namespace {

constexpr ArgumentRow s_file[] = {{"FILE", "a network description (.zn), or - for standard input"}};

constexpr OptionRow s_showNetworkOptions[] = {
    s_jsonOption,
    {"no-users", 0, nullptr, "leave out which routes cross each link"},
    s_outputOption,
    s_forceOption,
};
constexpr OptionRow s_graphOptions[] = {s_outputOption, s_forceOption};

constexpr const char* s_doesNotLoad = "the network doesn't load";

constexpr ExampleRow s_showExamples[] = {
    {"zetool zn show device.zn", "Shows what device.zn is read as."},
    {"zetool zn show --json --no-users device.zn", "The same for programs, with a sum of each link's users."},
};
constexpr ExampleRow s_checkExamples[] = {
    {"zetool zn check device.zn", "Names all warnings and the error of device.zn."},
};
constexpr ExampleRow s_namesExamples[] = {
    {"zetool zn names device.zn", "Lists the cores and the names of their ports."},
};
constexpr ExampleRow s_graphExamples[] = {
    {"zetool zn graph device.zn -o device.dot", "Writes device.dot, which 'dot -Tsvg device.dot' draws."},
};

constexpr CommandRow s_commands[] = {
    {"show", "the network as the plugin loads it",
     "Shows the loaded network: nodes with their routing identifiers, positions and boot, clocks and their "
     "register values, cores, ports, services, external devices, links, and the users of each link, which "
     "are the routes that cross it. Warnings go to standard error. With --json the object holds the whole "
     "model, the warnings and, where the network doesn't load, the error in place of the model, also for a "
     "file that can't be opened; with --no-users a link has the CRC-32 of its users in place of their list. "
     "Node types and packages are looked up along ZCC_DEVICE_PATH.",
     s_file, s_showNetworkOptions, s_doesNotLoad, znShow, s_showExamples},
    {"check", "all warnings and the error",
     "Loads the network as the plugin does. Every warning, and the error that loading ends with, is a "
     "message on standard error. Node types and packages are looked up along ZCC_DEVICE_PATH.",
     s_file, s_showOptions, "there is a warning or an error", znCheck, s_checkExamples},
    {"names", "cores and port names with their locations",
     "Lists every core with its node and number, and the ports that the network names: the location is the "
     "architecture's name, which the waveform shows, the name that of the program.",
     s_file, s_showOptions, s_doesNotLoad, znNames, s_namesExamples},
    {"graph", "nodes and links for Graphviz",
     "Writes the network as a graph in the language of Graphviz. A node shows its id, type and routing "
     "identifier, a link its wires and, at its ends, its number on the node. Links to devices of their own "
     "use (SOD) are dashed, there with the number of the channel end; those to switch and controller nodes "
     "are dotted.",
     s_file, s_graphOptions, s_doesNotLoad, znGraph, s_graphExamples},
};

} // namespace

std::span<const CommandRow> znCommands() {
    return s_commands;
}

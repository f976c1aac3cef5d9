#include "tools/zetool/pins/PinsCommands.h"

#include "tools/zetool/pins/PinsFind.h"
#include "tools/zetool/pins/PinsList.h"

namespace {

constexpr ArgumentRow s_file[] = {{"FILE", "an image (.ze), or - for standard input"}};
constexpr ArgumentRow s_fileAndNames[] = {
    {"FILE", "an image (.ze), or - for standard input"},
    {"NAME", "a pin, a port or a link", Count::Many},
};

constexpr const char* s_orders[] = {"pin", "port", "link"};
constexpr OptionRow s_listOptions[] = {
    {"by", 'b', "WHAT", "a row for each pin, port or link", s_orders},
    s_jsonOption,
    s_outputOption,
    s_forceOption,
};

constexpr ExampleRow s_listExamples[] = {
    {"zetool pins list app.ze", "Shows the pins with what is connected to them."},
    {"zetool pins list --by port app.ze", "Shows the ports with the pads behind their bits."},
};
constexpr ExampleRow s_findExamples[] = {
    {"zetool pins find app.ze X1", "Shows what is connected to the pin X1."},
    {"zetool pins find app.ze ZS1_PORT_1A 0:0:ZS1_PORT_4A",
     "Shows the pins of a port on every core, and of another on core 0 of node 0."},
};

constexpr CommandRow s_commands[] = {
    {"list", "the pins with their ports and links",
     "Shows the pin map of an image, as its configuration tells it: each pin with its pad, the number by "
     "which the simulator knows it, its package, and the bits of ports and links that are connected to it. "
     "With --by port every port with the pads behind its bits, as bit:pad; with --by link every link that "
     "has pins. Node and core are the numbers that the configuration gives them.",
     s_file, s_listOptions, "the image or its configuration is damaged", pinsList, s_listExamples},
    {"find", "what is connected to pins, ports and links",
     "Shows the rows of the pin map that belong to a name: a pin as X0D00 or PACKAGE:X0D00, a port as "
     "ZS1_PORT_1A or NODE:CORE:ZS1_PORT_1A, a link as link3 or NODE:link3.",
     s_fileAndNames, s_showOptions, "a name isn't there or has no pin, or the image is damaged", pinsFind,
     s_findExamples},
};

} // namespace

std::span<const CommandRow> pinsCommands() {
    return s_commands;
}

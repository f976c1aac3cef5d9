#include "tools/zetool/plan/PlanCommands.h"

#include "tools/zetool/plan/PlanShow.h"
#include "tools/zetool/plan/PlanWords.h"

namespace {

constexpr ArgumentRow s_arguments[] = {{"IMAGE", "an image, or - for standard input"}};

constexpr OptionRow s_options[] = {
    {"core",
     'c',
     "NAME",
     "only this core, with a program or without; default: those with a program",
     {},
     true},
    {"trace", 't', "WORD", "only this option of the plugin; default: all of them", s_planWords, true},
    {"waveform", 'w', "FILE", "what the arguments name the waveform; default: as the image, with .vcd"},
    {"mapped-ports", 0, nullptr, "as if cores had only the ports that a pin is connected to"},
    {"threads", 0, "NUMBER", "as if each core had so many threads"},
    {"timers", 0, "NUMBER", "as if each core had so many timers"},
    {"clock-blocks", 0, "NUMBER", "as if each core had so many clock blocks"},
    {"summary", 's', nullptr, "how many signals, without their names"},
    s_jsonOption,
    s_outputOption,
    s_forceOption,
};

constexpr ExampleRow s_examples[] = {
    {"zetool plan app.ze", "Shows the signals that each option would give, and the plugin's arguments."},
    {"zetool plan -s -c 'stdcore[0]' -t ports -t functions app.ze",
     "Shows how many signals -ports and -functions would give for one core."},
};

constexpr CommandRow s_commands[] = {
    {"", "what a run of the plugin would show, before the run",
     "Shows for each core and each option of the wave plugin which signals it gives, with names and widths, "
     "the argument string for the simulator, and the names that viewers will stumble over. The plugin asks "
     "its simulator what a core has; before a run the answers come from the image. Ports are those that the "
     "configuration lists for a core, or else the 32 that every core of the family has. Threads, timers and "
     "clock blocks are as many as the configuration says, or else the node's own configuration, or else the "
     "schema's default: 8, 10 and 6. Pads are the pins of the configuration, under the pin's name. All these "
     "are assumptions: a simulator that answers otherwise gives other signals. With both kinds of ports "
     "asked for, the arguments hold the later word.",
     s_arguments, s_options, "the plugin would refuse the image, or viewers will stumble over a name",
     planShow, s_examples},
};

} // namespace

std::span<const CommandRow> planCommands() {
    return s_commands;
}

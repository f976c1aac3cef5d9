#include "tools/zetool/wave/WaveCommands.h"

#include "tools/zetool/wave/WaveList.h"

namespace {

constexpr ArgumentRow s_file[] = {{"FILE", "a waveform (VCD), or - for standard input"}};

constexpr OptionRow s_listOptions[] = {s_jsonOption, s_outputOption, s_forceOption};

constexpr ExampleRow s_listExamples[] = {
    {"zetool wave list a.vcd", "Shows the signals of a.vcd."},
};

constexpr CommandRow s_commands[] = {
    {"list", "the signals with width, group, user name and description",
     "Lists the signals of a waveform: width, name, group, the name that the user gave the port, and what "
     "the "
     "signal means. Names and groups come from the structure document in the waveform's comment, or from the "
     "signals' own names where the document doesn't list them. Files of other tools are listed by scopes.",
     s_file, s_listOptions, "the declarations have a fault, or aren't whole", waveList, s_listExamples},
};

} // namespace

std::span<const CommandRow> waveCommands() {
    return s_commands;
}

#include "tools/zetool/wave/WaveCommands.h"

#include "tools/zetool/wave/WaveCheck.h"
#include "tools/zetool/wave/WaveGtkw.h"
#include "tools/zetool/wave/WaveList.h"
#include "tools/zetool/wave/WaveStandard.h"

namespace {

constexpr ArgumentRow s_file[] = {{"FILE", "a waveform (VCD), or - for standard input"}};

constexpr const char* s_readers[] = {"pulseview"};
constexpr OptionRow s_standardOptions[] = {
    s_outputOption,
    s_forceOption,
    {"for", 0, "VIEWER", "only what the viewer can show", s_readers},
};

constexpr ExampleRow s_listExamples[] = {
    {"zetool wave list a.vcd", "Shows the signals of a.vcd."},
};

constexpr ExampleRow s_standardExamples[] = {
    {"zetool wave standard a.vcd -o standard.vcd", "Makes standard.vcd, which every viewer opens."},
    {"zetool wave standard --for pulseview a.vcd -o pads.vcd",
     "Makes pads.vcd, with the one-bit signals for protocol decoders."},
};

constexpr ExampleRow s_checkExamples[] = {
    {"zetool wave check a.vcd", "Names what readers of a.vcd will stumble over."},
};

constexpr OptionRow s_gtkwOptions[] = {
    {"output", 'o', "FILE", "the save file, in place of one beside the waveform"},
    s_forceOption,
};
constexpr ExampleRow s_gtkwExamples[] = {
    {"zetool wave gtkw a.vcd",
     "Writes a.gtkw and a.filters, so that 'gtkwave a.gtkw' shows groups and names."},
};

constexpr CommandRow s_commands[] = {
    {"gtkw", "a session of GTKWave, with groups, names and texts",
     "Writes FILE.gtkw and the folder FILE.filters beside the waveform, so that 'gtkwave FILE.gtkw' opens it "
     "with cores, categories and groups, each signal in its radix, the user's names of ports beside their "
     "locations, and texts in place of values: what the descriptions tell, what threads wait on, and the "
     "whole names of functions. Paths are relative: the folder can be moved.",
     s_file, s_gtkwOptions, "the declarations or the structure document have a fault", waveGtkw,
     s_gtkwExamples},
    {"standard", "the same waveform as IEEE 1364 has it",
     "Writes the same signals and values as IEEE 1364 has them: exact times in a unit of 1, 10 or 100, "
     "scopes for core, category and group, names without brackets, times that go on past 2^31 clocks, and "
     "one-bit values of one bit. The structure document is carried along with its names adapted. A file that "
     "was cut is written up to its last whole step. With --for pulseview only one-bit signals are "
     "written, at most 64 of them, pads and ports first, in a time unit that readers can sample.",
     s_file, s_standardOptions, "the file was cut, or holds what a standard file can't", waveStandard,
     s_standardExamples},
    {"check", "what readers will stumble over",
     "Names every trouble that the waveform has, with the line, the number of places and the readers that it "
     "hits, and says whether the last time step is whole. 'zetool wave standard' makes a waveform without "
     "them.",
     s_file, s_showOptions, "the waveform has troubles", waveCheck, s_checkExamples},
    {"list", "the signals with width, group, user name and description",
     "Lists the signals of a waveform: width, name, group, the name that the user gave the port, and what "
     "the signal means. Names and groups come from the structure document in the waveform's comment, or from "
     "the signals' own names where the document doesn't list them. Files of other tools are listed by "
     "scopes.",
     s_file, s_showOptions, "the declarations have a fault, or aren't whole", waveList, s_listExamples},
};

} // namespace

std::span<const CommandRow> waveCommands() {
    return s_commands;
}

#include "tools/zetool/pll/PllCommands.h"

#include "tools/zetool/pll/PllShow.h"

namespace {

constexpr const char* s_devices[] = {"g4", "l1"};

constexpr OptionRow s_options[] = {
    {"device", 'd', "NAME", "the family of devices whose PLL it is", s_devices},
    {"oscillator", 0, "FREQUENCY", "of the oscillator"},
    {"system", 0, "FREQUENCY", "the system frequency to be had"},
    {"reference", 0, "FREQUENCY", "the reference frequency to be had"},
    {"min-feedback-div", 0, "RATIO", "the lowest feedback divider that may be used"},
    {"input-div", 0, "NUMBER", "the input divider, in place of --system"},
    {"feedback-div", 0, "RATIO", "the feedback divider, in place of --system; l1 has halves, as in 10.5"},
    {"output-div", 0, "NUMBER", "the output divider, in place of --system"},
    {"reference-div", 0, "NUMBER", "the reference clock's divider, in place of --reference"},
    s_jsonOption,
    s_outputOption,
    s_forceOption,
};

constexpr ExampleRow s_examples[] = {
    {"zetool pll --device g4 --oscillator 20MHz --system 400MHz --reference 100MHz",
     "Finds the dividers that make 400 MHz of 20 MHz."},
    {"zetool pll --device l1 --oscillator 25MHz --input-div 1 --feedback-div 16 --output-div 1",
     "Shows which frequency these dividers make."},
};

constexpr CommandRow s_commands[] = {
    {"",
     "dividers and register values of a PLL, and back",
     "Finds the dividers whose system frequency is closest to the one asked for, as the network's reader "
     "does, and shows them with the frequencies that they make and the values of both registers. With the "
     "three dividers in place of --system, shows what they make. A frequency is a number with Hz, kHz or "
     "MHz; without a unit it is in Hz. Dividers that are given are checked against what the registers can "
     "hold; where they drive the PLL outside its limits, the result is shown and the limit named.",
     {},
     s_options,
     "no setting makes the frequency, or a frequency or divider can't be",
     pllShow,
     s_examples},
};

} // namespace

std::span<const CommandRow> pllCommands() {
    return s_commands;
}

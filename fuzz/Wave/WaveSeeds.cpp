// Writes the seeds of the fuzz target: waveforms of the plugin and of other tools, whole and cut.

#include "tests/support/FuzzSeeds.h"
#include "tests/support/SampleWave.h"

#include <vector>

namespace {

SampleWave sample() {
    TracedCore core;
    core.ports = {{"ZS1_PORT_1A", 1, "uart_tx"}, {"ZS1_PORT_4A", 4, ""}};
    core.hasCycles = true;
    core.numThreads = 1;
    core.numTimers = 1;
    core.hasInstructions = true;
    core.functions = {{"main", "main.0"}};
    core.numFunctionThreads = 1;
    return {"2.500000 ns", "Sat Nov 21 12:00:00 2026", {"Pad0"}, {core}};
}

std::string withPad(const std::string& name) {
    SampleWave wave;
    wave.pads = {name};
    return wave.start() + "#1\n1paa0\n\n#2\n";
}

const std::string s_steps =
    "#1\n1po00b0\nb1010 po00a1\nb00000000000000000000000000000001 _00\n\n#2147483647\n2po00b0\n"
    "\n#-2147483648\n-1po00b0\n\n#-1\n0po00b0\n\n#5\n1po00b0\n\n#5\n";

const std::string s_seeds[] = {
    sample().start() + s_steps,
    sample().start() + "#1\n1po00b0\n",
    sample().start().substr(0, 900),
    withPad("a\"<&b"),
    withPad("a $end b"),
    withPad("7 \xe9[3]"),
    "$timescale 1 ns $end\n$scope module m $end\n$var wire 1 ! a $end\n$var reg 8 # b [7:0] $end\n"
    "$var real 64 & r $end\n$var event 1 ' e $end\n$upscope $end\n$enddefinitions $end\n#0 $dumpvars 0! b1 # "
    "r1.5 & "
    "$end\n#5 1! bUW10 # 1' #7 u!\n$dumpoff x! $end\n$comment x $end\n",
    "$timescale 5.5 us $end $var wire 1 ! a $end $var wire 4 ! a $end $enddefinitions $end 0! #3 b10 ! #2 7! "
    "#",
};

} // namespace

int main(int argc, char** argv) {
    return writeSeeds(argc, argv, s_seeds);
}

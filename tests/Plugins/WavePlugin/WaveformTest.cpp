// Whole waveforms, byte by byte; only the date is masked.

#include "Plugins/WavePlugin/WavePlugin.h"
#include "tests/support/NetworkBuilder.h"
#include "tests/support/PluginRun.h"
#include "tests/support/SampleImage.h"
#include "tests/support/TemporaryFolder.h"

#include <csignal>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::EndsWith;

namespace {

constexpr const char* s_allOptions =
    "-pads -core stdcore[0] -ports-detailed -cycles -threads -clock-blocks -timers -instructions";

// A small device with some of everything.
void fill(StubSimulator& simulator) {
    simulator.pads = {StubSimulator::pad("Pad0"), StubSimulator::pad("Pad1", 1)};
    StubSimulator::Core& core = simulator.core();
    core.ports = {StubSimulator::port("ZS1_PORT_1A", 1), StubSimulator::port("ZS1_PORT_8B", 8)};
    core.threads.resize(2);
    core.timers.resize(1);
    core.clockBlocks.resize(1);
    core.instruction.mnemonic = "nop     ";
    core.instruction.functionName = "main";
}

// Some hundred clocks in which every word takes many values.
void play(StubSimulator& simulator, unsigned int id) {
    StubSimulator::Core& core = simulator.core();
    std::uint32_t noise = 1;
    const auto next = [&noise](std::uint32_t mask) {
        noise = noise * 1664525 + 1013904223;
        return noise >> 8 & mask;
    };
    for (simulator.cycle = 1; simulator.cycle <= 300; ++simulator.cycle) {
        simulator.pads[next(1)].value = next(1);
        TracePortState& port = core.ports[next(1)];
        for (const auto field :
             {&TracePortState::value, &TracePortState::inUse, &TracePortState::direction,
              &TracePortState::threadsWaiting, &TracePortState::transferRegister,
              &TracePortState::shiftRegister, &TracePortState::outputThreadPc, &TracePortState::details,
              &TracePortState::counter, &TracePortState::timeStamp, &TracePortState::shiftRegisterCount,
              &TracePortState::shiftRegisterValid, &TracePortState::shiftRegisterSize,
              &TracePortState::transferRegisterFull, &TracePortState::transferRegisterSize}) {
            if (next(3) == 0)
                port.*field = next(0xffffff);
        }
        TraceThreadState& thread = core.threads[next(1)];
        thread.inUse = next(1);
        thread.resourceType = next(7);
        thread.resourceNumber = next(0xff);
        core.timers[0].time = simulator.cycle * 3;
        core.clockBlocks[0].risingEdge = simulator.cycle & 1;
        core.clockBlocks[0].fallingEdge = ~simulator.cycle & 1;
        core.clockBlocks[0].threadsWaiting = next(0x1f);
        core.instruction.valid = next(1);
        core.instruction.thread = next(7);
        core.instruction.pc = 0x10000 + next(0xff);
        PluginClock(id);
    }
    PluginTerminate(id);
}

// The waveform with its date, which stands in two places, replaced.
std::string masked(std::string waveform) {
    const std::string date = waveform.substr(8, waveform.find('\n', 8) - 8);
    for (std::size_t at = waveform.find(date); at != std::string::npos; at = waveform.find(date, at))
        waveform.replace(at, date.size(), "DATE");
    return waveform;
}

std::string playedWaveform(StubSimulator& simulator) {
    const PluginResult result =
        runPlugin(simulator, s_allOptions, [&](unsigned int id) { play(simulator, id); });
    EXPECT_EQ(result.process.exitStatus, 0) << result.process.error;
    return masked(result.waveform);
}

// A check sum that tells waveforms apart: FNV-1a.
std::uint64_t checkSum(const std::string& text) {
    std::uint64_t sum = 0xcbf29ce484222325;
    for (const char c : text)
        sum = (sum ^ static_cast<unsigned char>(c)) * 0x100000001b3;
    return sum;
}

} // namespace

TEST(Waveform, OfARunIsTheSameInEveryWordSize) {
    StubSimulator simulator;
    simulator.pads = {StubSimulator::pad("Pad0")};
    StubSimulator::Core& core = simulator.core();
    core.ports = {StubSimulator::port("ZS1_PORT_4A", 4)};
    core.threads.resize(1);
    core.clockBlocks.resize(1);
    core.timers.resize(1);
    core.instruction.mnemonic = "nop     ";
    const PluginResult result = runPlugin(
        simulator, "-ports -cycles -threads -clock-blocks -timers -instructions -pads", [&](unsigned int id) {
            simulator.cycle = 1;
            core.ports[0].value = 9;
            core.ports[0].outputThreadPc = 0xdeadbeef;
            core.threads[0].resourceType = 1;
            simulator.pads[0].value = 1;
            PluginClock(id);
            simulator.cycle = 2;
            core.timers[0].time = 0xffffffff;
            core.clockBlocks[0].risingEdge = 1;
            core.instruction.pc = 0x10000;
            PluginClock(id);
            PluginTerminate(id);
        });
    EXPECT_EQ(masked(result.waveform), R"vcd($date
  DATE
$end

$version
  Zcore C-Simulator + WaveTrace plugin (interface version: 1.0)
$end

$timescale
  2.500000 ns
$end

$comment
<?xml version="1.0" encoding="UTF-8"?>
<Structure>
    <Date value="DATE"/>
    <Hierarchy>
    <Category name="Pads">
        <Signal name="Pad0" radix="HEX"/>
    </Category>
        <Core name="stdcore[0]">
            <Category name="Ports">
                <Group name="ZS1_PORT_4A">
                    <Signal name="stdcore[0]_ZS1_PORT_4A" radix="HEX"/>
                    <Signal name="stdcore[0]_ZS1_PORT_4A_inuse" radix="HEX"/>
                    <Signal name="stdcore[0]_ZS1_PORT_4A_tWaiting" radix="HEX"/>
                    <Signal name="stdcore[0]_ZS1_PORT_4A_direction" radix="HEX"/>
                    <Signal name="stdcore[0]_ZS1_PORT_4A_outputThreadPc" radix="HEX"/>
                    <Signal name="stdcore[0]_ZS1_PORT_4A_portDetails" radix="HEX"/>
                </Group>
            </Category>
            <Category name="Cycles">
                <Signal name="stdcore[0]_CYCLES" radix="DECIMAL"/>
            </Category>
            <Category name="Threads">
                <Group name="Thread0">
                    <Signal name="stdcore[0]_Thread0_inuse" radix="HEX"/>
                    <Signal name="stdcore[0]_Thread0_waiting" radix="HEX"/>
                    <Signal name="stdcore[0]_Thread0_waitingResourceType" radix="HEX"/>
                    <Signal name="stdcore[0]_Thread0_waitingResourceNumber" radix="HEX"/>
                </Group>
            </Category>
            <Category name="ClockBlocks">
                <Group name="ClkBlk0">
                    <Signal name="stdcore[0]_ClkBlk0_inuse" radix="HEX"/>
                    <Signal name="stdcore[0]_ClkBlk0_started" radix="HEX"/>
                    <Signal name="stdcore[0]_ClkBlk0_tWaiting" radix="HEX"/>
                    <Signal name="stdcore[0]_ClkBlk0_riseEdge" radix="HEX"/>
                    <Signal name="stdcore[0]_ClkBlk0_fallEdge" radix="HEX"/>
                </Group>
            </Category>
            <Category name="Timers">
                <Group name="Timer0">
                    <Signal name="stdcore[0]_Timer0_time" radix="HEX"/>
                    <Signal name="stdcore[0]_Timer0_inuse" radix="HEX"/>
                    <Signal name="stdcore[0]_Timer0_tWaiting" radix="HEX"/>
                </Group>
            </Category>
            <Category name="Instructions">
                <Signal name="stdcore[0]_INSTRUCTION_PC" radix="HEX"/>
                <Signal name="stdcore[0]_INSTRUCTION_THREAD_ID" radix="HEX"/>
                <Signal name="stdcore[0]_INSTRUCTION_MNEMONIC" radix="ASCII"/>
            </Category>
        </Core>
    </Hierarchy>
    <ValueAliases>
    </ValueAliases>
    <SignalDocs>
        <SignalDoc name=".*Pad\d+" description="The value on the pad">
            <ValueDocs>
            </ValueDocs>
        </SignalDoc>
        <SignalDoc name="stdcore\[\d+\]_ZS1_PORT_\d+[A-Z]_direction" description="High if the port is in output mode, low if in input mode">
            <ValueDocs>
                <ValueDoc value="0" text="The port is in input mode"/>
                <ValueDoc value="1" text="The port is in output mode"/>
            </ValueDocs>
        </SignalDoc>
        <SignalDoc name="stdcore\[\d+\]_ZS1_PORT_\d+[A-Z]_inuse" description="High if the port is in use">
            <ValueDocs>
                <ValueDoc value="0" text="The port is not in use"/>
                <ValueDoc value="1" text="The port is in use"/>
            </ValueDocs>
        </SignalDoc>
        <SignalDoc name="stdcore\[\d+\]_ZS1_PORT_\d+[A-Z]_tWaiting" description="High if any threads are waiting on the port">
            <ValueDocs>
                <ValueDoc value="0" text="No threads are waiting on this port"/>
                <ValueDoc value="1" text="Threads are waiting on this port"/>
            </ValueDocs>
        </SignalDoc>
        <SignalDoc name="stdcore\[\d+\]_ZS1_PORT_\d+[A-Z]" description="Provides a view of the retimed pads for the port">
            <ValueDocs>
            </ValueDocs>
        </SignalDoc>
        <SignalDoc name="stdcore\[\d+\]_ZS1_PORT_\d+[A-Z]_portTime" description="The value of the port counter">
            <ValueDocs>
            </ValueDocs>
        </SignalDoc>
        <SignalDoc name="stdcore\[\d+\]_ZS1_PORT_\d+[A-Z]_timeReg" description="The value of the ports timestamp (ZC's @ operator)">
            <ValueDocs>
            </ValueDocs>
        </SignalDoc>
        <SignalDoc name="stdcore\[\d+\]_ZS1_PORT_\d+[A-Z]_transferReg" description="The data in the ports transfer register">
            <ValueDocs>
            </ValueDocs>
        </SignalDoc>
        <SignalDoc name="stdcore\[\d+\]_ZS1_PORT_\d+[A-Z]_shiftReg" description="The data in the ports shift register">
            <ValueDocs>
            </ValueDocs>
        </SignalDoc>
        <SignalDoc name=".*CYCLES" description="The current core clock cycle number">
            <ValueDocs>
            </ValueDocs>
        </SignalDoc>
        <SignalDoc name=".*Thread\d+_inuse" description="High if the thread is in use">
            <ValueDocs>
                <ValueDoc value="0" text="The thread is not in use"/>
                <ValueDoc value="1" text="The thread is in use"/>
            </ValueDocs>
        </SignalDoc>
        <SignalDoc name=".*Thread\d+_waiting" description="High if the thread is waiting on a resource">
            <ValueDocs>
                <ValueDoc value="0" text="The thread is not waiting on a resource"/>
                <ValueDoc value="1" text="The thread is waiting on a resource"/>
            </ValueDocs>
        </SignalDoc>
        <SignalDoc name=".*Thread\d+_waitingResourceType" description="If the thread is waiting, this is the resource type that is causing the wait (ASCII format)">
            <ValueDocs>
            </ValueDocs>
        </SignalDoc>
        <SignalDoc name=".*Thread\d+_waitingResourceNumber" description="If the thread is waiting, this is the resource id that is causing the wait">
            <ValueDocs>
            </ValueDocs>
        </SignalDoc>
        <SignalDoc name=".*ClkBlk\d+_inuse" description="High if the port is in use">
            <ValueDocs>
                <ValueDoc value="0" text="The clockblock is not in use"/>
                <ValueDoc value="1" text="The clockblock is in use"/>
            </ValueDocs>
        </SignalDoc>
        <SignalDoc name=".*ClkBlk\d+_started" description="High if the clockblock has started">
            <ValueDocs>
                <ValueDoc value="0" text="The clockblock has not started"/>
                <ValueDoc value="1" text="The clockblock has started"/>
            </ValueDocs>
        </SignalDoc>
        <SignalDoc name=".*ClkBlk\d+_tWaiting" description="High if any threads are waiting on the clockblock">
            <ValueDocs>
                <ValueDoc value="0" text="No threads are waiting on this clockblock"/>
                <ValueDoc value="1" text="Threads are waiting on this clockblock"/>
            </ValueDocs>
        </SignalDoc>
        <SignalDoc name=".*ClkBlk\d+_riseEdge" description="High on rising edges of the clockblock">
            <ValueDocs>
            </ValueDocs>
        </SignalDoc>
        <SignalDoc name=".*ClkBlk\d+_fallEdge" description="High on falling edges of the clockblock">
            <ValueDocs>
            </ValueDocs>
        </SignalDoc>
        <SignalDoc name=".*INSTRUCTION_PC" description="The PC value of the instruction">
            <ValueDocs>
            </ValueDocs>
        </SignalDoc>
        <SignalDoc name=".*INSTRUCTION_THREAD_ID" description="The thread number of the instruction">
            <ValueDocs>
            </ValueDocs>
        </SignalDoc>
        <SignalDoc name=".*INSTRUCTION_MNEMONIC" description="The mnemonic of the instruction (ASCII format)">
            <ValueDocs>
            </ValueDocs>
        </SignalDoc>
    </SignalDocs>
    <SignalAliases>
        <SignalAliasMap coreName="stdcore[0]">
        </SignalAliasMap>
    </SignalAliases>
</Structure>
$end

$var wire 1 paa0 Pad0 $end
$var wire 4 po00a0 stdcore[0]_ZS1_PORT_4A $end
$var wire 1 po00b0 stdcore[0]_ZS1_PORT_4A_inuse $end
$var wire 1 po00c0 stdcore[0]_ZS1_PORT_4A_tWaiting $end
$var wire 1 po00d0 stdcore[0]_ZS1_PORT_4A_direction $end
$var wire 32 po00l0 stdcore[0]_ZS1_PORT_4A_outputThreadPc $end
$var wire 32 po00m0 stdcore[0]_ZS1_PORT_4A_portDetails $end
$var wire 32 _00 stdcore[0]_CYCLES $end
$var wire 1 t00a0 stdcore[0]_Thread0_inuse $end
$var wire 1 t00b0 stdcore[0]_Thread0_waiting $end
$var wire 64 t00c0 stdcore[0]_Thread0_waitingResourceType $end
$var wire 8 t00d0 stdcore[0]_Thread0_waitingResourceNumber $end
$var wire 1 c00a0 stdcore[0]_ClkBlk0_inuse $end
$var wire 1 c00b0 stdcore[0]_ClkBlk0_started $end
$var wire 8 c00c0 stdcore[0]_ClkBlk0_tWaiting $end
$var wire 1 c00e0 stdcore[0]_ClkBlk0_riseEdge $end
$var wire 1 c00f0 stdcore[0]_ClkBlk0_fallEdge $end
$var wire 64 ti00a0 stdcore[0]_Timer0_time $end
$var wire 1 ti00b0 stdcore[0]_Timer0_inuse $end
$var wire 1 ti00c0 stdcore[0]_Timer0_tWaiting $end
$var wire 32 in00a0 stdcore[0]_INSTRUCTION_PC $end
$var wire 8 in00b0 stdcore[0]_INSTRUCTION_THREAD_ID $end
$var wire 64 in00c0 stdcore[0]_INSTRUCTION_MNEMONIC $end

$enddefinitions $end

$dumpvars
0paa0
$end

$dumpvars
b0000 po00a0
0po00b0
0po00c0
0po00d0
b00000000000000000000000000000000 po00l0
b00000000000000000000000000000000 po00m0
$end

$dumpvars
b00000000000000000000000000000000 _00
$end

$dumpvars
0t00a0
0t00b0
b0100111000101111010000010010000000100000001000000010000000100000 t00c0
b00000000 t00d0
$end

$dumpvars
0c00a0
0c00b0
b00000000 c00c0
0c00e0
0c00f0
$end

$dumpvars
b0000000000000000000000000000000000000000000000000000000000000000 ti00a0
0ti00b0
0ti00c0
$end

$dumpvars
bxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx in00a0
bxxxxxxxx in00b0
bxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx in00c0
$end

#1
1paa0
b1001 po00a0
b11011110101011011011111011101111 po00l0
b00000000000000000000000000000001 _00
b0101000001001111010100100101010000100000001000000010000000100000 t00c0
b0110111001101111011100000010000000100000001000000010000000100000 in00c0

#2
b00000000000000000000000000000010 _00
1c00e0
b0000000000000000000000000000000011111111111111111111111111111111 ti00a0
b00000000000000010000000000000000 in00a0

#2
)vcd");
}

TEST(Waveform, OfALongRunHasTheSameValuesInEveryWordSize) {
    StubSimulator simulator;
    fill(simulator);
    const PluginResult result =
        runPlugin(simulator, s_allOptions, [&](unsigned int id) { play(simulator, id); });
    EXPECT_EQ(result.values().size(), 126094U);
    EXPECT_EQ(checkSum(result.values()), 8472851164258638403U);
}

TEST(Waveform, OfTwentyRunsIsTheSame) {
    StubSimulator simulator;
    fill(simulator);
    const std::string first = playedWaveform(simulator);
    for (int run = 1; run < 20; ++run) {
        StubSimulator again;
        fill(again);
        ASSERT_EQ(playedWaveform(again), first) << run;
    }
}

TEST(Waveform, ShowsNothingOfWordsThatAreNotListed) {
    StubSimulator clean;
    fill(clean);
    const std::string waveform = playedWaveform(clean);
    StubSimulator dirty;
    fill(dirty);
    dirty.garbage = true;
    EXPECT_EQ(playedWaveform(dirty), waveform);
}

TEST(Waveform, OfAKilledRunHoldsEveryLineUpToTheLastNumericChange) {
    StubSimulator simulator;
    simulator.pads = {StubSimulator::pad("Pad0")};
    simulator.core().ports = {StubSimulator::port("P", 4)};
    const PluginResult result = runPlugin(simulator, "-pads -ports -cycles", [&](unsigned int id) {
        simulator.cycle = 1;
        simulator.pads[0].value = 1;
        PluginClock(id);
        simulator.cycle = 2; // the cycle line alone
        PluginClock(id);
        simulator.cycle = 3;
        simulator.pads[0].value = 0;
        simulator.core().ports[0].value = 5;
        PluginClock(id);
        std::raise(SIGKILL);
    });
    EXPECT_EQ(result.process.signal, SIGKILL);
    EXPECT_EQ(result.clocks(),
              "#1\n"
              "1paa0\n"
              "b00000000000000000000000000000001 _00\n"
              "\n"
              "#2\n"
              "b00000000000000000000000000000010 _00\n"
              "\n"
              "#3\n"
              "0paa0\n"
              "b0101 po00a0\n"); // the cycle line and the end of the clock were in the buffer
}

TEST(Waveform, GrowsByEachNumericLineAtOnce) {
    // The simulator looks at the file in the middle of a clock.
    const DeviceFolder devices;
    const TemporaryFolder folder;
    const std::string output = folder.file("wave.vcd");
    StubSimulator simulator;
    simulator.pads = {StubSimulator::pad("Pad0"), StubSimulator::pad("Pad1")};
    simulator.core().instruction.mnemonic = "nop     ";
    static std::string s_seen;
    static std::string s_output;
    s_output = output;
    TracePluginCallbacks callbacks = *simulator.callbacks();
    callbacks.getInstructionState = [](unsigned int, unsigned int, TraceInstructionState* state) {
        state->mnemonic = "nop     ";
        s_seen = readFile(s_output);
    };
    const ChildResult result = runInChild([&] {
        const std::string image = folder.write("image.ze", imageOfCores(s_oneCore));
        const unsigned int id =
            PluginInitialise(&callbacks, ("-ze " + image + " -o " + output + " -pads -instructions").c_str());
        simulator.pads[0].value = 1;
        simulator.pads[1].value = 1;
        PluginClock(id); // pads first, instructions behind
        std::fputs(s_seen.c_str(), stdout);
    });
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_THAT(result.output, EndsWith("$end\n\n#0\n1paa0\n1paa1\n"));
}

// One run with every tracer, held against the whole waveform. The 32-bit and the 64-bit build run the same
// test, so they write the same bytes.

#include "tests/end_to_end/HostRun.h"

#include <gtest/gtest.h>

namespace {

constexpr const char* s_scenario = R"(
clocks 4
frequency 400
version 2.1
start 98
node 0
core 0
    port 0 ZS1_PORT_1A
        value  toggle
        inUse  from 2 1
    port 1 ZS1_PORT_4A
        width  4
        value  changes 0:5 2:10
        details 0x80000000
    thread 0
        inUse 1
        waiting changes 0:0 1:1 3:0
        resourceType changes 0:0 1:1 2:2
        resourceNumber changes 0:0 1:3
    clockBlock 0
        inUse 1
        started 1
        threadsWaiting 255
        risingEdge changes 0:0 2:1 3:0
        fallingEdge changes 0:0 3:1 4:0
    timer 0
        time 0xffffffff
        time from 3 0
    program 0
        run main 0x10000 ldc add
core 1
    port 0 ZS1_PORT_1B
        value from 4 1
pad 0..1 X0D0{n}:S
    value toggle every 2 phase {n}
)";

constexpr const char* s_words =
    "-pads -core stdcore[0] -functions -instructions -timers -clock-blocks -threads -cycles -ports "
    "-core stdcore[1] -ports-detailed";

constexpr const char* s_expected = R"#($date
  DATE
$end

$version
  Zcore C-Simulator + WaveTrace plugin (interface version: 2.1)
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
        <Signal name="X0D00_S" radix="HEX"/>
        <Signal name="X0D01_S" radix="HEX"/>
    </Category>
        <Core name="stdcore[0]">
            <Category name="Ports">
                <Group name="ZS1_PORT_1A">
                    <Signal name="stdcore[0]_ZS1_PORT_1A" radix="HEX"/>
                    <Signal name="stdcore[0]_ZS1_PORT_1A_inuse" radix="HEX"/>
                    <Signal name="stdcore[0]_ZS1_PORT_1A_tWaiting" radix="HEX"/>
                    <Signal name="stdcore[0]_ZS1_PORT_1A_direction" radix="HEX"/>
                    <Signal name="stdcore[0]_ZS1_PORT_1A_outputThreadPc" radix="HEX"/>
                    <Signal name="stdcore[0]_ZS1_PORT_1A_portDetails" radix="HEX"/>
                </Group>
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
            <Category name="Functions">
                    <Signal name="stdcore[0]_Functions_Thread0" radix="ASCII"/>
            </Category>
        </Core>
        <Core name="stdcore[1]">
            <Category name="Ports">
                <Group name="ZS1_PORT_1B">
                    <Signal name="stdcore[1]_ZS1_PORT_1B" radix="HEX"/>
                    <Signal name="stdcore[1]_ZS1_PORT_1B_inuse" radix="HEX"/>
                    <Signal name="stdcore[1]_ZS1_PORT_1B_tWaiting" radix="HEX"/>
                    <Signal name="stdcore[1]_ZS1_PORT_1B_direction" radix="HEX"/>
                    <Signal name="stdcore[1]_ZS1_PORT_1B_outputThreadPc" radix="HEX"/>
                    <Signal name="stdcore[1]_ZS1_PORT_1B_portDetails" radix="HEX"/>
                    <Signal name="stdcore[1]_ZS1_PORT_1B_shiftReg" radix="HEX"/>
                    <Signal name="stdcore[1]_ZS1_PORT_1B_shiftRegSize" radix="HEX"/>
                    <Signal name="stdcore[1]_ZS1_PORT_1B_shiftRegCount" radix="HEX"/>
                    <Signal name="stdcore[1]_ZS1_PORT_1B_transferReg" radix="HEX"/>
                    <Signal name="stdcore[1]_ZS1_PORT_1B_transferRegFull" radix="HEX"/>
                    <Signal name="stdcore[1]_ZS1_PORT_1B_transferRegSize" radix="HEX"/>
                    <Signal name="stdcore[1]_ZS1_PORT_1B_portTime" radix="HEX"/>
                    <Signal name="stdcore[1]_ZS1_PORT_1B_timeReg" radix="HEX"/>
                </Group>
            </Category>
        </Core>
    </Hierarchy>
    <ValueAliases>
        <ValueAliasMap coreName="stdcore[0]" category="functions">
            <Entry name="main" alias="main.0"/>
            <Entry name="mainloop" alias="main.1"/>
            <Entry name="run" alias="run"/>
        </ValueAliasMap>
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
            <Entry name="ZS1_PORT_1A" alias="PORT_LED"/>
        </SignalAliasMap>
        <SignalAliasMap coreName="stdcore[1]">
        </SignalAliasMap>
    </SignalAliases>
</Structure>
$end

$var wire 1 paa0 X0D00_S $end
$var wire 1 paa1 X0D01_S $end
$var wire 1 po00a0 stdcore[0]_ZS1_PORT_1A $end
$var wire 1 po00b0 stdcore[0]_ZS1_PORT_1A_inuse $end
$var wire 1 po00c0 stdcore[0]_ZS1_PORT_1A_tWaiting $end
$var wire 1 po00d0 stdcore[0]_ZS1_PORT_1A_direction $end
$var wire 32 po00l0 stdcore[0]_ZS1_PORT_1A_outputThreadPc $end
$var wire 32 po00m0 stdcore[0]_ZS1_PORT_1A_portDetails $end
$var wire 4 po00a1 stdcore[0]_ZS1_PORT_4A $end
$var wire 1 po00b1 stdcore[0]_ZS1_PORT_4A_inuse $end
$var wire 1 po00c1 stdcore[0]_ZS1_PORT_4A_tWaiting $end
$var wire 1 po00d1 stdcore[0]_ZS1_PORT_4A_direction $end
$var wire 32 po00l1 stdcore[0]_ZS1_PORT_4A_outputThreadPc $end
$var wire 32 po00m1 stdcore[0]_ZS1_PORT_4A_portDetails $end
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
$var wire 64 fu00a0 stdcore[0]_Functions_Thread0 $end
$var wire 1 po01a0 stdcore[1]_ZS1_PORT_1B $end
$var wire 1 po01b0 stdcore[1]_ZS1_PORT_1B_inuse $end
$var wire 1 po01c0 stdcore[1]_ZS1_PORT_1B_tWaiting $end
$var wire 1 po01d0 stdcore[1]_ZS1_PORT_1B_direction $end
$var wire 32 po01l0 stdcore[1]_ZS1_PORT_1B_outputThreadPc $end
$var wire 32 po01m0 stdcore[1]_ZS1_PORT_1B_portDetails $end
$var wire 32 po01e0 stdcore[1]_ZS1_PORT_1B_shiftReg $end
$var wire 1 po01f0 stdcore[1]_ZS1_PORT_1B_shiftRegValid $end
$var wire 32 po01g0 stdcore[1]_ZS1_PORT_1B_shiftRegSize $end
$var wire 32 po01h0 stdcore[1]_ZS1_PORT_1B_shiftRegCount $end
$var wire 32 po01i0 stdcore[1]_ZS1_PORT_1B_transferReg $end
$var wire 1 po01j0 stdcore[1]_ZS1_PORT_1B_transferRegFull $end
$var wire 32 po01k0 stdcore[1]_ZS1_PORT_1B_transferRegSize $end
$var wire 32 po01n0 stdcore[1]_ZS1_PORT_1B_portTime $end
$var wire 32 po01o0 stdcore[1]_ZS1_PORT_1B_timeReg $end

$enddefinitions $end

$dumpvars
0paa0
0paa1
$end

$dumpvars
0po00a0
0po00b0
0po00c0
0po00d0
b00000000000000000000000000000000 po00l0
b00000000000000000000000000000000 po00m0
b0101 po00a1
0po00b1
0po00c1
0po00d1
b00000000000000000000000000000000 po00l1
b10000000000000000000000000000000 po00m1
$end

$dumpvars
b00000000000000000000000000000000 _00
$end

$dumpvars
1t00a0
0t00b0
b0100111000101111010000010010000000100000001000000010000000100000 t00c0
b00000000 t00d0
$end

$dumpvars
1c00a0
1c00b0
b11111111 c00c0
0c00e0
0c00f0
$end

$dumpvars
b0000000000000000000000000000000011111111111111111111111111111111 ti00a0
0ti00b0
0ti00c0
$end

$dumpvars
bxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx in00a0
bxxxxxxxx in00b0
bxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx in00c0
$end

$dumpvars
bxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx fu00a0
$end

$dumpvars
0po01a0
0po01b0
0po01c0
0po01d0
b00000000000000000000000000000000 po01l0
b00000000000000000000000000000000 po01m0
b00000000000000000000000000000000 po01e0
0po01f0
b00000000000000000000000000000000 po01g0
b00000000000000000000000000000000 po01h0
b00000000000000000000000000000000 po01i0
0po01j0
b00000000000000000000000000000000 po01k0
b00000000000000000000000000000000 po01n0
b00000000000000000000000000000000 po01o0
$end

#99
1paa1
1po00a0
b00000000000000000000000001100011 _00
1t00b0
b0101000001001111010100100101010000100000001000000010000000100000 t00c0
b00000011 t00d0
b00000000000000010000000000000010 in00a0
b0110000101100100011001000010000000100000001000000010000000100000 in00c0
b0110110101100001011010010110111000101110001100000000000000000000 fu00a0

#100
1paa0
0po00a0
1po00b0
b1010 po00a1
b00000000000000000000000001100100 _00
b0101010001001001010011010100010101010010001000000010000000100000 t00c0
1c00e0

#101
0paa1
1po00a0
b00000000000000000000000001100101 _00
0t00b0
0c00e0
1c00f0
b0000000000000000000000000000000000000000000000000000000000000000 ti00a0

#102
0paa0
0po00a0
b00000000000000000000000001100110 _00
0c00f0
1po01a0

#102
)#";

} // namespace

TEST(Waveform, HoldsWhatEveryTracerSaw) {
    const HostRun run;
    const ChildResult result = run.play(s_scenario, {run.arguments("a.vcd", s_words)});
    EXPECT_EQ(result.exitStatus, 0) << result.error;
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(run.waveform("a.vcd"), s_expected);
}

TEST(Waveform, GoesToStandardOutputWithoutAFile) {
    const HostRun run;
    const ChildResult result = run.play(s_scenario, {run.arguments("", s_words)});
    EXPECT_EQ(result.exitStatus, 0) << result.error;
    EXPECT_EQ(withoutDate(result.output), s_expected);
}

TEST(Waveform, IsTheSameOnEveryRun) {
    const HostRun run;
    for (int i = 0; i < 20; ++i) {
        ASSERT_EQ(run.play(s_scenario, {run.arguments("a.vcd", s_words)}).exitStatus, 0);
        ASSERT_EQ(run.waveform("a.vcd"), s_expected);
    }
}

TEST(Waveform, GarbageInUnlistedWordsChangesNothing) {
    const HostRun run;
    const ChildResult result = run.play(s_scenario, {run.arguments("a.vcd", s_words)}, {"--garbage"});
    EXPECT_EQ(result.exitStatus, 0) << result.error;
    EXPECT_EQ(run.waveform("a.vcd"), s_expected);
}

TEST(Waveform, IsTheSameWhateverLikeNamedSymbolsTheHostHas) {
    const HostRun run;
    const ChildResult result = run.play(s_scenario, {run.arguments("a.vcd", s_words)}, {}, CLASHING_HOST);
    EXPECT_EQ(result.exitStatus, 0) << result.error;
    EXPECT_EQ(run.waveform("a.vcd"), s_expected);
}

#include "Plugins/WavePlugin/ClockBlockTracer.h"

#include "Plugins/WavePlugin/WavePlugin.h"
#include "tests/support/MemoryStream.h"
#include "tests/support/PluginRun.h"

#include <gtest/gtest.h>

namespace {

class ClockBlockTracerTest : public testing::Test {
protected:
    StubSimulator simulator;
    std::vector<TraceClockBlockState>& blocks = simulator.core().clockBlocks;
};

} // namespace

TEST_F(ClockBlockTracerTest, DeclaresFiveSignalsABlockAndSkipsTheLetterD) {
    blocks.resize(1);
    const MemoryStream stream;
    ClockBlockTracer(simulator.callbacks(), 0, "stdcore[0]").declareVariables(stream);
    EXPECT_EQ(stream.text(), "$var wire 1 c00a0 stdcore[0]_ClkBlk0_inuse $end\n"
                             "$var wire 1 c00b0 stdcore[0]_ClkBlk0_started $end\n"
                             "$var wire 8 c00c0 stdcore[0]_ClkBlk0_tWaiting $end\n"
                             "$var wire 1 c00e0 stdcore[0]_ClkBlk0_riseEdge $end\n"
                             "$var wire 1 c00f0 stdcore[0]_ClkBlk0_fallEdge $end\n");
    EXPECT_EQ(simulator.calls[33], 1U); // the state is asked for also here
}

TEST_F(ClockBlockTracerTest, ListsEachBlockAsAGroup) {
    blocks.resize(1);
    const MemoryStream stream;
    StructureFileWriter writer(stream, simulator.callbacks(), nullptr);
    ClockBlockTracer(simulator.callbacks(), 0, "c").dumpSignalHierarchy(&writer);
    EXPECT_EQ(stream.text(), "            <Category name=\"ClockBlocks\">\n"
                             "                <Group name=\"ClkBlk0\">\n"
                             "                    <Signal name=\"c_ClkBlk0_inuse\" radix=\"HEX\"/>\n"
                             "                    <Signal name=\"c_ClkBlk0_started\" radix=\"HEX\"/>\n"
                             "                    <Signal name=\"c_ClkBlk0_tWaiting\" radix=\"HEX\"/>\n"
                             "                    <Signal name=\"c_ClkBlk0_riseEdge\" radix=\"HEX\"/>\n"
                             "                    <Signal name=\"c_ClkBlk0_fallEdge\" radix=\"HEX\"/>\n"
                             "                </Group>\n"
                             "            </Category>\n");
}

TEST_F(ClockBlockTracerTest, DescribesFiveSignals) {
    const MemoryStream stream;
    StructureFileWriter writer(stream, simulator.callbacks(), nullptr);
    ClockBlockTracer(simulator.callbacks(), 0, "c").dumpSignalDocs(&writer);
    EXPECT_EQ(stream.text(),
              R"xml(        <SignalDoc name=".*ClkBlk\d+_inuse" description="High if the port is in use">
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
)xml");
}

TEST_F(ClockBlockTracerTest, WritesTheFirstValueOfEachSignalFromItsOwnWord) {
    blocks.resize(1);
    blocks[0].inUse = 1;
    blocks[0].threadsWaiting = 5;
    blocks[0].fallingEdge = 1;
    const MemoryStream stream;
    ClockBlockTracer(simulator.callbacks(), 0, "c").initialiseVariables(stream);
    EXPECT_EQ(stream.text(), "$dumpvars\n1c00a0\n0c00b0\nb00000101 c00c0\n0c00e0\n1c00f0\n$end\n\n");
}

TEST_F(ClockBlockTracerTest, AChangeOfWaitingThreadsWritesEightDigits) {
    blocks.resize(1);
    const PluginResult result = runPlugin(simulator, "-clock-blocks", [&](unsigned int id) {
        blocks[0].threadsWaiting = 1;
        PluginClock(id);
    });
    EXPECT_EQ(result.clocks(), "#0\nb00000001 c00c0\n\n");
}

TEST_F(ClockBlockTracerTest, ABlockThatTogglesOnEveryClockWritesTwoEdgesAClock) {
    blocks.resize(1);
    blocks[0].fallingEdge = 1;
    const PluginResult result = runPlugin(simulator, "-clock-blocks", [&](unsigned int id) {
        for (simulator.cycle = 1; simulator.cycle <= 3; ++simulator.cycle) {
            blocks[0].risingEdge ^= 1;
            blocks[0].fallingEdge ^= 1;
            PluginClock(id);
        }
        PluginTerminate(id);
    });
    EXPECT_EQ(result.clocks(), "#1\n1c00e0\n0c00f0\n\n"
                               "#2\n0c00e0\n1c00f0\n\n"
                               "#3\n1c00e0\n0c00f0\n\n"
                               "#4\n");
}

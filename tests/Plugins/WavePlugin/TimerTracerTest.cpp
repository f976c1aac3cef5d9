#include "Plugins/WavePlugin/TimerTracer.h"

#include "Plugins/WavePlugin/WavePlugin.h"
#include "tests/support/MemoryStream.h"
#include "tests/support/PluginRun.h"

#include <gtest/gtest.h>

namespace {

class TimerTracerTest : public testing::Test {
protected:
    StubSimulator simulator;
    std::vector<TraceTimerState>& timers = simulator.core().timers;
};

} // namespace

TEST_F(TimerTracerTest, DeclaresThreeSignalsATimerAndAsksForNoState) {
    timers.resize(2);
    const MemoryStream stream;
    TimerTracer(simulator.callbacks(), 0, "stdcore[0]").declareVariables(stream);
    EXPECT_EQ(stream.text(), "$var wire 64 ti00a0 stdcore[0]_Timer0_time $end\n"
                             "$var wire 1 ti00b0 stdcore[0]_Timer0_inuse $end\n"
                             "$var wire 1 ti00c0 stdcore[0]_Timer0_tWaiting $end\n"
                             "$var wire 64 ti00a1 stdcore[0]_Timer1_time $end\n"
                             "$var wire 1 ti00b1 stdcore[0]_Timer1_inuse $end\n"
                             "$var wire 1 ti00c1 stdcore[0]_Timer1_tWaiting $end\n");
    EXPECT_EQ(simulator.calls[27], 0U);
}

TEST_F(TimerTracerTest, ListsEachTimerAsAGroupAndDescribesNothing) {
    timers.resize(1);
    const MemoryStream stream;
    StructureFileWriter writer(stream, simulator.callbacks(), nullptr);
    TimerTracer tracer(simulator.callbacks(), 0, "c");
    tracer.dumpSignalHierarchy(&writer);
    tracer.dumpSignalDocs(&writer);
    EXPECT_EQ(stream.text(), "            <Category name=\"Timers\">\n"
                             "                <Group name=\"Timer0\">\n"
                             "                    <Signal name=\"c_Timer0_time\" radix=\"HEX\"/>\n"
                             "                    <Signal name=\"c_Timer0_inuse\" radix=\"HEX\"/>\n"
                             "                    <Signal name=\"c_Timer0_tWaiting\" radix=\"HEX\"/>\n"
                             "                </Group>\n"
                             "            </Category>\n");
}

TEST_F(TimerTracerTest, AChangeOfTheTimeWrites64DigitsTheUpperHalfZero) {
    timers.resize(1);
    const PluginResult result = runPlugin(simulator, "-timers", [&](unsigned int id) {
        timers[0].time = 0xffffffff;
        PluginClock(id);
    });
    EXPECT_EQ(result.clocks(), "#0\nb" + std::string(32, '0') + std::string(32, '1') + " ti00a0\n\n");
}

TEST_F(TimerTracerTest, ATimerThatIsNotInUseShowsItsTime) {
    timers.resize(1);
    timers[0].time = 1;
    const PluginResult result = runPlugin(simulator, "-timers", [&](unsigned int id) {
        timers[0].time = 2;
        PluginClock(id);
        timers[0].threadsWaiting = 1;
        PluginClock(id);
        PluginTerminate(id);
    });
    EXPECT_EQ(result.values(), "$dumpvars\nb" + std::string(63, '0') +
                                   "1 ti00a0\n0ti00b0\n0ti00c0\n$end\n\n"
                                   "#0\nb" +
                                   std::string(62, '0') +
                                   "10 ti00a0\n\n"
                                   "#0\n1ti00c0\n\n#0\n");
}

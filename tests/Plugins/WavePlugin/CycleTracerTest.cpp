#include "Plugins/WavePlugin/CycleTracer.h"

#include "Plugins/WavePlugin/WavePlugin.h"
#include "tests/support/MemoryStream.h"
#include "tests/support/PluginRun.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

TEST(CycleTracer, WritesTheCycleNumberOnEveryClockAlsoWhenItStays) {
    StubSimulator simulator;
    const PluginResult result = runPlugin(simulator, "-cycles", [&](unsigned int id) {
        simulator.cycle = 5;
        PluginClock(id);
        PluginClock(id);
        PluginTerminate(id);
    });
    EXPECT_EQ(result.process.exitStatus, 0) << result.process.error;
    EXPECT_EQ(result.clocks(), "#5\n"
                               "b00000000000000000000000000000101 _00\n"
                               "\n"
                               "#5\n"
                               "b00000000000000000000000000000101 _00\n"
                               "\n"
                               "#5\n");
}

TEST(CycleTracer, BeginsWithAFixedZeroAndAsksNothing) {
    StubSimulator simulator;
    simulator.cycle = 7;
    CycleTracer tracer(simulator.callbacks(), 0x00020003, "c");
    const MemoryStream stream;
    tracer.initialiseVariables(stream);
    EXPECT_EQ(stream.text(), "$dumpvars\nb00000000000000000000000000000000 _23\n$end\n\n");
    EXPECT_EQ(simulator.calls[2], 0U);
}

TEST(CycleTracer, GivesEachCoreAnIdentifierOfItsOwn) {
    StubSimulator simulator;
    const PluginResult result =
        runPlugin(simulator, "-core stdcore[0] -cycles -core stdcore[1] -cycles", {}, s_twoCores);
    EXPECT_EQ(result.declarations(), "$var wire 32 _00 stdcore[0]_CYCLES $end\n"
                                     "$var wire 32 _01 stdcore[1]_CYCLES $end\n");
}

TEST(CycleTracer, LeavesItsLineInTheStreamsBuffer) {
    StubSimulator simulator;
    CycleTracer tracer(simulator.callbacks(), 0, "c");
    const TemporaryFolder folder;
    FILE* const file = std::fopen(folder.file("wave").c_str(), "w");
    bool firstChange = true;
    tracer.traceVariables(file, &firstChange);
    EXPECT_EQ(folder.read("wave"), "");
    std::fclose(file);
    EXPECT_EQ(folder.read("wave"), "#0\nb00000000000000000000000000000000 _00\n");
}

TEST(CycleTracer, WrapsNegativeInTheTimeLineAlone) {
    StubSimulator simulator;
    simulator.cycle = 0xffffffff;
    CycleTracer tracer(simulator.callbacks(), 0, "c");
    const MemoryStream stream;
    bool firstChange = true;
    tracer.traceVariables(stream, &firstChange);
    EXPECT_EQ(stream.text(), "#-1\nb11111111111111111111111111111111 _00\n");
}

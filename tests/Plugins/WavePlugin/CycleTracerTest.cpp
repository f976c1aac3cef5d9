#include "Plugins/WavePlugin/CycleTracer.h"

#include "Plugins/WavePlugin/WavePlugin.h"
#include "tests/support/PluginRun.h"

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
    EXPECT_EQ(result.values(), "$dumpvars\n"
                               "b00000000000000000000000000000000 _00\n"
                               "$end\n\n"
                               "#5\n"
                               "b00000000000000000000000000000101 _00\n"
                               "\n"
                               "#5\n"
                               "b00000000000000000000000000000101 _00\n"
                               "\n"
                               "#5\n");
}

TEST(CycleTracer, GivesEachCoreAnIdentifierOfItsOwn) {
    StubSimulator simulator;
    const PluginResult result =
        runPlugin(simulator, "-core stdcore[0] -cycles -core stdcore[1] -cycles", {}, s_twoCores);
    EXPECT_EQ(result.declarations(), "$var wire 32 _00 stdcore[0]_CYCLES $end\n"
                                     "$var wire 32 _01 stdcore[1]_CYCLES $end\n");
}

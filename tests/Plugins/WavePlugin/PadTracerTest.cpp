#include "Plugins/WavePlugin/PadTracer.h"

#include "Plugins/WavePlugin/WavePlugin.h"
#include "tests/support/PluginRun.h"

#include <gtest/gtest.h>

TEST(PadTracer, WritesAScalarLineForAPadThatChanged) {
    StubSimulator simulator;
    simulator.pads = {StubSimulator::pad("Pad0", 1), StubSimulator::pad("Pad1")};
    const PluginResult result = runPlugin(simulator, "-pads", [&](unsigned int id) {
        simulator.cycle = 1;
        PluginClock(id);
        simulator.cycle = 2;
        simulator.pads[0].value = 0;
        PluginClock(id);
        PluginTerminate(id);
    });
    EXPECT_EQ(result.process.exitStatus, 0) << result.process.error;
    EXPECT_EQ(result.values(), "$dumpvars\n1paa0\n0paa1\n$end\n\n#2\n0paa0\n\n#2\n");
}

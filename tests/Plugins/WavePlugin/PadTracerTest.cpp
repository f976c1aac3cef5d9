#include "Plugins/WavePlugin/PadTracer.h"

#include "Plugins/WavePlugin/WavePlugin.h"
#include "tests/support/MemoryStream.h"
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
        simulator.cycle = 3;
        simulator.pads[1].value = 5; // unmasked
        PluginClock(id);
        PluginTerminate(id);
    });
    EXPECT_EQ(result.process.exitStatus, 0) << result.process.error;
    EXPECT_EQ(result.values(), "$dumpvars\n1paa0\n0paa1\n$end\n\n"
                               "#2\n0paa0\n\n"
                               "#3\n5paa1\n\n"
                               "#3\n");
}

TEST(PadTracer, OfADeviceWithoutPadsWritesAnEmptyBlockAndCategory) {
    StubSimulator simulator;
    PadTracer tracer(simulator.callbacks());
    const MemoryStream stream;
    StructureFileWriter writer(stream, simulator.callbacks(), nullptr);
    tracer.dumpSignalHierarchy(&writer);
    tracer.declareVariables(stream);
    tracer.initialiseVariables(stream);
    EXPECT_EQ(stream.text(), "    <Category name=\"Pads\">\n"
                             "    </Category>\n"
                             "$dumpvars\n$end\n\n");
}

TEST(PadTracer, ReplacesAColonInDeclarationAndHierarchyAlike) {
    StubSimulator simulator;
    simulator.pads = {StubSimulator::pad("bank::Pad0")};
    PadTracer tracer(simulator.callbacks());
    const MemoryStream stream;
    StructureFileWriter writer(stream, simulator.callbacks(), nullptr);
    tracer.dumpSignalHierarchy(&writer);
    tracer.declareVariables(stream);
    EXPECT_EQ(stream.text(), "    <Category name=\"Pads\">\n"
                             "        <Signal name=\"bank__Pad0\" radix=\"HEX\"/>\n"
                             "    </Category>\n"
                             "$var wire 1 paa0 bank__Pad0 $end\n");
}

TEST(PadTracer, DeclaresAPadWithoutAName) {
    StubSimulator simulator;
    simulator.pads = {StubSimulator::pad(nullptr)};
    PadTracer tracer(simulator.callbacks());
    const MemoryStream stream;
    tracer.declareVariables(stream);
    EXPECT_EQ(stream.text(), "$var wire 1 paa0 (null) $end\n");
}

TEST(PadTracer, AValueThatTheSimulatorLeavesOpenIsZero) {
    StubSimulator simulator;
    simulator.pads = {StubSimulator::pad("Pad0")};
    static bool s_isHigh;
    s_isHigh = false;
    simulator.callbacks()->getPadState = [](unsigned int, TracePadState* state) {
        state->name = "Pad0";
        if (s_isHigh)
            state->value = 1;
    };
    const PluginResult result = runPlugin(simulator, "-pads", [&](unsigned int id) {
        for (simulator.cycle = 1; simulator.cycle <= 4; ++simulator.cycle) {
            s_isHigh = !s_isHigh;
            PluginClock(id);
        }
    });
    EXPECT_EQ(result.clocks(), "#1\n1paa0\n\n#2\n0paa0\n\n#3\n1paa0\n\n#4\n0paa0\n\n");
}

TEST(PadTracer, AsksForTheCountOnce) {
    StubSimulator simulator;
    simulator.pads = {StubSimulator::pad("Pad0")};
    const PluginResult result = runPlugin(simulator, "-pads", [&](unsigned int id) {
        PluginClock(id);
        std::printf("%u", simulator.calls[34]);
    });
    EXPECT_EQ(result.process.output, "1");
}

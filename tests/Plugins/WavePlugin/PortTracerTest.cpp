#include "Plugins/WavePlugin/PortTracer.h"

#include "Plugins/WavePlugin/WavePlugin.h"
#include "tests/support/MemoryStream.h"
#include "tests/support/PluginRun.h"

#include <gtest/gtest.h>

namespace {

constexpr bool s_basic = false;
constexpr bool s_detailed = true;

// Every listed word with a value of its own.
TracePortState fullPort() {
    TracePortState port = StubSimulator::port("ZS1_PORT_4A", 4);
    port.value = 2;
    port.inUse = 1;
    port.threadsWaiting = 0;
    port.direction = 1;
    port.outputThreadPc = 15;
    port.details = 16;
    port.shiftRegister = 13;
    port.shiftRegisterValid = 1;
    port.shiftRegisterSize = 21;
    port.shiftRegisterCount = 19;
    port.transferRegister = 12;
    port.transferRegisterFull = 0;
    port.transferRegisterSize = 23;
    port.counter = 17;
    port.timeStamp = 18;
    return port;
}

class PortTracerTest : public testing::Test {
protected:
    std::string declared(bool detailed) {
        const MemoryStream stream;
        PortTracer(simulator.callbacks(), 0, "stdcore[0]", detailed).declareVariables(stream);
        return stream.text();
    }
    std::string initialised(bool detailed) {
        const MemoryStream stream;
        PortTracer(simulator.callbacks(), 0, "stdcore[0]", detailed).initialiseVariables(stream);
        return stream.text();
    }
    std::string hierarchy(bool detailed) {
        const MemoryStream stream;
        StructureFileWriter writer(stream, simulator.callbacks(), nullptr);
        PortTracer(simulator.callbacks(), 0, "stdcore[0]", detailed).dumpSignalHierarchy(&writer);
        return stream.text();
    }
    std::string docs(bool detailed) {
        const MemoryStream stream;
        StructureFileWriter writer(stream, simulator.callbacks(), nullptr);
        PortTracer(simulator.callbacks(), 0, "stdcore[0]", detailed).dumpSignalDocs(&writer);
        return stream.text();
    }

    StubSimulator simulator;
    std::vector<TracePortState>& ports = simulator.core().ports;
};

} // namespace

TEST_F(PortTracerTest, DeclaresSixSignalsAPort) {
    ports = {fullPort()};
    EXPECT_EQ(declared(s_basic), "$var wire 4 po00a0 stdcore[0]_ZS1_PORT_4A $end\n"
                                 "$var wire 1 po00b0 stdcore[0]_ZS1_PORT_4A_inuse $end\n"
                                 "$var wire 1 po00c0 stdcore[0]_ZS1_PORT_4A_tWaiting $end\n"
                                 "$var wire 1 po00d0 stdcore[0]_ZS1_PORT_4A_direction $end\n"
                                 "$var wire 32 po00l0 stdcore[0]_ZS1_PORT_4A_outputThreadPc $end\n"
                                 "$var wire 32 po00m0 stdcore[0]_ZS1_PORT_4A_portDetails $end\n");
}

TEST_F(PortTracerTest, DeclaresFifteenSignalsAPortInDetail) {
    ports = {fullPort()};
    EXPECT_EQ(declared(s_detailed), declared(s_basic) +
                                        "$var wire 32 po00e0 stdcore[0]_ZS1_PORT_4A_shiftReg $end\n"
                                        "$var wire 1 po00f0 stdcore[0]_ZS1_PORT_4A_shiftRegValid $end\n"
                                        "$var wire 32 po00g0 stdcore[0]_ZS1_PORT_4A_shiftRegSize $end\n"
                                        "$var wire 32 po00h0 stdcore[0]_ZS1_PORT_4A_shiftRegCount $end\n"
                                        "$var wire 32 po00i0 stdcore[0]_ZS1_PORT_4A_transferReg $end\n"
                                        "$var wire 1 po00j0 stdcore[0]_ZS1_PORT_4A_transferRegFull $end\n"
                                        "$var wire 32 po00k0 stdcore[0]_ZS1_PORT_4A_transferRegSize $end\n"
                                        "$var wire 32 po00n0 stdcore[0]_ZS1_PORT_4A_portTime $end\n"
                                        "$var wire 32 po00o0 stdcore[0]_ZS1_PORT_4A_timeReg $end\n");
}

TEST_F(PortTracerTest, WritesTheFirstValueOfEachSignalFromItsOwnWord) {
    ports = {fullPort()};
    EXPECT_EQ(initialised(s_detailed), "$dumpvars\n"
                                       "b0010 po00a0\n"
                                       "1po00b0\n"
                                       "0po00c0\n"
                                       "1po00d0\n"
                                       "b00000000000000000000000000001111 po00l0\n"
                                       "b00000000000000000000000000010000 po00m0\n"
                                       "b00000000000000000000000000001101 po00e0\n"
                                       "1po00f0\n"
                                       "b00000000000000000000000000010101 po00g0\n"
                                       "b00000000000000000000000000010011 po00h0\n"
                                       "b00000000000000000000000000001100 po00i0\n"
                                       "0po00j0\n"
                                       "b00000000000000000000000000010111 po00k0\n"
                                       "b00000000000000000000000000010001 po00n0\n"
                                       "b00000000000000000000000000010010 po00o0\n"
                                       "$end\n\n");
}

TEST_F(PortTracerTest, OfACoreWithoutPortsWritesAnEmptyBlockAndCategory) {
    EXPECT_EQ(declared(s_basic), "");
    EXPECT_EQ(initialised(s_basic), "$dumpvars\n$end\n\n");
    EXPECT_EQ(hierarchy(s_basic), "            <Category name=\"Ports\">\n"
                                  "            </Category>\n");
}

TEST_F(PortTracerTest, ListsSixSignalsAPortInAGroup) {
    ports = {fullPort()};
    EXPECT_EQ(hierarchy(s_basic),
              "            <Category name=\"Ports\">\n"
              "                <Group name=\"ZS1_PORT_4A\">\n"
              "                    <Signal name=\"stdcore[0]_ZS1_PORT_4A\" radix=\"HEX\"/>\n"
              "                    <Signal name=\"stdcore[0]_ZS1_PORT_4A_inuse\" radix=\"HEX\"/>\n"
              "                    <Signal name=\"stdcore[0]_ZS1_PORT_4A_tWaiting\" radix=\"HEX\"/>\n"
              "                    <Signal name=\"stdcore[0]_ZS1_PORT_4A_direction\" radix=\"HEX\"/>\n"
              "                    <Signal name=\"stdcore[0]_ZS1_PORT_4A_outputThreadPc\" radix=\"HEX\"/>\n"
              "                    <Signal name=\"stdcore[0]_ZS1_PORT_4A_portDetails\" radix=\"HEX\"/>\n"
              "                </Group>\n"
              "            </Category>\n");
}

TEST_F(PortTracerTest, ListsFourteenOfFifteenSignalsInDetail) {
    ports = {fullPort()};
    EXPECT_EQ(hierarchy(s_detailed),
              "            <Category name=\"Ports\">\n"
              "                <Group name=\"ZS1_PORT_4A\">\n"
              "                    <Signal name=\"stdcore[0]_ZS1_PORT_4A\" radix=\"HEX\"/>\n"
              "                    <Signal name=\"stdcore[0]_ZS1_PORT_4A_inuse\" radix=\"HEX\"/>\n"
              "                    <Signal name=\"stdcore[0]_ZS1_PORT_4A_tWaiting\" radix=\"HEX\"/>\n"
              "                    <Signal name=\"stdcore[0]_ZS1_PORT_4A_direction\" radix=\"HEX\"/>\n"
              "                    <Signal name=\"stdcore[0]_ZS1_PORT_4A_outputThreadPc\" radix=\"HEX\"/>\n"
              "                    <Signal name=\"stdcore[0]_ZS1_PORT_4A_portDetails\" radix=\"HEX\"/>\n"
              "                    <Signal name=\"stdcore[0]_ZS1_PORT_4A_shiftReg\" radix=\"HEX\"/>\n"
              "                    <Signal name=\"stdcore[0]_ZS1_PORT_4A_shiftRegSize\" radix=\"HEX\"/>\n"
              "                    <Signal name=\"stdcore[0]_ZS1_PORT_4A_shiftRegCount\" radix=\"HEX\"/>\n"
              "                    <Signal name=\"stdcore[0]_ZS1_PORT_4A_transferReg\" radix=\"HEX\"/>\n"
              "                    <Signal name=\"stdcore[0]_ZS1_PORT_4A_transferRegFull\" radix=\"HEX\"/>\n"
              "                    <Signal name=\"stdcore[0]_ZS1_PORT_4A_transferRegSize\" radix=\"HEX\"/>\n"
              "                    <Signal name=\"stdcore[0]_ZS1_PORT_4A_portTime\" radix=\"HEX\"/>\n"
              "                    <Signal name=\"stdcore[0]_ZS1_PORT_4A_timeReg\" radix=\"HEX\"/>\n"
              "                </Group>\n"
              "            </Category>\n");
}

TEST_F(PortTracerTest, NamesAPortWithoutANameAlikeInDeclarationAndHierarchy) {
    ports = {fullPort()};
    ports[0].name = nullptr;
    PortTracer tracer(simulator.callbacks(), 0, "main", s_basic);
    const MemoryStream stream;
    StructureFileWriter writer(stream, simulator.callbacks(), nullptr);
    tracer.dumpSignalHierarchy(&writer);
    EXPECT_THAT(stream.text(), testing::HasSubstr("main_(null)_inuse"));
    tracer.declareVariables(stream);
    EXPECT_THAT(stream.text(), testing::HasSubstr(" main_(null)_inuse $end\n"));
}

TEST_F(PortTracerTest, AsksForTheCountAgainForTheHierarchyAlone) {
    ports = {fullPort()};
    PortTracer tracer(simulator.callbacks(), 0, "stdcore[0]", s_basic);
    EXPECT_EQ(simulator.calls[21], 1U);
    const MemoryStream stream;
    StructureFileWriter writer(stream, simulator.callbacks(), nullptr);
    tracer.dumpSignalHierarchy(&writer);
    EXPECT_EQ(simulator.calls[21], 2U);
    tracer.declareVariables(stream);
    tracer.initialiseVariables(stream);
    bool firstChange = true;
    tracer.traceVariables(stream, &firstChange);
    EXPECT_EQ(simulator.calls[21], 2U);
    EXPECT_EQ(simulator.calls[22], 4U);
}

TEST_F(PortTracerTest, DescribesEightSignalsAtBothLevelsOfDetail) {
    const std::string expected =
        R"xml(        <SignalDoc name="stdcore\[\d+\]_ZS1_PORT_\d+[A-Z]_direction" description="High if the port is in output mode, low if in input mode">
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
)xml";
    EXPECT_EQ(docs(s_basic), expected);
    EXPECT_EQ(docs(s_detailed), expected);
}

TEST_F(PortTracerTest, TakesTheNameAsItStandsAndOfAnyLength) {
    const std::string name = "A:B" + std::string(3000, 'n');
    ports = {StubSimulator::port(name.c_str(), 1)};
    EXPECT_TRUE(declared(s_basic).starts_with("$var wire 1 po00a0 stdcore[0]_" + name + " $end\n"));
    EXPECT_NE(hierarchy(s_basic).find("<Signal name=\"stdcore[0]_" + name + "_inuse\""), std::string::npos);
}

// ---------------------------------------------------------------- clocks

TEST_F(PortTracerTest, ASingleChangeWritesASingleLine) {
    ports = {fullPort(), fullPort()};
    const PluginResult result = runPlugin(simulator, "-ports-detailed", [&](unsigned int id) {
        simulator.cycle = 1;
        ports[1].shiftRegister = 14;
        PluginClock(id);
    });
    EXPECT_EQ(result.clocks(), "#1\nb00000000000000000000000000001110 po00e1\n\n");
}

TEST_F(PortTracerTest, ChangesAreWrittenInTheOrderOfTheTable) {
    ports = {fullPort()};
    const PluginResult result = runPlugin(simulator, "-ports-detailed", [&](unsigned int id) {
        simulator.cycle = 1;
        ports[0] = StubSimulator::port("ZS1_PORT_4A", 4);
        ports[0].threadsWaiting = 1;
        ports[0].transferRegisterFull = 1;
        PluginClock(id);
        PluginClock(id); // nothing left to write
    });
    EXPECT_EQ(result.clocks(), "#1\n"
                               "b0000 po00a0\n"
                               "0po00b0\n"
                               "1po00c0\n"
                               "0po00d0\n"
                               "b00000000000000000000000000000000 po00l0\n"
                               "b00000000000000000000000000000000 po00m0\n"
                               "b00000000000000000000000000000000 po00e0\n"
                               "0po00f0\n"
                               "b00000000000000000000000000000000 po00g0\n"
                               "b00000000000000000000000000000000 po00h0\n"
                               "b00000000000000000000000000000000 po00i0\n"
                               "1po00j0\n"
                               "b00000000000000000000000000000000 po00k0\n"
                               "b00000000000000000000000000000000 po00n0\n"
                               "b00000000000000000000000000000000 po00o0\n"
                               "\n");
}

TEST_F(PortTracerTest, TheDetailedSignalsDoNotExistWithoutDetail) {
    ports = {fullPort()};
    const PluginResult result = runPlugin(simulator, "-ports", [&](unsigned int id) {
        simulator.cycle = 1;
        ports[0].shiftRegister = 1;
        ports[0].shiftRegisterValid = 0;
        ports[0].shiftRegisterSize = 1;
        ports[0].shiftRegisterCount = 1;
        ports[0].transferRegister = 1;
        ports[0].transferRegisterFull = 1;
        ports[0].transferRegisterSize = 1;
        ports[0].counter = 1;
        ports[0].timeStamp = 1;
        PluginClock(id);
    });
    EXPECT_EQ(result.clocks(), "");
    EXPECT_EQ(result.values(), "$dumpvars\n"
                               "b0010 po00a0\n1po00b0\n0po00c0\n1po00d0\n"
                               "b00000000000000000000000000001111 po00l0\n"
                               "b00000000000000000000000000010000 po00m0\n"
                               "$end\n\n");
}

TEST_F(PortTracerTest, ChangesAreSeenBesideWordsThatChangeUnshownOnEveryClock) {
    ports = {StubSimulator::port("P1", 1), StubSimulator::port("P2", 1)};
    const PluginResult result = runPlugin(simulator, "-ports", [&](unsigned int id) {
        for (unsigned int clock = 1; clock <= 6; ++clock) {
            simulator.cycle = clock;
            for (TracePortState& port : ports)
                port.transferRegister = port.shiftRegister = port.counter = clock;
            if (clock == 3)
                ports[1].value = 1;
            if (clock == 5)
                ports[0].inUse = 1;
            PluginClock(id);
        }
    });
    EXPECT_EQ(result.clocks(), "#3\n1po00a1\n\n#5\n1po00b0\n\n");
}

TEST_F(PortTracerTest, WordsThatTheSimulatorLeavesOpenAreZero) {
    ports = {fullPort()};
    const PluginResult result = runPlugin(simulator, "-ports-detailed", [&](unsigned int id) {
        simulator.callbacks()->getPortState = [](unsigned int, unsigned int, TracePortState* state) {
            state->width = 4;
            state->value = 2;
            state->transferRegisterSize = 23;
        };
        simulator.cycle = 1;
        PluginClock(id);
        PluginClock(id);
    });
    EXPECT_EQ(result.clocks(), "#1\n"
                               "0po00b0\n"
                               "0po00d0\n"
                               "b00000000000000000000000000000000 po00l0\n"
                               "b00000000000000000000000000000000 po00m0\n"
                               "b00000000000000000000000000000000 po00e0\n"
                               "0po00f0\n"
                               "b00000000000000000000000000000000 po00g0\n"
                               "b00000000000000000000000000000000 po00h0\n"
                               "b00000000000000000000000000000000 po00i0\n"
                               "b00000000000000000000000000000000 po00n0\n"
                               "b00000000000000000000000000000000 po00o0\n"
                               "\n");
}

TEST_F(PortTracerTest, TheLineOfAValueFollowsTheWidthThatThePortHasNow) {
    ports = {StubSimulator::port("P", 4)};
    const PluginResult result = runPlugin(simulator, "-ports", [&](unsigned int id) {
        simulator.cycle = 1;
        ports[0].width = 8; // alone it is no change
        PluginClock(id);
        simulator.cycle = 2;
        ports[0].value = 3;
        PluginClock(id);
        simulator.cycle = 3;
        ports[0].width = 1;
        ports[0].value = 1;
        PluginClock(id);
        PluginTerminate(id);
    });
    EXPECT_EQ(result.clocks(), "#2\nb00000011 po00a0\n\n#3\n1po00a0\n\n#3\n");
}

TEST_F(PortTracerTest, APortOfWidth1WritesScalarLinesAndAWiderOneBinaryLines) {
    ports = {StubSimulator::port("P1", 1), StubSimulator::port("P2", 2)};
    const PluginResult result = runPlugin(simulator, "-ports", [&](unsigned int id) {
        simulator.cycle = 1;
        ports[0].value = 1;
        ports[1].value = 1;
        PluginClock(id);
        PluginTerminate(id);
    });
    EXPECT_EQ(result.clocks(), "#1\n1po00a0\nb01 po00a1\n\n#1\n");
}

TEST_F(PortTracerTest, AValueThatReturnsBetweenTwoClocksWritesNothing) {
    ports = {StubSimulator::port("P1", 1)};
    const PluginResult result = runPlugin(simulator, "-ports", [&](unsigned int id) {
        ports[0].value = 1;
        ports[0].value = 0;
        PluginClock(id);
    });
    EXPECT_EQ(result.clocks(), "");
}

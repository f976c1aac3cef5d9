#include "Plugins/WavePlugin/StructureFileWriter.h"

#include "infr_libs/PluginLibrary/PluginLibrary.h"
#include "Plugins/WavePlugin/WavePlugin.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/MemoryStream.h"
#include "tests/support/NetworkBuilder.h"
#include "tests/support/PluginRun.h"
#include "tests/support/SampleImage.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::HasSubstr;
using testing::Not;

namespace {

class StructureFileWriterTest : public testing::Test {
protected:
    MemoryStream stream;
    PluginLibrary library;
    StructureFileWriter writer{stream, nullptr, &library};
};

// The document of a run, without the lines of the comment around it.
std::string documentOf(const PluginResult& result) {
    const std::size_t begin = result.waveform.find("$comment\n");
    const std::size_t end = result.waveform.find("</Structure>\n");
    return result.waveform.substr(begin, end - begin);
}

} // namespace

TEST_F(StructureFileWriterTest, OpensAndClosesTheDocument) {
    EXPECT_TRUE(writer.initialise("Mon Jan  1 00:00:00 2024"));
    writer.terminate();
    EXPECT_EQ(stream.text(), "$comment\n"
                             "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                             "<Structure>\n"
                             "    <Date value=\"Mon Jan  1 00:00:00 2024\"/>\n"
                             "</Structure>\n"
                             "$end\n"
                             "\n");
}

TEST_F(StructureFileWriterTest, IndentsEachElementByAFixedWidth) {
    writer.openHierachy();
    writer.openCore("c");
    writer.openCategory("k", true);
    writer.openGroup("g");
    writer.addSignal("s", true, "HEX", true);
    writer.closeGroup();
    writer.closeCategory(true);
    writer.closeCore();
    writer.openCategory("k", false);
    writer.addSignal("s", false, "DECIMAL", false);
    writer.closeCategory(false);
    writer.addSignal("s", false, "ASCII", true);
    writer.addSignal("s", true, "ASCII", false);
    writer.closeHierachy();
    EXPECT_EQ(stream.text(), "    <Hierarchy>\n"
                             "        <Core name=\"c\">\n"
                             "            <Category name=\"k\">\n"
                             "                <Group name=\"g\">\n"
                             "                    <Signal name=\"s\" radix=\"HEX\"/>\n"
                             "                </Group>\n"
                             "            </Category>\n"
                             "        </Core>\n"
                             "    <Category name=\"k\">\n"
                             "        <Signal name=\"s\" radix=\"DECIMAL\"/>\n"
                             "    </Category>\n"
                             "                <Signal name=\"s\" radix=\"ASCII\"/>\n"
                             "            <Signal name=\"s\" radix=\"ASCII\"/>\n"
                             "    </Hierarchy>\n");
}

TEST_F(StructureFileWriterTest, WritesValueAliases) {
    writer.openValueAliases();
    writer.openValueAliasMap("stdcore[0]", "functions");
    writer.addValueAliasEntry("main", "main.0");
    writer.closeValueAliasMap();
    writer.closeValueAliases();
    EXPECT_EQ(stream.text(), "    <ValueAliases>\n"
                             "        <ValueAliasMap coreName=\"stdcore[0]\" category=\"functions\">\n"
                             "            <Entry name=\"main\" alias=\"main.0\"/>\n"
                             "        </ValueAliasMap>\n"
                             "    </ValueAliases>\n");
}

TEST_F(StructureFileWriterTest, WritesTheTableOfValuesAlsoWhenItIsEmpty) {
    const char* values[][2] = {{"0", "low"}, {"1", "high"}, {nullptr, nullptr}};
    writer.openSignalDocs();
    writer.addSignalDocEntry(R"(.*a\d+)", "an a", values);
    writer.addSignalDocEntry(".*b", "a b", values + 2);
    writer.closeSignalDocs();
    EXPECT_EQ(stream.text(), "    <SignalDocs>\n"
                             "        <SignalDoc name=\".*a\\d+\" description=\"an a\">\n"
                             "            <ValueDocs>\n"
                             "                <ValueDoc value=\"0\" text=\"low\"/>\n"
                             "                <ValueDoc value=\"1\" text=\"high\"/>\n"
                             "            </ValueDocs>\n"
                             "        </SignalDoc>\n"
                             "        <SignalDoc name=\".*b\" description=\"a b\">\n"
                             "            <ValueDocs>\n"
                             "            </ValueDocs>\n"
                             "        </SignalDoc>\n"
                             "    </SignalDocs>\n");
}

TEST_F(StructureFileWriterTest, EscapesNothing) {
    writer.openGroup("a<b & \"c\"");
    EXPECT_EQ(stream.text(), "                <Group name=\"a<b & \"c\"\">\n");
}

TEST_F(StructureFileWriterTest, WithoutANetworkWarnsAndClosesTheDocumentWithoutAliases) {
    const ChildResult result = runInChild([&] {
        writer.initialise("date");
        writer.processZnFile();
        writer.terminate();
        std::fputs(stream.text().c_str(), stdout);
    });
    EXPECT_EQ(result.error,
              "Warning: Unable to load ZN file required for dumping the structural information\n");
    EXPECT_EQ(result.output, "$comment\n"
                             "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                             "<Structure>\n"
                             "    <Date value=\"date\"/>\n"
                             "</Structure>\n"
                             "$end\n"
                             "\n");
}

TEST_F(StructureFileWriterTest, NamesThePortsOfEachCoreOfTheNetwork) {
    ZNLoader::FreeCore first;
    first.m_reference = "stdcore[0]";
    first.m_ports = {{"uart_tx", "ZS1_PORT_1A", ""}, {"leds", "ZS1_PORT_4B", ""}};
    ZNLoader::HoldingCore holding;
    holding.m_reference = "holding";
    ZNLoader::FreeCore second; // its ports have no names
    second.m_reference = "stdcore[1]";
    ZNLoader::ProcNode processor;
    processor.m_cores = {&first, &holding, &second};
    ZNLoader::ZsscNode controller;
    ZNLoader network;
    network.m_nodes = {&controller, &processor};

    writer.addSignalAliases(network);
    EXPECT_EQ(stream.text(), "    <SignalAliases>\n"
                             "        <SignalAliasMap coreName=\"stdcore[0]\">\n"
                             "            <Entry name=\"ZS1_PORT_1A\" alias=\"uart_tx\"/>\n"
                             "            <Entry name=\"ZS1_PORT_4B\" alias=\"leds\"/>\n"
                             "        </SignalAliasMap>\n"
                             "        <SignalAliasMap coreName=\"stdcore[1]\">\n"
                             "        </SignalAliasMap>\n"
                             "    </SignalAliases>\n");

    network.m_nodes.clear(); // they are this test's
    processor.m_cores.clear();
}

// ---------------------------------------------------------------- the document of a whole run

TEST(StructureDocument, EndsOnALineOfItsOwnBeforeABlankLine) {
    StubSimulator simulator;
    const PluginResult result = runPlugin(simulator, "-cycles");
    EXPECT_THAT(result.waveform, HasSubstr("</Structure>\n$end\n\n$var wire 32 _00"));
}

TEST(StructureDocument, ListsThePortNamesOfAllCoresOfTheNetwork) {
    // Of cores that aren't traced too, and an empty map for one without ports.
    StubSimulator simulator;
    const DeviceFolder devices;
    const TemporaryFolder folder;
    const std::string image =
        folder.write("image.ze", sampleImage({{"stdcore[0]", 0, 0},
                                              {"stdcore[1]", 0, 1,
                                               "<Port Location='ZS1_PORT_1A' Name='uart_tx'/>"
                                               "<Port Location='ZS1_PORT_4B' Name='a&lt;b'/>"}}));
    const ChildResult result = runInChild([&] {
        PluginInitialise(
            simulator.callbacks(),
            ("-ze " + image + " -core stdcore[0] -cycles -o " + folder.file("wave.vcd")).c_str());
    });
    EXPECT_EQ(result.error, "");
    EXPECT_THAT(folder.read("wave.vcd"),
                HasSubstr("    </SignalDocs>\n"
                          "    <SignalAliases>\n"
                          "        <SignalAliasMap coreName=\"stdcore[0]\">\n"
                          "        </SignalAliasMap>\n"
                          "        <SignalAliasMap coreName=\"stdcore[1]\">\n"
                          "            <Entry name=\"ZS1_PORT_1A\" alias=\"uart_tx\"/>\n"
                          "            <Entry name=\"ZS1_PORT_4B\" alias=\"a<b\"/>\n"
                          "        </SignalAliasMap>\n"
                          "    </SignalAliases>\n"
                          "</Structure>\n"
                          "$end\n"));
}

TEST(StructureDocument, IndentsAPortsSignalBy20BlanksAndAPadsBy8) {
    StubSimulator simulator;
    simulator.core().ports = {StubSimulator::port("P", 1)};
    simulator.pads = {StubSimulator::pad("Pad0")};
    const PluginResult result = runPlugin(simulator, "-ports -pads");
    EXPECT_THAT(result.waveform,
                HasSubstr("\n                    <Signal name=\"stdcore[0]_P\" radix=\"HEX\"/>\n"));
    EXPECT_THAT(result.waveform, HasSubstr("\n        <Signal name=\"Pad0\" radix=\"HEX\"/>\n"));
}

TEST(StructureDocument, OfTimersAloneDescribesNothing) {
    StubSimulator simulator;
    simulator.core().timers.resize(1);
    const PluginResult result = runPlugin(simulator, "-timers");
    EXPECT_THAT(result.waveform, HasSubstr("    <SignalDocs>\n    </SignalDocs>\n"));
}

TEST(StructureDocument, HoldsTheDateOfTheHeader) {
    StubSimulator simulator;
    const PluginResult result = runPlugin(simulator, "-cycles");
    ASSERT_TRUE(result.waveform.starts_with("$date\n  "));
    const std::string date = result.waveform.substr(8, result.waveform.find('\n', 8) - 8);
    EXPECT_EQ(date.size(), 24U); // such as "Mon Jan  1 00:00:00 2024"
    EXPECT_THAT(result.waveform, HasSubstr("    <Date value=\"" + date + "\"/>\n"));
}

TEST(StructureDocument, HoldsEverySectionInOrder) {
    StubSimulator simulator;
    simulator.pads = {StubSimulator::pad("Pad0")};
    const PluginResult result =
        runPlugin(simulator, "-pads -core stdcore[0] -cycles -core stdcore[1] -timers", {}, s_twoCores);
    const std::string document = documentOf(result);
    EXPECT_EQ(document.substr(document.find("    <Hierarchy>")),
              R"xml(    <Hierarchy>
    <Category name="Pads">
        <Signal name="Pad0" radix="HEX"/>
    </Category>
        <Core name="stdcore[0]">
            <Category name="Cycles">
                <Signal name="stdcore[0]_CYCLES" radix="DECIMAL"/>
            </Category>
        </Core>
        <Core name="stdcore[1]">
            <Category name="Timers">
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
        <SignalDoc name=".*CYCLES" description="The current core clock cycle number">
            <ValueDocs>
            </ValueDocs>
        </SignalDoc>
    </SignalDocs>
    <SignalAliases>
        <SignalAliasMap coreName="stdcore[0]">
        </SignalAliasMap>
        <SignalAliasMap coreName="stdcore[1]">
        </SignalAliasMap>
    </SignalAliases>
)xml");
}

TEST(StructureDocument, DescribesTheSignalsOfTheFirstCoreAlone) {
    StubSimulator simulator;
    const PluginResult result =
        runPlugin(simulator, "-core stdcore[0] -cycles -core stdcore[1] -instructions", {}, s_twoCores);
    EXPECT_THAT(result.waveform, HasSubstr("<SignalDoc name=\".*CYCLES\""));
    EXPECT_THAT(result.waveform, Not(HasSubstr("<SignalDoc name=\".*INSTRUCTION_PC\"")));
}

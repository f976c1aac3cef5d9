#include "infr_libs/PluginLibrary/PluginLibrary.h"

#include "infr_libs/AutoDefines/AutoDefines.h"
#include "infr_libs/ElfHandler/ElfHandler.h"
#include "infr_libs/ZelmBinaryHandler/ZBHandler.h"
#include "infr_libs/ZNLoader/ZNLoader.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/NetworkBuilder.h"
#include "tests/support/SampleImage.h"

#include <csignal>
#include <gtest/gtest.h>

namespace {

class PluginLibraryTest : public testing::Test {
protected:
    bool open(const std::string& image) { return library.openZe(m_folder.write("image.ze", image).c_str()); }

    // What opening writes on standard error, and how the process ends. Standard output gets the result.
    ChildResult openInChild(const std::string& image) {
        const std::string path = m_folder.write("image.ze", image);
        return runInChild(
            [&] { std::fputs(PluginLibrary().openZe(path.c_str()) ? "true" : "false", stdout); });
    }

    std::string path() const { return m_folder.file("image.ze"); }

    // The names of the functions of a core's images, in order.
    std::string functionsOf(const std::string& core) {
        std::string text;
        for (const ElfHandler* handler : library.getElfHandlers(core)) {
            text += "|";
            for (unsigned i = 1; i < handler->numSymbols(); ++i)
                text += std::string(" ") + handler->getSymbolName(i);
        }
        return text;
    }

    // Nothing is known of any core, and look-ups leave their results alone.
    void expectNoNetwork() {
        EXPECT_EQ(library.getZNLoader(), nullptr);
        EXPECT_TRUE(library.getElfHandlers("stdcore[0]").empty());
        EXPECT_TRUE(library.getElfHandlers("").empty());
        EXPECT_EQ(library.getNumActiveProcessors(), 0U);
        std::string name = "untouched";
        unsigned node = 7;
        unsigned core = 7;
        EXPECT_FALSE(library.getCoreName(name, 0, 0));
        EXPECT_FALSE(library.findDefaultZNCore(name, node, core));
        EXPECT_FALSE(library.findZNCore("stdcore[0]", node, core));
        EXPECT_FALSE(library.findZNPort("uart", name, node, core));
        EXPECT_EQ(name, "untouched");
        EXPECT_EQ(node, 7U);
        EXPECT_EQ(core, 7U);
    }

    DeviceFolder devices;
    PluginLibrary library;

private:
    TemporaryFolder m_folder;
};

const std::vector<ImageCore> s_oneCore{{"stdcore[0]"}};
const std::vector<ImageCore> s_twoNodes{
    {"stdcore[0]", 0, 0}, {"stdcore[1]", 0, 1}, {"far", 0x8000, 0, "", {sampleProgram({"main", "work"})}}};

} // namespace

// ---- Opening ----

TEST_F(PluginLibraryTest, OpensAnImage) {
    EXPECT_TRUE(open(sampleImage(s_oneCore)));
    EXPECT_EQ(library.getNumActiveProcessors(), 1U);
    EXPECT_NE(library.getZNLoader(), nullptr);
    ASSERT_NE(library.getAutoDefines(), nullptr);
    EXPECT_EQ(library.getAutoDefines()->getArch(), 0x2633U);
}

TEST_F(PluginLibraryTest, AFileThatIsNoContainerIsToldAndNotOpened) {
    const ChildResult result = openInChild("no container, but long enough for a header");
    EXPECT_EQ(result.error, "Error loading file " + path() + ": Header tag incorrect\n");
    EXPECT_EQ(result.output, "false");
}

TEST_F(PluginLibraryTest, AMissingFileIsToldAndNotOpened) {
    const ChildResult result =
        runInChild([] { std::fputs(PluginLibrary().openZe("/nowhere/a.ze") ? "true" : "false", stdout); });
    EXPECT_EQ(result.error, "Error loading file /nowhere/a.ze: Could not open input file\n");
    EXPECT_EQ(result.output, "false");
}

TEST_F(PluginLibraryTest, AnImageWithoutANetworkOpensAndKnowsNoCore) {
    EXPECT_TRUE(
        open(ImageBuilder().config(sampleConfiguration()).elf(0, 0, sampleProgram({"main"})).bytes()));
    expectNoNetwork();
}

TEST_F(PluginLibraryTest, ANetworkThatFailsToLoadIsToldAndLeftOut) {
    const ChildResult result = openInChild(
        ImageBuilder().config(sampleConfiguration()).zn("<Net/>").elf(0, 0, sampleProgram({})).bytes());
    EXPECT_EQ(result.error,
              "Warning: Unable to load ZN file: zn:1 Error: ZN11001 Root node is not <Network>\n");
    EXPECT_EQ(result.output, "true");
}

TEST_F(PluginLibraryTest, WithANetworkThatFailsToLoadNoCoreIsKnown) {
    testing::internal::CaptureStderr();
    EXPECT_TRUE(open(ImageBuilder()
                         .config(sampleConfiguration())
                         .zn("<Net/>")
                         .elf(0, 0, sampleProgram({"main"}))
                         .bytes()));
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "Warning: Unable to load ZN file: zn:1 Error: ZN11001 Root node is not <Network>\n");
    expectNoNetwork();
}

TEST_F(PluginLibraryTest, ANetworkThatEndsInACommentOfAValueIsLeftOutToo) {
    const ChildResult result = openInChild(ImageBuilder()
                                               .config(sampleConfiguration())
                                               .zn("<Network><Type>x<!-- y</Type></Network>")
                                               .elf(0, 0, sampleProgram({}))
                                               .bytes());
    EXPECT_EQ(result.error, "Warning: Unable to load ZN file: basic_string::substr");
    EXPECT_EQ(result.output, "true");
}

TEST_F(PluginLibraryTest, ABadElfImageEndsTheProcess) {
    const ChildResult result =
        openInChild(ImageBuilder().config(sampleConfiguration()).elf(0, 0, "no ELF file at all").bytes());
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_NE(result.error.find("ELF"), std::string::npos) << result.error;
}

TEST_F(PluginLibraryTest, AnImageWithoutConfigurationIsToldAndNotOpened) {
    const ChildResult result = openInChild(ImageBuilder().elf(0, 0, sampleProgram({})).bytes());
    EXPECT_EQ(result.error,
              "Error: No ZBSEC_SYSCONFIG/ZBSEC_NODEDESC sector found in file: " + path() + "\n");
    EXPECT_EQ(result.output, "false");
}

TEST_F(PluginLibraryTest, AnImageWithNeitherIsToldOfItsConfigurationFirst) {
    const ChildResult result = openInChild(ImageBuilder().end().bytes());
    EXPECT_EQ(result.error,
              "Error: No ZBSEC_SYSCONFIG/ZBSEC_NODEDESC sector found in file: " + path() + "\n");
}

TEST_F(PluginLibraryTest, AnImageWithoutElfFilesFailsAnAssertion) {
    // Also with two configurations, which would be told of later.
    const std::string config = sampleConfiguration();
    for (const std::string& image :
         {ImageBuilder().config(config).bytes(), ImageBuilder().config(config).config(config).bytes()}) {
        const ChildResult result = openInChild(image);
        EXPECT_EQ(result.signal, SIGABRT);
        EXPECT_NE(result.error.find("Assertion `xmlParser != 0' failed."), std::string::npos) << result.error;
    }
}

TEST_F(PluginLibraryTest, TwoConfigurationsAreToldAndNotOpened) {
    const std::string config = sampleConfiguration();
    const ChildResult result =
        openInChild(ImageBuilder().config(config).config(config).elf(0, 0, sampleProgram({})).bytes());
    EXPECT_EQ(result.error,
              "Error: Zero or more than one ZBSEC_SYSCONFIG sectors found in file: " + path() + "\n");
    EXPECT_EQ(result.output, "false");
}

TEST_F(PluginLibraryTest, AnotherRootIsToldAndNotOpened) {
    const ChildResult result =
        openInChild(ImageBuilder().config("<zsystem/>").elf(0, 0, sampleProgram({})).bytes());
    EXPECT_EQ(result.error, "ERROR: Root of XML config file must be 'ZSystem', not zsystem\n");
    EXPECT_EQ(result.output, "false");
}

TEST_F(PluginLibraryTest, ADocumentFaultNamesTheDocumentAndEndsTheProcess) {
    const ChildResult result =
        openInChild(ImageBuilder().config("<ZSystem>\n</System>").elf(0, 0, sampleProgram({})).bytes());
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.error, "ZEconfiguration:2: error: unexpected closing tag 'System'\n");
}

TEST_F(PluginLibraryTest, AConfigurationWithoutASystemEndsTheProcess) {
    const ChildResult result =
        openInChild(ImageBuilder().config("<ZSystem/>").elf(0, 0, sampleProgram({})).bytes());
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.error, "ERROR: No 'System' node defined in XML file\n");
}

TEST_F(PluginLibraryTest, AfterAFailedOpeningTheCountsEndTheProcess) {
    for (const bool active : {true, false}) {
        const ChildResult result = runInChild([&] {
            PluginLibrary closed;
            static_cast<void>(active ? closed.getNumActiveProcessors() : closed.getNumProcessors(0));
        });
        const std::string name = active ? "getNumActiveProcessors" : "getNumProcessors";
        EXPECT_EQ(result.signal, SIGABRT);
        EXPECT_TRUE(result.error.starts_with("ERROR: ZE not loaded - cannot handle '" + name + "'\n"))
            << result.error;
        EXPECT_NE(result.error.find("Assertion `checkZeLoaded(\"" + name + "\")' failed."), std::string::npos)
            << result.error;
    }
}

TEST_F(PluginLibraryTest, ASecondImageAddsItsProgramsAndReplacesTheNetwork) {
    ASSERT_TRUE(open(sampleImage({{"stdcore[0]", 0, 0, "", {sampleProgram({"first"})}}})));
    ASSERT_TRUE(open(sampleImage({{"stdcore[0]", 0, 0, "", {sampleProgram({"second"})}}, {"far", 9, 0}})));
    EXPECT_EQ(functionsOf("stdcore[0]"), "| first| second");
    EXPECT_EQ(library.getNumActiveProcessors(), 2U);
    EXPECT_EQ(library.getZNLoader()->m_procNodes.size(), 2U);
}

TEST_F(PluginLibraryTest, ASecondFileThatCantBeOpenedChangesNothing) {
    ASSERT_TRUE(open(sampleImage(s_oneCore)));
    testing::internal::CaptureStderr();
    EXPECT_FALSE(open("rubbish, long enough for a header"));
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "Error loading file " + path() + ": Header tag incorrect\n");
    EXPECT_EQ(library.getNumActiveProcessors(), 1U);
    EXPECT_NE(library.getZNLoader(), nullptr);
}

TEST_F(PluginLibraryTest, ASecondNetworkThatFailsLeavesTheFirst) {
    ASSERT_TRUE(open(sampleImage(s_oneCore)));
    testing::internal::CaptureStderr();
    EXPECT_TRUE(open(ImageBuilder()
                         .config(sampleConfiguration())
                         .zn("<Net/>")
                         .elf(0, 0, sampleProgram({"more"}))
                         .bytes()));
    testing::internal::GetCapturedStderr();
    EXPECT_NE(library.getZNLoader(), nullptr);
    EXPECT_EQ(functionsOf("stdcore[0]"), "|| more");
}

// ---- Images and cores ----

TEST_F(PluginLibraryTest, SeveralImagesOfACoreStandInSectorOrderAndCountOnce) {
    ASSERT_TRUE(
        open(sampleImage({{"stdcore[0]", 0, 0, "", {sampleProgram({"a", "b"}), sampleProgram({"c"})}}})));
    EXPECT_EQ(functionsOf("stdcore[0]"), "| a b| c");
    EXPECT_EQ(library.getNumActiveProcessors(), 1U);
}

TEST_F(PluginLibraryTest, AnImageIsOfTheCoreAtItsPositionInTheScanChain) {
    ASSERT_TRUE(open(sampleImage(s_twoNodes)));
    EXPECT_EQ(functionsOf("far"), "| main work");
    EXPECT_EQ(functionsOf("stdcore[1]"), "|");
    EXPECT_EQ(library.getNumActiveProcessors(), 3U);
}

TEST_F(PluginLibraryTest, OnlyElfSectorsAreImages) {
    const std::string program = sampleProgram({"main"});
    ASSERT_TRUE(open(ImageBuilder()
                         .config(sampleConfiguration())
                         .zn(sampleNetwork(s_oneCore))
                         .binary(0, 0, 0, program)
                         .elf(0, 0, program)
                         .image(ZBSEC_OTP, 0, 0, 0, program)
                         .bytes()));
    EXPECT_EQ(functionsOf("stdcore[0]"), "| main");
}

TEST_F(PluginLibraryTest, AnImageOfAnUnknownCoreIsReadAndIgnored) {
    const std::string program = sampleProgram({"main"});
    ASSERT_TRUE(open(ImageBuilder()
                         .config(sampleConfiguration())
                         .zn(sampleNetwork(s_oneCore))
                         .elf(0, 5, program)      // no such core
                         .elf(1, 0, program)      // beyond the chain
                         .elf(0xFFFF, 0, program) // far beyond
                         .bytes()));
    EXPECT_EQ(library.getNumActiveProcessors(), 0U);
    const ChildResult result = openInChild(ImageBuilder()
                                               .config(sampleConfiguration())
                                               .zn(sampleNetwork(s_oneCore))
                                               .elf(1, 0, "no ELF file")
                                               .elf(0, 0, program)
                                               .bytes());
    EXPECT_EQ(result.exitStatus, 1); // its faults show all the same
}

namespace {

// A device without cores, and a processor behind it in the scan chain.
const std::string s_deviceFirst =
    "<Network><Declarations><Declaration>core a</Declaration></Declarations><Nodes>"
    "<Node Id='0' Type='L1'><Core Reference='a'/></Node>"
    "<Node Id='d' Type='device:x'/></Nodes>"
    "<JTAGChain><JTAGDevice NodeId='d'/><JTAGDevice NodeId='0'/></JTAGChain>"
    "</Network>";

} // namespace

TEST_F(PluginLibraryTest, AnImageOfAPositionWithoutAProcessorIsIgnored) {
    ASSERT_TRUE(open(ImageBuilder()
                         .config(sampleConfiguration())
                         .zn(s_deviceFirst)
                         .elf(0, 0, sampleProgram({"ignored"}))
                         .elf(1, 0, sampleProgram({"main"}))
                         .bytes()));
    EXPECT_EQ(functionsOf("a"), "| main");
    EXPECT_EQ(library.getNumActiveProcessors(), 1U);
}

TEST_F(PluginLibraryTest, AnImageOfAPositionWithoutAProcessorIsReadAllTheSame) {
    const ChildResult result = openInChild(ImageBuilder()
                                               .config(sampleConfiguration())
                                               .zn(s_deviceFirst)
                                               .elf(0, 0, "no ELF file")
                                               .elf(1, 0, sampleProgram({"main"}))
                                               .bytes());
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.error, "ERROR: Header is not an ELF file\n");
}

TEST_F(PluginLibraryTest, TheDefaultCoreIsTheFirstOfTheDocument) {
    ASSERT_TRUE(open(sampleImage({{"far", 0x8000, 3}, {"stdcore[0]", 0, 0}})));
    std::string name;
    unsigned node = 0;
    unsigned core = 0;
    EXPECT_TRUE(library.findDefaultZNCore(name, node, core));
    EXPECT_EQ(name, "far");
    EXPECT_EQ(node, 0x8000U);
    EXPECT_EQ(core, 3U);
}

TEST_F(PluginLibraryTest, ACoreIsFoundByItsExactName) {
    ASSERT_TRUE(open(sampleImage(s_twoNodes)));
    unsigned node = 7;
    unsigned core = 7;
    EXPECT_FALSE(library.findZNCore("STDCORE[1]", node, core));
    EXPECT_FALSE(library.findZNCore("stdcore", node, core));
    EXPECT_TRUE(library.findZNCore("stdcore[1]", node, core));
    EXPECT_EQ(node, 0U);
    EXPECT_EQ(core, 1U);
    EXPECT_TRUE(library.findZNCore("far", node, core));
    EXPECT_EQ(node, 0x8000U);
    EXPECT_EQ(core, 0U);
}

TEST_F(PluginLibraryTest, AHoldingCoreHasANameButIsNotFound) {
    ASSERT_TRUE(open(sampleImage(s_oneCore)));
    auto* holding = new ZNLoader::HoldingCore;
    holding->m_reference = "held";
    holding->m_number = 9;
    static_cast<ZNLoader::ProcNode*>(library.getZNLoader()->m_nodes[0])->m_cores.push_back(holding);
    std::string name;
    unsigned node = 0;
    unsigned core = 0;
    EXPECT_FALSE(library.findZNCore("held", node, core));
    EXPECT_TRUE(library.getCoreName(name, 0, 9));
    EXPECT_EQ(name, "held");
}

TEST_F(PluginLibraryTest, APortIsFoundByTheNameThatTheNetworkGivesIt) {
    ASSERT_TRUE(open(sampleImage({{"stdcore[0]", 0, 0, "<Port Location='ZS1_PORT_1A' Name='a'/>"},
                                  {"stdcore[1]", 0, 1,
                                   "<Port Location='ZS1_PORT_1B' Name='uart'/>"
                                   "<Port Location='ZS1_PORT_1C' Name='uart'/>"}})));
    std::string location;
    unsigned node = 7;
    unsigned core = 7;
    EXPECT_TRUE(library.findZNPort("uart", location, node, core));
    EXPECT_EQ(location, "ZS1_PORT_1B");
    EXPECT_EQ(node, 0U);
    EXPECT_EQ(core, 1U);
    EXPECT_FALSE(library.findZNPort("UART", location, node, core));
}

TEST_F(PluginLibraryTest, TheNodeOfAPortIsTheNumberThatItsIdSpells) {
    struct Row {
        const char* id;
        unsigned number;
    };
    for (const auto& [id, number] :
         {Row{"0x10", 16}, Row{"16", 16}, Row{"010", 8}, Row{"n", 0}, Row{"12abc", 12}, Row{"-1", 0xFFFFFFFF},
          Row{"-5", 0xFFFFFFFB}, Row{"4294967296", 0xFFFFFFFF}, Row{"-4294967296", 0xFFFFFFFF},
          Row{"99999999999999999999999", 0xFFFFFFFF}}) {
        ASSERT_TRUE(open(sampleImage({{"a", 0, 0, "<Port Location='L' Name='p'/>"}})));
        library.getZNLoader()->m_nodes[0]->m_id = id;
        std::string location;
        unsigned node = 7;
        unsigned core = 7;
        EXPECT_TRUE(library.findZNPort("p", location, node, core));
        EXPECT_EQ(node, number) << id;
    }
}

TEST_F(PluginLibraryTest, CoresWithPortsAreCountedByNode) {
    ASSERT_TRUE(open(sampleImage(s_oneCore)));
    EXPECT_EQ(library.getNumProcessors(0), 1U);
    EXPECT_EQ(library.getNumProcessors(1), 0U);
}

// ---- Pads ----

TEST_F(PluginLibraryTest, APinHasAPad) {
    ASSERT_TRUE(open(sampleImage(s_oneCore)));
    unsigned pad = 99;
    EXPECT_TRUE(library.getPinPad("PKG", "X2", pad));
    EXPECT_EQ(pad, 2U);
    EXPECT_FALSE(library.getPinPad("PKG", "X9", pad));
    EXPECT_FALSE(library.getPinPad("pkg", "X2", pad));
    EXPECT_TRUE(library.isPackageValid("PKG"));
    EXPECT_FALSE(library.isPackageValid("pkg"));
}

TEST_F(PluginLibraryTest, WithNothingOpenPinsAndPortsAreToldAndNotFound) {
    const ChildResult result = runInChild([] {
        PluginLibrary closed;
        unsigned pad = 0;
        std::vector<unsigned> pads;
        std::printf("%d", closed.getPinPad("PKG", "X0", pad));
        std::printf("%d", closed.getPortPads(0, 0, "ZS1_PORT_1A", 0, 0, pads));
        std::printf("%d", closed.isPackageValid("PKG"));
    });
    EXPECT_EQ(result.output, "000");
    EXPECT_EQ(result.error, "ERROR: ZE not loaded - cannot handle 'X0'\n"
                            "ERROR: ZE not loaded - cannot handle 'ZS1_PORT_1A'\n");
}

namespace {

struct PadsRow {
    const char* port;
    unsigned count, first;
    bool result;
    std::vector<unsigned> pads;
    const char* message;
};

} // namespace

TEST_F(PluginLibraryTest, APortHasPadsBitByBit) {
    ASSERT_TRUE(open(sampleImage(s_oneCore)));
    const PadsRow rows[] = {
        {"ZS1_PORT_1A", 0, 0, true, {0}, ""},
        {"ZS1_PORT_4A", 2, 0, true, {1, 2}, ""},
        {"ZS1_PORT_4A", 1, 2, true, {3}, ""},
        {"ZS1_PORT_4A",
         0,
         0,
         false,
         {1, 2, 3},
         "ERROR: Port 'ZS1_PORT_4A' bit 3 not available in target package\n"},
        {"ZS1_PORT_4A", 2, 4, false, {}, "ERROR: Port 'ZS1_PORT_4A' does not have bit 4\n"},
        {"ZS1_PORT_1A", 0, 1, false, {}, "ERROR: Port 'ZS1_PORT_1A' does not have bit 1\n"},
        {"ZS1_PORT_1A", 2, 0, false, {0}, "ERROR: Port 'ZS1_PORT_1A' does not have bit 1\n"},
        {"ZS1_PORT_1A", 3, 0xFFFFFFFF, false, {}, "ERROR: Port 'ZS1_PORT_1A' does not have bit -1\n"},
        {"ZS1_PORT_1B", 1, 0, false, {}, "ERROR: Port 'ZS1_PORT_1B' bit 0 not available in target package\n"},
        {"NO_PORT", 0, 0, false, {}, ""},
    };
    for (const PadsRow& row : rows) {
        std::vector<unsigned> pads;
        testing::internal::CaptureStderr();
        EXPECT_EQ(library.getPortPads(0, 0, row.port, row.count, row.first, pads), row.result);
        EXPECT_EQ(testing::internal::GetCapturedStderr(), row.message);
        EXPECT_EQ(pads, row.pads) << row.port << row.count << row.first;
    }
}

namespace {

// A configuration with one port of this name and identifier, whose first bits have pins.
std::string configurationOfPort(const std::string& id, unsigned numPins) {
    std::string text =
        "<ZSystem><System><Nodes><Node number='0' jtagId='0x2633'><Processor number='0'><Ports>"
        "<Port name='P' id='" +
        id + "'/></Ports></Processor></Node></Nodes><Pins>";
    for (unsigned bit = 0; bit < numPins; ++bit)
        text += "<Pin name='PKG:X" + std::to_string(bit) +
                "'><Port name='P' node='0' core='0' priority='0' bitNum='" + std::to_string(bit) +
                "'/></Pin>";
    return text + "</Pins></System></ZSystem>";
}

} // namespace

TEST_F(PluginLibraryTest, AllPadsOfAPortAreAskedForWithACountOfZero) {
    ASSERT_TRUE(
        open(ImageBuilder().config(configurationOfPort("0x40000", 4)).elf(0, 0, sampleProgram({})).bytes()));
    std::vector<unsigned> pads;
    EXPECT_TRUE(library.getPortPads(0, 0, "P", 0, 0, pads));
    EXPECT_EQ(pads, (std::vector<unsigned>{0, 1, 2, 3}));

    // The count is the port's width, whatever the first bit.
    pads.clear();
    testing::internal::CaptureStderr();
    EXPECT_FALSE(library.getPortPads(0, 0, "P", 0, 2, pads));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "ERROR: Port 'P' does not have bit 4\n");
    EXPECT_EQ(pads, (std::vector<unsigned>{2, 3}));
}

TEST_F(PluginLibraryTest, ABitWithoutAPinIsNotAvailable) {
    ASSERT_TRUE(
        open(ImageBuilder().config(configurationOfPort("0x40000", 1)).elf(0, 0, sampleProgram({})).bytes()));
    std::vector<unsigned> pads;
    testing::internal::CaptureStderr();
    EXPECT_FALSE(library.getPortPads(0, 0, "P", 2, 0, pads));
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "ERROR: Port 'P' bit 1 not available in target package\n");
}

TEST_F(PluginLibraryTest, APortOfNoWidthHasNoPads) {
    ASSERT_TRUE(
        open(ImageBuilder().config(configurationOfPort("0", 0)).elf(0, 0, sampleProgram({})).bytes()));
    std::vector<unsigned> pads;
    EXPECT_TRUE(library.getPortPads(0, 0, "P", 0, 0, pads));
    EXPECT_TRUE(pads.empty());
}

// ---- Sectors ----

TEST_F(PluginLibraryTest, SectorsOfATypeStandInFileOrder) {
    const std::string bytes = ImageBuilder().config("first").zn("network").config("second").end().bytes();
    ZBHandler* container = loadZBFromMemory(bytes.data(), bytes.size());
    const auto sectors = PluginLibrary::getSectors(container, ZBSEC_SYSCONFIG);
    ASSERT_EQ(sectors.size(), 2U);
    EXPECT_EQ(sectors[0]->length, 5U);
    EXPECT_EQ(sectors[1]->length, 6U);
    EXPECT_TRUE(PluginLibrary::getSectors(container, ZBSEC_ELF).empty());
    deleteZBHandler(container);
}

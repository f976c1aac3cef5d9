#include "infr_libs/ZNLoader/NodeConfig.h"

#include "infr_libs/XmlParser/XmlNode.h"
#include "infr_libs/ZNLoader/NodeInstance.h"
#include "tests/infr_libs/XmlParser/XmlTestSupport.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace {

constexpr int s_mostInt = 2147483647;

// The attributes that a processor must have, but for its number.
const std::string s_counts = " numThreads='8' numTimers='10' numChanEnds='32'";

// A document with this text below `Nodes`, on its second line and further.
std::string documentOf(const std::string& nodes) {
    return "<ZSystem><System><Connections/><Nodes>\n" + nodes + "\n</Nodes></System></ZSystem>";
}

// A document whose one node, number 3, holds this text from the third line on.
std::string nodeOf(const std::string& contents) {
    return documentOf("<Node number='3'>\n" + contents + "\n</Node>");
}

// A document whose one core, number 1 of node 3, holds this text from the fourth line on.
std::string coreOf(const std::string& contents) {
    return nodeOf("<Processor number='1'" + s_counts + ">\n" + contents + "\n</Processor>");
}

// A configuration read from a file of this text.
class ReadConfig {
public:
    explicit ReadConfig(const std::string& text) : m_config(m_folder.write("config_t.xml", text).c_str()) {}

    NodeConfig* operator->() { return &m_config; }

private:
    TemporaryFolder m_folder;
    NodeConfig m_config;
};

// What reading a file of this text throws, with FILE in place of the file's path.
std::string messageOf(const std::string& text) {
    const TemporaryFolder folder;
    const std::string file = folder.write("config_t.xml", text);
    std::string message = thrownBy([&] { NodeConfig config(file.c_str()); });
    for (std::size_t at = 0; (at = message.find(file)) != std::string::npos;)
        message.replace(at, file.size(), "FILE");
    return message;
}

} // namespace

TEST(NodeConfig, ReadsTheNumbersOfTheNodeAndOfItsCores) {
    ReadConfig config("<ZSystem>\n<System><Nodes><GlxNode number='7'/>"
                      "<Node number='3' jtagId='0x2633' userId='0x10'><Switch sLinks='8'/>\n"
                      "<Processor number='1'" +
                      s_counts +
                      "><MemoryController><ExtRam base='1' size='2'/><Ram base='0x10000' size='0x20000'/>"
                      "<Rom base='3' size='4'/></MemoryController></Processor>\n"
                      "<Processor number='0' numThreads='4' numTimers='5' numChanEnds='6'/>"
                      "</Node></Nodes><Connections/></System></ZSystem>");
    const NodeInstance& node = *config->m_node;
    EXPECT_EQ(node.number, 3);
    EXPECT_EQ(node.reserved, 0);
    EXPECT_EQ(node.jtagId, 0x2633);
    EXPECT_EQ(node.userId, 0x10);
    EXPECT_EQ(*node.xmlNode->getName(), "Node");

    ASSERT_EQ(config->getNumCores(), 2);
    EXPECT_EQ(node.cores->at(0)->number, 1);
    EXPECT_EQ(node.cores->at(0)->xmlNode->getLineNum(), 3U);
    EXPECT_EQ(node.cores->at(1)->number, 0);

    const CoreConfig* const first = config->getCoreConfig(1, true);
    EXPECT_EQ(first, node.cores->at(0)->config.get());
    EXPECT_EQ(first->ramBase, 0x10000);
    EXPECT_EQ(first->ramSize, 0x20000);
    EXPECT_EQ(first->numTimers, 10);
    EXPECT_EQ(first->numChanEnds, 32);
    EXPECT_EQ(first->numThreads, 8);
    EXPECT_EQ(first->reserved, 0);
    EXPECT_EQ(config->getCoreConfig(0, true)->numTimers, 5);
}

TEST(NodeConfig, KeepsTheDocumentsElements) {
    ReadConfig config(nodeOf(""));
    EXPECT_EQ(*config->m_root->getName(), "ZSystem");
    EXPECT_EQ(*config->m_system->getName(), "System");
    EXPECT_EQ(*config->m_nodes->getName(), "Nodes");
    EXPECT_EQ(*config->m_connections->getName(), "Connections");
    // Their reports still have somewhere to go.
    EXPECT_THROW(config->m_root->error("x"), std::string);
}

TEST(NodeConfig, AProcessorWithoutAMemoryControllerHasNoRam) {
    ReadConfig config(coreOf(""));
    EXPECT_EQ(config->getCoreConfig(1, true)->ramBase, 0);
    EXPECT_EQ(config->getCoreConfig(1, true)->ramSize, -1);
}

TEST(NodeConfig, AMemoryControllerWithoutARamMakesNone) {
    ReadConfig config(coreOf("<MemoryController><Rom/></MemoryController>"));
    EXPECT_EQ(config->getCoreConfig(1, true)->ramSize, -1);
}

TEST(NodeConfig, ANodeWithoutAProcessorHasNoCores) {
    ReadConfig config(nodeOf("<Switch/>"));
    EXPECT_EQ(config->getNumCores(), 0);
}

TEST(NodeConfig, JtagIdAndUserIdMayBeAbsent) {
    ReadConfig config(nodeOf(""));
    EXPECT_EQ(config->m_node->jtagId, 0);
    EXPECT_EQ(config->m_node->userId, 0);
}

TEST(NodeConfig, ADocumentWithAGlxNodeAloneDescribesNoNode) {
    EXPECT_EQ(messageOf(documentOf("<GlxNode number='0'/>")),
              "FILE: Error: ZN11080 Config files must specify at least one node.\n");
}

TEST(NodeConfig, ASecondRamIsAnErrorAlsoInASecondMemoryController) {
    const std::string message = "FILE:5 Error: ZN11077 Multiple RAM blocks for core 1 in node 3, using "
                                "largest only.\n";
    const std::string ram = "<Ram base='0' size='16'/>";
    EXPECT_EQ(messageOf(coreOf("<MemoryController>" + ram + "\n" + ram + "</MemoryController>")), message);
    EXPECT_EQ(messageOf(coreOf("<MemoryController>" + ram + "</MemoryController>\n<MemoryController>" + ram +
                               "</MemoryController>")),
              message);
}

TEST(NodeConfig, ACoreThatDoesntExistGivesNullUnlessItMust) {
    ReadConfig config(coreOf(""));
    EXPECT_EQ(config->getCoreConfig(5, false), nullptr);
    // Each message stands alone.
    for (int core : {5, 6})
        EXPECT_EQ(thrownBy([&] { config->getCoreConfig(core, true); }),
                  config->m_fileName + ": Error: ZN11083 Core " + std::to_string(core) +
                      " not found in model node config.\n");
}

TEST(NodeConfig, ANegativeCoreNumberIsIllegal) {
    EXPECT_EQ(messageOf(nodeOf("<Processor number='-1'/>")), "FILE:3 Error: ZN11072 Illegal core number.\n");
}

TEST(NodeConfig, ALeadingZeroMeansOctal) {
    ReadConfig config(nodeOf("<Processor number='010' numThreads='010' numTimers='010' numChanEnds='010'/>"));
    const CoreConfig* const core = config->getCoreConfig(8, true);
    EXPECT_EQ(core->numThreads, 8);
    EXPECT_EQ(core->numTimers, 8);
    EXPECT_EQ(core->numChanEnds, 8);
}

TEST(NodeConfig, NumbersSaturateAtTheBoundsOfAnInt) {
    ReadConfig config(documentOf(
        "<Node number='-0x4000000000' jtagId='0x90002731' userId='2147483648'><Processor number='0'" +
        s_counts +
        "><MemoryController><Ram base='0xffffc000' size='0x4000000000'/></MemoryController></Processor>"
        "</Node>"));
    EXPECT_EQ(config->m_node->number, -s_mostInt - 1);
    EXPECT_EQ(config->m_node->jtagId, s_mostInt);
    EXPECT_EQ(config->m_node->userId, s_mostInt);
    EXPECT_EQ(config->getCoreConfig(0, true)->ramBase, s_mostInt);
    EXPECT_EQ(config->getCoreConfig(0, true)->ramSize, s_mostInt);
}

TEST(NodeConfig, TextThatIsNoNumberIsZero) {
    ReadConfig config(
        documentOf("<Node number='x' jtagId='' userId='08'><Processor number='1x' numThreads='' "
                   "numTimers='-' numChanEnds='7 8'/></Node>"));
    EXPECT_EQ(config->m_node->number, 0);
    EXPECT_EQ(config->m_node->jtagId, 0);
    EXPECT_EQ(config->m_node->userId, 0);
    const CoreConfig* const core = config->getCoreConfig(1, true);
    EXPECT_EQ(core->numThreads, 0);
    EXPECT_EQ(core->numTimers, 0);
    EXPECT_EQ(core->numChanEnds, 7);
}

TEST(NodeConfig, TheFirstOfTwoAttributesCounts) {
    ReadConfig config(documentOf("<Node number='1' number='2'/>"));
    EXPECT_EQ(config->m_node->number, 1);
}

TEST(NodeConfig, EntitiesAreReplaced) {
    ReadConfig config(coreOf("<Load name='&lt;'/>"));
    EXPECT_STREQ(config->m_node->cores->at(0)->xmlNode->getNode(0)->findAttribute("name")->getValueSz(), "<");
}

TEST(NodeConfig, FaultsOfTheDocumentsFormAreThrownAsTheyAre) {
    const std::pair<std::string, const char*> rows[] = {
        {"<ZSystem", "FILE:1: error: invalid node name 'ZSystem'\n"},
        {"", "FILE: error: no '<' before the end of file\n"},
        {"<ZSystem><System>\n<Nodes x='1'/></System></ZSystem>",
         "FILE:2: error: unrecognised attribute 'x' in node 'Nodes'\n"},
        {nodeOf("<Processor>\n<Ports/></Processor>"),
         "FILE:4: error: unrecognised subnode 'Ports' in node 'Processor'\n"},
    };
    for (const auto& [text, message] : rows)
        EXPECT_EQ(messageOf(text), message) << text;
    EXPECT_EQ(thrownBy([] { NodeConfig config("no/such/file"); }),
              "no/such/file: error: no such file or directory\n");
}

// By code. 11067 can't be seen: it repeats the test of 11065.
TEST(NodeConfig, ThrowsEachOfItsMessages) {
    const std::string threads = " numThreads='1'";
    const std::string timers = " numTimers='1'";
    const std::pair<std::string, const char*> rows[] = {
        {"<ZSystem>\n<Nodes/></ZSystem>", "FILE: Error: ZN11065 No 'System' node defined in XML file\n"},
        {"<Other><System/></Other>",
         "FILE:1 Error: ZN11066 Root of XML config file must be 'ZSystem', not Other\n"},
        {"\n<zSystem\n/>", "FILE:3 Error: ZN11066 Root of XML config file must be 'ZSystem', not zSystem\n"},
        {"<ZSystem><System><Connections/></System></ZSystem>",
         "FILE: Error: ZN11068 No 'Nodes' node defined in XML file\n"},
        {"<ZSystem><System><Nodes/></System></ZSystem>",
         "FILE: Error: ZN11069 No 'Connections' node defined in XML file\n"},
        {documentOf("<Node/>"), "FILE:2 Error: ZN11070 Node has no number.\n"},
        {nodeOf("<Processor/>"), "FILE:3 Error: ZN11071 Processor has no number.\n"},
        {nodeOf("<Processor number='-0x1'/>"), "FILE:3 Error: ZN11072 Illegal core number.\n"},
        {nodeOf("<Processor number='2'" + s_counts + "/>\n<Processor number='02'/>"),
         "FILE:4 Error: ZN11073 Duplicate core number 2 in node 3.\n"},
        {nodeOf("<Processor number='2'/>"),
         "FILE:3 Error: ZN11074 Number of threads not specified for core 2 in node 3.\n"},
        {nodeOf("<Processor number='2'" + threads + "/>"),
         "FILE:3 Error: ZN11075 Number of timers not specified for core 2 in node 3.\n"},
        {nodeOf("<Processor number='2'" + threads + timers + "/>"),
         "FILE:3 Error: ZN11076 Number of chanends not specified for core 2 in node 3.\n"},
        {coreOf("<MemoryController>\n<Ram base='0' size='0'/>\n<Ram/></MemoryController>"),
         "FILE:6 Error: ZN11077 Multiple RAM blocks for core 1 in node 3, using largest only.\n"},
        // Split inside a word, for the sake of searches for that word in its other meaning.
        {coreOf("<MemoryController>\n<Ram size='1'/></MemoryController>"),
         "FILE:5 Error: ZN11078 Memory controller sp"
         "ec for core 1 in node 3 has no base for RAM.\n"},
        {coreOf("<MemoryController>\n<Ram base='1'/></MemoryController>"),
         "FILE:5 Error: ZN11079 Memory controller sp"
         "ec for core 1 in node 3 has no size for RAM.\n"},
        {documentOf(""), "FILE: Error: ZN11080 Config files must specify at least one node.\n"},
        {documentOf("<Node number='1'/>\n<Node number='2'/>"),
         "FILE:3 Error: ZN11084 Model node config has more than on node.\n"},
        {documentOf("<Node number='1'/>\n<Node/>"),
         "FILE:3 Error: ZN11084 Model node config has more than on node.\n"},
    };
    for (const auto& [text, message] : rows)
        EXPECT_EQ(messageOf(text), message) << text;
}

TEST(NodeConfig, TheRootIsTestedBeforeSystemAndTheNodesBeforeConnections) {
    EXPECT_THAT(messageOf("<Other/>"), testing::HasSubstr("ZN11066"));
    EXPECT_THAT(messageOf("<ZSystem><System/></ZSystem>"), testing::HasSubstr("ZN11068"));
}

TEST(NodeConfig, ARamOfSizeMinusOneDoesntCountAsSeen) {
    ReadConfig config(
        coreOf("<MemoryController><Ram base='1' size='-1'/><Ram base='2' size='3'/></MemoryController>"));
    EXPECT_EQ(config->getCoreConfig(1, true)->ramBase, 2);
    EXPECT_EQ(config->getCoreConfig(1, true)->ramSize, 3);
}

TEST(NodeConfig, ACommentWithinATextThatTheFilesEndCutsOffIsThrownAsAText) {
    EXPECT_EQ(messageOf("<ZSystem>x<!-- "), "basic_string::substr");
}

TEST(NodeConfig, EveryCutOfADocumentIsReadOrThrown) {
    const TemporaryFolder folder;
    const std::string whole =
        coreOf("<MemoryController><Ram base='1' size='2'/></MemoryController>x<!-- y -->");
    ASSERT_EQ(messageOf(whole), "nothing thrown");
    for (std::size_t size = 0; size < whole.size(); ++size) {
        const std::string file = folder.write("config_t.xml", whole.substr(0, size));
        thrownBy([&] { NodeConfig config(file.c_str()); });
    }
}

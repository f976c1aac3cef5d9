#include "infr_libs/ConfigurationHandler/Configuration.h"

#include "infr_libs/ConfigurationHandler/ConfigurationSchema.h"
#include "tests/infr_libs/XmlParser/XmlTestSupport.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/OwnedUtils.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/XmlText.h"

#include <csignal>
#include <gtest/gtest.h>

namespace {

// A `Configuration`, and the trees that it builds.
class Builder : public Configuration {
public:
    Builder() : Configuration(nullptr) {}
    explicit Builder(OwnedUtils<>& utils) : Configuration(utils.get()) {}

    XmlNode& buildDefault() {
        m_tree.reset(buildDefaultConfig());
        return *m_tree;
    }
    XmlNode& buildComplete() {
        m_tree.reset(buildCompleteConfig());
        return *m_tree;
    }

private:
    std::unique_ptr<XmlNode> m_tree;
};

// A document whose `System` holds this text.
std::string systemText(const std::string& contents) {
    return "<ZSystem><System>" + contents + "</System></ZSystem>";
}

void expectAssertion(const std::function<void()>& body, const std::string& condition) {
    const ChildResult result = runInChild(body);
    EXPECT_EQ(result.signal, SIGABRT) << condition;
    EXPECT_NE(result.error.find(": Assertion `" + condition + "' failed."), std::string::npos)
        << condition << "\n"
        << result.error;
}

// What every tree that a document can be turned into must stand: our parser, the check, another reader.
void expectToBeADocument(const XmlNode& tree) {
    const TemporaryFolder folder;
    const std::string file =
        folder.write("system.xml", "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n" + printed(tree));
    OwnedUtils<> utils;
    const XmlParser parser(file.c_str(), utils.get(), true);
    EXPECT_EQ(printed(*parser.getRoot()), printed(tree));
    EXPECT_NO_THROW(Configuration(utils.get()).checkConfig(parser.getRoot()));
    const ChildResult reader = runProgram({"xmllint", "--noout", file});
    EXPECT_EQ(reader.exitStatus, 0) << reader.error;
    EXPECT_EQ(reader.error, "");
}

} // namespace

// --- Building

TEST(Configuration, TheDefaultDocumentIsTheSmallestSystem) {
    EXPECT_EQ(
        printed(Builder().buildDefault(), 0, true),
        R"xml(<ZSystem xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance" xsi:noNamespaceSchemaLocation="ZSystem.xsd">
  <System>
    <Nodes>
      <Node bootMode="0" number="0" jtagId="0x0fff1731" userId="0x0">
        <Switch/>
        <Processor number="0" numThreads="8" numTimers="10" numLocks="4" numSyncs="7" numChanEnds="32" numClkBlks="6" numMemMaps="16">
          <MemoryController>
            <Ram base="0x10000" size="0x10000"/>
            <ExtRam base="0x10000" size="0x4000000000"/>
            <Rom base="0xffffc000" size="0x2000"/>
          </MemoryController>
          <Otp name=""/>
        </Processor>
      </Node>
      <GlxNode number="0"/>
    </Nodes>
    <Connections/>
  </System>
</ZSystem>
)xml");
}

TEST(Configuration, TheCompleteDocumentIsTheTemplateWithoutItsComments) {
    // The two differ in one form alone: the template closes an element that has nothing by an end tag.
    const std::string text = written([](FILE* file) { Configuration(nullptr).displayDefaultConfig(file); });
    std::string expected;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);)
        if (line.find("<!--") == std::string::npos)
            expected += line + "\n";
    const std::string empty = "<Flags></Flags>";
    expected.replace(expected.find(empty), empty.size(), "<Flags/>");
    EXPECT_EQ(printed(Builder().buildComplete(), 0, true), expected);
}

TEST(Configuration, TheDefaultDocumentIsAcceptedByReadersAndByTheCheck) {
    expectToBeADocument(Builder().buildDefault());
}

TEST(Configuration, TheCompleteDocumentIsAcceptedByReadersAndByTheCheck) {
    expectToBeADocument(Builder().buildComplete());
}

TEST(Configuration, BuiltElementsAreNumberedInTheOrderOfTheirMaking) {
    Builder builder;
    const XmlNode& root = builder.buildDefault();
    EXPECT_STREQ(root.getFileName(), "DefaultConfig.xml");
    EXPECT_EQ(root.getLineNum(), 1U);
    const XmlNode* const nodes = root.findNode("System")->findNode("Nodes");
    EXPECT_EQ(nodes->getLineNum(), 3U);
    EXPECT_EQ(nodes->findNode("Node")->findNode("Switch")->getLineNum(), 5U);
    EXPECT_EQ(nodes->findNode("GlxNode")->getLineNum(), 12U);
}

TEST(Configuration, LineNumbersGoOnWithWhatIsAddedLater) {
    Builder builder;
    XmlNode& root = builder.buildDefault(); // 13 elements
    builder.setAttributeValue("Trace", "name", "x", CONFIG_MODE_NEW_NODE);
    const XmlNode* const added = root.findNode("Trace");
    EXPECT_EQ(added->getLineNum(), 14U);
    EXPECT_STREQ(added->getFileName(), "<Augmented config>");
}

TEST(Configuration, BuildingOverARootFailsAnAssertion) {
    expectAssertion(
        [] {
            Builder builder;
            builder.buildDefault();
            builder.buildDefaultConfig();
        },
        "m_root == 0");
    expectAssertion(
        [] {
            XmlNode root("ZSystem", "f", 1, nullptr);
            Configuration configuration(nullptr);
            configuration.setRoot(&root);
            configuration.buildCompleteConfig();
        },
        "m_root == __null");
}

// --- The check

TEST(Configuration, AcceptsATraceNameThatTheSchemaDoesntHave) {
    const ParsedText document(
        systemText("<TraceConfig><Trace name=\"TRACE_MEM\" value=\"true\"/></TraceConfig>"));
    EXPECT_NO_THROW(Configuration(document->getZelmUtils()).checkConfig(&*document));
}

TEST(Configuration, AcceptsTwoOfAnElement) {
    const ParsedText document(systemText("<Nodes/><Nodes/>"));
    EXPECT_NO_THROW(Configuration(document->getZelmUtils()).checkConfig(&*document));
}

TEST(Configuration, AcceptsADocumentWithNothingInIt) {
    const ParsedText document("<Anything/>");
    EXPECT_NO_THROW(Configuration(document->getZelmUtils()).checkConfig(&*document));
}

TEST(Configuration, ReportsWhatTheSchemaDoesntHaveAtItsLine) {
    const std::pair<const char*, const char*> rows[] = {
        {"<ZSystem>\n<Nodes/></ZSystem>",
         "doc.xml:2: error: unrecognised subnode 'Nodes' in node 'ZSystem'\n"},
        {"<ZSystem>\n<System\nnumber='1'/></ZSystem>",
         "doc.xml:3: error: unrecognised attribute 'number' in node 'System'\n"},
        {"<ZSystem><System><JtagChain><Node number='0'/></JtagChain></System></ZSystem>",
         "doc.xml:1: error: unrecognised attribute 'number' in node 'Node'\n"},
        {"<ZSystem><System><Nodes><Node id='0'/></Nodes></System></ZSystem>",
         "doc.xml:1: error: unrecognised attribute 'id' in node 'Node'\n"},
        {"<ZSystem><System><Nodes><Node><Processor><Ports/></Processor></Node></Nodes></System></ZSystem>",
         "doc.xml:1: error: unrecognised subnode 'Ports' in node 'Processor'\n"},
        {"<ZSystem><System><Connections><SLink pLink=''/></Connections></System></ZSystem>",
         "doc.xml:1: error: unrecognised attribute 'pLink' in node 'SLink'\n"},
        {"<ZSystem><System><Pins><Pin>\n<ZLink>\n<Port/></ZLink></Pin></Pins></System></ZSystem>",
         "doc.xml:3: error: unrecognised subnode 'Port' in node 'ZLink'\n"},
    };
    for (const auto& [text, message] : rows) {
        const ParsedText document(text);
        EXPECT_EQ(thrownBy([&] { Configuration(document->getZelmUtils()).checkConfig(&*document); }),
                  message);
    }
}

TEST(Configuration, AnUnknownElementFailsAnAssertionOnceItsReportReturned) {
    const ChildResult result = runInChild([] {
        OwnedUtils<ErrorHandler> utils;
        utils.handler.setExitOnError(false);
        std::istringstream stream("<ZSystem><Nodes/></ZSystem>");
        const XmlParser parser("doc.xml", utils.get(), &stream);
        Configuration(utils.get()).checkConfig(parser.getRoot());
    });
    EXPECT_EQ(result.signal, SIGABRT);
    EXPECT_EQ(result.error.find("doc.xml:1: error: unrecognised subnode 'Nodes' in node 'ZSystem'\n"), 0U);
    EXPECT_NE(result.error.find("Assertion `defaultIndex < numSubNdes' failed."), std::string::npos);
}

// --- Defaults

TEST(Configuration, GivesTheDefaultOfAnAttribute) {
    Configuration configuration(nullptr);
    EXPECT_STREQ(configuration.getAttributeValue("Processor", "numSyncs"), "7");
    EXPECT_STREQ(configuration.getAttributeValue("ZSystem", "xsi:noNamespaceSchemaLocation"), "ZSystem.xsd");
    EXPECT_STREQ(configuration.getAttributeValue("ExtRam", "size"), "0x4000000000");
    EXPECT_STREQ(configuration.getAttributeValue("Processor", "traceFile"), "");
}

TEST(Configuration, GivesNullForAnElementOrAnAttributeThatDoesntExist) {
    Configuration configuration(nullptr);
    EXPECT_EQ(configuration.getAttributeValue("Nosuch", "x"), nullptr);
    EXPECT_EQ(configuration.getAttributeValue("Processor", "x"), nullptr);
}

TEST(Configuration, TheFirstRowOfARepeatedElementGivesTheDefault) {
    Configuration configuration(nullptr);
    EXPECT_STREQ(configuration.getAttributeValue("Trace", "name"), "TRACE_SWITCH_DATA");
    EXPECT_STREQ(configuration.getAttributeValue("PLink", "pLink"), "0,0,0");
}

TEST(Configuration, AnElementOfTwoPlacesIsLookedUpAtBoth) {
    Configuration configuration(nullptr);
    EXPECT_STREQ(configuration.getAttributeValue("Node", "jtagId"), "0x0fff1731");
    EXPECT_STREQ(configuration.getAttributeValue("Node", "id"), "0");
}

// --- Editing

TEST(Configuration, ReplacingChangesNothingWhereThereIsNoAttribute) {
    const ParsedText document(systemText("<Nodes><Node><Processor/></Node></Nodes>"));
    const std::string before = printed(*document);
    Configuration configuration(document->getZelmUtils());
    configuration.setRoot(&*document);
    configuration.setAttributeValue("Processor", "numThreads", "4", CONFIG_MODE_REPLACE);
    EXPECT_EQ(printed(*document), before);
}

TEST(Configuration, ReplacingChangesEveryAttributeOfTheName) {
    const ParsedText document("<a x='1' x='2' y='3'><a x='4'/></a>");
    Configuration configuration(document->getZelmUtils());
    configuration.setAttributeValue(&*document, "a", "x", "5", CONFIG_MODE_REPLACE);
    EXPECT_EQ(printed(*document), "<a x=\"5\" x=\"5\" y=\"3\">\n<a x=\"5\"/>\n</a>\n");
}

TEST(Configuration, AddingLeavesAnExistingValueAlone) {
    const ParsedText document(
        systemText("<Nodes><Node><Processor/><Processor numThreads='2'/></Node></Nodes>"));
    Configuration configuration(document->getZelmUtils());
    configuration.setRoot(&*document);
    configuration.setAttributeValue("Processor", "numThreads", "4", CONFIG_MODE_ADD);
    const XmlNode* const node = document->getNode(0)->getNode(0)->getNode(0);
    EXPECT_STREQ(node->getNode(0)->findAttribute("numThreads")->getValueSz(), "4");
    EXPECT_STREQ(node->getNode(1)->findAttribute("numThreads")->getValueSz(), "2");
}

TEST(Configuration, SettingReplacesOrAdds) {
    const ParsedText document("<a><b/><b x='1'/></a>");
    Configuration configuration(document->getZelmUtils());
    configuration.setAttributeValue(&*document, "b", "x", "5", CONFIG_MODE_SET);
    EXPECT_EQ(printed(*document), "<a>\n<b x=\"5\"/>\n<b x=\"5\"/>\n</a>\n");
}

TEST(Configuration, ANewNodeIsAppendedToTheStartNodeWhateverItsName) {
    const ParsedText document("<a><b/></a>");
    Configuration configuration(document->getZelmUtils());
    configuration.setAttributeValue(&*document, "b", "x", "5", CONFIG_MODE_NEW_NODE);
    configuration.setAttributeValue(&*document, "c", nullptr, "5", CONFIG_MODE_NEW_NODE);
    configuration.setAttributeValue(&*document, "d", "x", nullptr, CONFIG_MODE_NEW_NODE);
    EXPECT_EQ(printed(*document), "<a>\n<b/>\n<b x=\"5\"/>\n<c/>\n<d/>\n</a>\n");
}

TEST(Configuration, NumbersAreWrittenWithASign) {
    const std::pair<unsigned, const char*> rows[] = {
        {0, "0"}, {2147483647, "2147483647"}, {2147483648U, "-2147483648"}, {4294967295U, "-1"}};
    for (const auto& [number, text] : rows) {
        const ParsedText document("<a/>");
        Configuration configuration(document->getZelmUtils());
        configuration.setRoot(&*document);
        configuration.setAttributeValue("a", "x", number, CONFIG_MODE_SET);
        EXPECT_STREQ(document->findAttribute("x")->getValueSz(), text);
    }
}

TEST(Configuration, EditingNothingFailsAnAssertion) {
    Configuration configuration(nullptr);
    expectAssertion([&] { configuration.setAttributeValue(nullptr, "a", "x", "1", CONFIG_MODE_SET); },
                    "node != 0");
    expectAssertion([&] { configuration.setAttributeValue("a", "x", "1", CONFIG_MODE_SET); }, "m_root != 0");
    expectAssertion([&] { configuration.setAttributeValue("a", "x", 1U, CONFIG_MODE_SET); }, "m_root != 0");
}

// --- Searching

TEST(Configuration, FindsTheFirstElementOfANameDepthFirst) {
    const ParsedText document("<a><b><c n='1'/></b><c n='2'/></a>");
    Configuration configuration(nullptr);
    EXPECT_EQ(configuration.findNode(&*document, "a"), &*document);
    EXPECT_STREQ(configuration.findNode(&*document, "c")->findAttribute("n")->getValueSz(), "1");
    EXPECT_EQ(configuration.findNode(&*document, "d"), nullptr);
}

TEST(Configuration, FindsAnElementByAnAttributesText) {
    const ParsedText document("<a n='1'><a n='0x1'/><a n='3' n='4'/></a>");
    Configuration configuration(nullptr);
    EXPECT_EQ(configuration.findNodeWithAttributeValue(&*document, "a", "n", "1"), &*document);
    EXPECT_EQ(configuration.findNodeWithAttributeValue(&*document, "a", "n", "0x1"), document->getNode(0));
    EXPECT_EQ(configuration.findNodeWithAttributeValue(&*document, "a", "n", "4"), document->getNode(1));
    EXPECT_EQ(configuration.findNodeWithAttributeValue(&*document, "a", "n", "01"), nullptr);
    EXPECT_EQ(configuration.findNodeWithAttributeValue(&*document, "b", "n", "1"), nullptr);
}

TEST(Configuration, FindsAnElementByAnAttributesNumberHoweverItIsWritten) {
    const ParsedText document("<a><b/><b m='16'/><b n='0x10'/><c n='16'/></a>");
    Configuration configuration(nullptr);
    EXPECT_EQ(configuration.findNodeWithAttributeValue(&*document, "b", "n", 16), document->getNode(2));
    EXPECT_EQ(configuration.findNodeWithAttributeValue(&*document, "c", "n", 16), document->getNode(3));
    EXPECT_EQ(configuration.findNodeWithAttributeValue(&*document, "b", "n", 0U), nullptr);
}

TEST(Configuration, ASearchByNumberReportsASecondAttribute) {
    const ParsedText document("<a n='1' n='2'/>");
    Configuration configuration(nullptr);
    EXPECT_EQ(thrownBy([&] { configuration.findNodeWithAttributeValue(&*document, "a", "n", 3); }),
              "doc.xml:1: error: duplicate attribute 'n' in node 'a'\n");
}

TEST(Configuration, FindsAProcessorByTheNumbersOfNodeAndProcessor) {
    const ParsedText document(
        systemText("<JtagChain><Node id='1'/></JtagChain><Nodes>"
                   "<Node number='0'><Processor number='1'/></Node>"
                   "<Node number='1'><Processor number='0'/><Processor number='1'/></Node>"
                   "</Nodes>"));
    Configuration configuration(nullptr);
    const XmlNode* const node = document->getNode(0)->getNode(1)->getNode(1);
    EXPECT_EQ(configuration.findProcessorNode(&*document, "1", "1"), node->getNode(1));
    EXPECT_EQ(configuration.findProcessorNode(&*document, "1", "2"), nullptr);
    EXPECT_EQ(configuration.findProcessorNode(&*document, "2", "0"), nullptr);
}

TEST(Configuration, SearchingNothingFailsAnAssertion) {
    XmlNode node("a", "f", 1, nullptr);
    Configuration c(nullptr);
    expectAssertion([&] { c.findNode(nullptr, "a"); }, "node != 0");
    expectAssertion([&] { c.findNode(&node, nullptr); }, "nodeName != 0");
    expectAssertion([&] { c.findNodeWithAttributeValue(nullptr, "a", "x", "1"); }, "node != 0");
    expectAssertion([&] { c.findNodeWithAttributeValue(&node, nullptr, "x", "1"); }, "nodeName != 0");
    expectAssertion([&] { c.findNodeWithAttributeValue(&node, "a", nullptr, "1"); }, "attributeName != 0");
    expectAssertion([&] { c.findNodeWithAttributeValue(&node, "a", "x", nullptr); }, "attributeValue != 0");
    expectAssertion([&] { c.findNodeWithAttributeValue(nullptr, "a", "x", 1U); }, "node != 0");
    expectAssertion([&] { c.findNodeWithAttributeValue(&node, nullptr, "x", 1U); }, "nodeName != 0");
    expectAssertion([&] { c.findNodeWithAttributeValue(&node, "a", nullptr, 1U); }, "attributeName != 0");
}

TEST(Configuration, WalksADocumentOfAnyDepth) {
    const ParsedText document(nestedText(200000));
    Configuration configuration(document->getZelmUtils());
    EXPECT_EQ(configuration.findNode(&*document, "nosuch"), nullptr);
    EXPECT_EQ(configuration.findNodeWithAttributeValue(&*document, "nosuch", "x", "1"), nullptr);
    configuration.setAttributeValue(&*document, "nosuch", "x", "1", CONFIG_MODE_SET);
}

// --- Conversions

TEST(Configuration, ConvertsWholeNumbersAsA32BitTargetDoes) {
    const std::pair<const char*, unsigned> rows[] = {
        {"0x10", 16},
        {"10", 10},
        {"010", 10},
        {"0X10", 0}, // only a small x makes it hexadecimal
        {"-1", 4294967295U},
        {" \t+7 x", 7},
        {"0xffffffff", 4294967295U},
        {"0x4000000000", 4294967295U},
        {"0x-1", 4294967295U},
        {"0x-100000001", 4294967295U},
        {"0x 0x1fg", 31},
        {"0x", 0},
        {"0xg", 0},
        {"4294967295", 2147483647},
        {"-4294967295", 2147483648U},
        {"99999999999999999999", 2147483647},
    };
    Configuration configuration(nullptr);
    for (const auto& [text, number] : rows)
        EXPECT_EQ(configuration.getUInt(text), number) << text;
}

TEST(Configuration, ConvertsTruthAndFractions) {
    Configuration configuration(nullptr);
    EXPECT_TRUE(configuration.getBool("true"));
    EXPECT_FALSE(configuration.getBool("false"));
    EXPECT_EQ(configuration.getDouble("2.5"), 2.5);
    EXPECT_EQ(configuration.getDouble(" -1e3x"), -1000.0);
}

TEST(Configuration, TextThatDoesntConvertFailsAnAssertion) {
    Configuration c(nullptr);
    for (const char* text : {"", "x", "-", "--1"})
        expectAssertion([&] { c.getUInt(text); }, "0");
    for (const char* text : {"TRUE", "True", "1", "", "true "})
        expectAssertion([&] { c.getBool(text); }, "0");
    expectAssertion([&] { c.getDouble("x"); }, "0");
    expectAssertion([&] { c.getUInt(nullptr); }, "stringValue != 0");
    expectAssertion([&] { c.getDouble(nullptr); }, "stringValue != 0");
}

// --- Trace switches

TEST(Configuration, SwitchTracingTurnsOnAllTracesOfADocumentWithoutTraceConfig) {
    Builder builder;
    XmlNode& root = builder.buildDefault();
    builder.enableSwitchTracing(&root);
    EXPECT_EQ(printed(*root.findNode("TraceConfig")), "<TraceConfig value=\"true\">\n"
                                                      "<Trace name=\"TRACE_SWITCH_DATA\" value=\"true\"/>\n"
                                                      "<Trace name=\"TRACE_SWITCH_CTRL\" value=\"true\"/>\n"
                                                      "<Trace name=\"TRACE_ISTREAM\" value=\"true\"/>\n"
                                                      "<Trace name=\"TRACE_ASYNC\" value=\"true\"/>\n"
                                                      "<Trace name=\"TRACE_CHECKER\" value=\"true\"/>\n"
                                                      "</TraceConfig>\n");
    EXPECT_STREQ(builder.findNode(&root, "Switch")->findAttribute("tracingOn")->getValueSz(), "true");
}

TEST(Configuration, SwitchTracingAddsWhatATraceConfigLacksAndTurnsOnAllItHas) {
    const ParsedText document(systemText("<TraceConfig value='false'><Trace name='TRACE_SWITCH_CTRL'/>"
                                         "<Trace name='TRACE_ISTREAM' value='false'/></TraceConfig>"));
    Configuration configuration(document->getZelmUtils());
    configuration.setRoot(&*document);
    configuration.enableSwitchTracing(&*document);
    EXPECT_EQ(printed(*configuration.findNode(&*document, "TraceConfig")),
              "<TraceConfig value=\"false\">\n"
              "<Trace name=\"TRACE_SWITCH_CTRL\" value=\"true\"/>\n"
              "<Trace name=\"TRACE_ISTREAM\" value=\"true\"/>\n"
              "<Trace name=\"TRACE_SWITCH_DATA\" value=\"true\"/>\n"
              "</TraceConfig>\n");
}

TEST(Configuration, ATraceOfTheSameNameIsLeftAlone) {
    const ParsedText document("<TraceConfig><Other name='TRACE_ASYNC'/></TraceConfig>");
    const std::string before = printed(*document);
    Configuration configuration(document->getZelmUtils());
    configuration.enableTraceNode(&*document, "TRACE_ASYNC", s_trace3Attributes);
    EXPECT_EQ(printed(*document), before);
}

TEST(Configuration, ATraceWithoutANameFailsAnAssertion) {
    const ParsedText document("<TraceConfig><Trace/></TraceConfig>");
    Configuration configuration(document->getZelmUtils());
    expectAssertion([&] { configuration.enableTraceNode(&*document, "x", s_trace0Attributes); },
                    "nameAtt != __null");
}

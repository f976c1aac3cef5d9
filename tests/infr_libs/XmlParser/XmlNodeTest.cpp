#include "infr_libs/XmlParser/XmlNode.h"

#include "tests/infr_libs/XmlParser/XmlTestSupport.h"
#include "tests/support/ChildProcess.h"

#include <csignal>
#include <gtest/gtest.h>

namespace {

// A node of no document, with a handler that throws.
class XmlNodeTest : public testing::Test {
protected:
    std::unique_ptr<XmlNode> make(const char* name) {
        return std::make_unique<XmlNode>(name, "made.xml", 7U, m_utils.get());
    }

    OwnedUtils<> m_utils;
};

constexpr const char* s_foreignSubNode = "trying to replace a subnode that doesn't belong to the node\n";

} // namespace

TEST_F(XmlNodeTest, IsMadeFromEitherKindOfText) {
    const std::string name = "b";
    const XmlNode fromString(&name, "made.xml", 8, m_utils.get());
    EXPECT_EQ(*fromString.getName(), "b");
    EXPECT_STREQ(fromString.getFileName(), "made.xml");
    EXPECT_EQ(fromString.getLineNum(), 8U);
    EXPECT_EQ(fromString.getZelmUtils(), m_utils.get());
    EXPECT_EQ(*make("a")->getName(), "a");
    EXPECT_EQ(*make("a")->getValue(), "");
    EXPECT_EQ(make("a")->getLineNum(), 7U);
}

TEST_F(XmlNodeTest, KeepsACopyOfItsValue) {
    const auto node = make("a");
    std::string value = "text";
    node->setValue(&value);
    value = "other";
    EXPECT_EQ(*node->getValue(), "text");
}

TEST_F(XmlNodeTest, FindsTheFirstOfTwoByName) {
    const ParsedText root("<a x='1' y='2' x='3'><b n='1'/><c/><b n='2'/></a>");
    EXPECT_EQ(root->findAttribute("x"), root->getAttribute(0));
    EXPECT_EQ(root->findAttribute("y"), root->getAttribute(1));
    EXPECT_EQ(root->findAttribute("X"), nullptr);
    EXPECT_EQ(root->findNode("b"), root->getNode(0));
    EXPECT_EQ(root->findNode("c"), root->getNode(1));
    EXPECT_EQ(root->findNode("a"), nullptr);
    EXPECT_EQ(root->numAttributes(), 3U);
    EXPECT_EQ(root->numNodes(), 3U);
}

TEST_F(XmlNodeTest, AnIndexBeyondTheEndFailsAnAssertion) {
    const ChildResult attribute = runInChild([] { ParsedText("<a x='1'/>")->getAttribute(1); });
    EXPECT_EQ(attribute.signal, SIGABRT);
    EXPECT_NE(attribute.error.find("Assertion `attributeNum < m_attributes.size()' failed."),
              std::string::npos);
    const ChildResult node = runInChild([] { ParsedText("<a/>")->getNode(0); });
    EXPECT_EQ(node.signal, SIGABRT);
    EXPECT_NE(node.error.find("Assertion `nodeNum < m_nodes.size()' failed."), std::string::npos);
}

// Attributes.

TEST(XmlAttribute, WritesANumberInHexadecimal) {
    EXPECT_STREQ(XmlAttribute("n", 31U).getValueSz(), "0x1f");
    EXPECT_STREQ(XmlAttribute("n", 0U).getValueSz(), "0x0");
    EXPECT_STREQ(XmlAttribute("n", 0xffffffffU).getValueSz(), "0xffffffff");
}

TEST(XmlAttribute, GivesItsValueAsStringAndAsText) {
    XmlAttribute attribute("n", "v");
    EXPECT_EQ(*attribute.getName(), "n");
    EXPECT_EQ(*attribute.getValue(), "v");
    attribute.setValue("w");
    EXPECT_EQ(*attribute.getValue(), "w");
    EXPECT_STREQ(attribute.getValueSz(), "w");
}

TEST_F(XmlNodeTest, AppendsAttributesWithoutACheckForDuplicates) {
    const auto node = make("a");
    node->addAttribute(new XmlAttribute("n", "1"));
    node->addAttribute(new XmlAttribute("n", "2"));
    EXPECT_EQ(printed(*node), "<a n=\"1\" n=\"2\"/>\n");
}

TEST_F(XmlNodeTest, CreatesAnAttributeOrReplacesItInItsPlace) {
    const auto node = make("a");
    node->createOrReplaceAttribute("m", "1");
    node->createOrReplaceAttribute("n", "2");
    node->createOrReplaceAttribute("m", "3");
    EXPECT_EQ(printed(*node), "<a m=\"3\" n=\"2\"/>\n");
}

TEST_F(XmlNodeTest, ReplacesAnAttributeByPointer) {
    const auto node = make("a");
    node->addAttribute(new XmlAttribute("n", "1"));
    node->addAttribute(new XmlAttribute("n", "2"));
    node->replaceAttribute(node->getAttribute(1), new XmlAttribute("o", "3"));
    EXPECT_EQ(printed(*node), "<a n=\"1\" o=\"3\"/>\n");
}

TEST_F(XmlNodeTest, AnAttributeMayReplaceItself) {
    const auto node = make("a");
    node->addAttribute(new XmlAttribute("n", "1"));
    node->replaceAttribute(node->getAttribute(0), node->getAttribute(0));
    EXPECT_EQ(printed(*node), "<a n=\"1\"/>\n");
}

TEST_F(XmlNodeTest, ReportsTheReplacementOfAForeignAttribute) {
    const auto node = make("a");
    XmlAttribute foreign("n", "1");
    XmlAttribute replacement("n", "2");
    EXPECT_EQ(thrownBy([&] { node->replaceAttribute(&foreign, &replacement); }),
              "trying to replace an attribute that doesn't belong to the node\n");
    EXPECT_EQ(node->numAttributes(), 0U);
}

// Sub-nodes.

TEST_F(XmlNodeTest, DeleteNodeTakesTheNodeOutAndLeavesItToTheCaller) {
    const ParsedText root("<a><b/><c x='1'/><d/></a>");
    const std::unique_ptr<XmlNode> taken(root->getNode(1));
    root->deleteNode(taken.get());
    EXPECT_EQ(printed(*root), "<a>\n<b/>\n<d/>\n</a>\n");
    EXPECT_EQ(printed(*taken), "<c x=\"1\"/>\n");
}

TEST_F(XmlNodeTest, ReportsTheDeletionOfAForeignNode) {
    const ParsedText root("<a><b><c/></b></a>");
    EXPECT_EQ(thrownBy([&] { root->deleteNode(root->getNode(0)->getNode(0)); }),
              "trying to delete a node which doesn't exist\n");
    EXPECT_EQ(root->numNodes(), 1U);
}

TEST_F(XmlNodeTest, ReplaceNodePutsACopyInItsPlaceAndLeavesTheOldNode) {
    const ParsedText root("<a><b/><c/><d/></a>");
    const ParsedText other("<e>\n<f/></e>");
    const std::unique_ptr<XmlNode> old(root->getNode(1));
    root->replaceNode(old.get(), &*other);
    EXPECT_EQ(printed(*root), "<a>\n<b/>\n<e>\n<f/>\n</e>\n<d/>\n</a>\n");
    EXPECT_NE(root->getNode(1), &*other);
    EXPECT_EQ(root->getNode(1)->getNode(0)->getLineNum(), 2U);
    EXPECT_EQ(*old->getName(), "c");
}

TEST_F(XmlNodeTest, ReplaceNodeWithManyPutsCopiesOfTheHoldersSubNodesInItsPlace) {
    const ParsedText root("<a><b/><c/><d/></a>");
    const ParsedText holder("<h><e><f/></e><g/></h>");
    const std::unique_ptr<XmlNode> old(root->getNode(1));
    root->replaceNodeWithMany(old.get(), &*holder);
    EXPECT_EQ(printed(*root), "<a>\n<b/>\n<e>\n<f/>\n</e>\n<g/>\n<d/>\n</a>\n");
    EXPECT_EQ(printed(*holder), "<h>\n<e>\n<f/>\n</e>\n<g/>\n</h>\n");
    EXPECT_EQ(*old->getName(), "c");
}

TEST_F(XmlNodeTest, ReplaceNodeWithManyOfOneSubNodeIsAReplacement) {
    const ParsedText root("<a><b/><c/></a>");
    const ParsedText holder("<h><e/></h>");
    const std::unique_ptr<XmlNode> old(root->getNode(1));
    root->replaceNodeWithMany(old.get(), &*holder);
    EXPECT_EQ(printed(*root), "<a>\n<b/>\n<e/>\n</a>\n");
}

TEST_F(XmlNodeTest, ReplaceNodeWithManyOfNoSubNodesRemovesTheOldNodeAndKeepsTheOrder) {
    const ParsedText root("<a><b/><c/><d/></a>");
    const ParsedText holder("<h/>");
    const std::unique_ptr<XmlNode> old(root->getNode(1));
    root->replaceNodeWithMany(old.get(), &*holder);
    EXPECT_EQ(printed(*root), "<a>\n<b/>\n<d/>\n</a>\n");
    EXPECT_EQ(*old->getName(), "c");
}

TEST_F(XmlNodeTest, ReplaceNodeWithManyMayTakeTheNodeItselfAsHolder) {
    const ParsedText root("<a><b/><c/></a>");
    const std::unique_ptr<XmlNode> old(root->getNode(0));
    root->replaceNodeWithMany(old.get(), &*root);
    EXPECT_EQ(printed(*root), "<a>\n<b/>\n<c/>\n<c/>\n</a>\n");
}

TEST_F(XmlNodeTest, ReportsTheReplacementOfAForeignNode) {
    const ParsedText root("<a><b/></a>");
    const auto foreign = make("f");
    EXPECT_EQ(thrownBy([&] { root->replaceNode(foreign.get(), foreign.get()); }), s_foreignSubNode);
    EXPECT_EQ(thrownBy([&] { root->replaceNodeWithMany(foreign.get(), foreign.get()); }), s_foreignSubNode);
    EXPECT_EQ(printed(*root), "<a>\n<b/>\n</a>\n");
}

TEST(XmlNode, MisuseChangesNothingWhereTheHandlerReturns) {
    OwnedUtils<CollectingErrorHandler> utils;
    XmlNode node("a", "made.xml", 1, utils.get());
    XmlNode foreign("f", "made.xml", 1, utils.get());
    XmlAttribute attribute("n", "1");
    node.replaceAttribute(&attribute, &attribute);
    node.deleteNode(&foreign);
    node.replaceNode(&foreign, &foreign);
    node.replaceNodeWithMany(&foreign, &foreign);
    EXPECT_EQ(utils.handler.messages().size(), 4U);
    EXPECT_EQ(printed(node), "<a/>\n");
}

TEST(XmlNode, MisuseEndsTheProcessWithItsMessage) {
    const ChildResult result = runInChild([] {
        OwnedUtils<ErrorHandler> utils;
        XmlNode node("a", "made.xml", 1, utils.get());
        node.deleteNode(&node);
    });
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.error, "trying to delete a node which doesn't exist\n");
}

// Copies.

TEST_F(XmlNodeTest, ACopyIsDeepAndOutlivesItsOriginal) {
    OwnedUtils<> utils;
    std::unique_ptr<XmlNode> copy;
    {
        std::istringstream stream("\n<a x='1'>own<b y='2'>text<d/></b><c/></a>");
        const XmlParser parser("doc.xml", utils.get(), &stream);
        copy = std::make_unique<XmlNode>(*parser.getRoot());
        EXPECT_NE(copy->getNode(0), parser.getRoot()->getNode(0));
        EXPECT_NE(copy->getAttribute(0), parser.getRoot()->getAttribute(0));
    }
    EXPECT_EQ(printed(*copy), "<a x=\"1\">own\n<b y=\"2\">text\n<d/>\n</b>\n<c/>\n</a>\n");
    EXPECT_EQ(copy->getNode(0)->getLineNum(), 2U);
    EXPECT_STREQ(copy->getNode(0)->getFileName(), "doc.xml");
    EXPECT_EQ(copy->getNode(0)->getZelmUtils(), utils.get());
}

TEST_F(XmlNodeTest, ChangingACopyLeavesItsOriginal) {
    const ParsedText root("<a x='1'><b/></a>");
    XmlNode copy(*root);
    copy.createOrReplaceAttribute("x", "2");
    copy.addNode(make("c").release());
    EXPECT_EQ(printed(*root), "<a x=\"1\">\n<b/>\n</a>\n");
    EXPECT_EQ(printed(copy), "<a x=\"2\">\n<b/>\n<c/>\n</a>\n");
}

TEST(XmlNode, ANestedTreeIsDeletedWhole) {
    const ParsedText root("<a><b><c><d/></c><e/></b><f/></a>");
    const XmlNode copy(*root);
    EXPECT_EQ(*copy.getNode(0)->getNode(1)->getName(), "e");
}

// Printing.

TEST(XmlNode, PrintsANestedNodeOnThreeLinesWithBlanksOnlyWhereAskedTo) {
    const ParsedText root("<a><b/></a>");
    EXPECT_EQ(printed(*root, 0, true), "<a>\n  <b/>\n</a>\n");
    EXPECT_EQ(printed(*root, 0, false), "<a>\n<b/>\n</a>\n");
}

TEST(XmlNode, PrintsTwoBlanksALevelFromTheGivenDepth) {
    const ParsedText root("<a><b><c/>\n</b><d>x</d></a>");
    EXPECT_EQ(printed(*root, 1, true), "  <a>\n    <b>\n      <c/>\n    </b>\n    <d>x</d>\n  </a>\n");
    EXPECT_EQ(printed(*root, -5, true), printed(*root, 0, false));
}

TEST(XmlNode, PrintsAValueAheadOfSubNodes) {
    EXPECT_EQ(printed(*ParsedText("<a>x<b/></a>"), 0, true), "<a>x\n  <b/>\n</a>\n");
}

TEST(XmlNode, PrintsTheShortFormOnlyWithoutValueAndSubNodes) {
    EXPECT_EQ(printed(*ParsedText("<a x='1'></a>")), "<a x=\"1\"/>\n");
    EXPECT_EQ(printed(*ParsedText("<a x='1'>y</a>")), "<a x=\"1\">y</a>\n");
}

TEST(XmlNode, EscapesNothingWhenItPrints) {
    EXPECT_EQ(printed(*ParsedText("<a x='\"&lt;'>&lt;%s&amp;\n</a>")), "<a x=\"\"<\"><%s&\n</a>\n");
}

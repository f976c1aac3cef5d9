#include "tests/infr_libs/XmlParser/XmlTestSupport.h"
#include "tests/support/ChildProcess.h"

#include <cstdint>
#include <gtest/gtest.h>

namespace {

constexpr const char* s_duplicate = "doc.xml:1: error: duplicate attribute 'x' in node 'a'\n";
constexpr const char* s_missing = "doc.xml:1: error: missing required attribute 'x' in node 'a'\n";

// The node <a> with the given attributes, and a handler that returns and remembers.
class Attributes {
public:
    explicit Attributes(const std::string& attributes)
        : m_stream("<a " + attributes + "/>"), m_parser("doc.xml", m_utils.get(), &m_stream) {}

    XmlNode* operator->() const { return m_parser.getRoot(); }
    const std::vector<std::string>& messages() const { return m_utils.handler.messages(); }

private:
    OwnedUtils<CollectingErrorHandler> m_utils;
    std::istringstream m_stream;
    XmlParser m_parser;
};

using Messages = std::vector<std::string>;

int intOf(const std::string& text) {
    int result = 77;
    EXPECT_TRUE(Attributes("x=\"" + text + "\"")->getIntAttribute("x", result, true));
    return result;
}

} // namespace

// Integers.

TEST(GetIntAttribute, TakesTheFirstOfTwoAndReportsTheOther) {
    const Attributes node("x='1' x='2' x='3'");
    int result = 77;
    EXPECT_TRUE(node->getIntAttribute("x", result, true));
    EXPECT_EQ(result, 1);
    EXPECT_EQ(node.messages(), Messages({s_duplicate, s_duplicate}));
}

TEST(GetIntAttribute, HasItsResultWhenTheDuplicateIsThrown) {
    const ParsedText node("<a x='1' x='2'/>");
    int result = 77;
    EXPECT_EQ(thrownBy([&] { node->getIntAttribute("x", result, true); }), s_duplicate);
    EXPECT_EQ(result, 1);
}

TEST(GetIntAttribute, IgnoresWhatFollowsTheNumber) {
    EXPECT_EQ(intOf("12abc"), 12);
    EXPECT_EQ(intOf("abc"), 0);
    EXPECT_EQ(intOf(""), 0);
}

TEST(GetIntAttribute, ReadsHexadecimalAndNoOctal) {
    EXPECT_EQ(intOf("0x10"), 16);
    EXPECT_EQ(intOf("-0x10"), -16);
    EXPECT_EQ(intOf("010"), 10);
}

TEST(GetIntAttribute, ANumberBeyond32BitsHasAllBitsSet) {
    EXPECT_EQ(intOf("4294967296"), -1);
    EXPECT_EQ(intOf("0x123456789"), -1);
}

TEST(GetIntAttribute, AMissingAttributeLeavesTheResult) {
    const Attributes node("y='1'");
    int result = 77;
    EXPECT_FALSE(node->getIntAttribute("x", result, false));
    EXPECT_EQ(node.messages(), Messages());
    EXPECT_FALSE(node->getIntAttribute("x", result, true));
    EXPECT_EQ(node.messages(), Messages({s_missing}));
    EXPECT_EQ(result, 77);
}

TEST(GetUIntAttribute, KeepsTheBitsOfANegativeNumber) {
    unsigned result = 77;
    EXPECT_TRUE(Attributes("x='-1'")->getUIntAttribute("x", result, true));
    EXPECT_EQ(result, 0xffffffffU);
}

TEST(GetUIntAttribute, AMissingAttributeLeavesTheResult) {
    const Attributes node("");
    unsigned result = 77;
    EXPECT_FALSE(node->getUIntAttribute("x", result, true));
    EXPECT_EQ(result, 77U);
    EXPECT_EQ(node.messages(), Messages({s_missing}));
}

TEST(GetUInt64Attribute, HasAnUpperHalfOfZeros) {
    unsigned long long result = 77;
    EXPECT_TRUE(Attributes("x='-1'")->getUInt64Attribute("x", result, true));
    EXPECT_EQ(result, 0xffffffffULL);
    EXPECT_TRUE(Attributes("x='0x123456789'")->getUInt64Attribute("x", result, true));
    EXPECT_EQ(result, 0xffffffffULL);
}

TEST(GetUInt64Attribute, AMissingAttributeLeavesTheResult) {
    unsigned long long result = 77;
    EXPECT_FALSE(Attributes("")->getUInt64Attribute("x", result, false));
    EXPECT_EQ(result, 77U);
}

// Texts.

TEST(GetStringAttribute, FreesTheStringOfAnEarlierCall) {
    const Attributes node("x='1' y='a text that is too long for a string to hold in itself'");
    std::string* result = nullptr; // the leak check sees a string that was left
    EXPECT_TRUE(node->getStringAttribute("y", &result, true));
    EXPECT_TRUE(node->getStringAttribute("x", &result, true));
    EXPECT_EQ(*result, "1");
    delete result;
}

TEST(GetStringAttribute, TakesTheFirstOfTwoAndReportsTheOther) {
    const Attributes node("x='1' x='2'");
    std::string* result = nullptr;
    EXPECT_TRUE(node->getStringAttribute("x", &result, false));
    EXPECT_EQ(*result, "1");
    EXPECT_EQ(node.messages(), Messages({s_duplicate}));
    delete result;
}

TEST(GetStringAttribute, AMissingAttributeLeavesTheResult) {
    const Attributes node("");
    std::string text = "default";
    std::string* result = &text;
    EXPECT_FALSE(node->getStringAttribute("x", &result, true));
    EXPECT_EQ(result, &text);
    EXPECT_EQ(node.messages(), Messages({s_missing}));
}

// Booleans.

TEST(GetBoolAttribute, KnowsFourWords) {
    for (const auto& [word, expected] : {std::pair("true", true), std::pair("TRUE", true),
                                         std::pair("false", false), std::pair("FALSE", false)}) {
        const Attributes node("x='" + std::string(word) + "'");
        bool result = !expected;
        EXPECT_TRUE(node->getBoolAttribute("x", result, true));
        EXPECT_EQ(result, expected) << word;
        EXPECT_EQ(node.messages(), Messages());
    }
}

TEST(GetBoolAttribute, ReportsAnyOtherWordLeavesTheResultAndCountsAsFound) {
    for (const char* word : {"True", "False", "1", "0", "yes", "", " true"}) {
        for (const bool before : {true, false}) {
            const Attributes node("x='" + std::string(word) + "'");
            bool result = before;
            EXPECT_TRUE(node->getBoolAttribute("x", result, true)) << word;
            EXPECT_EQ(result, before) << word;
            EXPECT_EQ(node.messages().size(), 1U) << word;
        }
    }
}

TEST(GetBoolAttribute, ReportsTheAddressOfTheNameTwice) {
    const Attributes node("x='True'");
    bool result = false;
    node->getBoolAttribute("x", result, true);
    std::ostringstream address;
    address << node->getAttribute(0)->getName();
    EXPECT_EQ(address.str().substr(0, 2), "0x");
    EXPECT_EQ(node.messages(), Messages({"doc.xml:1: error: non-boolean value '" + address.str() +
                                         "' for attribute '" + address.str() + "' in node 'a'\n"}));
}

TEST(GetBoolAttribute, TakesTheFirstOfTwoAndReportsTheOther) {
    const Attributes node("x='true' x='maybe'");
    bool result = false;
    EXPECT_TRUE(node->getBoolAttribute("x", result, true));
    EXPECT_TRUE(result);
    EXPECT_EQ(node.messages(), Messages({s_duplicate}));
}

TEST(GetBoolAttribute, AMissingAttributeLeavesTheResult) {
    const Attributes node("");
    bool result = true;
    EXPECT_FALSE(node->getBoolAttribute("x", result, true));
    EXPECT_TRUE(result);
    EXPECT_EQ(node.messages(), Messages({s_missing}));
}

// Real numbers.

TEST(GetDoubleAttribute, TakesTheFirstOfTwoAndSaysNothing) {
    const Attributes node("x='1' x='2'");
    double result = 77;
    EXPECT_TRUE(node->getDoubleAttribute("x", result, true));
    EXPECT_EQ(result, 1.0);
    EXPECT_EQ(node.messages(), Messages());
}

TEST(GetDoubleAttribute, IgnoresWhatFollowsTheNumber) {
    double result = 77;
    EXPECT_TRUE(Attributes("x=' -2.5e1MHz'")->getDoubleAttribute("x", result, true));
    EXPECT_EQ(result, -25.0);
}

TEST(GetDoubleAttribute, ATextWithoutANumberLeavesTheResult) {
    const Attributes node("x='fast' y=''");
    double result = 77;
    EXPECT_FALSE(node->getDoubleAttribute("x", result, true));
    EXPECT_FALSE(node->getDoubleAttribute("y", result, true));
    EXPECT_EQ(result, 77.0);
    EXPECT_EQ(node.messages(), Messages());
}

TEST(GetDoubleAttribute, AMissingAttributeIsNeverReported) {
    const Attributes node("");
    double result = 77;
    EXPECT_FALSE(node->getDoubleAttribute("x", result, true));
    EXPECT_EQ(result, 77.0);
    EXPECT_EQ(node.messages(), Messages());
}

// Lists.

TEST(CheckSubNodes, ReportsEachNameThatIsntListedAtItsOwnPlace) {
    OwnedUtils<CollectingErrorHandler> utils;
    std::istringstream stream("<a>\n<b/>\n<x/>\n<c/><y/></a>");
    const XmlParser parser("doc.xml", utils.get(), &stream);
    const char* list[] = {"b", "c", nullptr};
    parser.getRoot()->checkSubNodes(list);
    EXPECT_EQ(utils.handler.messages(),
              Messages({"doc.xml:3: error: unrecognised subnode 'x' in node 'a'\n",
                        "doc.xml:4: error: unrecognised subnode 'y' in node 'a'\n"}));
}

TEST(CheckAttributes, ReportsEachNameThatIsntListed) {
    const Attributes node("b='' x='' c='' y=''");
    const char* list[] = {"b", "c", nullptr};
    node->checkAttributes(list);
    EXPECT_EQ(node.messages(), Messages({"doc.xml:1: error: unrecognised attribute 'x' in node 'a'\n",
                                         "doc.xml:1: error: unrecognised attribute 'y' in node 'a'\n"}));
}

TEST(IsInList, ComparesExactly) {
    const char* const list[] = {"ab", "", nullptr};
    const char* const empty[] = {nullptr};
    for (const auto& [name, found] : {std::pair("ab", true), std::pair("", true), std::pair("AB", false),
                                      std::pair("a", false), std::pair("abc", false)}) {
        const std::string text = name;
        EXPECT_EQ(XmlNode::isInList(list, &text), found) << name;
        EXPECT_FALSE(XmlNode::isInList(empty, &text)) << name;
    }
}

// Every report as a row: on the node <a> of line 2, with the attribute x and the sub-node <b> of line 3.

namespace {

struct Report {
    void (*make)(const XmlNode& node);
    std::string message;
};

const std::string s_entry = "entry";
constexpr const char* s_list[] = {"known", nullptr};

const Report s_reports[] = {
    {[](const XmlNode& node) { node.unrecognisedSubNodeError(node.getNode(0)); },
     "doc.xml:3: error: unrecognised subnode 'b' in node 'a'\n"},
    {[](const XmlNode& node) { node.missingSubNodeError("n"); },
     "doc.xml:2: error: missing required subnode 'n' in node 'a'\n"},
    {[](const XmlNode& node) { node.duplicateSubNodeError(node.getNode(0)); },
     "doc.xml:2: error: duplicate subnode 'b' in node 'a'\n"},
    {[](const XmlNode& node) { node.duplicateAttributeError(node.getAttribute(0)); },
     "doc.xml:2: error: duplicate attribute 'x' in node 'a'\n"},
    {[](const XmlNode& node) { node.unrecognisedAttributeError(node.getAttribute(0), s_list); },
     "doc.xml:2: error: unrecognised attribute 'x' in node 'a'\n"},
    {[](const XmlNode& node) { node.missingDbEntryError("kind", &s_entry); },
     "doc.xml:2: error: 'entry' is not a valid 'kind'\n"},
    {[](const XmlNode& node) { node.invalidIntAttributeError("n", 5); },
     "doc.xml:2: error: invalid value for attribute 'n' in node 'a'\n"},
    {[](const XmlNode& node) { node.missingAttributeError("n"); },
     "doc.xml:2: error: missing required attribute 'n' in node 'a'\n"},
    {[](const XmlNode& node) { node.error("any text, 100%s"); }, "doc.xml:2: error: any text, 100%s\n"},
    {[](const XmlNode& node) { node.error("other.xml", 9, "any text"); }, "other.xml:9: error: any text\n"},
    {[](const XmlNode& node) { node.internalError("any text, 100%s"); }, "any text, 100%s\n"},
};

constexpr const char* s_document = "\n<a x='1'>\n<b/></a>";

class XmlNodeReport : public testing::TestWithParam<Report> {};

} // namespace

TEST_P(XmlNodeReport, IsThrown) {
    const ParsedText root(s_document);
    EXPECT_EQ(thrownBy([&] { GetParam().make(*root); }), GetParam().message);
}

TEST_P(XmlNodeReport, EndsTheProcessWithItsMessage) {
    const ChildResult result = runInChild([] {
        OwnedUtils<ErrorHandler> utils;
        std::istringstream stream(s_document);
        GetParam().make(*XmlParser("doc.xml", utils.get(), &stream).getRoot());
    });
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.error, GetParam().message);
    EXPECT_EQ(result.output, "");
}

INSTANTIATE_TEST_SUITE_P(Reports, XmlNodeReport, testing::ValuesIn(s_reports));

TEST(XmlNodeReport, ANonBooleanValueIsThrownAndEndsTheProcess) {
    const auto report = [](const XmlNode& node) { node.invalidBoolAttributeError(node.getAttribute(0)); };
    const ParsedText root(s_document);
    std::ostringstream address;
    address << root->getAttribute(0)->getName();
    const std::string message = "doc.xml:2: error: non-boolean value '" + address.str() +
                                "' for attribute '" + address.str() + "' in node 'a'\n";
    EXPECT_EQ(thrownBy([&] { report(*root); }), message);

    const ChildResult result = runInChild([&] {
        OwnedUtils<ErrorHandler> utils;
        std::istringstream stream(s_document);
        report(*XmlParser("doc.xml", utils.get(), &stream).getRoot());
    });
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_THAT(result.error, testing::MatchesRegex("doc.xml:2: error: non-boolean value '0x[0-9a-f]+' for "
                                                    "attribute '0x[0-9a-f]+' in node 'a'\n"));
}

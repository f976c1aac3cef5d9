// Every message of the parser as a row, for each handler: one that throws, one that ends the process, and one
// that returns.

#include "tests/infr_libs/XmlParser/XmlTestSupport.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace {

struct Fault {
    std::string text;
    std::string message;

    friend std::ostream& operator<<(std::ostream& stream, const Fault& fault) { return stream << fault.text; }
};

const Fault s_faults[] = {
    {"", "doc.xml: error: no '<' before the end of file\n"},
    {"text", "doc.xml: error: no '<' before the end of file\n"},
    {"<!-- c -->\n<!-- d -->\n", "doc.xml: error: no '<' before the end of file\n"},
    {"<!-- c", "doc.xml: error: no '<' before the end of file\n"},
    {"<!-- c --\n><a/>", "doc.xml: error: no '<' before the end of file\n"},
    {"<?xml ?\n><a/>", "doc.xml: error: no '<' before the end of file\n"},
    {"<!DOCTYPE a><a/>", "doc.xml: error: no '<' before the end of file\n"},
    {"<a>\n\n<![CDATA[x]]></a>", "doc.xml: error: no '<' before the end of file\n"},
    {"<a>text", "doc.xml: error: no '<' before the end of file\n"},
    {"<a><b/>text\n\n", "doc.xml: error: no '<' before the end of file\n"},
    {"<\xc3\xa9/>", "doc.xml: error: non ASCII character in file\n"},
    {"<a\x80/>", "doc.xml: error: non ASCII character in file\n"},
    {"<a>\n<b\xff></a>", "doc.xml: error: non ASCII character in file\n"},
    {"</a>", "doc.xml:1: error: end tag with no start tag\n"},
    {"\n<!-- c --></\na>", "doc.xml:3: error: end tag with no start tag\n"},
    {"<a/ >", "doc.xml:1: error: missing closing '>'\n"},
    {"<a/b>", "doc.xml:1: error: missing closing '>'\n"},
    {"<a/\n/>", "doc.xml:2: error: missing closing '>'\n"},
    {"<a/", "doc.xml:1: error: missing closing '>'\n"},
    {"<a b='1'", "doc.xml:1: error: missing closing '>'\n"},
    {"<a><b c='1' \n\n", "doc.xml:2: error: missing closing '>'\n"},
    {"<a", "doc.xml:1: error: invalid node name 'a'\n"},
    {"<", "doc.xml:1: error: invalid node name ''\n"},
    {"<a \n ", "doc.xml:2: error: invalid node name 'a \n '\n"},
    {"<a b>", "doc.xml:1: error: no '=' after attribute name 'b>'\n"},
    {"<a b/>", "doc.xml:1: error: no '=' after attribute name 'b/>'\n"},
    {"<a b = \"1\"/>", "doc.xml:1: error: no '=' after attribute name 'b'\n"},
    {"<a\n\nb='1' c\n='2'/>", "doc.xml:4: error: no '=' after attribute name 'c'\n"},
    {"<a b= \"1\"/>", "doc.xml:1: error: expected ' or \" at start of attribute value\n"},
    {"<a b=1/>", "doc.xml:1: error: expected ' or \" at start of attribute value\n"},
    {"<a b=", "doc.xml:1: error: expected ' or \" at start of attribute value\n"},
    {"<a b=&lt;1/>", "doc.xml:1: error: expected ' or \" at start of attribute value\n"},
    {"<a b=\"x>y\"/>", "doc.xml:1: error: attribute value must be terminated with \"\n"},
    {"<a b='x>y'/>", "doc.xml:1: error: attribute value must be terminated with '\n"},
    {"<a b='x\"/>", "doc.xml:1: error: attribute value must be terminated with '\n"},
    {R"(<a b="x\"/>)", "doc.xml:1: error: attribute value must be terminated with \"\n"},
    {"<a></b>", "doc.xml:1: error: unexpected closing tag 'b'\n"},
    {"<a></a >", "doc.xml:1: error: unexpected closing tag 'a '\n"},
    {"<a></ a>", "doc.xml:1: error: unexpected closing tag ' a'\n"},
    {"<a></A>", "doc.xml:1: error: unexpected closing tag 'A'\n"},
    {"<a>\n<b>\n</a>", "doc.xml:3: error: unexpected closing tag 'a'\n"},
    {"<a></a", "doc.xml:1: error: unexpected closing tag ''\n"},
    {"<a></a\n\n\n", "doc.xml:3: error: unexpected closing tag 'a\n'\n"},
    {"<a></>", "doc.xml:1: error: unexpected closing tag ''\n"},
    {"<a></", "doc.xml:1: error: unexpected closing tag ''\n"},
    {"<a></%s%n>", "doc.xml:1: error: unexpected closing tag '%s%n'\n"},
};

class XmlParserFault : public testing::TestWithParam<Fault> {};

} // namespace

TEST_P(XmlParserFault, IsThrownAndNotPrinted) {
    EXPECT_EQ(thrownBy([] { ParsedText{GetParam().text}; }), GetParam().message);
}

TEST_P(XmlParserFault, EndsTheProcessWithItsMessage) {
    const ChildResult result = runInChild([] {
        OwnedUtils<ErrorHandler> utils;
        std::istringstream stream(GetParam().text);
        XmlParser("doc.xml", utils.get(), &stream);
    });
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.error, GetParam().message);
    EXPECT_EQ(result.output, "");
}

TEST_P(XmlParserFault, IsReportedFirstWhereTheHandlerReturnsAndTheParserEnds) {
    OwnedUtils<CollectingErrorHandler> utils;
    std::istringstream stream(GetParam().text);
    XmlParser("doc.xml", utils.get(), &stream);
    ASSERT_FALSE(utils.handler.messages().empty());
    EXPECT_EQ(utils.handler.messages().front(), GetParam().message);
}

INSTANTIATE_TEST_SUITE_P(Messages, XmlParserFault, testing::ValuesIn(s_faults));

TEST(XmlParserFault, AMissingFileIsThrown) {
    OwnedUtils<> utils;
    EXPECT_EQ(thrownBy([&] { XmlParser("none/doc.xml", utils.get(), true); }),
              "none/doc.xml: error: no such file or directory\n");
}

TEST(XmlParserFault, AMissingFileEndsTheProcess) {
    const ChildResult result = runInChild([] {
        OwnedUtils<ErrorHandler> utils;
        XmlParser("none/doc.xml", utils.get(), true);
    });
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.error, "none/doc.xml: error: no such file or directory\n");
}

// With a handler that returns, the parser goes on with what it has: the document, what is reported, and what
// the tree then prints.

namespace {

struct Continuation {
    std::string text;
    std::vector<std::string> messages; // behind "doc.xml"
    std::string tree;                  // empty: no root

    friend std::ostream& operator<<(std::ostream& stream, const Continuation& continuation) {
        return stream << continuation.text;
    }
};

const Continuation s_continuations[] = {
    {"", {": error: no '<' before the end of file\n"}, ""},
    {"<a>text\n", {": error: no '<' before the end of file\n"}, "<a>text</a>\n"},
    {"<a><b>text", {": error: no '<' before the end of file\n"}, "<a>\n<b>text</b>\n</a>\n"},
    {"<a><b/><!-- ", {": error: no '<' before the end of file\n"}, "<a>\n<b/>\n</a>\n"},
    {"</a>", {":1: error: end tag with no start tag\n", ":1: error: missing closing '>'\n"}, "</>\n"},
    {"<a/ >", {":1: error: missing closing '>'\n"}, "<a/>\n"},
    {"<a><b></c><d/></a>", {":1: error: unexpected closing tag 'c'\n"}, "<a>\n<b/>\n<d/>\n</a>\n"},
    {"<a", {":1: error: invalid node name 'a'\n", ":1: error: missing closing '>'\n"}, "<a/>\n"},
    {"<a b=\"x>y\"/></a>",
     {":1: error: attribute value must be terminated with \"\n", ":1: error: missing closing '>'\n"},
     "<a b=\"x>\">y\"/></a>\n"},
    {"<a b>",
     {":1: error: no '=' after attribute name 'b>'\n",
      ":1: error: expected ' or \" at start of attribute value\n", ":1: error: missing closing '>'\n"},
     "<a b>=\"\"/>\n"},
    {"<a b c='1'/>",
     {":1: error: no '=' after attribute name 'b'\n",
      ":1: error: expected ' or \" at start of attribute value\n",
      ":1: error: attribute value must be terminated with c\n", ":1: error: missing closing '>'\n"},
     "<a b=\"='1'/>\"/>\n"},
    {"<a\xc3='1'/>", {": error: non ASCII character in file\n"}, "<a \xc3=\"1\"/>\n"},
};

class XmlParserContinuation : public testing::TestWithParam<Continuation> {};

} // namespace

TEST_P(XmlParserContinuation, KeepsWhatWasRead) {
    OwnedUtils<CollectingErrorHandler> utils;
    std::istringstream stream(GetParam().text);
    const XmlParser parser("doc.xml", utils.get(), &stream);
    std::vector<std::string> messages;
    for (const std::string& message : GetParam().messages)
        messages.push_back("doc.xml" + message);
    EXPECT_EQ(utils.handler.messages(), messages);
    EXPECT_EQ(parser.getRoot() ? printed(*parser.getRoot()) : "", GetParam().tree);
}

INSTANTIATE_TEST_SUITE_P(Documents, XmlParserContinuation, testing::ValuesIn(s_continuations));

#include "infr_libs/XmlParser/XmlParser.h"

#include "tests/infr_libs/XmlParser/XmlTestSupport.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryFolder.h"

#include <csignal>
#include <gtest/gtest.h>
#include <stdexcept>

namespace {

std::string valueOf(const std::string& text) {
    return *ParsedText(text)->getValue();
}

std::string attributeOf(const std::string& text) {
    const ParsedText document(text);
    return document->numAttributes() > 0 ? *document->getAttribute(0)->getValue() : "no attribute";
}

} // namespace

TEST(XmlParser, ReadsElementsAttributesAndText) {
    const ParsedText root("<?xml version=\"1.0\"?>\n<a x='1' y=\"2\">\n <b>text</b><!-- c --><c/>\n</a>");
    EXPECT_EQ(*root->getName(), "a");
    EXPECT_STREQ(root->getFileName(), "doc.xml");
    ASSERT_EQ(root->numAttributes(), 2U);
    EXPECT_EQ(*root->getAttribute(0)->getName(), "x");
    EXPECT_EQ(*root->getAttribute(0)->getValue(), "1");
    EXPECT_STREQ(root->findAttribute("y")->getValueSz(), "2");
    ASSERT_EQ(root->numNodes(), 2U);
    EXPECT_EQ(*root->getNode(0)->getValue(), "text");
    EXPECT_EQ(*root->getNode(1)->getName(), "c");
}

TEST(XmlParser, GivesTheRecordOfHelpersBackAndToEachNode) {
    OwnedUtils<> utils;
    std::istringstream stream("<a><b/></a>");
    const XmlParser parser("doc.xml", utils.get(), &stream);
    EXPECT_EQ(parser.getZelmUtils(), utils.get());
    EXPECT_EQ(parser.getRoot()->getZelmUtils(), utils.get());
    EXPECT_EQ(parser.getRoot()->getNode(0)->getZelmUtils(), utils.get());
}

// What the parser looks at, and what it skips.

TEST(XmlParser, SkipsWhatStandsAheadOfTheRoot) {
    EXPECT_EQ(*ParsedText("any text & more\n<a/>")->getName(), "a");
}

TEST(XmlParser, NeverLooksAtWhatFollowsTheRoot) {
    EXPECT_EQ(printed(*ParsedText("<a></a></b><c x></a>\xff<")), "<a/>\n");
    EXPECT_EQ(printed(*ParsedText("<a/>text <!-- ")), "<a/>\n");
}

TEST(XmlParser, LosesTextBetweenTwoTagsBehindAComment) {
    EXPECT_EQ(printed(*ParsedText("<a><!-- c -->text</a>")), "<a/>\n");
    EXPECT_EQ(printed(*ParsedText("<a><?p q?>text<b/></a>")), "<a>\n<b/>\n</a>\n");
}

TEST(XmlParser, SkipsCommentsOverSeveralLines) {
    EXPECT_EQ(printed(*ParsedText("<!-- <x>\n\n <y> -->\n<a>\n<!-- \n\n --><b/></a>")), "<a>\n<b/>\n</a>\n");
}

TEST(XmlParser, TheMarkOfAConstructsEndMayOverlapItsStart) {
    EXPECT_EQ(printed(*ParsedText("<!--><a/>")), "<a/>\n");
    EXPECT_EQ(printed(*ParsedText("<?><a/>")), "<a/>\n");
}

TEST(XmlParser, ADocumentTypeSwallowsTheInputUpToTheNextCommentsEnd) {
    EXPECT_EQ(printed(*ParsedText("<!DOCTYPE a>\n<b/>\n<!-- c -->\n<a/>")), "<a/>\n");
}

TEST(XmlParser, ATagWithItsStartAtTheLinesEndIsNoComment) {
    EXPECT_EQ(thrownBy([] { ParsedText("<\n!-- c --><a/>"); }),
              "doc.xml:2: error: no '=' after attribute name '!--'\n");
}

// Elements and their names.

TEST(XmlParser, AnElementWithoutContentsHasAnEmptyValue) {
    for (const char* text : {"<a></a>", "<a/>", "<a />", "<a>\n \t\n</a>"}) {
        const ParsedText root(text);
        EXPECT_EQ(*root->getName(), "a") << text;
        EXPECT_EQ(*root->getValue(), "") << text;
        EXPECT_EQ(root->numNodes(), 0U) << text;
    }
}

TEST(XmlParser, AcceptsTheEmptyName) {
    EXPECT_EQ(*ParsedText("<></>")->getName(), "");
}

TEST(XmlParser, ColonsHaveNoMeaningInNames) {
    const ParsedText root("<n:a xsi:noNamespaceSchemaLocation='x'/>");
    EXPECT_EQ(*root->getName(), "n:a");
    EXPECT_NE(root->findAttribute("xsi:noNamespaceSchemaLocation"), nullptr);
}

TEST(XmlParser, ARawOpeningBracketMayStandInATag) {
    EXPECT_EQ(attributeOf("<a b=\"x<y\"/>"), "x<y");
    EXPECT_EQ(*ParsedText("<a<b/>")->getName(), "a<b");
}

TEST(XmlParser, AcceptsElementsThatAreNeverClosed) {
    const ParsedText root("<a><b>");
    ASSERT_EQ(root->numNodes(), 1U);
    EXPECT_EQ(*root->getNode(0)->getName(), "b");
    EXPECT_EQ(root->getNode(0)->numNodes(), 0U);
    EXPECT_EQ(printed(*ParsedText("<a><b>x<c/> \n\n ")), "<a>\n<b>x\n<c/>\n</b>\n</a>\n");
}

TEST(XmlParser, AnEndTagCutOffByTheEndOfTheInputLosesItsLastCharacter) {
    EXPECT_EQ(printed(*ParsedText("<a></a\n\n")), "<a/>\n") << "the line end between the two lines";
    EXPECT_EQ(printed(*ParsedText("<a></ab")), "<a/>\n");
}

TEST(XmlParser, GivesTheLineOfTheTagsEnd) {
    const ParsedText root("\n<a\n b='1'\n c='2'>\n<b/><c\n/></a>");
    EXPECT_EQ(root->getLineNum(), 4U);
    EXPECT_EQ(root->getNode(0)->getLineNum(), 5U);
    EXPECT_EQ(root->getNode(1)->getLineNum(), 6U);
}

// Attributes.

TEST(XmlParser, AttributesMayFollowOneAnotherWithoutABlank) {
    const ParsedText root("<a b=\"1\"c='2'/>");
    ASSERT_EQ(root->numAttributes(), 2U);
    EXPECT_EQ(*root->findAttribute("b")->getValue(), "1");
    EXPECT_EQ(*root->findAttribute("c")->getValue(), "2");
}

TEST(XmlParser, KeepsAttributesThatRepeat) {
    EXPECT_EQ(printed(*ParsedText("<a b='1' b='2'/>")), "<a b=\"1\" b=\"2\"/>\n");
}

TEST(XmlParser, ABackslashProtectsAQuoteAndStays) {
    EXPECT_EQ(attributeOf(R"(<a b="c\"d"/>)"), R"(c\"d)");
    EXPECT_EQ(attributeOf(R"(<a b="c\\"/>)"), R"(c\\)");
    EXPECT_EQ(attributeOf(R"(<a b='c\'d'/>)"), R"(c\'d)");
}

TEST(XmlParser, AValueKeepsTheOtherQuoteAndItsLineEnds) {
    EXPECT_EQ(attributeOf("<a b=\"it's\"/>"), "it's");
    EXPECT_EQ(attributeOf("<a b=' x\r\n\ny '/>"), " x\r\n\ny ");
}

TEST(XmlParser, ABackslashAtTheEndOfATagsTextFailsAnAssertion) {
    for (const std::string& text :
         {std::string("<a b=\"x\\"), std::string("<a b=\"x\\\n"), std::string("<a b=\"x\\\0\"/>", 12)}) {
        const ChildResult result = runInChild([&] { ParsedText{text}; });
        EXPECT_EQ(result.signal, SIGABRT);
        EXPECT_NE(result.error.find("Assertion `*s != '\\0'' failed."), std::string::npos) << result.error;
    }
}

// Text values.

TEST(XmlParser, ATextLosesLeadingWhiteSpaceAndKeepsTrailing) {
    EXPECT_EQ(valueOf("<a>  x\n</a>"), "x\n");
    EXPECT_EQ(valueOf("<a>\n\n\t x \n y \n\n</a>"), "x \n y \n\n");
    EXPECT_EQ(valueOf("<a>\r\nx\r\n</a>"), "x\r\n");
}

TEST(XmlParser, ALaterTextReplacesAnEarlierOne) {
    EXPECT_EQ(valueOf("<a>x<b/>y</a>"), "y");
    EXPECT_EQ(valueOf("<a>x<b/>\n</a>"), "x");
}

TEST(XmlParser, WhatIsSkippedInATextLeavesItsEndMark) {
    EXPECT_EQ(valueOf("<a>x<!-- y -->z</a>"), "x-->z");
    EXPECT_EQ(valueOf("<a>x<? y ?>z</a>"), "x?>z");
    EXPECT_EQ(valueOf("<a>x<!-- y\n -->\nz<!-- -->\n</a>"), "x-->\nz-->\n");
}

TEST(XmlParser, ATextThatEndsInsideACommentRaisesOutOfRangeWhateverTheHandler) {
    for (const char* text : {"<a>x<!-- y", "<a>x<? y\n\n"}) {
        try {
            ParsedText{text};
            FAIL() << text;
        } catch (const std::out_of_range& failure) {
            EXPECT_STREQ(failure.what(), "basic_string::substr");
        }
        OwnedUtils<CollectingErrorHandler> utils;
        std::istringstream stream(text);
        EXPECT_THROW(XmlParser("doc.xml", utils.get(), &stream), std::out_of_range);
    }
}

// Entities.

TEST(XmlParser, ReplacesEntitiesInValuesAndInText) {
    const ParsedText root("<a b='&lt;&gt;&amp;'>&lt;&gt;&amp;</a>");
    EXPECT_STREQ(root->findAttribute("b")->getValueSz(), "<>&");
    EXPECT_EQ(*root->getValue(), "<>&");
}

TEST(XmlParser, ReplacesTheAmpersandLastAndOverAgain) {
    EXPECT_EQ(valueOf("<a>&amp;amp;</a>"), "&");
    EXPECT_EQ(valueOf("<a>&amp;amp;amp;amp</a>"), "&amp");
    EXPECT_EQ(valueOf("<a>&amp;lt;&amp;gt;</a>"), "&lt;&gt;");
    EXPECT_EQ(valueOf("<a>&&lt;amp;</a>"), "&<amp;");
    EXPECT_EQ(valueOf("<a>&am&amp;p;&amp;&amp;</a>"), "&am&p;&&");
}

TEST(XmlParser, KnowsNoOtherEntity) {
    EXPECT_EQ(valueOf("<a>&quot;&apos;&#65;&LT;&lt &</a>"), "&quot;&apos;&#65;&LT;&lt &");
}

TEST(XmlParser, ReplacesEntitiesBeforeATagIsCutApart) {
    const ParsedText root("<a&gt;b='1'>x</a>");
    EXPECT_EQ(*root->getName(), "a");
    EXPECT_EQ(root->numAttributes(), 0U) << "the replaced bracket ends the attributes";
    EXPECT_EQ(*root->getValue(), "x");
    EXPECT_EQ(*ParsedText("<a&lt;></a<>")->getName(), "a<");
}

TEST(XmlParser, LeavesEntitiesAloneWhereItIsAskedTo) {
    const TemporaryFolder folder;
    const std::string file = folder.write("doc.xml", "<a b='&lt;'>&amp;</a>");
    OwnedUtils<> utils;
    EXPECT_EQ(printed(*XmlParser(file.c_str(), utils.get(), false).getRoot()), "<a b=\"&lt;\">&amp;</a>\n");
    EXPECT_EQ(printed(*XmlParser(file.c_str(), utils.get(), true).getRoot()), "<a b=\"<\">&</a>\n");
    std::istringstream stream("<a b='&lt;'>&amp;</a>");
    EXPECT_EQ(printed(*XmlParser("doc.xml", utils.get(), &stream, false).getRoot()),
              "<a b=\"&lt;\">&amp;</a>\n");
}

// Bytes.

TEST(XmlParser, BytesStayBytesButForNodeNames) {
    const ParsedText root("<a \xc3\xa9=\"\xff\">\xc3\xa9</a>");
    EXPECT_EQ(*root->getAttribute(0)->getName(), "\xc3\xa9");
    EXPECT_EQ(*root->getAttribute(0)->getValue(), "\xff");
    EXPECT_EQ(*root->getValue(), "\xc3\xa9");
}

TEST(XmlParser, AZeroByteEndsATagButNotAText) {
    EXPECT_EQ(valueOf(std::string("<a>x\0y</a>", 10)), std::string("x\0y", 3));
    const auto parse = [](const std::string& text) { return thrownBy([&] { ParsedText{text}; }); };
    EXPECT_EQ(parse(std::string("<a\0b/>", 6)), "doc.xml:1: error: invalid node name 'a'\n");
    EXPECT_EQ(parse(std::string("<a></a\0>", 8)), "doc.xml:1: error: unexpected closing tag ''\n");
    EXPECT_EQ(parse(std::string("<a b='\0'/>", 10)),
              "doc.xml:1: error: attribute value must be terminated with '\n");
}

// Files and streams.

TEST(XmlParser, AFileWithoutALineEndAtItsEndIsReadWhole) {
    const TemporaryFolder folder;
    OwnedUtils<> utils;
    const XmlParser parser(folder.write("doc.xml", "<a>\n<b/></a>").c_str(), utils.get(), true);
    EXPECT_EQ(printed(*parser.getRoot()), "<a>\n<b/>\n</a>\n");
}

TEST(XmlParser, AFileThatCantBeOpenedLeavesAParserWithoutARoot) {
    OwnedUtils<CollectingErrorHandler> utils;
    const XmlParser parser("none/doc.xml", utils.get(), true);
    EXPECT_EQ(parser.getRoot(), nullptr);
    EXPECT_EQ(utils.handler.messages(),
              std::vector<std::string>{"none/doc.xml: error: no such file or directory\n"});
    EXPECT_EQ(written([&](FILE* file) { parser.print(file, true); }),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n");
}

TEST(XmlParser, AFolderIsAnEmptyDocument) {
    const TemporaryFolder folder;
    OwnedUtils<> utils;
    EXPECT_EQ(thrownBy([&] { XmlParser(folder.path().c_str(), utils.get(), true); }),
              folder.path().string() + ": error: no '<' before the end of file\n");
}

TEST(XmlParser, TheStreamMayGoBeforeTheParser) {
    OwnedUtils<> utils;
    auto stream = std::make_unique<std::istringstream>("<a>x</a>");
    const XmlParser parser("doc.xml", utils.get(), stream.get());
    stream.reset();
    EXPECT_EQ(*parser.getRoot()->getValue(), "x");
}

TEST(XmlParser, ANullFileNameFailsAnAssertion) {
    const ChildResult fromFile = runInChild([] { XmlParser(nullptr, OwnedUtils<>().get(), true); });
    EXPECT_EQ(fromFile.signal, SIGABRT);
    EXPECT_NE(fromFile.error.find("Assertion `fileName != __null' failed."), std::string::npos);
    const ChildResult fromStream = runInChild([] {
        std::istringstream stream("<a/>");
        XmlParser(nullptr, OwnedUtils<>().get(), &stream);
    });
    EXPECT_EQ(fromStream.signal, SIGABRT);
    EXPECT_NE(fromStream.error.find("Assertion `fileName != __null' failed."), std::string::npos);
}

// Output.

TEST(XmlParser, PrintsADeclarationAndTheTree) {
    const ParsedText document("<a><b/></a>");
    EXPECT_EQ(written([&](FILE* file) { document.parser().print(file, true); }),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<a>\n  <b/>\n</a>\n");
    EXPECT_EQ(written([&](FILE* file) { document.parser().print(file, false); }),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<a>\n<b/>\n</a>\n");
}

TEST(XmlParser, DisplayTabsEndsTheLine) {
    const ChildResult result = runInChild([] { ParsedText("<a><b/></a>").parser().displayTabs(); });
    EXPECT_EQ(result.output, "\n");
}

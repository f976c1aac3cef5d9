// Names, values, lines and nesting of any size.

#include "tests/infr_libs/XmlParser/XmlTestSupport.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/XmlText.h"

#include <gtest/gtest.h>
#include <iostream>
#include <sys/resource.h>

namespace {

constexpr std::size_t s_numLevels = 1'000'000;

// Runs the body in a child with a stack of 8 MB, whatever this process has.
ChildResult runWithSmallStack(const std::function<void()>& body) {
    return runInChild([&] {
        const rlimit limit{8U << 20, 8U << 20};
        setrlimit(RLIMIT_STACK, &limit);
        body();
    });
}

} // namespace

TEST(XmlScale, ATreeOfAMillionLevelsIsParsedCopiedPrintedAndDeleted) {
    const ChildResult result = runWithSmallStack([] {
        const ParsedText root(nestedText(s_numLevels));
        const std::string text = printed(XmlNode(*root));
        std::cout << text.size() << text.substr(0, 8) << std::flush;
    });
    EXPECT_EQ(result.exitStatus, 0) << result.signal << result.error;
    // A start tag, an end tag and their line ends at each level, but the last, which is "<a/>\n".
    EXPECT_EQ(result.output, std::to_string((s_numLevels - 1) * 9 + 5) + "<a>\n<a>\n");
}

TEST(XmlScale, AMillionLevelsThatAreNeverClosedAreAccepted) {
    const ChildResult result = runWithSmallStack([] {
        const ParsedText root(repeated("<a>", s_numLevels));
        std::size_t depth = 1;
        for (const XmlNode* node = &*root; node->numNodes() > 0; node = node->getNode(0))
            ++depth;
        std::cout << depth << std::flush;
    });
    EXPECT_EQ(result.exitStatus, 0) << result.signal << result.error;
    EXPECT_EQ(result.output, std::to_string(s_numLevels));
}

TEST(XmlScale, AFaultBelowAMillionLevelsIsThrown) {
    const ChildResult result = runWithSmallStack([] {
        std::cout << thrownBy([] { ParsedText{repeated("<a>", s_numLevels) + "</b>"}; }) << std::flush;
    });
    EXPECT_EQ(result.output, "doc.xml:1: error: unexpected closing tag 'b'\n");
}

TEST(XmlScale, NamesAndValuesHaveAnyLength) {
    for (const std::size_t length : {2047U, 2048U, 100'000U}) {
        const std::string name(length, 'n');
        const std::string value(length, 'v');
        const ParsedText root("<" + name + " " + name + "='" + value + "'>" + value + "</" + name + ">");
        EXPECT_EQ(*root->getName(), name);
        EXPECT_EQ(*root->getAttribute(0)->getName(), name);
        EXPECT_EQ(*root->getAttribute(0)->getValue(), value);
        EXPECT_EQ(*root->getValue(), value);
    }
}

// Each of these would take minutes if its time grew with the square of the size.

TEST(XmlScale, AHundredThousandAttributes) {
    const ParsedText root("<a" + repeated(" b='1'", 100'000) + "/>");
    EXPECT_EQ(root->numAttributes(), 100'000U);
}

TEST(XmlScale, AHundredThousandSiblingsOnOneLine) {
    EXPECT_EQ(ParsedText("<a>" + repeated("<b/>", 100'000) + "</a>")->numNodes(), 100'000U);
}

TEST(XmlScale, ATextOfAHundredThousandLines) {
    EXPECT_EQ(*ParsedText("<a>x\n" + repeated("line\n", 100'000) + "</a>")->getValue(),
              "x\n" + repeated("line\n", 100'000));
}

TEST(XmlScale, ATextWithAHundredThousandComments) {
    EXPECT_EQ(*ParsedText("<a>x" + repeated("<!-- -->", 100'000) + "</a>")->getValue(),
              "x" + repeated("-->", 100'000));
}

TEST(XmlScale, AHundredThousandEntities) {
    EXPECT_EQ(*ParsedText("<a>" + repeated("&lt;&amp;", 100'000) + "</a>")->getValue(),
              repeated("<&", 100'000));
    EXPECT_EQ(*ParsedText("<a>&" + repeated("amp;", 100'000) + "</a>")->getValue(), "&");
}

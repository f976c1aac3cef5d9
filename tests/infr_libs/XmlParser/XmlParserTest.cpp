#include "infr_libs/XmlParser/XmlParser.h"

#include "infr_libs/ErrorHandler/CatchableErrorHandler.h"
#include "infr_libs/ErrorHandler/ZelmUtils.h"
#include "infr_libs/StringLibrary/StringLibrary.h"

#include <gtest/gtest.h>
#include <sstream>

TEST(XmlParser, ReadsElementsAttributesAndText) {
    CatchableErrorHandler handler;
    StringLibrary strings(&handler);
    ZelmUtils utils{&handler, &strings};
    std::istringstream stream(
        "<?xml version=\"1.0\"?>\n<a x='1' y=\"&lt;\">\n <b>text</b><!-- c --><c/>\n</a>");
    XmlParser parser("name", &utils, &stream);
    const XmlNode& root = *parser.getRoot();
    EXPECT_EQ(*root.getName(), "a");
    EXPECT_EQ(root.getLineNum(), 2U);
    ASSERT_EQ(root.numAttributes(), 2U);
    EXPECT_STREQ(root.findAttribute("y")->getValueSz(), "<");
    ASSERT_EQ(root.numNodes(), 2U);
    EXPECT_EQ(*root.getNode(0)->getValue(), "text");
    EXPECT_EQ(*root.getNode(1)->getName(), "c");
}

TEST(XmlParser, DeletesTreesOfSeveralLevels) {
    CatchableErrorHandler handler;
    StringLibrary strings(&handler);
    ZelmUtils utils{&handler, &strings};
    std::istringstream stream("<a><b><c><d/></c><e/></b><f/></a>");
    const XmlParser parser("name", &utils, &stream);
    const XmlNode copy(*parser.getRoot());
    EXPECT_EQ(*copy.getNode(0)->getNode(1)->getName(), "e");
}

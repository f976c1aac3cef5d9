// Random trees, printed and parsed again, are the same trees, as long as names and values stay within what
// the parser keeps.

#include "tests/infr_libs/XmlParser/XmlTestSupport.h"

#include <gtest/gtest.h>
#include <random>

namespace {

class RandomTree {
public:
    explicit RandomTree(unsigned seed) : m_random(seed) {}

    std::unique_ptr<XmlNode> make(ZelmUtils* utils, int depth = 0) {
        auto node = std::make_unique<XmlNode>(nodeName().c_str(), "doc.xml", 1U, utils);
        for (unsigned i = below(5); i > 0; --i)
            node->addAttribute(new XmlAttribute(attributeName().c_str(), attributeValue().c_str()));
        const unsigned numNodes = depth < 6 ? below(5) : 0;
        for (unsigned i = numNodes; i > 0; --i)
            node->addNode(make(utils, depth + 1).release());
        // Print puts a line end between a value and a sub-node, which the parser would keep with the value.
        if (numNodes == 0 && below(2) == 0) {
            const std::string value = textValue();
            node->setValue(&value);
        }
        return node;
    }

private:
    unsigned below(unsigned limit) { return static_cast<unsigned>(m_random() % limit); }

    // Up to that many pieces, put together anew while they hold an entity, which the parser would replace.
    std::string text(const std::vector<std::string>& pieces, unsigned limit) {
        std::string result;
        do {
            result.clear();
            for (unsigned i = below(limit + 1); i > 0; --i)
                result += pieces[below(static_cast<unsigned>(pieces.size()))];
        } while (result.find("&lt;") != std::string::npos || result.find("&gt;") != std::string::npos ||
                 result.find("&amp;") != std::string::npos);
        return result;
    }

    // 7-bit, without white space, / and >; the marks of skipped constructs can't come first (! and ?).
    std::string nodeName() {
        const std::string name =
            text({"a", "Z", "0", "-", ".", ":", "=", "'", "\"", "\\", "<", "&", "lt", ";"}, 8);
        return name.empty() ? "n" : name; // an empty one prints </>, which is an end tag
    }

    // Any byte but white space, = and >; no / comes first.
    std::string attributeName() {
        return "n" +
               text({"a", "Z", "-", ":", "'", "\"", "\\", "<", "/", "!", "&", "amp", ";", "\xc3\xa9"}, 8);
    }

    // Any byte but > and an unprotected quote; a backslash has its character behind it.
    std::string attributeValue() {
        return text({"a", " ", "\n", "\r", "\t", "'", "\\\"", "\\\\", "\\n", "<", "</n", "/", "=", "&", "gt",
                     ";", "\xff"},
                    20);
    }

    // Begins with something that isn't white space; holds no <.
    std::string textValue() {
        return "x" + text({"a", " ", "\n", "\n\n", "\r", "\t", "\"", "'", "\\", ">", "/>", "-->", "]]", "&",
                           "lt", ";", "\xff", std::string(1, '\0')},
                          20);
    }

    std::mt19937 m_random;
};

void expectSame(const XmlNode& left, const XmlNode& right) {
    EXPECT_EQ(*left.getName(), *right.getName());
    EXPECT_EQ(*left.getValue(), *right.getValue());
    ASSERT_EQ(left.numAttributes(), right.numAttributes());
    for (unsigned i = 0; i < left.numAttributes(); ++i) {
        EXPECT_EQ(*left.getAttribute(i)->getName(), *right.getAttribute(i)->getName());
        EXPECT_EQ(*left.getAttribute(i)->getValue(), *right.getAttribute(i)->getValue());
    }
    ASSERT_EQ(left.numNodes(), right.numNodes());
    for (unsigned i = 0; i < left.numNodes(); ++i)
        expectSame(*left.getNode(i), *right.getNode(i));
}

} // namespace

TEST(XmlRoundTrip, ARandomTreeIsParsedAsItWasPrinted) {
    OwnedUtils<> utils;
    for (unsigned seed = 0; seed < 300 && !testing::Test::HasFailure(); ++seed) {
        const std::unique_ptr<XmlNode> tree = RandomTree(seed).make(utils.get());
        for (const bool indent : {false, true}) {
            const std::string text = printed(*tree, 0, indent);
            SCOPED_TRACE("seed " + std::to_string(seed) + ":\n" + text);
            expectSame(*ParsedText(text), *tree);
        }
    }
}

TEST(XmlRoundTrip, AValueAheadOfSubNodesGainsItsLineEnd) {
    const ParsedText once("<a>x<b/></a>");
    const ParsedText twice(printed(*once));
    EXPECT_EQ(*once->getValue(), "x");
    EXPECT_EQ(*twice->getValue(), "x\n");
}

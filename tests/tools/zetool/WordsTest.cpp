#include "tools/zetool/Words.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(Words, SplitsATextIntoItsLines) {
    EXPECT_THAT(linesOf("one\ntwo\n"), ElementsAre("one", "two"));
    EXPECT_THAT(linesOf("one\ntwo"), ElementsAre("one", "two"));
}

TEST(Words, KeepsEmptyLines) {
    EXPECT_THAT(linesOf("\none\n\ntwo\n\n"), ElementsAre("", "one", "", "two", ""));
    EXPECT_THAT(linesOf("\n"), ElementsAre(""));
}

TEST(Words, FindsNoLineInAnEmptyText) {
    EXPECT_THAT(linesOf(""), IsEmpty());
}

TEST(Words, WritesHexadecimalDigitsInSmallLetters) {
    EXPECT_EQ(hexDigits(0), "0");
    EXPECT_EQ(hexDigits(0x1f), "1f");
    EXPECT_EQ(hexDigits(0xfedc'ba98'7654'3210), "fedcba9876543210");
}

TEST(Words, FillsHexadecimalDigitsUpWithZeros) {
    EXPECT_EQ(hexDigits(0x1f, 4), "001f");
    EXPECT_EQ(hexDigits(0x1f, 1), "1f");
    EXPECT_EQ(hexDigits(0, 0), "0");
}

TEST(Words, MarksAHexadecimalNumber) {
    EXPECT_EQ(hexText(0), "0x0");
    EXPECT_EQ(hexText(0x1f), "0x1f");
    EXPECT_EQ(hexText(0x1f, 8), "0x0000001f");
}

TEST(Words, PutsEntitiesInPlaceOfMarks) {
    EXPECT_EQ(withEntities("a<b>c&d'e"), "a&lt;b&gt;c&amp;d'e");
    EXPECT_EQ(withEntities("&lt;"), "&amp;lt;");
}

TEST(Words, ReplacesQuotesWhereTheyEndAnAttribute) {
    EXPECT_EQ(withEntities("say \"<\""), "say \"&lt;\"");
    EXPECT_EQ(withEntities("say \"<\"", Quotes::Replaced), "say &quot;&lt;&quot;");
}

} // namespace

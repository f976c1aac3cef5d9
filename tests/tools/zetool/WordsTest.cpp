#include "tools/zetool/Words.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;

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

TEST(Words, TakesATextForANumberAsAWhole) {
    EXPECT_THAT(wholeNumber<unsigned>("0"), Optional(0u));
    EXPECT_THAT(wholeNumber<unsigned>("0042"), Optional(42u));
    for (const char* text : {"", " 1", "1 ", "1a", "a", "+1", "0x1", "1.0"})
        EXPECT_EQ(wholeNumber<unsigned>(text), std::nullopt) << text;
}

TEST(Words, TakesNoNumberBeyondItsType) {
    EXPECT_THAT(wholeNumber<std::uint16_t>("65535"), Optional(65535));
    EXPECT_EQ(wholeNumber<std::uint16_t>("65536"), std::nullopt);
    EXPECT_THAT(wholeNumber<std::uint64_t>("18446744073709551615"), Optional(18446744073709551615u));
    EXPECT_EQ(wholeNumber<std::uint64_t>("18446744073709551616"), std::nullopt);
}

TEST(Words, TakesASignForANumberThatCanHaveOne) {
    EXPECT_THAT(wholeNumber<int>("-1"), Optional(-1));
    EXPECT_EQ(wholeNumber<unsigned>("-1"), std::nullopt);
}

TEST(Words, TakesANumberOfAnotherBaseWithoutItsMark) {
    EXPECT_THAT(wholeNumber<unsigned>("1fF", 16), Optional(0x1ffu));
    EXPECT_EQ(wholeNumber<unsigned>("0x1f", 16), std::nullopt);
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

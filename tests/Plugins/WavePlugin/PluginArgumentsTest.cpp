#include "Plugins/WavePlugin/PluginArguments.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

std::list<std::string> wordsOf(const char* text) {
    std::list<std::string> words;
    strToStrList(text, &words);
    return words;
}

} // namespace

TEST(PluginArguments, QuotedTextIsOneOfThreeWords) {
    EXPECT_THAT(wordsOf("a 'b c' d"), ElementsAre("a", "b c", "d"));
}

TEST(PluginArguments, AnEmptyPairOfQuotesIsNoWord) {
    EXPECT_THAT(wordsOf("'' a"), ElementsAre("a"));
}

TEST(PluginArguments, AnOpeningQuoteContinuesAWordAndAClosingQuoteEndsIt) {
    EXPECT_THAT(wordsOf("x'y z'w"), ElementsAre("xy z", "w"));
}

TEST(PluginArguments, AnOpenQuoteEndsWithTheText) {
    EXPECT_THAT(wordsOf("a 'b c"), ElementsAre("a", "b c"));
}

TEST(PluginArguments, AnyWhiteSpaceSeparatesWords) {
    EXPECT_THAT(wordsOf(" \ta\n\vb\f\rc "), ElementsAre("a", "b", "c"));
}

TEST(PluginArguments, BytesAbove127BelongToWords) {
    EXPECT_THAT(wordsOf("\xa0\x85 \xff"), ElementsAre("\xa0\x85", "\xff"));
}

TEST(PluginArguments, WordsGoBehindThoseThatTheListHas) {
    std::list<std::string> words = {"first"};
    strToStrList("second", &words);
    EXPECT_THAT(words, ElementsAre("first", "second"));
}

TEST(PluginArguments, EmptyBlankAndNullTextsHoldNoWord) {
    EXPECT_THAT(wordsOf(""), IsEmpty());
    EXPECT_THAT(wordsOf(" \n "), IsEmpty());
    EXPECT_THAT(wordsOf("''''"), IsEmpty());
    EXPECT_THAT(wordsOf(nullptr), IsEmpty());
}

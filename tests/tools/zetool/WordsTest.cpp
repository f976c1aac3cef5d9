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

} // namespace

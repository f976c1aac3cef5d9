#include "tools/tracehost/Pattern.h"

#include <gtest/gtest.h>
#include <string>

namespace {

// The values of the first clocks, found by following `until` as a player does.
std::string played(const Pattern& pattern, Clock clocks) {
    std::string text;
    PatternStep step = stepAt(pattern, 0);
    for (Clock time = 0; time < clocks; ++time) {
        if (time == step.until)
            step = stepAt(pattern, time);
        text += (text.empty() ? "" : " ") + std::to_string(step.value);
    }
    return text;
}

} // namespace

TEST(Pattern, AConstantNeverChanges) {
    EXPECT_EQ(stepAt(constantPattern(7), 0).value, 7U);
    EXPECT_EQ(stepAt(constantPattern(7), 0).until, s_never);
}

TEST(Pattern, ATableKeepsItsLastValue) {
    EXPECT_EQ(played(TablePattern{{{0, 1}, {2, 5}, {3, 0}}, 0}, 6), "1 1 5 0 0 0");
}

TEST(Pattern, ATableWithAPeriodStartsOver) {
    EXPECT_EQ(played(TablePattern{{{0, 1}, {2, 5}}, 3}, 8), "1 1 5 1 1 5 1 1");
}

TEST(Pattern, ACountMovesOnEveryFewClocks) {
    EXPECT_EQ(played(CountPattern{.start = 4, .by = 3, .every = 2}, 6), "4 4 7 7 10 10");
}

TEST(Pattern, ACountBelowALimitWrapsAround) {
    EXPECT_EQ(played(CountPattern{.start = 1, .below = 3}, 5), "1 2 0 1 2");
}

TEST(Pattern, ACountDownWrapsAroundToo) {
    EXPECT_EQ(played(CountPattern{.start = 1, .by = -1, .below = 3}, 5), "1 0 2 1 0");
    EXPECT_EQ(played(CountPattern{.start = 1, .by = -1}, 3), "1 0 4294967295");
}

TEST(Pattern, ACountByNothingNeverChanges) {
    EXPECT_EQ(stepAt(CountPattern{.start = 3, .by = 0}, 10).until, s_never);
}

TEST(Pattern, TheLargestStepsFit) {
    const CountPattern count{.start = UINT32_MAX, .by = INT32_MAX, .below = UINT32_MAX};
    EXPECT_EQ(stepAt(count, s_never - 1).value,
              (4294967295ULL + 2147483647ULL * 4294967294ULL) % 4294967295ULL);
    EXPECT_EQ(stepAt(CountPattern{.every = s_maxClock}, s_never - 1).until, s_never);
    EXPECT_EQ(stepAt(TablePattern{{{0, 0}, {5, 1}}, s_maxClock}, s_never - 2).until, s_never - 1);
}

TEST(Pattern, RandomNumbersAreTheSameOnEveryRunAndDifferBySeed) {
    const RandomPattern first{.seed = 1, .below = 1000, .every = 1};
    const RandomPattern second{.seed = 2, .below = 1000, .every = 1};
    EXPECT_EQ(played(first, 50), played(first, 50));
    EXPECT_NE(played(first, 50), played(second, 50));
    for (Clock time = 0; time < 1000; ++time)
        EXPECT_LT(stepAt(first, time).value, 1000U);
}

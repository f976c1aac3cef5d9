#include "tools/zetool/wave/SignalPattern.h"

namespace {

bool matches(const char* pattern, const std::string& name) {
    return SignalPattern(pattern).matches(name);
}

TEST(SignalPattern, MatchesWholeNamesAlone) {
    const char* port = "stdcore\\[\\d+\\]_ZS1_PORT_\\d+[A-Z]";
    EXPECT_TRUE(matches(port, "stdcore[0]_ZS1_PORT_1A"));
    EXPECT_TRUE(matches(port, "stdcore[12]_ZS1_PORT_32B"));
    EXPECT_FALSE(matches(port, "stdcore[0]_ZS1_PORT_1A_inuse"));
    EXPECT_FALSE(matches(port, "stdcore[]_ZS1_PORT_1A"));
    EXPECT_FALSE(matches(port, "xstdcore[0]_ZS1_PORT_1A"));
    EXPECT_FALSE(matches(port, "stdcore[0]_ZS1_PORT_1a"));
    EXPECT_TRUE(matches(".*Thread\\d+_inuse", "stdcore[0]_Thread7_inuse"));
    EXPECT_FALSE(matches(".*Thread\\d+_waiting", "stdcore[0]_Thread7_waitingResourceType"));
    EXPECT_TRUE(matches(".*CYCLES", "CYCLES"));
    EXPECT_TRUE(matches("", ""));
    EXPECT_FALSE(matches("", "a"));
    EXPECT_TRUE(matches("a?b*c+", "c"));
    EXPECT_TRUE(matches("a?b*c+", "abbcc"));
    EXPECT_FALSE(matches("a?b*c+", "aabc"));
    EXPECT_TRUE(matches("[-a-c_]+", "a-b_c"));
}

TEST(SignalPattern, MatchesNothingWithWhatItDoesNotKnow) {
    for (const char* text :
         {"(a)", "a|b", "a{2}", "^a", "a$", "[^a]", "[a", "*", "a**", "\\", "\\w", "a\\1", "[]"}) {
        const SignalPattern pattern(text);
        EXPECT_FALSE(pattern.isKnown()) << text;
        EXPECT_FALSE(pattern.matches("a")) << text;
    }
}

TEST(SignalPattern, TakesTimeInProportionWhateverThePatternIs) {
    std::string hostile;
    for (int index = 0; index < 200; ++index)
        hostile += "a*";
    EXPECT_FALSE(SignalPattern(hostile + "b").matches(std::string(2000, 'a')));
}

} // namespace

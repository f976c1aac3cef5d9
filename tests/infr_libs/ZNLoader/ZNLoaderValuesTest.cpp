// The grammars of attribute values.

#include "tests/infr_libs/ZNLoader/ReadingTest.h"

namespace {

// What a loader makes of a text, or the words of its error.
std::string frequency(const std::string& text) {
    ZNLoader loader;
    XmlNode element("Node", "zn", 7, loader.m_zelmUtils);
    try {
        return std::to_string(loader.freqInHertz(text, &element));
    } catch (const std::string& thrown) {
        return thrown;
    }
}

// Twice the divider; -1 for a text that is none.
int feedbackDiv(const std::string& text) {
    unsigned twice = 0;
    return ZNLoader().parseFeedbackDivMul2(text, twice) ? static_cast<int>(twice) : -1;
}

std::pair<int, int> delays(const std::string& text, ZNLoader::SwitchArch arch) {
    std::pair<int, int> result(77, 77);
    ZNLoader().parseDelays(text, result.first, result.second, arch, nullptr);
    return result;
}

using Delays = std::pair<int, int>; // inter, intra

std::vector<std::string> pieces(const std::string& text) {
    const std::unique_ptr<std::vector<std::string>> result(ZNLoader().getCommaSeparatedArgs(text));
    return *result;
}

} // namespace

TEST(ZNLoaderFrequency, IsInMHzWithoutASuffix) {
    EXPECT_EQ(frequency("400"), "400000000");
}

TEST(ZNLoaderFrequency, MayHaveASuffixOfAnyCase) {
    EXPECT_EQ(frequency("400MHz"), "400000000");
    EXPECT_EQ(frequency("400m"), "400000000");
    EXPECT_EQ(frequency("400k"), "400000");
    EXPECT_EQ(frequency("400KHZ"), "400000");
    EXPECT_EQ(frequency("400Hz"), "400");
}

TEST(ZNLoaderFrequency, HasNoDigitBehindItsSuffix) {
    EXPECT_EQ(frequency("1m2"), "zn:7 Error: ZN11060 Frequency (\"1m2\") cannot be parsed.\n");
    EXPECT_EQ(frequency("2.5"), "zn:7 Error: ZN11060 Frequency (\"2.5\") cannot be parsed.\n");
}

TEST(ZNLoaderFrequency, IsNotHexadecimal) {
    EXPECT_EQ(frequency("0x10"), "zn:7 Error: ZN11060 Frequency (\"0x10\") cannot be parsed.\n");
}

TEST(ZNLoaderFrequency, HasAKnownSuffix) {
    EXPECT_EQ(frequency("12GHz"), "zn:7 Error: ZN11060 Frequency (\"12GHz\") had unrecognised suffix.\n");
    EXPECT_EQ(frequency("12 MHz"), "zn:7 Error: ZN11060 Frequency (\"12 MHz\") had unrecognised suffix.\n");
}

TEST(ZNLoaderFrequency, DetectsTheBase) {
    EXPECT_EQ(frequency("010Hz"), "8");
    EXPECT_EQ(frequency("08Hz"), "0");
}

TEST(ZNLoaderFrequency, OfNoDigitsIsZero) {
    EXPECT_EQ(frequency(""), "0");
    EXPECT_EQ(frequency("MHz"), "0");
}

TEST(ZNLoaderFrequency, WrapsAt32Bits) {
    EXPECT_EQ(frequency("5000"), "705032704");
    EXPECT_EQ(frequency("3000"), "-1294967296");
}

TEST(ZNLoaderFeedbackDivider, IsDoubled) {
    EXPECT_EQ(feedbackDiv("5"), 10);
    EXPECT_EQ(feedbackDiv("0x5"), 10);
    EXPECT_EQ(feedbackDiv("010"), 20); // decimal
}

TEST(ZNLoaderFeedbackDivider, MayHaveAHalf) {
    EXPECT_EQ(feedbackDiv("5.5"), 11);
    EXPECT_EQ(feedbackDiv(".5"), 1);
}

TEST(ZNLoaderFeedbackDivider, HasNoOtherFraction) {
    EXPECT_EQ(feedbackDiv("5.25"), -1);
    EXPECT_EQ(feedbackDiv("5."), -1);
    EXPECT_EQ(feedbackDiv("5x"), -1);
}

TEST(ZNLoaderFeedbackDivider, IsNotNegative) {
    EXPECT_EQ(feedbackDiv("-5"), -1);
    EXPECT_EQ(feedbackDiv("0x-5"), -1);
}

TEST(ZNLoaderFeedbackDivider, IsHexadecimalBehindASmallXAlone) {
    EXPECT_EQ(feedbackDiv("0X5"), -1);
}

TEST(ZNLoaderFeedbackDivider, MayEndInAnythingWhenItIsHexadecimal) {
    EXPECT_EQ(feedbackDiv("0x5.5"), 10);
    EXPECT_EQ(feedbackDiv("0x"), 0);
}

TEST(ZNLoaderFeedbackDivider, OfNoTextIsZero) {
    EXPECT_EQ(feedbackDiv(""), 0);
}

TEST(ZNLoaderFeedbackDivider, SaturatesAsA32BitNumber) {
    EXPECT_EQ(feedbackDiv("4294967297"), -2); // twice 2147483647
}

TEST(ZNLoaderDelays, MayBeGivenEach) {
    EXPECT_EQ(delays("3,4", ZNLoader::SwitchArchG4), Delays(3, 4));
}

TEST(ZNLoaderDelays, MayBeOneForBoth) {
    EXPECT_EQ(delays("3", ZNLoader::SwitchArchG4), Delays(3, 3));
}

TEST(ZNLoaderDelays, InClocksAreLessWhatTheSwitchAdds) {
    EXPECT_EQ(delays("5clk", ZNLoader::SwitchArchUnknown), Delays(5, 5));
    EXPECT_EQ(delays("5clk", ZNLoader::SwitchArchG4), Delays(3, 4));
    EXPECT_EQ(delays("5clk", ZNLoader::SwitchArchL1), Delays(3, 4));
    EXPECT_EQ(delays("5clk", ZNLoader::SwitchArchZssc), Delays(4, 4));
}

TEST(ZNLoaderDelays, MayBeInClocksOnOneSideOnly) {
    EXPECT_EQ(delays("5clk,5", ZNLoader::SwitchArchG4), Delays(3, 5));
    EXPECT_EQ(delays("5,5clk", ZNLoader::SwitchArchG4), Delays(5, 4));
}

TEST(ZNLoaderDelays, AreCleanedInTheirTwoPartFormOnly) {
    EXPECT_EQ(delays("5CLK,5CLK", ZNLoader::SwitchArchG4), Delays(3, 4));
    EXPECT_EQ(delays("5CLK", ZNLoader::SwitchArchG4), Delays(5, 5));
    EXPECT_EQ(delays(" 5 clk , (6) clk", ZNLoader::SwitchArchG4), Delays(3, 5));
}

TEST(ZNLoaderDelays, SplitAtTheFirstComma) {
    EXPECT_EQ(delays("1,2,3", ZNLoader::SwitchArchG4), Delays(1, 23));
}

TEST(ZNLoaderDelays, BelowWhatTheSwitchAddsAreNegative) {
    EXPECT_EQ(delays("1clk", ZNLoader::SwitchArchG4), Delays(-1, 0));
}

TEST(ZNLoaderParseClocks, AreANumberBeforeClkAtTheVeryEnd) {
    const struct {
        const char* text;
        int number;
        bool inClocks;
    } rows[] = {
        {"5clk", 5, true}, {"5", 5, false}, {"clk", 0, false}, {"5clk ", 5, false}, {"5clkclk", 5, false}};
    for (const auto& row : rows) {
        std::string text = row.text;
        bool inClocks = !row.inClocks;
        EXPECT_EQ(ZNLoader().parseClocks(text, inClocks), row.number) << row.text;
        EXPECT_EQ(inClocks, row.inClocks) << row.text;
    }
}

TEST(ZNLoaderCleanStr, KeepsLettersAndDigitsInLowerCase) {
    EXPECT_EQ(ZNLoader().cleanStr("5 C-l_K\xe9"), "5clk");
}

TEST(ZNLoaderCommaSeparatedArgs, AreCutAtCommasAndNotTrimmed) {
    EXPECT_EQ(pieces("a, b"), (std::vector<std::string>{"a", " b"}));
    EXPECT_EQ(pieces(",a,"), (std::vector<std::string>{"", "a", ""}));
    EXPECT_EQ(pieces("a"), (std::vector<std::string>{"a"}));
}

TEST(ZNLoaderCommaSeparatedArgs, OfNoTextAreNone) {
    EXPECT_TRUE(pieces("").empty());
}

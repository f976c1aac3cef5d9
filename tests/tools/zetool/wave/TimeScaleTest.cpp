#include "tools/zetool/wave/TimeScale.h"

namespace {

std::uint64_t converted(const TimeScale& scale, std::uint64_t time) {
    std::uint64_t result = 0;
    EXPECT_TRUE(scale.convert(time, result));
    return result;
}

// The plugin's texts for these frequencies, and the unit that takes their place.
struct FrequencyRow {
    std::uint64_t megahertz;
    const char* text;
    const char* unit;
    std::uint64_t femtosecondsInUnit;
};
constexpr FrequencyRow s_frequencies[] = {
    {10, "100.000000 ns", "100 ns", 100'000'000},
    {100, "10.000000 ns", "10 ns", 10'000'000},
    {333, "3.003003 ns", "1 fs", 1},
    {400, "2.500000 ns", "100 ps", 100'000},
    {500, "2.000000 ns", "1 ns", 1'000'000},
    {600, "1.666667 ns", "1 fs", 1},
    {700, "1.428571 ns", "1 fs", 1},
};

TEST(TimeScale, PutsEachClockAtItsExactTime) {
    for (const FrequencyRow& row : s_frequencies) {
        const TimeScale scale = TimeScale::of(row.text, true);
        EXPECT_TRUE(scale.isUsable());
        EXPECT_EQ(scale.unit(), row.unit) << row.text;
        for (const std::uint64_t clock :
             {std::uint64_t(0), std::uint64_t(1), std::uint64_t(2), std::uint64_t(3), std::uint64_t(6),
              std::uint64_t(999), std::uint64_t(123'456'789), std::uint64_t(1) << 31,
              (std::uint64_t(1) << 33) + 7}) {
            // round(clock * 10^9 / f) fs, where the product has 64 bits.
            const std::uint64_t exact = (clock * 1'000'000'000 + row.megahertz / 2) / row.megahertz;
            EXPECT_EQ(converted(scale, clock) * row.femtosecondsInUnit, exact) << row.text << " " << clock;
        }
    }
}

TEST(TimeScale, FindsTheFrequencyOfFewestDecimals) {
    const struct {
        const char* text;
        const char* unit;
        std::uint64_t tenMillionClocks; // in units
    } rows[] = {
        {"30.000300 ns", "1 fs", 300'003'000'030'000},           // 33.333 MHz
        {"333333.333333 ns", "1 fs", 3'333'333'333'333'333'333}, // 0.003 MHz
        {"81.380208 ns", "1 fs", 813'802'083'333'333},           // 12.288 MHz
        {"0.976562 ns", "1 fs", 9'765'625'000'000},              // 1024 MHz
        {"1.000000 ns", "1 ns", 10'000'000},
        {"100000.000000 ns", "100 us", 10'000'000},
        // No frequency of six decimals has this text: the period as it stands.
        {"333333.330436 ns", "1 fs", 3'333'333'304'360'000'000},
    };
    for (const auto& row : rows) {
        const TimeScale scale = TimeScale::of(row.text, true);
        EXPECT_EQ(scale.unit(), row.unit) << row.text;
        EXPECT_EQ(converted(scale, 10'000'000), row.tenMillionClocks) << row.text;
    }
}

TEST(TimeScale, PrefersAPeriodOfThreeDecimalsToAFrequencyOfMore) {
    const struct {
        const char* text;
        const char* unit;
        std::uint64_t billionClocks; // in units
    } rows[] = {
        {"3.000000 ns", "1 ns", 3'000'000'000},
        {"7.000000 ns", "1 ns", 7'000'000'000},
        {"1.500000 ns", "100 ps", 15'000'000'000},
        // 33.333 MHz and 8130.1 MHz have no more than three.
        {"30.000300 ns", "1 fs", 30'000'300'003'000'030},
        {"0.123000 ns", "1 fs", 122'999'717'100'651},
    };
    for (const auto& row : rows) {
        const TimeScale scale = TimeScale::of(row.text, true);
        EXPECT_EQ(scale.unit(), row.unit) << row.text;
        EXPECT_EQ(converted(scale, 1'000'000'000), row.billionClocks) << row.text;
    }
}

TEST(TimeScale, TakesOtherToolsTextsAsTheyAre) {
    const struct {
        const char* text;
        const char* unit;
        std::uint64_t seven;
        bool isStandard;
    } rows[] = {
        {"1ns", "1 ns", 7, true},
        {"10 ps", "10 ps", 7, true},
        {"100 s", "100 s", 7, true},
        {"1 fs", "1 fs", 7, true},
        {"5 ns", "1 ns", 35, false},
        {"2.5 ns", "100 ps", 175, false},
        {"1000 us", "1 ms", 7, false},
        {"0.5 fs", "1 fs", 4, false},
        {"1.666667 ns", "1 fs", 11'666'669, false},
        {"1.0000000000 fs", "1 fs", 7, false},
        {"1.0000000000000 ps", "1 ps", 7, false},
        {"2.50000000000000 fs", "1 fs", 18, false},
        {"0.2500000001 fs", "1 fs", 2, false},
        {"3.000000000000000 ns", "1 ns", 21, false},
    };
    for (const auto& row : rows) {
        const TimeScale scale = TimeScale::of(row.text, false);
        EXPECT_TRUE(scale.isUsable()) << row.text;
        EXPECT_EQ(scale.unit(), row.unit) << row.text;
        EXPECT_EQ(converted(scale, 7), row.seven) << row.text;
        EXPECT_EQ(scale.isStandard(), row.isStandard) << row.text;
    }
}

TEST(TimeScale, FallsBackToANanosecondForWhatIsNoTimescale) {
    for (const char* text :
         {"", "ns", "0 ns", "0.000000 ns", "-1 ns", "inf ns", "nan ns", "1", "1 parsec", "1.2.3 ns",
          "99999999999999999999 ns", "99999999999999999 s", "0.0000000001 fs"}) {
        const TimeScale scale = TimeScale::of(text, true);
        EXPECT_FALSE(scale.isUsable()) << text;
        EXPECT_EQ(scale.unit(), "1 ns") << text;
        EXPECT_EQ(converted(scale, 5), 5u) << text;
    }
}

TEST(TimeScale, RefusesATimeThatNeedsMoreThan64Bits) {
    const TimeScale scale = TimeScale::of("1.666667 ns", true);
    std::uint64_t result = 0;
    EXPECT_TRUE(scale.convert(11'000'000'000'000, result));
    EXPECT_FALSE(scale.convert(12'000'000'000'000, result));
    EXPECT_FALSE(scale.convert(~std::uint64_t(0), result));
}

TEST(TimeScale, IsCoarseForReadersThatSample) {
    const TimeScale scale = TimeScale::of("3.003003 ns", true).coarse();
    EXPECT_EQ(scale.unit(), "100 ps");
    EXPECT_EQ(converted(scale, 1), 30u);
    EXPECT_EQ(converted(scale, 333), 10'000u);
    EXPECT_EQ(TimeScale::of("2.500000 ns", true).coarse().unit(), "100 ps");
}

std::vector<std::uint64_t> counts(bool isOfPlugin, const std::vector<const char*>& texts) {
    TimeNumbers numbers(isOfPlugin);
    std::vector<std::uint64_t> result;
    for (const char* text : texts) {
        std::uint64_t count = 0;
        if (numbers.read(text, count))
            result.push_back(count);
    }
    return result;
}

TEST(TimeNumbers, GoOnWhereThePluginsWrap) {
    EXPECT_EQ(counts(true, {"1", "2147483647", "-2147483648", "-1", "0", "7", "-5", "3"}),
              (std::vector<std::uint64_t>{1, 2147483647, 2147483648, 4294967295, 4294967296, 4294967303,
                                          8589934587, 8589934595}));
}

TEST(TimeNumbers, GoOnAfterAWrapThatNothingWasWrittenIn) {
    EXPECT_EQ(
        counts(true, {"1000", "500", "500", "-5", "-2000", "3"}),
        (std::vector<std::uint64_t>{1000, 4294967796, 4294967796, 8589934587, 12884899888, 12884901891}));
}

TEST(TimeNumbers, AreOf64BitsInOtherToolsFiles) {
    EXPECT_EQ(counts(false, {"2147483648", "18446744073709551615"}),
              (std::vector<std::uint64_t>{2147483648, 18446744073709551615u}));
}

TEST(TimeNumbers, RefuseWhatIsNoNumber) {
    EXPECT_TRUE(counts(true, {"", "-", "x", "1x", "2147483648", "-2147483649"}).empty());
    EXPECT_TRUE(counts(false, {"", "-1", "18446744073709551616", "1.5"}).empty());
}

} // namespace

#include "tools/zetool/wave/TimeScale.h"

#include "tools/zetool/Words.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <numeric>

namespace {

constexpr unsigned int s_largestExponent = 17; // 100 s

// Longer than any number that makes sense, and short enough for 64 bits.
constexpr std::size_t s_mostDigits = 17;

// Of a fs: `convert` wants a denominator of 32 bits.
constexpr unsigned int s_mostDecimals = 9;

constexpr std::array<std::string_view, 6> s_units = {"fs", "ps", "ns", "us", "ms", "s"};

std::uint64_t powerOfTen(unsigned int exponent) {
    std::uint64_t power = 1;
    for (; exponent > 0; --exponent)
        power *= 10;
    return power;
}

struct ScaleText {
    std::string number;
    std::uint64_t digits = 0; // the number without its point
    unsigned int numDecimals = 0;
    unsigned int exponent = 0; // of the unit, over fs
};

// A number, with or without a point, and a unit, with or without a blank between.
bool readScale(std::string_view text, ScaleText& scale) {
    const auto numberEnd = text.find_first_not_of("0123456789.");
    if (numberEnd == std::string_view::npos || numberEnd == 0)
        return false;
    scale.number = text.substr(0, numberEnd);
    std::string_view unit = text.substr(numberEnd);
    unit.remove_prefix(std::min(unit.find_first_not_of(' '), unit.size()));
    std::string digits;
    bool isBehindPoint = false;
    for (const char c : scale.number) {
        if (c == '.') {
            if (isBehindPoint)
                return false;
            isBehindPoint = true;
            continue;
        }
        digits += c;
        scale.numDecimals += isBehindPoint;
    }
    if (digits.empty() || digits.size() > s_mostDigits)
        return false;
    std::from_chars(digits.data(), digits.data() + digits.size(), scale.digits);
    for (unsigned int index = 0; index < s_units.size(); ++index) {
        if (unit == s_units[index]) {
            scale.exponent = 3 * index;
            return scale.digits != 0;
        }
    }
    return false;
}

// The frequency in MHz, as a whole number of 10^-decimals, whose period in ns is printed as the text.
bool findFrequency(const std::string& text, std::uint64_t& frequency, unsigned int& numDecimals) {
    const double period = std::strtod(text.c_str(), nullptr);
    for (numDecimals = 0; numDecimals <= 6; ++numDecimals) {
        const auto scale = static_cast<double>(powerOfTen(numDecimals));
        const double rounded = std::round(1000.0 / period * scale);
        if (rounded < 1 || rounded > 4294967295.0)
            continue;
        std::array<char, 64> printed = {};
        std::snprintf(printed.data(), printed.size(), "%f", 1000.0 / (rounded / scale));
        frequency = static_cast<std::uint64_t>(rounded);
        if (text == printed.data())
            return true;
    }
    return false;
}

// Whether the period itself is meant: it is a whole number of ps, and the frequency that fits it none of kHz.
bool isPeriodMeant(const std::string& text, unsigned int numDecimalsOfFrequency) {
    return numDecimalsOfFrequency > 3 && text.ends_with("000");
}

} // namespace

TimeScale TimeScale::fromPeriod(std::uint64_t numerator, std::uint64_t denominator) {
    TimeScale scale;
    const std::uint64_t divisor = std::gcd(numerator, denominator);
    scale.m_numerator = numerator / divisor;
    scale.m_denominator = denominator / divisor;
    scale.m_exponent = 0;
    while (scale.m_denominator == 1 && scale.m_exponent < s_largestExponent && scale.m_numerator % 10 == 0) {
        scale.m_numerator /= 10;
        ++scale.m_exponent;
    }
    scale.m_isUsable = true;
    return scale;
}

TimeScale TimeScale::of(std::string_view text, bool isOfPlugin) {
    ScaleText read;
    if (!readScale(text, read))
        return TimeScale();
    std::uint64_t frequency = 0;
    unsigned int numDecimals = 0;
    if (isOfPlugin && read.exponent == 6 && read.numDecimals == 6 &&
        findFrequency(read.number, frequency, numDecimals) && !isPeriodMeant(read.number, numDecimals))
        return fromPeriod(powerOfTen(9 + numDecimals), frequency);

    TimeScale scale;
    if (read.exponent >= read.numDecimals) {
        unsigned int exponent = read.exponent - read.numDecimals;
        // The product must fit; a period of more than that is no clock's.
        if (exponent > 0 && read.digits > ~std::uint64_t(0) / powerOfTen(exponent))
            return TimeScale();
        scale = fromPeriod(read.digits * powerOfTen(exponent), 1);
    } else {
        // Decimals that are zeros say nothing; of others, those past 10^-9 fs are dropped.
        unsigned int decimals = read.numDecimals - read.exponent;
        for (; decimals > 0 && (read.digits % 10 == 0 || decimals > s_mostDecimals); --decimals)
            read.digits /= 10;
        if (read.digits == 0)
            return TimeScale();
        scale = fromPeriod(read.digits, powerOfTen(decimals));
    }
    scale.m_isStandard =
        read.numDecimals == 0 && (read.number == "1" || read.number == "10" || read.number == "100");
    return scale;
}

std::string TimeScale::unit() const {
    static constexpr std::array<const char*, 3> s_numbers = {"1 ", "10 ", "100 "};
    return s_numbers[m_exponent % 3] + std::string(s_units[m_exponent / 3]);
}

bool TimeScale::convert(std::uint64_t time, std::uint64_t& result) const {
    // time = whole * denominator + rest: both products then stay small as long as the result is.
    const std::uint64_t whole = time / m_denominator;
    const std::uint64_t rest = time % m_denominator;
    std::uint64_t ofWhole = 0;
    std::uint64_t ofRest = 0;
    if (__builtin_mul_overflow(whole, m_numerator, &ofWhole) ||
        __builtin_mul_overflow(rest, m_numerator / m_denominator, &ofRest))
        return false;
    // Both factors are below the denominator, which is below 2^32.
    const std::uint64_t fraction = (rest * (m_numerator % m_denominator) + m_denominator / 2) / m_denominator;
    return !__builtin_add_overflow(ofWhole, ofRest, &result) &&
           !__builtin_add_overflow(result, fraction, &result);
}

TimeScale TimeScale::coarse() const {
    if (m_numerator / m_denominator < 100)
        return *this;
    TimeScale scale = *this;
    // `convert` wants a denominator of 32 bits.
    while (scale.m_numerator / scale.m_denominator >= 100 && scale.m_exponent < s_largestExponent &&
           scale.m_denominator < 400'000'000) {
        if (scale.m_numerator % 10 == 0)
            scale.m_numerator /= 10;
        else
            scale.m_denominator *= 10;
        ++scale.m_exponent;
    }
    return scale;
}

bool TimeNumbers::read(std::string_view text, std::uint64_t& count) {
    const bool isNegative = text.starts_with('-');
    if (isNegative)
        text.remove_prefix(1);
    const auto whole = wholeNumber<std::uint64_t>(text);
    if (!whole)
        return false;
    const std::uint64_t number = *whole;
    if (!m_isOfPlugin) {
        count = number;
        m_isNegative = isNegative;
        return !isNegative;
    }
    constexpr std::uint64_t s_wrap = std::uint64_t(1) << 32;
    if (isNegative ? number > s_wrap / 2 : number >= s_wrap / 2)
        return false;
    m_isNegative = isNegative;
    count = m_wrapped + (isNegative ? s_wrap - number : number);
    if (count < m_last) {
        m_wrapped += s_wrap;
        count += s_wrap;
    }
    m_last = count;
    return true;
}

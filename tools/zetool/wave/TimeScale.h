#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// The unit of a waveform's time numbers, and the unit of IEEE 1364 (1, 10 or 100 of s, ms, us, ns, ps, fs)
// that takes its place. Times are exact: where no unit divides the period, they are counted in fs, each
// rounded from the exact product.
class TimeScale {
public:
    // The scale that a timescale's text means. A plugin's text is a period in ns, rounded to six decimals;
    // the frequency behind it is the one of fewest decimals whose period has this text, unless that needs
    // more than three where the period does with three. Without a usable text the unit is 1 ns, and
    // `isUsable` is false.
    static TimeScale of(std::string_view text, bool isOfPlugin);

    bool isUsable() const { return m_isUsable; }

    // Whether the text itself is one that IEEE 1364 allows.
    bool isStandard() const { return m_isStandard; }

    // "100 ps".
    std::string unit() const;

    // Whether every time is a whole number of units.
    bool isExact() const { return m_denominator == 1; }

    // A time number in units. False where 64 bits don't hold it.
    bool convert(std::uint64_t time, std::uint64_t& result) const;

    // The same scale in a unit of about a tenth of the period, if its own unit is finer than a hundredth:
    // for readers that store a sample for every unit.
    TimeScale coarse() const;

private:
    // A time number counts numerator / denominator units of 10^exponent fs.
    std::uint64_t m_numerator = 1;
    std::uint64_t m_denominator = 1;
    unsigned int m_exponent = 6;
    bool m_isUsable = false;
    bool m_isStandard = false;

    static TimeScale fromPeriod(std::uint64_t numerator, std::uint64_t denominator);
};

// Time numbers as the counts that they stand for. The plugin writes the low 32 bits of its clock as a signed
// number: past 2^31 clocks it turns negative, past 2^32 it begins again at 0. Since the clock never falls, a
// number below the one before tells of a wrap between them, however long nothing was written.
class TimeNumbers {
public:
    explicit TimeNumbers(bool isOfPlugin) : m_isOfPlugin(isOfPlugin) {}

    // The count that a time's text stands for. False for what is no number.
    bool read(std::string_view text, std::uint64_t& count);

    // Whether the text last read was negative.
    bool isNegative() const { return m_isNegative; }

private:
    bool m_isOfPlugin;
    bool m_isNegative = false;
    std::uint64_t m_wrapped = 0; // what the wraps so far add
    std::uint64_t m_last = 0;    // the count last read
};

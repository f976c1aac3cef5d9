#pragma once

#include <cstdint>
#include <variant>
#include <vector>

// The number of a clock, or a count of clocks.
using Clock = std::uint32_t;

// No clock of any run: later than the last one that a scenario may name.
constexpr Clock s_never = UINT32_MAX;
constexpr Clock s_maxClock = INT32_MAX;

// What a pattern shows at one time, and the first later time at which it may show something else
// (`s_never` when it stays).
struct PatternStep {
    std::uint32_t value;
    Clock until;
};

// Listed values, each from its own start on. The first starts at 0, starts ascend.
struct TablePattern {
    struct Entry {
        Clock start;
        std::uint32_t value;
    };

    std::vector<Entry> entries; // never empty
    Clock period = 0;           // after which the list starts over; 0: the last value stays

    PatternStep at(Clock time) const;
};

// A number that grows by `by` every `every` clocks.
struct CountPattern {
    std::uint32_t start = 0;
    std::int32_t by = 1;     // not INT32_MIN, so that `by` times any clock fits 63 bits
    std::uint32_t below = 0; // results are taken modulo this; 0: modulo 2^32
    Clock every = 1;

    PatternStep at(Clock time) const;
};

// Numbers without order, the same on every run, a new one every `every` clocks.
struct RandomPattern {
    std::uint32_t seed = 0;
    std::uint32_t below = 0; // as in `CountPattern`
    Clock every = 1;

    PatternStep at(Clock time) const;
};

// A value over time. A pattern keeps no place in time: it can be asked for any time in any order, and
// shared by any number of fields.
using Pattern = std::variant<TablePattern, CountPattern, RandomPattern>;

// Time counts from the pattern's own beginning.
PatternStep stepAt(const Pattern& pattern, Clock time);

// A value that stays.
Pattern constantPattern(std::uint32_t value);

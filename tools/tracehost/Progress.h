#pragma once

#include "tools/tracehost/Pattern.h"

#include <chrono>
#include <string>

// One line on a terminal that tells how far a long run has come. A run that ends within a second shows
// nothing.
class Progress {
public:
    using Time = std::chrono::steady_clock::time_point;

    // Whether a descriptor is a terminal whose user wants such lines (no NO_COLOR in the environment).
    static bool isWanted(int descriptor);

    Progress(Clock clocks, Time begin) : m_clocks(clocks), m_begin(begin), m_next(begin + s_patience) {}

    // The text to write at this time: a line that replaces the one before, or nothing when it is too early
    // for another.
    std::string update(Clock clock, Time now);

    // The text that wipes the line, or nothing when none was shown.
    std::string finish() const;

private:
    static constexpr std::chrono::milliseconds s_patience{1000};
    static constexpr std::chrono::milliseconds s_interval{200};

    Clock m_clocks;
    Time m_begin;
    Time m_next;
    bool m_isShown = false;
};

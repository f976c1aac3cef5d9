#pragma once

#include <cstdint>

// How far a long command is, in percent on standard error: only on a terminal, never with NO_COLOR, and gone
// when the object goes.
class Progress {
public:
    // The whole of the work, in any unit; 0 where it isn't known, and nothing is shown.
    explicit Progress(std::uint64_t whole);
    ~Progress();

    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    void update(std::uint64_t done);

private:
    std::uint64_t m_whole;
    std::uint64_t m_shown = 0; // percent last shown
};

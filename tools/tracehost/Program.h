#pragma once

#include "tools/tracehost/Pattern.h"

#include <cstdint>
#include <vector>

// What one thread of a core executes: runs of instructions one behind the other, an instruction a turn.
// Texts are numbers of the scenario's list of texts. Like a pattern it keeps no place in time.
class Program {
public:
    struct Instruction {
        bool valid = false; // false: the turn passes without an instruction, and the rest stays as it was
        std::uint32_t pc = 0;
        std::uint32_t mnemonic = 0;
        std::uint32_t functionName = 0;
    };

    Program(std::uint32_t thread, bool repeats) : m_thread(thread), m_repeats(repeats) {}

    std::uint32_t thread() const { return m_thread; }

    // Appends `times` passes through the mnemonics. Returns false, and appends nothing, when the program
    // would become longer than any scenario.
    bool run(std::uint32_t functionName, std::uint32_t firstPc, const std::vector<std::uint32_t>& mnemonics,
             Clock times);

    // Appends turns without an instruction; as `run`.
    bool idle(Clock turns);

    // Lets what is appended from here on run as one piece again and again: `closeLoop` says how often.
    // Loops may stand in loops. A false result means as in `run`.
    void openLoop() { m_loops.push_back({m_runs.size(), m_length}); }
    bool closeLoop(Clock times);

    // The instruction of a turn. A program that doesn't repeat is idle behind its end.
    Instruction at(Clock turn) const;

private:
    struct Run {
        Clock start;
        std::uint32_t functionName;
        std::uint32_t firstPc;
        std::size_t firstMnemonic; // in m_mnemonics
        std::size_t numMnemonics;  // 0: idle
    };

    struct Loop {
        std::size_t firstRun;
        Clock start;
    };

    bool append(const Run& run, std::uint64_t turns);

    std::uint32_t m_thread;
    bool m_repeats;
    Clock m_length = 0; // turns of all runs
    std::vector<Run> m_runs;
    std::vector<Loop> m_loops; // those still open, the innermost last
    std::vector<std::uint32_t> m_mnemonics;
};

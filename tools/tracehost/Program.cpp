#include "tools/tracehost/Program.h"

#include <algorithm>

namespace {

constexpr std::uint32_t s_instructionSize = 2; // bytes of a short instruction: what a pc moves on by

// Loops are written out; this keeps one from filling the memory.
constexpr std::size_t s_maxRuns = 1'000'000;

} // namespace

bool Program::append(const Run& run, std::uint64_t turns) {
    if (turns > s_maxClock - m_length || m_runs.size() == s_maxRuns)
        return false;
    m_runs.push_back(run);
    m_length += static_cast<Clock>(turns);
    return true;
}

bool Program::run(std::uint32_t functionName, std::uint32_t firstPc,
                  const std::vector<std::uint32_t>& mnemonics, Clock times) {
    if (!append({m_length, functionName, firstPc, m_mnemonics.size(), mnemonics.size()},
                std::uint64_t{mnemonics.size()} * times))
        return false;
    m_mnemonics.insert(m_mnemonics.end(), mnemonics.begin(), mnemonics.end());
    return true;
}

bool Program::idle(Clock turns) {
    return append({m_length, 0, 0, 0, 0}, turns);
}

bool Program::closeLoop(Clock times) {
    const Loop loop = m_loops.back();
    m_loops.pop_back();
    const std::size_t numRuns = m_runs.size() - loop.firstRun;
    const Clock length = m_length - loop.start;
    if (std::uint64_t{length} * times > s_maxClock - loop.start ||
        std::uint64_t{numRuns} * times > s_maxRuns - loop.firstRun)
        return false;
    for (Clock pass = 1; pass < times; ++pass) {
        for (std::size_t i = 0; i < numRuns; ++i) {
            Run run = m_runs[loop.firstRun + i];
            run.start += length * pass;
            m_runs.push_back(run);
        }
    }
    m_length = loop.start + length * times;
    return true;
}

Program::Instruction Program::at(Clock turn) const {
    if (m_repeats && m_length != 0)
        turn %= m_length;
    if (turn >= m_length)
        return {};
    const auto after = std::upper_bound(m_runs.begin(), m_runs.end(), turn,
                                        [](Clock wanted, const Run& run) { return wanted < run.start; });
    const Run& run = *std::prev(after);
    if (run.numMnemonics == 0)
        return {};
    const std::size_t place = (turn - run.start) % run.numMnemonics;
    return {true, run.firstPc + static_cast<std::uint32_t>(place) * s_instructionSize,
            m_mnemonics[run.firstMnemonic + place], run.functionName};
}

#include "tools/tracehost/Pattern.h"

#include <algorithm>

namespace {

Clock clockOrNever(std::uint64_t clock) {
    return clock < s_never ? static_cast<Clock>(clock) : s_never;
}

// When the step behind this one begins.
Clock nextStep(Clock step, Clock every) {
    return clockOrNever((std::uint64_t{step} + 1) * every);
}

// Scatters the bits of a number (the finishing step of MurmurHash3, public domain constants).
std::uint32_t scatter(std::uint32_t bits) {
    bits = (bits ^ (bits >> 16)) * 0x85ebca6bU;
    bits = (bits ^ (bits >> 13)) * 0xc2b2ae35U;
    return bits ^ (bits >> 16);
}

} // namespace

PatternStep TablePattern::at(Clock time) const {
    const Clock inPeriod = period == 0 ? time : time % period;
    const auto after =
        std::upper_bound(entries.begin(), entries.end(), inPeriod,
                         [](Clock wanted, const Entry& entry) { return wanted < entry.start; });
    std::uint64_t until = s_never;
    if (after != entries.end())
        until = std::uint64_t{time} + (after->start - inPeriod);
    else if (period != 0 && entries.size() > 1)
        until = std::uint64_t{time} + (period - inPeriod);
    return {std::prev(after)->value, clockOrNever(until)};
}

PatternStep CountPattern::at(Clock time) const {
    const Clock step = time / every;
    const Clock until = by == 0 ? s_never : nextStep(step, every);
    if (below == 0)
        return {start + static_cast<std::uint32_t>(by) * step, until};
    const std::int64_t sum = std::int64_t{start} + std::int64_t{by} * step;
    const std::int64_t rest = sum % below;
    return {static_cast<std::uint32_t>(rest < 0 ? rest + below : rest), until};
}

PatternStep RandomPattern::at(Clock time) const {
    const Clock step = time / every;
    const std::uint32_t value = scatter(scatter(seed + 1) + step);
    return {below == 0 ? value : value % below, nextStep(step, every)};
}

PatternStep stepAt(const Pattern& pattern, Clock time) {
    return std::visit([time](const auto& shape) { return shape.at(time); }, pattern);
}

Pattern constantPattern(std::uint32_t value) {
    return TablePattern{{{0, value}}, 0};
}

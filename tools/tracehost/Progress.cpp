#include "tools/tracehost/Progress.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <unistd.h>

namespace {

constexpr const char* s_wipe = "\r\033[K"; // to the line's begin, and erase to its end

} // namespace

bool Progress::isWanted(int descriptor) {
    const char* noColor = std::getenv("NO_COLOR");
    return isatty(descriptor) == 1 && (!noColor || *noColor == '\0');
}

std::string Progress::update(Clock clock, Time now) {
    if (now < m_next)
        return {};
    m_next = now + s_interval;
    m_isShown = true;
    const double seconds = std::chrono::duration<double>(now - m_begin).count();
    const auto percent = static_cast<unsigned>(std::uint64_t{clock} * 100 / m_clocks);
    char text[128];
    std::snprintf(text, sizeof text, "%sclock %u of %u (%u %%), %.0f clocks a second", s_wipe, clock,
                  m_clocks, percent, clock / seconds);
    return text;
}

std::string Progress::finish() const {
    return m_isShown ? s_wipe : "";
}

#include "tools/zetool/Progress.h"

#include "tools/zetool/Messages.h"

#include <cstdio>
#include <unistd.h>

Progress::Progress(std::uint64_t whole) : m_whole(isColourTerminal(STDERR_FILENO) ? whole : 0) {}

Progress::~Progress() {
    if (m_shown > 0)
        std::fprintf(stderr, "\r\x1b[K");
}

void Progress::update(std::uint64_t done) {
    if (m_whole == 0)
        return;
    const std::uint64_t percent = 100 * done / m_whole;
    if (percent <= m_shown || percent > 100)
        return;
    m_shown = percent;
    std::fprintf(stderr, "\r%3u %%", static_cast<unsigned int>(percent));
}

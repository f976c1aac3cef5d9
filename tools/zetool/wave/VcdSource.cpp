#include "tools/zetool/wave/VcdSource.h"

#include "tools/zetool/Messages.h"

#include <cstring>

namespace {

// Large enough that a call of the system costs nothing beside the work on its bytes, small enough for the
// processor's cache.
constexpr std::size_t s_windowSize = 1 << 18;

} // namespace

VcdSource::VcdSource(InputFile& input)
    : m_input(input),
      m_capacity(s_windowSize),
      m_buffer(std::make_unique_for_overwrite<char[]>(m_capacity + s_padding)),
      m_begin(m_buffer.get()),
      m_end(m_begin) {
    std::memset(m_end, ' ', s_padding);
}

bool VcdSource::nextLine(std::string_view& line) {
    std::size_t searched = 0;
    for (;;) {
        const char* from = m_begin + searched;
        const auto length = static_cast<std::size_t>(m_end - from);
        if (const void* found = std::memchr(from, '\n', length)) {
            const char* end = static_cast<const char*>(found);
            line = {m_begin, static_cast<std::size_t>(end - m_begin)};
            m_begin += line.size() + 1;
            m_lineWasWhole = true;
            ++m_line;
            return true;
        }
        searched = static_cast<std::size_t>(m_end - m_begin);
        if (refill(m_begin))
            continue;
        if (m_begin == m_end)
            return false;
        line = {m_begin, static_cast<std::size_t>(m_end - m_begin)};
        m_begin = m_end;
        m_lineWasWhole = false;
        ++m_line;
        return true;
    }
}

void VcdSource::unread(std::size_t numBytes) {
    m_begin -= numBytes + (m_lineWasWhole ? 1 : 0);
}

bool VcdSource::refill(const char* keep) {
    const auto numKept = static_cast<std::size_t>(m_end - keep);
    if (numKept == m_capacity)
        grow();
    else
        std::memmove(m_buffer.get(), keep, numKept);
    m_begin = m_buffer.get();
    const std::size_t count = m_input.read(m_begin + numKept, m_capacity - numKept);
    m_end = m_begin + numKept + count;
    std::memset(m_end, ' ', s_padding);
    m_numBytesRead += count;
    return count > 0;
}

void VcdSource::grow() {
    if (m_capacity >= s_longestWord)
        throw ToolFailure(m_input.path(),
                          "line " + std::to_string(m_line) + " holds a word too long to be read");
    auto larger = std::make_unique_for_overwrite<char[]>(2 * m_capacity + s_padding);
    std::memcpy(larger.get(), m_buffer.get(), m_capacity);
    m_buffer = std::move(larger);
    m_capacity *= 2;
}

#pragma once

#include "tools/zetool/InputFile.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

// The bytes of a waveform as a window that moves over the file: the header is read from it by lines, the
// body by `scanBody`. Memory is one window, whatever the file's length; only a single line or word that is
// longer makes the window grow, up to s_longestWord.
class VcdSource {
public:
    explicit VcdSource(InputFile& input);

    // The next line without its end. False at the end of the file. The text is valid until the next call.
    bool nextLine(std::string_view& line);

    // Whether the line last given had a line end behind it.
    bool lineWasWhole() const { return m_lineWasWhole; }

    // Gives the end of the line last given back to the window: what follows is read again.
    void unread(std::size_t numBytes);

    // Number of the line last given, counted from 1; behind `unread` that of the window's first byte.
    std::uint64_t line() const { return m_line; }
    void setLine(std::uint64_t line) { m_line = line; }

    // The window. A blank stands behind its end, and s_padding bytes behind it may be read.
    const char* begin() const { return m_begin; }
    const char* end() const { return m_end; }

    // Drops the bytes before `keep` and reads more behind those that stay. False when there are no more.
    bool refill(const char* keep);

    const InputFile& input() const { return m_input; }

    // Bytes of the file that were read so far.
    std::uint64_t numBytesRead() const { return m_numBytesRead; }

    static constexpr std::size_t s_padding = 16;
    static constexpr std::size_t s_longestWord = std::size_t(64) << 20;

private:
    void grow();

    InputFile& m_input;
    std::size_t m_capacity;
    std::unique_ptr<char[]> m_buffer;
    char* m_begin;
    char* m_end;
    bool m_lineWasWhole = true;
    std::uint64_t m_line = 0;
    std::uint64_t m_numBytesRead = 0;
};

#pragma once

#include <cstddef>
#include <cstdio>
#include <unistd.h>

// A stream as a run of lines sees it, while nobody else writes to it. A line that must reach the file at once
// goes straight to the descriptor as long as nothing waits in the stream's own buffer: a third of the
// instructions of the way through the buffer. The order of all lines is that of the calls.
//
// Errors are left in the stream's error flag. The object serves one run: it is cheap to make, and asks the
// stream nothing before the first line. The stream stays with the caller.
class LineStream {
public:
    explicit LineStream(FILE* fp) : m_fp(fp) {}

    // The text reaches the file at once, behind all that waits before it, and by one write where the system
    // takes it whole.
    void writeThrough(const char* text, std::size_t length) {
        if (m_descriptor < 0) [[unlikely]]
            m_descriptor = directDescriptor();
        if (m_descriptor >= 0) [[likely]] {
            const ssize_t written = write(m_descriptor, text, length);
            if (written == static_cast<ssize_t>(length)) [[likely]]
                return;
            if (written > 0) {
                text += written;
                length -= static_cast<std::size_t>(written);
            }
        }
        writeThroughBuffer(text, length);
    }

    // The text may wait in the stream's buffer.
    void writeLater(const char* text, std::size_t length);

private:
    int directDescriptor() const;
    void writeThroughBuffer(const char* text, std::size_t length);

    FILE* m_fp;
    int m_descriptor = -1; // the stream's; -1 while something may wait in the buffer, or there is none
};

#include "Plugins/WavePlugin/LineStream.h"

#include <stdio_ext.h>

void LineStream::writeLater(const char* text, std::size_t length) {
    std::fwrite(text, 1, length, m_fp);
    m_descriptor = -1;
}

// -1 when the buffer isn't empty, and for streams that are no file, such as those in memory.
int LineStream::directDescriptor() const {
    return __fpending(m_fp) == 0 ? fileno(m_fp) : -1;
}

// Also for what the system didn't take: the stream tries once more, and keeps the error if it fails again.
void LineStream::writeThroughBuffer(const char* text, std::size_t length) {
    writeLater(text, length);
    std::fflush(m_fp);
}

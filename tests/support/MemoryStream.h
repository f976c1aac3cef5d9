#pragma once

#include <cstdio>
#include <string>

// A stream into memory, for what writes to a `FILE*`. It has no descriptor.
class MemoryStream {
public:
    MemoryStream();
    ~MemoryStream();

    MemoryStream(const MemoryStream&) = delete;
    MemoryStream& operator=(const MemoryStream&) = delete;

    operator FILE*() const { return m_stream; }

    // All that was written so far.
    std::string text() const;

private:
    char* m_buffer = nullptr;
    std::size_t m_size = 0;
    FILE* m_stream;
};

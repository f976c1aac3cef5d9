#include "tests/support/MemoryStream.h"

#include <cstdlib>
#include <stdexcept>

MemoryStream::MemoryStream() : m_stream(open_memstream(&m_buffer, &m_size)) {
    if (!m_stream)
        throw std::runtime_error("can't open a stream into memory");
}

MemoryStream::~MemoryStream() {
    std::fclose(m_stream);
    std::free(m_buffer);
}

std::string MemoryStream::text() const {
    std::fflush(m_stream);
    return {m_buffer, m_size};
}

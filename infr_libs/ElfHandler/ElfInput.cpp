#include "infr_libs/ElfHandler/ElfInput.h"

#include "infr_libs/ErrorHandler/ErrorHandler.h"

#include <algorithm>
#include <cstring>

ElfInput::ElfInput(std::istream& stream) : m_stream(stream) {
    const std::istream::pos_type start = m_stream.tellg();
    if (start < 0)
        return;
    m_stream.seekg(0, std::ios::end);
    const std::istream::pos_type end = m_stream.tellg();
    m_stream.clear();
    m_stream.seekg(start);
    if (end < start)
        return;
    m_length = static_cast<std::uint64_t>(end);
    m_position = static_cast<std::uint64_t>(start);
}

void ElfInput::seek(std::uint64_t offset) {
    m_position = std::min(offset, m_length);
    m_stream.seekg(static_cast<std::istream::off_type>(m_position));
}

void ElfInput::read(void* destination, std::size_t numBytes) {
    const std::size_t numRead = readWhatIsThere(destination, numBytes);
    std::memset(static_cast<char*>(destination) + numRead, 0, numBytes - numRead);
}

std::size_t ElfInput::readWhatIsThere(void* destination, std::size_t numBytes) {
    const auto wanted = static_cast<std::streamsize>(std::min<std::uint64_t>(numBytes, numBytesLeft()));
    std::size_t numRead = 0;
    if (wanted > 0) {
        m_stream.read(static_cast<char*>(destination), wanted);
        numRead = static_cast<std::size_t>(m_stream.gcount());
        m_stream.clear();
    }
    m_position += numRead;
    return numRead;
}

void reportNoMemoryForSection(ErrorHandler* errorHandler) {
    errorHandler->fatalError(true, "ERROR: Failed to allocate memory for data section\n");
}

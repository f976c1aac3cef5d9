#pragma once

// Little-endian numbers in a run of bytes, whatever the host's byte order and alignment. Compilers make
// single loads and stores of these.

#include <cstdint>

inline std::uint16_t readLittleEndian16(const unsigned char* bytes) {
    return static_cast<std::uint16_t>(bytes[0] | bytes[1] << 8);
}

inline std::uint32_t readLittleEndian32(const unsigned char* bytes) {
    return static_cast<std::uint32_t>(bytes[0]) | static_cast<std::uint32_t>(bytes[1]) << 8 |
           static_cast<std::uint32_t>(bytes[2]) << 16 | static_cast<std::uint32_t>(bytes[3]) << 24;
}

inline std::uint64_t readLittleEndian64(const unsigned char* bytes) {
    return readLittleEndian32(bytes) | static_cast<std::uint64_t>(readLittleEndian32(bytes + 4)) << 32;
}

inline void writeLittleEndian16(unsigned char* bytes, std::uint16_t value) {
    bytes[0] = static_cast<unsigned char>(value);
    bytes[1] = static_cast<unsigned char>(value >> 8);
}

inline void writeLittleEndian32(unsigned char* bytes, std::uint32_t value) {
    writeLittleEndian16(bytes, static_cast<std::uint16_t>(value));
    writeLittleEndian16(bytes + 2, static_cast<std::uint16_t>(value >> 16));
}

inline void writeLittleEndian64(unsigned char* bytes, std::uint64_t value) {
    writeLittleEndian32(bytes, static_cast<std::uint32_t>(value));
    writeLittleEndian32(bytes + 4, static_cast<std::uint32_t>(value >> 32));
}

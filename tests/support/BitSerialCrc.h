#pragma once

#include <cstdint>
#include <string_view>

// The container's check sum as it is defined, bit by bit: what the library's own is held against, and what
// the builder of images uses.
inline std::uint32_t bitSerialCrc(std::string_view message) {
    std::uint32_t crc = 0;
    for (std::size_t byte = 0; byte < message.size(); ++byte) {
        for (unsigned bit = 0; bit < 8; ++bit) {
            const bool topBit = (crc & 0x80000000) != 0;
            const bool veryLast = byte + 1 == message.size() && bit == 7;
            crc = crc << 1 | (static_cast<unsigned char>(message[byte]) >> bit & 1);
            if (topBit && !veryLast)
                crc ^= 0x04C11DB7;
        }
    }
    return crc;
}

#pragma once

// Words as bytes, lowest byte first, whatever the host's own order.

inline void shortToBytes(unsigned short value, unsigned char* bytes) {
    bytes[0] = static_cast<unsigned char>(value);
    bytes[1] = static_cast<unsigned char>(value >> 8);
}

inline void intToBytes(unsigned value, unsigned char* bytes) {
    for (unsigned i = 0; i < 4; ++i)
        bytes[i] = static_cast<unsigned char>(value >> (8 * i));
}

inline unsigned short bytesToShort(const unsigned char* bytes) {
    return static_cast<unsigned short>(bytes[0] | bytes[1] << 8);
}

inline unsigned bytesToInt(const unsigned char* bytes) {
    unsigned value = 0;
    for (unsigned i = 0; i < 4; ++i)
        value |= static_cast<unsigned>(bytes[i]) << (8 * i);
    return value;
}

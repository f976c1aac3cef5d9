#pragma once

#include <cstddef>
#include <cstdint>

// The container's own check sum over a sector. It is no published CRC-32, and none may take its place:
//
//   R starts at 0. The bits of the message come byte by byte, bit 0 of each byte first. For each bit, R is
//   shifted left by one and the bit comes in at the bottom; if the bit that left at the top was 1, R is
//   XORed with 0x04C11DB7. For the very last bit of the message that XOR is left out, whatever left.
//
// An empty message gives 0. Since the last XOR is missing, the bit that leaves there has no effect: bit 7 of
// the fifth byte from the end can be flipped unnoticed. That is part of the format.
std::uint32_t computeZBCrc(const void* message, std::size_t numBytes);

// The same of a message that comes in pieces.
class ZBCrc {
public:
    void add(const void* bytes, std::size_t numBytes);

    // Of all bytes so far.
    std::uint32_t value() const;

private:
    std::uint32_t m_register = 0; // after all bytes but the last one
    unsigned char m_lastByte = 0; // not yet in the register: its last bit may be the very last
    bool m_isEmpty = true;
};

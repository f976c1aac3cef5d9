#include "infr_libs/ZelmBinaryHandler/ZBCrc.h"

#include "infr_libs/ZelmBinaryHandler/LittleEndian.h"

#include <array>

// The register is kept mirrored: its bit 31 stands for bit 0 of the definition's R, so the bit that leaves
// next is bit 0. Bytes come with bit 0 first, so a message word read as a little-endian number is a register
// as it stands, no bit to turn round.
//
// The definition is linear: what a register becomes after some more bytes is the XOR of what each of its
// bytes becomes over as many zero bytes, and of the bytes that came in. The tables hold the former. They are
// worked out here, by the definition's own step.

namespace {

constexpr std::uint32_t mirror(std::uint32_t value) {
    std::uint32_t mirrored = 0;
    for (int i = 0; i < 32; ++i)
        mirrored |= (value >> i & 1) << (31 - i);
    return mirrored;
}

constexpr std::uint32_t s_mirroredPolynomial = mirror(0x04C11DB7);

constexpr std::uint32_t shiftInWithoutXor(std::uint32_t reg, std::uint32_t bit) {
    return reg >> 1 | bit << 31;
}

constexpr std::uint32_t shiftIn(std::uint32_t reg, std::uint32_t bit) {
    return shiftInWithoutXor(reg, bit) ^ ((reg & 1) != 0 ? s_mirroredPolynomial : 0);
}

constexpr std::size_t s_blockSize = 16; // bytes taken in one step
constexpr std::size_t s_wordSize = 4;   // bytes of the register

// s_after[k][b]: a register with b in the byte that leaves next, after k + 1 zero bytes.
constexpr auto s_after = [] {
    std::array<std::array<std::uint32_t, 256>, s_blockSize> after{};
    for (std::uint32_t b = 0; b < 256; ++b) {
        after[0][b] = b;
        for (int i = 0; i < 8; ++i)
            after[0][b] = shiftIn(after[0][b], 0);
    }
    for (std::size_t k = 1; k < s_blockSize; ++k) {
        for (std::size_t b = 0; b < 256; ++b) {
            const std::uint32_t before = after[k - 1][b];
            after[k][b] = before >> 8 ^ after[0][before & 0xff];
        }
    }
    return after;
}();

// The register after that many zero bytes, at least as many as it has itself.
template<std::size_t numBytes>
std::uint32_t afterZeros(std::uint32_t reg) {
    static_assert(numBytes >= s_wordSize && numBytes <= s_blockSize);
    return s_after[numBytes - 1][reg & 0xff] ^ s_after[numBytes - 2][reg >> 8 & 0xff] ^
           s_after[numBytes - 3][reg >> 16 & 0xff] ^ s_after[numBytes - 4][reg >> 24];
}

std::uint32_t shiftInBlock(std::uint32_t reg, const unsigned char* block) {
    return afterZeros<16>(reg) ^ afterZeros<12>(readLittleEndian32(block)) ^
           afterZeros<8>(readLittleEndian32(block + 4)) ^ afterZeros<4>(readLittleEndian32(block + 8)) ^
           readLittleEndian32(block + 12);
}

std::uint32_t shiftInByte(std::uint32_t reg, unsigned char byte) {
    return reg >> 8 ^ s_after[0][reg & 0xff] ^ static_cast<std::uint32_t>(byte) << 24;
}

std::uint32_t shiftInLastByte(std::uint32_t reg, unsigned char byte) {
    for (int i = 0; i < 7; ++i)
        reg = shiftIn(reg, byte >> i & 1);
    return shiftInWithoutXor(reg, byte >> 7); // the last bit comes in without the XOR: wanted
}

} // namespace

void ZBCrc::add(const void* bytes, std::size_t numBytes) {
    if (numBytes == 0)
        return;
    if (!m_isEmpty)
        m_register = shiftInByte(m_register, m_lastByte);
    const auto* next = static_cast<const unsigned char*>(bytes);
    const unsigned char* const last = next + (numBytes - 1);

    std::uint32_t reg = m_register;
    for (; static_cast<std::size_t>(last - next) >= s_blockSize; next += s_blockSize)
        reg = shiftInBlock(reg, next);
    for (; next != last; ++next)
        reg = shiftInByte(reg, *next);
    m_register = reg;
    m_lastByte = *last;
    m_isEmpty = false;
}

std::uint32_t ZBCrc::value() const {
    return m_isEmpty ? 0 : mirror(shiftInLastByte(m_register, m_lastByte));
}

std::uint32_t computeZBCrc(const void* message, std::size_t numBytes) {
    ZBCrc crc;
    crc.add(message, numBytes);
    return crc.value();
}

#include "tools/zetool/Crc32.h"

#include <array>
#include <cstddef>

namespace {

constexpr std::uint32_t s_polynomial = 0xedb88320; // 0x04c11db7, with bit 0 of a byte first
constexpr std::size_t s_slices = 8;

using Table = std::array<std::uint32_t, 256>;

// Of each slice, what a byte leaves behind after so many further zero bytes.
constexpr std::array<Table, s_slices> s_tables = [] {
    std::array<Table, s_slices> tables = {};
    for (std::uint32_t byte = 0; byte < 256; ++byte) {
        std::uint32_t left = byte;
        for (int bit = 0; bit < 8; ++bit)
            left = (left & 1) != 0 ? left >> 1 ^ s_polynomial : left >> 1;
        tables[0][byte] = left;
    }
    for (std::size_t slice = 1; slice < s_slices; ++slice)
        for (std::size_t byte = 0; byte < 256; ++byte) {
            const std::uint32_t before = tables[slice - 1][byte];
            tables[slice][byte] = before >> 8 ^ tables[0][before & 0xff];
        }
    return tables;
}();

} // namespace

void Crc32::add(std::string_view bytes) {
    const auto byte = [&](std::size_t index) { return static_cast<unsigned char>(bytes[index]); };
    std::uint32_t left = m_register;
    while (bytes.size() >= s_slices) {
        std::uint32_t next = 0;
        for (std::size_t i = 0; i < s_slices; ++i) {
            const std::uint32_t ahead = i < 4 ? left >> 8 * i : 0;
            next ^= s_tables[s_slices - 1 - i][(byte(i) ^ ahead) & 0xff];
        }
        left = next;
        bytes.remove_prefix(s_slices);
    }
    for (std::size_t i = 0; i < bytes.size(); ++i)
        left = left >> 8 ^ s_tables[0][(left ^ byte(i)) & 0xff];
    m_register = left;
}

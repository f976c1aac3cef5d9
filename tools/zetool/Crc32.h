#pragma once

#include <cstdint>
#include <string_view>

// The CRC-32 of IEEE 802.3, as gzip and PNG have it too: not that of a container's sectors.
class Crc32 {
public:
    void add(std::string_view bytes);

    // Of all bytes so far.
    std::uint32_t value() const { return ~m_register; }

private:
    std::uint32_t m_register = 0xffffffff;
};

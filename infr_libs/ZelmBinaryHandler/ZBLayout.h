#pragma once

// The numbers of the container's layout, for this library and for those who walk a file without loading it.
// They are those of files and must never change. All offsets and sizes are in bytes.

#include "infr_libs/ZelmBinaryHandler/LittleEndian.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace zblayout {

// File header: tag, version, two reserved bytes.
inline constexpr char s_tag[] = {'Z', 'E', 'L', 'M'};
inline constexpr unsigned char s_version[] = {1, 0}; // low byte, high byte
inline constexpr std::size_t s_versionOffset = 4;
inline constexpr std::size_t s_versionEnd = 6;
inline constexpr std::size_t s_fileHeaderSize = 8;

// Sector header: type, two reserved bytes, number of bytes that follow (0 without a payload).
inline constexpr std::size_t s_typeOffset = 0;
inline constexpr std::size_t s_sizeOffset = 4;
inline constexpr std::size_t s_sectorHeaderSize = 12;

// With a payload there follow: a pad word (number of padding bytes, three reserved bytes), the payload,
// the padding, the CRC.
inline constexpr std::size_t s_padOffset = 12;
inline constexpr std::size_t s_padWordSize = 4;
inline constexpr std::size_t s_maxPad = 3;
inline constexpr std::size_t s_payloadOffset = 16;
inline constexpr std::size_t s_crcSize = 4;

// Image prefix and control record: node, core, address. Node descriptor: node, two reserved bytes, part
// number.
inline constexpr std::size_t s_nodeOffset = 0;
inline constexpr std::size_t s_coreOffset = 2;
inline constexpr std::size_t s_addressOffset = 4;
inline constexpr std::size_t s_partNumberOffset = 4;
inline constexpr std::size_t s_recordSize = 12;

// Padding bytes behind a payload of this length.
constexpr std::uint64_t padOf(std::uint64_t length) {
    return -length & s_maxPad;
}

constexpr std::uint64_t roundUp(std::uint64_t numBytes) {
    return numBytes + padOf(numBytes);
}

inline void writeRecord(unsigned char* record, std::uint16_t node, std::uint16_t core,
                        std::uint64_t address) {
    writeLittleEndian16(record + s_nodeOffset, node);
    writeLittleEndian16(record + s_coreOffset, core);
    writeLittleEndian64(record + s_addressOffset, address);
}

} // namespace zblayout

#pragma once

// The codes and texts of the container's failures, and its limit.

#include <cstdint>

namespace zbinternals {

struct Error {
    std::int32_t code;
    const char* text;
};

// Code 10 doesn't exist. Codes 11 ("Not an ELF file.") and 12 ("ELF file has incorrect endianness.") were
// always replaced by the row below before a caller could see them: wanted, so they have no row.
inline constexpr Error s_badTag{1, "Header tag incorrect"};
inline constexpr Error s_badVersion{2, "Header version incorrect"};
inline constexpr Error s_outOfMemory{3, "Out of memory error detected"};
inline constexpr Error s_outOfMemoryForImage{3, "Out of memory."};
inline constexpr Error s_cutOff{4, "Not enough space in the buffer to hold the data"};
inline constexpr Error s_cantOpenForWriting{5, "Failed to open file for writing"};
inline constexpr Error s_cantWrite{6, "Failed to write data"};
inline constexpr Error s_bufferTooSmall{7, "Buffer too small"};
inline constexpr Error s_badCrc{8, "Detected crc error"};
inline constexpr Error s_cantOpenForReading{9, "Could not open input file"};
inline constexpr Error s_notElf{11, "File was not an ELF file."};
inline constexpr Error s_badSegments{13, "Bad segment size in ELF file."};

// Neither a payload nor a file can be larger, in both word sizes.
inline constexpr std::uint64_t s_maxBytes = 0x7fffffff;

} // namespace zbinternals

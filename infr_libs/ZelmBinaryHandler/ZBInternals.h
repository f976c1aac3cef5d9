#pragma once

// What the files of this library share, and nobody else needs: the errors, the memory, the list.

#include "infr_libs/ZelmBinaryHandler/ZBHandler.h"

#include <cstdlib>
#include <memory>

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

inline void fail(ZBHandler& handle, const Error& error) {
    handle.errorCode = error.code;
    handle.errorMessage = error.text;
}

// Neither a payload nor a file can be larger, in both word sizes.
inline constexpr std::uint64_t s_maxBytes = 0x7fffffff;

struct FreeBytes {
    void operator()(unsigned char* bytes) const { std::free(bytes); }
};

// Bytes made by malloc: what a sector's `data` takes over.
using Bytes = std::unique_ptr<unsigned char[], FreeBytes>;

// Null when out of memory, and for more than `s_maxBytes`. No bytes are something, not null.
Bytes allocateBytes(std::uint64_t numBytes);
Bytes allocateZeroedBytes(std::uint64_t numBytes);

// Links a new sector at the list's end, with room for its payload, and returns it. Null with error 3 when out
// of memory; a sector whose payload couldn't be made is linked all the same.
ZBSectorHolder_tag* appendSector(ZBHandler& handle, std::int32_t type, std::uint64_t length);

} // namespace zbinternals

// What left a handle's fields, by a new file name or an unlinked sector without a payload, while a caller may
// still point to it: kept until the handle goes.
struct ZBRetired_tag {
    ZBSectorHolder_tag* sector = nullptr; // or null
    char* filename = nullptr;             // or null
    ZBRetired_tag* next = nullptr;
};

namespace zbinternals {

void retire(ZBHandler& handle, const ZBRetired_tag& what);

} // namespace zbinternals

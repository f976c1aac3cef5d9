#pragma once

// What the files of this library share, and nobody else needs: the memory and the list.

#include "infr_libs/ZelmBinaryHandler/ZBErrors.h"
#include "infr_libs/ZelmBinaryHandler/ZBHandler.h"

#include <cstdlib>
#include <memory>

namespace zbinternals {

inline void fail(ZBHandler& handle, const Error& error) {
    handle.errorCode = error.code;
    handle.errorMessage = error.text;
}

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

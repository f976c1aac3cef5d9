#pragma once

// The heads of a container file and of its sectors, as the loaders take them. For those who walk a file too
// large to be loaded: what loading would refuse, they refuse at the same place, with the same message.

#include "infr_libs/ZelmBinaryHandler/ZBErrors.h"

#include <cstddef>
#include <cstdint>

// What is wrong with the first bytes of a file, or null. `numBytes` is how many the file has, or any number
// from `zblayout::s_fileHeaderSize` on.
const zbinternals::Error* findZBHeaderError(const unsigned char* bytes, std::size_t numBytes);

// What the first bytes of a sector say. Offsets are from the sector's start.
struct ZBSectorHead {
    std::int32_t type = 0;
    std::uint64_t size = 0;      // the field of that name: 0 without a payload
    std::uint64_t length = 0;    // of the payload, which starts at `zblayout::s_payloadOffset`
    std::uint64_t crcOffset = 0; // 0 without a payload
    std::uint64_t numBytes = 0;  // that the file must have from the sector's start on
    unsigned pad = 0;            // number of padding bytes
};

// False where the head contradicts itself, or asks for more than the `left` bytes that the file has from the
// sector's start on: s_cutOff. `start` must hold `left` bytes, or `zblayout::s_payloadOffset` of them.
bool readZBSectorHead(const unsigned char* start, std::uint64_t left, ZBSectorHead* head);

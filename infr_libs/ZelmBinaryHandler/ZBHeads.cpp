#include "infr_libs/ZelmBinaryHandler/ZBHeads.h"

#include "infr_libs/ZelmBinaryHandler/ZBLayout.h"

#include <algorithm>

using namespace zbinternals;
using namespace zblayout;

const Error* findZBHeaderError(const unsigned char* bytes, std::size_t numBytes) {
    if (numBytes < sizeof s_tag || std::memcmp(bytes, s_tag, sizeof s_tag) != 0)
        return &s_badTag;
    if (numBytes < s_versionEnd || std::memcmp(bytes + s_versionOffset, s_version, sizeof s_version) != 0)
        return &s_badVersion;
    return nullptr; // the reserved bytes may hold anything, and may even be missing
}

bool readZBSectorHead(const unsigned char* start, std::uint64_t left, ZBSectorHead* head) {
    if (left < s_sectorHeaderSize)
        return false;
    *head = {};
    head->type = readLittleEndian16(start + s_typeOffset);
    head->size = readLittleEndian64(start + s_sizeOffset);
    head->numBytes = s_sectorHeaderSize;
    if (head->size == 0)
        return true;

    // `size` is held against what is left before anything is added to it: no sum below can wrap.
    if (head->size > left - s_sectorHeaderSize || head->size < s_padWordSize + s_crcSize)
        return false;
    head->pad = start[s_padOffset];
    if (head->pad > s_maxPad || head->size < s_padWordSize + head->pad + s_crcSize)
        return false;
    head->length = head->size - (s_padWordSize + head->pad + s_crcSize);
    // Any `pad` that fits is taken, but room is asked for the padding that the length would have.
    if (roundUp(head->length) + s_crcSize > left - s_payloadOffset)
        return false;
    head->crcOffset = s_payloadOffset + head->length + head->pad;
    head->numBytes =
        std::max(head->crcOffset + s_crcSize, s_payloadOffset + roundUp(head->length) + s_crcSize);
    return true;
}

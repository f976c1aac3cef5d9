#include "infr_libs/ZelmBinaryHandler/ZBCrc.h"
#include "infr_libs/ZelmBinaryHandler/ZBHandler.h"
#include "infr_libs/ZelmBinaryHandler/ZBHeads.h"
#include "infr_libs/ZelmBinaryHandler/ZBInternals.h"
#include "infr_libs/ZelmBinaryHandler/ZBLayout.h"

#include <algorithm>

using namespace zbinternals;
using namespace zblayout;

namespace {

struct Buffer {
    const unsigned char* bytes;
    std::size_t size;
};

// Fills a sector that was made for the one that starts there, and returns the CRC of what that has in front
// of its own. Copying and the CRC take turns by pieces that stay in the processor's cache.
std::uint32_t copyPayload(ZBSectorHolder_tag& sector, const unsigned char* start, std::size_t pad) {
    constexpr std::size_t pieceSize = std::size_t{64} << 10;
    ZBCrc crc;
    crc.add(start, s_payloadOffset);
    const auto length = static_cast<std::size_t>(sector.length);
    const unsigned char* const payload = start + s_payloadOffset;
    for (std::size_t done = 0; done < length; done += pieceSize) {
        const std::size_t numBytes = std::min(pieceSize, length - done);
        std::memcpy(sector.data + done, payload + done, numBytes);
        crc.add(payload + done, numBytes);
    }
    crc.add(payload + length, pad);
    return crc.value();
}

// Adds the sector at an offset that lies in the file. Returns the offset behind it, which may lie behind the
// file's end by its rounding; or 0 with an error in the handle.
std::uint64_t readSector(ZBHandler& handle, const Buffer& file, std::uint64_t offset) {
    const unsigned char* const start = file.bytes + offset;
    ZBSectorHead head;
    if (!readZBSectorHead(start, file.size - offset, &head)) {
        fail(handle, s_cutOff);
        return 0;
    }
    if (head.size == 0)
        return addZBSector(&handle, head.type, 0, nullptr) ? offset + s_sectorHeaderSize : 0;

    ZBSectorHolder_tag* sector = appendSector(handle, head.type, head.length);
    if (!sector)
        return 0;
    const std::uint32_t storedCrc = readLittleEndian32(start + head.crcOffset);
    const std::uint32_t crc = copyPayload(*sector, start, head.pad);
    // A stored 0 waives the check: wanted.
    if (storedCrc != 0 && storedCrc != crc) {
        fail(handle, s_badCrc);
        return 0;
    }
    sector->crc = storedCrc;
    return roundUp(offset + head.crcOffset + s_crcSize);
}

// The number of bytes in a stream, or -1 when it can't be told or is too large.
long sizeOfStream(std::FILE* stream) {
    if (std::fseek(stream, 0, SEEK_END) != 0)
        return -1;
    const long size = std::ftell(stream);
    if (size < 0 || static_cast<std::uint64_t>(size) > s_maxBytes)
        return -1; // a folder opens too, and claims the largest size there is
    return std::fseek(stream, 0, SEEK_SET) == 0 ? size : -1;
}

} // namespace

ZBHandler* loadZBFromMemory(const void* buffer, std::size_t numBytes) {
    ZBHandler* handle = createZBHandler();
    if (!handle)
        return nullptr;
    handle->errorMessage = "";
    const Buffer file{static_cast<const unsigned char*>(buffer), buffer ? numBytes : 0};
    if (const Error* error = findZBHeaderError(file.bytes, file.size)) {
        fail(*handle, *error);
        return handle;
    }
    std::uint64_t offset = s_fileHeaderSize;
    while (offset < file.size) {
        offset = readSector(*handle, file, offset);
        if (offset == 0)
            break;
    }
    return handle;
}

ZBHandler* loadZBFromHandle(std::FILE* stream) {
    const long size = sizeOfStream(stream);
    if (size < 0)
        return nullptr;
    const auto numBytes = static_cast<std::size_t>(size);
    const Bytes file = allocateBytes(numBytes);
    if (!file || std::fread(file.get(), 1, numBytes, stream) != numBytes)
        return nullptr;
    return loadZBFromMemory(file.get(), numBytes);
}

ZBHandler* loadZBFromFile(const char* path) {
    std::FILE* stream = std::fopen(path, "r");
    ZBHandler* handle = stream ? loadZBFromHandle(stream) : nullptr;
    if (!handle) {
        handle = createZBHandler();
        if (handle)
            fail(*handle, s_cantOpenForReading);
    }
    if (stream) {
        std::fclose(stream);
        if (handle)
            setZBHandlerFilename(handle, path);
    }
    return handle;
}

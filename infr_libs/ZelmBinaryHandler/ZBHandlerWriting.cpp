#include "infr_libs/ZelmBinaryHandler/ZBCrc.h"
#include "infr_libs/ZelmBinaryHandler/ZBHandler.h"
#include "infr_libs/ZelmBinaryHandler/ZBInternals.h"
#include "infr_libs/ZelmBinaryHandler/ZBLayout.h"

#include <limits>

using namespace zbinternals;
using namespace zblayout;

namespace {

// Sizes that would wrap stay at the largest number: too large for a file either way.
constexpr std::uint64_t s_mostBytes = std::numeric_limits<std::uint64_t>::max();

std::uint64_t sum(std::uint64_t a, std::uint64_t b) {
    return b > s_mostBytes - a ? s_mostBytes : a + b;
}

// Bytes that a sector takes in a file.
std::uint64_t fileSizeOf(const ZBSectorHolder_tag& sector) {
    if (sector.length == 0)
        return s_sectorHeaderSize;
    return sum(s_payloadOffset + s_crcSize, sum(sector.length, padOf(sector.length)));
}

// Where the next bytes go, and the bytes left behind it.
class Output {
public:
    Output(unsigned char* next, std::size_t left) : m_next(next), m_left(left) {}

    // Room for that many bytes, which the caller fills; or null.
    unsigned char* take(std::uint64_t numBytes) {
        if (numBytes > m_left)
            return nullptr;
        unsigned char* taken = m_next;
        m_next += numBytes;
        m_left -= static_cast<std::size_t>(numBytes);
        return taken;
    }

    unsigned char* position() const { return m_next; }

private:
    unsigned char* m_next;
    std::size_t m_left;
};

// Each of the following returns null, or the error.

const Error* writeFileHeader(Output& output) {
    unsigned char* header = output.take(s_fileHeaderSize);
    if (!header)
        return &s_bufferTooSmall;
    std::memset(header, 0, s_fileHeaderSize);
    std::memcpy(header, s_tag, sizeof s_tag);
    std::memcpy(header + s_versionOffset, s_version, sizeof s_version);
    return nullptr;
}

const Error* writeSector(Output& output, ZBSectorHolder_tag& sector) {
    if (sector.length != 0 && !sector.data)
        return &s_outOfMemory; // the payload could never be made

    unsigned char* const start = output.take(s_sectorHeaderSize);
    if (!start)
        return &s_bufferTooSmall;
    std::memset(start, 0, s_sectorHeaderSize);
    writeLittleEndian16(start + s_typeOffset, static_cast<std::uint16_t>(sector.type));
    if (sector.length == 0)
        return nullptr;
    const std::uint64_t pad = padOf(sector.length);
    writeLittleEndian64(start + s_sizeOffset, s_padWordSize + sector.length + pad + s_crcSize);

    unsigned char* const padWord = output.take(s_padWordSize);
    if (!padWord)
        return &s_bufferTooSmall;
    writeLittleEndian32(padWord, static_cast<std::uint32_t>(pad));

    unsigned char* const payload = output.take(sum(sector.length, pad));
    if (!payload)
        return &s_bufferTooSmall;
    std::memcpy(payload, sector.data, static_cast<std::size_t>(sector.length));
    std::memset(payload + sector.length, 0, static_cast<std::size_t>(pad));

    sector.crc = computeZBCrc(start, static_cast<std::size_t>(output.position() - start));
    unsigned char* const crc = output.take(s_crcSize);
    if (!crc)
        return &s_bufferTooSmall;
    writeLittleEndian32(crc, sector.crc);
    return nullptr;
}

const Error* writeContainer(Output& output, const ZBHandler& handle) {
    if (const Error* error = writeFileHeader(output))
        return error;
    for (ZBSectorHolder_tag* sector = handle.firstSector; sector; sector = sector->next) {
        if (const Error* error = writeSector(output, *sector))
            return error;
    }
    return nullptr;
}

} // namespace

std::uint64_t getZBFileSize(const ZBHandler* handle) {
    std::uint64_t size = s_fileHeaderSize;
    for (const ZBSectorHolder_tag* sector = handle->firstSector; sector; sector = sector->next)
        size = sum(size, fileSizeOf(*sector));
    return size;
}

std::int32_t writeZBToMemory(ZBHandler* handle, void* buffer, std::int32_t bufferSize) {
    auto* const start = static_cast<unsigned char*>(buffer);
    Output output(start, bufferSize > 0 ? static_cast<std::size_t>(bufferSize) : 0);
    if (const Error* error = writeContainer(output, *handle)) {
        fail(*handle, *error);
        return -1;
    }
    return static_cast<std::int32_t>(output.position() - start);
}

int writeZBToHandle(ZBHandler* handle, std::FILE* stream) {
    const std::uint64_t size = getZBFileSize(handle);
    if (size > s_maxBytes) {
        fail(*handle, s_cantWrite);
        return -1;
    }
    const Bytes file = allocateBytes(size);
    if (!file) {
        fail(*handle, s_outOfMemory);
        return -1;
    }
    const std::int32_t numBytes = writeZBToMemory(handle, file.get(), static_cast<std::int32_t>(size));
    if (numBytes < 0)
        return numBytes;
    // A full disk shows when the stream's buffer goes out, so it goes out here.
    const auto toWrite = static_cast<std::size_t>(numBytes);
    if (std::fwrite(file.get(), 1, toWrite, stream) != toWrite || std::fflush(stream) != 0) {
        fail(*handle, s_cantWrite);
        return -1;
    }
    return 0;
}

int writeZBToFile(ZBHandler* handle, const char* path) {
    if (path != handle->filename)
        setZBHandlerFilename(handle, path);
    std::FILE* stream = std::fopen(path, "w");
    if (!stream) {
        fail(*handle, s_cantOpenForWriting);
        return -1;
    }
    int result = writeZBToHandle(handle, stream);
    if (std::fclose(stream) != 0 && result == 0) {
        fail(*handle, s_cantWrite);
        result = -1;
    }
    return result;
}

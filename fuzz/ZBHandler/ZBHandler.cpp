// Loads the input as a container, looks at everything in it, edits it, writes it and loads it again. What was
// written must load without an error, to the same sectors, and be written the same.

#include "infr_libs/ZelmBinaryHandler/ZBHandler.h"
#include "infr_libs/ZelmBinaryHandler/LittleEndian.h"
#include "infr_libs/ZelmBinaryHandler/ZBCrc.h"
#include "tests/support/BitSerialCrc.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace {

void require(bool condition) {
    if (!condition)
        std::abort();
}

// What a loader may report of a buffer.
void requireDocumented(const ZBHandler& handle) {
    static const struct {
        std::int32_t code;
        const char* text;
    } rows[] = {
        {0, ""},
        {1, "Header tag incorrect"},
        {2, "Header version incorrect"},
        {4, "Not enough space in the buffer to hold the data"},
        {8, "Detected crc error"},
    };
    for (const auto& row : rows) {
        if (row.code == handle.errorCode && std::strcmp(row.text, handle.errorMessage) == 0)
            return;
    }
    std::abort();
}

std::uint64_t lookAt(const ZBHandler* handle) {
    std::uint64_t seen = 0;
    for (const ZBSectorHolder_tag* sector = getFirstSector(handle); sector;
         sector = getNextSector(handle, sector)) {
        seen += getSectorNodeNum(sector) + getSectorCoreNum(sector) + getSectorAddress(sector);
        for (std::uint64_t i = 0; i < sector->length; ++i)
            seen += sector->data[i];
        if (sectorIsImage(sector)) {
            const unsigned char* image = getSectorImageData(sector);
            for (std::uint64_t i = 0; i < getSectorImageNumBytes(sector); ++i)
                seen += image[i];
        }
        if (sector->type == ZBSEC_NODEDESC)
            seen += getSectorNodeDescriptorNodeNum(sector) + getSectorNodeDescriptorPartNumber(sector);
    }
    return seen;
}

std::vector<char> write(ZBHandler* handle) {
    std::vector<char> file(static_cast<std::size_t>(getZBFileSize(handle)));
    const auto size = static_cast<std::int32_t>(file.size());
    require(writeZBToMemory(handle, file.data(), size - 1) == -1);
    require(writeZBToMemory(handle, file.data(), size) == size);
    return file;
}

void requireSameSectors(const ZBHandler* left, const ZBHandler* right) {
    const ZBSectorHolder_tag* a = getFirstSector(left);
    const ZBSectorHolder_tag* b = getFirstSector(right);
    for (; a && b; a = a->next, b = b->next) {
        require(a->type == b->type && a->length == b->length);
        require(a->length == 0 || std::memcmp(a->data, b->data, static_cast<std::size_t>(a->length)) == 0);
    }
    require(!a && !b);
}

void requireStable(ZBHandler* handle) {
    const std::vector<char> file = write(handle);
    ZBHandler* again = loadZBFromMemory(file.data(), file.size());
    require(again->errorCode == 0);
    requireSameSectors(handle, again);
    require(write(again) == file);
    deleteZBHandler(again);
}

// An ELF file of a hundred bytes may span 2 GiB of addresses, and filling them takes its time. Here all of a
// file's segments keep to the 64 KiB that the first one begins in.
void bringSegmentsTogether(const ZBSectorHolder_tag& sector) {
    constexpr std::size_t headerSize = 52;
    constexpr std::size_t entrySize = 32;
    constexpr std::size_t addressOffset = 8;
    if (sector.type != ZBSEC_ELF || getSectorImageNumBytes(&sector) < headerSize)
        return;
    unsigned char* const elf = getSectorImageData(&sector);
    const std::uint64_t table = readLittleEndian32(elf + 0x1c);
    const std::uint64_t numEntries = readLittleEndian16(elf + 0x2c);
    for (std::uint64_t i = 1; i < numEntries; ++i) {
        const std::uint64_t entry = table + i * entrySize;
        if (entry + entrySize > getSectorImageNumBytes(&sector))
            return;
        std::memcpy(elf + entry + addressOffset + 2, elf + table + addressOffset + 2, 2);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::size_t checked = std::min<std::size_t>(size, 200); // the definition is slow
    require(computeZBCrc(data, checked) == bitSerialCrc({reinterpret_cast<const char*>(data), checked}));

    ZBHandler* handle = loadZBFromMemory(data, size);
    requireDocumented(*handle);
    require(getZBFileSize(handle) <= std::max<std::size_t>(size, 8)); // nothing that wasn't in the input
    lookAt(handle);
    requireStable(handle);

    for (const ZBSectorHolder_tag* sector = handle->firstSector; sector; sector = sector->next)
        bringSegmentsTogether(*sector);
    banishElves(handle);
    lookAt(handle);
    requireStable(handle);

    addOrSetNodeDescZBSector(handle, static_cast<std::uint32_t>(size), 1);
    removeLongZBConfigs(handle);
    addEndZBSector(handle);
    removeEndZBSector(handle);
    addEndZBSector(handle);
    lookAt(handle);
    requireStable(handle);
    deleteZBHandler(handle);
    return 0;
}

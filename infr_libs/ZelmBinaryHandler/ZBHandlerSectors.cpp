#include "infr_libs/ZelmBinaryHandler/ZBHandler.h"
#include "infr_libs/ZelmBinaryHandler/ZBLayout.h"

#include <cstdlib>

using namespace zblayout;

// The end of a process that asks a sector for what its type doesn't have. Standard output and status 0 are
// wanted.
#define CHECK_SECTOR_TYPE(condition)                                                                         \
    do {                                                                                                     \
        if (!(condition)) {                                                                                  \
            std::printf("Assertion Failed : %s:%d\n", __FILE__, __LINE__);                                   \
            std::exit(0);                                                                                    \
        }                                                                                                    \
    } while (false)

namespace {

bool hasRecord(const ZBSectorHolder_tag& sector) {
    return sector.data && sector.length >= s_recordSize;
}

std::uint16_t readRecord16(const ZBSectorHolder_tag& sector, std::size_t offset) {
    return hasRecord(sector) ? readLittleEndian16(sector.data + offset) : std::uint16_t{0};
}

std::uint64_t readRecord64(const ZBSectorHolder_tag& sector, std::size_t offset) {
    return hasRecord(sector) ? readLittleEndian64(sector.data + offset) : 0;
}

} // namespace

ZBSectorHolder_tag* getFirstSector(const ZBHandler* handle) {
    return handle->firstSector;
}

ZBSectorHolder_tag* getNextSector(const ZBHandler*, const ZBSectorHolder_tag* sector) {
    return sector ? sector->next : nullptr;
}

std::uint16_t getSectorNodeNum(const ZBSectorHolder_tag* sector) {
    return readRecord16(*sector, s_nodeOffset);
}

std::uint16_t getSectorCoreNum(const ZBSectorHolder_tag* sector) {
    return readRecord16(*sector, s_coreOffset);
}

std::uint64_t getSectorAddress(const ZBSectorHolder_tag* sector) {
    return readRecord64(*sector, s_addressOffset);
}

bool sectorIsImage(const ZBSectorHolder_tag* sector) {
    switch (sector->type) {
    case ZBSEC_BINARY:
    case ZBSEC_ELF:
    case ZBSEC_OTP:
    case ZBSEC_OTP_EXTENDED:
        return true;
    default:
        return false;
    }
}

std::uint64_t getSectorImageNumBytes(const ZBSectorHolder_tag* sector) {
    CHECK_SECTOR_TYPE(sectorIsImage(sector));
    return hasRecord(*sector) ? sector->length - s_recordSize : 0;
}

unsigned char* getSectorImageData(const ZBSectorHolder_tag* sector) {
    CHECK_SECTOR_TYPE(sectorIsImage(sector));
    return hasRecord(*sector) ? sector->data + s_recordSize : nullptr;
}

std::uint16_t getSectorNodeDescriptorNodeNum(const ZBSectorHolder_tag* sector) {
    CHECK_SECTOR_TYPE(sector->type == ZBSEC_NODEDESC);
    return readRecord16(*sector, s_nodeOffset);
}

std::uint64_t getSectorNodeDescriptorPartNumber(const ZBSectorHolder_tag* sector) {
    CHECK_SECTOR_TYPE(sector->type == ZBSEC_NODEDESC);
    return readRecord64(*sector, s_partNumberOffset);
}

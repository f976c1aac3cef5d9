#include "infr_libs/ZelmBinaryHandler/ZBHandler.h"
#include "infr_libs/ZelmBinaryHandler/ZBInternals.h"

using namespace zbinternals;

namespace {

void removeSectors(ZBHandler& handle, std::int32_t type) {
    ZBSectorHolder_tag** link = &handle.firstSector;
    handle.lastSector = nullptr;
    while (ZBSectorHolder_tag* sector = *link) {
        if (sector->type != type) {
            handle.lastSector = sector;
            link = &sector->next;
            continue;
        }
        *link = sector->next;
        if (sector->data) {
            std::free(sector->data);
            delete sector;
        } else {
            retire(handle, {.sector = sector}); // unlinked, but not released: wanted
        }
    }
}

} // namespace

int removeLongZBConfigs(ZBHandler* handle) {
    removeSectors(*handle, ZBSEC_SYSCONFIG);
    return 0;
}

int removeEndZBSector(ZBHandler* handle) {
    removeSectors(*handle, ZBSEC_END);
    return 0;
}

void replaceZBSectorData(ZBHandler*, ZBSectorHolder_tag* sector, std::uint64_t numBytes, void* data) {
    if (data != sector->data)
        std::free(sector->data);
    sector->length = numBytes;
    sector->data = static_cast<unsigned char*>(data);
}

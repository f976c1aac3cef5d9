#include "infr_libs/ZelmBinaryHandler/ZBHandler.h"

#include "infr_libs/ZelmBinaryHandler/ZBInternals.h"

#include <cstring>
#include <new>

namespace zbinternals {

Bytes allocateBytes(std::uint64_t numBytes) {
    if (numBytes > s_maxBytes)
        return nullptr;
    return Bytes(static_cast<unsigned char*>(std::malloc(numBytes ? static_cast<std::size_t>(numBytes) : 1)));
}

Bytes allocateZeroedBytes(std::uint64_t numBytes) {
    if (numBytes > s_maxBytes)
        return nullptr;
    // The system gives zeros by the page: a wide gap of an image costs memory only once it is touched.
    return Bytes(
        static_cast<unsigned char*>(std::calloc(numBytes ? static_cast<std::size_t>(numBytes) : 1, 1)));
}

void retire(ZBHandler& handle, const ZBRetired_tag& what) {
    auto* retired = new (std::nothrow) ZBRetired_tag(what);
    if (!retired)
        return; // out of memory: it stays valid, and is never freed
    retired->next = handle.retired;
    handle.retired = retired;
}

} // namespace zbinternals

using namespace zbinternals;

namespace {

void deleteSector(ZBSectorHolder_tag* sector) {
    std::free(sector->data);
    delete sector;
}

} // namespace

ZBHandler* createZBHandler() {
    return new (std::nothrow) ZBHandler;
}

void deleteZBHandler(ZBHandler* handle) {
    if (!handle)
        return;
    while (ZBSectorHolder_tag* sector = handle->firstSector) {
        handle->firstSector = sector->next;
        deleteSector(sector);
    }
    while (ZBRetired_tag* retired = handle->retired) {
        handle->retired = retired->next;
        if (retired->sector)
            deleteSector(retired->sector);
        std::free(retired->filename);
        delete retired;
    }
    std::free(handle->filename);
    delete handle;
}

void setZBHandlerFilename(ZBHandler* handle, const char* filename) {
    char* copy = filename ? strdup(filename) : nullptr;
    if (handle->filename)
        retire(*handle, {.filename = handle->filename});
    handle->filename = copy;
}

#include "infr_libs/ZelmBinaryHandler/ZBHandler.h"

#include "infr_libs/ZelmBinaryHandler/ZBInternals.h"

#include <cstring>
#include <new>
#include <sys/mman.h>

namespace {

constexpr std::size_t s_largePage = std::size_t{2} << 20; // of x86

} // namespace

namespace zbinternals {

Bytes allocateBytes(std::uint64_t numBytes) {
    if (numBytes > s_maxBytes)
        return nullptr;
    const auto size = static_cast<std::size_t>(numBytes);
    if (size < s_largePage)
        return Bytes(static_cast<unsigned char*>(std::malloc(size != 0 ? size : 1)));
    // The first touch of a small page costs more than filling it. Large pages, where the system gives them,
    // make the loading of large payloads about twice as fast.
    void* bytes = nullptr;
    if (posix_memalign(&bytes, s_largePage, size) != 0)
        return nullptr;
    madvise(bytes, size, MADV_HUGEPAGE);
    return Bytes(static_cast<unsigned char*>(bytes));
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

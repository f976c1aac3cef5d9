#include "infr_libs/ZelmBinaryHandler/ZBHandler.h"
#include "infr_libs/ZelmBinaryHandler/ZBInternals.h"
#include "infr_libs/ZelmBinaryHandler/ZBLayout.h"

#include <limits>
#include <new>

using namespace zbinternals;
using namespace zblayout;

ZBSectorHolder_tag* zbinternals::appendSector(ZBHandler& handle, std::int32_t type, std::uint64_t length) {
    auto* sector = new (std::nothrow) ZBSectorHolder_tag;
    if (!sector) {
        fail(handle, s_outOfMemory);
        return nullptr;
    }
    sector->type = type;
    sector->length = length;
    // The place is remembered, so that a run of additions is linear in total.
    if (handle.lastSector)
        handle.lastSector->next = sector;
    else
        handle.firstSector = sector;
    handle.lastSector = sector;

    if (length == 0)
        return sector;
    sector->data = allocateBytes(length).release();
    if (!sector->data) {
        fail(handle, s_outOfMemory);
        return nullptr;
    }
    return sector;
}

namespace {

void copyBytes(unsigned char* to, const void* from, std::uint64_t numBytes) {
    if (numBytes == 0)
        return;
    if (from)
        std::memcpy(to, from, static_cast<std::size_t>(numBytes));
    else
        std::memset(to, 0, static_cast<std::size_t>(numBytes));
}

// A sector of an image prefix and an image.
ZBSectorHolder_tag* addImageSector(ZBHandler* handle, std::int32_t type, std::uint16_t node,
                                   std::uint16_t core, std::uint64_t address, const void* data,
                                   std::uint64_t numBytes) {
    // A sum that wraps must not come out small: no memory could hold it either way.
    constexpr std::uint64_t most = std::numeric_limits<std::uint64_t>::max();
    const std::uint64_t length = numBytes > most - s_recordSize ? most : s_recordSize + numBytes;
    ZBSectorHolder_tag* sector = appendSector(*handle, type, length);
    if (!sector)
        return nullptr;
    writeRecord(sector->data, node, core, address);
    copyBytes(sector->data + s_recordSize, data, numBytes);
    return sector;
}

void writeNodeDescriptor(unsigned char* payload, std::uint16_t node, std::uint64_t partNumber) {
    writeRecord(payload, node, 0, 0);
    writeLittleEndian64(payload + s_partNumberOffset, partNumber);
}

} // namespace

ZBSectorHolder_tag* addZBSector(ZBHandler* handle, std::int32_t type, std::uint64_t numBytes,
                                const void* data) {
    ZBSectorHolder_tag* sector = appendSector(*handle, type, numBytes);
    if (sector)
        copyBytes(sector->data, data, numBytes);
    return sector;
}

ZBSectorHolder_tag* addBinaryZBSector(ZBHandler* handle, std::uint16_t node, std::uint16_t core,
                                      std::uint64_t address, const void* data, std::uint64_t numBytes) {
    return addImageSector(handle, ZBSEC_BINARY, node, core, address, data, numBytes);
}

ZBSectorHolder_tag* addElfZBSector(ZBHandler* handle, std::uint16_t node, std::uint16_t core,
                                   const void* data, std::uint64_t numBytes) {
    return addImageSector(handle, ZBSEC_ELF, node, core, 0, data, numBytes);
}

ZBSectorHolder_tag* addOtpZBSector(ZBHandler* handle, std::uint16_t node, std::uint16_t core,
                                   const void* data, std::uint64_t numBytes) {
    return addImageSector(handle, ZBSEC_OTP, node, core, 0, data, numBytes);
}

ZBSectorHolder_tag* addOtpExtendedZBSector(ZBHandler* handle, std::uint16_t node, std::uint16_t core,
                                           const void* data, std::uint64_t numBytes) {
    return addImageSector(handle, ZBSEC_OTP_EXTENDED, node, core, 0, data, numBytes);
}

// A control record is an image prefix with no image behind it.

ZBSectorHolder_tag* addGotoZBSector(ZBHandler* handle, std::uint16_t node, std::uint16_t core) {
    return addImageSector(handle, ZBSEC_GOTO, node, core, 0, nullptr, 0);
}

ZBSectorHolder_tag* addCallZBSector(ZBHandler* handle, std::uint16_t node, std::uint16_t core) {
    return addImageSector(handle, ZBSEC_CALL, node, core, 0, nullptr, 0);
}

ZBSectorHolder_tag* addZnZBSector(ZBHandler* handle, std::uint64_t numBytes, const void* data) {
    return addZBSector(handle, ZBSEC_ZN, numBytes, data);
}

ZBSectorHolder_tag* addEndZBSector(ZBHandler* handle) {
    return addZBSector(handle, ZBSEC_END, 0, nullptr);
}

ZBSectorHolder_tag* addNodeDescZBSector(ZBHandler* handle, std::uint32_t node, std::uint64_t partNumber) {
    ZBSectorHolder_tag* sector = appendSector(*handle, ZBSEC_NODEDESC, s_recordSize);
    if (sector)
        writeNodeDescriptor(sector->data, static_cast<std::uint16_t>(node), partNumber);
    return sector;
}

ZBSectorHolder_tag* addOrSetNodeDescZBSector(ZBHandler* handle, std::uint32_t node,
                                             std::uint64_t partNumber) {
    for (ZBSectorHolder_tag* sector = handle->firstSector; sector; sector = sector->next) {
        if (sector->type != ZBSEC_NODEDESC || !sector->data || sector->length < s_recordSize ||
            readLittleEndian16(sector->data + s_nodeOffset) != static_cast<std::uint16_t>(node))
            continue;
        writeNodeDescriptor(sector->data, static_cast<std::uint16_t>(node), partNumber);
        return sector;
    }
    return addNodeDescZBSector(handle, node, partNumber);
}

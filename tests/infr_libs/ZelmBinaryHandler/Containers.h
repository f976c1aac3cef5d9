#pragma once

#include "infr_libs/ZelmBinaryHandler/ZBHandler.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

// Handles in the tests: owned, made from bytes and turned back into bytes.

struct DeleteContainer {
    void operator()(ZBHandler* handle) const { deleteZBHandler(handle); }
};

using Container = std::unique_ptr<ZBHandler, DeleteContainer>;

inline Container emptyContainer() {
    return Container(createZBHandler());
}

// From a copy that ends where the bytes end, so that a sanitizer sees each read behind them.
inline Container load(std::string_view bytes) {
    const std::vector<char> exact(bytes.begin(), bytes.end());
    return Container(loadZBFromMemory(exact.data(), exact.size()));
}

// The file that the handle makes; the result of the call where it fails.
inline std::string write(const Container& container) {
    std::vector<char> buffer(static_cast<std::size_t>(getZBFileSize(container.get())));
    const std::int32_t numBytes =
        writeZBToMemory(container.get(), buffer.data(), static_cast<std::int32_t>(buffer.size()));
    if (numBytes < 0)
        return "failed: " + std::to_string(numBytes);
    return {buffer.data(), static_cast<std::size_t>(numBytes)};
}

inline std::vector<ZBSectorHolder_tag*> sectorsOf(const Container& container) {
    std::vector<ZBSectorHolder_tag*> sectors;
    for (ZBSectorHolder_tag* sector = getFirstSector(container.get()); sector;
         sector = getNextSector(container.get(), sector))
        sectors.push_back(sector);
    return sectors;
}

inline std::vector<std::int32_t> typesOf(const Container& container) {
    std::vector<std::int32_t> types;
    for (const ZBSectorHolder_tag* sector : sectorsOf(container))
        types.push_back(sector->type);
    return types;
}

// The payload as text; "null" where the sector has none.
inline std::string payloadOf(const ZBSectorHolder_tag* sector) {
    if (!sector->data)
        return "null";
    return {reinterpret_cast<const char*>(sector->data), static_cast<std::size_t>(sector->length)};
}

// An addition of text, as most tests make it.
inline ZBSectorHolder_tag* add(const Container& container, std::int32_t type, std::string_view payload) {
    return addZBSector(container.get(), type, payload.size(), payload.data());
}

#include "tools/zetool/image/SectorList.h"

#include "tools/zetool/Messages.h"
#include "tools/zetool/Words.h"

SectorList readSectors(InputFile& input, bool check) {
    SectorList list;
    SectorWalker walker(input);
    list.hasHeader = walker.hasHeader();
    list.headerReservedIsUsed = walker.headerReservedIsUsed();
    while (walker.next()) {
        // Of a sector that is cut the head is there, and worth to be seen.
        check ? walker.read() : walker.skip();
        list.sectors.push_back(walker.sector());
    }
    list.fault = walker.fault();
    return list;
}

bool printFaults(const std::string& file, const SectorList& list) {
    bool any = false;
    for (const ImageSector& sector : list.sectors) {
        if (!sector.hasWrongCrc())
            continue;
        printMessage(file, sector.crcFault());
        any = true;
    }
    if (!list.fault.empty())
        printMessage(file, list.fault);
    return any || !list.fault.empty();
}

Json sectorJson(const ImageSector& sector) {
    const auto hexOrNull = [](bool isThere, std::uint64_t number) {
        return isThere ? Json(hexText(number)) : Json(nullptr);
    };
    Json object = Json::object();
    object["index"] = sector.index;
    object["offset"] = sector.offset;
    object["type"] = sector.head.type;
    object["typeName"] = sector.row ? Json(sector.row->name) : Json(nullptr);
    object["size"] = sector.head.length;
    object["pad"] = sector.head.pad;
    object["node"] = sector.hasRecord ? Json(sector.node) : Json(nullptr);
    object["core"] = sector.isPlace() ? Json(sector.core) : Json(nullptr);
    object["address"] = hexOrNull(sector.isPlace(), sector.address);
    object["partNumber"] = hexOrNull(sector.isNode(), sector.address);
    object["crc"] = sector.isWhole && sector.hasPayload() ? Json(crcText(sector.crc)) : Json(nullptr);
    object["computedCrc"] = sector.computedCrc ? Json(crcText(*sector.computedCrc)) : Json(nullptr);
    object["isWhole"] = sector.isWhole;
    return object;
}

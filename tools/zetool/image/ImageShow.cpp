#include "tools/zetool/image/ImageShow.h"

#include "infr_libs/ZelmBinaryHandler/ZBLayout.h"
#include "tools/zetool/Command.h"
#include "tools/zetool/image/SectorChoice.h"
#include "tools/zetool/image/SectorList.h"
#include "tools/zetool/Messages.h"
#include "tools/zetool/Result.h"
#include "tools/zetool/Words.h"

#include <algorithm>

namespace {

std::string versionText() {
    return std::to_string(zblayout::s_version[0] | zblayout::s_version[1] << 8);
}

// A line for each field that the sector has.
std::string sectorText(const ImageSector& sector) {
    std::string text;
    const auto add = [&](std::string name, const std::string& value) {
        constexpr std::size_t s_nameWidth = 14;
        name.resize(std::max(name.size(), s_nameWidth), ' ');
        text += "  " + name + value + "\n";
    };
    const auto numberOf = [](std::uint64_t number) { return std::to_string(number); };
    text += "sector " + numberOf(sector.index) + "\n";
    add("type", sector.row ? std::string(sector.row->name) + " (" +
                                 hexText(static_cast<std::uint16_t>(sector.head.type)) + ")"
                           : hexText(static_cast<std::uint16_t>(sector.head.type)) + ", unknown");
    add("offset", numberOf(sector.offset));
    if (!sector.hasPayload()) {
        add("payload", "none");
    } else {
        add("payload", numberOf(sector.head.length) + " bytes at " +
                           numberOf(sector.offset + zblayout::s_payloadOffset));
        add("padding", numberOf(sector.head.pad) + (sector.head.pad == 1 ? " byte" : " bytes"));
    }
    if (sector.hasRecord)
        add("node", numberOf(sector.node));
    if (sector.isPlace()) {
        add("core", numberOf(sector.core));
        add("address", hexText(sector.address));
        if (sector.row->isImage)
            add("image", numberOf(sector.head.length - sector.prefixSize()) + " bytes at " +
                             numberOf(sector.offset + zblayout::s_payloadOffset + sector.prefixSize()));
    }
    if (sector.isNode())
        add("part number", hexText(sector.address));
    if (sector.hasPayload() && sector.isWhole)
        add("crc", sector.crc == 0 ? "0, not checked" : crcText(sector.crc));
    if (sector.computedCrc)
        add("computed crc", crcText(*sector.computedCrc));
    if (sector.reservedIsUsed)
        add("reserved", "not 0");
    if (!sector.isWhole)
        add("end", "cut off");
    return text;
}

} // namespace

int imageShow(const Invocation& invocation) {
    const std::string& path = invocation.value("FILE");
    const bool check = invocation.has("check");
    InputFile input(path);
    SectorList list;
    if (invocation.has("SECTOR")) {
        const SectorChoice choice(invocation.value("SECTOR"));
        SectorWalker walker(input);
        list.hasHeader = walker.hasHeader();
        list.headerReservedIsUsed = walker.headerReservedIsUsed();
        while (list.sectors.empty() && walker.next()) {
            const bool isIt = choice.fits(walker.sector());
            check&& isIt ? walker.read() : walker.skip();
            if (isIt)
                list.sectors.push_back(walker.sector());
        }
        list.fault = walker.fault();
        if (list.sectors.empty() && list.fault.empty())
            throw ToolFailure(path, "there is no sector " + choice.text());
    } else {
        list = readSectors(input, check);
    }

    OutputFile output = resultFile(invocation);
    if (invocation.has("json")) {
        Json object = jsonObject("imageShow", 1);
        object["header"] = nullptr;
        if (list.hasHeader) {
            Json& header = object["header"] = Json::object();
            header["tag"] = jsonText({zblayout::s_tag, sizeof zblayout::s_tag});
            header["version"] = zblayout::s_version[0] | zblayout::s_version[1] << 8;
            header["reservedIsUsed"] = list.headerReservedIsUsed;
        }
        Json& sectors = object["sectors"] = Json::array();
        for (const ImageSector& sector : list.sectors) {
            Json row = sectorJson(sector);
            row["payloadOffset"] =
                sector.hasPayload() ? Json(sector.offset + zblayout::s_payloadOffset) : Json(nullptr);
            row["imageOffset"] = sector.hasRecord && sector.row->isImage
                                     ? Json(sector.offset + zblayout::s_payloadOffset + sector.prefixSize())
                                     : Json(nullptr);
            row["reservedIsUsed"] = sector.reservedIsUsed;
            sectors.push_back(std::move(row));
        }
        object["fault"] = list.fault.empty() ? Json(nullptr) : jsonText(list.fault);
        writeJson(output, object);
    } else {
        if (list.hasHeader)
            output.write("header\n  tag           " + std::string(zblayout::s_tag, sizeof zblayout::s_tag) +
                         "\n  version       " + versionText() + "\n" +
                         (list.headerReservedIsUsed ? "  reserved      not 0\n" : ""));
        for (const ImageSector& sector : list.sectors)
            output.write(sectorText(sector));
    }
    output.close();
    return printFaults(path, list) ? s_foundWrong : s_fine;
}

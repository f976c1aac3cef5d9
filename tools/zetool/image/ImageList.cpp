#include "tools/zetool/image/ImageList.h"

#include "tools/zetool/Command.h"
#include "tools/zetool/image/SectorList.h"
#include "tools/zetool/Result.h"
#include "tools/zetool/TextTable.h"
#include "tools/zetool/Words.h"

namespace {

void writeTable(OutputFile& output, const SectorList& list, bool check) {
    using enum TextTable::Align;
    std::vector<TextTable::Column> columns = {{"sector", Right},  {"offset", Right},      {"type"},
                                              {"size", Right},    {"node", Right},        {"core", Right},
                                              {"address", Right}, {"part number", Right}, {"crc", Right}};
    if (check)
        columns.push_back({"computed", Right});
    TextTable table(columns);
    for (const ImageSector& sector : list.sectors) {
        const auto when = [](bool isThere, const std::string& text) { return isThere ? text : ""; };
        table.add(
            {std::to_string(sector.index), std::to_string(sector.offset), sectorTypeText(sector.head.type),
             std::to_string(sector.head.length), when(sector.hasRecord, std::to_string(sector.node)),
             when(sector.isPlace(), std::to_string(sector.core)),
             when(sector.isPlace(), hexText(sector.address)), when(sector.isNode(), hexText(sector.address)),
             when(sector.isWhole && sector.hasPayload(), crcText(sector.crc)),
             when(sector.computedCrc.has_value(), crcText(sector.computedCrc.value_or(0)))});
    }
    table.write(output);
}

} // namespace

int imageList(const Invocation& invocation) {
    const std::string& path = invocation.value("FILE");
    InputFile input(path);
    const bool check = invocation.has("check");
    const SectorList list = readSectors(input, check);

    OutputFile output = resultFile(invocation);
    if (invocation.has("json")) {
        Json object = jsonObject("imageList", 1);
        Json& sectors = object["sectors"] = Json::array();
        for (const ImageSector& sector : list.sectors)
            sectors.push_back(sectorJson(sector));
        object["fault"] = list.fault.empty() ? Json(nullptr) : jsonText(list.fault);
        writeJson(output, object);
    } else {
        writeTable(output, list, check);
    }
    output.close();
    return printFaults(path, list) ? s_foundWrong : s_fine;
}

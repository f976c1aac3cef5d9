#include "tools/zetool/elf/ElfSections.h"

#include "tools/zetool/elf/ElfInspection.h"
#include "tools/zetool/elf/ElfWords.h"
#include "tools/zetool/Result.h"
#include "tools/zetool/TextTable.h"
#include "tools/zetool/Words.h"

namespace {

void writeTable(OutputFile& output, const ElfView& view) {
    constexpr auto s_right = TextTable::Align::Right;
    TextTable table({{"Nr", s_right},
                     {"Name"},
                     {"Type"},
                     {"Addr"},
                     {"Off"},
                     {"Size"},
                     {"ES", s_right},
                     {"Flg", s_right},
                     {"Lk", s_right},
                     {"Inf", s_right},
                     {"Al", s_right}});
    for (const ElfSectionHeader& section : view.sections())
        table.add({std::to_string(section.getNum()), nameText(view.sectionName(section)),
                   sectionTypeText(section.sh_type), hexDigits(section.sh_addr, 8),
                   hexDigits(section.sh_offset, 6), hexDigits(section.sh_size, 6),
                   hexDigits(section.sh_entsize, 2), sectionFlagsText(section.sh_flags),
                   std::to_string(section.sh_link), std::to_string(section.sh_info),
                   std::to_string(section.sh_addralign)});
    table.write(output);
}

void writeObject(OutputFile& output, const ElfView& view) {
    Json object = jsonObject("elfSections", 1);
    Json& list = object["sections"] = Json::array();
    for (const ElfSectionHeader& section : view.sections()) {
        Json entry = Json::object();
        entry["number"] = section.getNum();
        entry["name"] = nameJson(view.sectionName(section));
        entry["type"] = section.sh_type;
        entry["typeText"] = sectionTypeText(section.sh_type);
        entry["flags"] = section.sh_flags;
        entry["flagsText"] = sectionFlagsText(section.sh_flags);
        entry["address"] = section.sh_addr;
        entry["offset"] = section.sh_offset;
        entry["size"] = section.sh_size;
        entry["link"] = section.sh_link;
        entry["info"] = section.sh_info;
        entry["align"] = section.sh_addralign;
        entry["entrySize"] = section.sh_entsize;
        list.push_back(std::move(entry));
    }
    writeJson(output, object);
}

} // namespace

int elfSections(const Invocation& invocation) {
    ElfInspection inspection(invocation.value("FILE"));
    for (const ElfSectionHeader& section : inspection.view().sections())
        inspection.noteName(inspection.view().sectionName(section));
    OutputFile output = resultFile(invocation);
    if (invocation.has("json"))
        writeObject(output, inspection.view());
    else
        writeTable(output, inspection.view());
    output.close();
    return inspection.finish();
}

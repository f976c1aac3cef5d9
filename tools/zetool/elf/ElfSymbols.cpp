#include "tools/zetool/elf/ElfSymbols.h"

#include "tools/zetool/elf/ElfInspection.h"
#include "tools/zetool/elf/ElfWords.h"
#include "tools/zetool/Result.h"
#include "tools/zetool/TextTable.h"
#include "tools/zetool/Words.h"

namespace {

using Sections = std::vector<const ElfSectionHeader*>;

void writeTable(OutputFile& output, const ElfView& view, const ElfSectionHeader& section) {
    constexpr auto s_right = TextTable::Align::Right;
    TextTable table({{"Num", s_right},
                     {"Value"},
                     {"Size", s_right},
                     {"Type"},
                     {"Bind"},
                     {"Vis"},
                     {"Ndx", s_right},
                     {"Name"}});
    for (std::size_t i = 0; i < view.numSymbols(section); ++i) {
        const ElfSymbol symbol = view.symbol(section, i);
        table.add({std::to_string(i), hexDigits(symbol.st_value, 8), symbolSizeText(symbol.st_size),
                   symbolTypeText(view.header(), symbol), bindingText(view.header(), symbol),
                   visibilityText(symbol), placeText(view.header(), symbol),
                   nameText(view.symbolName(section, symbol))});
    }
    output.write("Symbol table '" + nameText(view.sectionName(section)) + "' contains " +
                 entriesText(view.numSymbols(section)) + ":\n");
    table.write(output);
}

void writeTables(OutputFile& output, const ElfView& view, const Sections& sections) {
    for (const ElfSectionHeader* section : sections) {
        if (section != sections.front())
            output.write("\n");
        writeTable(output, view, *section);
    }
}

Json symbolJson(const ElfView& view, const ElfSectionHeader& section, std::size_t index) {
    const ElfSymbol symbol = view.symbol(section, index);
    Json object = Json::object();
    object["number"] = index;
    object["value"] = symbol.st_value;
    object["size"] = symbol.st_size;
    object["type"] = symbolTypeText(view.header(), symbol);
    object["bind"] = bindingText(view.header(), symbol);
    object["info"] = symbol.st_info;
    object["visibility"] = visibilityText(symbol);
    object["other"] = symbol.st_other;
    object["index"] = placeText(view.header(), symbol);
    object["section"] = symbol.st_shndx;
    object["name"] = nameJson(view.symbolName(section, symbol));
    return object;
}

void writeObject(OutputFile& output, const ElfView& view, const Sections& sections) {
    Json object = jsonObject("elfSymbols", 1);
    Json& tables = object["tables"] = Json::array();
    for (const ElfSectionHeader* section : sections) {
        Json table = Json::object();
        table["section"] = section->getNum();
        table["name"] = nameJson(view.sectionName(*section));
        Json& list = table["symbols"] = Json::array();
        for (std::size_t i = 0; i < view.numSymbols(*section); ++i)
            list.push_back(symbolJson(view, *section, i));
        tables.push_back(std::move(table));
    }
    writeJson(output, object);
}

} // namespace

int elfSymbols(const Invocation& invocation) {
    ElfInspection inspection(invocation.value("FILE"));
    const ElfView& view = inspection.view();
    ElfAllowance allowance(view);
    Sections sections;
    for (const ElfSectionHeader& section : view.sections()) {
        if (hasSymbols(section) && allowance.take(view, section, inspection.faults()))
            sections.push_back(&section);
    }
    for (const ElfSectionHeader* section : sections) {
        inspection.noteName(view.sectionName(*section));
        for (std::size_t i = 0; i < view.numSymbols(*section); ++i)
            inspection.noteName(view.symbolName(*section, view.symbol(*section, i)));
    }
    OutputFile output = resultFile(invocation);
    if (invocation.has("json"))
        writeObject(output, view, sections);
    else
        writeTables(output, view, sections);
    output.close();
    return inspection.finish();
}

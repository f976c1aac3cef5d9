#include "tools/zetool/elf/ElfRelocations.h"

#include "tools/zetool/elf/ElfInspection.h"
#include "tools/zetool/elf/ElfWords.h"
#include "tools/zetool/elf/RelocationView.h"
#include "tools/zetool/Result.h"
#include "tools/zetool/TextTable.h"
#include "tools/zetool/Words.h"

#include <cstdint>

namespace {

std::string addendText(std::int32_t addend) {
    const auto number = static_cast<std::uint32_t>(addend);
    return addend < 0 ? "-" + hexText(0 - number) : hexText(number);
}

// The name of an entry's symbol: empty for the null symbol, nothing for one that isn't there.
std::optional<std::string_view> symbolName(const ElfView& view, const RelocationView& table,
                                           const ElfRelocation& relocation) {
    if (relocation.getSymbol() == 0)
        return "";
    const std::optional<ElfSymbol> symbol = table.symbolOf(relocation);
    return symbol ? view.symbolName(*table.symbolTable(), *symbol) : std::nullopt;
}

void writeTable(OutputFile& output, const ElfView& view, const RelocationView& relocations) {
    constexpr auto s_right = TextTable::Align::Right;
    std::vector<TextTable::Column> columns = {{"Offset"}, {"Info"}, {"Type"}, {"Sym.Value"}, {"Sym.Name"}};
    if (relocations.hasAddends())
        columns.insert(columns.begin() + 4, {"Addend", s_right});
    TextTable table(columns);
    for (std::size_t i = 0; i < relocations.size(); ++i) {
        const ElfRelocation relocation = relocations[i];
        const std::optional<ElfSymbol> symbol = relocations.symbolOf(relocation);
        std::vector<std::string> cells = {hexDigits(relocation.getOffset(), 8),
                                          hexDigits(relocation.r_info, 8),
                                          relocationTypeText(view.header().e_machine, relocation.getType()),
                                          symbol ? hexDigits(symbol->st_value, 8) : "",
                                          nameText(symbolName(view, relocations, relocation))};
        if (relocations.hasAddends())
            cells.insert(cells.begin() + 4, addendText(relocation.getAddend()));
        table.add(std::move(cells));
    }
    const ElfSectionHeader& section = relocations.section();
    output.write("Relocation section '" + nameText(view.sectionName(section)) + "' at offset " +
                 hexText(section.sh_offset) + " contains " + entriesText(relocations.size()) + ":\n");
    table.write(output);
}

void writeTables(OutputFile& output, const ElfView& view, const std::vector<RelocationView>& tables) {
    for (const RelocationView& table : tables) {
        if (&table != &tables.front())
            output.write("\n");
        writeTable(output, view, table);
    }
}

Json relocationJson(const ElfView& view, const RelocationView& table, const ElfRelocation& relocation) {
    const std::optional<ElfSymbol> symbol = table.symbolOf(relocation);
    Json object = Json::object();
    object["offset"] = relocation.getOffset();
    object["type"] = relocation.getType();
    object["typeText"] = relocationTypeText(view.header().e_machine, relocation.getType());
    object["symbol"] = relocation.getSymbol();
    object["symbolValue"] = symbol ? Json(symbol->st_value) : Json(nullptr);
    object["symbolName"] = nameJson(symbolName(view, table, relocation));
    object["addend"] = table.hasAddends() ? Json(relocation.getAddend()) : Json(nullptr);
    return object;
}

void writeObject(OutputFile& output, const ElfView& view, const std::vector<RelocationView>& tables) {
    Json object = jsonObject("elfRelocations", 1);
    Json& list = object["tables"] = Json::array();
    for (const RelocationView& relocations : tables) {
        Json table = Json::object();
        table["section"] = relocations.section().getNum();
        table["name"] = nameJson(view.sectionName(relocations.section()));
        table["target"] = relocations.section().sh_info;
        Json& entries = table["relocations"] = Json::array();
        for (std::size_t i = 0; i < relocations.size(); ++i)
            entries.push_back(relocationJson(view, relocations, relocations[i]));
        list.push_back(std::move(table));
    }
    writeJson(output, object);
}

} // namespace

int elfRelocations(const Invocation& invocation) {
    ElfInspection inspection(invocation.value("FILE"));
    const ElfView& view = inspection.view();
    ElfAllowance allowance(view);
    std::vector<RelocationView> tables;
    for (const ElfSectionHeader& section : view.sections()) {
        if (!RelocationView::isOne(section) || !allowance.take(view, section, inspection.faults()))
            continue;
        const RelocationView& table = tables.emplace_back(view, section);
        if (!table.hasEntries())
            inspection.faults().push_back({"entrySize", view.sectionPlace(section) + ": " +
                                                            wrongEntrySize(section, table.entrySize())});
        inspection.noteName(view.sectionName(section));
        for (std::size_t i = 0; i < table.size(); ++i)
            inspection.noteName(symbolName(view, table, table[i]));
    }
    OutputFile output = resultFile(invocation);
    if (invocation.has("json"))
        writeObject(output, view, tables);
    else
        writeTables(output, view, tables);
    output.close();
    return inspection.finish();
}

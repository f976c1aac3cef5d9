#include "tests/infr_libs/ElfHandler/ReadobjLists.h"

#include "infr_libs/ElfHandler/ElfSectionHeader.h"
#include "infr_libs/ElfHandler/ElfStrings.h"
#include "infr_libs/ElfHandler/ElfSymbolTable.h"
#include "tests/support/ChildProcess.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <map>
#include <sstream>

namespace {

std::string joined(const std::vector<std::string>& words) {
    std::string line;
    for (const std::string& word : words)
        line += line.empty() ? word : " " + word;
    return line;
}

// ---- llvm-readobj ----

// The number of "0x10", "16" and "Global (0x1)": the last in brackets, if there are any.
std::string numberOf(const std::string& text) {
    const std::size_t bracket = text.rfind('(');
    const char* number = text.c_str() + (bracket == std::string::npos ? 0 : bracket + 1);
    return std::to_string(static_cast<std::uint32_t>(std::strtoull(number, nullptr, 0)));
}

// The name of "main (12)"; none where its offset in the strings is 0.
std::string nameOf(const std::string& text) {
    return numberOf(text) == "0" ? "-" : text.substr(0, text.rfind(" ("));
}

// One "Symbol { ... }" or the like: its "Key: value" lines, and the other lines within it.
struct Record {
    std::map<std::string, std::string> values;
    std::vector<std::string> others;

    std::string number(const std::string& key) const {
        const auto value = values.find(key);
        return value == values.end() ? "0" : numberOf(value->second);
    }

    std::string numbers(const std::vector<std::string>& keys) const {
        std::vector<std::string> words;
        for (const std::string& key : keys)
            words.push_back(number(key));
        return joined(words);
    }
};

std::string trimmed(const std::string& line) {
    const std::size_t begin = line.find_first_not_of(' ');
    return begin == std::string::npos ? "" : line.substr(begin);
}

// All records of a kind. A value "Table" names the section whose list a record stands in.
std::vector<Record> recordsOf(const std::string& kind, const std::string& option, const std::string& file,
                              std::string& complaints) {
    const ChildResult result = runProgram({"llvm-readobj", option, "--expand-relocs", file});
    EXPECT_EQ(result.exitStatus, 0) << result.error;
    complaints += result.error;

    std::vector<Record> records;
    std::istringstream lines(result.output);
    std::string table;
    bool isInside = false;
    for (std::string line; std::getline(lines, line);) {
        line = trimmed(line);
        if (line.starts_with("Section (")) {
            table = line.substr(0, line.find(')') + 1);
        } else if (line == kind + " {") {
            records.emplace_back().values["Table"] = table;
            isInside = true;
        } else if (line == "}") {
            isInside = false;
        } else if (isInside) {
            const std::size_t end = std::min(line.find(':'), line.find(" ["));
            if (end != std::string::npos)
                records.back().values[line.substr(0, end)] = trimmed(line.substr(end + 1));
            else
                records.back().others.push_back(line);
        }
    }
    return records;
}

} // namespace

ElfLists readobjLists(const std::string& file) {
    ElfLists lists;
    for (const Record& record : recordsOf("Section", "--sections", file, lists.complaints))
        lists.sections.push_back(record.number("Index") + " " + nameOf(record.values.at("Name")) + " " +
                                 record.numbers({"Type", "Flags", "Address", "Offset", "Size", "Link", "Info",
                                                 "AddressAlignment", "EntrySize"}));
    for (const Record& record : recordsOf("Symbol", "--symbols", file, lists.complaints))
        lists.symbols.push_back(nameOf(record.values.at("Name")) + " " +
                                record.numbers({"Value", "Size", "Binding", "Type", "Other", "Section"}));
    for (const Record& record : recordsOf("Relocation", "--relocations", file, lists.complaints))
        lists.relocations.push_back(record.numbers({"Table", "Offset", "Type", "Symbol", "Addend"}));
    for (const Record& record : recordsOf("Group", "--section-groups", file, lists.complaints)) {
        std::vector<std::string> words = {record.number("Index"), record.number("Type"),
                                          record.number("Info")};
        for (const std::string& member : record.others) {
            if (member != "]")
                words.push_back(numberOf(member));
        }
        lists.groups.push_back(joined(words));
    }
    return lists;
}

// ---- This library ----

ElfLists ourLists(const ElfHandler& elf) {
    const auto words = [](const std::string& first, const std::vector<std::uint32_t>& numbers) {
        std::vector<std::string> all = {first};
        for (const std::uint32_t number : numbers)
            all.push_back(std::to_string(number));
        return joined(all);
    };

    ElfLists lists;
    for (const auto& header : elf.getSectionHeaders()) {
        const std::string name = header->sh_name == 0 ? "-" : header->getName(elf.getStrings());
        lists.sections.push_back(
            words(std::to_string(header->getNum()) + " " + name,
                  {header->sh_type, header->sh_flags, header->sh_addr, header->sh_offset, header->sh_size,
                   header->sh_link, header->sh_info, header->sh_addralign, header->sh_entsize}));
    }
    for (unsigned i = 0; i < elf.numSymbols(); ++i) {
        const ElfSymbol& symbol = *elf.getSymbolTable()->getSymbol(i);
        lists.symbols.push_back(words(symbol.st_name == 0 ? "-" : elf.getSymbolName(i),
                                      {symbol.st_value, symbol.st_size, symbol.getBinding(), symbol.getType(),
                                       symbol.st_other, symbol.st_shndx}));
    }
    // A table doesn't know its own section, but the sections of tables stand in the order of the tables.
    std::vector<std::string> tableSections;
    for (const auto& header : elf.getSectionHeaders()) {
        if (header->sh_type == ElfSectionHeader::SHT_REL || header->sh_type == ElfSectionHeader::SHT_RELA)
            tableSections.push_back(std::to_string(header->getNum()));
    }
    std::size_t tableNum = 0;
    for (const ElfRelocationTable& table : elf.getRelocationTables()) {
        for (const ElfRelocation& relocation : table.getRelocations())
            lists.relocations.push_back(
                words(tableSections[tableNum],
                      {relocation.getOffset(), relocation.getType(), relocation.getSymbol(),
                       static_cast<std::uint32_t>(relocation.getAddend())}));
        ++tableNum;
    }
    std::size_t groupNum = 0;
    for (const auto& header : elf.getSectionHeaders()) {
        if (header->sh_type != ElfSectionHeader::SHT_GROUP)
            continue;
        const ElfGroup& group = *elf.getGroups()[groupNum++];
        std::vector<std::uint32_t> numbers = {group.isComdat(), group.getSignatureIndex()};
        for (const ElfSectionHeader* member : group.getSections())
            numbers.push_back(member->getNum());
        lists.groups.push_back(words(std::to_string(header->getNum()), numbers));
    }
    return lists;
}

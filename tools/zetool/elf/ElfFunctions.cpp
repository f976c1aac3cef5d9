#include "tools/zetool/elf/ElfFunctions.h"

#include "infr_libs/ElfHandler/ElfSymbolTable.h"
#include "Plugins/WavePlugin/ShortFunctionNames.h"
#include "tools/zetool/Command.h"
#include "tools/zetool/elf/ElfInspection.h"
#include "tools/zetool/elf/ElfReading.h"
#include "tools/zetool/elf/ElfWords.h"
#include "tools/zetool/Messages.h"
#include "tools/zetool/Result.h"
#include "tools/zetool/TextTable.h"
#include "tools/zetool/Words.h"

#include <memory>
#include <utility>

namespace {

struct Function {
    std::size_t number; // of its symbol
    std::uint32_t value;
    std::uint32_t size;
    std::string index; // the section that it is defined in
    std::string shortName;
    std::string name;
};

struct Program {
    std::string file;
    std::vector<Function> functions;
};

void addFunction(Program& program, ShortFunctionNames& names, const ElfView& view, std::size_t number,
                 const ElfSymbol& symbol, std::string_view name) {
    program.functions.push_back({number, symbol.st_value, symbol.st_size, placeText(view.header(), symbol),
                                 names.create(name), std::string(name.substr(0, s_longestName))});
}

// As the plugin lists them: all symbols of the type but the null symbol.
void addFunctions(Program& program, ShortFunctionNames& names, const ElfView& view, const ElfHandler& elf) {
    for (unsigned i = 1; i < elf.numSymbols(); ++i) {
        const ElfSymbol& symbol = *std::as_const(*elf.getSymbolTable()).getSymbol(i);
        if (symbol.getType() == ElfSymbol::STT_FUNC)
            addFunction(program, names, view, i, symbol, elf.getSymbolName(i));
    }
}

// Of a file that the plugin's reader refuses, by what its bytes say.
void addFunctions(Program& program, ShortFunctionNames& names, ElfInspection& inspection) {
    const ElfView& view = inspection.view();
    ElfAllowance allowance(view);
    for (const ElfSectionHeader& section : view.sections()) {
        if (section.sh_type != ElfSectionHeader::SHT_SYMTAB ||
            !allowance.take(view, section, inspection.faults()))
            continue;
        for (std::size_t i = 1; i < view.numSymbols(section); ++i) {
            const ElfSymbol symbol = view.symbol(section, i);
            if (symbol.getType() != ElfSymbol::STT_FUNC)
                continue;
            const std::optional<std::string_view> name = view.symbolName(section, symbol);
            inspection.noteName(name);
            addFunction(program, names, view, i, symbol, name.value_or(""));
        }
    }
}

void writeTable(OutputFile& output, const Program& program) {
    constexpr auto s_right = TextTable::Align::Right;
    TextTable table({{"Num", s_right}, {"Value"}, {"Size", s_right}, {"Ndx", s_right}, {"Short"}, {"Name"}});
    for (const Function& function : program.functions)
        table.add({std::to_string(function.number), hexDigits(function.value, 8),
                   symbolSizeText(function.size), function.index, shownText(function.shortName),
                   shownText(function.name)});
    output.write("Functions of '" + shownText(program.file) + "', " + entriesText(program.functions.size()) +
                 ":\n");
    table.write(output);
}

void writeTables(OutputFile& output, const std::vector<Program>& programs) {
    for (const Program& program : programs) {
        if (&program != &programs.front())
            output.write("\n");
        writeTable(output, program);
    }
}

void writeObject(OutputFile& output, const std::vector<Program>& programs) {
    Json object = jsonObject("elfFunctions", 1);
    Json& list = object["files"] = Json::array();
    for (const Program& program : programs) {
        Json file = Json::object();
        file["file"] = jsonText(program.file);
        Json& functions = file["functions"] = Json::array();
        for (const Function& function : program.functions) {
            Json entry = Json::object();
            entry["number"] = function.number;
            entry["value"] = function.value;
            entry["size"] = function.size;
            entry["index"] = function.index;
            entry["shortName"] = jsonText(function.shortName);
            entry["name"] = jsonText(function.name);
            functions.push_back(std::move(entry));
        }
        list.push_back(std::move(file));
    }
    writeJson(output, object);
}

} // namespace

int elfFunctions(const Invocation& invocation) {
    ShortFunctionNames names; // one numbering for all programs of a core
    std::vector<Program> programs;
    std::vector<std::unique_ptr<ElfInspection>> inspections;
    for (const std::string& file : invocation.values("FILE")) {
        ElfInspection& inspection = *inspections.emplace_back(std::make_unique<ElfInspection>(file));
        Program& program = programs.emplace_back(Program{shownName(file), {}});
        const ElfReading reading(inspection.view());
        if (reading.handler()) {
            addFunctions(program, names, inspection.view(), *reading.handler());
            continue;
        }
        inspection.faults().push_back(*reading.fault());
        addFunctions(program, names, inspection);
    }
    OutputFile output = resultFile(invocation);
    if (invocation.has("json"))
        writeObject(output, programs);
    else
        writeTables(output, programs);
    output.close();
    int status = s_fine;
    for (const auto& inspection : inspections)
        status = std::max(status, inspection->finish());
    return status;
}

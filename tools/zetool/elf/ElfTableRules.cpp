#include "tools/zetool/elf/ElfTableRules.h"

#include "infr_libs/ElfHandler/ElfSymbolTable.h"
#include "tools/zetool/elf/ElfWords.h"
#include "tools/zetool/elf/RelocationView.h"

#include <array>
#include <utility>

namespace {

// Faults of a kind in a table: the first one's place, and how many there are.
class FaultCounter {
public:
    template<class Place>
    void add(Place place) {
        if (m_count++ == 0)
            m_first = place();
    }

    void addTo(std::vector<ElfFault>& faults, const char* fault, const std::string& text) const {
        if (m_count != 0)
            faults.push_back({fault, m_first + text, m_count});
    }

private:
    std::string m_first;
    std::uint64_t m_count = 0;
};

// ---- Symbols ----

struct SymbolPlace {
    const ElfView& view;
    const ElfSectionHeader& table;
    const ElfSymbol& symbol;
    std::size_t index;
    bool isBehindGlobals; // behind a symbol that isn't local
};

bool isLocal(const ElfSymbol& symbol) {
    return symbol.getBinding() == ElfSymbol::STB_LOCAL;
}

bool namesSection(const ElfSymbol& symbol) {
    return symbol.st_shndx != ElfSymbol::SHN_UNDEF && symbol.st_shndx < ElfSymbol::SHN_LORESERVE;
}

bool isNoNullSymbol(const SymbolPlace& place) {
    const ElfSymbol& symbol = place.symbol;
    return place.index == 0 && (symbol.st_name != 0 || symbol.st_value != 0 || symbol.st_size != 0 ||
                                symbol.st_info != 0 || symbol.st_other != 0 || symbol.st_shndx != 0);
}

bool hasNoName(const SymbolPlace& place) {
    return !place.view.symbolName(place.table, place.symbol);
}

bool isUnknown(const SymbolPlace& place) {
    constexpr unsigned s_lastBinding = ElfSymbol::STB_WEAK;
    constexpr unsigned s_lastType = 6; // STT_TLS
    constexpr unsigned s_firstOfOs = 10;
    const auto isBetween = [](unsigned value, unsigned last) { return value > last && value < s_firstOfOs; };
    return isBetween(place.symbol.getBinding(), s_lastBinding) ||
           isBetween(place.symbol.getType(), s_lastType);
}

bool isOutOfOrder(const SymbolPlace& place) {
    return place.isBehindGlobals && isLocal(place.symbol);
}

bool isOutsideItsSection(const SymbolPlace& place) {
    // In an executable values are addresses, and may well lie between sections.
    constexpr unsigned s_relocatable = 1;
    if (place.view.header().e_type != s_relocatable || !namesSection(place.symbol) ||
        place.symbol.st_shndx >= place.view.sections().size())
        return false;
    return std::uint64_t{place.symbol.st_value} + place.symbol.st_size >
           place.view.sections()[place.symbol.st_shndx].sh_size;
}

bool hasNoSection(const SymbolPlace& place) {
    return namesSection(place.symbol) && place.symbol.st_shndx >= place.view.header().e_shnum;
}

struct SymbolRule {
    const char* fault;
    const char* text; // behind the symbol
    bool (*isBroken)(const SymbolPlace&);
};

constexpr SymbolRule s_symbolRules[] = {
    {"nullSymbol", ": isn't the null symbol", isNoNullSymbol},
    {"name", ": its name lies outside the strings", hasNoName},
    {"symbolKind", ": its binding or type is unknown", isUnknown},
    {"symbolOrder", ": is local, but stands behind others that aren't", isOutOfOrder},
    {"symbolPlace", ": lies outside its section", isOutsideItsSection},
    // The last one, which the library checks too.
    {"symbolSection", ": its section isn't there", hasNoSection},
};

void addFaultsOf(const ElfView& view, const ElfSectionHeader& table, std::size_t numRules,
                 std::vector<ElfFault>& faults) {
    std::array<FaultCounter, std::size(s_symbolRules)> counters;
    std::size_t firstGlobal = view.numSymbols(table);
    for (std::size_t i = 0; i < view.numSymbols(table); ++i) {
        const ElfSymbol symbol = view.symbol(table, i);
        const SymbolPlace place = {view, table, symbol, i, i > firstGlobal};
        const auto placeOf = [&] {
            return view.sectionPlace(table) + ": symbol " + std::to_string(i) + " '" +
                   nameText(view.symbolName(table, symbol)) + "'";
        };
        for (std::size_t rule = 0; rule < numRules; ++rule) {
            if (s_symbolRules[rule].isBroken(place))
                counters[rule].add(placeOf);
        }
        if (!isLocal(symbol))
            firstGlobal = std::min(firstGlobal, i);
    }
    for (std::size_t rule = 0; rule < numRules; ++rule)
        counters[rule].addTo(faults, s_symbolRules[rule].fault, s_symbolRules[rule].text);
    // 0 is what the library writes.
    if (table.sh_info != 0 && table.sh_info != firstGlobal)
        faults.push_back({"info", view.sectionPlace(table) + ": sh_info is " + std::to_string(table.sh_info) +
                                      ", but the first symbol that isn't local is " +
                                      std::to_string(firstGlobal)});
}

// ---- Relocations ----

void addFaultsOf(const ElfView& view, const RelocationView& table, std::vector<ElfFault>& faults) {
    constexpr unsigned s_relocatable = 1;
    const std::uint32_t target = table.section().sh_info;
    // In other files offsets are addresses.
    const bool hasTarget =
        view.header().e_type == s_relocatable && target != 0 && target < view.sections().size();
    FaultCounter noSymbol;
    FaultCounter outside;
    for (std::size_t i = 0; i < table.size(); ++i) {
        const ElfRelocation relocation = table[i];
        const auto placeOf = [&] {
            return view.sectionPlace(table.section()) + ": relocation " + std::to_string(i);
        };
        if (table.symbolTable() && relocation.getSymbol() != 0 && !table.symbolOf(relocation))
            noSymbol.add(placeOf);
        if (hasTarget && relocation.getOffset() >= view.sections()[target].sh_size)
            outside.add(placeOf);
    }
    noSymbol.addTo(faults, "relocationSymbol", ": its symbol isn't there");
    outside.addTo(faults, "relocationPlace", ": lies outside the section that it is for");
}

// ---- Names ----

bool isSameName(const std::optional<std::string_view>& inFile, const char* asRead) {
    return !inFile || *inFile == asRead;
}

std::string readAs(const std::optional<std::string_view>& inFile, const char* asRead) {
    return "'" + nameText(inFile) + "' is read as '" + nameText(asRead) +
           "', since the strings hold a text twice";
}

} // namespace

void addSymbolFaults(const ElfView& view, bool sectionsToo, std::vector<ElfFault>& faults) {
    ElfAllowance allowance(view);
    for (const ElfSectionHeader& section : view.sections()) {
        if (hasSymbols(section) && allowance.take(view, section, faults))
            addFaultsOf(view, section, std::size(s_symbolRules) - (sectionsToo ? 0 : 1), faults);
    }
}

void addRelocationFaults(const ElfView& view, std::vector<ElfFault>& faults) {
    ElfAllowance allowance(view);
    for (const ElfSectionHeader& section : view.sections()) {
        if (RelocationView::isOne(section) && allowance.take(view, section, faults))
            addFaultsOf(view, RelocationView(view, section), faults);
    }
}

void addNameFaults(const ElfView& view, const ElfHandler& elf, std::vector<ElfFault>& faults) {
    FaultCounter counter;
    for (const ElfSectionHeader& section : view.sections()) {
        const std::optional<std::string_view> inFile = view.sectionName(section);
        const char* asRead = elf.getStringsEntry(section.sh_name);
        if (section.sh_name != 0 && !isSameName(inFile, asRead))
            counter.add([&] {
                return "section " + std::to_string(section.getNum()) + ": " + readAs(inFile, asRead);
            });
        if (section.sh_type != ElfSectionHeader::SHT_SYMTAB)
            continue;
        // The reader takes one such table alone.
        for (unsigned i = 1; i < elf.numSymbols(); ++i) {
            const std::uint32_t name = std::as_const(*elf.getSymbolTable()).getSymbol(i)->st_name;
            const std::optional<std::string_view> symbolInFile = view.text(section.sh_link, name);
            if (name != 0 && !isSameName(symbolInFile, elf.getSymbolName(i)))
                counter.add([&] {
                    return "symbol " + std::to_string(i) + ": " + readAs(symbolInFile, elf.getSymbolName(i));
                });
        }
    }
    counter.addTo(faults, "doubledText", "");
}

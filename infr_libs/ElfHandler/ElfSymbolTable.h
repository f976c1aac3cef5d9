#pragma once

#include "infr_libs/ElfHandler/ElfSymbol.h"
#include "infr_libs/ElfHandler/ElfTextIndex.h"
#include "infr_libs/ElfHandler/StableVector.h"

#include <cstdint>
#include <iosfwd>
#include <optional>
#include <vector>

class ElfHandler;
class ElfSectionHeader;
class ElfString;
class ElfStrings;
class ErrorHandler;

// The one symbol table of an ELF file. Index 0 is the null symbol. The names stand in the strings of the
// handler that made the table and owns it. Symbols stay where they are as long as the table lives.
class ElfSymbolTable {
public:
    // Reads `sh_size` / 16 symbols from the stream's position, whatever `sh_entsize` says. Symbols wholly
    // past the stream's end are reported as memory that can't be had, and left out.
    ElfSymbolTable(ElfHandler* handler, std::istream& stream, const ElfSectionHeader* header);

    // A table that holds the null symbol alone; its name is the empty text of the handler's strings.
    ElfSymbolTable(ElfHandler* handler, const ElfString* nullString);

    virtual ~ElfSymbolTable();

    ElfSymbolTable(const ElfSymbolTable&) = delete;
    ElfSymbolTable& operator=(const ElfSymbolTable&) = delete;

    // Returns the index of the new symbol.
    unsigned int add(const ElfString* name, std::uint32_t value, std::uint32_t sectionIndex,
                     std::uint32_t binding, std::uint32_t type, std::uint32_t size);

    // Adds the names that the symbols have now to the index. Without it, a symbol whose name is changed is
    // found under the name that it had, which is wanted, and under the new one where no other symbol had that
    // before.
    void updateIndex();

    // The symbol of this name with the lowest index, or null. Logarithmic or better where the name exists;
    // a name that doesn't is looked for in every symbol. Whoever changes `st_name` sees `updateIndex`.
    ElfSymbol* find(const char* name);

    // The index of the symbol that `find` gives, or 0, which is also the null symbol's.
    unsigned int findNumByName(const char* name);

    // The first symbol of this name whose binding is global, or null. A weak namesake doesn't count, which
    // is wanted. Goes through all symbols.
    ElfSymbol* findGlobal(const char* name);

    // The index of a symbol of this table, or -1.
    int find(const ElfSymbol* symbol) const;

    // Null for an index out of range. Where the symbol may be changed, all names are put into the index
    // before.
    ElfSymbol* getSymbol(std::uint32_t symbolNum);
    const ElfSymbol* getSymbol(std::uint32_t symbolNum) const;

    unsigned int numSymbols() const { return static_cast<unsigned int>(m_symbols.size()); }
    std::uint32_t numBytes() const { return numSymbols() * ElfSymbol::s_numBytes; }

    // Each asserts that the index is in range.
    std::uint32_t symbolValue(unsigned int symbolNum) const;
    std::uint32_t symbolSize(unsigned int symbolNum) const;
    std::uint32_t symbolInfo(unsigned int symbolNum) const;
    std::uint32_t symbolSectionIndex(unsigned int symbolNum) const;

    // The symbol's name in the handler's strings, valid until a string is added; empty for an index out of
    // range.
    const char* symbolName(unsigned int symbolNum) const;

    // A new array of `numBytes` that holds the table as in the file; the caller owns it.
    unsigned char* createBuffer() const;

    // Reports each symbol that names a section above the highest, reserved indexes aside.
    void check(ErrorHandler* errorHandler, unsigned int highestSection) const;

    // Prints all symbols to standard output.
    void display(const ElfStrings* strings) const;

private:
    explicit ElfSymbolTable(ElfHandler* handler);

    // Under which name a symbol is in the index: what stands at an offset of the strings stays, what a
    // symbol names may change.
    struct IndexedName {
        std::uint32_t offset;
        unsigned int symbolNum;
    };

    void indexNewSymbols();
    std::optional<unsigned int> lookUp(const char* name);

    StableVector<ElfSymbol> m_symbols;
    ElfHandler* m_handler;
    std::vector<IndexedName> m_indexedNames; // the first symbol of each name
    ElfTextIndex m_nameIndex;                // places in `m_indexedNames`
    unsigned int m_numIndexed = 0;           // so many symbols have been offered to the index
};

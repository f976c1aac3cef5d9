#pragma once

#include "infr_libs/ElfHandler/ElfRelocation.h"

#include <cstddef>
#include <cstdint>
#include <list>

class ElfBlock;
class ElfSectionHeader;

// The entries of one relocation section as a list that can be edited: offsets follow bytes that come and
// go in the section that the entries apply to, and references move from symbol to symbol. Kept by value in
// an `ElfHandler`.
class ElfRelocationTable {
public:
    ElfRelocationTable() = default;

    // Reads the entries that the section holds, from the start of the block: a relocation section has a
    // block of its own. Entries stand `sh_entsize` bytes apart; what doesn't fit into the block is left out.
    // Asserts that the section is one of relocations.
    ElfRelocationTable(const ElfBlock* block, const ElfSectionHeader* sectionHeader);

    virtual ~ElfRelocationTable();

    // How many entries the constructor finds.
    static std::size_t countEntries(const ElfBlock* block, const ElfSectionHeader* sectionHeader);

    std::list<ElfRelocation>& getRelocations() { return m_relocations; }
    const std::list<ElfRelocation>& getRelocations() const { return m_relocations; }

    // Entries that are marked removed count too.
    std::size_t getNumEntries() const { return m_relocations.size(); }

    // Asserts that the symbol isn't the null symbol. With an addend other than 0 all entries have one.
    void addRelocation(std::uint32_t offset, std::uint32_t type, std::uint32_t symbol, std::int32_t addend);

    // With a delta of at most 0, -delta bytes were inserted at the position: entries from there on move up.
    // With a delta above 0, so many bytes that end at the position were removed: entries in them are marked
    // removed and keep their offsets, entries from the position on move down.
    void adjustOffsets(std::uint32_t position, std::int32_t delta);

    // Lets every entry that refers to one symbol refer to another.
    void substituteSymbol(std::uint32_t oldIndex, std::uint32_t newIndex);

    // A new block with all entries as in the file, those marked removed too: the caller drops them before,
    // if they shall go. May be called once (assertion); without addends only where no read entry needs one
    // (assertion). Whoever adds the block to a file owns it; the table keeps a pointer.
    ElfBlock* encode(bool writeAddend);

    bool hasAddend() const { return m_hasAddend; }
    bool requiresAddend() const { return m_requiresAddend; }

    // Prints all entries to standard output.
    void display() const;

private:
    std::list<ElfRelocation> m_relocations; // in file order
    bool m_requiresAddend = false;          // an entry that was read has an addend other than 0
    bool m_hasAddend = false;               // entries of 12 bytes instead of 8
    ElfBlock* m_elfBlock = nullptr;         // from `encode`, not owned
};

#pragma once

#include "infr_libs/ElfHandler/ElfRelocation.h"
#include "tools/zetool/elf/ElfView.h"

// One section of relocations as its bytes say it.
class RelocationView {
public:
    // Is this a section of relocations?
    static bool isOne(const ElfSectionHeader& section);

    RelocationView(const ElfView& view, const ElfSectionHeader& section);

    const ElfSectionHeader& section() const { return m_section; }
    bool hasAddends() const { return m_section.sh_type == ElfSectionHeader::SHT_RELA; }

    // Do the entries have the size that the standard gives them? Where not, there are none to see.
    bool hasEntries() const { return m_section.sh_entsize == m_entrySize; }
    std::uint32_t entrySize() const { return m_entrySize; }

    std::size_t size() const;
    ElfRelocation operator[](std::size_t index) const;

    // The table that the entries' symbols stand in, or null.
    const ElfSectionHeader* symbolTable() const { return m_symbols; }

    // The symbol that an entry refers to; nothing for the null symbol or one that isn't there.
    std::optional<ElfSymbol> symbolOf(const ElfRelocation& relocation) const;

private:
    const ElfView& m_view;
    const ElfSectionHeader& m_section;
    const ElfSectionHeader* m_symbols;
    std::uint32_t m_entrySize;
};

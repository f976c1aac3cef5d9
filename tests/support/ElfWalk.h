#pragma once

#include "infr_libs/ElfHandler/ElfBlock.h"
#include "infr_libs/ElfHandler/ElfHandler.h"
#include "infr_libs/ElfHandler/ElfSectionHeader.h"
#include "infr_libs/ElfHandler/ElfStrings.h"
#include "infr_libs/ElfHandler/ElfSymbolTable.h"

#include <cstdlib>
#include <cstring>
#include <memory>
#include <set>
#include <string>
#include <vector>

// Asks a handler for everything that it can tell of a file, however bad the file was, and ends the process
// where two answers don't agree. Nothing is asked that is an assertion.

inline void walkSymbols(ElfHandler& elf, bool isEdited) {
    for (unsigned i = 0; i < elf.numSymbols(); ++i) {
        const std::string name = elf.getSymbolName(i);
        elf.isSymbolGlobal(i);
        if (elf.getSymbolValue(i) != elf.getSymbolTable()->getSymbol(i)->st_value)
            std::abort();
        if (elf.getSymbolTable()->find(elf.getSymbolTable()->getSymbol(i)) != static_cast<int>(i))
            std::abort();
    }
    // The first symbol of a name is the one that is found. Texts that were added may have changed names, and
    // given one to a symbol before that.
    for (unsigned i = 0; i < elf.numSymbols() && i < 16; ++i) {
        const std::string name = elf.getSymbolName(i);
        unsigned first = 0;
        while (name != elf.getSymbolName(first))
            ++first;
        const unsigned found = elf.getSymbolTable()->findNumByName(name.c_str());
        if (isEdited ? name != elf.getSymbolName(found) : found != first)
            std::abort();
        elf.getSymbolTable()->findGlobal(name.c_str());
    }
    elf.getSymbolName(elf.numSymbols());
}

inline void walkStrings(ElfHandler& elf) {
    ElfStrings& strings = *elf.getStrings();
    const std::unique_ptr<unsigned char[]> table(strings.createBuffer(true));
    for (std::uint32_t offset = 0; offset < strings.numBytes();) {
        const char* text = reinterpret_cast<const char*>(table.get()) + offset;
        const ElfString* string = strings.find(text);
        if (!string || string->getOffset() != offset || strings.getString(offset) != text)
            std::abort();
        offset += static_cast<std::uint32_t>(std::strlen(text)) + 1;
    }
}

inline void walkSections(ElfHandler& elf) {
    constexpr std::uint32_t s_largest = 0x10000;
    constexpr unsigned s_most = 64; // finding a section's block goes through all blocks
    std::set<const ElfSymbol*> symbols;
    for (unsigned i = 0; i < elf.getSectionHeaders().size() && i < s_most; ++i) {
        const ElfSectionHeader* header = elf.getSectionHeader(i);
        const std::string name = header->getName(elf.getStrings());
        std::uint32_t offset = 0;
        if (elf.findBlock(header, offset) && header->sh_size <= s_largest) {
            std::vector<unsigned char> data(header->sh_size);
            elf.writeSectionData(i, data.data());
        }
        elf.getReferencedSymbols(symbols, i);
        elf.getReferencedSymbols(symbols, i, 0, header->sh_size);
    }
    for (const auto& group : elf.getGroups()) {
        for (const ElfSectionHeader* member : group->getSections()) {
            if (elf.getSectionHeader(member->getNum()) != member)
                std::abort();
        }
    }
}

inline void walkSegments(ElfHandler& elf) {
    const std::unique_ptr<std::vector<ElfHandler::Segment*>> segments(elf.getProgramSegments());
    for (const ElfHandler::Segment* segment : *segments) {
        // The first byte and the last; those between may be many.
        const volatile unsigned char* bytes = segment->data;
        if (segment->filesz != 0) {
            static_cast<void>(bytes[0]);
            static_cast<void>(bytes[segment->filesz - 1]);
        }
        delete segment;
    }
}

inline void walkElf(ElfHandler& elf, bool isEdited) {
    walkSymbols(elf, isEdited);
    walkStrings(elf);
    walkSections(elf);
    walkSegments(elf);
    elf.check();
}

inline void walkReadElf(ElfHandler& elf) {
    walkElf(elf, false);
}

inline void walkEditedElf(ElfHandler& elf) {
    walkElf(elf, true);
}

#include "infr_libs/ElfHandler/ElfRelocationTable.h"

#include "infr_libs/ElfHandler/ElfBlock.h"
#include "infr_libs/ElfHandler/ElfSectionHeader.h"
#include "infr_libs/ErrorHandler/Assertion.h"

#include <algorithm>
#include <cstdio>

ElfRelocationTable::ElfRelocationTable(const ElfBlock* block, const ElfSectionHeader* sectionHeader) {
    ZELM_ASSERT(sectionHeader->sh_type == 9 || sectionHeader->sh_type == 4);
    m_hasAddend = sectionHeader->sh_type == ElfSectionHeader::SHT_RELA;

    const unsigned char* entry = block->getData();
    for (std::size_t numLeft = countEntries(block, sectionHeader); numLeft != 0; --numLeft) {
        const ElfRelocation& read = m_relocations.emplace_back(m_hasAddend, entry);
        m_requiresAddend = m_requiresAddend || read.getAddend() != 0;
        entry += sectionHeader->sh_entsize;
    }
}

ElfRelocationTable::~ElfRelocationTable() = default;

std::size_t ElfRelocationTable::countEntries(const ElfBlock* block, const ElfSectionHeader* sectionHeader) {
    const std::uint32_t stride = sectionHeader->sh_entsize;
    const std::uint32_t entrySize =
        ElfRelocation::entrySize(sectionHeader->sh_type == ElfSectionHeader::SHT_RELA);
    if (stride == 0 || block->getSize() < entrySize)
        return 0;
    const std::uint32_t numThatFit = (block->getSize() - entrySize) / stride + 1;
    return std::min(sectionHeader->sh_size / stride, numThatFit);
}

void ElfRelocationTable::addRelocation(std::uint32_t offset, std::uint32_t type, std::uint32_t symbol,
                                       std::int32_t addend) {
    ZELM_ASSERT(symbol != 0);
    m_relocations.emplace_back(offset, type, symbol, addend);
    // An addend here says what the entries have, not what `encode` must write, which reading alone says.
    if (addend != 0)
        m_hasAddend = true;
}

void ElfRelocationTable::adjustOffsets(std::uint32_t position, std::int32_t delta) {
    const std::int64_t firstRemoved = std::int64_t{position} - std::max(delta, 0);
    for (ElfRelocation& relocation : m_relocations) {
        if (relocation.getOffset() >= position)
            relocation.setOffset(relocation.getOffset() - static_cast<std::uint32_t>(delta));
        else if (relocation.getOffset() >= firstRemoved)
            relocation.setRemoved(true);
    }
}

void ElfRelocationTable::substituteSymbol(std::uint32_t oldIndex, std::uint32_t newIndex) {
    for (ElfRelocation& relocation : m_relocations) {
        if (relocation.getSymbol() == oldIndex)
            relocation.setSymbol(newIndex);
    }
}

ElfBlock* ElfRelocationTable::encode(bool writeAddend) {
    ZELM_ASSERT(m_elfBlock == __null);
    ZELM_ASSERT(writeAddend | !m_requiresAddend);
    m_hasAddend = writeAddend;

    const std::uint32_t entrySize = ElfRelocation::entrySize(writeAddend);
    const std::size_t numBytes = m_relocations.size() * entrySize;
    auto data = std::make_unique<unsigned char[]>(numBytes);
    unsigned char* entry = data.get();
    for (const ElfRelocation& relocation : m_relocations) {
        relocation.encode(writeAddend, entry);
        entry += entrySize;
    }
    m_elfBlock = new ElfBlock(static_cast<std::uint32_t>(numBytes), data.release());
    return m_elfBlock;
}

void ElfRelocationTable::display() const {
    // The texts carry a blank and a colon of their own, so that the line shows both twice: wanted.
    std::printf("\nRelocation table contains %d %s:\n", static_cast<int>(getNumEntries()),
                getNumEntries() == 1 ? " entry:" : " entries:");
    int index = 0;
    for (const ElfRelocation& relocation : m_relocations) {
        std::printf("Index %d\n", index++);
        relocation.display();
    }
}

#include "infr_libs/ElfHandler/ElfBlock.h"
#include "infr_libs/ElfHandler/ElfHandler.h"
#include "infr_libs/ElfHandler/ElfSectionHeader.h"
#include "infr_libs/ErrorHandler/Assertion.h"

#include <algorithm>
#include <cstring>

ElfBlock* ElfHandler::findBlockOfSection(unsigned int sectionNo, std::uint32_t& offset) const {
    ElfBlock* block = findBlock(m_sectionHeaders[sectionNo].get(), offset);
    ZELM_ASSERT(block);
    return block;
}

std::uint32_t ElfHandler::getSectionSize(unsigned int sectionNo) const {
    ZELM_ASSERT(sectionNo < m_sectionHeaders.size());
    return m_sectionHeaders[sectionNo]->sh_size;
}

void ElfHandler::writeSectionData(unsigned int sectionNo, void* destination) const {
    ZELM_ASSERT(sectionNo < m_sectionHeaders.size());
    std::uint32_t offset = 0;
    const ElfBlock* block = findBlockOfSection(sectionNo, offset);
    const std::uint32_t size = m_sectionHeaders[sectionNo]->sh_size;
    const std::uint32_t numThere = std::min(size, block->getSize() - std::min(offset, block->getSize()));
    auto* next = static_cast<unsigned char*>(destination);
    if (numThere != 0)
        std::memcpy(next, block->getData() + offset, numThere);
    if (size != numThere)
        std::memset(next + numThere, 0, size - numThere);
}

void ElfHandler::modifySectionData(unsigned int sectionNo, std::uint32_t wordIndex, std::uint32_t value) {
    ZELM_ASSERT(sectionNo < m_sectionHeaders.size());
    std::uint32_t offset = 0;
    ElfBlock* block = findBlockOfSection(sectionNo, offset);
    if (wordIndex < block->getSize() / sizeof value)
        std::memcpy(block->getData() + std::size_t{wordIndex} * sizeof value, &value, sizeof value);
}

void ElfHandler::expandSectionData(unsigned int sectionNo, std::uint32_t offset, std::uint32_t numBytes,
                                   std::uint32_t, std::uint32_t fill, std::uint32_t fillBytes) {
    ZELM_ASSERT(sectionNo < m_sectionHeaders.size());
    ElfSectionHeader* header = m_sectionHeaders[sectionNo].get();
    if (header->sh_type == ElfSectionHeader::SHT_NOBITS) {
        header->sh_size += numBytes;
        return;
    }
    std::uint32_t ignored = 0;
    ElfBlock* block = findBlockOfSection(sectionNo, ignored);
    header->sh_size += numBytes;

    // All places are counted in 64 bits and kept within the block.
    const std::uint64_t gapEnd = std::uint64_t{offset} + numBytes;
    const std::uint64_t newEnd = std::min(header->sh_size, block->getSize());
    if (gapEnd < newEnd)
        std::memmove(block->getData() + gapEnd, block->getData() + offset, newEnd - gapEnd);

    const std::uint64_t fillStart = offset - std::min(offset, fillBytes);
    for (std::uint64_t place = std::min<std::uint64_t>(gapEnd, block->getSize()); place > fillStart;
         --place) {
        const auto shift = static_cast<unsigned int>((gapEnd - place) % sizeof fill * 8);
        block->getData()[place - 1] = static_cast<unsigned char>(fill >> shift);
    }
}

void ElfHandler::contractSectionData(unsigned int sectionNo, std::uint32_t offset, std::uint32_t numBytes) {
    ZELM_ASSERT(sectionNo < m_sectionHeaders.size());
    ElfSectionHeader* header = m_sectionHeaders[sectionNo].get();
    if (header->sh_type != ElfSectionHeader::SHT_NOBITS) {
        std::uint32_t ignored = 0;
        ElfBlock* block = findBlockOfSection(sectionNo, ignored);
        const std::uint64_t restStart = std::uint64_t{offset} + numBytes;
        const std::uint64_t restEnd = std::min(header->sh_size, block->getSize());
        if (restStart < restEnd)
            std::memmove(block->getData() + offset, block->getData() + restStart, restEnd - restStart);
    }
    header->sh_size -= std::min(numBytes, header->sh_size);
}

ElfRelocationTable* ElfHandler::newRelocationTable() {
    return &m_relocationTables.emplace_back();
}

void ElfHandler::adjustRelocationOffsets(unsigned int sectionNo, std::uint32_t position, std::int32_t delta) {
    const ElfSectionHeader* section = getSectionHeader(sectionNo);
    if (!section)
        return;
    for (ElfRelocationTable* table : section->getRelocations())
        table->adjustOffsets(position, delta);
}

void ElfHandler::substituteRelocationReferences(std::uint32_t oldIndex, std::uint32_t newIndex) {
    for (ElfRelocationTable& table : m_relocationTables)
        table.substituteSymbol(oldIndex, newIndex);
}

void ElfHandler::updateRelocationSymbolTableLinks(unsigned int symbolTableSection) {
    for (ElfSectionHeader* header : m_relocationHeaders)
        header->sh_link = symbolTableSection;
}

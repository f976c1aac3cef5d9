#include "infr_libs/ElfHandler/ElfBlock.h"

#include "infr_libs/ElfHandler/ElfProgramHeader.h"
#include "infr_libs/ElfHandler/ElfSectionHeader.h"
#include "infr_libs/ErrorHandler/Assertion.h"

#include <cstring>
#include <new>

ElfBlock::ElfBlock(std::uint32_t size, unsigned char* data, std::uint32_t offset)
    : ElfBlock(size, ElfBytes(data), offset) {}

ElfBlock::ElfBlock(std::uint32_t size, ElfBytes data, std::uint32_t offset)
    : m_size(size), m_offset(offset), m_data(std::move(data)) {}

ElfBlock::~ElfBlock() {
    ZELM_ASSERT(m_data != __null);
}

void ElfBlock::setProgramHeader(ElfProgramHeader* header) {
    ZELM_ASSERT(m_phdr == __null);
    m_phdr = header;
}

void ElfBlock::addSection(std::uint32_t offsetInBlock, ElfSectionHeader* header) {
    m_sections.emplace_back(offsetInBlock, header);
}

void ElfBlock::updateOffsets(std::uint32_t offset) {
    m_offset = offset;
    if (m_phdr)
        m_phdr->p_offset = offset;
    for (const auto& [offsetInBlock, header] : m_sections)
        header->sh_offset = offset + offsetInBlock;
}

void ElfBlock::extendData(std::uint32_t extra) {
    const std::uint64_t newSize = std::uint64_t{m_size} + extra;
    if (newSize > s_maxNumBytes)
        throw std::bad_alloc();
    ElfBytes larger = newZeroBytes(static_cast<std::size_t>(newSize));
    if (!larger)
        throw std::bad_alloc();
    std::memcpy(larger.get(), m_data.get(), m_size);
    m_data = std::move(larger);
    m_size = static_cast<std::uint32_t>(newSize);
}

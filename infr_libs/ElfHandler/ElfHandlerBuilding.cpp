#include "infr_libs/ElfHandler/ElfBlock.h"
#include "infr_libs/ElfHandler/ElfHandler.h"
#include "infr_libs/ElfHandler/ElfHeader.h"
#include "infr_libs/ElfHandler/ElfProgramHeader.h"
#include "infr_libs/ElfHandler/ElfSectionHeader.h"
#include "infr_libs/ElfHandler/ElfStrings.h"
#include "infr_libs/ErrorHandler/Assertion.h"

#include <array>
#include <cstring>

namespace {

constexpr std::uint8_t s_class32 = 1;      // ELFCLASS32
constexpr std::uint8_t s_littleEndian = 1; // ELFDATA2LSB
constexpr std::uint8_t s_version = 1;      // EV_CURRENT
constexpr std::uint16_t s_machine = 0xB49E;

std::uint64_t roundedToWords(std::uint64_t numBytes) {
    return (numBytes + 3) & ~std::uint64_t{3};
}

// The arguments are wider than in the file, so that their sum can't wrap.
void assertInside(const ElfBlock* block, std::uint64_t offset, std::uint64_t numBytes) {
    ZELM_ASSERT(offset + numBytes <= block->getSize());
}

} // namespace

void ElfHandler::createDefaultHeader(unsigned char type) {
    m_header = std::make_unique<ElfHeader>();
    m_header->e_ident = {0x7F, 'E', 'L', 'F', s_class32, s_littleEndian, s_version};
    m_header->e_type = type;
    m_header->e_machine = s_machine;
    m_header->e_version = s_version;
    // Both tables are said to begin behind the header even as long as there are none: wanted. Section headers
    // come behind the program headers, which push them up.
    m_header->e_phoff = ElfHeader::s_numBytes;
    m_header->e_shoff = ElfHeader::s_numBytes;
    m_header->e_ehsize = ElfHeader::s_numBytes;
    m_header->e_phentsize = ElfProgramHeader::s_numBytes;
    m_header->e_shentsize = ElfSectionHeader::s_numBytes;
}

unsigned int ElfHandler::addProgramHeader(ElfProgramHeader* header) {
    m_programHeaders.emplace_back(header);
    m_header->e_shoff += ElfProgramHeader::s_numBytes;
    return m_header->e_phnum++;
}

unsigned int ElfHandler::addSectionHeader(ElfSectionHeader* header) {
    m_sectionHeaders.emplace_back(header);
    return m_header->e_shnum++;
}

unsigned int ElfHandler::addRelocationHeader(ElfSectionHeader* header) {
    m_relocationHeaders.push_back(header);
    return addSectionHeader(header);
}

void ElfHandler::addBlock(ElfBlock* block) {
    m_blocks.emplace_back(block);
}

unsigned int ElfHandler::addSegment(std::uint32_t vaddr, std::uint32_t fileBytes, std::uint32_t memBytes,
                                    unsigned char* data, std::uint32_t flags, std::uint32_t align) {
    ZELM_ASSERT(fileBytes <= memBytes);
    auto* header = new ElfProgramHeader(static_cast<unsigned int>(m_programHeaders.size()));
    const unsigned int segmentNo = addProgramHeader(header);
    header->p_type = ElfProgramHeader::PT_LOAD;
    header->p_vaddr = vaddr;
    header->p_paddr = vaddr;
    header->p_filesz = fileBytes;
    header->p_memsz = memBytes;
    header->p_flags = flags;
    header->p_align = align;

    auto* block = new ElfBlock(fileBytes, data);
    addBlock(block);
    block->setProgramHeader(header);
    return segmentNo;
}

unsigned int ElfHandler::addSection(const SectionFields& fields) {
    auto* header = new ElfSectionHeader(static_cast<unsigned int>(m_sectionHeaders.size()));
    const unsigned int sectionNo = addSectionHeader(header);
    header->sh_name = m_strings->add(fields.name)->getOffset();
    header->sh_type = fields.type;
    header->sh_flags = fields.flags;
    header->sh_addr = fields.addr;
    header->sh_size = fields.size;
    header->sh_addralign = fields.addralign;
    header->sh_entsize = fields.entsize;
    return sectionNo;
}

// With a block of its own on the data.
unsigned int ElfHandler::addSection(const SectionFields& fields, unsigned char* data) {
    auto* block = new ElfBlock(fields.size, data);
    addBlock(block);
    const unsigned int sectionNo = addSection(fields);
    block->addSection(0, m_sectionHeaders.back().get());
    return sectionNo;
}

// Inside a segment's block.
unsigned int ElfHandler::addSection(const SectionFields& fields, ElfBlock* block, std::uint32_t offset) {
    const unsigned int sectionNo = addSection(fields);
    block->addSection(offset, m_sectionHeaders.back().get());
    return sectionNo;
}

unsigned int ElfHandler::addProgbitsSection(std::uint32_t addr, std::uint32_t numBytes, unsigned char* data,
                                            const char* name, std::uint32_t flags, std::uint32_t addralign,
                                            std::uint32_t entsize) {
    return addSection({ElfSectionHeader::SHT_PROGBITS, name, flags, addr, numBytes, addralign, entsize},
                      data);
}

unsigned int ElfHandler::addProgbitsSection(std::uint32_t addr, std::uint32_t numBytes,
                                            unsigned int segmentNo, std::uint32_t offset, const char* name,
                                            std::uint32_t flags, std::uint32_t addralign,
                                            std::uint32_t entsize) {
    ZELM_ASSERT(segmentNo < m_programHeaders.size());
    ElfBlock* block = findBlock(m_programHeaders[segmentNo].get());
    ZELM_ASSERT(block);
    assertInside(block, offset, numBytes);
    return addSection({ElfSectionHeader::SHT_PROGBITS, name, flags, addr, numBytes, addralign, entsize},
                      block, offset);
}

unsigned int ElfHandler::addNobitsSection(std::uint32_t addr, std::uint32_t numBytes, unsigned int segmentNo,
                                          std::uint32_t offset, const char* name, std::uint32_t flags,
                                          std::uint32_t addralign, std::uint32_t entsize) {
    ZELM_ASSERT(segmentNo < m_programHeaders.size());
    const ElfProgramHeader* codePHdr = m_programHeaders[segmentNo].get();
    ZELM_ASSERT(offset >= codePHdr->p_filesz && offset <= codePHdr->p_memsz);
    ElfBlock* block = findBlock(codePHdr);
    ZELM_ASSERT(block);
    return addSection({ElfSectionHeader::SHT_NOBITS, name, flags, addr, numBytes, addralign, entsize}, block,
                      offset);
}

unsigned int ElfHandler::addNobitsSection(std::uint32_t addr, std::uint32_t numBytes, const char* name,
                                          std::uint32_t flags, std::uint32_t addralign,
                                          std::uint32_t entsize) {
    return addSection({ElfSectionHeader::SHT_NOBITS, name, flags, addr, numBytes, addralign, entsize});
}

unsigned int ElfHandler::addInfoSection(std::uint32_t addr, std::uint32_t numBytes, unsigned char* data,
                                        const char* name, std::uint32_t flags, std::uint32_t addralign,
                                        std::uint32_t entsize) {
    return addSection({ElfSectionHeader::SHT_INFO, name, flags, addr, numBytes, addralign, entsize}, data);
}

unsigned int ElfHandler::addExprSection(std::uint32_t addr, std::uint32_t numBytes, unsigned char* data,
                                        const char* name, std::uint32_t flags, std::uint32_t addralign,
                                        std::uint32_t entsize) {
    return addSection({ElfSectionHeader::SHT_EXPR, name, flags, addr, numBytes, addralign, entsize}, data);
}

unsigned int ElfHandler::addNetinfoSection(std::uint32_t addr, std::uint32_t numBytes, unsigned char* data,
                                           const char* name, std::uint32_t flags, std::uint32_t addralign,
                                           std::uint32_t entsize) {
    return addSection({ElfSectionHeader::SHT_NETINFO, name, flags, addr, numBytes, addralign, entsize}, data);
}

unsigned int ElfHandler::addGroupSection(std::uint32_t numBytes, unsigned char* data) {
    return addSection(
        {ElfSectionHeader::SHT_GROUP, ".group", 0, 0, numBytes, ElfGroup::s_wordSize, ElfGroup::s_wordSize},
        data);
}

unsigned int ElfHandler::addNoteSection(const char* name, std::uint32_t type, const void* data,
                                        std::uint32_t size) {
    // Three words, the note's name, its description; the latter two filled up to whole words.
    const std::array<std::uint32_t, 3> words = {noteNameLen, size, type};
    const std::uint64_t descriptionAt = sizeof words + roundedToWords(noteNameLen);
    const auto numBytes = static_cast<std::size_t>(descriptionAt + roundedToWords(size));
    auto contents = std::make_unique<unsigned char[]>(numBytes);
    std::memcpy(contents.get(), words.data(), sizeof words);
    std::memcpy(contents.get() + sizeof words, noteName, noteNameLen);
    if (size != 0)
        std::memcpy(contents.get() + descriptionAt, data, size);
    return addSection({ElfSectionHeader::SHT_NOTE, name, 0, 0, static_cast<std::uint32_t>(numBytes)},
                      contents.release());
}

void ElfHandler::addRelocations(unsigned int sectionNo, ElfRelocationTable* table) {
    ZELM_ASSERT(sectionNo < m_sectionHeaders.size());
    ElfSectionHeader* target = m_sectionHeaders[sectionNo].get();
    const std::string name = ".rela" + target->getName(m_strings.get());
    target->addRelocations(table);

    // Sections built here always have addends.
    ElfBlock* block = table->encode(true);
    auto* header = new ElfSectionHeader(static_cast<unsigned int>(m_sectionHeaders.size()));
    addRelocationHeader(header);
    addBlock(block);
    header->sh_name = m_strings->add(name.c_str())->getOffset();
    header->sh_type = ElfSectionHeader::SHT_RELA;
    header->sh_size = block->getSize();
    header->sh_info = sectionNo;
    header->sh_addralign = 1;
    header->sh_entsize = ElfRelocation::s_numBytesWithAddend;
    block->addSection(0, header);
}

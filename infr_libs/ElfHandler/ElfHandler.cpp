#include "infr_libs/ElfHandler/ElfHandler.h"

#include "infr_libs/ElfHandler/ElfBlock.h"
#include "infr_libs/ElfHandler/ElfHeader.h"
#include "infr_libs/ElfHandler/ElfProgramHeader.h"
#include "infr_libs/ElfHandler/ElfSectionHeader.h"
#include "infr_libs/ElfHandler/ElfStrings.h"
#include "infr_libs/ElfHandler/ElfSymbolTable.h"
#include "infr_libs/ErrorHandler/Assertion.h"
#include "infr_libs/ErrorHandler/ErrorHandler.h"

#include <algorithm>
#include <fstream>

ElfHandler::ElfHandler(ErrorHandler* errorHandler) : m_errorHandler(errorHandler) {}

ElfHandler::ElfHandler(ErrorHandler* errorHandler, std::istream& stream) : ElfHandler(errorHandler) {
    readFileStream(stream);
}

ElfHandler::ElfHandler(ErrorHandler* errorHandler, const char* fileName) : ElfHandler(errorHandler) {
    m_fileName = fileName;
    std::ifstream stream(fileName, std::ios::binary);
    if (!stream)
        m_errorHandler->fatalError(true, "ERROR: Unable to open elf file '%s' for loading\n", fileName);
    readFileStream(stream);
}

ElfHandler::ElfHandler(ErrorHandler* errorHandler, unsigned char type) : ElfHandler(errorHandler) {
    ZELM_ASSERT(type == 1 || type == 2);
    createDefaultHeader(type);
    addMissingTables();
    addSectionHeader(new ElfSectionHeader(0));
}

// The parts of the file go first, then what lists them: groups and relocation tables.
ElfHandler::~ElfHandler() {
    m_header.reset();
    m_strings.reset();
    m_symbolTable.reset();
    m_programHeaders.clear();
    m_sectionHeaders.clear();
    m_blocks.clear();
}

std::uint32_t ElfHandler::getEntryPoint() const {
    return m_header ? m_header->e_entry : 0;
}

unsigned int ElfHandler::getType() const {
    return m_header ? m_header->getType() : 0;
}

ElfSectionHeader* ElfHandler::getSectionHeader(unsigned int sectionIndex) const {
    if (sectionIndex >= m_sectionHeaders.size())
        return nullptr;
    ZELM_ASSERT(m_sectionHeaders[sectionIndex]->getNum() == sectionIndex);
    return m_sectionHeaders[sectionIndex].get();
}

ElfBlock* ElfHandler::findBlock(const ElfProgramHeader* header) const {
    for (const std::unique_ptr<ElfBlock>& block : m_blocks) {
        if (block->getProgramHeader() == header)
            return block.get();
    }
    return nullptr;
}

ElfBlock* ElfHandler::findBlock(const ElfSectionHeader* header, std::uint32_t& offset) const {
    for (const std::unique_ptr<ElfBlock>& block : m_blocks) {
        for (const auto& [offsetInBlock, section] : block->getSectionHeaders()) {
            if (section == header) {
                offset = offsetInBlock;
                return block.get();
            }
        }
    }
    return nullptr;
}

std::vector<ElfHandler::Segment*>* ElfHandler::getProgramSegments() const {
    auto* segments = new std::vector<Segment*>;
    for (const std::unique_ptr<ElfBlock>& block : m_blocks) {
        const ElfProgramHeader* header = block->getProgramHeader();
        if (header && header->p_type == ElfProgramHeader::PT_LOAD && header->p_filesz != 0)
            segments->push_back(
                new Segment{header->p_paddr, std::min(header->p_filesz, block->getSize()), block->getData()});
    }
    return segments;
}

void ElfHandler::check() const {
    if (!m_symbolTable || m_sectionHeaders.empty())
        return;
    m_symbolTable->check(m_errorHandler, static_cast<unsigned int>(m_sectionHeaders.size() - 1));
}

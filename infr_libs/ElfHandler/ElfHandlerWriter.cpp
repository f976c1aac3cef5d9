#include "infr_libs/ElfHandler/ElfBlock.h"
#include "infr_libs/ElfHandler/ElfFields.h"
#include "infr_libs/ElfHandler/ElfHandler.h"
#include "infr_libs/ElfHandler/ElfHeader.h"
#include "infr_libs/ElfHandler/ElfProgramHeader.h"
#include "infr_libs/ElfHandler/ElfSectionHeader.h"
#include "infr_libs/ElfHandler/ElfStrings.h"
#include "infr_libs/ElfHandler/ElfSymbolTable.h"
#include "infr_libs/ErrorHandler/ErrorHandler.h"

#include <fstream>

namespace {

template<class Structure>
void writeStructure(std::ostream& stream, const Structure& structure) {
    const auto bytes = fileForm(structure);
    stream.write(reinterpret_cast<const char*>(bytes.data()), bytes.size());
}

} // namespace

void ElfHandler::setElfAddresses() {
    // The two tables that are added below have headers too. A file that was read has them already, and gets
    // no room for a second pair: wanted, it isn't meant to be written.
    const std::uint32_t numTables = m_tablesInFile ? 0 : 2;
    std::uint32_t offset = m_header->e_shoff + (m_header->e_shnum + numTables) * ElfSectionHeader::s_numBytes;

    // Nothing is aligned: wanted.
    for (const std::unique_ptr<ElfBlock>& block : m_blocks) {
        block->updateOffsets(offset);
        offset += block->getSize();
    }
    const unsigned int symbolTableSection = addSymbolTable(offset);
    updateRelocationSymbolTableLinks(symbolTableSection);
    addStringTable(offset + m_symbolTable->numBytes());

    if (m_header->e_type == ET_EXEC)
        setEntryPoint();
}

void ElfHandler::setEntryPoint() {
    const ElfSymbol* start = m_symbolTable->find("_start");
    m_header->e_entry = start ? start->st_value : 0;
    if (!start)
        m_errorHandler->fatalError(false,
                                   "WARNING: '_start' symbol not found - setting ELF entry point to 0.\n");
}

unsigned int ElfHandler::addSymbolTable(std::uint32_t offset) {
    const unsigned int sectionNo = addSection(
        {ElfSectionHeader::SHT_SYMTAB, ".symtab", 0, 0, m_symbolTable->numBytes(), 1, ElfSymbol::s_numBytes},
        m_symbolTable->createBuffer());
    m_sectionHeaders.back()->sh_link = sectionNo + 1; // the string table, which comes next
    m_blocks.back()->updateOffsets(offset);
    return sectionNo;
}

unsigned int ElfHandler::addStringTable(std::uint32_t offset) {
    m_strings->add(".strtab"); // before the table is taken: its own name is in it
    const unsigned int sectionNo =
        addSection({ElfSectionHeader::SHT_STRTAB, ".strtab", 0, 0, m_strings->numBytes(), 1},
                   m_strings->createBuffer(true));
    m_header->e_shstrndx = static_cast<std::uint16_t>(sectionNo);
    m_blocks.back()->updateOffsets(offset);
    return sectionNo;
}

void ElfHandler::writeToFile(const char* fileName) {
    setElfAddresses();
    std::ofstream stream(fileName, std::ios::binary | std::ios::trunc);
    if (!stream) {
        m_errorHandler->fatalError(true, "ERROR: Unable to open output file '%s' for writing elf\n",
                                   fileName);
        return;
    }
    writeStructure(stream, *m_header);
    for (const std::unique_ptr<ElfProgramHeader>& header : m_programHeaders)
        writeStructure(stream, *header);
    for (const std::unique_ptr<ElfSectionHeader>& header : m_sectionHeaders)
        writeStructure(stream, *header);
    for (const std::unique_ptr<ElfBlock>& block : m_blocks)
        stream.write(reinterpret_cast<const char*>(block->getData()), block->getSize());

    // A full disk may show only here.
    stream.close();
    if (!stream)
        m_errorHandler->fatalError(true, "ERROR: Unable to write output file '%s'\n", fileName);
}

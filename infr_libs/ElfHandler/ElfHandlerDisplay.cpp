#include "infr_libs/ElfHandler/ElfBlock.h"
#include "infr_libs/ElfHandler/ElfHandler.h"
#include "infr_libs/ElfHandler/ElfHeader.h"
#include "infr_libs/ElfHandler/ElfProgramHeader.h"
#include "infr_libs/ElfHandler/ElfSectionHeader.h"
#include "infr_libs/ElfHandler/ElfStrings.h"
#include "infr_libs/ElfHandler/ElfSymbolTable.h"

#include <cstdio>

namespace {

// Prints the fields of a structure, a line each.
class FieldPrinter {
public:
    explicit FieldPrinter(const char* structure) : m_structure(structure) {}

    void operator()(const char* name, std::uint32_t field) const {
        std::printf("%s.%s = %08x\n", m_structure, name, field);
    }

    void operator()(const char* name, const std::array<std::uint8_t, 16>& field) const {
        std::printf("%s.%s = ", m_structure, name);
        for (const std::uint8_t byte : field)
            std::printf("%02x", byte);
        std::printf("\n");
    }

private:
    const char* m_structure;
};

void displayBytes(const ElfBlock& block) {
    for (std::uint32_t i = 0; i < block.getSize(); ++i) {
        if (i % 16 == 0)
            std::printf("\n0x%08x:", i);
        if (i % 4 == 0)
            std::printf(" ");
        std::printf("%02x", block.getData()[i]);
    }
    std::printf("\n");
}

void displayBlock(const ElfBlock& block) {
    std::printf("Block of data at 0x%08x, size %u bytes\n", block.getOffset(), block.getSize());
    if (block.getProgramHeader())
        std::printf("Program segment %d\n", static_cast<int>(block.getProgramHeader()->getNum()));
    else
        std::printf("Not a program segment\n");

    bool isSection = false;
    for (const auto& [offsetInBlock, header] : block.getSectionHeaders()) {
        if (offsetInBlock != 0)
            continue;
        std::printf("Section %d\n", static_cast<int>(header->getNum()));
        isSection = true;
    }
    if (!isSection)
        std::printf("Not a section\n");
    displayBytes(block);
}

} // namespace

void ElfHandler::display() const {
    if (m_header)
        ElfHeader::eachField(*m_header, FieldPrinter("Elf32_Ehdr"));
    for (const std::unique_ptr<ElfProgramHeader>& header : m_programHeaders) {
        std::printf("\nProgram Header %d\n", static_cast<int>(header->getNum()));
        ElfProgramHeader::eachField(*header, FieldPrinter("Elf32_Phdr"));
    }
    for (const std::unique_ptr<ElfSectionHeader>& header : m_sectionHeaders) {
        std::printf("\nSection Header %d\n", static_cast<int>(header->getNum()));
        std::printf("Section name: %s\n", getStringsEntry(header->sh_name));
        ElfSectionHeader::eachField(*header, FieldPrinter("Elf32_Shdr"));
    }
    int blockNum = 0;
    for (const std::unique_ptr<ElfBlock>& block : m_blocks) {
        std::printf("\nBlock %d\n", blockNum++);
        displayBlock(*block);
    }
    if (m_symbolTable)
        m_symbolTable->display(m_strings.get());
    if (m_strings)
        m_strings->display();
    for (const ElfRelocationTable& table : m_relocationTables)
        table.display();
}

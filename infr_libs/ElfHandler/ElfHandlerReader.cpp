#include "infr_libs/ElfHandler/ElfBlock.h"
#include "infr_libs/ElfHandler/ElfHandler.h"
#include "infr_libs/ElfHandler/ElfHeader.h"
#include "infr_libs/ElfHandler/ElfInput.h"
#include "infr_libs/ElfHandler/ElfProgramHeader.h"
#include "infr_libs/ElfHandler/ElfSectionHeader.h"
#include "infr_libs/ElfHandler/ElfStrings.h"
#include "infr_libs/ElfHandler/ElfSymbolTable.h"
#include "infr_libs/ErrorHandler/Assertion.h"
#include "infr_libs/ErrorHandler/ErrorHandler.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

// What is needed only while a file is read.
struct ElfHandler::Reading {
    // Where a block stands in the file, for the search of the block that holds a section. Kept apart from
    // the blocks, so that the search walks one array.
    struct Extent {
        std::uint64_t offset;
        std::uint64_t end;       // of the bytes in the file
        std::uint64_t memoryEnd; // of the memory that the segment takes; for other blocks as `end`
    };

    explicit Reading(std::istream& stream)
        : input(stream),
          numBytesForBlocks(input.length() + ElfInput::s_slack),
          numBytesForTables(input.length() + ElfInput::s_slack) {}

    // The index of the first block that holds the range of this section.
    std::size_t findHolder(const ElfSectionHeader& header) const {
        const std::uint64_t end = std::uint64_t{header.sh_offset} + header.sh_size;
        if (end > furthestEnd)
            return extents.size();
        const auto holder = std::find_if(extents.begin(), extents.end(), [&](const Extent& extent) {
            const std::uint64_t heldEnd =
                header.sh_type == ElfSectionHeader::SHT_NOBITS ? extent.memoryEnd : extent.end;
            return extent.offset <= header.sh_offset && end <= heldEnd;
        });
        return static_cast<std::size_t>(holder - extents.begin());
    }

    void addExtent(std::uint32_t offset, std::uint32_t fileSize, std::uint32_t memorySize) {
        const std::uint64_t end = std::uint64_t{offset} + fileSize;
        extents.push_back({offset, end, std::max(end, std::uint64_t{offset} + memorySize)});
        furthestEnd = std::max(furthestEnd, extents.back().memoryEnd);
    }

    // Takes the bytes from what is left of an allowance, if it has so many.
    static bool take(std::uint64_t& allowance, std::uint64_t numBytes) {
        if (numBytes > allowance)
            return false;
        allowance -= numBytes;
        return true;
    }

    ElfInput input;
    // What blocks, and what relocations and groups, may still take in sum. Headers that all claim the same
    // bytes would else multiply the size of the file.
    std::uint64_t numBytesForBlocks;
    std::uint64_t numBytesForTables;
    std::vector<Extent> extents; // one a block
    std::uint64_t furthestEnd = 0;
};

void ElfHandler::readFileStream(std::istream& stream) {
    m_tablesInFile = true;
    Reading reading(stream);
    readHeaders(reading);
    for (const std::unique_ptr<ElfProgramHeader>& header : m_programHeaders)
        readSegment(reading, header.get());
    // The null section has no contents.
    for (std::size_t i = 1; i < m_sectionHeaders.size(); ++i)
        readSection(reading, m_sectionHeaders[i].get());
    addMissingTables();
    // The index of symbol names waits until someone looks for a name or may change one.
    m_groups.postProcess(this);
}

void ElfHandler::readHeaders(Reading& reading) {
    ElfInput& input = reading.input;
    m_header = std::make_unique<ElfHeader>(input.readBytes<ElfHeader>().data());
    // Class, byte order, machine and entry sizes are taken on trust: wanted.
    if (!m_header->hasMagic())
        m_errorHandler->fatalError(true, "ERROR: Header is not an ELF file\n");

    if (m_header->e_phnum != 0) {
        input.seek(m_header->e_phoff);
        for (unsigned int i = 0; i < m_header->e_phnum; ++i)
            m_programHeaders.push_back(
                std::make_unique<ElfProgramHeader>(input.readBytes<ElfProgramHeader>().data(), i));
    }
    if (m_header->e_shnum != 0) {
        input.seek(m_header->e_shoff);
        for (unsigned int i = 0; i < m_header->e_shnum; ++i)
            m_sectionHeaders.push_back(
                std::make_unique<ElfSectionHeader>(input.readBytes<ElfSectionHeader>().data(), i));
    }
}

void ElfHandler::readSegment(Reading& reading, ElfProgramHeader* header) {
    std::unique_ptr<ElfBlock> block = readBlock(reading, header->p_offset, header->p_filesz, "segment");
    block->setProgramHeader(header);
    reading.addExtent(header->p_offset, block->getSize(), header->p_memsz);
    m_blocks.push_back(std::move(block));
}

void ElfHandler::readSection(Reading& reading, ElfSectionHeader* header) {
    const std::size_t holder = reading.findHolder(*header);
    const bool isHeld = holder < m_blocks.size();
    if (!isHeld) {
        // A section without contents that no segment has room for isn't even asked for its type: wanted.
        if (header->sh_type == ElfSectionHeader::SHT_NOBITS)
            return;
        m_blocks.push_back(readBlock(reading, header->sh_offset, header->sh_size, "section"));
        reading.addExtent(header->sh_offset, m_blocks.back()->getSize(), 0);
    }
    ElfBlock* block = m_blocks[holder].get();
    block->addSection(isHeld ? header->sh_offset - block->getOffset() : 0, header);
    readContents(reading, header, block);
}

// A block of bytes of the file, zeros where the file has none. Without memory for it, or credit, it is empty.
std::unique_ptr<ElfBlock> ElfHandler::readBlock(Reading& reading, std::uint32_t offset, std::uint32_t size,
                                                const char* contents) {
    ElfBytes data;
    if (size <= ElfBlock::s_maxNumBytes && Reading::take(reading.numBytesForBlocks, size))
        data = newZeroBytes(size);
    if (!data) {
        m_errorHandler->fatalError(true, "ERROR: Failed to allocate memory for data %s\n", contents);
        size = 0;
        data = ElfBytes(new unsigned char[size]);
    }
    reading.input.seek(offset);
    reading.input.readWhatIsThere(data.get(), size);
    return std::make_unique<ElfBlock>(size, std::move(data), offset);
}

void ElfHandler::readContents(Reading& reading, ElfSectionHeader* header, const ElfBlock* block) {
    ElfInput& input = reading.input;
    switch (header->sh_type) {
    case ElfSectionHeader::SHT_PROGBITS:
    case ElfSectionHeader::SHT_NOTE:
    case ElfSectionHeader::SHT_NOBITS:
    case ElfSectionHeader::SHT_INFO:
    case ElfSectionHeader::SHT_EXPR:
    case ElfSectionHeader::SHT_NETINFO:
        break;
    case ElfSectionHeader::SHT_SYMTAB:
        if (m_symbolTable) {
            m_errorHandler->fatalError(true, "ERROR: Only one symbol table is supported\n");
            std::exit(1);
        }
        input.seek(header->sh_offset);
        m_symbolTable = std::make_unique<ElfSymbolTable>(this, input.stream(), header);
        break;
    case ElfSectionHeader::SHT_STRTAB:
        if (m_strings) {
            m_errorHandler->fatalError(true, "ERROR: Only one string table is supported\n");
            std::exit(1);
        }
        input.seek(header->sh_offset);
        m_strings = std::make_unique<ElfStrings>(m_errorHandler, input.stream(), header);
        break;
    case ElfSectionHeader::SHT_RELA:
    case ElfSectionHeader::SHT_REL:
        readRelocations(reading, header, block);
        break;
    case ElfSectionHeader::SHT_GROUP:
        readGroup(reading, header);
        break;
    default:
        m_errorHandler->fatalError(true, "ERROR: Unsupported section type %d in section %d\n",
                                   static_cast<int>(header->sh_type), static_cast<int>(header->getNum()));
        break;
    }
}

void ElfHandler::readRelocations(Reading& reading, ElfSectionHeader* header, const ElfBlock* block) {
    const std::uint32_t entrySize = ElfRelocation::entrySize(header->sh_type == ElfSectionHeader::SHT_RELA);
    const std::size_t numEntries = ElfRelocationTable::countEntries(block, header);
    if (!Reading::take(reading.numBytesForTables, std::uint64_t{numEntries} * entrySize)) {
        reportNoMemoryForSection(m_errorHandler);
        return;
    }
    ElfRelocationTable& table = m_relocationTables.emplace_back(block, header);
    m_relocationHeaders.push_back(header);
    if (header->sh_info < m_sectionHeaders.size())
        m_sectionHeaders[header->sh_info]->addRelocations(&table);
    else
        m_errorHandler->fatalError(true, "ERROR: Invalid sh_info %d for section %d\n",
                                   static_cast<int>(header->sh_info), static_cast<int>(header->getNum()));
}

void ElfHandler::readGroup(Reading& reading, ElfSectionHeader* header) {
    if (!Reading::take(reading.numBytesForTables, header->sh_size)) {
        reportNoMemoryForSection(m_errorHandler);
        return;
    }
    reading.input.seek(header->sh_offset);
    m_groups.addGroup(std::make_unique<ElfGroup>(m_errorHandler, reading.input.stream(), header));
}

void ElfHandler::addMissingTables() {
    if (!m_strings)
        m_strings = std::make_unique<ElfStrings>(m_errorHandler);
    if (!m_symbolTable) {
        // A table of strings without the empty one ends here.
        ElfString* nullString = m_strings->find("");
        ZELM_ASSERT(nullString != __null);
        m_symbolTable = std::make_unique<ElfSymbolTable>(this, nullString);
    }
}

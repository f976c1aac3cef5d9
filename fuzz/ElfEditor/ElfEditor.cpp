// The first bytes of the input are edits, the rest a file: it is read, edited, written and read again. Where
// the input has no file, a new one is built by the edits, and must come back as it was written.

#include "infr_libs/ElfHandler/ElfHeader.h"
#include "infr_libs/ElfHandler/ElfProgramHeader.h"
#include "tests/support/ElfFuzzing.h"
#include "tests/support/ElfWalk.h"
#include "tests/support/TemporaryFolder.h"

#include <cstdint>

namespace {

constexpr std::size_t s_maxEdits = 24;

// The numbers that the edits are made of; zeros behind the end.
class Numbers {
public:
    explicit Numbers(std::string_view bytes) : m_bytes(bytes) {}

    bool atEnd() const { return m_place >= m_bytes.size(); }

    std::uint32_t byte() { return atEnd() ? 0 : static_cast<unsigned char>(m_bytes[m_place++]); }

    // Mostly small, at times as large as a word can be.
    std::uint32_t word() {
        const std::uint32_t number = byte();
        return number < 0xF0 ? number : 0xFFFFFFFF - (number & 0xF);
    }

    std::uint32_t below(std::size_t limit) { return static_cast<std::uint32_t>(byte() % limit); }

private:
    std::string_view m_bytes;
    std::size_t m_place = 0;
};

unsigned char* newData(std::uint32_t numBytes, std::uint32_t value) {
    auto* data = new unsigned char[numBytes];
    std::memset(data, static_cast<int>(value), numBytes);
    return data;
}

std::string name(Numbers& numbers) {
    return "." + std::string(numbers.below(8), static_cast<char>('a' + numbers.below(26)));
}

void addSomething(ElfHandler& elf, Numbers& numbers) {
    const std::uint32_t size = numbers.byte();
    switch (numbers.below(8)) {
    case 0:
        elf.addSegment(numbers.word(), size, size + numbers.byte(), newData(size, 'c'), 5, 4);
        break;
    case 1:
        elf.addProgbitsSection(numbers.word(), size, newData(size, 'd'), name(numbers).c_str(), 3, 4, 0);
        break;
    case 2:
        elf.addNobitsSection(numbers.word(), numbers.word(), name(numbers).c_str(), 3, 4, 0);
        break;
    case 3:
        elf.addNoteSection(name(numbers).c_str(), numbers.word(), std::string(size, 'n').data(), size);
        break;
    case 4:
        elf.addGroupSection(size, newData(size, 1));
        break;
    case 5:
        elf.addSymbol(name(numbers).c_str(), numbers.word(), numbers.word(), numbers.below(3), numbers.byte(),
                      numbers.word());
        break;
    case 6: {
        // Inside the last segment, if there is one with room.
        const auto& headers = elf.getProgramHeaders();
        const ElfBlock* block = headers.empty() ? nullptr : elf.findBlock(headers.back().get());
        if (block && size <= block->getSize())
            elf.addProgbitsSection(0, size, static_cast<unsigned>(headers.size() - 1),
                                   block->getSize() - size, name(numbers).c_str(), 6, 4, 0);
        break;
    }
    default: {
        if (elf.getSectionHeaders().empty())
            break;
        ElfRelocationTable* table = elf.newRelocationTable();
        for (std::uint32_t i = 0; i < size % 8; ++i)
            table->addRelocation(numbers.word(), numbers.byte(), numbers.byte() + 1,
                                 static_cast<std::int32_t>(numbers.word()));
        elf.addRelocations(numbers.below(elf.getSectionHeaders().size()), table);
        break;
    }
    }
}

void changeSomething(ElfHandler& elf, Numbers& numbers) {
    if (elf.getSectionHeaders().empty())
        return;
    const std::uint32_t section = numbers.below(elf.getSectionHeaders().size());
    std::uint32_t offset = 0;
    ElfBlock* block = elf.findBlock(elf.getSectionHeader(section), offset);
    switch (numbers.below(6)) {
    case 0:
        elf.adjustRelocationOffsets(section, numbers.word(), static_cast<std::int32_t>(numbers.word()));
        break;
    case 1:
        elf.substituteRelocationReferences(numbers.byte(), numbers.word());
        break;
    case 2:
        if (block)
            elf.modifySectionData(section, numbers.word(), numbers.word());
        break;
    case 3:
        if (block && block->getSize() < 0x10000)
            block->extendData(numbers.byte());
        break;
    case 4:
        if (block)
            elf.expandSectionData(section, numbers.word(), numbers.word(), 0, 0x44434241, numbers.word());
        break;
    default:
        if (block)
            elf.contractSectionData(section, numbers.word(), numbers.word());
        break;
    }
}

void edit(ElfHandler& elf, Numbers numbers) {
    while (!numbers.atEnd()) {
        if (numbers.below(2) == 0)
            addSomething(elf, numbers);
        else
            changeSomething(elf, numbers);
    }
}

std::string written(ElfHandler& elf) {
    static const TemporaryFolder folder;
    elf.writeToFile(folder.file("out.elf").c_str());
    return folder.read("out.elf");
}

// What blocks claim that the file doesn't hold is long to move and to write, and shows nothing here that a
// few bytes don't.
bool isLong(const ElfHandler& elf) {
    constexpr std::uint64_t s_long = 0x100000;
    std::uint64_t numBytes = 0;
    for (const auto& block : elf.getBlocks())
        numBytes += block->getSize();
    return numBytes > s_long;
}

// What was written must be there when it is read.
void compare(ElfHandler& elf, ElfHandler& read) {
    if (read.numSymbols() != elf.numSymbols() ||
        read.getSectionHeaders().size() != elf.getSectionHeaders().size() ||
        read.getProgramHeaders().size() != elf.getProgramHeaders().size() ||
        read.getStrings()->numBytes() != elf.getStrings()->numBytes())
        std::abort();
    for (unsigned i = 0; i < elf.numSymbols(); ++i) {
        if (std::strcmp(elf.getSymbolName(i), read.getSymbolName(i)) != 0 ||
            elf.getSymbolInfo(i) != read.getSymbolInfo(i) || elf.getSymbolValue(i) != read.getSymbolValue(i))
            std::abort();
    }
}

void build(const std::string& edits) {
    FuzzErrorHandler errorHandler(false);
    ElfHandler elf(&errorHandler, ElfHandler::ET_EXEC);
    edit(elf, Numbers(edits));
    std::istringstream stream(written(elf));
    ElfHandler read(&errorHandler, stream);
    compare(elf, read);
    walkReadElf(read);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    const std::string edits = bytes.substr(0, s_maxEdits);
    if (size <= s_maxEdits) {
        build(edits);
        return 0;
    }
    readBothWays(bytes.substr(s_maxEdits), [&](ElfHandler& elf) {
        if (isLong(elf))
            return;
        edit(elf, Numbers(edits));
        walkEditedElf(elf);
        readBothWays(written(elf), walkReadElf);
    });
    return 0;
}

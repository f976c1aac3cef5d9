#include "infr_libs/ElfHandler/ElfBlock.h"
#include "infr_libs/ElfHandler/ElfHandler.h"
#include "infr_libs/ElfHandler/ElfHeader.h"
#include "infr_libs/ElfHandler/ElfSectionHeader.h"
#include "infr_libs/ElfHandler/ElfStrings.h"
#include "infr_libs/ElfHandler/ElfSymbolTable.h"
#include "infr_libs/ErrorHandler/ErrorHandler.h"
#include "tests/infr_libs/ElfHandler/ElfSamples.h"
#include "tests/support/Bytes.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/LabelledBytes.h"
#include "tests/support/RecordingErrorHandler.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint32_t s_global = ElfSymbol::STB_GLOBAL;
constexpr std::uint32_t s_function = ElfSymbol::STT_FUNC;

class ElfHandlerWriterTest : public testing::Test {
protected:
    TemporaryFolder m_folder;
    RecordingErrorHandler m_errorHandler;

    // The bytes of the file that the handler writes.
    std::string write(ElfHandler& elf) {
        elf.writeToFile(m_folder.file("out.elf").c_str());
        return m_folder.read("out.elf");
    }

    // Written and read again.
    std::unique_ptr<ElfHandler> rewritten(ElfHandler& elf) { return readElf(m_errorHandler, write(elf)); }
};

// An executable of one segment.
class ElfExecutable : public ElfHandler {
public:
    explicit ElfExecutable(ErrorHandler* errorHandler) : ElfHandler(errorHandler, ET_EXEC) {
        addSegment(0x10000, 8, 8, newArray("01234567"), 5, 4);
    }
};

std::string bytesOf(const ElfBlock& block) {
    return {block.getData(), block.getData() + block.getSize()};
}

} // namespace

// ---- Layout ----

TEST_F(ElfHandlerWriterTest, AnExecutableStartsAtItsStartSymbol) {
    ElfExecutable elf(&m_errorHandler);
    elf.addSymbol("_start", 0x10004, 0, s_global, s_function, 4);
    const auto read = rewritten(elf);
    EXPECT_EQ(read->getEntryPoint(), 0x10004U);
    EXPECT_EQ(read->getHeader()->e_shnum, 3U); // null, symbols, strings
    EXPECT_EQ(read->getHeader()->e_shstrndx, 2U);
    EXPECT_EQ(read->getHeader()->e_phnum, 1U);
    EXPECT_EQ(read->getHeader()->e_phoff, 0x34U);
    EXPECT_EQ(read->getHeader()->e_shoff, 0x34U + 32);
    EXPECT_THAT(m_errorHandler.messages(), IsEmpty());
}

TEST_F(ElfHandlerWriterTest, AnExecutableWithoutStartSymbolStartsAt0WithAWarning) {
    ElfExecutable elf(&m_errorHandler);
    EXPECT_EQ(rewritten(elf)->getEntryPoint(), 0U);
    EXPECT_THAT(m_errorHandler.messages(),
                ElementsAre("WARNING: '_start' symbol not found - setting ELF entry point to 0.\n"));
}

TEST_F(ElfHandlerWriterTest, TheWarningGoesToStandardErrorAndEndsNothing) {
    const ChildResult result = runInChild([&] {
        ErrorHandler errorHandler;
        ElfExecutable elf(&errorHandler);
        elf.writeToFile(m_folder.file("out.elf").c_str());
    });
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.error, "WARNING: '_start' symbol not found - setting ELF entry point to 0.\n");
}

TEST_F(ElfHandlerWriterTest, ARelocatableFileHasNoEntryPoint) {
    for (const bool hasStart : {false, true}) {
        ElfHandler elf(&m_errorHandler, ElfHandler::ET_REL);
        if (hasStart)
            elf.addSymbol("_start", 4, 0, s_global, s_function, 4);
        EXPECT_EQ(rewritten(elf)->getEntryPoint(), 0U);
    }
    EXPECT_THAT(m_errorHandler.messages(), IsEmpty());
}

TEST_F(ElfHandlerWriterTest, TheTablesHaveTheirFields) {
    ElfHandler elf(&m_errorHandler, ElfHandler::ET_REL);
    elf.addSymbol("main", 4, 0, s_global, s_function, 4);
    const auto read = rewritten(elf);
    const ElfSectionHeader& symbols = *read->getSectionHeader(1);
    const ElfSectionHeader& strings = *read->getSectionHeader(2);
    EXPECT_EQ(symbols.getName(read->getStrings()), ".symtab");
    EXPECT_EQ(symbols.sh_type, 2U);
    EXPECT_EQ(symbols.sh_size, 32U);
    EXPECT_EQ(symbols.sh_link, 2U); // the strings
    EXPECT_EQ(symbols.sh_info, 0U);
    EXPECT_EQ(symbols.sh_addralign, 1U);
    EXPECT_EQ(symbols.sh_entsize, 16U);
    EXPECT_EQ(strings.getName(read->getStrings()), ".strtab"); // its own name is in it
    EXPECT_EQ(strings.sh_type, 3U);
    EXPECT_EQ(strings.sh_size, read->getStrings()->numBytes());
    EXPECT_EQ(strings.sh_link, 0U);
    EXPECT_EQ(strings.sh_addralign, 1U);
    EXPECT_EQ(strings.sh_entsize, 0U);
    EXPECT_EQ(strings.sh_offset, symbols.sh_offset + 32);
}

TEST_F(ElfHandlerWriterTest, TheFileIsHeadersAndThenBlocksWithoutGaps) {
    ElfExecutable elf(&m_errorHandler);
    elf.addSymbol("_start", 0x10000, 0, s_global, s_function, 4);
    elf.addProgbitsSection(0, 3, newArray("abc"), ".odd", 0, 16, 0);
    elf.addNoteSection(".note", ElfHandler::NOTE_IDENT, "x", 1);
    const std::string bytes = write(elf);

    std::uint32_t offset = 52 + 32 + 5 * 40;
    for (const auto& block : elf.getBlocks()) {
        EXPECT_EQ(block->getOffset(), offset);
        EXPECT_EQ(bytes.substr(offset, block->getSize()), bytesOf(*block));
        offset += block->getSize();
    }
    EXPECT_EQ(bytes.size(), offset);
    EXPECT_EQ(elf.getBlocks().size(), 5U);
}

TEST_F(ElfHandlerWriterTest, SectionsInASegmentMoveWithIt) {
    ElfExecutable elf(&m_errorHandler);
    elf.addSymbol("_start", 0x10000, 0, s_global, s_function, 4);
    const unsigned text = elf.addProgbitsSection(0x10002, 4, 0U, 2U, ".text", 6, 4, 0);
    const unsigned bss = elf.addNobitsSection(0x10008, 0, 0U, 8U, ".bss", 3, 4, 0);
    const auto read = rewritten(elf);
    const std::uint32_t segmentAt = read->getBlocks()[0]->getOffset();
    EXPECT_EQ(read->getSectionHeader(text)->sh_offset, segmentAt + 2);
    EXPECT_EQ(read->getSectionHeader(bss)->sh_offset, segmentAt + 8);
    EXPECT_EQ(sectionData(*read, text), "2345");
}

TEST_F(ElfHandlerWriterTest, RelocationsNameTheSymbolTable) {
    ElfHandler elf(&m_errorHandler, ElfHandler::ET_REL);
    const unsigned data = elf.addProgbitsSection(0, 4, newArray("abcd"), ".data", 3, 4, 0);
    const unsigned symbol = elf.addUndefinedSymbol("outside", s_global, 0, 0);
    ElfRelocationTable* table = elf.newRelocationTable();
    table->addRelocation(2, 7, symbol, -3);
    elf.addRelocations(data, table);
    const auto read = rewritten(elf);
    EXPECT_EQ(read->getSectionHeader(2)->sh_link, 3U);
    const auto& tables = read->getSectionHeader(data)->getRelocations();
    ASSERT_EQ(tables.size(), 1U);
    const ElfRelocation& relocation = tables.front()->getRelocations().front();
    EXPECT_EQ(relocation.getOffset(), 2U);
    EXPECT_EQ(relocation.getType(), 7U);
    EXPECT_EQ(relocation.getSymbol(), symbol);
    EXPECT_EQ(relocation.getAddend(), -3);
}

TEST_F(ElfHandlerWriterTest, SymbolsAndStringsComeBackAsTheyWere) {
    ElfHandler elf(&m_errorHandler, ElfHandler::ET_REL);
    for (int i = 0; i < 3000; ++i)
        elf.addSymbol(("name" + std::to_string(i % 2000)).c_str(), static_cast<std::uint32_t>(i), 0, s_global,
                      s_function, 4);
    const auto read = rewritten(elf);
    ASSERT_EQ(read->numSymbols(), 3001U);
    for (unsigned i = 0; i < 3001; ++i) {
        ASSERT_STREQ(read->getSymbolName(i), elf.getSymbolName(i));
        ASSERT_EQ(read->getSymbolValue(i), elf.getSymbolValue(i));
    }
    EXPECT_EQ(read->getStrings()->numBytes(), elf.getStrings()->numBytes());
}

TEST_F(ElfHandlerWriterTest, ALoaderGetsTheSegmentsOfAWrittenFile) {
    ElfExecutable elf(&m_errorHandler);
    const auto read = rewritten(elf);
    const std::unique_ptr<std::vector<ElfHandler::Segment*>> segments(read->getProgramSegments());
    ASSERT_EQ(segments->size(), 1U);
    const std::unique_ptr<ElfHandler::Segment> segment(segments->front());
    EXPECT_EQ(segment->paddr, 0x10000U);
    EXPECT_EQ(std::string(segment->data, segment->data + segment->filesz), "01234567");
}

// A file that was read has its tables already; what is written gets a second pair, which reading refuses.
TEST_F(ElfHandlerWriterTest, AFileThatWasReadIsWrittenWithASecondPairOfTables) {
    ElfHandler elf(&m_errorHandler, ElfHandler::ET_REL);
    const auto read = rewritten(elf);
    const std::string bytes = write(*read);
    EXPECT_EQ(read->getHeader()->e_shnum, 5U);
    const ChildResult result = runInChild([&] {
        ErrorHandler errorHandler;
        readElf(errorHandler, bytes);
    });
    EXPECT_EQ(result.exitStatus, 1);
}

// The example of docs/formats/elf.md.
TEST_F(ElfHandlerWriterTest, WritesTheExampleOfTheFormatsPage) {
    ElfHandler elf(&m_errorHandler, ElfHandler::ET_EXEC);
    const unsigned segment = elf.addSegment(0x10000, 4, 8, newArray("\x11\x22\x33\x44"), 5, 4);
    const unsigned text = elf.addProgbitsSection(0x10000, 4, segment, 0, ".text", 6, 4, 0);
    elf.addSymbol("_start", 0x10000, text, s_global, s_function, 4);
    EXPECT_EQ(write(elf), fromHex("7f 45 4c 46 01 01 01 00  00 00 00 00 00 00 00 00"
                                  "02 00 9e b4 01 00 00 00  00 00 01 00 34 00 00 00"
                                  "54 00 00 00 00 00 00 00  34 00 20 00 01 00 28 00"
                                  "04 00 03 00") +
                              fromHex("01 00 00 00 f4 00 00 00  00 00 01 00 00 00 01 00"
                                      "04 00 00 00 08 00 00 00  05 00 00 00 04 00 00 00") +
                              std::string(40, '\0') +
                              fromHex("01 00 00 00 01 00 00 00  06 00 00 00 00 00 01 00"
                                      "f4 00 00 00 04 00 00 00  00 00 00 00 00 00 00 00"
                                      "04 00 00 00 00 00 00 00") +
                              fromHex("0e 00 00 00 02 00 00 00  00 00 00 00 00 00 00 00"
                                      "f8 00 00 00 20 00 00 00  03 00 00 00 00 00 00 00"
                                      "01 00 00 00 10 00 00 00") +
                              fromHex("16 00 00 00 03 00 00 00  00 00 00 00 00 00 00 00"
                                      "18 01 00 00 1e 00 00 00  00 00 00 00 00 00 00 00"
                                      "01 00 00 00 00 00 00 00") +
                              fromHex("11 22 33 44") + std::string(16, '\0') +
                              fromHex("07 00 00 00 00 00 01 00  04 00 00 00 12 00 01 00") +
                              std::string("\0.text\0_start\0.symtab\0.strtab\0", 30));
}

// ---- Failing ----

TEST_F(ElfHandlerWriterTest, ReportsAFileThatCanNotBeOpened) {
    const ChildResult result = runInChild([] {
        ErrorHandler errorHandler;
        ElfHandler(&errorHandler, ElfHandler::ET_REL).writeToFile("no/such/out.elf");
    });
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.error, "ERROR: Unable to open output file 'no/such/out.elf' for writing elf\n");
}

TEST_F(ElfHandlerWriterTest, GoesOnWhereTheErrorHandlerReturns) {
    ElfHandler(&m_errorHandler, ElfHandler::ET_REL).writeToFile("no/such/out.elf");
    EXPECT_THAT(m_errorHandler.messages(),
                ElementsAre("fatal ERROR: Unable to open output file 'no/such/out.elf' for writing elf\n"));
}

TEST_F(ElfHandlerWriterTest, ReportsAFullDisk) {
    ElfHandler(&m_errorHandler, ElfHandler::ET_REL).writeToFile("/dev/full");
    EXPECT_THAT(m_errorHandler.messages(),
                ElementsAre("fatal ERROR: Unable to write output file '/dev/full'\n"));
}

TEST_F(ElfHandlerWriterTest, ReplacesAFile) {
    m_folder.write("out.elf", std::string(10'000, 'x'));
    ElfHandler elf(&m_errorHandler, ElfHandler::ET_REL);
    EXPECT_LT(write(elf).size(), 1000U);
}

#include "infr_libs/ElfHandler/ElfHandler.h"

#include "infr_libs/ElfHandler/ElfBlock.h"
#include "infr_libs/ElfHandler/ElfProgramHeader.h"
#include "infr_libs/ElfHandler/ElfSectionHeader.h"
#include "infr_libs/ElfHandler/ElfStrings.h"
#include "infr_libs/ElfHandler/ElfSymbol.h"
#include "infr_libs/ErrorHandler/CatchableErrorHandler.h"
#include "tests/infr_libs/ElfHandler/ElfSamples.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/ElfBuilder.h"
#include "tests/support/RecordingErrorHandler.h"
#include "tests/support/TemporaryFolder.h"

#include <csignal>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <sstream>

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

// What the reader reports about a file, where the error handler returns.
std::vector<std::string> reportsOf(const std::string& bytes) {
    RecordingErrorHandler errorHandler;
    readElf(errorHandler, bytes);
    return errorHandler.messages();
}

// How reading the file under a plain error handler ends the process.
ChildResult resultOf(const std::string& bytes) {
    return runInChild([&] {
        ErrorHandler errorHandler;
        readElf(errorHandler, bytes);
    });
}

// A file of two functions in one segment.
ElfBuilder smallImage() {
    ElfBuilder elf;
    elf.addSegment({.vaddr = 0x10000, .bytes = std::string(16, 'c')});
    elf.addSection({.name = ".text", .size = 16, .segment = 0, .addr = 0x10000});
    elf.addFunction("main", 0x10000, 8);
    elf.addFunction("helper", 0x10008, 8);
    return elf;
}

} // namespace

// ---- What the plugin asks for ----

TEST(ElfHandlerReader, ListsTheSymbolsOfAnImage) {
    ErrorHandler errorHandler;
    const auto elf = readElf(errorHandler, smallImage().build().bytes);
    ASSERT_EQ(elf->numSymbols(), 3U);
    EXPECT_STREQ(elf->getSymbolName(0), "");
    EXPECT_STREQ(elf->getSymbolName(1), "main");
    EXPECT_STREQ(elf->getSymbolName(2), "helper");
    EXPECT_EQ(elf->getSymbolInfo(1), 0x12U);
    EXPECT_EQ(elf->getSymbolValue(2), 0x10008U);
    EXPECT_EQ(elf->getSymbolSize(2), 8U);
    EXPECT_EQ(elf->getSymbolSectionIndex(2), 1U);
}

TEST(ElfHandlerReader, AnImageWithoutSymbolTableHasTheNullSymbol) {
    ErrorHandler errorHandler;
    ElfBuilder image = smallImage();
    image.m_hasSymbols = false;
    const auto elf = readElf(errorHandler, image.build().bytes);
    EXPECT_EQ(elf->numSymbols(), 1U);
    EXPECT_STREQ(elf->getSymbolName(0), "");
    EXPECT_EQ(elf->getSymbolInfo(0), 0U);
}

TEST(ElfHandlerReader, TellsGlobalAndWeakSymbolsFromLocalOnes) {
    ErrorHandler errorHandler;
    ElfBuilder image;
    const unsigned local = image.addSymbol({.name = "local", .info = 0x02});
    const unsigned global = image.addSymbol({.name = "global", .info = 0x12});
    const unsigned weak = image.addSymbol({.name = "weak", .info = 0x22});
    const auto elf = readElf(errorHandler, image.build().bytes);
    EXPECT_FALSE(elf->isSymbolGlobal(local));
    EXPECT_TRUE(elf->isSymbolGlobal(global));
    EXPECT_TRUE(elf->isSymbolGlobal(weak));
}

TEST(ElfHandlerReader, ASymbolIndexOutOfRangeHasAnEmptyName) {
    ErrorHandler errorHandler;
    const auto elf = readElf(errorHandler, smallImage().build().bytes);
    EXPECT_STREQ(elf->getSymbolName(3), "");
    EXPECT_STREQ(elf->getSymbolName(0xFFFFFFFF), "");
}

TEST(ElfHandlerReader, ANameBeyondTheStringsIsEmpty) {
    ErrorHandler errorHandler;
    ElfBuilder image = smallImage();
    image.addSymbol({.nameOffset = 100'000});
    image.addSymbol({.nameOffset = 0xFFFFFFFF});
    const auto elf = readElf(errorHandler, image.build().bytes);
    EXPECT_STREQ(elf->getSymbolName(3), "");
    EXPECT_STREQ(elf->getSymbolName(4), "");
}

TEST(ElfHandlerReader, ANameMayBeginInTheMiddleOfAnother) {
    ErrorHandler errorHandler;
    ElfBuilder image;
    image.m_strings = std::string("\0prefix_main\0", 13);
    image.addSymbol({.nameOffset = 8});
    EXPECT_STREQ(readElf(errorHandler, image.build().bytes)->getSymbolName(1), "main");
}

// ---- The header ----

TEST(ElfHandlerReader, RefusesAFileThatDoesNotStartWithTheElfBytes) {
    for (const char* field : {"e_ident[0]", "e_ident[1]", "e_ident[2]", "e_ident[3]"}) {
        const ChildResult result = resultOf(smallImage().build().set(field, 'x').bytes);
        EXPECT_EQ(result.exitStatus, 1) << field;
        EXPECT_EQ(result.error, "ERROR: Header is not an ELF file\n") << field;
    }
}

TEST(ElfHandlerReader, RefusesAnEmptyStream) {
    EXPECT_THAT(reportsOf(""), ElementsAre("fatal ERROR: Header is not an ELF file\n"));
}

TEST(ElfHandlerReader, TakesClassByteOrderMachineAndEntrySizesOnTrust) {
    LabelledBytes file = smallImage().build();
    file.set("e_ident[4]", 2).set("e_ident[5]", 2).set("e_machine", 3);
    file.set("e_phentsize", 1).set("e_shentsize", 0xFFFF);
    CatchableErrorHandler errorHandler;
    EXPECT_EQ(readElf(errorHandler, file.bytes)->numSymbols(), 3U);
}

TEST(ElfHandlerReader, GivesEntryPointAndType) {
    ErrorHandler errorHandler;
    ElfBuilder image;
    image.m_entry = 0x1234;
    const auto elf = readElf(errorHandler, image.build().bytes);
    EXPECT_EQ(elf->getEntryPoint(), 0x1234U);
    EXPECT_EQ(elf->getType(), 2U);
}

TEST(ElfHandlerReader, ReadsTheHeaderAtTheStreamsPosition) {
    ErrorHandler errorHandler;
    const std::string header = ElfBuilder().build().set("e_shnum", 0).bytes.substr(0, 52);
    std::istringstream stream("skipped" + header);
    stream.seekg(7);
    EXPECT_EQ(ElfHandler(&errorHandler, stream).getType(), 2U);
}

// ---- The file by its path ----

TEST(ElfHandlerReader, ReadsAFileByItsPath) {
    const TemporaryFolder folder;
    const std::string path = folder.write("image.elf", smallImage().build().bytes);
    ErrorHandler errorHandler;
    const ElfHandler elf(&errorHandler, path.c_str());
    EXPECT_EQ(elf.numSymbols(), 3U);
    EXPECT_EQ(elf.getFileName(), path);
}

TEST(ElfHandlerReader, ReportsAFileThatCanNotBeOpened) {
    const ChildResult result = runInChild([] {
        ErrorHandler errorHandler;
        const ElfHandler elf(&errorHandler, "no/such.elf");
    });
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.error, "ERROR: Unable to open elf file 'no/such.elf' for loading\n");
}

TEST(ElfHandlerReader, AFolderIsNoElfFile) {
    const TemporaryFolder folder;
    RecordingErrorHandler errorHandler;
    const ElfHandler elf(&errorHandler, folder.path().c_str());
    EXPECT_THAT(errorHandler.messages(), ElementsAre("fatal ERROR: Header is not an ELF file\n"));
}

// ---- Blocks ----

TEST(ElfHandlerReader, EveryProgramHeaderHasABlockWhateverItsType) {
    ErrorHandler errorHandler;
    ElfBuilder image;
    image.addSegment({.bytes = "abcd"});
    image.addSegment({.type = 0x6474E551}); // no bytes
    const auto elf = readElf(errorHandler, image.build().bytes);
    ASSERT_GE(elf->getBlocks().size(), 2U);
    for (std::size_t i = 0; i < 2; ++i) {
        const ElfProgramHeader* header = elf->getProgramHeaders()[i].get();
        EXPECT_EQ(elf->getBlocks()[i]->getProgramHeader(), header);
        EXPECT_EQ(elf->findBlock(header), elf->getBlocks()[i].get());
        EXPECT_EQ(elf->getBlocks()[i]->getSize(), header->p_filesz);
        EXPECT_EQ(elf->getBlocks()[i]->getOffset(), header->p_offset);
        EXPECT_EQ(header->getNum(), i);
    }
    EXPECT_EQ(std::string(elf->getBlocks()[0]->getData(), elf->getBlocks()[0]->getData() + 4), "abcd");
}

TEST(ElfHandlerReader, WithoutProgramHeadersEachNonEmptySectionHasABlockAndOneWithoutContentsHasNone) {
    ErrorHandler errorHandler;
    ElfBuilder image;
    const unsigned text = image.addSection({.name = ".text", .bytes = "text"});
    const unsigned data = image.addSection({.name = ".data", .bytes = "data!"});
    const unsigned bss = image.addSection({.name = ".bss", .type = 8, .size = 100'000});
    const auto elf = readElf(errorHandler, image.build().bytes);
    EXPECT_EQ(elf->getBlocks().size(), 4U); // these, symbols and strings

    std::uint32_t offset = 99;
    for (const unsigned section : {text, data}) {
        const ElfBlock* block = elf->findBlock(elf->getSectionHeader(section), offset);
        ASSERT_NE(block, nullptr);
        EXPECT_EQ(offset, 0U);
        EXPECT_EQ(block->getProgramHeader(), nullptr);
        EXPECT_EQ(block->getSize(), elf->getSectionSize(section));
    }
    EXPECT_EQ(elf->findBlock(elf->getSectionHeader(bss), offset), nullptr);
}

TEST(ElfHandlerReader, ASectionInsideASegmentHasNoBlockOfItsOwn) {
    ErrorHandler errorHandler;
    ElfBuilder image;
    image.addSegment({.bytes = "0123456789"});
    const unsigned section = image.addSection({.name = ".data", .size = 4, .segment = 0, .offset = 3});
    const auto elf = readElf(errorHandler, image.build().bytes);
    std::uint32_t offset = 0;
    EXPECT_EQ(elf->findBlock(elf->getSectionHeader(section), offset), elf->getBlocks()[0].get());
    EXPECT_EQ(offset, 3U);
    EXPECT_EQ(elf->getBlocks().size(), 3U); // the segment, symbols and strings
}

TEST(ElfHandlerReader, TheFirstBlockThatHoldsASectionWins) {
    ErrorHandler errorHandler;
    ElfBuilder image;
    image.addSegment({.bytes = "0123456789"});
    image.addSegment({.bytes = "0123456789"});
    const unsigned section = image.addSection({.name = ".data", .size = 4, .segment = 1, .offset = 3});
    LabelledBytes file = image.build();
    file.set("p_offset[0]", file.get("p_offset[1]"));
    const auto elf = readElf(errorHandler, file.bytes);
    std::uint32_t offset = 0;
    EXPECT_EQ(elf->findBlock(elf->getSectionHeader(section), offset), elf->getBlocks()[0].get());
}

TEST(ElfHandlerReader, ASectionThatIsOnlyPartlyInASegmentHasABlockOfItsOwn) {
    ErrorHandler errorHandler;
    ElfBuilder image;
    image.addSegment({.bytes = "0123456789"});
    const unsigned section = image.addSection({.name = ".data", .size = 8, .segment = 0, .offset = 3});
    const auto elf = readElf(errorHandler, image.build().bytes);
    std::uint32_t offset = 99;
    const ElfBlock* block = elf->findBlock(elf->getSectionHeader(section), offset);
    ASSERT_NE(block, nullptr);
    EXPECT_EQ(block->getProgramHeader(), nullptr);
    EXPECT_EQ(offset, 0U);
    EXPECT_EQ(block->getSize(), 8U);
}

TEST(ElfHandlerReader, ASectionWithoutContentsInASegmentsMemoryLiesBehindTheBlocksBytes) {
    ErrorHandler errorHandler;
    ElfBuilder image;
    image.addSegment({.bytes = "0123456789", .memsz = 30});
    const unsigned bss =
        image.addSection({.name = ".bss", .type = 8, .size = 18, .segment = 0, .offset = 12});
    const auto elf = readElf(errorHandler, image.build().bytes);
    std::uint32_t offset = 0;
    const ElfBlock* block = elf->findBlock(elf->getSectionHeader(bss), offset);
    EXPECT_EQ(block, elf->getBlocks()[0].get());
    EXPECT_EQ(offset, 12U);
    EXPECT_GT(offset, block->getSize());
}

TEST(ElfHandlerReader, ASectionWithContentsIsNotHeldByMemoryAlone) {
    ErrorHandler errorHandler;
    ElfBuilder image;
    image.addSegment({.bytes = "0123456789", .memsz = 30});
    const unsigned section = image.addSection({.name = ".data", .size = 8, .segment = 0, .offset = 10});
    const auto elf = readElf(errorHandler, image.build().bytes);
    std::uint32_t offset = 0;
    EXPECT_NE(elf->findBlock(elf->getSectionHeader(section), offset), elf->getBlocks()[0].get());
}

TEST(ElfHandlerReader, AnEmptySectionIsHeldByABlockWhoseEndItTouches) {
    ErrorHandler errorHandler;
    ElfBuilder image;
    image.addSegment({.bytes = "0123456789"});
    const unsigned section = image.addSection({.name = ".empty", .segment = 0, .offset = 10});
    const auto elf = readElf(errorHandler, image.build().bytes);
    std::uint32_t offset = 0;
    EXPECT_EQ(elf->findBlock(elf->getSectionHeader(section), offset), elf->getBlocks()[0].get());
    EXPECT_EQ(offset, 10U);
}

TEST(ElfHandlerReader, AnEmptySectionThatNoBlockHoldsHasAnEmptyBlock) {
    ErrorHandler errorHandler;
    ElfBuilder image;
    const unsigned section = image.addSection({.name = ".empty"});
    const auto elf = readElf(errorHandler, image.build().bytes);
    std::uint32_t offset = 99;
    const ElfBlock* block = elf->findBlock(elf->getSectionHeader(section), offset);
    ASSERT_NE(block, nullptr);
    EXPECT_EQ(block->getSize(), 0U);
    EXPECT_NE(block->getData(), nullptr);
}

TEST(ElfHandlerReader, ASectionWhoseEndWrapsIsHeldByNoSegment) {
    ElfBuilder image;
    image.addSegment({.bytes = "0123456789"});
    image.addSection({.name = ".data", .size = 0xFFFFFFFF, .segment = 0, .offset = 5});
    EXPECT_THAT(reportsOf(image.build().bytes),
                ElementsAre("fatal ERROR: Failed to allocate memory for data section\n"));
}

namespace {

std::vector<ElfHandler::Segment> programSegmentsOf(const ElfHandler& elf) {
    const std::unique_ptr<std::vector<ElfHandler::Segment*>> records(elf.getProgramSegments());
    std::vector<ElfHandler::Segment> segments;
    for (const ElfHandler::Segment* segment : *records) {
        segments.push_back(*segment);
        delete segment;
    }
    return segments;
}

} // namespace

TEST(ElfHandlerReader, ProgramSegmentsAreTheLoadableOnesWithBytes) {
    ErrorHandler errorHandler;
    ElfBuilder image;
    image.addSegment({.vaddr = 0x100, .paddr = 0x200, .bytes = "abcd", .memsz = 8});
    image.addSegment({.type = 4, .vaddr = 0x300, .bytes = "note"});
    image.addSegment({.vaddr = 0x400, .memsz = 8});
    image.addSegment({.vaddr = 0x500, .bytes = "xy"});
    const auto elf = readElf(errorHandler, image.build().bytes);

    const std::vector<ElfHandler::Segment> segments = programSegmentsOf(*elf);
    ASSERT_EQ(segments.size(), 2U);
    EXPECT_EQ(segments[0].paddr, 0x200U);
    EXPECT_EQ(segments[0].filesz, 4U);
    EXPECT_EQ(segments[0].data, elf->getBlocks()[0]->getData());
    EXPECT_EQ(segments[1].paddr, 0x500U);
    EXPECT_EQ(segments[1].filesz, 2U);
}

TEST(ElfHandlerReader, AProgramSegmentWithoutMemoryForItHasNoBytes) {
    RecordingErrorHandler errorHandler;
    ElfBuilder image;
    image.addSegment({.paddr = 0x200, .bytes = "abcd"});
    const auto elf = readElf(errorHandler, image.build().set("p_filesz[0]", 0x80000000).bytes);
    const std::vector<ElfHandler::Segment> segments = programSegmentsOf(*elf);
    ASSERT_EQ(segments.size(), 1U);
    EXPECT_EQ(segments[0].paddr, 0x200U);
    EXPECT_EQ(segments[0].filesz, 0U);
    EXPECT_NE(segments[0].data, nullptr);
}

// ---- Section types ----

TEST(ElfHandlerReader, AcceptsTheToolChainsOwnSectionTypesSilently) {
    ElfBuilder image;
    for (const std::uint32_t type : {1U, 7U, 8U, 19U, 20U, 21U})
        image.addSection({.name = ".own", .type = type, .bytes = "own"});
    EXPECT_THAT(reportsOf(image.build().bytes), IsEmpty());
}

TEST(ElfHandlerReader, ReportsEveryOtherSectionTypeAndGoesOn) {
    ElfBuilder image;
    std::vector<std::string> expected;
    const std::vector<std::uint32_t> types = {0, 5, 6, 10, 11, 12, 13, 14, 15, 16, 18, 22, 0x6FFFFFFF};
    for (const std::uint32_t type : types) {
        const unsigned section = image.addSection({.name = ".other", .type = type, .bytes = "other"});
        expected.push_back("fatal ERROR: Unsupported section type " + std::to_string(type) + " in section " +
                           std::to_string(section) + "\n");
    }
    EXPECT_EQ(reportsOf(image.build().bytes), expected);
}

TEST(ElfHandlerReader, SectionType18EndsTheProcess) {
    ElfBuilder image;
    image.addSection({.name = ".shndx", .type = 18});
    const ChildResult result = resultOf(image.build().bytes);
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.error, "ERROR: Unsupported section type 18 in section 1\n");
}

TEST(ElfHandlerReader, ASectionWithoutContentsThatNoSegmentHoldsIsNotAskedForItsType) {
    ElfBuilder image;
    image.addSection({.name = ".bss", .type = 8, .size = 0xFFFFFFFF});
    EXPECT_THAT(reportsOf(image.build().bytes), IsEmpty());
}

TEST(ElfHandlerReader, TheNullSectionHasNoBlockAndNoType) {
    ErrorHandler errorHandler;
    const LabelledBytes file = smallImage().build().set("sh_type[0]", 99).set("sh_size[0]", 0xFFFFFFFF);
    const auto elf = readElf(errorHandler, file.bytes);
    std::uint32_t offset = 0;
    EXPECT_EQ(elf->findBlock(elf->getSectionHeader(0), offset), nullptr);
}

TEST(ElfHandlerReader, StopsAtASecondStringTable) {
    ElfBuilder image = smallImage();
    image.addSection({.name = ".shstrtab", .type = 3, .bytes = std::string("\0x\0", 3)});
    const ChildResult result = resultOf(image.build().bytes);
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.error, "ERROR: Only one string table is supported\n");
}

TEST(ElfHandlerReader, StopsAtASecondStringTableAlsoWhereTheErrorHandlerReturns) {
    ElfBuilder image = smallImage();
    image.addSection({.name = ".shstrtab", .type = 3, .bytes = std::string("\0x\0", 3)});
    const ChildResult result = runInChild([&] {
        ErrorHandler errorHandler;
        errorHandler.setExitOnError(false);
        readElf(errorHandler, image.build().bytes);
    });
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.error, "ERROR: Only one string table is supported\n");
}

TEST(ElfHandlerReader, StopsAtASecondSymbolTable) {
    ElfBuilder image = smallImage();
    image.addSection({.name = ".symtab2", .type = 2, .bytes = std::string(16, '\0'), .entsize = 16});
    const ChildResult result = runInChild([&] {
        ErrorHandler errorHandler;
        errorHandler.setExitOnError(false);
        readElf(errorHandler, image.build().bytes);
    });
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.error, "ERROR: Only one symbol table is supported\n");
}

TEST(ElfHandlerReader, WithoutSymbolTableTheStringsMustHoldTheEmptyOne) {
    ElfBuilder image;
    image.m_hasSymbols = false;
    image.m_strings = std::string("x\0", 2);
    const ChildResult result = resultOf(image.build().bytes);
    EXPECT_EQ(result.signal, SIGABRT);
    EXPECT_THAT(result.error, HasSubstr("Assertion `nullString != __null' failed."));
}

TEST(ElfHandlerReader, AnEmptyFileHasTablesAllTheSame) {
    ErrorHandler errorHandler;
    const auto elf = readElf(errorHandler, ElfBuilder().build().set("e_shnum", 0).bytes);
    EXPECT_EQ(elf->numSymbols(), 1U);
    EXPECT_EQ(elf->getStrings()->numBytes(), 1U);
    EXPECT_EQ(elf->getSectionHeader(0), nullptr);
    elf->check();
}

TEST(ElfHandlerReader, ReportsARelocationSectionForASectionThatIsNotThere) {
    ElfBuilder image;
    const unsigned section = image.addSection({.name = ".rel.text", .type = 9, .info = 77, .entsize = 8});
    const ChildResult result = resultOf(image.build().bytes);
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.error, "ERROR: Invalid sh_info 77 for section " + std::to_string(section) + "\n");
}

TEST(ElfHandlerReader, ARelocationTableForNoSectionIsReadButAttachedNowhere) {
    ElfBuilder image;
    image.addSection({.name = ".rel.text", .type = 9, .info = 4, .entsize = 8}); // 0 to 3 are there
    RecordingErrorHandler errorHandler;
    const auto elf = readElf(errorHandler, image.build().bytes);
    EXPECT_THAT(errorHandler.messages(), ElementsAre("fatal ERROR: Invalid sh_info 4 for section 1\n"));
    for (const auto& header : elf->getSectionHeaders())
        EXPECT_THAT(header->getRelocations(), IsEmpty());
}

TEST(ElfHandlerReader, ASectionHeaderOutOfRangeIsNull) {
    ErrorHandler errorHandler;
    const auto elf = readElf(errorHandler, smallImage().build().bytes);
    EXPECT_EQ(elf->getSectionHeader(1)->getSectionNumber(), 1U);
    EXPECT_EQ(elf->getSectionHeader(1)->getName(elf->getStrings()), ".text");
    EXPECT_EQ(elf->getSectionHeader(4), nullptr);
}

// ---- Files that claim more than they hold ----

TEST(ElfHandlerReader, WhatLiesPastTheEndOfTheFileIsZeros) {
    ErrorHandler errorHandler;
    ElfBuilder image;
    image.m_hasSymbols = false;
    image.m_hasStrings = false;
    image.addSegment({.bytes = "abcd"});
    const auto elf = readElf(errorHandler, image.build().set("p_filesz[0]", 8).bytes);
    const ElfBlock* block = elf->getBlocks()[0].get();
    EXPECT_EQ(std::string(block->getData(), block->getData() + block->getSize()),
              std::string("abcd\0\0\0\0", 8));
}

TEST(ElfHandlerReader, AShortSegmentDoesNotSpoilTheTablesBehindIt) {
    ErrorHandler errorHandler;
    const LabelledBytes file = smallImage().build().set("p_offset[0]", 0x10000000);
    EXPECT_STREQ(readElf(errorHandler, file.bytes)->getSymbolName(1), "main");
}

TEST(ElfHandlerReader, ASegmentOfClaimedGigabytesIsRefused) {
    for (const std::uint32_t size : {0x40000000U, 0x80000000U, 0xFFFFFFFFU}) {
        const ChildResult result = resultOf(smallImage().build().set("p_filesz[0]", size).bytes);
        EXPECT_EQ(result.exitStatus, 1);
        EXPECT_EQ(result.error, "ERROR: Failed to allocate memory for data segment\n");
    }
}

TEST(ElfHandlerReader, ManySegmentsThatClaimTheSameBytesAreRefusedInSum) {
    ElfBuilder image;
    LabelledBytes file;
    for (int i = 0; i < 5; ++i)
        image.addSegment({});
    file = image.build();
    for (int i = 0; i < 5; ++i)
        file.set("p_filesz[" + std::to_string(i) + "]", 0x1000000); // the fifth is too many
    EXPECT_THAT(reportsOf(file.bytes),
                ElementsAre("fatal ERROR: Failed to allocate memory for data segment\n"));
}

TEST(ElfHandlerReader, ASectionOfClaimedGigabytesIsRefused) {
    ElfBuilder image;
    image.addSection({.name = ".data", .size = 0x40000000});
    RecordingErrorHandler errorHandler;
    const auto elf = readElf(errorHandler, image.build().bytes);
    EXPECT_THAT(errorHandler.messages(),
                ElementsAre("fatal ERROR: Failed to allocate memory for data section\n"));
    EXPECT_EQ(elf->getBlocks()[0]->getSize(), 0U);
}

TEST(ElfHandlerReader, ASymbolTableOfClaimedGigabytesHasTheSymbolsThatAreThere) {
    ElfBuilder image;
    image.addFunction("main", 0);
    LabelledBytes file = image.build();
    file.set("sh_size[1]", 0xFFFFFFF0)
        .set("sh_offset[1]", static_cast<std::uint32_t>(file.bytes.size() - 20));
    RecordingErrorHandler errorHandler;
    const auto elf = readElf(errorHandler, file.bytes);
    // Once for the block, once for the symbols.
    EXPECT_THAT(errorHandler.messages(),
                ElementsAre("fatal ERROR: Failed to allocate memory for data section\n",
                            "fatal ERROR: Failed to allocate memory for data section\n"));
    EXPECT_EQ(elf->numSymbols(), 2U); // 20 bytes: one whole, one begun
}

TEST(ElfHandlerReader, AStringTableOfClaimedGigabytesEndsTheProcess) {
    const ChildResult result = runInChild([] {
        ErrorHandler errorHandler;
        errorHandler.setExitOnError(false);
        readElf(errorHandler, smallImage().build().set("sh_size[3]", 0x40000000).bytes);
    });
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.error, "ERROR: Failed to allocate memory for data section\n"
                            "ERROR: Failed to allocate memory for reading strings\n");
}

TEST(ElfHandlerReader, RelocationsPastTheEndOfTheFileAreZeros) {
    ElfBuilder image;
    image.addSection({.name = ".text", .bytes = "code"});
    image.addSection({.name = ".rel.text", .type = 9, .size = 0, .info = 1, .entsize = 8});
    LabelledBytes file = image.build();
    const auto size = static_cast<std::uint32_t>(file.bytes.size());
    // From within the file's last entries, and larger than the file.
    for (const std::uint32_t numEntries : {3U, size}) {
        file.set("sh_offset[2]", size - 4).set("sh_size[2]", 8 * numEntries);
        RecordingErrorHandler errorHandler;
        const auto elf = readElf(errorHandler, file.bytes);
        EXPECT_THAT(errorHandler.messages(), IsEmpty());
        ASSERT_EQ(elf->getRelocationTables().size(), 1U);
        const ElfRelocationTable& table = elf->getRelocationTables().front();
        EXPECT_EQ(table.getNumEntries(), numEntries);
        EXPECT_EQ(table.getRelocations().back().getOffset(), 0U);
        EXPECT_EQ(table.getRelocations().back().getSymbol(), 0U);
        EXPECT_THAT(elf->getSectionHeader(1)->getRelocations(), ElementsAre(&table));
        elf->updateRelocationSymbolTableLinks(7);
        EXPECT_EQ(elf->getSectionHeader(2)->sh_link, 7U);
    }
}

TEST(ElfHandlerReader, RelocationsThatOverlapAreRefusedWhereTheyAreMoreThanAFileHolds) {
    constexpr std::uint32_t s_size = 0x900000; // entries a byte apart: 72 MiB of them
    ElfBuilder image;
    image.addSegment({});
    image.addSection({.name = ".rel", .type = 9, .size = s_size, .segment = 0, .entsize = 1});
    image.addSection({.name = ".rel", .type = 9, .size = 16, .segment = 0, .entsize = 8});
    RecordingErrorHandler errorHandler;
    const auto elf = readElf(errorHandler, image.build().set("p_filesz[0]", s_size).bytes);
    EXPECT_THAT(errorHandler.messages(),
                ElementsAre("fatal ERROR: Failed to allocate memory for data section\n"));
    ASSERT_EQ(elf->getRelocationTables().size(), 1U);
    EXPECT_EQ(elf->getRelocationTables().front().getNumEntries(), 2U);
}

TEST(ElfHandlerReader, HeaderTablesPastTheEndOfTheFileAreZeros) {
    LabelledBytes file = ElfBuilder().build();
    file.set("e_phoff", 0xFFFFFFFF).set("e_phnum", 3).set("e_shnum", 0);
    ErrorHandler errorHandler;
    const auto elf = readElf(errorHandler, file.bytes);
    ASSERT_EQ(elf->getProgramHeaders().size(), 3U);
    EXPECT_EQ(elf->getProgramHeaders()[2]->p_filesz, 0U);
    EXPECT_EQ(elf->getBlocks().size(), 3U);
}

// ---- Limits that are assertions ----

TEST(ElfHandlerReader, ASectionHeaderKnowsItsIndex) {
    expectAssertion("m_sectionHeaders[sectionIndex]->getNum() == sectionIndex", [] {
        ErrorHandler errorHandler;
        ElfHandler elf(&errorHandler, ElfHandler::ET_REL);
        elf.addSectionHeader(new ElfSectionHeader(7));
        elf.getSectionHeader(1);
    });
}

TEST(ElfHandlerReader, TheSizeOfASectionThatIsNotThereIsAnAssertion) {
    expectAssertion("sectionNo < m_sectionHeaders.size()", [] {
        ErrorHandler errorHandler;
        readElf(errorHandler, smallImage().build().bytes)->getSectionSize(4);
    });
}

namespace {

// No file, no tables.
class NoFile : public ElfHandler {
public:
    explicit NoFile(ErrorHandler* errorHandler) : ElfHandler(errorHandler) {}
};

} // namespace

TEST(ElfHandlerReader, WithoutAFileThereIsNothingToTell) {
    ErrorHandler errorHandler;
    const NoFile elf(&errorHandler);
    EXPECT_EQ(elf.getEntryPoint(), 0U);
    EXPECT_EQ(elf.getType(), 0U);
    EXPECT_EQ(elf.numSymbols(), 0U);
    elf.check();
}

TEST(ElfHandlerReader, SymbolsWithoutASymbolTableAreAnAssertion) {
    const std::vector<std::function<void(const ElfHandler&)>> questions = {
        [](const ElfHandler& elf) { elf.getSymbolName(0); },
        [](const ElfHandler& elf) { elf.getSymbolInfo(0); },
        [](const ElfHandler& elf) { elf.getSymbolValue(0); },
        [](const ElfHandler& elf) { elf.getSymbolSize(0); },
        [](const ElfHandler& elf) { elf.getSymbolSectionIndex(0); },
        [](const ElfHandler& elf) { elf.isSymbolGlobal(0); },
    };
    for (const auto& ask : questions) {
        expectAssertion("m_symbolTable != __null", [&] {
            ErrorHandler errorHandler;
            ask(NoFile(&errorHandler));
        });
    }
}

TEST(ElfHandlerReader, ASymbolIndexOutOfRangeIsAnAssertion) {
    expectAssertion("symbolNum < m_symbols.size()", [] {
        ErrorHandler errorHandler;
        readElf(errorHandler, smallImage().build().bytes)->getSymbolInfo(3);
    });
}

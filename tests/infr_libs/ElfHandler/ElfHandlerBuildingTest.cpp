#include "infr_libs/ElfHandler/ElfBlock.h"
#include "infr_libs/ElfHandler/ElfHandler.h"
#include "infr_libs/ElfHandler/ElfHeader.h"
#include "infr_libs/ElfHandler/ElfProgramHeader.h"
#include "infr_libs/ElfHandler/ElfSectionHeader.h"
#include "infr_libs/ElfHandler/ElfStrings.h"
#include "infr_libs/ErrorHandler/ErrorHandler.h"
#include "tests/infr_libs/ElfHandler/ElfSamples.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/LabelledBytes.h"

#include <cstring>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class ElfHandlerBuildingTest : public testing::Test {
protected:
    ErrorHandler m_errorHandler;
    ElfHandler m_elf{&m_errorHandler, ElfHandler::ET_EXEC};

    const ElfSectionHeader& section(unsigned index) const { return *m_elf.getSectionHeader(index); }
    std::string nameOf(unsigned index) const { return section(index).getName(m_elf.getStrings()); }

    const ElfBlock* blockOf(unsigned index, std::uint32_t& offset) const {
        return m_elf.findBlock(m_elf.getSectionHeader(index), offset);
    }
};

} // namespace

TEST_F(ElfHandlerBuildingTest, ANewFileHasItsHeader) {
    const ElfHeader& header = *m_elf.getHeader();
    EXPECT_THAT(header.e_ident, ElementsAre(0x7F, 'E', 'L', 'F', 1, 1, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0));
    EXPECT_EQ(header.e_type, 2U);
    EXPECT_EQ(header.e_machine, 46238U);
    EXPECT_EQ(header.e_version, 1U);
    EXPECT_EQ(header.e_entry, 0U);
    EXPECT_EQ(header.e_phoff, 0x34U); // although there are none
    EXPECT_EQ(header.e_shoff, 0x34U);
    EXPECT_EQ(header.e_flags, 0U);
    EXPECT_EQ(header.e_ehsize, 0x34U);
    EXPECT_EQ(header.e_phentsize, 0x20U);
    EXPECT_EQ(header.e_phnum, 0U);
    EXPECT_EQ(header.e_shentsize, 0x28U);
    EXPECT_EQ(header.e_shnum, 1U);
    EXPECT_EQ(header.e_shstrndx, 0U);
}

TEST_F(ElfHandlerBuildingTest, ANewFileHasTheNullSectionTheNullSymbolAndTheEmptyString) {
    EXPECT_EQ(m_elf.getSectionHeaders().size(), 1U);
    EXPECT_EQ(section(0).sh_type, 0U);
    EXPECT_EQ(m_elf.numSymbols(), 1U);
    EXPECT_EQ(m_elf.getStrings()->numBytes(), 1U);
    EXPECT_TRUE(m_elf.getBlocks().empty());
    EXPECT_EQ(m_elf.getFileName(), "");
}

TEST_F(ElfHandlerBuildingTest, ANewFileIsRelocatableOrExecutable) {
    EXPECT_EQ(ElfHandler(&m_errorHandler, ElfHandler::ET_REL).getType(), 1U);
    for (const unsigned char type : {3, 255}) {
        expectAssertion("type == 1 || type == 2", [&] { ElfHandler(&m_errorHandler, type); });
    }
}

TEST_F(ElfHandlerBuildingTest, ProgramHeadersPushTheSectionHeadersUp) {
    EXPECT_EQ(m_elf.addProgramHeader(new ElfProgramHeader(0)), 0U);
    EXPECT_EQ(m_elf.addProgramHeader(new ElfProgramHeader(1)), 1U);
    EXPECT_EQ(m_elf.getHeader()->e_phnum, 2U);
    EXPECT_EQ(m_elf.getHeader()->e_shoff, 0x34U + 2 * 32);
}

TEST_F(ElfHandlerBuildingTest, SectionHeadersAreCounted) {
    EXPECT_EQ(m_elf.addSectionHeader(new ElfSectionHeader(1)), 1U);
    EXPECT_EQ(m_elf.addRelocationHeader(new ElfSectionHeader(2)), 2U);
    EXPECT_EQ(m_elf.getHeader()->e_shnum, 3U);
    EXPECT_EQ(m_elf.getHeader()->e_shoff, 0x34U);
}

TEST_F(ElfHandlerBuildingTest, ASegmentIsLoadableAndHasItsBlock) {
    unsigned char* data = newArray("abcd");
    EXPECT_EQ(m_elf.addSegment(0x10000, 4, 100, data, 5, 16), 0U);
    const ElfProgramHeader& header = *m_elf.getProgramHeaders()[0];
    EXPECT_EQ(header.p_type, 1U);
    EXPECT_EQ(header.p_vaddr, 0x10000U);
    EXPECT_EQ(header.p_paddr, 0x10000U);
    EXPECT_EQ(header.p_offset, 0U);
    EXPECT_EQ(header.p_filesz, 4U);
    EXPECT_EQ(header.p_memsz, 100U);
    EXPECT_EQ(header.p_flags, 5U);
    EXPECT_EQ(header.p_align, 16U);
    const ElfBlock* block = m_elf.findBlock(&header);
    ASSERT_NE(block, nullptr);
    EXPECT_EQ(block->getData(), data);
    EXPECT_EQ(block->getSize(), 4U);
    EXPECT_EQ(m_elf.addSegment(0, 0, 0, newArray(""), 5, 1), 1U);
}

TEST_F(ElfHandlerBuildingTest, ASegmentWithMoreBytesThanMemoryIsAnAssertion) {
    expectAssertion("fileBytes <= memBytes", [&] { m_elf.addSegment(0, 5, 4, newArray("abcde"), 5, 4); });
}

// ---- Sections with a block of their own ----

TEST_F(ElfHandlerBuildingTest, ASectionHasItsFieldsAndItsBlock) {
    const unsigned index = m_elf.addProgbitsSection(0x100, 4, newArray("abcd"), ".data", 3, 8, 2);
    EXPECT_EQ(index, 1U);
    EXPECT_EQ(nameOf(index), ".data");
    EXPECT_EQ(section(index).sh_type, 1U);
    EXPECT_EQ(section(index).sh_flags, 3U);
    EXPECT_EQ(section(index).sh_addr, 0x100U);
    EXPECT_EQ(section(index).sh_offset, 0U);
    EXPECT_EQ(section(index).sh_size, 4U);
    EXPECT_EQ(section(index).sh_link, 0U);
    EXPECT_EQ(section(index).sh_info, 0U);
    EXPECT_EQ(section(index).sh_addralign, 8U);
    EXPECT_EQ(section(index).sh_entsize, 2U);
    EXPECT_EQ(sectionData(m_elf, index), "abcd");
}

TEST_F(ElfHandlerBuildingTest, TheToolChainsOwnSectionsDifferInTheirType) {
    const unsigned info = m_elf.addInfoSection(1, 4, newArray("info"), ".info", 2, 3, 4);
    const unsigned expr = m_elf.addExprSection(1, 4, newArray("expr"), ".expr", 2, 3, 4);
    const unsigned netinfo = m_elf.addNetinfoSection(1, 4, newArray("neti"), ".netinfo", 2, 3, 4);
    EXPECT_EQ(section(info).sh_type, 19U);
    EXPECT_EQ(section(expr).sh_type, 20U);
    EXPECT_EQ(section(netinfo).sh_type, 21U);
    for (const unsigned index : {info, expr, netinfo}) {
        EXPECT_EQ(section(index).sh_addr, 1U);
        EXPECT_EQ(section(index).sh_flags, 2U);
        EXPECT_EQ(section(index).sh_addralign, 3U);
        EXPECT_EQ(section(index).sh_entsize, 4U);
    }
    EXPECT_EQ(sectionData(m_elf, netinfo), "neti");
}

TEST_F(ElfHandlerBuildingTest, AGroupSectionHasItsFixedFields) {
    const unsigned index = m_elf.addGroupSection(8, newArray(littleEndianWords({1, 2})));
    EXPECT_EQ(nameOf(index), ".group");
    EXPECT_EQ(section(index).sh_type, 17U);
    EXPECT_EQ(section(index).sh_flags, 0U);
    EXPECT_EQ(section(index).sh_addr, 0U);
    EXPECT_EQ(section(index).sh_addralign, 4U);
    EXPECT_EQ(section(index).sh_entsize, 4U);
    EXPECT_EQ(sectionData(m_elf, index), littleEndianWords({1, 2}));
}

TEST_F(ElfHandlerBuildingTest, ANoteHasItsNameAndItsDescriptionFilledUpWithZeros) {
    const unsigned index = m_elf.addNoteSection(".note", ElfHandler::NOTE_CORE, "core0", 5);
    EXPECT_EQ(section(index).sh_type, 7U);
    EXPECT_EQ(section(index).sh_size, 24U);
    EXPECT_EQ(section(index).sh_flags, 0U);
    EXPECT_EQ(section(index).sh_addralign, 0U);
    EXPECT_EQ(sectionData(m_elf, index),
              littleEndianWords({4, 5, 2}) + "ZELM" + std::string("core0\0\0\0", 8));
}

TEST_F(ElfHandlerBuildingTest, ANoteMayHaveNoDescription) {
    const unsigned index = m_elf.addNoteSection(".note", ElfHandler::NOTE_IDENT, nullptr, 0);
    EXPECT_EQ(sectionData(m_elf, index), littleEndianWords({4, 0, 1}) + "ZELM");
}

TEST_F(ElfHandlerBuildingTest, NotesHaveTheirConstants) {
    EXPECT_STREQ(ElfHandler::noteName, "ZELM");
    EXPECT_EQ(std::uint32_t{ElfHandler::noteNameLen}, 4U);
    EXPECT_EQ(ElfHandler::NOTE_IDENT, 1U);
    EXPECT_EQ(ElfHandler::NOTE_CORE, 2U);
    EXPECT_EQ(ElfHandler::NOTE_COREREV, 3U);
}

TEST_F(ElfHandlerBuildingTest, ASectionWithoutContentsHasNoBlock) {
    const unsigned index = m_elf.addNobitsSection(0x100, 50, ".bss", 3, 8, 0);
    std::uint32_t offset = 0;
    EXPECT_EQ(section(index).sh_type, 8U);
    EXPECT_EQ(section(index).sh_size, 50U);
    EXPECT_EQ(blockOf(index, offset), nullptr);
}

TEST_F(ElfHandlerBuildingTest, SectionsOfOneNameShareTheString) {
    const unsigned first = m_elf.addNobitsSection(0, 1, ".bss", 3, 8, 0);
    const std::uint32_t numBytes = m_elf.getStrings()->numBytes();
    const unsigned second = m_elf.addNobitsSection(0, 1, ".bss", 3, 8, 0);
    EXPECT_EQ(section(first).sh_name, section(second).sh_name);
    EXPECT_EQ(m_elf.getStrings()->numBytes(), numBytes);
}

// ---- Sections inside a segment ----

TEST_F(ElfHandlerBuildingTest, ASectionLiesInsideItsSegmentsBlock) {
    const unsigned segment = m_elf.addSegment(0x100, 8, 20, newArray("01234567"), 5, 4);
    const unsigned text = m_elf.addProgbitsSection(0x102, 6, segment, 2, ".text", 6, 4, 0);
    const unsigned bss = m_elf.addNobitsSection(0x110, 4, segment, 16, ".bss", 3, 4, 0);
    const ElfBlock* expected = m_elf.findBlock(m_elf.getProgramHeaders()[0].get());
    std::uint32_t offset = 0;
    EXPECT_EQ(blockOf(text, offset), expected);
    EXPECT_EQ(offset, 2U);
    EXPECT_EQ(section(text).sh_addr, 0x102U);
    EXPECT_EQ(blockOf(bss, offset), expected);
    EXPECT_EQ(offset, 16U);
    EXPECT_EQ(section(bss).sh_type, 8U);
}

TEST_F(ElfHandlerBuildingTest, ASectionPastItsSegmentsBlockIsAnAssertion) {
    const unsigned segment = m_elf.addSegment(0x100, 8, 20, newArray("01234567"), 5, 4);
    m_elf.addProgbitsSection(0, 0, segment, 8, ".end", 6, 4, 0);
    const std::vector<std::pair<std::uint32_t, std::uint32_t>> places = {
        {9, 0}, {4, 5}, {0xFFFFFFFF, 1}, {8, 0xFFFFFFFC}}; // the last two wrap in 32 bits
    for (const auto& [offset, numBytes] : places) {
        expectAssertion("offset + numBytes <= block->getSize()", [&, at = offset, size = numBytes] {
            m_elf.addProgbitsSection(0, size, segment, at, ".x", 6, 4, 0);
        });
    }
}

TEST_F(ElfHandlerBuildingTest, ASectionWithoutContentsLiesBehindTheBytesAndWithinTheMemory) {
    const unsigned segment = m_elf.addSegment(0x100, 8, 20, newArray("01234567"), 5, 4);
    m_elf.addNobitsSection(0, 0, segment, 8, ".first", 6, 4, 0);
    m_elf.addNobitsSection(0, 0, segment, 20, ".last", 6, 4, 0);
    for (const std::uint32_t offset : {7U, 21U}) {
        expectAssertion("offset >= codePHdr->p_filesz && offset <= codePHdr->p_memsz",
                        [&] { m_elf.addNobitsSection(0, 0, segment, offset, ".x", 6, 4, 0); });
    }
}

TEST_F(ElfHandlerBuildingTest, ASegmentThatIsNotThereIsAnAssertion) {
    for (const auto& add :
         std::vector<std::function<void()>>{[&] { m_elf.addProgbitsSection(0, 0, 0U, 0U, ".x", 6, 4, 0); },
                                            [&] { m_elf.addNobitsSection(0, 0, 0U, 0U, ".x", 6, 4, 0); }}) {
        expectAssertion("segmentNo < m_programHeaders.size()", add);
    }
}

TEST_F(ElfHandlerBuildingTest, ASegmentWithoutABlockIsAnAssertion) {
    m_elf.addProgramHeader(new ElfProgramHeader(0));
    for (const auto& add :
         std::vector<std::function<void()>>{[&] { m_elf.addProgbitsSection(0, 0, 0U, 0U, ".x", 6, 4, 0); },
                                            [&] { m_elf.addNobitsSection(0, 0, 0U, 0U, ".x", 6, 4, 0); }}) {
        expectAssertion("block", add);
    }
}

// The place is looked at before the block: both are wrong here.
TEST_F(ElfHandlerBuildingTest, ForASectionWithoutContentsThePlaceIsCheckedBeforeTheBlock) {
    m_elf.addProgramHeader(new ElfProgramHeader(0));
    const ChildResult result = runInChild([&] { m_elf.addNobitsSection(0, 0, 0U, 1U, ".x", 6, 4, 0); });
    EXPECT_THAT(result.error,
                HasSubstr("Assertion `offset >= codePHdr->p_filesz && offset <= codePHdr->p_memsz' failed."));
}

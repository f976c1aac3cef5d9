#include "infr_libs/ElfHandler/ElfBlock.h"
#include "infr_libs/ElfHandler/ElfHandler.h"
#include "infr_libs/ElfHandler/ElfSectionHeader.h"
#include "infr_libs/ErrorHandler/ErrorHandler.h"
#include "tests/infr_libs/ElfHandler/ElfSamples.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

class ElfHandlerEditingTest : public testing::Test {
protected:
    ErrorHandler m_errorHandler;
    ElfHandler m_elf{&m_errorHandler, ElfHandler::ET_REL};
    unsigned m_data = m_elf.addProgbitsSection(0, 8, newArray("01234567"), ".data", 3, 4, 0);
    unsigned m_bss = m_elf.addNobitsSection(0, 100, ".bss", 3, 4, 0);

    ElfBlock& block(unsigned section) {
        std::uint32_t offset = 0;
        return *m_elf.findBlock(m_elf.getSectionHeader(section), offset);
    }
};

} // namespace

TEST_F(ElfHandlerEditingTest, GivesASectionsSize) {
    EXPECT_EQ(m_elf.getSectionSize(m_data), 8U);
    EXPECT_EQ(m_elf.getSectionSize(m_bss), 100U);
}

TEST_F(ElfHandlerEditingTest, CopiesASectionFromItsPlaceInTheBlock) {
    const unsigned segment = m_elf.addSegment(0, 8, 8, newArray("abcdefgh"), 5, 4);
    const unsigned section = m_elf.addProgbitsSection(2, 3, segment, 2, ".text", 6, 4, 0);
    EXPECT_EQ(sectionData(m_elf, section), "cde");
}

TEST_F(ElfHandlerEditingTest, ASectionWithoutContentsCopiesZeros) {
    const unsigned segment = m_elf.addSegment(0, 4, 20, newArray("abcd"), 6, 4);
    const unsigned section = m_elf.addNobitsSection(8, 6, segment, 8, ".sbss", 3, 4, 0);
    EXPECT_EQ(sectionData(m_elf, section), std::string(6, '\0'));
}

TEST_F(ElfHandlerEditingTest, WhatTheBlockLacksIsCopiedAsZeros) {
    m_elf.getSectionHeader(m_data)->sh_size = 10;
    EXPECT_EQ(sectionData(m_elf, m_data), std::string("01234567\0\0", 10));
}

TEST_F(ElfHandlerEditingTest, StoresAWord) {
    m_elf.modifySectionData(m_data, 1, 0x64636261);
    EXPECT_EQ(sectionData(m_elf, m_data), "0123abcd");
}

TEST_F(ElfHandlerEditingTest, StoresAWordFromTheBlocksStartWhereverTheSectionLies) {
    const unsigned segment = m_elf.addSegment(0, 8, 8, newArray("01234567"), 5, 4);
    const unsigned section = m_elf.addProgbitsSection(4, 4, segment, 4, ".text", 6, 4, 0);
    m_elf.modifySectionData(section, 0, 0x64636261);
    EXPECT_EQ(sectionData(m_elf, section), "4567");
    EXPECT_EQ(block(section).getData()[0], 'a');
}

TEST_F(ElfHandlerEditingTest, AWordOutsideTheBlockIsNotStored) {
    m_elf.modifySectionData(m_data, 2, 0x64636261);
    m_elf.modifySectionData(m_data, 0x40000000, 0x64636261); // four times that wraps to 0
    m_elf.modifySectionData(m_data, 0xFFFFFFFF, 0x64636261);
    EXPECT_EQ(sectionData(m_elf, m_data), "01234567");
}

// ---- Expanding ----

TEST_F(ElfHandlerEditingTest, ExpandingMovesBytesUpAndFillsTheGapFromItsEndDown) {
    block(m_data).extendData(6);
    m_elf.expandSectionData(m_data, 2, 6, 0, 0x44434241, 0);
    EXPECT_EQ(m_elf.getSectionSize(m_data), 14U);
    EXPECT_EQ(sectionData(m_elf, m_data), "01BADCBA234567");
}

TEST_F(ElfHandlerEditingTest, ExpandingAlsoFillsBytesBeforeTheGap) {
    block(m_data).extendData(2);
    m_elf.expandSectionData(m_data, 4, 2, 0, 0x44434241, 3);
    EXPECT_EQ(sectionData(m_elf, m_data), "0ADCBA4567");
}

TEST_F(ElfHandlerEditingTest, ExpandingByNothingMayStillFill) {
    m_elf.expandSectionData(m_data, 4, 0, 0, 0x44434241, 2);
    EXPECT_EQ(sectionData(m_elf, m_data), "01BA4567");
}

TEST_F(ElfHandlerEditingTest, ExpandingWithoutRoomLosesWhatDoesNotFit) {
    m_elf.expandSectionData(m_data, 2, 4, 0, 0x44434241, 0);
    EXPECT_EQ(m_elf.getSectionSize(m_data), 12U);
    EXPECT_EQ(block(m_data).getSize(), 8U);
    EXPECT_EQ(sectionData(m_elf, m_data), std::string("01DCBA23\0\0\0\0", 12));
}

TEST_F(ElfHandlerEditingTest, ExpandingTouchesNothingOutsideTheBlock) {
    m_elf.expandSectionData(m_data, 6, 0x10, 0, 0x44434241, 0xFFFFFFFF); // all from 0 to 22 would be filled
    EXPECT_EQ(sectionData(m_elf, m_data).substr(0, 8), "BADCBADC");
    m_elf.expandSectionData(m_data, 0xFFFFFFFF, 0xFFFFFFFF, 0, 0, 0);
    EXPECT_EQ(sectionData(m_elf, m_data).substr(0, 8), "BADCBADC");
}

TEST_F(ElfHandlerEditingTest, ExpandingASectionWithoutContentsChangesItsSizeAlone) {
    m_elf.expandSectionData(m_bss, 50, 10, 0, 0, 4);
    EXPECT_EQ(m_elf.getSectionSize(m_bss), 110U);
}

// ---- Contracting ----

TEST_F(ElfHandlerEditingTest, ContractingMovesTheRestDown) {
    m_elf.contractSectionData(m_data, 2, 3);
    EXPECT_EQ(m_elf.getSectionSize(m_data), 5U);
    EXPECT_EQ(sectionData(m_elf, m_data), "01567");
    EXPECT_EQ(block(m_data).getSize(), 8U);
}

TEST_F(ElfHandlerEditingTest, ContractingTheEndMovesNothing) {
    m_elf.contractSectionData(m_data, 5, 3);
    EXPECT_EQ(sectionData(m_elf, m_data), "01234");
}

TEST_F(ElfHandlerEditingTest, ContractingTouchesNothingOutsideTheBlock) {
    m_elf.contractSectionData(m_data, 4, 0xFFFFFFFF);
    EXPECT_EQ(m_elf.getSectionSize(m_data), 0U);
    m_elf.getSectionHeader(m_data)->sh_size = 1000;
    m_elf.contractSectionData(m_data, 0, 4);
    EXPECT_EQ(sectionData(m_elf, m_data).substr(0, 8), "45674567");
}

TEST_F(ElfHandlerEditingTest, ContractingASectionWithoutContentsChangesItsSizeAlone) {
    m_elf.contractSectionData(m_bss, 50, 10);
    EXPECT_EQ(m_elf.getSectionSize(m_bss), 90U);
    EXPECT_EQ(m_elf.getSectionHeader(m_bss)->sh_type, 8U);
    EXPECT_EQ(m_elf.getSectionHeader(m_bss)->sh_offset, 0U);
}

TEST_F(ElfHandlerEditingTest, ExpandingAndContractingWorkFromTheBlocksStart) {
    const unsigned segment = m_elf.addSegment(0, 8, 8, newArray("01234567"), 5, 4);
    const unsigned section = m_elf.addProgbitsSection(4, 4, segment, 4, ".text", 6, 4, 0);
    m_elf.contractSectionData(section, 0, 2); // the section's size, 4, from the block's start
    EXPECT_EQ(std::string(block(section).getData(), block(section).getData() + 8), "23234567");
}

// ---- Limits that are assertions ----

TEST_F(ElfHandlerEditingTest, ASectionThatIsNotThereIsAnAssertion) {
    const std::vector<std::function<void()>> edits = {
        [&] { m_elf.getSectionSize(3); },
        [&] { m_elf.writeSectionData(3, nullptr); },
        [&] { m_elf.modifySectionData(3, 0, 0); },
        [&] { m_elf.expandSectionData(3, 0, 0, 0, 0, 0); },
        [&] { m_elf.contractSectionData(3, 0, 0); },
    };
    for (const auto& edit : edits) {
        expectAssertion("sectionNo < m_sectionHeaders.size()", edit);
    }
}

TEST_F(ElfHandlerEditingTest, BytesOfASectionWithoutABlockAreAnAssertion) {
    const unsigned blockless = 0; // the null section
    const std::vector<std::function<void()>> edits = {
        [&] { m_elf.writeSectionData(blockless, nullptr); },
        [&] { m_elf.modifySectionData(blockless, 0, 0); },
        [&] { m_elf.expandSectionData(blockless, 0, 0, 0, 0, 0); },
        [&] { m_elf.contractSectionData(blockless, 0, 0); },
    };
    for (const auto& edit : edits) {
        expectAssertion("block", edit);
    }
}

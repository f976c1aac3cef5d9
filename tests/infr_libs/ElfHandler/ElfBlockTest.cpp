#include "infr_libs/ElfHandler/ElfBlock.h"

#include "infr_libs/ElfHandler/ElfProgramHeader.h"
#include "infr_libs/ElfHandler/ElfSectionHeader.h"
#include "tests/infr_libs/ElfHandler/ElfSamples.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <new>

TEST(ElfBlock, TakesTheArrayThatItIsGiven) {
    unsigned char* data = newArray("abc");
    const ElfBlock block(3, data);
    EXPECT_EQ(block.getData(), data);
    EXPECT_EQ(block.getSize(), 3U);
    EXPECT_EQ(block.getOffset(), 0U);
    EXPECT_EQ(block.getProgramHeader(), nullptr);
    EXPECT_TRUE(block.getSectionHeaders().empty());
}

TEST(ElfBlock, MovesItsSegmentAndSectionsWithIt) {
    ElfProgramHeader segment(0);
    ElfSectionHeader first(1);
    ElfSectionHeader second(2);
    ElfBlock block(8, newArray("01234567"));
    block.setProgramHeader(&segment);
    block.addSection(0, &first);
    block.addSection(5, &second);
    block.updateOffsets(100);
    EXPECT_EQ(block.getOffset(), 100U);
    EXPECT_EQ(segment.p_offset, 100U);
    EXPECT_EQ(first.sh_offset, 100U);
    EXPECT_EQ(second.sh_offset, 105U);
}

TEST(ElfBlock, GrowsByZerosAndKeepsItsBytes) {
    ElfBlock block(3, newArray("abc"));
    block.extendData(2);
    EXPECT_EQ(std::string(block.getData(), block.getData() + block.getSize()), std::string("abc\0\0", 5));
}

TEST(ElfBlock, CanNotGrowBeyondWhatAnArrayCanHold) {
    ElfBlock block(3, newArray("abc"));
    EXPECT_THROW(block.extendData(0xFFFFFFFF), std::bad_alloc);
    EXPECT_EQ(block.getSize(), 3U);
}

TEST(ElfBlock, ASecondSegmentIsAnAssertion) {
    expectAssertion("m_phdr == __null", [] {
        ElfProgramHeader segment(0);
        ElfBlock block(0, newArray(""));
        block.setProgramHeader(&segment);
        block.setProgramHeader(&segment);
    });
}

TEST(ElfBlock, ABlockWithoutAnArrayIsAnAssertionWhenItGoes) {
    expectAssertion("m_data != __null", [] { const ElfBlock block(0, nullptr); });
}

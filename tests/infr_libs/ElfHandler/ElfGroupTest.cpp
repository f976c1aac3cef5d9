#include "infr_libs/ElfHandler/ElfGroup.h"

#include "infr_libs/ElfHandler/ElfSectionHeader.h"
#include "infr_libs/ElfHandler/ElfSymbolTable.h"
#include "infr_libs/ErrorHandler/ErrorHandler.h"
#include "tests/infr_libs/ElfHandler/ElfSamples.h"
#include "tests/support/ElfBuilder.h"
#include "tests/support/RecordingErrorHandler.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

// A file with one group of these words, the sections 1 and 2 and the symbol 1.
ElfBuilder fileWithGroup(const std::vector<std::uint32_t>& words) {
    ElfBuilder image;
    image.addSection({.name = ".text.a", .bytes = "a"});
    image.addSection({.name = ".text.b", .bytes = "b"});
    image.addSection(
        {.name = ".group", .type = 17, .bytes = littleEndianWords(words), .info = 1, .entsize = 4});
    image.addFunction("signature", 0);
    return image;
}

} // namespace

TEST(ElfGroup, TwelveBytesAreTwoSections) {
    ErrorHandler errorHandler;
    const auto elf = readElf(errorHandler, fileWithGroup({1, 1, 2}).build().bytes);
    ASSERT_EQ(elf->getGroups().size(), 1U);
    const ElfGroup& group = *elf->getGroups().front();
    EXPECT_EQ(group.getNumSections(), 2U);
    EXPECT_THAT(group.getSections(), ElementsAre(elf->getSectionHeader(1), elf->getSectionHeader(2)));
    EXPECT_TRUE(group.isComdat());
    EXPECT_EQ(group.getSignatureIndex(), 1U);
    EXPECT_EQ(group.getSignature(), elf->getSymbolTable()->getSymbol(1));
}

TEST(ElfGroup, TheLowestFlagAloneMakesAComdatGroup) {
    ErrorHandler errorHandler;
    EXPECT_FALSE(readElf(errorHandler, fileWithGroup({0, 1}).build().bytes)->getGroups()[0]->isComdat());
    EXPECT_FALSE(readElf(errorHandler, fileWithGroup({6, 1}).build().bytes)->getGroups()[0]->isComdat());
    EXPECT_TRUE(readElf(errorHandler, fileWithGroup({7, 1}).build().bytes)->getGroups()[0]->isComdat());
}

TEST(ElfGroup, ASignatureOutOfRangeIsNull) {
    ErrorHandler errorHandler;
    const auto elf = readElf(errorHandler, fileWithGroup({1, 1}).build().set("sh_info[3]", 2).bytes);
    EXPECT_EQ(elf->getGroups()[0]->getSignature(), nullptr);
    EXPECT_EQ(elf->getGroups()[0]->getSignatureIndex(), 2U);
}

TEST(ElfGroup, ASectionThatIsNotThereIsLeftOut) {
    ErrorHandler errorHandler;
    const auto elf = readElf(errorHandler, fileWithGroup({1, 6, 2, 0xFFFFFFFF}).build().bytes);
    EXPECT_EQ(elf->getGroups()[0]->getNumSections(), 3U);
    EXPECT_THAT(elf->getGroups()[0]->getSections(), ElementsAre(elf->getSectionHeader(2)));
}

TEST(ElfGroup, FewerThanFourBytesAreNoSections) {
    ErrorHandler errorHandler;
    const auto elf = readElf(errorHandler, fileWithGroup({1, 1}).build().set("sh_size[3]", 3).bytes);
    ASSERT_EQ(elf->getGroups().size(), 1U);
    EXPECT_EQ(elf->getGroups()[0]->getNumSections(), 0U);
    EXPECT_FALSE(elf->getGroups()[0]->isComdat());
    EXPECT_THAT(elf->getGroups()[0]->getSections(), IsEmpty());
}

TEST(ElfGroup, WordsPastTheEndOfTheFileAreTheNullSection) {
    LabelledBytes file = fileWithGroup({1, 1, 2}).build();
    const auto size = static_cast<std::uint32_t>(file.bytes.size());
    // From within the file's last words, and larger than the file.
    for (const std::uint32_t numWords : {3U, size}) {
        file.set("sh_offset[3]", size - 4).set("sh_size[3]", 4 * numWords);
        RecordingErrorHandler errorHandler;
        const auto elf = readElf(errorHandler, file.bytes);
        EXPECT_THAT(errorHandler.messages(), IsEmpty());
        ASSERT_EQ(elf->getGroups().size(), 1U);
        EXPECT_EQ(elf->getGroups()[0]->getNumSections(), numWords - 1);
        EXPECT_THAT(elf->getGroups()[0]->getSections(), SizeIs(numWords - 1));
        EXPECT_THAT(elf->getGroups()[0]->getSections(), Each(elf->getSectionHeader(0)));
    }
}

TEST(ElfGroup, AGroupOfClaimedGigabytesIsRefused) {
    for (const std::uint32_t size : {0x40000000U, 0xFFFFFFFCU}) {
        RecordingErrorHandler errorHandler;
        const auto elf = readElf(errorHandler, fileWithGroup({1, 1}).build().set("sh_size[3]", size).bytes);
        // Once for the block, once for the group.
        EXPECT_THAT(errorHandler.messages(),
                    ElementsAre("fatal ERROR: Failed to allocate memory for data section\n",
                                "fatal ERROR: Failed to allocate memory for data section\n"));
        EXPECT_THAT(elf->getGroups(), IsEmpty());
    }
}

TEST(ElfGroup, AGroupWithoutMemoryForItHasNoMembers) {
    RecordingErrorHandler errorHandler;
    std::istringstream stream("abcdefgh");
    ElfSectionHeader header(1);
    header.sh_size = 0x40000000;
    EXPECT_EQ(ElfGroup(&errorHandler, stream, &header).getNumSections(), 0U);
    EXPECT_THAT(errorHandler.messages(),
                ElementsAre("fatal ERROR: Failed to allocate memory for data section\n"));
}

TEST(ElfGroup, ManyGroupsOverTheSameBytesAreRefusedInSum) {
    constexpr std::uint32_t s_size = 0x2400000; // two of them are more than 64 MiB
    ElfBuilder image;
    image.addSegment({});
    for (int i = 0; i < 2; ++i)
        image.addSection({.name = ".group", .type = 17, .size = s_size, .segment = 0, .entsize = 4});
    RecordingErrorHandler errorHandler;
    const auto elf = readElf(errorHandler, image.build().set("p_filesz[0]", s_size).bytes);
    EXPECT_EQ(elf->getGroups().size(), 1U);
    EXPECT_THAT(errorHandler.messages(),
                ElementsAre("fatal ERROR: Failed to allocate memory for data section\n"));
}

TEST(ElfGroup, GroupsStandInFileOrder) {
    ErrorHandler errorHandler;
    ElfBuilder image = fileWithGroup({1, 1});
    image.addSection({.name = ".group", .type = 17, .bytes = littleEndianWords({0, 2}), .info = 1});
    const auto elf = readElf(errorHandler, image.build().bytes);
    ASSERT_EQ(elf->getGroups().size(), 2U);
    EXPECT_THAT(elf->getGroups()[0]->getSections(), ElementsAre(elf->getSectionHeader(1)));
    EXPECT_THAT(elf->getGroups()[1]->getSections(), ElementsAre(elf->getSectionHeader(2)));
}

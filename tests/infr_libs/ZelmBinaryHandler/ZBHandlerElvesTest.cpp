#include "infr_libs/ZelmBinaryHandler/ZBHandler.h"

#include "tests/infr_libs/ZelmBinaryHandler/Containers.h"
#include "tests/support/BitSerialCrc.h"
#include "tests/support/Bytes.h"
#include "tests/support/ImageBuilder.h"
#include "tests/support/SegmentFile.h"

#include <cstdlib>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::ElementsAre;

namespace {

// Fields of the files that `segmentFile` makes.
constexpr std::size_t s_version = 0x14;
constexpr std::size_t s_phoff = 0x1C;
constexpr std::size_t s_shoff = 0x20;
constexpr std::size_t s_phnum = 0x2C;
constexpr std::size_t s_shnum = 0x30;
constexpr std::size_t s_firstSegment = s_segmentTableOffset;
constexpr std::size_t s_segmentFileOffset = s_firstSegment + 4;
constexpr std::size_t s_segmentFileSize = s_firstSegment + 16;

// A program of two segments with a gap of two bytes between them.
std::string program() {
    return segmentFile(0x10004, {{0x10000, "first"}, {0x10007, "second"}});
}

std::string changed(std::string bytes, std::size_t offset, unsigned numBytes, std::uint64_t value) {
    return bytes.replace(offset, numBytes, littleEndian(value, numBytes));
}

Container containerOf(std::string_view elf) {
    return load(ImageBuilder().elf(0x102, 0x304, elf).bytes());
}

// What `banishElves` leaves of a file that it can't flatten.
void expectRefused(std::string_view elf, int errorCode, const char* message) {
    const Container container = containerOf(elf);
    EXPECT_EQ(banishElves(container.get()), -1);
    EXPECT_EQ(container->errorCode, errorCode);
    EXPECT_STREQ(container->errorMessage, message);
    EXPECT_EQ(container->firstSector->type, ZBSEC_ELF);
    EXPECT_EQ(write(container), ImageBuilder().elf(0x102, 0x304, elf).bytes());
}

constexpr char s_notElf[] = "File was not an ELF file.";
constexpr char s_badSegments[] = "Bad segment size in ELF file.";

} // namespace

TEST(BanishElves, AnElfBecomesAFlatImage) {
    const Container container = containerOf(program());
    EXPECT_EQ(banishElves(container.get()), 0);
    EXPECT_EQ(write(container),
              ImageBuilder().binary(0x102, 0x304, 0x10000, std::string("first\0\0second", 13)).bytes());
}

TEST(BanishElves, TheCrcIsThatOfThePayloadAlone) {
    const Container container = containerOf(program());
    banishElves(container.get());
    EXPECT_EQ(container->firstSector->crc, bitSerialCrc(payloadOf(container->firstSector)));
}

TEST(BanishElves, AnyTypeOfSegmentCountsByItsFileBytes) {
    const Container container = containerOf(
        segmentFile(0, {{100, "load", 1, 1000}, {104, "note", 4}, {5, "", 1, 50}, {108, "x", 99}}));
    EXPECT_EQ(banishElves(container.get()), 0);
    EXPECT_EQ(write(container), ImageBuilder().binary(0x102, 0x304, 100, "loadnotex").bytes());
}

TEST(BanishElves, ALaterSegmentOverwritesAnEarlierOne) {
    const Container container = containerOf(segmentFile(0, {{10, "abcdef"}, {12, "XY"}, {8, "12"}}));
    EXPECT_EQ(banishElves(container.get()), 0);
    EXPECT_EQ(write(container), ImageBuilder().binary(0x102, 0x304, 8, "12abXYef").bytes());
}

TEST(BanishElves, OtherSectorsStayAsTheyAre) {
    const ImageBuilder others = ImageBuilder().binary(0, 0, 1, "b").zn("n").sector(10, program()).end();
    const Container container = load(others.bytes());
    EXPECT_EQ(banishElves(container.get()), 0);
    EXPECT_EQ(write(container), others.bytes());
}

// --- The entry point ---

TEST(BanishElves, TheNextGotoOfTheCoreGetsTheEntryPoint) {
    const Container container = load(ImageBuilder()
                                         .jump(0, 1) // stands before the image
                                         .elf(0, 1, program())
                                         .call(0, 1) // CALL sectors are left alone
                                         .jump(1, 1) // another node
                                         .jump(0, 0) // another core
                                         .jump(0, 1, 0x1122334455667788)
                                         .jump(0, 1) // a second one
                                         .bytes());
    EXPECT_EQ(banishElves(container.get()), 0);
    std::vector<std::uint64_t> addresses;
    for (const ZBSectorHolder_tag* sector : sectorsOf(container))
        addresses.push_back(getSectorAddress(sector));
    EXPECT_THAT(addresses, ElementsAre(0, 0x10000, 0, 0, 0, 0x10004, 0));
}

TEST(BanishElves, EachImageFindsItsOwnGoto) {
    const Container container = load(ImageBuilder()
                                         .elf(0, 1, segmentFile(0x11, {{0, "a"}}))
                                         .elf(0, 2, segmentFile(0x22, {{0, "b"}}))
                                         .jump(0, 2)
                                         .jump(0, 1)
                                         .elf(0, 1, segmentFile(0x33, {{0, "c"}}))
                                         .jump(0, 1)
                                         .bytes());
    EXPECT_EQ(banishElves(container.get()), 0);
    const auto sectors = sectorsOf(container);
    EXPECT_EQ(getSectorAddress(sectors[2]), 0x22U);
    EXPECT_EQ(getSectorAddress(sectors[3]), 0x11U);
    EXPECT_EQ(getSectorAddress(sectors[5]), 0x33U);
}

TEST(BanishElves, OfTwoImagesBeforeOneGotoTheLaterOneCounts) {
    const Container container = load(ImageBuilder()
                                         .elf(0, 1, segmentFile(0x11, {{0, "a"}}))
                                         .elf(0, 1, segmentFile(0x22, {{0, "b"}}))
                                         .jump(0, 1)
                                         .jump(0, 1)
                                         .bytes());
    EXPECT_EQ(banishElves(container.get()), 0);
    EXPECT_EQ(getSectorAddress(sectorsOf(container)[2]), 0x22U);
    EXPECT_EQ(getSectorAddress(sectorsOf(container)[3]), 0U);
}

TEST(BanishElves, AGotoTooShortForARecordIsPassedOver) {
    const Container container =
        load(ImageBuilder().elf(0, 0, program()).sector(5, "short").sector(5, "").jump(0, 0).bytes());
    EXPECT_EQ(banishElves(container.get()), 0);
    EXPECT_EQ(payloadOf(sectorsOf(container)[1]), "short");
    EXPECT_EQ(getSectorAddress(sectorsOf(container)[3]), 0x10004U);
}

// --- What can't be flattened ---

TEST(BanishElves, AnElfWithoutFileBytesIsRefusedAndStaysAnElf) {
    expectRefused(segmentFile(0, {{0x10000, "", 1, 100}}), 13, s_badSegments);
    expectRefused(segmentFile(0, {}), 13, s_badSegments);
}

TEST(BanishElves, ATagThatIsntElfIsRefused) {
    for (std::size_t byte : {1, 2, 3})
        expectRefused(changed(program(), byte, 1, 'x'), 11, s_notElf);
}

TEST(BanishElves, TheFirstByteOfTheTagIsntLookedAt) {
    const Container container = containerOf(changed(program(), 0, 1, 'x'));
    EXPECT_EQ(banishElves(container.get()), 0);
}

TEST(BanishElves, AVersionWordOfTheOtherByteOrderIsRefused) {
    expectRefused(changed(program(), s_version, 4, 0x01000000), 11, s_notElf);
    expectRefused(changed(program(), s_version, 4, 0x10000), 11, s_notElf);
}

TEST(BanishElves, AnyVersionWordBelowThatIsTaken) {
    for (unsigned version : {0U, 2U, 0xFFFFU})
        EXPECT_EQ(banishElves(containerOf(changed(program(), s_version, 4, version)).get()), 0);
}

TEST(BanishElves, WhatLiesOutsideTheFileIsRefused) {
    const std::string elf = program();
    const std::uint64_t end = elf.size();
    const std::string rows[] = {
        changed(elf, s_phoff, 4, end - 63),   // the last byte of two entries
        changed(elf, s_phoff, 4, 0xFFFFFFFF), //
        changed(elf, s_phnum, 2, 0xFFFF),     //
        changed(elf, s_shnum, 2, 1).replace(s_shoff, 4, littleEndian(end - 39, 4)),
        changed(elf, s_segmentFileOffset, 4, end - 4),    // the last byte of "first"
        changed(elf, s_segmentFileOffset, 4, 0xFFFFFFFF), //
        changed(elf, s_segmentFileSize, 4, 0xFFFFFFFF),   //
        changed(elf, s_segmentFileSize, 4, end),
    };
    for (const std::string& row : rows)
        expectRefused(row, 11, s_notElf);
}

TEST(BanishElves, ASectionTableInTheFileIsNoObstacle) {
    const std::string elf = changed(program(), s_shnum, 2, 1).replace(s_shoff, 4, littleEndian(0, 4));
    EXPECT_EQ(banishElves(containerOf(elf).get()), 0);
}

TEST(BanishElves, ATooShortFileIsRefused) {
    const std::string elf = program();
    for (std::size_t numBytes = 0; numBytes < elf.size(); ++numBytes)
        expectRefused(elf.substr(0, numBytes), 11, s_notElf);
}

TEST(BanishElves, AnElfSectorWithoutAPrefixIsRefused) {
    for (const char* payload : {"", "short"}) {
        const Container container = load(ImageBuilder().sector(2, payload).bytes());
        EXPECT_EQ(banishElves(container.get()), -1);
        EXPECT_EQ(container->errorCode, 11);
    }
}

TEST(BanishElves, ASegmentBeyondTheLastAddressIsRefused) {
    expectRefused(segmentFile(0, {{0xFFFFFFFD, "four"}}), 13, s_badSegments);
    expectRefused(segmentFile(0, {{0xFFFFFFFC, "four"}}), 13, s_badSegments);
    EXPECT_EQ(banishElves(containerOf(segmentFile(0, {{0xFFFFFFFB, "four"}})).get()), 0);
}

TEST(BanishElves, ASpanThatNoMemoryHoldsIsRefused) {
    expectRefused(segmentFile(0, {{0, "low"}, {0x80000000, "high"}}), 3, "Out of memory.");
}

TEST(BanishElves, ImagesBeforeARefusedOneStayFlat) {
    const Container container = load(ImageBuilder()
                                         .elf(0, 0, segmentFile(0x11, {{0, "a"}}))
                                         .elf(0, 1, "not one")
                                         .elf(0, 2, segmentFile(0x22, {{0, "b"}}))
                                         .jump(0, 0)
                                         .jump(0, 2)
                                         .bytes());
    EXPECT_EQ(banishElves(container.get()), -1);
    EXPECT_THAT(typesOf(container), ElementsAre(ZBSEC_BINARY, ZBSEC_ELF, ZBSEC_ELF, ZBSEC_GOTO, ZBSEC_GOTO));
    EXPECT_EQ(getSectorAddress(sectorsOf(container)[3]), 0x11U);
    EXPECT_EQ(getSectorAddress(sectorsOf(container)[4]), 0U);
}

// --- One image ---

TEST(LoadElfFromBuffer, GivesImageBaseAndEntry) {
    const std::string elf = program();
    const Container container = emptyContainer();
    std::uint64_t numBytes = 0;
    std::uint32_t base = 0;
    std::uint32_t entry = 0;
    unsigned char* image = loadElfFromBuffer(container.get(), elf.data(), &numBytes, &base, &entry);
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(std::string(reinterpret_cast<char*>(image), static_cast<std::size_t>(numBytes)),
              std::string("first\0\0second", 13));
    EXPECT_EQ(base, 0x10000U);
    EXPECT_EQ(entry, 0x10004U);
    std::free(image);
}

TEST(LoadElfFromBuffer, LeavesResultsAloneWhereItFails) {
    const std::string elf = changed(program(), 1, 1, 'x');
    const Container container = emptyContainer();
    std::uint64_t numBytes = 1;
    std::uint32_t base = 2;
    std::uint32_t entry = 3;
    EXPECT_EQ(loadElfFromBuffer(container.get(), elf.data(), &numBytes, &base, &entry), nullptr);
    EXPECT_EQ(container->errorCode, 11);
    EXPECT_STREQ(container->errorMessage, s_notElf);
    EXPECT_EQ(numBytes, 1U);
    EXPECT_EQ(base, 2U);
    EXPECT_EQ(entry, 3U);
}

#include "infr_libs/ZelmBinaryHandler/ZBHandler.h"

#include "tests/infr_libs/ZelmBinaryHandler/Containers.h"
#include "tests/support/BitSerialCrc.h"
#include "tests/support/ImageBuilder.h"
#include "tests/support/SegmentFile.h"

#include <cstdlib>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>

using testing::ElementsAre;

namespace {

// A program of two segments with a gap of two bytes between them.
LabelledBytes program() {
    return segmentFile(0x10004, {bytesAt(0x10000, "first"), bytesAt(0x10007, "second")});
}

std::string changed(const char* label, std::uint32_t value) {
    return program().set(label, value).bytes;
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

constexpr std::size_t s_elfHeaderSize = 52;
constexpr char s_notElf[] = "File was not an ELF file.";
constexpr char s_badSegments[] = "Bad segment size in ELF file.";

} // namespace

TEST(BanishElves, AnElfBecomesAFlatImage) {
    const Container container = containerOf(program().bytes);
    EXPECT_EQ(banishElves(container.get()), 0);
    EXPECT_EQ(write(container),
              ImageBuilder().binary(0x102, 0x304, 0x10000, std::string("first\0\0second", 13)).bytes());
}

TEST(BanishElves, ALimitHoldsForAllFlatImagesTogether) {
    const auto limited = [](std::uint64_t maxBytes) {
        const Container container =
            load(ImageBuilder().elf(0, 0, program().bytes).elf(0, 1, program().bytes).bytes());
        const int result = banishElves(container.get(), maxBytes);
        EXPECT_EQ(result == 0, container->errorCode == 0);
        if (result != 0) {
            EXPECT_STREQ(container->errorMessage, "Out of memory.");
        }
        return std::pair(container->firstSector->type, container->lastSector->type);
    };
    EXPECT_EQ(limited(26), std::pair(ZBSEC_BINARY + 0, ZBSEC_BINARY + 0)); // twice 13 bytes
    EXPECT_EQ(limited(25), std::pair(ZBSEC_BINARY + 0, ZBSEC_ELF + 0));
    EXPECT_EQ(limited(12), std::pair(ZBSEC_ELF + 0, ZBSEC_ELF + 0));
}

TEST(BanishElves, TheCrcIsThatOfThePayloadAlone) {
    const Container container = containerOf(program().bytes);
    banishElves(container.get());
    EXPECT_EQ(container->firstSector->crc, bitSerialCrc(payloadOf(container->firstSector)));
}

TEST(BanishElves, AnyTypeOfSegmentCountsByItsFileBytes) {
    const Container container = containerOf(segmentFile(0, {{.vaddr = 100, .bytes = "load", .memsz = 1000},
                                                            {.type = 4, .vaddr = 104, .bytes = "note"},
                                                            {.vaddr = 5, .memsz = 50},
                                                            {.type = 99, .vaddr = 108, .bytes = "x"}})
                                                .bytes);
    EXPECT_EQ(banishElves(container.get()), 0);
    EXPECT_EQ(write(container), ImageBuilder().binary(0x102, 0x304, 100, "loadnotex").bytes());
}

TEST(BanishElves, ALaterSegmentOverwritesAnEarlierOne) {
    const Container container =
        containerOf(segmentFile(0, {bytesAt(10, "abcdef"), bytesAt(12, "XY"), bytesAt(8, "12")}).bytes);
    EXPECT_EQ(banishElves(container.get()), 0);
    EXPECT_EQ(write(container), ImageBuilder().binary(0x102, 0x304, 8, "12abXYef").bytes());
}

TEST(BanishElves, AnyOverlapOfSegmentsGivesWhatCopyingInOrderGives) {
    constexpr std::uint32_t numBytes = 60; // of the span
    std::minstd_rand random(1);
    for (int i = 0; i < 500; ++i) {
        std::string image(numBytes, '\0');
        std::vector<ElfBuilder::Segment> segments{bytesAt(0, "a"), bytesAt(numBytes - 1, "z")};
        for (std::size_t more = random() % 12; more != 0; --more) {
            const auto begin = static_cast<std::uint32_t>(random() % numBytes);
            const std::size_t length = 1 + random() % (numBytes - begin);
            segments.push_back(bytesAt(begin, std::string(length, static_cast<char>('b' + more))));
        }
        for (const ElfBuilder::Segment& segment : segments)
            image.replace(segment.vaddr, segment.bytes.size(), segment.bytes);
        const Container container = containerOf(segmentFile(0, segments).bytes);
        ASSERT_EQ(banishElves(container.get()), 0);
        ASSERT_EQ(write(container), ImageBuilder().binary(0x102, 0x304, 0, image).bytes()) << i;
    }
}

// Each as long as the file: copied one by one they would be 137 GB.
TEST(BanishElves, AsManySegmentsAsThereCanBeMayShareAllBytes) {
    constexpr std::uint32_t numSegments = 0xffff;
    constexpr std::uint32_t headerSize = 32;
    LabelledBytes file = segmentFile(0, {bytesAt(0, "a")});
    const auto tableOffset = static_cast<std::uint32_t>(file.bytes.size());
    const std::uint32_t numBytes = tableOffset + numSegments * headerSize; // 2 MB
    file.set("e_phoff", tableOffset).set("e_phnum", numSegments);
    file.set("p_offset[0]", 0).set("p_filesz[0]", numBytes);
    const std::string header = file.bytes.substr(s_elfHeaderSize, headerSize);
    for (std::uint32_t i = 0; i < numSegments; ++i)
        file.bytes += header;
    const Container container = containerOf(file.bytes);
    ASSERT_EQ(banishElves(container.get()), 0);
    EXPECT_EQ(write(container), ImageBuilder().binary(0x102, 0x304, 0, file.bytes).bytes());
}

TEST(BanishElves, OtherSectorsStayAsTheyAre) {
    const ImageBuilder others = ImageBuilder().binary(0, 0, 1, "b").zn("n").sector(10, program().bytes).end();
    const Container container = load(others.bytes());
    EXPECT_EQ(banishElves(container.get()), 0);
    EXPECT_EQ(write(container), others.bytes());
}

// --- The entry point ---

TEST(BanishElves, TheNextGotoOfTheCoreGetsTheEntryPoint) {
    const Container container = load(ImageBuilder()
                                         .jump(0, 1) // stands before the image
                                         .elf(0, 1, program().bytes)
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
                                         .elf(0, 1, segmentFile(0x11, {bytesAt(0, "a")}).bytes)
                                         .elf(0, 2, segmentFile(0x22, {bytesAt(0, "b")}).bytes)
                                         .jump(0, 2)
                                         .jump(0, 1)
                                         .elf(0, 1, segmentFile(0x33, {bytesAt(0, "c")}).bytes)
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
                                         .elf(0, 1, segmentFile(0x11, {bytesAt(0, "a")}).bytes)
                                         .elf(0, 1, segmentFile(0x22, {bytesAt(0, "b")}).bytes)
                                         .jump(0, 1)
                                         .jump(0, 1)
                                         .bytes());
    EXPECT_EQ(banishElves(container.get()), 0);
    EXPECT_EQ(getSectorAddress(sectorsOf(container)[2]), 0x22U);
    EXPECT_EQ(getSectorAddress(sectorsOf(container)[3]), 0U);
}

TEST(BanishElves, AGotoTooShortForARecordIsPassedOver) {
    const Container container =
        load(ImageBuilder().elf(0, 0, program().bytes).sector(5, "short").sector(5, "").jump(0, 0).bytes());
    EXPECT_EQ(banishElves(container.get()), 0);
    EXPECT_EQ(payloadOf(sectorsOf(container)[1]), "short");
    EXPECT_EQ(getSectorAddress(sectorsOf(container)[3]), 0x10004U);
}

// --- What can't be flattened ---

TEST(BanishElves, AnElfWithoutFileBytesIsRefusedAndStaysAnElf) {
    expectRefused(segmentFile(0, {{.vaddr = 0x10000, .memsz = 100}}).bytes, 13, s_badSegments);
    expectRefused(segmentFile(0, {}).bytes, 13, s_badSegments);
}

TEST(BanishElves, ATagThatIsntElfIsRefused) {
    for (const char* byte : {"e_ident[1]", "e_ident[2]", "e_ident[3]"})
        expectRefused(changed(byte, 'x'), 11, s_notElf);
}

TEST(BanishElves, TheFirstByteOfTheTagIsntLookedAt) {
    EXPECT_EQ(banishElves(containerOf(changed("e_ident[0]", 'x')).get()), 0);
}

TEST(BanishElves, AVersionWordOfTheOtherByteOrderIsRefused) {
    for (const std::uint32_t version : {0x01000000U, 0x10000U, 0xFFFFFFFFU})
        expectRefused(changed("e_version", version), 11, s_notElf);
}

TEST(BanishElves, AnyVersionWordBelowThatIsTaken) {
    for (const std::uint32_t version : {0U, 2U, 0xFFFFU})
        EXPECT_EQ(banishElves(containerOf(changed("e_version", version)).get()), 0);
}

TEST(BanishElves, WhatLiesOutsideTheFileIsRefused) {
    const auto size = static_cast<std::uint32_t>(program().bytes.size());
    const std::pair<const char*, std::uint32_t> rows[] = {
        {"e_phoff", size - 63},                                                     // two entries of 32 bytes
        {"e_phoff", 0xFFFFFFFF},     {"e_phnum", 0xFFFF},   {"e_shoff", size - 39}, // one entry of 40 bytes
        {"e_shoff", 0xFFFFFFFF},     {"e_shnum", 0xFFFF},   {"p_offset[0]", size - 4}, // five bytes
        {"p_offset[0]", 0xFFFFFFFF}, {"p_filesz[0]", size}, {"p_filesz[0]", 0xFFFFFFFF}, {"p_filesz[1]", 7},
    };
    for (const auto& [label, value] : rows)
        expectRefused(changed(label, value), 11, s_notElf);
}

TEST(BanishElves, ATableWithoutEntriesMayStandAnywhere) {
    LabelledBytes elf = program().set("e_shnum", 0).set("e_shoff", 0xFFFFFFFF);
    EXPECT_EQ(banishElves(containerOf(elf.bytes).get()), 0);
    elf.set("e_phnum", 0).set("e_phoff", 0xFFFFFFFF);
    expectRefused(elf.bytes, 13, s_badSegments);
}

TEST(BanishElves, ATooShortFileIsRefused) {
    const std::string elf = program().bytes;
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
    expectRefused(segmentFile(0, {bytesAt(0xFFFFFFFD, "four")}).bytes, 13, s_badSegments);
    expectRefused(segmentFile(0, {bytesAt(0xFFFFFFFC, "four")}).bytes, 13, s_badSegments);
    EXPECT_EQ(banishElves(containerOf(segmentFile(0, {bytesAt(0xFFFFFFFB, "four")}).bytes).get()), 0);
}

TEST(BanishElves, ASpanThatNoMemoryHoldsIsRefused) {
    expectRefused(segmentFile(0, {bytesAt(0, "low"), bytesAt(0x80000000, "high")}).bytes, 3,
                  "Out of memory.");
}

TEST(BanishElves, ImagesBeforeARefusedOneStayFlat) {
    const Container container = load(ImageBuilder()
                                         .elf(0, 0, segmentFile(0x11, {bytesAt(0, "a")}).bytes)
                                         .elf(0, 1, "not one")
                                         .elf(0, 2, segmentFile(0x22, {bytesAt(0, "b")}).bytes)
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
    const std::string elf = program().bytes;
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
    const std::string elf = changed("e_ident[1]", 'x');
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

#include "infr_libs/ZelmBinaryHandler/ZBHandler.h"

#include "tests/infr_libs/ZelmBinaryHandler/Containers.h"
#include "tests/support/BitSerialCrc.h"
#include "tests/support/Bytes.h"
#include "tests/support/ImageBuilder.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

// Where the payload of a container's first sector stands, and its CRC if the payload is one word.
constexpr std::size_t s_payload = 24;
constexpr std::size_t s_crc = 28;

// A container whose second sector is declared in this way, on top of the payload bytes given. The first is
// good, so that a test sees it kept.
ImageBuilder withSector(std::uint64_t size, unsigned pad, std::string_view rest) {
    ImageBuilder image;
    image.zn("good").append(littleEndian(8, 4)).append(littleEndian(size, 8));
    return image.append(littleEndian(pad, 4)).append(rest);
}

} // namespace

TEST(ZBHandlerReading, ATagAndAVersionAreAnEmptyContainer) {
    const Container container = load(ImageBuilder().bytes());
    EXPECT_EQ(container->errorCode, 0);
    EXPECT_STREQ(container->errorMessage, "");
    EXPECT_EQ(container->firstSector, nullptr);
    EXPECT_EQ(write(container), fromHex("5A 45 4C 4D 01 00 00 00"));
}

TEST(ZBHandlerReading, ASectorHasItsTypePayloadAndCrc) {
    const Container container = load(ImageBuilder().zn("A").bytes());
    ASSERT_THAT(typesOf(container), ElementsAre(ZBSEC_ZN));
    EXPECT_EQ(payloadOf(container->firstSector), "A");
    EXPECT_EQ(container->firstSector->crc, 0x86BE3526U);
}

TEST(ZBHandlerReading, SectorsKeepTheFilesOrder) {
    const Container container =
        load(ImageBuilder().config("c").zn("z").elf(0, 0, "e").zn("y").nodeDescriptor(1, 2).bytes());
    EXPECT_THAT(typesOf(container),
                ElementsAre(ZBSEC_SYSCONFIG, ZBSEC_ZN, ZBSEC_ELF, ZBSEC_ZN, ZBSEC_NODEDESC));
}

TEST(ZBHandlerReading, AnySixteenBitTypeIsKept) {
    for (unsigned type : {0U, 7U, 9U, 12U, 0x8000U, 0xFFFFU}) {
        const Container container = load(ImageBuilder().sector(type, "x").bytes());
        EXPECT_EQ(container->errorCode, 0);
        EXPECT_THAT(typesOf(container), ElementsAre(static_cast<std::int32_t>(type)));
    }
}

TEST(ZBHandlerReading, AnEndSectorDoesntEndTheContainer) {
    const Container container = load(ImageBuilder().end().zn("A").end().zn("B").bytes());
    EXPECT_EQ(container->errorCode, 0);
    EXPECT_THAT(typesOf(container), ElementsAre(ZBSEC_END, ZBSEC_ZN, ZBSEC_END, ZBSEC_ZN));
}

TEST(ZBHandlerReading, ASectorOfSizeZeroIsTwelveBytesAndHasNoPayload) {
    const Container container = load(ImageBuilder().sector(9, "").zn("A").bytes());
    EXPECT_EQ(container->errorCode, 0);
    EXPECT_THAT(typesOf(container), ElementsAre(9, ZBSEC_ZN));
    EXPECT_EQ(container->firstSector->data, nullptr);
    EXPECT_EQ(container->firstSector->length, 0U);
    EXPECT_EQ(container->firstSector->crc, 0U);
}

TEST(ZBHandlerReading, ReservedBytesAreIgnored) {
    // In the file header, and in the header of a sector that has no CRC.
    const Container container =
        load(ImageBuilder().end().setNumber(6, 2, 0x1234).setNumber(10, 2, 7).bytes());
    EXPECT_EQ(container->errorCode, 0);
    EXPECT_THAT(typesOf(container), ElementsAre(ZBSEC_END));
}

// At offset 2 of a sector's header and behind the number of padding bytes; with the CRC that they have, and
// with the one that isn't looked at.
TEST(ZBHandlerReading, ReservedBytesOfASectorWithAPayloadAreIgnored) {
    const std::string file =
        ImageBuilder().zn("A").setNumber(10, 2, 0x1234).setNumber(21, 3, 0x56789a).bytes();
    for (const std::uint32_t crc : {bitSerialCrc(file.substr(8, s_crc - 8)), 0U}) {
        const Container container = load(ImageBuilder()
                                             .zn("A")
                                             .setNumber(10, 2, 0x1234)
                                             .setNumber(21, 3, 0x56789a)
                                             .setNumber(s_crc, 4, crc)
                                             .zn("B")
                                             .bytes());
        EXPECT_EQ(container->errorCode, 0);
        ASSERT_THAT(typesOf(container), ElementsAre(ZBSEC_ZN, ZBSEC_ZN));
        EXPECT_EQ(payloadOf(container->firstSector), "A");
    }
}

TEST(ZBHandlerReading, ReservedBytesOfTheFileHeaderMayBeMissing) {
    for (std::size_t numBytes : {6, 7}) {
        const Container container = load(ImageBuilder().cutTo(numBytes).bytes());
        EXPECT_EQ(container->errorCode, 0);
        EXPECT_EQ(container->firstSector, nullptr);
    }
}

TEST(ZBHandlerReading, NoBufferIsAShortOne) {
    for (std::size_t numBytes : {0, 100}) {
        const Container container(loadZBFromMemory(nullptr, numBytes));
        EXPECT_EQ(container->errorCode, 1);
    }
}

// --- The CRC ---

TEST(ZBHandlerReading, AStoredCrcOfZeroWaivesTheCheck) {
    const Container container = load(ImageBuilder().zn("A").setNumber(s_crc, 4, 0).zn("B").bytes());
    EXPECT_EQ(container->errorCode, 0);
    EXPECT_EQ(payloadOf(container->firstSector), "A");
    EXPECT_EQ(container->firstSector->crc, 0U);
    EXPECT_EQ(sectorsOf(container).size(), 2U);
}

TEST(ZBHandlerReading, AFlippedPayloadBitIsACrcErrorWithTheSectorAtTheTail) {
    const Container container = load(ImageBuilder().end().zn("ABCDEFGH").flipBit(36, 0).zn("C").bytes());
    EXPECT_EQ(container->errorCode, 8);
    EXPECT_STREQ(container->errorMessage, "Detected crc error");
    EXPECT_THAT(typesOf(container), ElementsAre(ZBSEC_END, ZBSEC_ZN));
    EXPECT_EQ(payloadOf(container->firstSector->next), "@BCDEFGH");
    EXPECT_EQ(container->firstSector->next->crc, 0U);
}

TEST(ZBHandlerReading, OneBitOfASectorIsCoveredByNothing) {
    // Bit 7 of the fifth covered byte from the end leaves the register with the very last bit.
    const Container container = load(ImageBuilder().zn("ABCDEFGH").flipBit(s_payload + 3, 7).bytes());
    EXPECT_EQ(container->errorCode, 0);
    EXPECT_EQ(payloadOf(container->firstSector), "ABC\xC4"
                                                 "EFGH");
}

TEST(ZBHandlerReading, TheCrcCoversThePadding) {
    const Container container = load(ImageBuilder().zn("A").setByte(s_payload + 1, 1).bytes());
    EXPECT_EQ(container->errorCode, 8);
}

// --- Sizes ---

TEST(ZBHandlerReading, ABufferThatEndsBeforeTheSectorDoesKeepsTheSectorsBefore) {
    const std::string whole = ImageBuilder().zn("good").zn("cut off").bytes();
    const Container container = load(whole.substr(0, whole.size() - 1));
    EXPECT_EQ(container->errorCode, 4);
    EXPECT_STREQ(container->errorMessage, "Not enough space in the buffer to hold the data");
    EXPECT_THAT(typesOf(container), ElementsAre(ZBSEC_ZN));
    EXPECT_EQ(payloadOf(container->firstSector), "good");
}

TEST(ZBHandlerReading, ASizeThatDoesntFitIsRefused) {
    const std::string rest(20, '\0');
    struct Row {
        const char* what;
        std::uint64_t size;
        unsigned pad;
    };
    const Row rows[] = {
        {"no room for a pad word and a CRC", 7, 0},
        {"no room for the padding", 8, 1},
        {"no room for the padding", 10, 3},
        {"a pad that no length has", 16, 4},
        {"a pad that no length has", 16, 255},
        {"one byte beyond the buffer", 25, 0},
        {"beyond the buffer", 28, 0},
        {"beyond 32 bits", 0x100000010, 0},
        {"a sum beyond 64 bits", 0xFFFFFFFFFFFFFFFF, 0},
        {"a sum beyond 64 bits", 0xFFFFFFFFFFFFFFF8, 3},
        {"a sum beyond 64 bits", 0xFFFFFFFFFFFFFFD8, 0},
        {"a sum beyond 63 bits", 0x8000000000000010, 0},
    };
    for (const Row& row : rows) {
        const Container container = load(withSector(row.size, row.pad, rest).bytes());
        EXPECT_EQ(container->errorCode, 4) << row.what << ": " << row.size;
        EXPECT_THAT(typesOf(container), ElementsAre(ZBSEC_ZN)) << row.what << ": " << row.size;
    }
}

TEST(ZBHandlerReading, AHeaderThatIsCutOffIsRefused) {
    const std::string whole = withSector(16, 0, "").bytes();
    for (std::size_t missing = 1; missing < 16; ++missing) {
        const Container container = load(whole.substr(0, whole.size() - missing));
        EXPECT_EQ(container->errorCode, 4) << missing;
        EXPECT_EQ(sectorsOf(container).size(), 1U) << missing;
    }
}

TEST(ZBHandlerReading, APayloadOfLengthZeroIsASectorWithoutData) {
    const std::string covered = littleEndian(8, 4) + littleEndian(8, 8) + littleEndian(0, 4);
    const Container container =
        load(ImageBuilder().append(covered).append(littleEndian(bitSerialCrc(covered), 4)).zn("A").bytes());
    EXPECT_EQ(container->errorCode, 0);
    ASSERT_THAT(typesOf(container), ElementsAre(ZBSEC_ZN, ZBSEC_ZN));
    EXPECT_EQ(container->firstSector->data, nullptr);
    EXPECT_EQ(container->firstSector->length, 0U);
    // It is written as what it now is: 12 bytes.
    EXPECT_EQ(write(container), ImageBuilder().sector(8, "").zn("A").bytes());
}

TEST(ZBHandlerReading, APadThatIsntTheLengthsIsTakenAndTheNextSectorIsAligned) {
    // Five bytes of payload without padding: the CRC follows at once, the next sector at the next word.
    const std::string covered = littleEndian(8, 4) + littleEndian(13, 8) + littleEndian(0, 4) + "ABCDE";
    ImageBuilder image;
    image.append(covered).append(littleEndian(bitSerialCrc(covered), 4)).append(std::string(3, '\0')).end();
    const Container container = load(image.bytes());
    EXPECT_EQ(container->errorCode, 0);
    ASSERT_THAT(typesOf(container), ElementsAre(ZBSEC_ZN, ZBSEC_END));
    EXPECT_EQ(payloadOf(container->firstSector), "ABCDE");
    EXPECT_EQ(write(container), ImageBuilder().zn("ABCDE").end().bytes());
}

TEST(ZBHandlerReading, RoomIsAskedForThePaddingThatTheLengthWouldHave) {
    // One byte of payload without padding: the CRC ends three bytes before the next word.
    const std::string covered = littleEndian(8, 4) + littleEndian(9, 8) + littleEndian(0, 4) + "A";
    ImageBuilder image;
    image.append(covered).append(littleEndian(bitSerialCrc(covered), 4)).append(std::string(3, '\0'));
    EXPECT_EQ(load(image.bytes())->errorCode, 0);
    EXPECT_EQ(load(image.cutTo(image.size() - 1).bytes())->errorCode, 4);
}

// --- Files and streams ---

TEST(ZBHandlerReading, AFileIsReadAndItsPathKept) {
    const TemporaryFolder folder;
    const std::string path = folder.write("a.ze", ImageBuilder().zn("A").bytes());
    const Container container(loadZBFromFile(path.c_str()));
    EXPECT_EQ(container->errorCode, 0);
    EXPECT_EQ(container->filename, path);
    EXPECT_EQ(payloadOf(container->firstSector), "A");
}

TEST(ZBHandlerReading, AFileThatIsntThereGivesAHandleWithAnError) {
    const TemporaryFolder folder;
    const Container container(loadZBFromFile(folder.file("a.ze").c_str()));
    ASSERT_NE(container, nullptr);
    EXPECT_EQ(container->errorCode, 9);
    EXPECT_STREQ(container->errorMessage, "Could not open input file");
    EXPECT_EQ(container->filename, nullptr);
    EXPECT_EQ(container->firstSector, nullptr);
}

TEST(ZBHandlerReading, AFolderGivesAHandleWithAnError) {
    const TemporaryFolder folder;
    const Container container(loadZBFromFile(folder.path().c_str()));
    ASSERT_NE(container, nullptr);
    EXPECT_EQ(container->errorCode, 9);
    EXPECT_EQ(container->filename, folder.path());
}

TEST(ZBHandlerReading, AFaultyFileKeepsItsPathToo) {
    const TemporaryFolder folder;
    const std::string path = folder.write("a.ze", "");
    const Container container(loadZBFromFile(path.c_str()));
    EXPECT_EQ(container->errorCode, 1);
    EXPECT_EQ(container->filename, path);
}

TEST(ZBHandlerReading, AStreamIsReadFromItsBeginning) {
    const TemporaryFolder folder;
    std::FILE* stream = std::fopen(folder.write("a.ze", ImageBuilder().zn("A").bytes()).c_str(), "r");
    std::fseek(stream, 5, SEEK_SET);
    const Container container(loadZBFromHandle(stream));
    EXPECT_EQ(container->errorCode, 0);
    EXPECT_EQ(container->filename, nullptr);
    EXPECT_EQ(std::fclose(stream), 0);
}

TEST(ZBHandlerReading, AStreamWithoutASizeGivesNoHandle) {
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    std::FILE* stream = fdopen(ends[0], "r");
    EXPECT_EQ(loadZBFromHandle(stream), nullptr);
    std::fclose(stream);
    close(ends[1]);
}

TEST(ZBHandlerReading, AStreamThatCantBeReadGivesNoHandle) {
    const TemporaryFolder folder;
    std::FILE* stream = std::fopen(folder.write("a.ze", ImageBuilder().bytes()).c_str(), "a");
    EXPECT_EQ(loadZBFromHandle(stream), nullptr);
    std::fclose(stream);
}

TEST(ZBHandlerReading, AFileOfTwoGibibytesGivesAHandleWithAnError) {
    const TemporaryFolder folder;
    const std::string path = folder.write("a.ze", ImageBuilder().bytes());
    std::filesystem::resize_file(path, 0x80000000); // sparse: takes no room
    const Container container(loadZBFromFile(path.c_str()));
    ASSERT_NE(container, nullptr);
    EXPECT_EQ(container->errorCode, 9);
}

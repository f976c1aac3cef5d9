#include "infr_libs/ZelmBinaryHandler/ZBHandler.h"

#include "tests/infr_libs/ZelmBinaryHandler/Containers.h"
#include "tests/support/Bytes.h"
#include "tests/support/ImageBuilder.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

TEST(ZBHandlerWriting, ASectorIsWrittenWithItsPaddingAndCrc) {
    const Container container = emptyContainer();
    add(container, ZBSEC_ZN, "A");
    EXPECT_EQ(write(container), fromHex("5A 45 4C 4D 01 00 00 00"
                                        "08 00 00 00 0C 00 00 00 00 00 00 00 03 00 00 00"
                                        "41 00 00 00 26 35 BE 86"));
    EXPECT_EQ(container->firstSector->crc, 0x86BE3526U);
}

TEST(ZBHandlerWriting, ASectorWithoutAPayloadIsTwelveBytes) {
    const Container container = emptyContainer();
    addEndZBSector(container.get());
    EXPECT_EQ(write(container), fromHex("5A 45 4C 4D 01 00 00 00"
                                        "55 55 00 00 00 00 00 00 00 00 00 00"));
}

TEST(ZBHandlerWriting, PayloadsOfOneToFourBytesHaveTheSameSize) {
    const std::pair<const char*, unsigned> rows[] = {{"a", 3}, {"ab", 2}, {"abc", 1}, {"abcd", 0}};
    for (const auto& [payload, pad] : rows) {
        const Container container = emptyContainer();
        add(container, ZBSEC_ZN, payload);
        const std::string file = write(container);
        ASSERT_EQ(file.size(), 32U);
        EXPECT_EQ(file.substr(12, 8), littleEndian(12, 8));
        EXPECT_EQ(file.substr(20, 4), littleEndian(pad, 4));
    }
}

TEST(ZBHandlerWriting, TheLowSixteenBitsOfATypeAreWritten) {
    const Container container = emptyContainer();
    add(container, 0x12345678, "x");
    EXPECT_EQ(write(container), ImageBuilder().sector(0x5678, "x").bytes());
}

TEST(ZBHandlerWriting, FileSizesAreThoseOfTheLayout) {
    // 8, and for each sector 12 or 20 and the padded payload.
    const Container container = emptyContainer();
    EXPECT_EQ(getZBFileSize(container.get()), 8U);
    addEndZBSector(container.get());
    EXPECT_EQ(getZBFileSize(container.get()), 20U);
    add(container, ZBSEC_ZN, "12345");
    EXPECT_EQ(getZBFileSize(container.get()), 48U);
    addZBSector(container.get(), ZBSEC_ZN, 0x100000000, "never copied");
    EXPECT_EQ(getZBFileSize(container.get()), 48U + 20U + 0x100000000U);
}

TEST(ZBHandlerWriting, AFileIsReproducedByteForByte) {
    const std::string file = ImageBuilder()
                                 .config("<ZSystem/>")
                                 .zn("<Network/>")
                                 .elf(0, 1,
                                      "\x7f"
                                      "ELF")
                                 .sector(9, "odd")
                                 .jump(0, 1, 7)
                                 .end()
                                 .bytes();
    EXPECT_EQ(write(load(file)), file);
}

TEST(ZBHandlerWriting, AWaivedCrcComesBackAsTheComputedValue) {
    const std::string file = ImageBuilder().zn("A").bytes();
    EXPECT_EQ(write(load(ImageBuilder().zn("A").setNumber(28, 4, 0).bytes())), file);
}

TEST(ZBHandlerWriting, ReservedBytesAreWrittenAsZero) {
    EXPECT_EQ(write(load(ImageBuilder().end().setNumber(6, 2, 0x1234).setNumber(10, 2, 7).bytes())),
              ImageBuilder().end().bytes());
}

TEST(ZBHandlerWriting, ABufferOneByteTooSmallIsAnError) {
    const Container container = load(ImageBuilder().zn("A").bytes());
    std::vector<char> buffer(static_cast<std::size_t>(getZBFileSize(container.get()) - 1));
    EXPECT_EQ(writeZBToMemory(container.get(), buffer.data(), static_cast<std::int32_t>(buffer.size())), -1);
    EXPECT_EQ(container->errorCode, 7);
    EXPECT_STREQ(container->errorMessage, "Buffer too small");
}

TEST(ZBHandlerWriting, NoBufferSizeIsWrittenBeyond) {
    const std::string file = ImageBuilder().zn("A").end().binary(1, 2, 3, "four").bytes();
    const Container container = load(file);
    for (std::size_t size = 0; size < file.size(); ++size) {
        std::vector<char> buffer(size); // exact, so that a sanitizer sees each write behind it
        EXPECT_EQ(writeZBToMemory(container.get(), buffer.data(), static_cast<std::int32_t>(size)), -1);
        EXPECT_EQ(container->errorCode, 7);
        // What is there stays: the file header whole, the pieces of each sector as far as they fit.
        EXPECT_EQ(std::string(buffer.begin(), buffer.end()).substr(0, 8),
                  size < 8 ? std::string(size, '\0') : file.substr(0, 8));
    }
}

TEST(ZBHandlerWriting, ANegativeBufferSizeIsTooSmall) {
    EXPECT_EQ(writeZBToMemory(emptyContainer().get(), nullptr, -1), -1);
}

TEST(ZBHandlerWriting, ABufferMayBeLargerThanTheFile) {
    std::string buffer(100, 'x');
    EXPECT_EQ(writeZBToMemory(load(ImageBuilder().end().bytes()).get(), buffer.data(), 100), 20);
    EXPECT_EQ(buffer, ImageBuilder().end().bytes() + std::string(80, 'x'));
}

// --- Files and streams ---

TEST(ZBHandlerWriting, AFileIsWrittenAndItsPathKept) {
    const TemporaryFolder folder;
    const std::string path = folder.file("a.ze");
    const Container container = load(ImageBuilder().zn("A").bytes());
    EXPECT_EQ(writeZBToFile(container.get(), path.c_str()), 0);
    EXPECT_EQ(folder.read("a.ze"), ImageBuilder().zn("A").bytes());
    EXPECT_EQ(container->filename, path);
    EXPECT_NE(container->filename, path.c_str());
}

TEST(ZBHandlerWriting, AFileIsWrittenBackToItsOwnName) {
    const TemporaryFolder folder;
    const std::string path = folder.write("a.ze", ImageBuilder().zn("A").bytes());
    const Container container(loadZBFromFile(path.c_str()));
    const char* filename = container->filename;
    addEndZBSector(container.get());
    EXPECT_EQ(writeZBToFile(container.get(), container->filename), 0);
    EXPECT_EQ(container->filename, filename); // the very pointer: no copy was made
    EXPECT_EQ(folder.read("a.ze"), ImageBuilder().zn("A").end().bytes());
}

TEST(ZBHandlerWriting, AFileThatCantBeOpenedIsAnErrorAndItsPathKept) {
    const TemporaryFolder folder;
    const Container container = emptyContainer();
    EXPECT_EQ(writeZBToFile(container.get(), folder.file("none/a.ze").c_str()), -1);
    EXPECT_EQ(container->errorCode, 5);
    EXPECT_EQ(container->filename, folder.file("none/a.ze"));
}

TEST(ZBHandlerWriting, AStreamIsWrittenAtItsPosition) {
    const TemporaryFolder folder;
    std::FILE* stream = std::fopen(folder.file("a").c_str(), "w");
    std::fputs("before", stream);
    EXPECT_EQ(writeZBToHandle(emptyContainer().get(), stream), 0);
    EXPECT_EQ(folder.read("a"), "before" + ImageBuilder().bytes()); // on the disk before it is closed
    std::fclose(stream);
}

TEST(ZBHandlerWriting, AFullDiskIsAnError) {
    const Container container = load(ImageBuilder().zn("A").bytes());
    EXPECT_EQ(writeZBToFile(container.get(), "/dev/full"), -1);
    EXPECT_EQ(container->errorCode, 6);
    EXPECT_STREQ(container->errorMessage, "Failed to write data");
}

// --- The file name ---

TEST(ZBHandlerWriting, AFileNameIsCopiedAndTheEarlierOneStaysValid) {
    const Container container = emptyContainer();
    std::string name = "first";
    setZBHandlerFilename(container.get(), name.c_str());
    name = "xxxxx";
    const char* earlier = container->filename;
    setZBHandlerFilename(container.get(), "second");
    EXPECT_STREQ(earlier, "first");
    EXPECT_STREQ(container->filename, "second");
    setZBHandlerFilename(container.get(), container->filename);
    EXPECT_STREQ(container->filename, "second");
}

TEST(ZBHandlerWriting, AFileNameCanBeTakenAway) {
    const Container container = emptyContainer();
    setZBHandlerFilename(container.get(), "name");
    setZBHandlerFilename(container.get(), nullptr);
    EXPECT_EQ(container->filename, nullptr);
}

// Every error of the module as a row: how it comes about, its code, its whole text. That each is left in the
// right state stands with the operation that raises it.

#include "infr_libs/ZelmBinaryHandler/ZBHandler.h"

#include "tests/infr_libs/ZelmBinaryHandler/Containers.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/ImageBuilder.h"
#include "tests/support/ScarceMemory.h"
#include "tests/support/SegmentFile.h"

#include <gtest/gtest.h>

namespace {

Container afterWriting(Container container) {
    std::FILE* stream = std::fopen("/dev/null", "w");
    EXPECT_EQ(writeZBToHandle(container.get(), stream), -1);
    std::fclose(stream);
    return container;
}

Container afterBanishing(std::string_view elf) {
    Container container = load(ImageBuilder().elf(0, 0, elf).bytes());
    EXPECT_EQ(banishElves(container.get()), -1);
    return container;
}

// A handle with a sector whose payload was never made.
Container withMissingPayload(std::uint64_t numBytes) {
    Container container = load(ImageBuilder().zn("A").bytes());
    replaceZBSectorData(container.get(), container->firstSector, numBytes, nullptr);
    return container;
}

struct Row {
    const char* what;
    Container (*raise)();
    std::int32_t code;
    const char* text;
};

const Row s_rows[] = {
    {"no error", [] { return load(ImageBuilder().bytes()); }, 0, ""},
    {"bad tag", [] { return load(ImageBuilder().setByte(3, 'm').bytes()); }, 1, "Header tag incorrect"},
    {"short tag", [] { return load("ZEL"); }, 1, "Header tag incorrect"},
    {"bad low byte", [] { return load(ImageBuilder().setByte(4, 2).bytes()); }, 2,
     "Header version incorrect"},
    {"bad high byte", [] { return load(ImageBuilder().setByte(5, 1).bytes()); }, 2,
     "Header version incorrect"},
    {"short version", [] { return load(ImageBuilder().cutTo(5).bytes()); }, 2, "Header version incorrect"},
    {"payload too large",
     [] {
         Container container = emptyContainer();
         addZBSector(container.get(), ZBSEC_ZN, 0x80000000, "");
         return container;
     },
     3, "Out of memory error detected"},
    {"payload never made", [] { return afterWriting(withMissingPayload(1)); }, 3,
     "Out of memory error detected"},
    {"span too large",
     [] {
         return afterBanishing(segmentFile(0, {bytesAt(0, "low"), bytesAt(0x80000000, "high")}).bytes);
     },
     3, "Out of memory."},
    {"cut off", [] { return load(ImageBuilder().zn("A").cutTo(31).bytes()); }, 4,
     "Not enough space in the buffer to hold the data"},
    {"can't open for writing",
     [] {
         Container container = emptyContainer();
         EXPECT_EQ(writeZBToFile(container.get(), "/dev/null/a.ze"), -1);
         return container;
     },
     5, "Failed to open file for writing"},
    {"disk full",
     [] {
         Container container = emptyContainer();
         EXPECT_EQ(writeZBToFile(container.get(), "/dev/full"), -1);
         return container;
     },
     6, "Failed to write data"},
    {"size beyond 32 bits", [] { return afterWriting(withMissingPayload(0x7FFFFFF0)); }, 6,
     "Failed to write data"},
    {"buffer too small",
     [] {
         Container container = emptyContainer();
         char buffer[7];
         EXPECT_EQ(writeZBToMemory(container.get(), buffer, 7), -1);
         return container;
     },
     7, "Buffer too small"},
    {"bad CRC", [] { return load(ImageBuilder().zn("A").setByte(24, 'B').bytes()); }, 8,
     "Detected crc error"},
    {"can't open for reading", [] { return Container(loadZBFromFile("/dev/null/a.ze")); }, 9,
     "Could not open input file"},
    {"no ELF file", [] { return afterBanishing("not one"); }, 11, "File was not an ELF file."},
    {"no segments", [] { return afterBanishing(segmentFile(0, {}).bytes); }, 13,
     "Bad segment size in ELF file."},
};

} // namespace

TEST(ZBHandlerErrors, HaveTheirCodeAndText) {
    for (const Row& row : s_rows) {
        const Container container = row.raise();
        EXPECT_EQ(container->errorCode, row.code) << row.what;
        EXPECT_STREQ(container->errorMessage, row.text) << row.what;
    }
}

TEST(ZBHandlerErrors, ALaterFailureOverwritesAnEarlierOne) {
    const Container container = load(ImageBuilder().zn("A").setByte(24, 'B').bytes());
    EXPECT_EQ(container->errorCode, 8);
    char buffer[8];
    writeZBToMemory(container.get(), buffer, 8);
    EXPECT_EQ(container->errorCode, 7);
}

TEST(ZBHandlerErrors, AMissingBufferForWritingIsOutOfMemory) {
    const ChildResult result = runInChild([] {
        const Container container = emptyContainer();
        addZBSector(container.get(), ZBSEC_ZN, 64 << 20, nullptr);
        std::FILE* stream = std::fopen("/dev/null", "w");
        leaveMemory(0);
        const int result = writeZBToHandle(container.get(), stream);
        std::printf("%d, %d: %s", result, container->errorCode, container->errorMessage);
    });
    EXPECT_EQ(result.output, "-1, 3: Out of memory error detected");
}

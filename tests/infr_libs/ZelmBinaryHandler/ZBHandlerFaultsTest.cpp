// What becomes of damaged containers: every cut and every flipped bit of a small one, and what random ones
// give when they are read and written.

#include "infr_libs/ZelmBinaryHandler/ZBHandler.h"

#include "tests/infr_libs/ZelmBinaryHandler/Containers.h"
#include "tests/support/ImageBuilder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>

using testing::Contains;

namespace {

// A sector with padding, one without a payload, one without padding.
ImageBuilder sample() {
    return ImageBuilder().zn("<N/>x").end().binary(1, 2, 3, "four");
}

constexpr std::size_t s_sampleSize = 84;

std::size_t numSectors(const Container& container) {
    return sectorsOf(container).size();
}

std::string randomBytes(std::mt19937& random, std::size_t numBytes) {
    std::string bytes(numBytes, '\0');
    for (char& byte : bytes)
        byte = static_cast<char>(random());
    return bytes;
}

} // namespace

TEST(ZBHandlerFaults, EveryCutGivesWhatIsWholeBeforeIt) {
    const std::string whole = sample().bytes();
    ASSERT_EQ(whole.size(), s_sampleSize);
    for (std::size_t numBytes = 0; numBytes < whole.size(); ++numBytes) {
        const Container container = load(whole.substr(0, numBytes));
        std::int32_t expected = 4;
        if (numBytes < 4)
            expected = 1;
        else if (numBytes < 6)
            expected = 2;
        else if (numBytes <= 8 || numBytes == 36 || numBytes == 48)
            expected = 0;
        EXPECT_EQ(container->errorCode, expected) << numBytes;
        EXPECT_EQ(numSectors(container), (numBytes >= 36) + (numBytes >= 48)) << numBytes;
    }
}

TEST(ZBHandlerFaults, EveryFlippedBitGivesADocumentedResult) {
    using Codes = std::vector<std::int32_t>;
    struct Region {
        const char* what;
        std::size_t end;    // of the region, from the file's start
        Codes codes;        // that a flipped bit in it may give
        std::size_t intact; // sectors before it
    };
    const Region regions[] = {
        {"tag", 4, {1}, 0},
        {"version", 6, {2}, 0},
        {"reserved", 8, {0}, 0},
        {"type", 12, {8}, 0},
        // A size may come out as 0: the rest is then read as sectors of its own.
        {"size", 20, {4, 8}, 0},
        {"pad", 21, {4, 8}, 0},
        {"reserved", 24, {8}, 0},
        {"payload and padding", 32, {8}, 0},
        {"CRC", 36, {8}, 0},
        {"type of a sector without a CRC", 40, {0}, 1},
        {"size of a sector without a payload", 48, {4, 8}, 1},
        {"type", 52, {8}, 2},
        {"size", 60, {4, 8}, 2},
        {"pad", 61, {4, 8}, 2},
        {"reserved", 64, {8}, 2},
        {"payload", 80, {8}, 2},
        {"CRC", 84, {8}, 2},
    };
    // Bit 7 of the fifth covered byte from the end counts for nothing: the last payload byte but one of the
    // first sector, the last byte of the address in the third.
    const auto isBlind = [](std::size_t byte, unsigned bit) {
        return bit == 7 && (byte == 27 || byte == 75);
    };

    const Container original = load(sample().bytes());
    std::size_t byte = 0;
    for (const Region& region : regions) {
        for (; byte < region.end; ++byte) {
            for (unsigned bit = 0; bit < 8; ++bit) {
                const Container container = load(sample().flipBit(byte, bit).bytes());
                const auto where = testing::Message() << region.what << ", byte " << byte << ", bit " << bit;
                EXPECT_THAT(isBlind(byte, bit) ? Codes{0} : region.codes, Contains(container->errorCode))
                    << where;
                ASSERT_GE(numSectors(container), region.intact) << where;
                for (std::size_t i = 0; i < region.intact; ++i)
                    EXPECT_EQ(payloadOf(sectorsOf(container)[i]), payloadOf(sectorsOf(original)[i])) << where;
                EXPECT_EQ(write(container).size(), getZBFileSize(container.get())) << where;
            }
        }
    }
    EXPECT_EQ(byte, s_sampleSize);
}

TEST(ZBHandlerFaults, EveryByteValueInEveryPlaceIsSafe) {
    for (std::size_t byte = 0; byte < s_sampleSize; ++byte) {
        for (unsigned value = 0; value < 256; ++value) {
            const Container container = load(sample().setByte(byte, value).bytes());
            EXPECT_THAT((std::vector{0, 1, 2, 4, 8}), Contains(container->errorCode));
            EXPECT_EQ(write(container).size(), getZBFileSize(container.get()));
        }
    }
}

TEST(ZBHandlerFaults, ReadAndWrittenAgainARandomContainerIsTheSame) {
    std::mt19937 random(4);
    for (int i = 0; i < 300; ++i) {
        ImageBuilder image;
        for (unsigned numSectors = random() % 12; numSectors != 0; --numSectors)
            image.sector(random() & 0xFFFF, randomBytes(random, random() % 4 == 0 ? 0 : random() % 90));
        const std::string file = image.bytes();
        const Container first = load(file);
        ASSERT_EQ(first->errorCode, 0);
        ASSERT_EQ(getZBFileSize(first.get()), file.size());
        const std::string written = write(first);
        ASSERT_EQ(written, file);
        ASSERT_EQ(write(load(written)), file);
    }
}

TEST(ZBHandlerFaults, LargePayloadsAreReadAndWrittenToo) {
    // Larger than what is copied in one piece, and larger than the memory that is asked for in its own way.
    std::mt19937 random(10);
    for (const std::size_t numBytes : {65535, 65536, 65537, 200001, (2 << 20) - 1, 2 << 20, 3000002}) {
        const std::string file = ImageBuilder().sector(9, randomBytes(random, numBytes)).end().bytes();
        const Container container = load(file);
        ASSERT_EQ(container->errorCode, 0) << numBytes;
        ASSERT_EQ(write(container), file) << numBytes;
    }
}

TEST(ZBHandlerFaults, WrittenAndReadAgainRandomSectorsAreTheSame) {
    std::mt19937 random(5);
    for (int i = 0; i < 300; ++i) {
        const Container built = emptyContainer();
        for (unsigned numSectors = random() % 12; numSectors != 0; --numSectors)
            add(built, static_cast<std::int32_t>(random() & 0xFFFF), randomBytes(random, random() % 90));
        const Container loaded = load(write(built));
        ASSERT_EQ(loaded->errorCode, 0);
        ASSERT_EQ(typesOf(loaded), typesOf(built));
        for (std::size_t j = 0; j < numSectors(built); ++j) {
            EXPECT_EQ(payloadOf(sectorsOf(loaded)[j]), payloadOf(sectorsOf(built)[j]));
            EXPECT_EQ(sectorsOf(loaded)[j]->crc, sectorsOf(built)[j]->crc);
        }
    }
}

TEST(ZBHandlerFaults, RandomBytesBehindAGoodHeaderAreSafe) {
    std::mt19937 random(6);
    for (int i = 0; i < 3000; ++i) {
        const Container container = load(ImageBuilder().append(randomBytes(random, random() % 120)).bytes());
        EXPECT_THAT((std::vector{0, 4, 8}), Contains(container->errorCode));
    }
}

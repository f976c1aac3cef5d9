#include "infr_libs/ZelmBinaryHandler/ZBCrc.h"

#include "tests/support/BitSerialCrc.h"
#include "tests/support/Bytes.h"

#include <gtest/gtest.h>
#include <random>

// The definition, bit by bit, is `bitSerialCrc`; both forms are held against values worked out by hand, and
// the library's against the definition.

namespace {

std::uint32_t crcOf(std::string_view message) {
    return computeZBCrc(message.data(), message.size());
}

std::string randomBytes(std::mt19937& random, std::size_t numBytes) {
    std::string bytes(numBytes, '\0');
    for (char& byte : bytes)
        byte = static_cast<char>(random());
    return bytes;
}

std::string bytesOneTo32() {
    std::string bytes;
    for (int i = 1; i <= 32; ++i)
        bytes += static_cast<char>(i);
    return bytes;
}

} // namespace

TEST(ZBCrc, HasTheWorkedValues) {
    const std::string znSector = fromHex("08 00 00 00 0C 00 00 00 00 00 00 00 03 00 00 00 41 00 00 00");
    const std::pair<std::string, std::uint32_t> rows[] = {
        {znSector, 0x86BE3526},
        {bytesOneTo32(), 0x1973BFA8},
        {std::string(16, '\xff'), 0x5CA2D04B},
    };
    for (const auto& [message, expected] : rows) {
        EXPECT_EQ(crcOf(message), expected);
        EXPECT_EQ(bitSerialCrc(message), expected);
    }
}

TEST(ZBCrc, OfAnEmptyMessageIsZero) {
    EXPECT_EQ(computeZBCrc(nullptr, 0), 0U);
    EXPECT_EQ(bitSerialCrc(""), 0U);
}

TEST(ZBCrc, OfUpToFourBytesIsTheirBitsTurnedRound) {
    // Nothing leaves the register in 32 bits.
    EXPECT_EQ(crcOf(fromHex("01")), 0x80U);
    EXPECT_EQ(crcOf(fromHex("80")), 0x01U);
    EXPECT_EQ(crcOf(fromHex("01 02 03 04")), 0x8040C020U);
}

TEST(ZBCrc, LeavesOutTheXorOfTheVeryLastBit) {
    // Of 40 bits, the 8th leaves the register with the last, and the 7th with the last but one.
    EXPECT_EQ(crcOf(fromHex("80 00 00 00 00")), 0U);
    EXPECT_EQ(crcOf(fromHex("40 00 00 00 00")), 0x04C11DB7U << 1);
}

TEST(ZBCrc, DoesntSeeBit7OfTheFifthByteFromTheEnd) {
    const std::string message = bytesOneTo32();
    for (std::size_t byte = 0; byte < message.size(); ++byte) {
        for (unsigned bit = 0; bit < 8; ++bit) {
            std::string flipped = message;
            flipped[byte] = static_cast<char>(flipped[byte] ^ 1 << bit);
            const bool blind = byte == message.size() - 5 && bit == 7;
            EXPECT_EQ(crcOf(flipped) == crcOf(message), blind) << byte << "." << bit;
        }
    }
}

TEST(ZBCrc, AgreesWithTheDefinitionForEveryLength) {
    std::mt19937 random(1);
    for (std::size_t numBytes = 0; numBytes <= 260; ++numBytes) {
        const std::string message = randomBytes(random, numBytes);
        EXPECT_EQ(crcOf(message), bitSerialCrc(message)) << numBytes;
    }
}

TEST(ZBCrc, AgreesWithTheDefinitionAtEveryAlignment) {
    std::mt19937 random(2);
    const std::string bytes = randomBytes(random, 200);
    for (std::size_t start = 0; start < 32; ++start) {
        const std::string_view message = std::string_view(bytes).substr(start, 150);
        EXPECT_EQ(crcOf(message), bitSerialCrc(message)) << start;
    }
}

TEST(ZBCrc, AgreesWithTheDefinitionForEverySingleBit) {
    // Both are linear, so these inputs stand for all inputs of their length.
    for (std::size_t numBytes : {1, 4, 5, 16, 17, 31, 32, 33, 48, 49}) {
        for (std::size_t bit = 0; bit < numBytes * 8; ++bit) {
            std::string message(numBytes, '\0');
            message[bit / 8] = static_cast<char>(1 << bit % 8);
            EXPECT_EQ(crcOf(message), bitSerialCrc(message)) << numBytes << ": " << bit;
        }
    }
}

TEST(ZBCrc, AgreesWithTheDefinitionOnLongRandomInputs) {
    std::mt19937 random(3);
    for (int i = 0; i < 20; ++i) {
        const std::string message = randomBytes(random, random() % 20000);
        EXPECT_EQ(crcOf(message), bitSerialCrc(message));
    }
}

// --- In pieces ---

TEST(ZBCrc, OfPiecesIsThatOfTheWhole) {
    std::mt19937 random(9);
    for (int i = 0; i < 300; ++i) {
        const std::string message = randomBytes(random, random() % 200);
        ZBCrc crc;
        for (std::size_t done = 0; done < message.size();) {
            const std::size_t numBytes = std::min<std::size_t>(random() % 40, message.size() - done);
            crc.add(message.data() + done, numBytes);
            done += numBytes;
        }
        EXPECT_EQ(crc.value(), bitSerialCrc(message));
    }
}

TEST(ZBCrc, CanBeAskedForBetweenPieces) {
    ZBCrc crc;
    EXPECT_EQ(crc.value(), 0U);
    crc.add("\x01", 1);
    EXPECT_EQ(crc.value(), 0x80U);
    crc.add(nullptr, 0);
    crc.add("\x02\x03\x04", 3);
    EXPECT_EQ(crc.value(), 0x8040C020U);
}

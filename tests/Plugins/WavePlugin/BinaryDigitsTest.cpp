#include "Plugins/WavePlugin/BinaryDigits.h"

#include <gtest/gtest.h>
#include <string>

namespace {

std::string digits(std::uint64_t value, unsigned int numBits) {
    char text[64 + s_binarySlack];
    return {text, appendBinary(text, value, numBits)};
}

} // namespace

TEST(BinaryDigits, BeginWithTheMostSignificantBit) {
    EXPECT_EQ(digits(6, 3), "110");
    EXPECT_EQ(digits(1, 32), "00000000000000000000000000000001");
    EXPECT_EQ(digits(0x80000000, 32), "10000000000000000000000000000000");
}

TEST(BinaryDigits, HaveTheAskedWidthAtEveryWidth) {
    const std::uint64_t value = 0xfedcba9876543210;
    const std::string all = "1111111011011100101110101001100001110110010101000011001000010000";
    for (unsigned int numBits = 1; numBits <= 64; ++numBits)
        EXPECT_EQ(digits(value, numBits), all.substr(64 - numBits)) << numBits;
}

TEST(BinaryDigits, LeaveOutTheBitsAboveTheWidth) {
    EXPECT_EQ(digits(0xff, 4), "1111");
    EXPECT_EQ(digits(0x10, 4), "0000");
}

TEST(BinaryDigits, AreThoseOfThePlainWay) {
    std::uint32_t value = 1;
    for (int i = 0; i < 1000; ++i) {
        value = value * 1664525 + 1013904223;
        char fast[32];
        char plain[32];
        writeBinary32(fast, value);
        writeBinary32Plain(plain, value);
        ASSERT_EQ(std::string(fast, 32), std::string(plain, 32)) << value;
    }
}

#include "infr_libs/ElfHandler/ElfInput.h"

#include <gtest/gtest.h>
#include <sstream>

namespace {

std::string readBytes(ElfInput& input, std::size_t numBytes) {
    std::string bytes(numBytes, '?');
    input.read(bytes.data(), numBytes);
    return bytes;
}

} // namespace

TEST(ElfInput, ReadsFromThePositionOfTheStream) {
    std::istringstream stream("0123456789");
    stream.seekg(3);
    ElfInput input(stream);
    EXPECT_EQ(input.length(), 10U);
    EXPECT_EQ(input.numBytesLeft(), 7U);
    EXPECT_EQ(readBytes(input, 2), "34");
    EXPECT_EQ(input.numBytesLeft(), 5U);
}

TEST(ElfInput, ReadsZerosPastTheEnd) {
    std::istringstream stream("0123456789");
    ElfInput input(stream);
    input.seek(8);
    EXPECT_EQ(readBytes(input, 4), std::string("89\0\0", 4));
    EXPECT_EQ(readBytes(input, 2), std::string(2, '\0'));
}

TEST(ElfInput, LeavesWhatLiesPastTheEndAloneWhereAskedTo) {
    std::istringstream stream("0123456789");
    ElfInput input(stream);
    input.seek(8);
    std::string bytes(4, '?');
    EXPECT_EQ(input.readWhatIsThere(bytes.data(), bytes.size()), 2U);
    EXPECT_EQ(bytes, "89??");
    EXPECT_EQ(input.readWhatIsThere(bytes.data(), bytes.size()), 0U);
    EXPECT_TRUE(stream.good());
}

TEST(ElfInput, AShortReadDoesNotSpoilTheNext) {
    std::istringstream stream("0123456789");
    ElfInput input(stream);
    input.seek(8);
    readBytes(input, 4);
    input.seek(1);
    EXPECT_EQ(readBytes(input, 2), "12");
    EXPECT_TRUE(stream.good());
}

TEST(ElfInput, APlaceBeyondTheEndMeansTheEnd) {
    std::istringstream stream("0123456789");
    ElfInput input(stream);
    input.seek(0xFFFFFFFF);
    EXPECT_EQ(input.numBytesLeft(), 0U);
    EXPECT_EQ(ElfInput(stream).numBytesLeft(), 0U); // another reader of the stream sees the same
    EXPECT_EQ(readBytes(input, 1), std::string(1, '\0'));
}

TEST(ElfInput, AStreamThatHasFailedCountsAsEmpty) {
    std::istringstream stream("0123456789");
    stream.setstate(std::ios::failbit);
    ElfInput input(stream);
    EXPECT_EQ(input.length(), 0U);
    EXPECT_EQ(readBytes(input, 1), std::string(1, '\0'));
}

TEST(ElfInput, BelievesClaimsUpTo64MebibytesPastTheEnd) {
    std::istringstream stream("0123456789");
    const ElfInput input(stream);
    EXPECT_TRUE(input.mayClaim(10 + 0x4000000));
    EXPECT_FALSE(input.mayClaim(11 + 0x4000000));
    EXPECT_FALSE(input.mayClaim(0xFFFFFFFF));
}

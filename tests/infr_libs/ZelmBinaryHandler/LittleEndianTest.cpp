#include "infr_libs/ZelmBinaryHandler/LittleEndian.h"

#include <gtest/gtest.h>

TEST(LittleEndian, NumbersAreReadLowestByteFirst) {
    const unsigned char bytes[] = {0x01, 0x82, 0x03, 0x84, 0x05, 0x86, 0x07, 0x88};
    EXPECT_EQ(readLittleEndian16(bytes), 0x8201);
    EXPECT_EQ(readLittleEndian32(bytes), 0x84038201);
    EXPECT_EQ(readLittleEndian64(bytes), 0x8807860584038201);
}

TEST(LittleEndian, NumbersAreWrittenLowestByteFirst) {
    unsigned char bytes[8] = {};
    writeLittleEndian64(bytes, 0x8807860584038201);
    EXPECT_EQ(bytes[0], 0x01);
    EXPECT_EQ(bytes[7], 0x88);
    writeLittleEndian32(bytes, 0xAABBCCDD);
    writeLittleEndian16(bytes + 6, 0x1122);
    EXPECT_EQ(readLittleEndian64(bytes), 0x11228605AABBCCDD);
}

TEST(LittleEndian, NumbersNeedNoAlignment) {
    unsigned char bytes[16] = {};
    for (int offset = 0; offset < 8; ++offset) {
        writeLittleEndian64(bytes + offset, 0x0123456789ABCDEF);
        EXPECT_EQ(readLittleEndian64(bytes + offset), 0x0123456789ABCDEF);
    }
}

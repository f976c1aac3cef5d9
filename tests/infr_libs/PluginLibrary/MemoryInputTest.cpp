#include "infr_libs/PluginLibrary/MemoryInput.h"

#include <gtest/gtest.h>
#include <string>

TEST(MemoryInput, GivesTheBytesAndThenTheEnd) {
    const std::string bytes("a\0b", 3);
    MemoryInput stream(bytes);
    char read[4];
    EXPECT_FALSE(stream.read(read, 4));
    EXPECT_EQ(stream.gcount(), 3);
    EXPECT_EQ(std::string(read, 3), bytes);
}

TEST(MemoryInput, GoesToAnyPlaceWithinTheBytes) {
    MemoryInput stream("abcdef");
    stream.seekg(4);
    EXPECT_EQ(stream.get(), 'e');
    stream.seekg(-2, std::ios::end);
    EXPECT_EQ(stream.get(), 'e');
    stream.seekg(-5, std::ios::cur);
    EXPECT_EQ(stream.tellg(), 0);
    stream.seekg(0, std::ios::end);
    EXPECT_EQ(stream.tellg(), 6);
    EXPECT_EQ(stream.get(), std::char_traits<char>::eof());
}

TEST(MemoryInput, FailsWhenSentBeyondTheBytes) {
    for (const std::streamoff offset : {-1, 7}) {
        MemoryInput stream("abcdef");
        stream.seekg(offset);
        EXPECT_TRUE(stream.fail());
    }
}

TEST(MemoryInput, IsAtItsEndWithoutBytes) {
    MemoryInput stream({});
    EXPECT_EQ(stream.get(), std::char_traits<char>::eof());
}

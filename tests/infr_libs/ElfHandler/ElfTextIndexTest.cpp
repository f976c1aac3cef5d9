#include "infr_libs/ElfHandler/ElfTextIndex.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

TEST(ElfTextIndex, FindsNothingWhileItIsEmpty) {
    EXPECT_EQ(ElfTextIndex().find(1, [](std::uint32_t) { return true; }), nullptr);
}

TEST(ElfTextIndex, FindsEachOfManyTexts) {
    ElfTextIndex index;
    std::vector<std::string> texts;
    for (std::uint32_t i = 0; i < 10'000; ++i) {
        texts.push_back("text" + std::to_string(i));
        index.insert(ElfTextIndex::hashOf(texts.back()), i);
    }
    for (std::uint32_t i = 0; i < 10'000; ++i) {
        const std::uint32_t* found = index.find(
            ElfTextIndex::hashOf(texts[i]), [&](std::uint32_t value) { return texts[value] == texts[i]; });
        ASSERT_NE(found, nullptr);
        ASSERT_EQ(*found, i);
    }
    EXPECT_EQ(index.find(ElfTextIndex::hashOf("other"), [](std::uint32_t) { return false; }), nullptr);
}

TEST(ElfTextIndex, TellsTextsOfOneHashApart) {
    ElfTextIndex index;
    for (std::uint32_t i = 0; i < 100; ++i)
        index.insert(42, i);
    for (std::uint32_t i = 0; i < 100; ++i)
        EXPECT_EQ(*index.find(42, [&](std::uint32_t value) { return value == i; }), i);
    EXPECT_EQ(index.find(43, [](std::uint32_t) { return true; }), nullptr);
}

TEST(ElfTextIndex, RoomMadeAheadChangesNothing) {
    ElfTextIndex index;
    index.insert(7, 1);
    index.reserve(1000);
    EXPECT_EQ(*index.find(7, [](std::uint32_t) { return true; }), 1U);
}

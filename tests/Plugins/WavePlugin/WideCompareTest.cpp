#include "Plugins/WavePlugin/WideCompare.h"

#include <gtest/gtest.h>

namespace {

struct alignas(16) Words {
    std::uint32_t word[s_comparedWords] = {};
};

} // namespace

TEST(WideCompare, FindsNoChangeInEqualRecords) {
    EXPECT_EQ(changedWords(Words().word, Words().word), 0U);
}

TEST(WideCompare, NamesEachChangedWordByItsBit) {
    for (unsigned int word = 0; word < s_comparedWords; ++word) {
        for (const std::uint32_t bit : {1U, 0x100U, 0x80000000U}) {
            Words now;
            now.word[word] = bit;
            EXPECT_EQ(changedWords(now.word, Words().word), 1U << word);
            EXPECT_EQ(changedWordsPlain(now.word, Words().word), 1U << word);
        }
    }
}

TEST(WideCompare, FindsWhatThePlainWayFinds) {
    std::uint32_t noise = 1;
    for (int i = 0; i < 1000; ++i) {
        Words now;
        Words before;
        for (unsigned int word = 0; word < s_comparedWords; ++word) {
            noise = noise * 1664525 + 1013904223;
            now.word[word] = noise >> 30; // equal in a quarter of the cases
            before.word[word] = noise >> 28 & 3;
        }
        ASSERT_EQ(changedWords(now.word, before.word), changedWordsPlain(now.word, before.word));
    }
}

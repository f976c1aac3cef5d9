#include "Plugins/WavePlugin/WideCompare.h"

#include <gtest/gtest.h>

namespace {

template<std::size_t Pieces>
struct alignas(s_pieceBytes) Words {
    static constexpr unsigned int s_count = Pieces * s_pieceBytes / sizeof(std::uint32_t);
    std::uint32_t word[s_count] = {};
};

template<std::size_t Pieces>
void expectFound(const std::uint32_t* now, const Words<Pieces>& before, std::uint32_t changed) {
    EXPECT_EQ(sameRecord<Pieces>(now, before.word), changed == 0);
    EXPECT_EQ(changedWords<Pieces>(now, before.word), changed);
    EXPECT_EQ(changedWordsPlain<Pieces>(now, before.word), changed);
}

template<std::size_t Pieces>
void expectEachWordFound() {
    expectFound<Pieces>(Words<Pieces>().word, {}, 0);
    for (unsigned int word = 0; word < Words<Pieces>::s_count; ++word) {
        for (const std::uint32_t bit : {1U, 0x100U, 0x80000000U}) {
            Words<Pieces> now;
            now.word[word] = bit;
            expectFound<Pieces>(now.word, {}, 1U << word);
        }
    }
}

} // namespace

TEST(WideCompare, HasPiecesForAllBytes) {
    EXPECT_EQ(piecesOf(4), 1U);
    EXPECT_EQ(piecesOf(16), 1U);
    EXPECT_EQ(piecesOf(17), 2U);
    EXPECT_EQ(piecesOf(88), 6U);
}

TEST(WideCompare, NamesEachChangedWordByItsBit) {
    expectEachWordFound<1>();
    expectEachWordFound<2>();
    expectEachWordFound<4>();
    expectEachWordFound<6>();
    expectEachWordFound<8>();
}

TEST(WideCompare, LeavesWhatIsBehindThePieces) {
    Words<3> now;
    now.word[8] = 1;
    EXPECT_TRUE(sameRecord<2>(now.word, Words<2>().word));
    EXPECT_EQ(changedWords<2>(now.word, Words<2>().word), 0U);
}

TEST(WideCompare, SeesOnlyTheBitsAskedFor) {
    for (unsigned int word = 0; word < Words<6>::s_count; ++word) {
        Words<6> now;
        Words<6> shown;
        now.word[word] = 0x10000;
        for (std::uint32_t& bits : shown.word)
            bits = ~0U;
        EXPECT_FALSE(sameRecord<6>(now.word, Words<6>().word, shown.word));
        shown.word[word] = ~0x10000U;
        EXPECT_TRUE(sameRecord<6>(now.word, Words<6>().word, shown.word));
    }
}

TEST(WideCompare, TakesALaterRecordFromAnyWord) {
    Words<8> now;
    now.word[3] = 5; // the first of the record
    now.word[26] = 6;
    expectFound<6>(now.word + 3, {}, 1U << 0 | 1U << 23);
}

TEST(WideCompare, FindsWhatThePlainWayFinds) {
    constexpr std::size_t pieces = 6;
    std::uint32_t noise = 1;
    for (int i = 0; i < 1000; ++i) {
        Words<pieces> now;
        Words<pieces> before;
        for (unsigned int word = 0; word < Words<pieces>::s_count; ++word) {
            noise = noise * 1664525 + 1013904223;
            now.word[word] = noise >> 30; // equal in a quarter of the cases
            before.word[word] = noise >> 28 & 3;
        }
        expectFound<pieces>(now.word, before, changedWordsPlain<pieces>(now.word, before.word));
    }
}

#include "Plugins/WavePlugin/WideCompare.h"

#include <gtest/gtest.h>
#include <random>
#include <vector>

namespace {

constexpr std::size_t s_words = s_pieceBytes / sizeof(std::uint32_t); // of a piece

// Records polled at an odd stride and behind a word of their own, as those of ports lie, and written ones.
template<std::size_t Pieces>
class Records {
public:
    explicit Records(std::size_t count) : m_now(count + 1), m_before(count + 1), m_count(count) {}

    std::uint32_t& now(std::size_t record, std::size_t word) { return m_now[record].word[word]; }
    std::uint32_t& before(std::size_t record, std::size_t word) { return m_before[record].word[word]; }
    std::uint32_t& shown(std::size_t word) { return m_shown.word[word]; }

    RecordsToCompare toCompare(bool masked) const {
        return {reinterpret_cast<const std::byte*>(m_now.data()->word), sizeof(Polled),
                reinterpret_cast<const std::byte*>(m_before.data()->word),
                masked ? reinterpret_cast<const std::byte*>(m_shown.word) : nullptr};
    }
    std::size_t count() const { return m_count; }

private:
    struct Polled {
        std::uint32_t name = 0;
        std::uint32_t word[Pieces * s_words] = {};
        std::uint32_t behind = 0x5555;
    };
    struct alignas(s_pieceBytes) Written {
        std::uint32_t word[Pieces * s_words] = {};
    };

    std::vector<Polled> m_now; // and one more, so that there is a first
    std::vector<Written> m_before;
    Written m_shown;
    std::size_t m_count;
};

// All records that a way finds, one behind the other.
template<typename Way>
std::vector<std::size_t> changedBy(const RecordsToCompare& records, std::size_t count) {
    std::vector<std::size_t> changed;
    for (std::size_t i = 0; (i = Way::nextChanged(records, i, count)) < count; ++i)
        changed.push_back(i);
    return changed;
}

struct FastestWay6 {
    static std::size_t nextChanged(const RecordsToCompare& records, std::size_t from, std::size_t count) {
        return ::nextChanged<6>(records, from, count);
    }
};

// Every way of this machine finds these records, and no others.
template<std::size_t Pieces>
void expectChanged(const Records<Pieces>& records, bool masked, const std::vector<std::size_t>& changed) {
    const RecordsToCompare toCompare = records.toCompare(masked);
    EXPECT_EQ(changedBy<PlainWay<Pieces>>(toCompare, records.count()), changed);
#if defined(__SSE2__)
    EXPECT_EQ(changedBy<Sse2Way<Pieces>>(toCompare, records.count()), changed);
    if constexpr (Pieces % 2 == 0) {
        if (s_hasAvx2) {
            EXPECT_EQ(changedBy<Avx2Way<Pieces>>(toCompare, records.count()), changed);
        }
    }
#endif
}

template<std::size_t Pieces>
void expectEachWordFound() {
    for (std::size_t word = 0; word < Pieces * s_words; ++word) {
        for (const std::uint32_t bit : {1U, 0x100U, 0x80000000U}) {
            Records<Pieces> records(3);
            records.now(1, word) = bit;
            expectChanged(records, false, {1});
            expectChanged(records, true, {}); // no bit is shown yet
            records.shown(word) = bit;
            expectChanged(records, true, {1});
            records.shown(word) = ~bit;
            expectChanged(records, true, {});
            const auto* now = reinterpret_cast<const std::byte*>(&records.now(1, 0));
            const auto* before = reinterpret_cast<const std::byte*>(&records.before(1, 0));
            EXPECT_EQ(changedWords<Pieces>(now, before), 1U << word);
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

TEST(WideCompare, FindsEachWordThatChanges) {
    expectEachWordFound<1>();
    expectEachWordFound<2>();
    expectEachWordFound<3>();
    expectEachWordFound<4>();
    expectEachWordFound<6>();
    expectEachWordFound<8>();
}

TEST(WideCompare, FindsWhatThePlainWayFinds) {
    std::minstd_rand random(1);
    for (int i = 0; i < 200; ++i) {
        Records<6> records(random() % 40);
        for (std::size_t record = 0; record < records.count(); ++record) {
            for (std::size_t word = 0; word < 6 * s_words; ++word) {
                records.now(record, word) = random() % 40 == 0 ? random() : 7;
                records.before(record, word) = 7;
            }
        }
        for (std::size_t word = 0; word < 6 * s_words; ++word)
            records.shown(word) = random() % 2 == 0 ? ~0U : 0U;
        for (const bool masked : {false, true}) {
            const auto changed = changedBy<PlainWay<6>>(records.toCompare(masked), records.count());
            expectChanged(records, masked, changed);
            EXPECT_EQ(changedBy<FastestWay6>(records.toCompare(masked), records.count()), changed);
        }
    }
}

TEST(WideCompare, ClearsThePiecesAndNothingBehindThem) {
    std::byte record[4 * s_pieceBytes];
    std::fill_n(record, sizeof record, std::byte{0xff});
    clearRecord<2>(record + 4); // anywhere
    for (std::size_t i = 0; i < sizeof record; ++i)
        EXPECT_EQ(record[i] == std::byte{}, i >= 4 && i < 4 + 2 * s_pieceBytes) << i;
}

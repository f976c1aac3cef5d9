#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <utility>
#if defined(__SSE2__)
#include <immintrin.h>
#endif

// The loops over all records of a kind that each clock makes: which of them changed since they were written,
// and in which words. Nearly all did not, so a record is compared as a whole, by the widest loads that the
// processor has, and its words only where it differs.
//
// A wide load right behind the narrow stores that it covers waits for them, and is then slower than comparing
// field by field. Fill all records of a kind first, then compare.

// Records are cleared and compared in pieces of so many bytes.
inline constexpr std::size_t s_pieceBytes = 16;

// Pieces that hold so many bytes.
constexpr std::size_t piecesOf(std::size_t bytes) {
    return (bytes + s_pieceBytes - 1) / s_pieceBytes;
}

// Where records lie: the polled ones at any stride, those last written one behind the other, and one whose
// set bits are those to compare, or null for all. The last two kinds begin at multiples of `s_pieceBytes`.
struct RecordsToCompare {
    const std::byte* now;
    std::size_t stride;
    const std::byte* before;
    const std::byte* shown;
};

// Each of the three ways below finds the first record from `from` on that differs; `count`: none does.

// For any machine, and for tests to hold the fast ways against.
template<std::size_t Pieces>
struct PlainWay {
    static std::size_t nextChanged(const RecordsToCompare& records, std::size_t from, std::size_t count) {
        while (from < count && !differs(records, from))
            ++from;
        return from;
    }

private:
    static bool differs(const RecordsToCompare& records, std::size_t i) {
        const std::byte* const now = records.now + i * records.stride;
        const std::byte* const before = records.before + i * Pieces * s_pieceBytes;
        std::byte changed{};
        for (std::size_t byte = 0; byte < Pieces * s_pieceBytes; ++byte)
            changed |= (now[byte] ^ before[byte]) & (records.shown ? records.shown[byte] : std::byte{0xff});
        return changed != std::byte{};
    }
};

#if defined(__SSE2__)

// The words of four bytes of a piece that differ, as one bit a word.
inline std::uint32_t changedWordsOfPiece(const void* now, const void* before) {
    const __m128i equal = _mm_cmpeq_epi32(_mm_loadu_si128(static_cast<const __m128i*>(now)),
                                          _mm_loadu_si128(static_cast<const __m128i*>(before)));
    return static_cast<std::uint32_t>(_mm_movemask_ps(_mm_castsi128_ps(equal)) ^ 0xf);
}

// What every processor of the 64-bit kind has.
template<std::size_t Pieces>
struct Sse2Way {
    static std::size_t nextChanged(const RecordsToCompare& records, std::size_t from, std::size_t count) {
        return records.shown ? next<true>(records, from, count) : next<false>(records, from, count);
    }

private:
    template<bool Masked>
    static std::size_t next(const RecordsToCompare& records, std::size_t from, std::size_t count) {
        const std::byte* now = records.now + from * records.stride;
        const std::byte* before = records.before + from * Pieces * s_pieceBytes;
        for (; from < count; ++from, now += records.stride, before += Pieces * s_pieceBytes) {
            if (differs<Masked>(now, before, records.shown, std::make_index_sequence<Pieces>()))
                break;
        }
        return from;
    }

    template<bool Masked, std::size_t... Piece>
    static bool differs(const std::byte* now, const std::byte* before, const std::byte* shown,
                        std::index_sequence<Piece...>) {
        __m128i changed = _mm_setzero_si128();
        ((changed = _mm_or_si128(changed, bits<Masked>(now, before, shown, Piece))), ...);
        return _mm_movemask_epi8(_mm_cmpeq_epi8(changed, _mm_setzero_si128())) != 0xffff;
    }

    template<bool Masked>
    static __m128i bits(const std::byte* now, const std::byte* before, const std::byte* shown,
                        std::size_t piece) {
        const auto load = [piece](const std::byte* record) {
            return _mm_loadu_si128(reinterpret_cast<const __m128i*>(record) + piece);
        };
        const auto loadAligned = [piece](const std::byte* record) {
            return _mm_load_si128(reinterpret_cast<const __m128i*>(record) + piece);
        };
        const __m128i changed = _mm_xor_si128(load(now), loadAligned(before));
        return Masked ? _mm_and_si128(changed, loadAligned(shown)) : changed;
    }
};

// Two pieces at once: half the instructions, for the processors that have it. Nothing here may be reached on
// others, and nothing else may be compiled with it.
template<std::size_t Pieces>
struct Avx2Way {
    static_assert(Pieces % 2 == 0);

    [[gnu::target("avx2")]] static std::size_t nextChanged(const RecordsToCompare& records, std::size_t from,
                                                           std::size_t count) {
        return records.shown ? next<true>(records, from, count) : next<false>(records, from, count);
    }

private:
    template<bool Masked>
    [[gnu::target("avx2")]] static std::size_t next(const RecordsToCompare& records, std::size_t from,
                                                    std::size_t count) {
        const std::byte* now = records.now + from * records.stride;
        const std::byte* before = records.before + from * Pieces * s_pieceBytes;
        for (; from < count; ++from, now += records.stride, before += Pieces * s_pieceBytes) {
            if (differs<Masked>(now, before, records.shown, std::make_index_sequence<Pieces / 2>()))
                break;
        }
        return from;
    }

    template<bool Masked, std::size_t... Pair>
    [[gnu::target("avx2")]] static bool differs(const std::byte* now, const std::byte* before,
                                                const std::byte* shown, std::index_sequence<Pair...>) {
        __m256i changed = _mm256_setzero_si256();
        ((changed = _mm256_or_si256(changed, bits<Masked>(now, before, shown, Pair))), ...);
        return _mm256_testz_si256(changed, changed) == 0;
    }

    template<bool Masked>
    [[gnu::target("avx2")]] static __m256i bits(const std::byte* now, const std::byte* before,
                                                const std::byte* shown, std::size_t pair) {
        const __m256i changed = _mm256_xor_si256(load(now, pair), load(before, pair));
        return Masked ? _mm256_and_si256(changed, load(shown, pair)) : changed;
    }

    [[gnu::target("avx2")]] static __m256i load(const std::byte* record, std::size_t pair) {
        return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(record) + pair);
    }
};

inline const bool s_hasAvx2 = __builtin_cpu_supports("avx2") != 0;

#endif

// The first record from `from` on that differs, found in the fastest way of this processor.
template<std::size_t Pieces>
std::size_t nextChanged(const RecordsToCompare& records, std::size_t from, std::size_t count) {
#if defined(__SSE2__)
    if constexpr (Pieces % 2 == 0) {
        if (s_hasAvx2)
            return Avx2Way<Pieces>::nextChanged(records, from, count);
    }
    return Sse2Way<Pieces>::nextChanged(records, from, count);
#else
    return PlainWay<Pieces>::nextChanged(records, from, count);
#endif
}

// The words of four bytes that differ between two records, as one bit a word, word 0 lowest.
template<std::size_t Pieces>
std::uint32_t changedWords(const std::byte* now, const std::byte* before) {
    constexpr std::size_t words = s_pieceBytes / sizeof(std::uint32_t); // of a piece
    static_assert(Pieces * words <= 32);
    std::uint32_t changed = 0;
#if defined(__SSE2__)
    for (std::size_t piece = 0; piece < Pieces; ++piece)
        changed |= changedWordsOfPiece(now + piece * s_pieceBytes, before + piece * s_pieceBytes)
                   << (piece * words);
#else
    for (std::size_t word = 0; word < Pieces * words; ++word) {
        const std::size_t at = word * sizeof(std::uint32_t);
        changed |= (std::memcmp(now + at, before + at, sizeof(std::uint32_t)) != 0 ? 1U : 0U) << word;
    }
#endif
    return changed;
}

// Makes the first pieces of a record zero. What the compiler makes of a memset of this size takes longer than
// a callback, and it doesn't unroll a loop.
template<std::size_t Pieces>
void clearRecord(std::byte* record) {
#if defined(__SSE2__)
    [record]<std::size_t... Piece>(std::index_sequence<Piece...>) {
        (_mm_storeu_si128(reinterpret_cast<__m128i*>(record) + Piece, _mm_setzero_si128()), ...);
    }
    (std::make_index_sequence<Pieces>());
#else
    std::memset(record, 0, Pieces * s_pieceBytes);
#endif
}

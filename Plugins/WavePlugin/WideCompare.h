#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <utility>
#if defined(__SSE2__)
#include <emmintrin.h>
#endif

// Whether and where two records differ, for the loop over unchanged resources: one answer a record, and one
// a word only where it differs.
//
// A 16-byte load right behind the narrow stores that it covers waits for them, and is then slower than
// comparing field by field. Fill all records of a kind first, then compare.

// Records are compared in pieces of so many bytes. The later record may lie anywhere, the earlier one lies at
// a multiple of them.
inline constexpr std::size_t s_pieceBytes = 16;

// Pieces that hold so many bytes.
constexpr std::size_t piecesOf(std::size_t bytes) {
    return (bytes + s_pieceBytes - 1) / s_pieceBytes;
}

// The answer of `changedWords`, word by word. For machines without SSE2, and for tests to hold the fast way
// against.
template<std::size_t Pieces>
std::uint32_t changedWordsPlain(const void* now, const void* before) {
    std::uint32_t changed = 0;
    for (std::size_t word = 0; word < Pieces * s_pieceBytes / sizeof(std::uint32_t); ++word) {
        const std::size_t offset = word * sizeof(std::uint32_t);
        const bool equal = std::memcmp(static_cast<const char*>(now) + offset,
                                       static_cast<const char*>(before) + offset, sizeof(std::uint32_t)) == 0;
        changed |= (equal ? 0U : 1U) << word;
    }
    return changed;
}

#if defined(__SSE2__)

// All bits set in the words of a piece that are equal.
inline __m128i equalWords(const void* now, const void* before, std::size_t piece) {
    // Loads, and no plain reads through the pointers: only these may read objects of any type.
    return _mm_cmpeq_epi32(_mm_loadu_si128(static_cast<const __m128i*>(now) + piece),
                           _mm_load_si128(static_cast<const __m128i*>(before) + piece));
}

template<std::size_t... Piece>
bool sameRecord(const void* now, const void* before, std::index_sequence<Piece...>) {
    __m128i equal = _mm_set1_epi32(-1);
    ((equal = _mm_and_si128(equal, equalWords(now, before, Piece))), ...);
    return _mm_movemask_epi8(equal) == 0xffff;
}

// The bits of a piece that differ and are asked for.
inline __m128i changedBits(const void* now, const void* before, const void* shown, std::size_t piece) {
    const __m128i changed = _mm_xor_si128(_mm_loadu_si128(static_cast<const __m128i*>(now) + piece),
                                          _mm_load_si128(static_cast<const __m128i*>(before) + piece));
    return _mm_and_si128(changed, _mm_load_si128(static_cast<const __m128i*>(shown) + piece));
}

template<std::size_t... Piece>
bool sameRecord(const void* now, const void* before, const void* shown, std::index_sequence<Piece...>) {
    __m128i changed = _mm_setzero_si128();
    ((changed = _mm_or_si128(changed, changedBits(now, before, shown, Piece))), ...);
    return _mm_movemask_epi8(_mm_cmpeq_epi8(changed, _mm_setzero_si128())) == 0xffff;
}

template<std::size_t... Piece>
std::uint32_t changedWords(const void* now, const void* before, std::index_sequence<Piece...>) {
    const auto changed = [&](std::size_t piece) {
        const int equal = _mm_movemask_ps(_mm_castsi128_ps(equalWords(now, before, piece)));
        return static_cast<std::uint32_t>(equal ^ 0xf) << (piece * s_pieceBytes / sizeof(std::uint32_t));
    };
    return (changed(Piece) | ...);
}

#endif

// Whether all bytes of the pieces are equal.
template<std::size_t Pieces>
bool sameRecord(const void* now, const void* before) {
#if defined(__SSE2__)
    return sameRecord(now, before, std::make_index_sequence<Pieces>());
#else
    return std::memcmp(now, before, Pieces * s_pieceBytes) == 0;
#endif
}

// Whether all bits are equal that are set in a third record, which lies as the earlier one does.
template<std::size_t Pieces>
bool sameRecord(const void* now, const void* before, const void* shown) {
#if defined(__SSE2__)
    return sameRecord(now, before, shown, std::make_index_sequence<Pieces>());
#else
    const auto byte = [](const void* record, std::size_t i) {
        return static_cast<const unsigned char*>(record)[i];
    };
    unsigned int changed = 0;
    for (std::size_t i = 0; i < Pieces * s_pieceBytes; ++i)
        changed |= static_cast<unsigned int>((byte(now, i) ^ byte(before, i)) & byte(shown, i));
    return changed == 0;
#endif
}

// One bit a word of four bytes, word 0 lowest, set where the two differ. Up to eight pieces.
template<std::size_t Pieces>
std::uint32_t changedWords(const void* now, const void* before) {
    static_assert(Pieces * s_pieceBytes / sizeof(std::uint32_t) <= 32);
#if defined(__SSE2__)
    return changedWords(now, before, std::make_index_sequence<Pieces>());
#else
    return changedWordsPlain<Pieces>(now, before);
#endif
}

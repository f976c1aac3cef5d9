#pragma once

#include <cstdint>
#include <cstring>
#if defined(__SSE2__)
#include <emmintrin.h>
#endif

// Which words of two records differ, for the loop over unchanged resources: a compare a record, and the
// fields one by one only where it differs.
//
// A 16-byte load right behind the narrow stores that it covers waits for them, and is then slower than
// comparing field by field. Fill all records of a kind first, then compare.

// Words of four bytes that one call compares.
inline constexpr unsigned int s_comparedWords = 16;

// The same answer, word by word. For machines without SSE2, and for tests to hold the fast way against.
inline std::uint32_t changedWordsPlain(const void* now, const void* before) {
    std::uint32_t changed = 0;
    for (unsigned int word = 0; word < s_comparedWords; ++word) {
        const std::size_t offset = word * sizeof(std::uint32_t);
        const bool equal = std::memcmp(static_cast<const char*>(now) + offset,
                                       static_cast<const char*>(before) + offset, sizeof(std::uint32_t)) == 0;
        changed |= (equal ? 0U : 1U) << word;
    }
    return changed;
}

// One bit a word, word 0 lowest, set where the two differ. Both lie at multiples of 16 bytes.
inline std::uint32_t changedWords(const void* now, const void* before) {
#if defined(__SSE2__)
    // Loads, and no plain reads through the pointers: only these may read objects of any type.
    const auto equal = [&](int piece) {
        return _mm_cmpeq_epi32(_mm_load_si128(static_cast<const __m128i*>(now) + piece),
                               _mm_load_si128(static_cast<const __m128i*>(before) + piece));
    };
    // Packing narrows each word's answer to a byte and keeps the order.
    const __m128i lower = _mm_packs_epi32(equal(0), equal(1));
    const __m128i upper = _mm_packs_epi32(equal(2), equal(3));
    const int equalWords = _mm_movemask_epi8(_mm_packs_epi16(lower, upper));
    return static_cast<std::uint32_t>(equalWords) ^ 0xffffU;
#else
    return changedWordsPlain(now, before);
#endif
}

#pragma once

#include <cstdint>
#if defined(__SSE2__)
#include <emmintrin.h>
#endif

// Numbers as '0' and '1', most significant bit first. Nine tenths of a changed signal are the kernel's write;
// 32 digits in sixteen instructions keep the rest small.

// Bytes that `appendBinary` may write beyond the digits that it was asked for.
inline constexpr unsigned int s_binarySlack = 32;

// The same digits as `writeBinary32`, one by one. For machines without SSE2, and for tests to hold the fast
// way against.
inline void writeBinary32Plain(char* at, std::uint32_t value) {
    for (int bit = 31; bit >= 0; --bit)
        *at++ = static_cast<char>('0' + (value >> bit & 1));
}

// Writes 32 digits, and nothing behind them.
inline void writeBinary32(char* at, std::uint32_t value) {
#if defined(__SSE2__)
    // Four lanes of each byte; then, in each half of the text, eight lanes of each byte and one bit a lane.
    __m128i lanes = _mm_cvtsi32_si128(static_cast<int>(value));
    lanes = _mm_unpacklo_epi8(lanes, lanes);
    lanes = _mm_unpacklo_epi16(lanes, lanes);
    const auto digits = [](__m128i half) {
        const __m128i bits = _mm_and_si128(half, _mm_set1_epi64x(0x0102040810204080));
        // A lane whose bit is clear compares to -1, and '1' minus one is '0'.
        return _mm_add_epi8(_mm_cmpeq_epi8(bits, _mm_setzero_si128()), _mm_set1_epi8('1'));
    };
    auto* const halves = reinterpret_cast<__m128i*>(at);
    _mm_storeu_si128(halves, digits(_mm_shuffle_epi32(lanes, _MM_SHUFFLE(2, 2, 3, 3))));
    _mm_storeu_si128(halves + 1, digits(_mm_shuffle_epi32(lanes, _MM_SHUFFLE(0, 0, 1, 1))));
#else
    writeBinary32Plain(at, value);
#endif
}

// Writes the value as numBits digits, 1 to 64, and returns their end. Bits above them don't show. May write
// up to `s_binarySlack` bytes behind the end.
inline char* appendBinary(char* at, std::uint64_t value, unsigned int numBits) {
    if (numBits > 32) {
        at = appendBinary(at, value >> 32, numBits - 32);
        numBits = 32;
    }
    // The wanted bits at the top, so that the digits begin at the first of them; what is behind the last
    // wanted one is overwritten by what follows.
    writeBinary32(at, static_cast<std::uint32_t>(value) << (32 - numBits));
    return at + numBits;
}

#pragma once

#include <cstdint>
#if defined(__SSE2__)
#include <emmintrin.h>
#endif

// Numbers as '0' and '1', most significant bit first. A changed signal is nine tenths the kernel's write;
// sixteen digits in a handful of instructions keep the rest small.

// Bytes that `appendBinary` may write beyond the digits that it was asked for.
inline constexpr unsigned int s_binarySlack = 32;

// The same digits, one by one. For machines without SSE2, and for tests to hold the fast way against.
inline void writeBinary16Plain(char* at, std::uint32_t bits) {
    for (int bit = 15; bit >= 0; --bit)
        *at++ = static_cast<char>('0' + (bits >> bit & 1));
}

// Writes the low 16 bits as 16 digits, and nothing behind them.
inline void writeBinary16(char* at, std::uint32_t bits) {
#if defined(__SSE2__)
    // The high byte in each of the lower eight lanes, the low byte in the others; then one bit a lane.
    __m128i lanes = _mm_cvtsi32_si128(static_cast<int>(bits));
    lanes = _mm_unpacklo_epi8(lanes, lanes);
    lanes = _mm_shufflelo_epi16(lanes, _MM_SHUFFLE(0, 0, 1, 1));
    lanes = _mm_shuffle_epi32(lanes, _MM_SHUFFLE(1, 1, 0, 0));
    const __m128i bitOfLane = _mm_set1_epi64x(0x0102040810204080);
    // A lane whose bit is set compares to -1, and '0' minus that is '1'.
    const __m128i set = _mm_cmpeq_epi8(_mm_and_si128(lanes, bitOfLane), bitOfLane);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(at), _mm_sub_epi8(_mm_set1_epi8('0'), set));
#else
    writeBinary16Plain(at, bits);
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
    const std::uint32_t top = static_cast<std::uint32_t>(value) << (32 - numBits);
    writeBinary16(at, top >> 16);
    writeBinary16(at + 16, top);
    return at + numBits;
}

// Avx2Blocks.h - the steps that the 256-bit kernels share. Only for functions compiled for
// that instruction set.
#ifndef TV_AVX2_BLOCKS_H
#define TV_AVX2_BLOCKS_H

#include "codepage/Avx2Kernels.h"

#include <immintrin.h>

#include <cstddef>

#define TV_AVX2_STEP TV_AVX2 static inline __attribute__((always_inline))

namespace TvDetail {

TV_AVX2_STEP __m256i allBytes(int value) { return _mm256_set1_epi8(static_cast<char>(value)); }

// The top bit of each byte.
TV_AVX2_STEP unsigned maskOf(__m256i bytes) { return static_cast<unsigned>(_mm256_movemask_epi8(bytes)); }

TV_AVX2_STEP __m256i isZero(__m256i bytes) { return _mm256_cmpeq_epi8(bytes, _mm256_setzero_si256()); }

TV_AVX2_STEP __m256i load32(const unsigned char* src)
{
    return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(src));
}

TV_AVX2_STEP __m256i load8(const wchar_t* src)
{
    return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(src));
}

TV_AVX2_STEP void store8(wchar_t* dst, __m256i elements)
{
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(dst), elements);
}

TV_AVX2_STEP void store32(char* dst, __m256i bytes)
{
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(dst), bytes);
}

// Widens 32 bytes to 32 elements.
TV_AVX2_STEP void widen32(wchar_t* dst, const unsigned char* src)
{
    for (std::size_t part = 0; part < 4; ++part) {
        const auto* eight = reinterpret_cast<const __m128i*>(src + 8 * part);
        store8(dst + 8 * part, _mm256_cvtepu8_epi32(_mm_loadl_epi64(eight)));
    }
}

// Four vectors of eight elements packed to bytes twice: the bytes in the order of the elements.
TV_AVX2_STEP __m256i inOrder(__m256i packed)
{
    return _mm256_permutevar8x32_epi32(packed, _mm256_setr_epi32(0, 4, 1, 5, 2, 6, 3, 7));
}

// Packs 32 elements. What is 1 to 127 stays, and nothing else comes into that range.
TV_AVX2_STEP __m256i packBytes(__m256i v0, __m256i v1, __m256i v2, __m256i v3)
{
    return inOrder(_mm256_packus_epi16(_mm256_packs_epi32(v0, v1), _mm256_packs_epi32(v2, v3)));
}

} // namespace TvDetail

#endif

// The digits of an integer in one vector, for machines with 512-bit vectors and products of 52
// bits. Only for functions compiled for that instruction set.
#ifndef TV_AVX512_DIGITS_H
#define TV_AVX512_DIGITS_H

#include "numconv/Avx512Tables.h"

#include <immintrin.h>

#include <cstdint>

// The vector headers of g++ 12 hand deliberately undefined registers to its built-ins and then
// warn of them.
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic ignored "-Wuninitialized"
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#endif

#define TV_AVX512_NUMBERS                                                                                    \
    __attribute__((target("avx512f,avx512bw,avx512vl,avx512dq,avx512ifma,avx512vbmi,avx2,bmi,bmi2,lzcnt")))
#define TV_AVX512_NUMBERS_STEP TV_AVX512_NUMBERS static inline __attribute__((always_inline))

/// The lowest `count` bits.
TV_AVX512_NUMBERS_STEP std::uint32_t lowBits(std::uint64_t count)
{
    return _bzhi_u32(~std::uint32_t{0}, static_cast<unsigned>(count));
}

/// Seventeen digits as numbers, placed as 32 bytes of `places` say: the sixteen of `sixteen` and
/// `last`.
TV_AVX512_NUMBERS_STEP __m256i seventeenDigits(std::uint64_t sixteen, std::uint64_t last,
                                               const unsigned char* places)
{
    const std::uint64_t upper = sixteen / 100000000;
    const std::uint64_t lower = sixteen - upper * 100000000;
    // Lane k has the fraction of n / 10^(8-k) in 52 bits: (n + 1) * floor(2^52 / 10^(8-k)) is never
    // too small for the digit and, with n below 10^8, never as large as the next one's. Ten times
    // that has the digit above the 52 bits.
    const __m512i tenths = _mm512_load_si512(g_avx512Tables.tenths);
    const __m512i ten = _mm512_load_si512(g_avx512Tables.ten);
    const __m512i upperParts =
        _mm512_madd52lo_epu64(tenths, tenths, _mm512_set1_epi64(static_cast<long long>(upper)));
    const __m512i lowerParts =
        _mm512_madd52lo_epu64(tenths, tenths, _mm512_set1_epi64(static_cast<long long>(lower)));
    const __m512i upperDigits = _mm512_madd52hi_epu64(_mm512_setzero_si512(), upperParts, ten);
    const __m512i lowerDigits = _mm512_madd52hi_epu64(
        _mm512_zextsi128_si512(_mm_cvtsi64_si128(static_cast<long long>(last) << 8)), lowerParts, ten);
    const __m256i from = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(places));
    return _mm512_castsi512_si256(
        _mm512_permutex2var_epi8(upperDigits, _mm512_castsi256_si512(from), lowerDigits));
}

#endif

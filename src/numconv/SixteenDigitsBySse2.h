// The sixteen digits of an integer in one vector.
#ifndef TV_SIXTEEN_DIGITS_BY_SSE2_H
#define TV_SIXTEEN_DIGITS_BY_SSE2_H

#include "numconv/DoubleBits.h"

#include <bit>
#include <cstdint>
#include <emmintrin.h>

/// As PlainSixteenDigits.
class Sse2SixteenDigits {
public:
    explicit Sse2SixteenDigits(std::uint64_t n)
    {
        const std::uint64_t upper = n / 100000000;
        const std::uint64_t lower = n - upper * 100000000;
        // Each step splits every lane into quotient (lower half) and remainder (upper half);
        // the multipliers are the divisors' reciprocals, rounded up, exact for these ranges.
        const __m128i eight = _mm_set_epi64x(static_cast<long long>(lower), static_cast<long long>(upper));
        const __m128i by10000 = _mm_srli_epi64(_mm_mul_epu32(eight, _mm_set1_epi64x(3518437209)), 45);
        const __m128i four = _mm_add_epi32(
            by10000,
            _mm_slli_epi64(_mm_sub_epi32(eight, _mm_mul_epu32(by10000, _mm_set1_epi64x(10000))), 32));
        const __m128i by100 = _mm_srli_epi16(_mm_mulhi_epu16(four, _mm_set1_epi32(5243)), 3);
        const __m128i two = _mm_add_epi16(
            by100, _mm_slli_epi32(_mm_sub_epi16(four, _mm_mullo_epi16(by100, _mm_set1_epi32(100))), 16));
        const __m128i by10 = _mm_mulhi_epu16(two, _mm_set1_epi16(6554));
        m_digits = _mm_add_epi8(
            by10, _mm_slli_epi16(_mm_sub_epi16(two, _mm_mullo_epi16(by10, _mm_set1_epi16(10))), 8));
    }

    int significant() const
    {
        const auto zeros =
            static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(m_digits, _mm_setzero_si128())));
        return static_cast<int>(std::bit_width(~zeros & 0xFFFFu));
    }

    Uint128 text() const
    {
        const __m128i text = characters();
        return static_cast<std::uint64_t>(_mm_cvtsi128_si64(text)) |
               static_cast<Uint128>(
                   static_cast<std::uint64_t>(_mm_cvtsi128_si64(_mm_unpackhi_epi64(text, text))))
                   << 64;
    }

    void store(char* out) const { _mm_storeu_si128(reinterpret_cast<__m128i*>(out), characters()); }

private:
    __m128i characters() const { return _mm_add_epi8(m_digits, _mm_set1_epi8('0')); }

    __m128i m_digits;
};

#endif

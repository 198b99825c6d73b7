// Integers to decimal characters, sixteen at a time.
#ifndef TV_EMIT_DIGITS_H
#define TV_EMIT_DIGITS_H

#include <bit>
#include <cstdint>
#include <emmintrin.h>

constexpr std::uint64_t g_tens[20] = {1u,
                                      10u,
                                      100u,
                                      1000u,
                                      10000u,
                                      100000u,
                                      1000000u,
                                      10000000u,
                                      100000000u,
                                      1000000000u,
                                      10000000000u,
                                      100000000000u,
                                      1000000000000u,
                                      10000000000000u,
                                      100000000000000u,
                                      1000000000000000u,
                                      10000000000000000u,
                                      100000000000000000u,
                                      1000000000000000000u,
                                      10000000000000000000u};

/// Decimal digits of `n`, 1 for 0.
inline int decimalWidth(std::uint64_t n)
{
    const int guess = (std::bit_width(n | 1) * 1233) >> 12;
    return guess + (n >= g_tens[guess] ? 1 : 0) + (n == 0 ? 1 : 0);
}

/// The sixteen digits of `n` < 10^16 as numbers 0..9, the first in the lowest byte.
inline __m128i sixteenDigits(std::uint64_t n)
{
    const std::uint64_t upper = n / 100000000;
    const std::uint64_t lower = n - upper * 100000000;
    // Each step splits every lane into quotient (lower half) and remainder (upper half);
    // the multipliers are the divisors' reciprocals, rounded up, exact for these ranges.
    const __m128i eight = _mm_set_epi64x(static_cast<long long>(lower), static_cast<long long>(upper));
    const __m128i by10000 = _mm_srli_epi64(_mm_mul_epu32(eight, _mm_set1_epi64x(3518437209)), 45);
    const __m128i four = _mm_add_epi32(
        by10000, _mm_slli_epi64(_mm_sub_epi32(eight, _mm_mul_epu32(by10000, _mm_set1_epi64x(10000))), 32));
    const __m128i by100 = _mm_srli_epi16(_mm_mulhi_epu16(four, _mm_set1_epi32(5243)), 3);
    const __m128i two = _mm_add_epi16(
        by100, _mm_slli_epi32(_mm_sub_epi16(four, _mm_mullo_epi16(by100, _mm_set1_epi32(100))), 16));
    const __m128i by10 = _mm_mulhi_epu16(two, _mm_set1_epi16(6554));
    return _mm_add_epi8(by10,
                        _mm_slli_epi16(_mm_sub_epi16(two, _mm_mullo_epi16(by10, _mm_set1_epi16(10))), 8));
}

/// Writes the digits of `n` != 0 without leading and trailing zeros; may write 17 bytes.
/// Answers how many digits count; `*width` receives the digits of `n`, zeros included.
inline int emitDigits(std::uint64_t n, char* out, int* width)
{
    *width = decimalWidth(n);
    if (*width > 17) {
        int count = *width;
        for (; n % 10 == 0; n /= 10)
            --count;
        for (int i = count; i-- > 0; n /= 10)
            out[i] = static_cast<char>('0' + n % 10);
        return count;
    }
    // Made 17 digits wide, as zeros on the right are cut anyway.
    n *= g_tens[17 - *width];
    const std::uint64_t first = n / g_tens[16];
    const __m128i rest = sixteenDigits(n - first * g_tens[16]);
    out[0] = static_cast<char>('0' + first);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out + 1), _mm_add_epi8(rest, _mm_set1_epi8('0')));
    const unsigned zeros =
        static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(rest, _mm_setzero_si128())));
    return 1 + static_cast<int>(std::bit_width(~zeros & 0xFFFFu));
}

#endif

// WideDigits.h - decimal digits as wide text, eight or sixteen at once.
//
// No branch depends on how many digits a number has, but for the shortest.
#ifndef TV_FORMAT_WIDE_DIGITS_H
#define TV_FORMAT_WIDE_DIGITS_H

#include "format/FormatVectors.h"

#include <algorithm>
#include <bit>
#include <cstdint>

namespace TvFormatDetail {

constexpr std::uint32_t kEightDigits = 100000000;

/// The number of decimal digits; 0 for 0.
inline int decimalLength(std::uint32_t value)
{
    static constexpr std::uint32_t kPowers[] = {0,      10,      100,      1000,      10000,
                                                100000, 1000000, 10000000, 100000000, 1000000000};
    const int guess = (32 - std::countl_zero(value | 1)) * 1233 >> 12; // log10(2) is 1233 / 4096
    return guess + (value >= kPowers[guess]);
}

#ifdef TV_FORMAT_BY_SSE2

/// The characters of eight digits as bytes, the first in the lowest, zeros in front included.
inline std::uint64_t eightDigitBytes(std::uint32_t value)
{
    // Each step splits every lane into quotient (lower half) and remainder (upper half); the
    // multipliers are the divisors' reciprocals, rounded up, exact for these ranges.
    const std::uint64_t by10000 = std::uint64_t{value} * 109951163 >> 40;
    const std::uint64_t four = by10000 | (value - by10000 * 10000) << 32;
    const std::uint64_t by100 = four * 10486 >> 20 & 0x0000007F0000007F;
    const std::uint64_t two = by100 | (four - by100 * 100) << 16;
    const std::uint64_t by10 = two * 103 >> 10 & 0x000F000F000F000F;
    return (by10 | (two - by10 * 10) << 8) + 0x3030303030303030;
}

/// Four characters of one byte each, widened.
inline __m128i widenedFour(std::uint32_t bytes)
{
    const __m128i zero = _mm_setzero_si128();
    return _mm_unpacklo_epi16(_mm_unpacklo_epi8(_mm_cvtsi32_si128(static_cast<int>(bytes)), zero), zero);
}

inline void storeFour(wchar_t* out, __m128i four) { _mm_storeu_si128(reinterpret_cast<__m128i*>(out), four); }

/// Writes a number below 10^8 and a terminating 0, and nothing behind it; returns the length.
inline int putUpToEight(wchar_t* out, std::uint32_t value)
{
    const int length = std::max(1, decimalLength(value));
    const std::uint64_t eight = eightDigitBytes(value);
    const std::uint64_t text =
        eight >> 8 * (8 - length); // followed by zeros, one at least but for eight digits
    if (length < 3) {
        out[0] = static_cast<wchar_t>(text & 0xFF);
        out[length - 1] = static_cast<wchar_t>(eight >> 56);
        out[length] = 0;
        return length;
    }
    const __m128i front = widenedFour(static_cast<std::uint32_t>(text));
    const __m128i back = widenedFour(static_cast<std::uint32_t>(eight >> 32));
    const bool few = length < 4; // three and the 0 are in front
    storeFour(out, front);
    storeFour(out + (few ? 0 : length - 4), few ? front : back);
    out[length] = 0;
    return length;
}

/// Writes all eight digits of a number below 10^8; no terminating 0.
inline void putEight(wchar_t* out, std::uint32_t value)
{
    const std::uint64_t eight = eightDigitBytes(value);
    storeFour(out, widenedFour(static_cast<std::uint32_t>(eight)));
    storeFour(out + 4, widenedFour(static_cast<std::uint32_t>(eight >> 32)));
}

/// Writes a number and a terminating 0, and nothing behind it; returns the length.
inline int putDecimal(wchar_t* out, std::uint32_t value)
{
    if (value < kEightDigits) [[likely]]
        return putUpToEight(out, value);
    const std::uint32_t upper = value / kEightDigits;
    out[0] = static_cast<wchar_t>(L'0' + (upper < 10 ? upper : upper / 10));
    out[1] = static_cast<wchar_t>(L'0' + upper % 10); // overwritten after a single digit
    const int length = 1 + (upper >= 10);
    putEight(out + length, value % kEightDigits);
    out[length + 8] = 0;
    return length + 8;
}

/// putDecimal() for a signed number.
inline int putSigned(wchar_t* out, std::uint32_t value)
{
    const bool negative = static_cast<std::int32_t>(value) < 0;
    *out = L'-';
    return negative + putDecimal(out + negative, negative ? 0 - value : value);
}

/// The characters of two numbers below 10^8 as bytes, eight each, zeros in front included.
inline __m128i twiceEightDigitBytes(std::uint32_t first, std::uint32_t second)
{
    // As eightDigitBytes(), lane by lane.
    const __m128i eight = _mm_unpacklo_epi64(_mm_cvtsi32_si128(static_cast<int>(first)),
                                             _mm_cvtsi32_si128(static_cast<int>(second)));
    const __m128i by10000 = _mm_srli_epi64(_mm_mul_epu32(eight, _mm_set1_epi64x(3518437209)), 45);
    const __m128i four = _mm_add_epi32(
        by10000, _mm_slli_epi64(_mm_sub_epi32(eight, _mm_mul_epu32(by10000, _mm_set1_epi64x(10000))), 32));
    const __m128i by100 = _mm_srli_epi16(_mm_mulhi_epu16(four, _mm_set1_epi32(5243)), 3);
    const __m128i two = _mm_add_epi16(
        by100, _mm_slli_epi32(_mm_sub_epi16(four, _mm_mullo_epi16(by100, _mm_set1_epi32(100))), 16));
    const __m128i by10 = _mm_mulhi_epu16(two, _mm_set1_epi16(6554));
    const __m128i digits =
        _mm_add_epi8(by10, _mm_slli_epi16(_mm_sub_epi16(two, _mm_mullo_epi16(by10, _mm_set1_epi16(10))), 8));
    return _mm_add_epi8(digits, _mm_set1_epi8('0'));
}

/// Writes an integer part, a point, `places` (0 to 8) digits of a fraction, zeros in front
/// included, and a terminating 0, and nothing behind it; returns the length. Both numbers are
/// below 10^8.
inline int putFixed(wchar_t* out, std::uint32_t whole, std::uint32_t fraction, int places)
{
    if (places == 0)
        return putUpToEight(out, whole);
    const __m128i zero = _mm_setzero_si128();
    const int length = std::max(1, decimalLength(whole));
    const __m128i bytes = twiceEightDigitBytes(whole, fraction);
    // The first digits of either number, without zeros in front; the last four, as they stand.
    const __m128i wholeFront = _mm_srl_epi64(bytes, _mm_cvtsi32_si128(8 * (8 - length)));
    const __m128i fractionFront = _mm_srl_epi64(bytes, _mm_cvtsi32_si128(8 * (8 - places)));
    storeFour(out, _mm_unpacklo_epi16(_mm_unpacklo_epi8(wholeFront, zero), zero));
    if (length > 4)
        storeFour(out + length - 4, _mm_unpackhi_epi16(_mm_unpacklo_epi8(bytes, zero), zero));
    out[length] = L'.';
    wchar_t* const behind = out + length + 1;
    const __m128i firstFour = _mm_unpacklo_epi16(_mm_unpackhi_epi8(fractionFront, zero), zero);
    if (places >= 4) {
        storeFour(behind, firstFour);
        storeFour(behind + places - 4, _mm_unpackhi_epi16(_mm_unpackhi_epi8(bytes, zero), zero));
        behind[places] = 0;
    } else if (places == 3) {
        storeFour(behind, firstFour); // with the 0
    } else {                          // one or two and the 0
        const auto few = static_cast<std::uint64_t>(_mm_cvtsi128_si64(firstFour));
        behind[0] = static_cast<wchar_t>(few & 0xFF);
        behind[1] = static_cast<wchar_t>(few >> 32);
        behind[places] = 0;
    }
    return length + 1 + places;
}

#endif

} // namespace TvFormatDetail

#endif

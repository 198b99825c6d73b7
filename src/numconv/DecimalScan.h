// Reads the text of a decimal number, narrow or wide, as far as it goes.
#ifndef TV_DECIMAL_SCAN_H
#define TV_DECIMAL_SCAN_H

#include "numconv/EmitDigits.h"
#include "numconv/NumberVectors.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#ifdef TV_NUMBERS_BY_SSE2
#include <emmintrin.h>
#endif

/// The number is leading * 10^power, and a little more when digits were left out.
template<class Char>
struct DecimalText {
    const Char* end = nullptr; ///< behind the last character used; null: no number
    bool negative = false;
    bool cut = false;          ///< there are more than 19 digits from the first that is not 0 on
    std::uint64_t leading = 0; ///< the value of the first 19 of these, or of all
    std::int64_t power = 0;
    const Char* digits = nullptr;    ///< all digits, and a point among them perhaps, stand from
    const Char* digitsEnd = nullptr; ///< here to here
};

/// Digits whose value surely fits 64 bits.
constexpr std::size_t kLeadingDigits = 19;

/// A written exponent from 20000 on counts as this one.
constexpr int kLargestExponent = 19999;

template<class Char>
inline unsigned digitOf(Char c)
{
    return static_cast<unsigned>(c) - unsigned{'0'};
}

/// Eight characters as bytes, the first in the lowest.
inline std::uint64_t eightCharacters(const char* s)
{
    std::uint64_t bytes;
    std::memcpy(&bytes, s, sizeof bytes);
    return bytes;
}

// Characters other than digits become some byte.
inline std::uint64_t eightCharactersOneByOne(const wchar_t* s)
{
    std::uint64_t bytes = 0;
    for (int i = 0; i < 8; ++i)
        bytes |= std::uint64_t{static_cast<unsigned char>(s[i])} << (8 * i);
    return bytes;
}

inline std::uint64_t eightCharacters(const wchar_t* s)
{
#ifdef TV_NUMBERS_BY_SSE2
    const __m128i first = _mm_loadu_si128(reinterpret_cast<const __m128i*>(s));
    const __m128i last = _mm_loadu_si128(reinterpret_cast<const __m128i*>(s + 4));
    const __m128i pairs = _mm_packs_epi32(first, last);
    return static_cast<std::uint64_t>(_mm_cvtsi128_si64(_mm_packus_epi16(pairs, pairs)));
#else
    return eightCharactersOneByOne(s);
#endif
}

/// The value of eight digits 0..9, one a byte: neighbours are joined to pairs, fours, eight.
inline std::uint64_t joinDigits(std::uint64_t digits)
{
    digits = (digits * 10 + (digits >> 8)) & 0x00FF00FF00FF00FF;
    digits = (digits * 100 + (digits >> 16)) & 0x0000FFFF0000FFFF;
    return (digits * 10000 + (digits >> 32)) & 0xFFFFFFFF;
}

constexpr std::uint64_t kEightZeros = 0x3030303030303030;

/// value * 10^count + the value of the `count` digits from `s` to `end`, modulo 2^64. From
/// `begin` on, not behind `s`, everything may be read.
template<class Char>
inline std::uint64_t appendDigits(std::uint64_t value, const Char* begin, const Char* s, const Char* end)
{
    for (; end - s >= 8; s += 8)
        value = value * 100000000 + joinDigits(eightCharacters(s) - kEightZeros);
    if (s < end && end - begin >= 8) {
        // The last eight characters, with those in front of `s` taken as zeros.
        const auto count = static_cast<unsigned>(end - s);
        const std::uint64_t mask = ~std::uint64_t{0} << (64 - 8 * count);
        return value * g_tens[count] + joinDigits((eightCharacters(end - 8) & mask) - (kEightZeros & mask));
    }
    for (; s < end; ++s)
        value = value * 10 + digitOf(*s);
    return value;
}

/// The value of the first 19 digits of a number that has more, from the first that is not 0
/// on; `digits` receives how many there are.
template<class Char>
inline std::uint64_t leadingDigits(const Char* s, const Char* end, std::size_t& digits)
{
    while (s < end && (*s == Char('0') || *s == Char('.')))
        ++s;
    std::uint64_t value = 0;
    digits = 0;
    for (; s < end; ++s) {
        if (*s == Char('.'))
            continue;
        if (digits++ < kLeadingDigits)
            value = value * 10 + digitOf(*s);
    }
    return value;
}

/// Reads the exponent whose letter stands at `s`. Answers its end, `s` when no digits follow.
template<class Char>
inline const Char* scanExponent(const Char* s, int& exponent)
{
    const Char* at = s + 1;
    bool negative = false;
    if (*at == Char('-') || *at == Char('+'))
        negative = *at++ == Char('-');
    if (digitOf(*at) >= 10)
        return s;
    while (*at == Char('0'))
        ++at;
    for (; digitOf(*at) < 10; ++at) {
        if (exponent <= kLargestExponent)
            exponent = exponent * 10 + static_cast<int>(digitOf(*at));
    }
    if (exponent > kLargestExponent)
        exponent = kLargestExponent;
    if (negative)
        exponent = -exponent;
    return at;
}

/// Reads no element behind the terminator and none behind the first that does not belong
/// to the number.
template<class Char>
[[gnu::always_inline]] inline DecimalText<Char> scanDecimal(const Char* s)
{
    DecimalText<Char> number;
    while (*s == Char(' ') || (*s >= Char('\t') && *s <= Char('\r')))
        ++s;
    if (*s == Char('-') || *s == Char('+'))
        number.negative = *s++ == Char('-');

    number.digits = s;
    std::uint64_t value = 0;
    while (digitOf(*s) < 10)
        value = value * 10 + digitOf(*s++);
    std::size_t digits = static_cast<std::size_t>(s - number.digits);
    bool anyDigit = digits != 0;
    // More digits may be a multiple of 2^64.
    const bool isZero = value == 0 && digits <= kLeadingDigits;
    if (isZero)
        digits = 0;
    if (*s == Char('.')) {
        const Char* const fraction = ++s;
        // Zeros in front of the first other digit only move the power.
        if (isZero) {
            while (*s == Char('0'))
                ++s;
        }
        const Char* const first = s;
        while (digitOf(*s) < 10)
            ++s;
        value = appendDigits(value, number.digits, first, s);
        number.power = fraction - s;
        digits += static_cast<std::size_t>(s - first);
        anyDigit |= s != fraction;
    }
    if (!anyDigit)
        return number;
    number.end = s;
    number.digitsEnd = s;
    if (digits > kLeadingDigits) {
        value = leadingDigits(number.digits, s, digits);
        if (digits > kLeadingDigits) {
            number.cut = true;
            number.power += static_cast<std::int64_t>(digits - kLeadingDigits);
        }
    }
    number.leading = value;
    if (*s == Char('e') || *s == Char('E')) {
        int exponent = 0;
        number.end = scanExponent(s, exponent);
        number.power += exponent;
    }
    return number;
}

#endif

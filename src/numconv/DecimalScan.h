// Reads the text of a decimal number, narrow or wide, as far as it goes.
#ifndef TV_DECIMAL_SCAN_H
#define TV_DECIMAL_SCAN_H

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <emmintrin.h>

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

/// Eight characters that are digits, as bytes, the first in the lowest.
inline std::uint64_t eightCharacters(const char* s)
{
    std::uint64_t bytes;
    std::memcpy(&bytes, s, sizeof bytes);
    return bytes;
}

inline std::uint64_t eightCharacters(const wchar_t* s)
{
    const __m128i first = _mm_loadu_si128(reinterpret_cast<const __m128i*>(s));
    const __m128i last = _mm_loadu_si128(reinterpret_cast<const __m128i*>(s + 4));
    const __m128i pairs = _mm_packs_epi32(first, last);
    return static_cast<std::uint64_t>(_mm_cvtsi128_si64(_mm_packus_epi16(pairs, pairs)));
}

/// The value of eight digits 0..9, one a byte: neighbours are joined to pairs, fours, eight.
inline std::uint64_t joinDigits(std::uint64_t digits)
{
    digits = (digits * 10 + (digits >> 8)) & 0x00FF00FF00FF00FF;
    digits = (digits * 100 + (digits >> 16)) & 0x0000FFFF0000FFFF;
    return (digits * 10000 + (digits >> 32)) & 0xFFFFFFFF;
}

constexpr std::uint64_t kEightZeros = 0x3030303030303030;

/// value * 10^count + the value of `count` digits at `s`, modulo 2^64.
template<class Char>
inline std::uint64_t appendDigits(std::uint64_t value, const Char* s, const Char* end)
{
    for (; end - s >= 8; s += 8)
        value = value * 100000000 + joinDigits(eightCharacters(s) - kEightZeros);
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

/// Reads the exponent at `s`, which is its letter; leaves `number` alone when no digits
/// follow.
template<class Char>
inline void scanExponent(const Char* s, DecimalText<Char>& number)
{
    ++s;
    bool negative = false;
    if (*s == Char('-') || *s == Char('+'))
        negative = *s++ == Char('-');
    if (digitOf(*s) >= 10)
        return;
    while (*s == Char('0'))
        ++s;
    int exponent = 0;
    for (; digitOf(*s) < 10; ++s) {
        if (exponent <= kLargestExponent)
            exponent = exponent * 10 + static_cast<int>(digitOf(*s));
    }
    if (exponent > kLargestExponent)
        exponent = kLargestExponent;
    number.power += negative ? -exponent : exponent;
    number.end = s;
}

/// Reads no element behind the terminator and none behind the first that does not belong
/// to the number.
template<class Char>
inline DecimalText<Char> scanDecimal(const Char* s)
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
    if (*s == Char('.')) {
        const Char* const fraction = ++s;
        while (digitOf(*s) < 10)
            ++s;
        value = appendDigits(value, fraction, s);
        number.power = fraction - s;
        digits += static_cast<std::size_t>(s - fraction);
    }
    if (digits == 0)
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
    if (*s == Char('e') || *s == Char('E'))
        scanExponent(s, number);
    return number;
}

#endif

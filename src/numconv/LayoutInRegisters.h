// Digits laid out around a point in registers, for up to seventeen of them.
#ifndef TV_LAYOUT_IN_REGISTERS_H
#define TV_LAYOUT_IN_REGISTERS_H

#include "numconv/EmitDigits.h"
#include "numconv/ExponentText.h"

#include <cstdint>

constexpr int kMostCharacters = 17;

/// A minus sign for negative `bits`. One more character follows in any case.
inline char* putSign(char* out, std::uint64_t bits)
{
    *out = '-';
    return out + (bits >> 63);
}

/// The digits of a number as characters: sixteen, and one more; zeros behind the last.
struct Characters {
    SixteenCharacters head;
    char last;
    int nonZero; ///< digits up to the last that is not 0
};

/// `width`, at most kMostCharacters, is not below the width of `integer`; zeros fill the front.
[[gnu::always_inline]] inline Characters charactersOf(std::uint64_t integer, int width)
{
    if (width <= 16) {
        const SixteenDigits digits(integer * g_tens[16 - width]);
        return {digits.characters(), '0', digits.significant(false)};
    }
    const SixteenDigits digits(integer / 10);
    const std::uint64_t last = integer % 10;
    return {digits.characters(), static_cast<char>('0' + last), digits.significant(last != 0)};
}

/// The first `count` digits, 1 to 17.
template<Counts counts>
inline char* putDigits(char* out, const Characters& digits, int count)
{
    if (count <= 16)
        return digits.head.put<counts>(out, count);
    out = digits.head.putAll(out);
    *out = digits.last;
    return out + 1;
}

/// The first `count` digits, a point behind `place` of them, 1 <= place <= count. One digit
/// may be followed by the point alone; else digits stand behind it.
template<Counts counts>
inline char* putAroundPoint(char* out, const Characters& digits, int count, int place)
{
    if (count <= 15)
        return digits.head.withPoint(place).put<counts>(out, count + 1);
    if (place <= 15) {
        out = digits.head.withPoint(place).putAll(out);
        *out++ = digits.head.last();
    } else {
        out = digits.head.putAll(out);
        *out++ = '.';
    }
    *out = digits.last;
    return out + (count - 16);
}

/// The g text of style 0 without its sign: `count` digits, 1 to 17 and not above
/// `precision`, the value being 0.d1d2... * 10^point.
inline void putGeneral(char* out, const Characters& digits, int count, int precision, int point, int expChar)
{
    if (point < -3 || point > precision) {
        out = count > 1 ? putAroundPoint<Counts::differ>(out, digits, count, 1)
                        : putDigits<Counts::differ>(out, digits, 1);
        *out++ = static_cast<char>(expChar);
        out = putSignedExponent(out, std::int64_t{point} - 1);
    } else if (point < 1) {
        *out++ = '0';
        *out++ = '.';
        for (; point < 0; ++point)
            *out++ = '0';
        out = putDigits<Counts::differ>(out, digits, count);
    } else if (count > point) {
        out = putAroundPoint<Counts::differ>(out, digits, count, point);
    } else {
        out = putDigits<Counts::differ>(out, digits, point);
    }
    *out = '\0';
}

#endif

// Reads the text of a decimal number, narrow or wide, as far as it goes.
#ifndef TV_DECIMAL_SCAN_H
#define TV_DECIMAL_SCAN_H

#include <cstddef>
#include <cstdint>

/// The number is 0.d1d2... * 10^point with the digits that stand from `first` on. A point
/// may stand among them.
template<class Char>
struct DecimalText {
    const Char* end = nullptr; ///< behind the last character used; null: no number
    bool negative = false;
    std::uint64_t leading = 0;   ///< the value of the first 19 digits, or of all when fewer
    std::size_t digits = 0;      ///< from the first that is not 0 on; 0: the number is zero
    const Char* first = nullptr; ///< the first digit that is not 0
    std::int64_t point = 0;
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

    const Char* const start = s;
    std::uint64_t value = 0;
    while (digitOf(*s) < 10)
        value = value * 10 + digitOf(*s++);
    std::size_t read = static_cast<std::size_t>(s - start);
    std::int64_t behindPoint = 0;
    if (*s == Char('.')) {
        const Char* const fraction = ++s;
        while (digitOf(*s) < 10)
            value = value * 10 + digitOf(*s++);
        behindPoint = s - fraction;
        read += static_cast<std::size_t>(behindPoint);
    }
    if (read == 0)
        return number;
    number.end = s;

    const Char* first = start;
    std::size_t digits = read;
    if (*first == Char('0') || *first == Char('.')) {
        while (digits > 0 && (*first == Char('0') || *first == Char('.')))
            digits -= *first++ == Char('0') ? 1 : 0;
    }
    number.first = first;
    number.digits = digits;
    if (digits > kLeadingDigits) {
        value = 0;
        for (std::size_t i = 0; i < kLeadingDigits; ++first) {
            if (*first == Char('.'))
                continue;
            value = value * 10 + digitOf(*first);
            ++i;
        }
    }
    number.leading = value;
    number.point = static_cast<std::int64_t>(digits) - behindPoint;

    if (*s == Char('e') || *s == Char('E')) {
        ++s;
        bool negative = false;
        if (*s == Char('-') || *s == Char('+'))
            negative = *s++ == Char('-');
        if (digitOf(*s) < 10) {
            while (*s == Char('0'))
                ++s;
            int exponent = 0;
            for (; digitOf(*s) < 10; ++s) {
                if (exponent <= kLargestExponent)
                    exponent = exponent * 10 + static_cast<int>(digitOf(*s));
            }
            if (exponent > kLargestExponent)
                exponent = kLargestExponent;
            number.point += negative ? -exponent : exponent;
            number.end = s;
        }
    }
    return number;
}

#endif

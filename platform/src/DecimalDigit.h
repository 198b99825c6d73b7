// DecimalDigit.h - the decimal digits of every script of the basic plane.
#ifndef TV_PLATFORM_DECIMAL_DIGIT_H
#define TV_PLATFORM_DECIMAL_DIGIT_H

#include <algorithm>
#include <cstdint>
#include <iterator>

namespace tvPlatform {

/// Value 0..9 of a decimal digit, -1 for any other character.
inline int decimalDigit(wchar_t c)
{
    if (c >= L'0' && c <= L'9')
        return c - L'0';
    // Unicode's decimal digits come in runs of ten; these are the zeros, ascending.
    static constexpr std::uint16_t kZeros[] = {
        0x0660, 0x06F0, 0x07C0, 0x0966, 0x09E6, 0x0A66, 0x0AE6, 0x0B66, 0x0BE6, 0x0C66, 0x0CE6, 0x0D66,
        0x0DE6, 0x0E50, 0x0ED0, 0x0F20, 0x1040, 0x1090, 0x17E0, 0x1810, 0x1946, 0x19D0, 0x1A80, 0x1A90,
        0x1B50, 0x1BB0, 0x1C40, 0x1C50, 0xA620, 0xA8D0, 0xA900, 0xA9D0, 0xA9F0, 0xAA50, 0xABF0, 0xFF10,
    };
    const auto* above = std::upper_bound(std::begin(kZeros), std::end(kZeros), c);
    if (above == std::begin(kZeros))
        return -1;
    const int value = c - above[-1];
    return value <= 9 ? value : -1;
}

} // namespace tvPlatform

#endif

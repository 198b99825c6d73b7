// The exponent of e and g text.
#ifndef TV_EXPONENT_TEXT_H
#define TV_EXPONENT_TEXT_H

#include <cstdint>

/// Writes a sign and three digits, of larger exponents the last three; answers their end. The
/// exponent of any position of a point fits, which an int would not hold.
template<class Char>
inline Char* putSignedExponent(Char* out, std::int64_t exponent)
{
    const auto size = static_cast<std::uint32_t>(exponent < 0 ? -exponent : exponent);
    const std::uint32_t tens = size / 10;
    const std::uint32_t hundreds = size / 100;
    out[0] = static_cast<Char>(exponent < 0 ? '-' : '+');
    out[1] = static_cast<Char>('0' + hundreds % 10);
    out[2] = static_cast<Char>('0' + (tens - hundreds * 10));
    out[3] = static_cast<Char>('0' + (size - tens * 10));
    return out + 4;
}

#endif

// The exponent of e and g text.
#ifndef TV_EXPONENT_TEXT_H
#define TV_EXPONENT_TEXT_H

/// Writes a sign and three digits, of larger exponents the last three; answers their end.
template<class Char>
inline Char* putSignedExponent(Char* out, int exponent)
{
    const unsigned size =
        exponent < 0 ? 0u - static_cast<unsigned>(exponent) : static_cast<unsigned>(exponent);
    const unsigned tens = size / 10;
    const unsigned hundreds = size / 100;
    out[0] = static_cast<Char>(exponent < 0 ? '-' : '+');
    out[1] = static_cast<Char>('0' + hundreds % 10);
    out[2] = static_cast<Char>('0' + (tens - hundreds * 10));
    out[3] = static_cast<Char>('0' + (size - tens * 10));
    return out + 4;
}

#endif

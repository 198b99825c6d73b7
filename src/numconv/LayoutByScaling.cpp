#include "numconv/LayoutByScaling.h"

#include "numconv/DoubleBits.h"
#include "numconv/LayoutInRegisters.h"
#include "numconv/NumberKernels.h"
#include "numconv/ScaledInteger.h"

#include <algorithm>

bool plainFixedText(char* out, double value, int precision)
{
    const std::uint64_t bits = bitsOf(value);
    std::uint64_t integer;
    if (!isOrdinary(bits) || precision >= kMostCharacters || !gapIsBelowPlace(bits, precision) ||
        !scaledInteger(bits & ~kSignBit, precision, &integer) || integer >= g_tens[kMostCharacters])
        return false;
    const int width = std::max(decimalWidth(integer), precision + 1);
    const Characters digits = charactersOf(integer, width);
    out = putSign(out, bits);
    out = precision > 0 ? putAroundPoint<Counts::alike>(out, digits, width, width - precision)
                        : putDigits<Counts::alike>(out, digits, width);
    *out = '\0';
    return true;
}

bool plainExponentText(char* out, double value, int precision, int expChar)
{
    const std::uint64_t bits = bitsOf(value);
    std::uint64_t integer;
    int power;
    if (!isOrdinary(bits) || precision >= kMostCharacters ||
        !significantInteger(bits & ~kSignBit, precision + 1, &integer, &power))
        return false;
    out = putAroundPoint<Counts::alike>(putSign(out, bits), charactersOf(integer, precision + 1),
                                        precision + 1, 1);
    *out++ = static_cast<char>(expChar);
    *putSignedExponent(out, power) = '\0';
    return true;
}

bool plainGeneralText(char* out, double value, int precision, int expChar, int style)
{
    const std::uint64_t bits = bitsOf(value);
    std::uint64_t integer;
    int power;
    if (!isOrdinary(bits) || style != 0 || precision < 1 || precision > kMostCharacters ||
        !significantInteger(bits & ~kSignBit, precision, &integer, &power))
        return false;
    const Characters digits = charactersOf(integer, precision);
    putGeneral(putSign(out, bits), digits, digits.nonZero, precision, power + 1, expChar);
    return true;
}

bool fixedText(char* out, double value, int precision)
{
    return numberKernels().fixedText(out, value, precision);
}

bool exponentText(char* out, double value, int precision, int expChar)
{
    return numberKernels().exponentText(out, value, precision, expChar);
}

bool generalText(char* out, double value, int precision, int expChar, int style)
{
    return numberKernels().generalText(out, value, precision, expChar, style);
}

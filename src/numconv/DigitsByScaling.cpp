#include "numconv/DigitsByScaling.h"

#include "numconv/DoubleBits.h"
#include "numconv/EmitDigits.h"
#include "numconv/PowersOfTen.h"

#include <algorithm>

namespace {

constexpr std::uint64_t kHalf = std::uint64_t{1} << 63;

// A value as whole + fraction / 2^64. Exact: the lowest bit of the fraction also stands
// for all bits below. Else the value is larger by less than 2 / 2^64.
struct Scaled {
    std::uint64_t whole;
    std::uint64_t fraction;
    bool exact;
};

// |bits| with its leading bit moved to the top: mantissa * 2^exponent.
DoubleParts normalisedParts(std::uint64_t bits)
{
    DoubleParts parts = partsOf(bits);
    const int zeros = std::countl_zero(parts.mantissa);
    return {parts.mantissa << zeros, parts.exponent - zeros};
}

// The value times 10^power. False when the result is 2^63 or more.
bool scale(const DoubleParts& parts, int power, Scaled& out)
{
    const TenProduct product = multiply(parts.mantissa, tenPower(power));
    // The product's upper 64 bits, moved right by this, are the whole part.
    const int right = -(parts.exponent + floorLog2Pow10(power) + 1);
    if (right < 1)
        return false;
    bool rest = product.cut;
    if (right < 64) {
        out.whole = product.high >> right;
        out.fraction = product.high << (64 - right) | product.low >> right;
        rest |= (product.low << (64 - right)) != 0;
    } else {
        // Below one half everything rounds alike; the place of the leading bit is enough.
        const int down = std::min(right - 64, 63);
        out.whole = 0;
        out.fraction = product.high >> down;
        rest |= product.low != 0 || (out.fraction << down) != product.high;
    }
    out.exact = isExactTenPower(power);
    out.fraction |= rest && out.exact ? 1 : 0;
    return true;
}

bool roundToInteger(const Scaled& x, std::uint64_t* integer)
{
    if (!x.exact && x.fraction - (kHalf - 2) <= 2)
        return false;
    *integer = x.whole + (x.fraction > kHalf - (x.whole & 1) ? 1 : 0);
    return true;
}

// floor(log10(value)): the guess from the leading bit is at most one too small.
int floorLog10(const DoubleParts& parts)
{
    const int guess = floorLog10Pow2(parts.exponent + 63);
    const TenPower& next = tenPower(guess + 1);
    const bool sameBinade = floorLog2Pow10(guess + 1) == parts.exponent + 63;
    const bool notBelow = parts.mantissa > next.high || (parts.mantissa == next.high && next.low == 0);
    return guess + (sameBinade && notBelow ? 1 : 0);
}

int significantDigits(std::uint64_t bits, int count, char* out, int* point)
{
    count = std::max(count, 1);
    std::uint64_t integer;
    int power;
    if (count > kMostScaledDigits || !significantInteger(bits, count, &integer, &power))
        return -1;
    *point = power + 1;
    int width;
    return emitDigits(integer, out, &width);
}

int digitsThroughPlace(std::uint64_t bits, int places, char* out, int* point)
{
    std::uint64_t integer;
    if (static_cast<unsigned>(places) > kMostScaledDigits || !scaledInteger(bits, places, &integer))
        return -1;
    if (integer == 0) {
        *point = -places;
        return 0;
    }
    int width;
    const int digits = emitDigits(integer, out, &width);
    *point = width - places;
    return digits;
}

// The value is scaled so that one unit is at most the width of what reads back as the
// value, and ten units are more. Then at most one multiple of ten reads back, and it is
// the shortest; else an integer does, the nearest one unless the lower gap is too narrow.
int shortestDigits(std::uint64_t bits, char* out, int* point)
{
    constexpr int kFractionBits = 59; // ten units fit a signed number
    constexpr std::int64_t kDoubt = 2;
    const DoubleParts parts = partsOf(bits);
    const bool halfBelow = lowerGapIsHalf(bits);
    const int power =
        halfBelow ? floorLog10ThreeQuartersPow2(parts.exponent) : floorLog10Pow2(parts.exponent);
    const TenPower& scaling = tenPower(-power);
    const int up = parts.exponent + floorLog2Pow10(-power);
    const TenProduct product = multiply(parts.mantissa << (up + 1), scaling);
    const std::uint64_t whole = product.high;
    const std::uint64_t tens = whole / 10;

    // Distances in units of 2^-59, each less than two off.
    const std::uint64_t fraction = product.low >> (64 - kFractionBits);
    const std::uint64_t toLower = ((whole - tens * 10) << kFractionBits) + fraction;
    const std::uint64_t toUpper = (std::uint64_t{10} << kFractionBits) - toLower;
    const std::uint64_t upperGap = scaling.high >> (64 - kFractionBits - up);
    const std::uint64_t lowerGap = halfBelow ? upperGap >> 1 : upperGap;

    const auto beyondLower = static_cast<std::int64_t>(toLower - lowerGap);
    const auto beyondUpper = static_cast<std::int64_t>(toUpper - upperGap);
    std::uint64_t integer;
    int unit = power + 1;
    if (beyondLower < -kDoubt) {
        integer = tens;
    } else if (beyondUpper < -kDoubt) {
        integer = tens + 1;
    } else {
        if (beyondLower <= kDoubt || beyondUpper <= kDoubt || product.low - (kHalf - 2) <= 2)
            return -1;
        bool next = product.low > kHalf;
        if (halfBelow && !next) {
            const auto beyond = static_cast<std::int64_t>(fraction - lowerGap);
            if (beyond >= -kDoubt && beyond <= kDoubt)
                return -1;
            next = beyond > 0;
        }
        integer = whole + (next ? 1 : 0);
        unit = power;
    }
    int width;
    const int digits = emitDigits(integer, out, &width);
    *point = unit + width;
    return digits;
}

} // namespace

bool scaledInteger(std::uint64_t bits, int places, std::uint64_t* integer)
{
    Scaled x;
    return scale(normalisedParts(bits), places, x) && roundToInteger(x, integer);
}

bool significantInteger(std::uint64_t bits, int count, std::uint64_t* integer, int* power)
{
    const DoubleParts parts = normalisedParts(bits);
    *power = floorLog10(parts);
    Scaled x;
    if (!scale(parts, count - 1 - *power, x) || !roundToInteger(x, integer))
        return false;
    if (*integer == g_tens[count]) { // nines that were rounded up
        *integer = g_tens[count - 1];
        ++*power;
    }
    return true;
}

bool gapIsBelowPlace(std::uint64_t bits, int places)
{
    return partsOf(bits).exponent < floorLog2Pow10(-places);
}

int scaledDigits(std::uint64_t bits, int mode, int ndigits, char* out, int* point)
{
    bits &= ~kSignBit;
    switch (mode) {
    case 0:
        return shortestDigits(bits, out, point);
    case 2:
        return significantDigits(bits, ndigits, out, point);
    case 3:
        return digitsThroughPlace(bits, ndigits, out, point);
    case 4:
        // Any 15 digits lie further apart than normal doubles do.
        if (ndigits <= 15 && bits >= kHiddenBit)
            return significantDigits(bits, ndigits, out, point);
        break;
    case 5:
        if (static_cast<unsigned>(ndigits) <= kMostScaledDigits && gapIsBelowPlace(bits, ndigits))
            return digitsThroughPlace(bits, ndigits, out, point);
        break;
    default:
        return -1;
    }
    const int digits = shortestDigits(bits, out, point);
    if (digits < 0)
        return -1;
    if (mode == 4)
        return digits <= std::max(ndigits, 1) ? digits : significantDigits(bits, ndigits, out, point);
    return std::int64_t{digits} - *point <= ndigits ? digits : -1;
}

// A double times a power of ten, rounded to an integer by one multiplication.
#ifndef TV_SCALED_INTEGER_H
#define TV_SCALED_INTEGER_H

#include "numconv/DoubleBits.h"
#include "numconv/EmitDigits.h"
#include "numconv/PowersOfTen.h"

#include <algorithm>
#include <bit>
#include <cstdint>

/// Digits that fit a number of 64 bits.
constexpr int kMostScaledDigits = 18;

/// Half of one, as a fraction of 64 bits.
constexpr std::uint64_t kHalf = std::uint64_t{1} << 63;

/// A value as whole + fraction / 2^64. Exact: the lowest bit of the fraction also stands
/// for all bits below. Else the value is larger by less than 2 / 2^64.
struct Scaled {
    std::uint64_t whole;
    std::uint64_t fraction;
    bool exact;
};

/// |bits| with its leading bit moved to the top: mantissa * 2^exponent.
inline DoubleParts normalisedParts(std::uint64_t bits)
{
    DoubleParts parts = partsOf(bits);
    const int zeros = std::countl_zero(parts.mantissa);
    return {parts.mantissa << zeros, parts.exponent - zeros};
}

/// The value times 10^power. False when the result is 2^63 or more.
[[gnu::always_inline]] inline bool scale(const DoubleParts& parts, int power, Scaled& out)
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

/// To nearest, ties to even; false when the value is too close to a tie to tell.
inline bool roundToInteger(const Scaled& x, std::uint64_t* integer)
{
    if (!x.exact && x.fraction - (kHalf - 2) <= 2)
        return false;
    *integer = x.whole + (x.fraction > kHalf - (x.whole & 1) ? 1 : 0);
    return true;
}

/// floor(log10(value)): the guess from the leading bit is at most one too small.
inline int floorLog10(const DoubleParts& parts)
{
    const int guess = floorLog10Pow2(parts.exponent + 63);
    const TenPower& next = tenPower(guess + 1);
    const bool sameBinade = floorLog2Pow10(guess + 1) == parts.exponent + 63;
    const bool notBelow = parts.mantissa > next.high || (parts.mantissa == next.high && next.low == 0);
    return guess + (sameBinade && notBelow ? 1 : 0);
}

/// |bits| times 10^places rounded to the nearest integer, ties to even, 0 <= places <= 18.
/// False when it cannot tell or when the result is 2^63 or more.
[[gnu::always_inline]] inline bool scaledInteger(std::uint64_t bits, int places, std::uint64_t* integer)
{
    Scaled x;
    return scale(normalisedParts(bits), places, x) && roundToInteger(x, integer);
}

/// The `count` leading digits of |bits| as an integer of `count` digits, ties to even;
/// `*power` is the place of the first. 1 <= count <= kMostScaledDigits. False when it
/// cannot tell.
[[gnu::always_inline]] inline bool significantInteger(std::uint64_t bits, int count, std::uint64_t* integer,
                                                      int* power)
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

/// True when modes 5 and 3 give the same digits for `places`: the doubles around |bits|
/// lie closer than one unit of the last place.
inline bool gapIsBelowPlace(std::uint64_t bits, int places)
{
    return partsOf(bits).exponent < floorLog2Pow10(-places);
}

#endif

#include "numconv/DigitsByScaling.h"

#include "numconv/DoubleBits.h"
#include "numconv/EmitDigits.h"
#include "numconv/PowersOfTen.h"
#include "numconv/ScaledInteger.h"
#include "numconv/ShortestDecimal.h"

#include <algorithm>

namespace {

int significantDigits(std::uint64_t bits, int count, char* out, int* point)
{
    count = std::max(count, 1);
    std::uint64_t integer;
    int power;
    if (count > kMostScaledDigits || !significantInteger(bits, count, &integer, &power))
        return -1;
    *point = power + 1;
    int width;
    return count > 17 ? emitDigits(integer, out, &width)
                      : emitSeventeenDigits(integer * g_tens[17 - count], out);
}

int digitsThroughPlace(std::uint64_t bits, int places, char* out, int* point)
{
    std::uint64_t integer;
    if (static_cast<unsigned>(places) > kMostScaledDigits || !scaledInteger(bits, places, &integer))
        return -1;
    if (integer == 0) {
        *point = -places;
        *out = '\0';
        return 0;
    }
    int width;
    const int digits = emitDigits(integer, out, &width);
    *point = width - places;
    return digits;
}

// The shortest digits also of subnormal values and of powers of two. The value is scaled so that one unit is
// at most the width of what reads back as the value, and ten units are more. Then at most one multiple of ten
// reads back, and it is the shortest; else an integer does, the nearest one unless the lower gap is too
// narrow.
[[gnu::noinline, gnu::cold]] int shortestOfAny(std::uint64_t bits, char* out, int* point)
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

    // Which of the two it is follows from bits as good as random, so it is no branch.
    const auto beyondLower = static_cast<std::int64_t>(toLower - lowerGap);
    const auto beyondUpper = static_cast<std::int64_t>(toUpper - upperGap);
    const bool lowerTen = beyondLower < -kDoubt;
    const bool upperTen = beyondUpper < -kDoubt;
    const bool isTen = lowerTen | upperTen;
    const bool inDoubt = (beyondLower <= kDoubt) | (beyondUpper <= kDoubt) | (product.low - (kHalf - 2) <= 2);
    if (!isTen & inDoubt) [[unlikely]]
        return -1;
    bool next = product.low > kHalf;
    if (halfBelow && !isTen && !next) [[unlikely]] {
        const auto beyond = static_cast<std::int64_t>(fraction - lowerGap);
        if (beyond >= -kDoubt && beyond <= kDoubt)
            return -1;
        next = beyond > 0;
    }
    const std::uint64_t ten = (tens + (lowerTen ? 0 : 1)) * 10;
    const std::uint64_t one = whole + (next ? 1 : 0);
    // The zero of a ten is cut with the others.
    const std::uint64_t integer = one ^ ((one ^ ten) & (std::uint64_t{0} - isTen));
    if (parts.mantissa < kHiddenBit) [[unlikely]] {
        int width;
        const int digits = emitDigits(integer, out, &width);
        *point = power + width;
        return digits;
    }
    // From 2^52 on, as a unit is at most the lowest bit, and below 10^17.
    const bool sixteen = integer < g_tens[16];
    *point = power + (sixteen ? 16 : 17);
    return emitSeventeenDigits(integer * (sixteen ? 10 : 1), out);
}

} // namespace

int shortestScaledDigits(std::uint64_t bits, char* out, int* point)
{
    if (!isEvenlySpaced(bits)) [[unlikely]]
        return shortestOfAny(bits, out, point);
    const ShortestDecimal decimal = shortestDecimal(bits);
    if (!decimal.sure) [[unlikely]]
        return -1;
    const std::uint64_t skip = decimal.startsWithZero();
    *point = -static_cast<int>(decimal.minusEnd) - static_cast<int>(skip);
    const std::uint64_t sixteen = decimal.tens + ((decimal.tens * 9 + decimal.ones) & -skip);
    return emitSixteenAndOne(sixteen, static_cast<unsigned>(decimal.ones & (skip - 1)), out);
}

int scaledDigits(std::uint64_t bits, int mode, int ndigits, char* out, int* point)
{
    bits &= ~kSignBit;
    if (mode == 0)
        return shortestScaledDigits(bits, out, point);
    switch (mode) {
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
    const int digits = shortestScaledDigits(bits, out, point);
    if (digits < 0)
        return -1;
    if (mode == 4)
        return digits <= std::max(ndigits, 1) ? digits : significantDigits(bits, ndigits, out, point);
    return std::int64_t{digits} - *point <= ndigits ? digits : -1;
}

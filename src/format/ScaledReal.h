// ScaledReal.h - positive binary128 numbers in 128-bit integers.
//
// Each operation gives the bits that the binary128 operation gives: rounded to 113 bits, to
// nearest, ties to even. Exponents of doubles and of the powers that scale them are far from
// the ends of binary128's range, so nothing overflows and nothing is subnormal.
#ifndef TV_FORMAT_SCALED_REAL_H
#define TV_FORMAT_SCALED_REAL_H

#include "format/Quad.h"

#include <bit>
#include <cstdint>

namespace TvFormatDetail {

__extension__ typedef unsigned __int128 UInt128;

/// The value significand * 2^exponent. Normalised when the significand has 113 bits; the
/// remainders of digit extraction may have fewer.
struct ScaledReal {
    UInt128 significand;
    int exponent;
};

constexpr int kQuadBits = 113;

inline int bitLength(UInt128 v)
{
    const auto high = static_cast<std::uint64_t>(v >> 64);
    return high ? 128 - std::countl_zero(high) : 64 - std::countl_zero(static_cast<std::uint64_t>(v));
}

/// Drops the low `shift` bits (1 and up), rounding; `sticky` tells of set bits below them.
inline UInt128 shiftRounded(UInt128 v, int shift, bool sticky)
{
    const UInt128 half = UInt128{1} << (shift - 1);
    const UInt128 kept = v >> shift;
    const UInt128 dropped = v & (half * 2 - 1);
    const bool up = dropped > half || (dropped == half && (sticky || (kept & 1)));
    return kept + up;
}

/// A number with more than 113 bits, rounded. The result may be 2^113, which counts as one.
inline ScaledReal roundedReal(UInt128 v, int exponent, bool sticky)
{
    const int excess = bitLength(v) - kQuadBits;
    if (excess <= 0)
        return {v, exponent};
    UInt128 kept = shiftRounded(v, excess, sticky);
    exponent += excess;
    if (kept >> kQuadBits) {
        kept >>= 1;
        exponent += 1;
    }
    return {kept, exponent};
}

/// A positive finite double, exactly.
inline ScaledReal realOf(double value)
{
    const auto bits = std::bit_cast<std::uint64_t>(value);
    const int field = static_cast<int>(bits >> 52 & 0x7FF);
    std::uint64_t fraction = bits & ((std::uint64_t{1} << 52) - 1);
    int exponent = -1074;
    if (field) {
        fraction |= std::uint64_t{1} << 52;
        exponent += field - 1;
    }
    const int shift = kQuadBits - bitLength(fraction);
    return {UInt128{fraction} << shift, exponent - shift};
}

/// A positive normal binary128 number.
inline ScaledReal realOf(TvQuad value)
{
    constexpr int fractionBits = kQuadBits - 1;
    constexpr int bias = 16383;
    const auto bits = std::bit_cast<UInt128>(value);
    const UInt128 one = UInt128{1} << fractionBits;
    return {(bits & (one - 1)) | one, static_cast<int>(bits >> fractionBits) - bias - fractionBits};
}

/// Whether a >= b, both normalised.
inline bool isAtLeast(const ScaledReal& a, const ScaledReal& b)
{
    return a.exponent != b.exponent ? a.exponent > b.exponent : a.significand >= b.significand;
}

/// a * b, both normalised.
inline ScaledReal product(const ScaledReal& a, const ScaledReal& b)
{
    const auto aLow = static_cast<std::uint64_t>(a.significand);
    const auto aHigh = static_cast<std::uint64_t>(a.significand >> 64);
    const auto bLow = static_cast<std::uint64_t>(b.significand);
    const auto bHigh = static_cast<std::uint64_t>(b.significand >> 64);
    const UInt128 low = UInt128{aLow} * bLow;
    // Each cross product has at most 113 bits, so that their sum with a carry fits.
    const UInt128 middle =
        UInt128{aLow} * bHigh + UInt128{aHigh} * bLow + static_cast<std::uint64_t>(low >> 64);
    const UInt128 high = UInt128{aHigh} * bHigh + (middle >> 64);
    // high * 2^128 + rest has 225 or 226 bits; the low 98 only matter as sticky.
    const auto restHigh = static_cast<std::uint64_t>(middle);
    const UInt128 top = high << 30 | restHigh >> 34;
    const bool sticky =
        (restHigh & ((std::uint64_t{1} << 34) - 1)) != 0 || static_cast<std::uint64_t>(low) != 0;
    return roundedReal(top, a.exponent + b.exponent + 98, sticky);
}

/// a + b; a is normalised or zero, b is normalised.
inline ScaledReal sum(const ScaledReal& a, const ScaledReal& b)
{
    if (a.significand == 0)
        return b;
    const bool aIsLarger = a.exponent >= b.exponent;
    const ScaledReal& large = aIsLarger ? a : b;
    const ScaledReal& small = aIsLarger ? b : a;
    constexpr int guard = 3;
    const int distance = large.exponent - small.exponent;
    const UInt128 shifted = small.significand << guard;
    const UInt128 aligned = distance < 128 ? shifted >> distance : 0;
    const bool sticky = distance < 128 ? aligned << distance != shifted : true;
    return roundedReal((large.significand << guard) + aligned, large.exponent - guard, sticky);
}

/// a / 10 for a normalised a in [10, 16).
inline ScaledReal tenth(const ScaledReal& a)
{
    const UInt128 scaled = a.significand << 3;
    const UInt128 quotient = scaled / 10;
    const auto rest = static_cast<unsigned>(scaled % 10);
    const bool up = rest > 5 || (rest == 5 && (quotient & 1));
    return {quotient + up, a.exponent - 3};
}

} // namespace TvFormatDetail

#endif

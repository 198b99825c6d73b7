// The one place where a value is rounded to a double, in integers.
#ifndef TV_ROUND_TO_DOUBLE_H
#define TV_ROUND_TO_DOUBLE_H

#include "numconv/DoubleBits.h"

#include <cstdint>

/// The bits of the double nearest to mantissa * 2^exponent, ties to even; `more`: the value
/// is larger than that by less than one unit of the mantissa. The mantissa has its highest
/// bit or the one below set. Infinity when the value is too large.
inline std::uint64_t roundToDouble(std::uint64_t mantissa, int exponent, bool more)
{
    // No branches where the bits decide: they are as good as random.
    const int low = static_cast<int>(~mantissa >> 63);
    mantissa <<= low;
    exponent -= low;
    // 11 bits fall away, more of them in the subnormal range.
    int dropped = 11;
    if (exponent + dropped < kLowestExponent)
        dropped = kLowestExponent - exponent;
    if (dropped > 64)
        return 0;
    const std::uint64_t kept = dropped == 64 ? 0 : mantissa >> dropped;
    const std::uint64_t half = std::uint64_t{1} << (dropped - 1);
    const std::uint64_t rest = mantissa & (half | (half - 1));
    const std::uint64_t odd = kept & 1;
    const std::uint64_t up = rest > half - (odd | (more ? 1 : 0)) ? 1 : 0;
    // The hidden bit adds one to the exponent field, as does a carry out of the mantissa.
    const int field = exponent + dropped - kLowestExponent;
    if (field >= 2046)
        return kInfinityBits;
    return (static_cast<std::uint64_t>(field) << 52) + kept + up;
}

#endif

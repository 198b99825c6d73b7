// A double taken apart, and the exponent arithmetic that all conversions share.
#ifndef TV_DOUBLE_BITS_H
#define TV_DOUBLE_BITS_H

#include <bit>
#include <cstdint>

__extension__ typedef unsigned __int128 Uint128;

constexpr std::uint64_t kSignBit = std::uint64_t{1} << 63;
constexpr std::uint64_t kHiddenBit = std::uint64_t{1} << 52;
constexpr std::uint64_t kInfinityBits = std::uint64_t{0x7FF} << 52;

/// Exponent of the lowest bit of a subnormal number.
constexpr int kLowestExponent = -1074;

inline std::uint64_t bitsOf(double value) { return std::bit_cast<std::uint64_t>(value); }
inline double doubleOf(std::uint64_t bits) { return std::bit_cast<double>(bits); }

/// |value| = mantissa * 2^exponent with the lowest exponent that doubles of its size have.
struct DoubleParts {
    std::uint64_t mantissa;
    int exponent;
};

/// For finite values; the sign bit of `bits` is ignored.
inline DoubleParts partsOf(std::uint64_t bits)
{
    const int field = static_cast<int>(bits >> 52) & 0x7FF;
    const std::uint64_t fraction = bits & (kHiddenBit - 1);
    if (field == 0)
        return {fraction, kLowestExponent};
    return {fraction | kHiddenBit, field + kLowestExponent - 1};
}

/// True for finite values other than 0.
inline bool isOrdinary(std::uint64_t bits) { return (bits & ~kSignBit) - 1 < kInfinityBits - 1; }

/// The exponent as it is stored, of either sign.
inline std::uint64_t exponentField(std::uint64_t bits) { return bits >> 52 & 0x7FF; }

/// True for finite values, of either sign, that have a hidden bit.
inline bool isNormal(std::uint64_t bits) { return exponentField(bits) - 1 < 0x7FE; }

/// True when the next double below is only half as far away as the next above.
inline bool lowerGapIsHalf(std::uint64_t bits)
{
    return (bits & (kHiddenBit - 1)) == 0 && (bits & kInfinityBits) > kHiddenBit;
}

// Multiples of a rounded logarithm, exact as far as is said, which is farther than
// conversions go.

/// floor(log10(2^e)), right for |e| <= 1650 and no farther. Doubles need |e| <= 1074.
constexpr int floorLog10Pow2(int e) { return (e * 78913) >> 18; }

/// floor(log10(3/4 * 2^e)), right for |e| <= 1100 at least. Doubles need -1074 to 971.
constexpr int floorLog10ThreeQuartersPow2(int e)
{
    return static_cast<int>((e * std::int64_t{1292913986} - 536607787) >> 32);
}

/// floor(log2(10^e)), right for |e| <= 642 and no farther. The table of powers needs
/// |e| <= 343.
constexpr int floorLog2Pow10(int e) { return (e * 217706) >> 16; }

#endif

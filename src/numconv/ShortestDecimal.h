// The shortest decimal of a double by one multiplication.
#ifndef TV_SHORTEST_DECIMAL_H
#define TV_SHORTEST_DECIMAL_H

#include "numconv/DoubleBits.h"
#include "numconv/PowersOfTen.h"

#include <cstdint>

/// The seventeen digits of 10 * tens + ones behind a point, times 10^end; sometimes the first
/// of them is 0.
struct ShortestDecimal {
    std::uint64_t tens;
    std::uint64_t ones;
    std::int64_t minusEnd;
    bool sure; ///< else the rest is not to be used

    /// 1 when the first digit is 0, else 0.
    std::uint64_t startsWithZero() const
    {
        constexpr std::uint64_t kSixteenDigits = 1000000000000000;
        return (tens - kSixteenDigits) >> 63;
    }
};

/// How the doubles of one exponent are scaled.
struct ShortestScaling {
    std::int16_t minusEnd;
    std::uint8_t right;
};

struct ShortestScalings {
    ShortestScaling of[2048]; // by the exponent's field
};

// One unit is at most the distance of two doubles, ten units are more.
constexpr ShortestScalings makeShortestScalings()
{
    ShortestScalings all{};
    for (int field = 1; field < 2047; ++field) {
        const int exponent = field + kLowestExponent - 1;
        const int power = floorLog10Pow2(exponent);
        all.of[field].minusEnd = static_cast<std::int16_t>(-power - 17);
        all.of[field].right = static_cast<std::uint8_t>(-exponent - floorLog2Pow10(-power - 1));
    }
    return all;
}

alignas(64) inline constexpr ShortestScalings g_shortestScalings = makeShortestScalings();

/// True for the doubles that shortestDecimal takes: normal, and as far from the one below as
/// from the one above.
inline bool isEvenlySpaced(std::uint64_t bits) { return isNormal(bits) && bits << 12 != 0; }

// At most one multiple of ten reads back, and it is the shortest; else the nearest integer does.
// Which of them it is follows from bits as good as random, so no branch asks.
[[gnu::always_inline]] inline ShortestDecimal shortestDecimal(std::uint64_t bits)
{
    const ShortestScaling& scaling = g_shortestScalings.of[exponentField(bits)];
    const std::int64_t minusEnd = scaling.minusEnd;
    const TenPower& power = g_tenPowers[16 - kLowestTenPower + minusEnd];
    const std::uint64_t sixteenfold = bits << 12 >> 8 | kHiddenBit << 4;
    const TenProduct product = multiply(sixteenfold >> scaling.right, power);
    const std::uint64_t tens = product.high >> 3;

    // In units of ten / 2^64. What is behind the tens is larger by less than 1.25, half the distance
    // of two doubles by less than 1.5; so the way to the nearer ten, less half that distance, is
    // less than 2 off.
    constexpr std::uint64_t kDoubt = 2;
    const std::uint64_t behind = product.high << 61 | product.low >> 3;
    const auto upper = static_cast<std::uint64_t>(static_cast<std::int64_t>(behind) >> 63);
    const std::uint64_t outside = (behind ^ upper) - (power.high >> scaling.right);
    const auto isTen = static_cast<std::uint64_t>(static_cast<std::int64_t>(outside) >> 63);

    // The nearest digit, never the tenth: that ten would read back. Ten times what is behind the
    // tens is larger by less than 13.
    const Uint128 tenfold = static_cast<Uint128>(behind) * 10;
    const auto rest = static_cast<std::uint64_t>(tenfold);
    const std::uint64_t ones = static_cast<std::uint64_t>(tenfold >> 64) + (rest >> 63);
    const bool doubt = outside + kDoubt <= 2 * kDoubt || (kSignBit - rest <= 13 && !isTen);
    return {tens - (upper & isTen), ones & ~isTen, minusEnd, !doubt};
}

#endif

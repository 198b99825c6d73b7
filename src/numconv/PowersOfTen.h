// The leading 128 bits of the powers of ten that conversions between doubles and decimal
// text need.
#ifndef TV_POWERS_OF_TEN_H
#define TV_POWERS_OF_TEN_H

#include "numconv/DoubleBits.h"

#include <cstdint>

constexpr int kLowestTenPower = -343;
constexpr int kHighestTenPower = 343;

/// Powers from 0 to this one fit 128 bits and are exact.
constexpr int kHighestExactTenPower = 55;

/// 10^p cut to 128 bits: (high * 2^64 + low) * 2^(floorLog2Pow10(p) - 127), with the
/// highest bit set.
struct TenPower {
    std::uint64_t high;
    std::uint64_t low;
};

[[gnu::visibility("hidden")]] extern const TenPower g_tenPowers[kHighestTenPower - kLowestTenPower + 1];

inline const TenPower& tenPower(int p) { return g_tenPowers[p - kLowestTenPower]; }

inline bool isExactTenPower(int p)
{
    return static_cast<unsigned>(p) <= static_cast<unsigned>(kHighestExactTenPower);
}

/// The upper 128 of the 192 bits of factor * power, and whether bits below were cut.
struct TenProduct {
    std::uint64_t high;
    std::uint64_t low;
    bool cut;
};

inline TenProduct multiply(std::uint64_t factor, const TenPower& power)
{
    const Uint128 below = static_cast<Uint128>(factor) * power.low;
    const Uint128 sum = static_cast<Uint128>(factor) * power.high + static_cast<std::uint64_t>(below >> 64);
    return {static_cast<std::uint64_t>(sum >> 64), static_cast<std::uint64_t>(sum),
            static_cast<std::uint64_t>(below) != 0};
}

#endif

// Decimal digits to a double by one multiplication with a power of ten.
#ifndef TV_DECIMAL_BY_PRODUCT_H
#define TV_DECIMAL_BY_PRODUCT_H

#include "numconv/PowersOfTen.h"
#include "numconv/RoundToDouble.h"

#include <bit>
#include <cstdint>

/// The bits of the double nearest to leading * 10^power, `leading` not 0; `cut`: `leading`
/// has 19 digits, and the value is larger by less than one unit of it. False when it cannot
/// tell; `bits` is then within one unit in the last place.
inline bool doubleByProduct(std::uint64_t leading, std::int64_t power, bool cut, std::uint64_t& bits)
{
    // Zero and infinity for every `leading` of 64 bits.
    if (power < kLowestTenPower || power > 308) {
        bits = power > 0 ? kInfinityBits : 0;
        return true;
    }
    const int ten = static_cast<int>(power);
    const int zeros = std::countl_zero(leading);
    const TenProduct product = multiply(leading << zeros, tenPower(ten));
    const int exponent = floorLog2Pow10(ten) + 1 - zeros;

    // A cut power makes the product smaller by less than one unit of `low`, and the value
    // is never exactly that product.
    const bool exactPower = isExactTenPower(ten);
    bits = roundToDouble(product.high, exponent, !exactPower || product.low != 0 || product.cut);
    if (!cut && (exactPower || product.low != ~std::uint64_t{0}))
        return true;

    // Digits that were left out add less than one unit of `leading`.
    const std::uint64_t above = product.high + 1 + (cut ? std::uint64_t{1} << zeros : 0);
    return above > product.high && bits == roundToDouble(above, exponent, true);
}

/// The same for a value that nothing was cut from, with the upper half of the power alone.
/// False close to a double or to the middle between two, and where the result may be
/// subnormal or infinite; `bits` is then untouched.
[[gnu::always_inline]] inline bool doubleByUpperProduct(std::uint64_t leading, std::int64_t power,
                                                        std::uint64_t& bits)
{
    // 64 bits are below 10^20: results stay between 10^-285 and 10^305.
    constexpr std::uint64_t largest = 285;
    if (static_cast<std::uint64_t>(power) + largest > 2 * largest) [[unlikely]]
        return false;
    const int ten = static_cast<int>(power);
    const int zeros = std::countl_zero(leading);
    const Uint128 product = static_cast<Uint128>(leading << zeros) * tenPower(ten).high;
    const auto high = static_cast<std::uint64_t>(product >> 64);
    // The lower half of the power adds less than one to `high`.
    if (((high + 1) & 0x1FF) <= 1) [[unlikely]]
        return false;
    const int top = static_cast<int>(high >> 63);
    const std::uint64_t twice = high >> (9 + top);
    const int field = floorLog2Pow10(ten) + 11 - zeros + top - kLowestExponent;
    bits = (static_cast<std::uint64_t>(field) << 52) + ((twice + 1) >> 1);
    return true;
}

#endif

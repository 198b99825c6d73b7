// Decimal digits to a double by one multiplication with a power of ten.
#ifndef TV_DECIMAL_BY_PRODUCT_H
#define TV_DECIMAL_BY_PRODUCT_H

#include "numconv/PowersOfTen.h"
#include "numconv/RoundToDouble.h"

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

#endif

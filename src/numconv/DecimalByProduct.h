// Decimal digits to a double by one multiplication with a power of ten.
#ifndef TV_DECIMAL_BY_PRODUCT_H
#define TV_DECIMAL_BY_PRODUCT_H

#include "numconv/DecimalScan.h"
#include "numconv/PowersOfTen.h"
#include "numconv/RoundToDouble.h"

#include <cstddef>
#include <cstdint>

/// The bits of the double nearest to 0.d1d2... * 10^point. `leading` is the value of the
/// first 19 of the `digits` digits, not 0. False when it cannot tell; `bits` is then
/// within one unit in the last place.
inline bool doubleByProduct(std::uint64_t leading, std::size_t digits, std::int64_t point,
                            std::uint64_t& bits)
{
    if (point > 309 || point < -323) {
        bits = point > 0 ? kInfinityBits : 0;
        return true;
    }
    const bool cutDigits = digits > kLeadingDigits;
    const int power = static_cast<int>(point) - static_cast<int>(cutDigits ? kLeadingDigits : digits);
    const int zeros = std::countl_zero(leading);
    const TenProduct product = multiply(leading << zeros, tenPower(power));
    const int exponent = floorLog2Pow10(power) + 1 - zeros;

    // A cut power makes the product smaller by less than one unit of `low`, and the value
    // is never exactly that product.
    const bool exactPower = isExactTenPower(power);
    bits = roundToDouble(product.high, exponent, !exactPower || product.low != 0 || product.cut);
    if (!cutDigits && (exactPower || product.low != ~std::uint64_t{0}))
        return true;

    // Digits that were left out add less than one unit of `leading`.
    const std::uint64_t above = product.high + 1 + (cutDigits ? std::uint64_t{1} << zeros : 0);
    return above > product.high && bits == roundToDouble(above, exponent, true);
}

#endif

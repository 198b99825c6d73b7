// Doubles to big integers and back.
#include "TvGdImpl.h"

#include "numconv/DoubleBits.h"

#include <cmath>

double TvGdImpl::ulp(double x)
{
    const int exponent = partsOf(bitsOf(x)).exponent;
    if (exponent <= kLowestExponent + 52)
        return doubleOf(std::uint64_t{1} << (exponent - kLowestExponent));
    return doubleOf(static_cast<std::uint64_t>(exponent + 1023) << 52);
}

double TvGdImpl::b2d(Bigint* a, int* e)
{
    const auto word = [a](int fromTop) -> std::uint64_t {
        return fromTop < a->wds ? a->x[a->wds - 1 - fromTop] : 0;
    };
    const int zeros = hi0bits(static_cast<unsigned>(word(0)));
    *e = 32 - zeros;
    const std::uint64_t leading = (((word(0) << 32 | word(1)) << zeros) | ((word(2) << zeros) >> 32)) >> 11;
    return doubleOf((std::uint64_t{1023} << 52) | (leading & (kHiddenBit - 1)));
}

Bigint* TvGdImpl::d2b(double value, int* e, int* bits)
{
    DoubleParts parts = partsOf(bitsOf(value));
    const int zeros = parts.mantissa ? std::countr_zero(parts.mantissa) : 0;
    parts.mantissa >>= zeros;
    Bigint* b = Balloc(1);
    if (!b)
        return nullptr;
    b->x[0] = static_cast<unsigned>(parts.mantissa);
    b->x[1] = static_cast<unsigned>(parts.mantissa >> 32);
    b->wds = b->x[1] ? 2 : 1;
    *e = parts.exponent + zeros;
    *bits = static_cast<int>(std::bit_width(parts.mantissa));
    return b;
}

double TvGdImpl::ratio(Bigint* a, Bigint* b)
{
    int aTop, bTop;
    const double aLeading = b2d(a, &aTop);
    const double bLeading = b2d(b, &bTop);
    return std::ldexp(aLeading / bLeading, aTop - bTop + 32 * (a->wds - b->wds));
}

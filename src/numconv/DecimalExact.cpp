#include "numconv/DecimalExact.h"

#include "TvGdImpl.h"
#include "numconv/RoundToDouble.h"

#include <algorithm>

namespace {

int widthOf(const Bigint* b) { return 32 * b->wds - TvGdImpl::hi0bits(b->x[b->wds - 1]); }

unsigned firstNine(const char* digits, int n)
{
    unsigned value = 0;
    for (int i = 0; i < std::min(n, 9); ++i)
        value = value * 10 + static_cast<unsigned>(digits[i] - '0');
    return value;
}

} // namespace

bool exactDouble(const char* digits, int n, std::int64_t point, bool more, std::uint64_t& bits)
{
    if (point > 309 || point < -323) {
        bits = point > 0 ? kInfinityBits : 0;
        return true;
    }
    // digits * 10^power as the fraction r / s * 2^power.
    const int power = static_cast<int>(point) - n;
    Bigint* r = TvGdImpl::pow5mult(TvGdImpl::s2b(digits, n, n, firstNine(digits, n)), std::max(power, 0));
    Bigint* s = TvGdImpl::pow5mult(TvGdImpl::i2b(1), std::max(-power, 0));
    int rShift = 0, sShift = 0;
    if (r && s) {
        // The divisor's top word is brought to 28 bits, as division wants it, and the
        // first quotient to 4..15.
        sShift = (28 - widthOf(s)) & 31;
        rShift = widthOf(s) + sShift + 3 - widthOf(r);
        if (rShift < 0) {
            const int words = (31 - rShift) / 32;
            sShift += 32 * words;
            rShift += 32 * words;
        }
        r = TvGdImpl::lshift(r, rShift);
        s = TvGdImpl::lshift(s, sShift);
    }
    // Long division in hexadecimal: 16 digits are more than a double holds.
    std::uint64_t mantissa = 0;
    for (int i = 0; i < 16 && r && s; ++i) {
        if (i > 0)
            r = TvGdImpl::multadd(r, 16, 0);
        if (r)
            mantissa = mantissa << 4 | static_cast<unsigned>(TvGdImpl::quorem(r, s));
    }
    const bool done = r && s;
    const bool rest = done && (r->wds > 1 || r->x[0] != 0);
    TvGdImpl::Bfree(r);
    TvGdImpl::Bfree(s);
    if (done)
        bits = roundToDouble(mantissa, power + sShift - rShift - 60, rest || more);
    return done;
}

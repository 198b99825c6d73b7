#include "numconv/DigitsExact.h"

#include "TvGdImpl.h"
#include "numconv/DoubleBits.h"

#include <algorithm>
#include <limits>

namespace {

// The value as the fraction r / s, scaled so that its digits are the quotients of
// repeated division: r / s = d1.d2d3... and 10^power is the place of d1. The gaps to the
// bounds of what reads back as the value, below and above, have the same denominator.
class Fraction {
public:
    Fraction(std::uint64_t bits, bool withGaps);
    ~Fraction();
    Fraction(const Fraction&) = delete;
    Fraction& operator=(const Fraction&) = delete;

    // False when memory ran out, at any time before.
    bool valid() const { return m_r && m_s && (!m_withGaps || (m_below && m_above)); }

    int power() const { return m_power; }
    bool isZero() const { return m_r->wds == 1 && m_r->x[0] == 0; }

    int takeDigit() { return TvGdImpl::quorem(m_r, m_s); }
    void shiftDigits() { scale(10); }

    // The rest against one half of the place of the last digit taken: below, equal or
    // above 0.
    int compareHalf();

    // The rest against 5 places of the first digit, before any digit was taken.
    int compareFive();

    // The rest against the gap below, and the rest and the gap above against one place.
    int compareBelow() { return TvGdImpl::cmp(m_r, m_below); }
    int compareAbove();

private:
    void scale(int factor);

    bool m_withGaps;
    int m_power;
    Bigint* m_r;
    Bigint* m_s;
    Bigint* m_below = nullptr;
    Bigint* m_above = nullptr;
};

Fraction::Fraction(std::uint64_t bits, bool withGaps) : m_withGaps(withGaps)
{
    int exponent, width;
    m_r = TvGdImpl::d2b(doubleOf(bits), &exponent, &width);
    m_s = TvGdImpl::i2b(1);
    m_power = 0;
    if (!m_r || !m_s)
        return;
    // Below 2^(exponent + width), so at most one too large.
    m_power = floorLog10Pow2(exponent + width);

    // Twos and fives of numerator, denominator and of half a gap.
    int r2 = 1, s2 = 1, gap2 = 0;
    const int gapExponent = partsOf(bits).exponent;
    const bool halfBelow = lowerGapIsHalf(bits);
    if (halfBelow) {
        ++r2;
        ++s2;
    }
    if (gapExponent < 0) {
        r2 += exponent - gapExponent;
        s2 -= gapExponent;
    } else {
        r2 += exponent;
        gap2 += gapExponent;
    }
    const int r5 = std::max(-m_power, 0);
    const int s5 = std::max(m_power, 0);
    r2 += r5;
    gap2 += r5;
    s2 += s5;
    const int common = std::min({r2, s2, gap2});
    r2 -= common;
    s2 -= common;
    gap2 -= common;

    m_s = TvGdImpl::pow5mult(m_s, s5);
    if (!m_s)
        return;
    // The divisor's top word is brought to 28 bits, as division wants it.
    const int sWidth = 32 * m_s->wds - TvGdImpl::hi0bits(m_s->x[m_s->wds - 1]) + s2;
    const int up = (28 - sWidth) & 31;
    m_s = TvGdImpl::lshift(m_s, s2 + up);
    m_r = TvGdImpl::lshift(TvGdImpl::pow5mult(m_r, r5), r2 + up);
    if (m_withGaps) {
        m_below = TvGdImpl::lshift(TvGdImpl::pow5mult(TvGdImpl::i2b(1), r5), gap2 + up);
        m_above = TvGdImpl::lshift(TvGdImpl::pow5mult(TvGdImpl::i2b(1), r5), gap2 + up + (halfBelow ? 1 : 0));
    }
    if (valid() && TvGdImpl::cmp(m_r, m_s) < 0) {
        --m_power;
        scale(10);
    }
}

Fraction::~Fraction()
{
    TvGdImpl::Bfree(m_r);
    TvGdImpl::Bfree(m_s);
    TvGdImpl::Bfree(m_below);
    TvGdImpl::Bfree(m_above);
}

void Fraction::scale(int factor)
{
    m_r = TvGdImpl::multadd(m_r, factor, 0);
    if (m_withGaps) {
        m_below = TvGdImpl::multadd(m_below, factor, 0);
        m_above = TvGdImpl::multadd(m_above, factor, 0);
    }
}

int Fraction::compareHalf()
{
    m_r = TvGdImpl::lshift(m_r, 1);
    return m_r ? TvGdImpl::cmp(m_r, m_s) : 0;
}

int Fraction::compareFive()
{
    m_s = TvGdImpl::multadd(m_s, 5, 0);
    return m_s ? TvGdImpl::cmp(m_r, m_s) : 0;
}

int Fraction::compareAbove()
{
    Bigint* room = TvGdImpl::diff(m_s, m_above);
    if (!room) {
        TvGdImpl::Bfree(m_r);
        m_r = nullptr;
        return 0;
    }
    const int order = room->sign ? 1 : TvGdImpl::cmp(m_r, room);
    TvGdImpl::Bfree(room);
    return order;
}

// Ends the digits with `last`, which may be ten: the carry runs left.
void finish(DigitText& out, int last)
{
    while (last == 10) {
        if (out.count == 0) {
            ++out.point;
            last = 1;
            break;
        }
        last = out.digits[--out.count] - '0' + 1;
    }
    out.digits[out.count++] = static_cast<char>('0' + last);
    while (out.count > 0 && out.digits[out.count - 1] == '0')
        --out.count;
}

// The shortest digits within the gaps; `inclusive`: exactly half-way reads back too.
bool shortest(std::uint64_t bits, bool inclusive, DigitText& out)
{
    Fraction f(bits, true);
    if (!f.valid())
        return false;
    out.count = 0;
    out.point = f.power() + 1;
    for (;;) {
        const int digit = f.takeDigit();
        const int below = f.compareBelow();
        const int above = f.compareAbove();
        if (!f.valid())
            return false;
        const bool mayStop = below < 0 || (below == 0 && inclusive);
        const bool mayStepUp = above > 0 || (above == 0 && inclusive);
        if (mayStop || mayStepUp) {
            bool up = mayStepUp;
            if (mayStop && mayStepUp) {
                const int half = f.compareHalf();
                if (!f.valid())
                    return false;
                up = half > 0 || (half == 0 && digit % 2 == 1);
            }
            finish(out, digit + (up ? 1 : 0));
            return true;
        }
        out.digits[out.count++] = static_cast<char>('0' + digit);
        f.shiftDigits();
        if (!f.valid())
            return false;
    }
}

// `count` significant digits, or through `places` behind the point.
bool counted(std::uint64_t bits, bool byPlaces, int ndigits, DigitText& out)
{
    Fraction f(bits, false);
    if (!f.valid())
        return false;
    out.count = 0;
    out.point = f.power() + 1;
    const std::int64_t wanted = byPlaces ? std::int64_t{ndigits} + f.power() + 1 : std::max(ndigits, 1);
    if (wanted <= 0) {
        out.point = pointOfNothing(ndigits);
        // Only the place left of the first digit can be rounded up to.
        if (wanted == 0 && f.compareFive() > 0)
            finish(out, 10);
        return f.valid();
    }
    for (std::int64_t taken = 1;; ++taken) {
        const int digit = f.takeDigit();
        if (f.isZero()) {
            finish(out, digit);
            return true;
        }
        if (taken == wanted) {
            const int half = f.compareHalf();
            finish(out, digit + (half > 0 || (half == 0 && digit % 2 == 1) ? 1 : 0));
            return f.valid();
        }
        out.digits[out.count++] = static_cast<char>('0' + digit);
        f.shiftDigits();
        if (!f.valid())
            return false;
    }
}

} // namespace

int pointOfNothing(int places)
{
    return places == std::numeric_limits<int>::min() ? std::numeric_limits<int>::max() : -places;
}

bool exactDigits(std::uint64_t bits, int mode, int ndigits, DigitText& out)
{
    bits &= ~kSignBit;
    if (mode < 2)
        return shortest(bits, mode == 0 && (bits & 1) == 0, out);
    const bool byPlaces = mode == 3 || mode == 5;
    if (mode >= 4) {
        if (!shortest(bits, (bits & 1) == 0, out))
            return false;
        if (byPlaces ? std::int64_t{out.count} - out.point <= ndigits : out.count <= std::max(ndigits, 1))
            return true;
    }
    return counted(bits, byPlaces, ndigits, out);
}

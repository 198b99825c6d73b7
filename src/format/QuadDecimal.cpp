#include "format/QuadDecimal.h"

#include <algorithm>

namespace TvFormatDetail {

namespace {

constexpr HalfUnits makeHalfUnits()
{
    HalfUnits units{};
    units.at[0] = 5;
    for (int k = 1; k < kHalfUnitCount; ++k)
        units.at[k] = units.at[k - 1] / 10;
    return units;
}

bool isFinite(TvQuad v) { return v - v == 0; }

// One step of the ladder for numbers from 10 up.
void divideByPower(TvQuad& v, int& exponent, int i)
{
    v *= kReciprocals[i];
    exponent += 1 << i;
}

int scaleLarge(TvQuad& v)
{
    constexpr int top = kPowerCount - 1;
    int exponent = 0;
    while (v >= TV_QUAD(1e512)) // beyond any double: a wide long double
        divideByPower(v, exponent, top);
    for (int i = v >= kPowersOfTen[kStartPower] ? top : kStartPower; i >= 0; --i) {
        if (v >= kPowersOfTen[i])
            divideByPower(v, exponent, i);
    }
    return exponent;
}

void multiplyByPower(TvQuad& v, int& exponent, int i)
{
    v *= kPowersOfTen[i];
    exponent -= 1 << i;
}

int scaleSmall(TvQuad& v)
{
    constexpr int top = kPowerCount - 1;
    int exponent = 0;
    while (v <= TV_QUAD(1e-512)) // beyond any double: a wide long double
        multiplyByPower(v, exponent, top);
    for (int i = v <= kReciprocals[kStartPower] ? top : kStartPower; i >= 0; --i) {
        if (v <= kReciprocals[i])
            multiplyByPower(v, exponent, i);
    }
    if (v < 1)
        multiplyByPower(v, exponent, 0);
    return exponent;
}

// Takes the leading digit off. A mantissa outside [0, 10) gives the nearest digit.
wchar_t takeDigit(TvQuad& v)
{
    const int digit = v >= 10 ? 9 : v >= 0 ? static_cast<int>(v) : 0;
    v = (v - digit) * 10;
    return static_cast<wchar_t>(L'0' + digit);
}

} // namespace

// A literal gives the nearest binary128 value; a quotient would be rounded twice.
const TvQuad kPowersOfTen[kPowerCount] = {TV_QUAD(1e1),  TV_QUAD(1e2),   TV_QUAD(1e4),
                                          TV_QUAD(1e8),  TV_QUAD(1e16),  TV_QUAD(1e32),
                                          TV_QUAD(1e64), TV_QUAD(1e128), TV_QUAD(1e256)};
const TvQuad kReciprocals[kPowerCount] = {TV_QUAD(1e-1),  TV_QUAD(1e-2),   TV_QUAD(1e-4),
                                          TV_QUAD(1e-8),  TV_QUAD(1e-16),  TV_QUAD(1e-32),
                                          TV_QUAD(1e-64), TV_QUAD(1e-128), TV_QUAD(1e-256)};
constexpr HalfUnits kHalfUnits = makeHalfUnits();

int scaleQuad(TvQuad& v)
{
    if (v == 0 || !isFinite(v))
        return 0;
    const bool negative = v < 0;
    if (negative)
        v = -v;
    int exponent = 0;
    if (v >= 10)
        exponent = scaleLarge(v);
    else if (v < 1)
        exponent = scaleSmall(v);
    if (negative)
        v = -v;
    return exponent;
}

int roundQuad(TvQuad& v, int precision, int exponent)
{
    const bool negative = v < 0;
    if (negative)
        v = -v;
    const long long k = static_cast<long long>(precision) + exponent + 1;
    if (k >= 0 && (k < kHalfUnitCount || exponent > 0))
        v += k < kHalfUnitCount ? kHalfUnits.at[k] : kHalfUnits.at[kHalfUnitCount - 1] * TV_QUAD(0.5);
    int carry = 0;
    if (v >= 10 && isFinite(v)) {
        v /= 10;
        carry = 1;
    }
    if (negative)
        v = -v;
    return carry;
}

int emitQuad(wchar_t* out, TvQuad mantissa, int intDigits, int precision)
{
    wchar_t* p = out;
    wchar_t* const end = out + kMaxNumberLength;
    long long digitsBefore = intDigits;
    long long digitsBehind = precision;
    if (digitsBefore + digitsBehind > kMaxDigits)
        digitsBehind = kMaxDigits - digitsBefore;
    if (mantissa < 0) {
        *p++ = L'-';
        mantissa = -mantissa;
    }
    if (digitsBefore > 0) {
        for (; digitsBefore > 0 && p != end; --digitsBefore)
            *p++ = takeDigit(mantissa);
        if (digitsBehind != 0 && p != end)
            *p++ = L'.';
    } else {
        *p++ = L'0';
        *p++ = L'.';
        digitsBehind += digitsBefore;
        if (digitsBehind < 0) {
            digitsBefore -= digitsBehind;
            digitsBehind = 0;
        }
        for (; digitsBefore < 0 && p != end; ++digitsBefore)
            *p++ = L'0';
    }
    // Meant: a negative count (more than 16 integer digits) never reaches zero, and the
    // number runs on to the last character.
    for (; digitsBehind != 0 && p != end; --digitsBehind)
        *p++ = takeDigit(mantissa);
    if (p != out && p[-1] == L'.')
        --p;
    *p = 0;
    return static_cast<int>(p - out);
}

} // namespace TvFormatDetail

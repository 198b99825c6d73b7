#include "format/RealText.h"

#include "format/FixedText.h"
#include "format/IntegerText.h"
#include "format/QuadDecimal.h"
#include "format/ScaledReal.h"
#include "format/TensOfIntegers.h"

#include <algorithm>
#include <cmath>
#include <cwchar>

namespace TvFormatDetail {

namespace {

// The stepwise digits are those of one exact product as long as the product is not this close
// (2^-40 of a last digit) to where a digit changes. What the steps lose by rounding is far
// less: nine multiplications and an addition, each 2^-113 of a number below 10^16 units, and
// sixteen digit steps whose first error of 2^-110 grows tenfold each, 2^-57 in all.
constexpr int kSafeBits = 40;

// scaleQuad() for a positive number.
int scaleReal(ScaledReal& v)
{
    int exponent = 0;
    if (isAtLeast(v, realOf(kPowersOfTen[0]))) {
        int i = isAtLeast(v, realOf(kPowersOfTen[kStartPower])) ? kPowerCount - 1 : kStartPower;
        for (; i >= 0; --i) {
            if (isAtLeast(v, realOf(kPowersOfTen[i]))) {
                v = product(v, realOf(kReciprocals[i]));
                exponent += 1 << i;
            }
        }
    } else if (v.exponent < 1 - kQuadBits) {
        int i = isAtLeast(realOf(kReciprocals[kStartPower]), v) ? kPowerCount - 1 : kStartPower;
        for (; i >= 0; --i) {
            if (isAtLeast(realOf(kReciprocals[i]), v)) {
                v = product(v, realOf(kPowersOfTen[i]));
                exponent -= 1 << i;
            }
        }
        if (v.exponent < 1 - kQuadBits) {
            v = product(v, realOf(kPowersOfTen[0]));
            exponent -= 1;
        }
    }
    return exponent;
}

// roundQuad() for a number that is not negative.
int roundReal(ScaledReal& v, int precision, int exponent)
{
    const long long k = static_cast<long long>(precision) + exponent + 1;
    if (k >= 0 && (k < kHalfUnitCount || exponent > 0)) {
        ScaledReal half = realOf(kHalfUnits.at[std::min<long long>(k, kHalfUnitCount - 1)]);
        half.exponent -= k >= kHalfUnitCount;
        v = sum(v, half);
    }
    if (v.significand == 0 || !isAtLeast(v, realOf(kPowersOfTen[0])))
        return 0;
    v = tenth(v);
    return 1;
}

// One digit as emitQuad() takes it: the remainder times ten is rounded.
wchar_t takeDigit(ScaledReal& v)
{
    const int shift = -v.exponent;
    const unsigned digit = shift < 128 ? static_cast<unsigned>(v.significand >> shift) : 0;
    if (digit)
        v.significand -= UInt128{digit} << shift;
    v = roundedReal(v.significand * 10, v.exponent, false);
    return static_cast<wchar_t>(L'0' + digit);
}

// The first `count` digits (1 to 16) of a number in [1, 10) by one product. False where the
// steps might come to another digit.
bool leadingDigits(const ScaledReal& v, int count, std::uint64_t& digits)
{
    constexpr int fractionBits = kQuadBits - 1;
    if (v.exponent < -fractionBits || v.significand >> fractionBits == 0)
        return false;
    const UInt128 fixed = v.significand << (v.exponent + fractionBits); // below 2^116
    const std::uint64_t power = kTens[count - 1];
    const UInt128 low = UInt128{static_cast<std::uint64_t>(fixed)} * power;
    const UInt128 high = UInt128{static_cast<std::uint64_t>(fixed >> 64)} * power + (low >> 64);
    // high * 2^64 + rest, with the point before bit 112.
    constexpr int highFractionBits = fractionBits - 64;
    digits = static_cast<std::uint64_t>(high >> highFractionBits);
    const auto fraction = static_cast<std::uint64_t>(high) & ((std::uint64_t{1} << highFractionBits) - 1);
    constexpr std::uint64_t margin = std::uint64_t{1} << (highFractionBits - kSafeBits);
    return fraction >= margin && fraction < (std::uint64_t{1} << highFractionBits) - margin;
}

// emitQuad() for a mantissa that is not negative; `end` is the last place for a character.
int emitReal(wchar_t* const out, wchar_t* const end, ScaledReal mantissa, int intDigits, int precision)
{
    wchar_t* p = out;
    long long digitsBefore = intDigits;
    long long digitsBehind = precision;
    if (digitsBefore + digitsBehind > kMaxDigits)
        digitsBehind = kMaxDigits - digitsBefore;
    if (digitsBefore <= 0) {
        *p++ = L'0';
        *p++ = L'.';
        digitsBehind += digitsBefore;
        if (digitsBehind < 0) {
            digitsBefore -= digitsBehind;
            digitsBehind = 0;
        }
        for (; digitsBefore < 0 && p != end; ++digitsBefore)
            *p++ = L'0';
        digitsBefore = 0;
    }
    const long long count = digitsBefore + digitsBehind;
    std::uint64_t digits = 0;
    if (digitsBehind >= 0 && count > 0 && count <= kMaxDigits && end - p > count &&
        leadingDigits(mantissa, static_cast<int>(count), digits)) {
        fixedDigits(p + (digitsBefore > 0), digits, static_cast<int>(count));
        if (digitsBefore > 0) {
            std::wmemmove(p, p + 1, static_cast<std::size_t>(digitsBefore));
            p[digitsBefore] = L'.';
            p += digitsBehind != 0;
        }
        p += count;
    } else {
        const bool whole = digitsBefore > 0;
        for (; digitsBefore > 0 && p != end; --digitsBefore)
            *p++ = takeDigit(mantissa);
        if (whole && digitsBehind != 0 && p != end)
            *p++ = L'.';
        for (; digitsBehind != 0 && p != end; --digitsBehind)
            *p++ = takeDigit(mantissa);
    }
    if (p != out && p[-1] == L'.')
        --p;
    *p = 0;
    return static_cast<int>(p - out);
}

// The fixed notation of a number that is not negative, by one exact product: value * 10^precision
// rounded half up. 0 where the number has too many digits or lies too close to a half.
int fixedByProduct(wchar_t* out, double value, int precision)
{
    const auto bits = std::bit_cast<std::uint64_t>(value);
    const int field = static_cast<int>(bits >> 52);
    const int shift = field ? 1075 - field : 1074; // value is fraction / 2^shift
    if (precision < 0 || precision >= kMaxDigits || shift < 1)
        return 0;
    std::uint64_t fraction = bits & ((std::uint64_t{1} << 52) - 1);
    if (field)
        fraction |= std::uint64_t{1} << 52;
    std::uint64_t units = 0;
    constexpr int productBits = 53 + 50;
    if (shift <= productBits + 2) { // else below an eighth of a unit
        const UInt128 scaled = UInt128{fraction} * kTens[precision];
        const UInt128 half = UInt128{1} << (shift - 1);
        const UInt128 whole = scaled >> shift;
        const UInt128 rest = scaled & (half * 2 - 1);
        const UInt128 distance = rest > half ? rest - half : half - rest;
        if (distance <= (half * 2) >> kSafeBits)
            return 0;
        if (whole + 1 >= kTens[kMaxDigits])
            return 0;
        units = static_cast<std::uint64_t>(whole) + (rest > half);
    }
    // The integer part without a division: rounding may carry into it.
    const std::uint64_t power = kTens[precision];
    auto integer = static_cast<std::uint64_t>(value);
    std::uint64_t behind = units - integer * power;
    if (behind >= power) {
        integer += 1;
        behind -= power;
    }
    int length = decimalText64(out, integer);
    if (precision > 0) {
        out[length] = L'.';
        fixedDigits(out + length + 1, behind, precision);
        length += 1 + precision;
    }
    out[length] = 0;
    return length;
}

// From 10^-4 up to 10^5, with room for the doubt at either end, %g is fixed for certain.
bool isPlainlyFixed(double magnitude) { return magnitude > 0.0001001 && magnitude < 99999; }

} // namespace

int realText(wchar_t* out, double value, wchar_t letter, int precision, bool plus)
{
    if (letter == L'f' && !plus && precision >= 0 && precision <= kFixedTextPlaces) {
        if (const int length = fixedText(out, value, precision))
            return length;
    }
    const bool negative = value < 0;
    const double magnitude = std::fabs(value);
    const bool fixedAtOnce = letter == L'f' || (letter != L'e' && isPlainlyFixed(magnitude));
    if (fixedAtOnce) {
        const bool sign = negative || plus;
        *out = negative ? L'-' : L'+';
        if (const int length = fixedByProduct(out + sign, magnitude, precision))
            return sign + length;
    }
    ScaledReal mantissa{0, 0};
    int exponent = 0;
    if (magnitude != 0) {
        mantissa = realOf(magnitude);
        exponent = scaleReal(mantissa);
    }
    const bool fixed = letter == L'f' || (letter != L'e' && exponent > -5 && exponent < 5);
    // A minus sign is among the 125 characters, a plus sign before them.
    const bool sign = negative || (plus && fixed);
    *out = negative ? L'-' : L'+';
    wchar_t* const end = out + (sign && !negative) + kMaxNumberLength;
    exponent += roundReal(mantissa, precision, fixed ? exponent : 0);
    const int length = sign + emitReal(out + sign, end, mantissa, fixed ? exponent + 1 : 1, precision);
    return fixed ? length : length + exponentText(out + length, exponent);
}

} // namespace TvFormatDetail

// QuadDecimal.h - decimal digits from a binary128 number, step by step.
//
// This is the definition of what the engine prints: every multiplication, addition and
// subtraction below is one binary128 operation, rounded to nearest even. No digit is
// "corrected": a tie is decided by the scaled mantissa, whatever the double's exact value.
#ifndef TV_FORMAT_QUAD_DECIMAL_H
#define TV_FORMAT_QUAD_DECIMAL_H

#include "format/Quad.h"

namespace TvFormatDetail {

/// The powers 10^(2^i), i = 0..8, and their nearest reciprocals.
constexpr int kPowerCount = 9;
extern const TvQuad kPowersOfTen[kPowerCount];
extern const TvQuad kReciprocals[kPowerCount];

/// The exponent index from which numbers that are not very large or small are scaled.
constexpr int kStartPower = (kPowerCount + 1) / 3;

/// Half units of the last digit kept: entry k is 5 * 10^-k, by repeated division.
constexpr int kHalfUnitCount = ((128 - 14) * 301 + 1500) / 1000;
struct HalfUnits {
    TvQuad at[kHalfUnitCount];
};
extern const HalfUnits kHalfUnits;

/// The most characters that one number may take, counted from its sign or first digit.
constexpr int kMaxNumberLength = 125;

/// The most significant digits of a number that has up to 16 integer digits.
constexpr int kMaxDigits = 16;

/// Brings `v` into [1, 10), sign kept, and returns the decimal exponent. Zero, infinities
/// and NaN stay as they are, with exponent 0. The result may be 10 or a little below 1 where
/// rounding took it there.
int scaleQuad(TvQuad& v);

/// Adds half a unit of the last digit kept. 1 when that reached 10 (`v` is then divided by
/// 10), else 0.
int roundQuad(TvQuad& v, int precision, int exponent);

/// Writes a mantissa as fixed notation, at most kMaxNumberLength characters and a
/// terminating 0; returns the length without it.
int emitQuad(wchar_t* out, TvQuad mantissa, int intDigits, int precision);

} // namespace TvFormatDetail

#endif

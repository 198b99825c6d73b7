// RealText.h - the text of a double for the letters f, e and g.
//
// Two ways to the same characters: binary128 arithmetic as the definition, 128-bit integers
// for speed. The engine takes the second; a test holds them equal.
#ifndef TV_FORMAT_REAL_TEXT_H
#define TV_FORMAT_REAL_TEXT_H

#include "format/Quad.h"

namespace TvFormatDetail {

/// Room for any number: a plus sign, 125 characters, an exponent, a terminating 0.
constexpr int kRealTextRoom = 1 + 125 + 5 + 1;

/// Writes a finite `value` as the letter (f, e, g or G) shows it and returns the length. The
/// text is terminated, and nothing is written behind it. A negative `precision` is possible and runs to the
/// last character.
int realTextQuad(wchar_t* out, TvQuad value, wchar_t letter, int precision, bool plus);
int realText(wchar_t* out, double value, wchar_t letter, int precision, bool plus);

/// The words for values that are not finite, terminated; returns the length.
int nonFiniteText(wchar_t* out, double value);

/// Writes `E`, the sign and three digits, terminated; returns the length.
int exponentText(wchar_t* out, int exponent);

} // namespace TvFormatDetail

#endif

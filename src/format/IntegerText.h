// IntegerText.h - 32-bit integers as digits, and the point that precision puts into them.
#ifndef TV_FORMAT_INTEGER_TEXT_H
#define TV_FORMAT_INTEGER_TEXT_H

#include <cstdint>

namespace TvFormatDetail {

/// Room for any integer in any radix, a sign included (no terminating 0).
constexpr int kIntegerTextRoom = 33;

/// Writes `value` in `radix` and returns the length; no terminating 0. A negative radix means
/// a signed value; the radix is clamped to 2..36.
int integerText(wchar_t* out, std::uint32_t value, int radix);

/// integerText() for radix 10, unsigned.
int decimalText(wchar_t* out, std::uint32_t value);

/// integerText() for radix -10.
inline int signedText(wchar_t* out, std::uint32_t value)
{
    const bool negative = static_cast<std::int32_t>(value) < 0;
    *out = L'-';
    return negative + decimalText(out + negative, negative ? 0 - value : value);
}

/// decimalText() for values below 10^16.
int decimalText64(wchar_t* out, std::uint64_t value);

/// Writes the low `count` decimal digits of `value`, zeros in front included; no terminating 0.
void fixedDigits(wchar_t* out, std::uint64_t value, int count);

/// The radix of an integer letter, negative for a signed one; 0 for other letters.
int radixOfLetter(wchar_t letter);

/// Turns the integer text of `value` into a number with `precision` fraction digits, in
/// place. False, with the text unchanged, when it would be longer than `room` characters.
bool insertPoint(wchar_t* text, unsigned& length, unsigned room, std::uint32_t value, unsigned precision);

} // namespace TvFormatDetail

#endif

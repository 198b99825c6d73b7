// Digits of a double by one multiplication with a power of ten.
#ifndef TV_DIGITS_BY_SCALING_H
#define TV_DIGITS_BY_SCALING_H

#include <cstdint>

/// What scaledDigits may write: digits, terminator and overhang.
constexpr int kScaledDigitsRoom = 24;

/// TvGdImpl::dtoa for the finite non-zero value |bits|, `mode` within 0..5: writes digits
/// without trailing zeros, terminated, answers their number and sets `*point`.
/// -1 when it cannot tell, which is rare but for mode 1 and for more digits than fit.
int scaledDigits(std::uint64_t bits, int mode, int ndigits, char* out, int* point);

/// The same for mode 0 and a `bits` without its sign.
int shortestScaledDigits(std::uint64_t bits, char* out, int* point);

#endif

// Digits of a double by one multiplication with a power of ten.
#ifndef TV_DIGITS_BY_SCALING_H
#define TV_DIGITS_BY_SCALING_H

#include <cstdint>

/// What scaledDigits may write, digits and overhang.
constexpr int kScaledDigitsRoom = 24;

/// Digits that fit a number of 64 bits.
constexpr int kMostScaledDigits = 18;

/// TvGdImpl::dtoa for the finite non-zero value |bits|, `mode` within 0..5: writes digits
/// without trailing zeros and without terminator, answers their number and sets `*point`.
/// -1 when it cannot tell, which is rare but for mode 1 and for more digits than fit.
int scaledDigits(std::uint64_t bits, int mode, int ndigits, char* out, int* point);

/// |bits| times 10^places rounded to the nearest integer, ties to even, 0 <= places <= 18.
/// False when it cannot tell or when the result is 2^63 or more.
bool scaledInteger(std::uint64_t bits, int places, std::uint64_t* integer);

/// The `count` leading digits of |bits| as an integer of `count` digits, ties to even;
/// `*power` is the place of the first. 1 <= count <= kMostScaledDigits. False when it
/// cannot tell.
bool significantInteger(std::uint64_t bits, int count, std::uint64_t* integer, int* power);

/// True when modes 5 and 3 give the same digits for `places`: the doubles around |bits|
/// lie closer than one unit of the last place.
bool gapIsBelowPlace(std::uint64_t bits, int places);

#endif

// Digits of a double by big integers: the reference for every mode, and what the faster
// ways fall back on where they cannot tell.
#ifndef TV_DIGITS_EXACT_H
#define TV_DIGITS_EXACT_H

#include <cstdint>

/// No double has more significant digits than 767; one more for a carry.
constexpr int kMostDigits = 768;

struct DigitText {
    int count;                ///< digits, without trailing zeros
    int point;                ///< the value is 0.d1d2... * 10^point
    char digits[kMostDigits]; ///< not terminated
};

/// TvGdImpl::dtoa for the finite non-zero value |bits|, `mode` within 0..5.
/// False when memory ran out.
bool exactDigits(std::uint64_t bits, int mode, int ndigits, DigitText& out);

/// What modes 3 and 5 answer as the point of a value that they round to nothing: -places,
/// as far as an int goes.
int pointOfNothing(int places);

#endif

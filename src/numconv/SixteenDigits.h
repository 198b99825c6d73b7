// The decimal digits of an integer, sixteen in one go.
#ifndef TV_SIXTEEN_DIGITS_H
#define TV_SIXTEEN_DIGITS_H

#include "numconv/DoubleBits.h"
#include "numconv/NumberVectors.h"

#include <bit>
#include <cstdint>
#include <cstring>

/// The sixteen digits of an integer below 10^16, leading zeros included.
class PlainSixteenDigits {
public:
    explicit PlainSixteenDigits(std::uint64_t n)
    {
        const std::uint64_t upper = n / 100000000;
        m_first = eight(upper);
        m_last = eight(n - upper * 100000000);
    }

    /// Digits up to the last one that is not 0.
    int significant() const { return m_last ? 8 + bytesOf(m_last) : bytesOf(m_first); }

    /// As characters, the first in the lowest byte.
    Uint128 text() const { return static_cast<Uint128>(m_last | kZeros) << 64 | (m_first | kZeros); }

    /// Writes them as sixteen characters.
    void store(char* out) const
    {
        const Uint128 characters = text();
        std::memcpy(out, &characters, sizeof characters);
    }

private:
    static constexpr std::uint64_t kZeros = 0x3030303030303030;

    static int bytesOf(std::uint64_t digits) { return (static_cast<int>(std::bit_width(digits)) + 7) / 8; }

    // The digits of `n` < 10^8 as bytes, the first the lowest. Each step splits every lane
    // into quotient (lower half) and remainder (upper half); the factors are reciprocals,
    // rounded up, exact for these ranges.
    static std::uint64_t eight(std::uint64_t n)
    {
        const std::uint64_t by10000 = n / 10000;
        const std::uint64_t fours = by10000 | (n - by10000 * 10000) << 32;
        const std::uint64_t by100 = ((fours * 10486) >> 20) & 0x0000007F0000007F;
        const std::uint64_t twos = by100 | (fours - by100 * 100) << 16;
        const std::uint64_t by10 = ((twos * 103) >> 10) & 0x000F000F000F000F;
        return by10 | (twos - by10 * 10) << 8;
    }

    std::uint64_t m_first;
    std::uint64_t m_last;
};

#ifdef TV_NUMBERS_BY_SSE2
#include "numconv/SixteenDigitsBySse2.h"
using SixteenDigits = Sse2SixteenDigits;
#else
using SixteenDigits = PlainSixteenDigits;
#endif

#endif

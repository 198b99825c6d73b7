// The decimal digits of an integer, sixteen in one go.
#ifndef TV_SIXTEEN_DIGITS_H
#define TV_SIXTEEN_DIGITS_H

#include "numconv/DoubleBits.h"
#include "numconv/NumberVectors.h"

#include <bit>
#include <cstdint>
#include <cstring>

/// Whether the texts of one origin have about as many characters, or any number of them.
enum class Counts { alike, differ };

/// Writes exactly `count` characters, 1 to 16, of the sixteen at `from`; overlapping stores
/// cover every count.
template<Counts counts>
inline char* putCharacters(char* out, const char* from, int count)
{
    const auto copy = [out, from](auto word, int at) {
        std::memcpy(&word, from + at, sizeof word);
        std::memcpy(out + at, &word, sizeof word);
    };
    if (counts == Counts::alike && count >= 8) {
        copy(std::uint64_t{}, 0);
        copy(std::uint64_t{}, count - 8);
    } else if (count >= 4) {
        // Without a branch between the short and the long ones.
        const int inner = count >> 3 << 2;
        copy(std::uint32_t{}, 0);
        copy(std::uint32_t{}, inner);
        copy(std::uint32_t{}, count - 4 - inner);
        copy(std::uint32_t{}, count - 4);
    } else {
        copy(char{}, 0);
        copy(char{}, count / 2);
        copy(char{}, count - 1);
    }
    return out + count;
}

/// Sixteen characters in registers.
class PlainSixteenCharacters {
public:
    explicit PlainSixteenCharacters(Uint128 text) : m_text(text) {}
    explicit PlainSixteenCharacters(const char* from) { std::memcpy(&m_text, from, sizeof m_text); }

    /// Zeros behind the first `count`.
    PlainSixteenCharacters first(int count) const
    {
        constexpr Uint128 zeros = static_cast<Uint128>(0x3030303030303030) << 64 | 0x3030303030303030;
        return PlainSixteenCharacters((m_text & firstBytesOf(count)) | (zeros & ~firstBytesOf(count)));
    }

    /// A point behind the first `place`, 0 to 15; the last character falls out.
    PlainSixteenCharacters withPoint(int place) const
    {
        return PlainSixteenCharacters((m_text & firstBytesOf(place)) | Uint128{'.'} << (8 * place) |
                                      (m_text & ~firstBytesOf(place)) << 8);
    }

    char last() const { return static_cast<char>(m_text >> 120); }

    /// Writes exactly the first `count`, 1 to 16.
    template<Counts counts>
    char* put(char* out, int count) const
    {
        return putCharacters<counts>(out, reinterpret_cast<const char*>(&m_text), count);
    }

    char* putAll(char* out) const
    {
        std::memcpy(out, &m_text, sizeof m_text);
        return out + sizeof m_text;
    }

    /// Writes sixteen: the first `count`, 0 and more, and terminators for the others. It is one
    /// store, as a load that follows would wait for the last of several.
    void putTerminated(char* out, int count) const
    {
        const Uint128 text = m_text & firstBytesOf(count);
        std::memcpy(out, &text, sizeof text);
    }

private:
    static Uint128 firstBytesOf(int count)
    {
        return count < 16 ? (Uint128{1} << (8 * count)) - 1 : ~Uint128{0};
    }

    Uint128 m_text; // the first character in the lowest byte
};

/// The sixteen digits of an integer below 10^16, leading zeros included.
class PlainSixteenDigits {
public:
    explicit PlainSixteenDigits(std::uint64_t n)
    {
        const std::uint64_t upper = n / 100000000;
        m_first = eight(upper);
        m_last = eight(n - upper * 100000000);
    }

    /// Digits up to the last one that is not 0; with `oneMore` a seventeenth is that one.
    int significant(bool oneMore) const
    {
        if (oneMore)
            return 17;
        return m_last ? 8 + bytesOf(m_last) : bytesOf(m_first);
    }

    PlainSixteenCharacters characters() const
    {
        constexpr std::uint64_t zeros = 0x3030303030303030;
        return PlainSixteenCharacters(static_cast<Uint128>(m_last | zeros) << 64 | (m_first | zeros));
    }

private:
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
using SixteenCharacters = Sse2SixteenCharacters;
#else
using SixteenDigits = PlainSixteenDigits;
using SixteenCharacters = PlainSixteenCharacters;
#endif

#endif

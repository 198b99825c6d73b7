// ScanWindow.h - the numbers of a wide text, 32 characters at once.
//
// Where numbers begin and end is told by masks of the characters, so that the place of the next
// one is known before the value of this one, and numbers of different lengths take the same way.
#ifndef TV_FORMAT_SCAN_WINDOW_H
#define TV_FORMAT_SCAN_WINDOW_H

#include "format/FormatVectors.h"
#include "format/TensOfIntegers.h"
#include "runtime/ReadOn.h"

#include <bit>
#include <cstddef>
#include <cstdint>

#ifdef TV_FORMAT_BY_SSE2

namespace TvFormatDetail {

/// Eight characters as 16-bit numbers; those that have no meaning in numbers keep none.
inline __m128i eightCharactersAt(const wchar_t* p)
{
    return _mm_packs_epi32(_mm_loadu_si128(reinterpret_cast<const __m128i*>(p)),
                           _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + 4)));
}

/// Moves the first `count` (0 to 8) bytes of each half to its end, with zeros in front.
inline __m128i movedToEnd(__m128i bytes, int count)
{
    return _mm_sll_epi64(bytes, _mm_cvtsi32_si128(64 - 8 * count));
}

/// The values of eight digits 0..9 twice, the first in the lowest byte: 32 bits each.
inline std::uint64_t joinDigits(__m128i digits)
{
    // 10 * 256 + 1 times a pair leaves ten times its first digit, and its second, in the upper byte.
    __m128i factor = _mm_set1_epi16(10 * 256 + 1);
    asm("" : "+x"(factor)); // one multiplication, not four shifts and sums
    const __m128i two = _mm_srli_epi16(_mm_mullo_epi16(digits, factor), 8);
    const __m128i four = _mm_madd_epi16(two, _mm_set1_epi32(1 << 16 | 100));
    const __m128i eight = _mm_madd_epi16(_mm_packs_epi32(four, four), _mm_set1_epi32(1 << 16 | 10000));
    return static_cast<std::uint64_t>(_mm_cvtsi128_si64(eight));
}

/// The value of the first `count` (0 to 8) characters at `p`, which are digits; eight are read.
inline std::uint32_t digitsAt(const wchar_t* p, int count)
{
    const __m128i eight = eightCharactersAt(p);
    const __m128i digits = _mm_sub_epi8(_mm_packus_epi16(eight, eight), _mm_set1_epi8('0'));
    return static_cast<std::uint32_t>(joinDigits(movedToEnd(digits, count)));
}

/// The values of digits at two places, as digitsAt().
struct TwoNumbers {
    std::uint32_t first;
    std::uint32_t second;
};

[[gnu::always_inline]] inline TwoNumbers digitsAtBoth(const wchar_t* p, int count, const wchar_t* q,
                                                      int countOfSecond)
{
    const __m128i digits =
        _mm_sub_epi8(_mm_packus_epi16(eightCharactersAt(p), eightCharactersAt(q)), _mm_set1_epi8('0'));
    const __m128d first = _mm_castsi128_pd(movedToEnd(digits, count));
    const __m128d second = _mm_castsi128_pd(movedToEnd(digits, countOfSecond));
    const std::uint64_t both = joinDigits(_mm_castpd_si128(_mm_move_sd(second, first)));
    return {static_cast<std::uint32_t>(both), static_cast<std::uint32_t>(both >> 32)};
}

/// Integers of that many digits are exact in a double, and so are their powers of ten.
constexpr int kExactDigits = 15;

/// digitsAt() for up to kExactDigits characters; sixteen may be read.
inline std::uint64_t moreDigitsAt(const wchar_t* p, int count)
{
    if (count <= 8) [[likely]]
        return digitsAt(p, count);
    const TwoNumbers both = digitsAtBoth(p, 8, p + 8, count - 8);
    return both.first * kTens[count - 8] + both.second;
}

/// What the characters from a place on are.
class ScanWindow {
public:
    static constexpr int kSize = 32;

    /// The characters that the window and the digits of numbers ending inside it look at.
    static constexpr std::size_t kReach = kSize + 8;

    explicit ScanWindow(const wchar_t* p)
    {
        const __m128i first = sixteenCharactersAt(p);
        const __m128i second = sixteenCharactersAt(p + 16);
        m_ink = ~std::uint64_t{both(first, second, ' ')};
        m_minus = both(first, second, '-');
        // Digits become the ten lowest numbers of a signed byte.
        const auto digits = [](__m128i c) {
            const __m128i moved = _mm_sub_epi8(c, _mm_set1_epi8('0' - 128));
            return static_cast<std::uint32_t>(
                _mm_movemask_epi8(_mm_cmplt_epi8(moved, _mm_set1_epi8(10 - 128))));
        };
        m_others = ~(kBehind | digits(second) << 16 | digits(first));
    }

    /// The first place from `i` (at most kSize) on without a space.
    int behindSpaces(int i) const { return i + std::countr_zero(m_ink >> i); }

    /// The first place from `i` on that is no digit. A number at the end of the window becomes
    /// longer than kExactDigits.
    int behindDigits(int i) const { return i + std::countr_zero(m_others >> i); }

    bool minusAt(int i) const { return m_minus >> i & 1; }

private:
    static std::uint32_t both(__m128i first, __m128i second, char c)
    {
        return placesIn(second, c) << 16 | placesIn(first, c);
    }

    // The places behind the window that count as digits.
    static constexpr std::uint64_t kBehind = ((std::uint64_t{1} << (kExactDigits + 1)) - 1) << kSize;

    std::uint64_t m_others;
    std::uint64_t m_ink;
    std::uint64_t m_minus;
};

} // namespace TvFormatDetail

#endif

#endif

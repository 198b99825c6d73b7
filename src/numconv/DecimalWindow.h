// Reads a decimal number of at most 23 digits: all its characters are in registers at once,
// and where the point and the end stand is found without going through them. For machines
// with SSE2.
#ifndef TV_DECIMAL_WINDOW_H
#define TV_DECIMAL_WINDOW_H

#include "numconv/ByteMasks.h"
#include "numconv/DecimalScan.h"
#include "numconv/PowersOfTen.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <emmintrin.h>

/// The first characters of a text as bytes; those without a meaning in numbers become any
/// byte without one.
struct DecimalWindow {
    __m128i first;
    __m128i second;
};

/// As many characters as a window takes in; the wide one leaves its last eight bytes 0.
template<class Char>
constexpr std::size_t kWindowCharacters = sizeof(Char) == 1 ? 32 : 24;

inline DecimalWindow windowAt(const char* s)
{
    return {_mm_loadu_si128(reinterpret_cast<const __m128i*>(s)),
            _mm_loadu_si128(reinterpret_cast<const __m128i*>(s + 16))};
}

// Saturation turns every character above 127 into one that is no digit and no point.
inline DecimalWindow windowAt(const wchar_t* s)
{
    const auto eight = [s](int at) {
        return _mm_packs_epi32(_mm_loadu_si128(reinterpret_cast<const __m128i*>(s + at)),
                               _mm_loadu_si128(reinterpret_cast<const __m128i*>(s + at + 4)));
    };
    return {_mm_packus_epi16(eight(0), eight(8)), _mm_packus_epi16(eight(16), _mm_setzero_si128())};
}

/// The same window by reading no character behind the terminator.
template<class Char>
[[gnu::noinline]] DecimalWindow windowOfCopy(const Char* s)
{
    Char copy[kWindowCharacters<Char>] = {};
    for (std::size_t i = 0; i < kWindowCharacters<Char> && s[i] != Char(0); ++i)
        copy[i] = s[i];
    return windowAt(copy);
}

/// The digits and the point of a number without sign: leading * 10^power.
struct WindowNumber {
    std::uint64_t leading;
    int power;
    int length; ///< characters, the point included
};

/// The value of sixteen digits 0..9, the first in the lowest byte.
inline std::uint64_t joinSixteenDigits(__m128i digits)
{
    // 10 * 256 + 1 times a pair leaves ten times its first digit, and its second, in the upper byte.
    const __m128i two = _mm_srli_epi16(_mm_mullo_epi16(digits, _mm_set1_epi16(10 * 256 + 1)), 8);
    const __m128i four = _mm_madd_epi16(two, _mm_set1_epi32(1 << 16 | 100));
    const __m128i packed = _mm_packs_epi32(four, four);
    const __m128i eight = _mm_madd_epi16(packed, _mm_set1_epi32(1 << 16 | 10000));
    const auto both = static_cast<std::uint64_t>(_mm_cvtsi128_si64(eight));
    return (both & 0xFFFFFFFF) * 100000000 + (both >> 32);
}

/// Reads the number at `s`, whose window is given. False when there is no digit, or more
/// than the window or 64 bits hold. The branches are on what texts of one origin have in
/// common; the rest of the work can then begin before the window has arrived.
template<class Char>
[[gnu::always_inline]] inline bool readWindow(const Char* s, const DecimalWindow& window,
                                              WindowNumber& number)
{
    // Digits become the ten lowest numbers of a signed byte.
    const auto digitsIn = [](__m128i bytes) {
        const __m128i moved = _mm_sub_epi8(bytes, _mm_set1_epi8('0' - 128));
        return static_cast<unsigned>(_mm_movemask_epi8(_mm_cmplt_epi8(moved, _mm_set1_epi8(10 - 128))));
    };
    // The bits behind the window end a number that fills it.
    std::uint64_t others = ~std::uint64_t{digitsIn(window.second) << 16 | digitsIn(window.first)};
    const int whole = std::countr_zero(others);
    int length = whole;
    int count = whole;
    __m128i digits = window.first;
    auto behind = static_cast<std::uint64_t>(_mm_cvtsi128_si64(window.second));
    if (s[whole] == Char('.')) {
        others &= others - 1;
        length = std::countr_zero(others);
        count = length - 1;
        // What stands behind the point moves over it.
        if (whole > 16) [[unlikely]]
            return false;
        const __m128i moved = _mm_or_si128(_mm_srli_si128(digits, 1), _mm_slli_si128(window.second, 15));
        const __m128i front = firstBytes(whole);
        digits = _mm_or_si128(_mm_and_si128(front, digits), _mm_andnot_si128(front, moved));
        behind >>= 8;
    }
    // With a point and the character behind, these just fit.
    constexpr unsigned most = kWindowCharacters<Char> >= 32 ? 23 : 22;
    if (static_cast<unsigned>(count - 1) >= most) [[unlikely]]
        return false;
    number.length = length;
    number.power = whole - count;

    // Zeros follow up to sixteen digits.
    const std::uint64_t head =
        joinSixteenDigits(_mm_and_si128(firstBytes(count), _mm_sub_epi8(digits, _mm_set1_epi8('0'))));
    if (count <= 16) {
        number.leading = head;
        number.power -= 16 - count;
        return true;
    }
    const int rest = count - 16;
    if (head >= g_tens[19 - rest]) [[unlikely]]
        return false;
    number.leading = head * g_tens[rest] + joinDigits((behind - kEightZeros) << (8 * (8 - rest)));
    return true;
}

#endif

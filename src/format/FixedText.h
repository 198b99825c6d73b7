// FixedText.h - the fixed notation of numbers of ordinary size, by one product of 64 bits.
#ifndef TV_FORMAT_FIXED_TEXT_H
#define TV_FORMAT_FIXED_TEXT_H

#include "format/ScaledReal.h"
#include "format/TensOfIntegers.h"
#include "format/WideDigits.h"

#include <bit>
#include <cstdint>

namespace TvFormatDetail {

/// The most places that fixedText() writes, and the most characters: a sign, twice eight digits,
/// a point and a 0.
constexpr int kFixedTextPlaces = 8;
constexpr int kFixedTextRoom = 1 + 8 + 1 + 8 + 1;

#ifdef TV_FORMAT_BY_SSE2

/// Writes a number as %.Nf shows it, N being `places` (0 to kFixedTextPlaces), and a terminating
/// 0, and nothing behind it; returns the length. 0 where the integer part has more than eight
/// digits, or the number lies so close to a half of its last place that the steps of
/// realTextQuad() decide.
inline int fixedText(wchar_t* out, double value, int places)
{
    constexpr std::uint64_t fractionMask = (std::uint64_t{1} << 52) - 1;
    // The remainder is cut off by less than 10^8 * 2^-64, the steps lose less than 2^-40 of a unit
    // (see kSafeBits in RealTextInteger.cpp).
    constexpr std::uint64_t margin = std::uint64_t{1} << 28;
    constexpr std::uint64_t half = std::uint64_t{1} << 63;

    const auto bits = std::bit_cast<std::uint64_t>(value);
    const int field = static_cast<int>(bits >> 52 & 0x7FF);
    const std::uint64_t significand = (bits & fractionMask) | std::uint64_t{1} << 52;
    const int shift = 1075 - field; // the number is significand / 2^shift
    std::uint64_t whole = 0;
    std::uint64_t behind = 0; // the point before bit 64
    if (shift > 0 && shift < 64) [[likely]] {
        whole = significand >> shift;
        behind = significand << (64 - shift);
    } else if (shift <= 0) {
        return 0;
    } else if (shift < 128) {
        behind = significand >> (shift - 64);
    }
    if (whole >= kEightDigits - 1) // rounding may add one
        return 0;
    const UInt128 product = UInt128{behind} * kTens[places];
    const auto rest = static_cast<std::uint64_t>(product);
    if (rest - (half - margin) <= 2 * margin) [[unlikely]]
        return 0;
    auto units = static_cast<std::uint32_t>(product >> 64) + static_cast<std::uint32_t>(rest >> 63);
    const bool carry = units == kTens[places];
    units = carry ? 0 : units;
    const bool negative = value < 0;
    *out = L'-';
    return negative + putFixed(out + negative, static_cast<std::uint32_t>(whole) + carry, units, places);
}

#else

inline int fixedText(wchar_t*, double, int) { return 0; }

#endif

} // namespace TvFormatDetail

#endif

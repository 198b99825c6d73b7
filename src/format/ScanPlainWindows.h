// ScanPlainWindows.h - plain scans over windows of many characters at once.
#ifndef TV_FORMAT_SCAN_PLAIN_WINDOWS_H
#define TV_FORMAT_SCAN_PLAIN_WINDOWS_H

#include "format/ScanPlain.h"
#include "format/ScanWindow.h"

#include <bit>
#include <cstdint>

#ifdef TV_FORMAT_BY_SSE2

namespace TvFormatDetail {

/// Where a number stands in a window: its first digit (or point) and the place behind it.
struct WindowPlace {
    int first;
    int end;
    bool negative;
};

/// The sign and the digits from `i` on, behind spaces.
[[gnu::always_inline]] inline WindowPlace numberIn(const ScanWindow& window, int i)
{
    const int start = window.behindSpaces(i);
    const bool negative = window.minusAt(start);
    const int first = start + negative;
    return {first, window.behindDigits(first), negative};
}

/// The number at a place, found in the window from `base` on. False where there is none of at
/// most kExactDigits digits that ends inside the window.
[[gnu::always_inline]] inline bool readInWindow(const ScanWindow&, const wchar_t* base, WindowPlace& place,
                                                int& value)
{
    const int count = place.end - place.first;
    if (static_cast<unsigned>(count - 1) >= kExactDigits)
        return false;
    const auto low = static_cast<std::uint32_t>(moreDigitsAt(base + place.first, count));
    const std::uint32_t sign = 0 - std::uint32_t{place.negative};
    value = static_cast<int>((low ^ sign) - sign); // wraps
    return true;
}

/// The same for a number with or without a point; one with an exponent is left out.
[[gnu::always_inline]] inline bool readInWindow(const ScanWindow& window, const wchar_t* base,
                                                WindowPlace& place, double& value)
{
    if (place.end >= ScanWindow::kSize)
        return false;
    const int whole = place.end - place.first;
    const int second = place.end + 1;
    int places = 0;
    if (base[place.end] == L'.') {
        place.end = window.behindDigits(second);
        places = place.end - second;
    }
    if (static_cast<unsigned>(whole + places - 1) >= kExactDigits || (base[place.end] | 0x20) == L'e')
        return false;
    std::uint64_t digits = 0;
    if (whole <= 8 && places <= 8) [[likely]] {
        const TwoNumbers both = digitsAtBoth(base + place.first, whole, base + second, places);
        digits = both.first * kTens[places] + both.second;
    } else {
        digits =
            moreDigitsAt(base + place.first, whole) * kTens[places] + moreDigitsAt(base + second, places);
    }
    // Exact in a double, as is every step of the digit-by-digit sum then.
    const double magnitude =
        static_cast<double>(static_cast<std::int64_t>(digits)) * kScanPowers[kLargestScanPower - places];
    const std::uint64_t sign = std::uint64_t{place.negative} << 63;
    value = std::bit_cast<double>(std::bit_cast<std::uint64_t>(magnitude) ^ sign);
    return true;
}

template<class T>
[[gnu::always_inline]] inline bool takeFromWindow(const ScanWindow& window, const wchar_t* base, int& at,
                                                  va_list& args, int& stored)
{
    WindowPlace place = numberIn(window, at);
    T value;
    if (!readInWindow(window, base, place, value))
        return false;
    storePlain(value, args, stored);
    at = place.end;
    return true;
}

/// Takes the plain conversions at the start of `f` as long as windows may be read and hold their
/// numbers. `f` and `text` are then where the scan goes on.
[[gnu::always_inline]] inline void scanPlainWindows(const wchar_t*& f, const wchar_t*& text, va_list& args,
                                                    int& stored)
{
    while (mayReadOn(text, ScanWindow::kReach * sizeof(wchar_t))) {
        const ScanWindow window(text);
        const wchar_t* const base = text;
        int at = 0;
        for (;;) {
            const wchar_t* behind = f;
            const PlainLetter letter = takePlainConversion(behind);
            if (letter == PlainLetter::None)
                return;
            if (letter == PlainLetter::Integer ? takeFromWindow<int>(window, base, at, args, stored)
                                               : takeFromWindow<double>(window, base, at, args, stored)) {
                f = behind;
            } else {
                // White space of another kind, or something else.
                const int blanks = static_cast<int>(behindPlainSpace(base + at) - base) - at;
                if (blanks == 0 || at + blanks >= ScanWindow::kSize)
                    break;
                at += blanks;
            }
            text = base + at;
        }
        if (at == 0)
            return;
    }
}

} // namespace TvFormatDetail

#endif

#endif

// ScanReaders.h - the input engine over any source of characters.
//
// A cursor gives the look-ahead and takes it:
//     std::int32_t current() const      the look-ahead, -1 at the end
//     void take()                       the next character; not called at the end
//     bool hexDigitFollows()            whether the character behind the look-ahead is one
//     bool holds(unsigned n)            whether n characters are left, the look-ahead included
//     int taken() const                 characters taken so far
//     bool endsBlank() const            at the end, with nothing but white space read
#ifndef TV_FORMAT_SCAN_READERS_H
#define TV_FORMAT_SCAN_READERS_H

#include "TvMath.h"
#include "TvScan.h"
#include "format/ScanEngines.h"

#include <climits>
#include <cstdint>
#include <cwctype>

namespace TvFormatDetail {

/// The width of a conversion that has none.
constexpr unsigned kUnlimitedWidth = 65535;

/// A mantissa above this takes no more digits.
constexpr double kFullMantissa = 1.7976931348623158e307;

inline bool isScanSpace(std::int32_t c)
{
    if (c < 128)
        return isPlainSpace(c);
    return std::iswspace(static_cast<wint_t>(c));
}

inline bool isScanDigit(std::int32_t c) { return c >= L'0' && c <= L'9'; }

/// The value of a digit of `base`, a letter counting in base 16; -1 for other characters.
inline int scanDigitValue(std::int32_t c, int base)
{
    const std::int32_t digit = c - L'0';
    if (digit >= 0 && digit <= 9)
        return digit < base ? digit : -1;
    if (base != 16)
        return -1;
    if (c >= L'a' && c <= L'f')
        return c - L'a' + 10;
    return c >= L'A' && c <= L'F' ? c - L'A' + 10 : -1;
}

/// The next pointer of the list; null without one.
template<class T>
T* nextTarget(va_list* args)
{
    return args ? va_arg(*args, T*) : nullptr;
}

/// Stores through the next pointer and counts, unless suppressed.
template<class T>
void storeScanned(T value, const ScanfConversion& conversion, va_list* args, int& stored)
{
    if (conversion.suppress)
        return;
    if (T* const target = nextTarget<T>(args)) {
        *target = value;
        ++stored;
    }
}

inline void storeInteger(std::uint32_t value, const ScanfConversion& conversion, va_list* args, int& stored)
{
    const auto narrow = static_cast<std::int32_t>(value);
    if (conversion.isLong)
        storeScanned(conversion.zeroExtended ? static_cast<long long>(value) : static_cast<long long>(narrow),
                     conversion, args, stored);
    else if (conversion.isShort)
        storeScanned(static_cast<short>(narrow), conversion, args, stored);
    else
        storeScanned(int{narrow}, conversion, args, stored);
}

inline void storeDouble(double value, const ScanfConversion& conversion, va_list* args, int& stored)
{
    if (conversion.isLong)
        storeScanned(value, conversion, args, stored);
    else
        storeScanned(static_cast<float>(value), conversion, args, stored);
}

template<class Cursor>
void skipSpace(Cursor& in)
{
    while (isScanSpace(in.current()))
        in.take();
}

/// The readers return true when the scan is to stop. This one is inlined, so that the decimal
/// case knows its base.
template<class Cursor>
[[gnu::always_inline]] inline bool readInteger(Cursor& in, const ScanfConversion& conversion, va_list* args,
                                               int& stored)
{
    unsigned width = conversion.width;
    int base = conversion.base;
    bool negative = false;
    if (!conversion.isUnsigned && width > 1 && (in.current() == L'-' || in.current() == L'+')) {
        negative = in.current() == L'-';
        in.take();
        --width;
        if (scanDigitValue(in.current(), base == 0 ? 10 : base) < 0)
            return true;
    }
    bool matched = false;
    if ((base == 0 || base == 16) && width != 0 && in.current() == L'0') {
        matched = true;
        if (base == 0)
            base = 8;
        in.take();
        --width;
        if (width != 0 && (in.current() == L'x' || in.current() == L'X') && in.hexDigitFollows()) {
            base = 16;
            in.take();
            --width;
        }
    }
    if (base == 0)
        base = 10;
    std::uint32_t value = 0;
    for (; width != 0; --width) {
        const int digit = scanDigitValue(in.current(), base);
        if (digit < 0)
            break;
        matched = true;
        value = value * static_cast<unsigned>(base) + static_cast<unsigned>(digit); // wraps
        in.take();
    }
    if (!matched)
        return true;
    storeInteger(negative ? 0 - value : value, conversion, args, stored);
    return false;
}

/// Takes the sign of a number. False when no number can follow.
template<class Cursor>
bool readNumberSign(Cursor& in, unsigned& width, bool& negative)
{
    if (width == 0 || (in.current() != L'-' && in.current() != L'+'))
        return true;
    negative = in.current() == L'-';
    in.take();
    --width;
    return isScanDigit(in.current()) || in.current() == L'.';
}

/// Reads the exponent behind a mantissa with `places` fraction digits. False when the width
/// ended at the `e`: the mantissa is then stored without its decimal places, which is meant.
template<class Cursor>
bool readExponent(Cursor& in, unsigned width, int places, int& power)
{
    power = -places;
    if (width == 0 || (in.current() != L'e' && in.current() != L'E'))
        return true;
    in.take();
    if (width == 1)
        return false;
    const bool negative = in.current() == L'-';
    if (negative || in.current() == L'+')
        in.take();
    int exponent = 0;
    while (isScanDigit(in.current()) && exponent <= 9) {
        exponent = exponent * 10 + (in.current() - L'0');
        in.take();
    }
    power += negative ? -exponent : exponent;
    return true;
}

/// A mantissa as far as it has been read.
struct ScanMantissa {
    double value = 0;
    int places = 0; ///< digits behind the point
    bool matched = false;
    bool point = false;
};

/// Takes the rest of a mantissa while the width lasts.
template<class Cursor>
void readMantissa(Cursor& in, unsigned& width, ScanMantissa& mantissa)
{
    while (width != 0) {
        --width; // the character that ends the mantissa costs one too
        if (isScanDigit(in.current())) {
            mantissa.matched = true;
            if (mantissa.value <= kFullMantissa)
                mantissa.value = mantissa.value * 10 + (in.current() - L'0');
            mantissa.places += mantissa.point;
        } else if (in.current() == L'.' && !mantissa.point) {
            mantissa.point = true;
        } else {
            break;
        }
        in.take();
    }
}

template<class Cursor>
bool readDouble(Cursor& in, const ScanfConversion& conversion, va_list* args, int& stored)
{
    unsigned width = conversion.width;
    bool negative = false;
    if (!readNumberSign(in, width, negative))
        return true;
    ScanMantissa mantissa;
    readMantissa(in, width, mantissa);
    int power = 0;
    if (readExponent(in, width, mantissa.places, power))
        mantissa.value *= TvMath::pow<double>(10, power);
    if (!mantissa.matched)
        return true;
    storeDouble(negative ? -mantissa.value : mantissa.value, conversion, args, stored);
    return false;
}

template<class Cursor>
bool readString(Cursor& in, const ScanfConversion& conversion, va_list* args, int& stored)
{
    wchar_t* target = nullptr;
    bool matched = false;
    for (unsigned width = conversion.width; width != 0; --width) {
        const std::int32_t c = in.current();
        if (c == -1 || c == 0 || isScanSpace(c))
            break;
        if (!matched && !conversion.suppress)
            target = nextTarget<wchar_t>(args);
        matched = true;
        if (target) {
            if (width == conversion.width)
                ++stored;
            *target++ = static_cast<wchar_t>(c);
        }
        in.take();
    }
    if (target)
        *target = 0;
    return !matched;
}

template<class Cursor>
bool readCharacters(Cursor& in, const ScanfConversion& conversion, va_list* args, int& stored)
{
    const unsigned wanted = conversion.hasWidth ? conversion.width : 1;
    if (wanted == 0)
        return true;
    if (!in.holds(wanted)) { // the end is met, but nothing stored or taken from the arguments
        while (in.current() != -1)
            in.take();
        return true;
    }
    wchar_t* target = conversion.suppress ? nullptr : nextTarget<wchar_t>(args);
    if (target)
        ++stored;
    for (unsigned i = 0; i < wanted; ++i) {
        if (target)
            *target++ = static_cast<wchar_t>(in.current());
        in.take();
    }
    return false;
}

/// Parses what stands between the `%` before `f` and the letter; leaves `f` at the letter.
inline ScanfConversion parseScanConversion(const wchar_t*& f)
{
    ScanfConversion conversion{};
    if (*f == L'*') {
        conversion.suppress = true;
        ++f;
    }
    conversion.hasWidth = isScanDigit(*f);
    for (; isScanDigit(*f); ++f) {
        const auto digit = static_cast<unsigned>(*f - L'0');
        conversion.width =
            conversion.width > (UINT_MAX - digit) / 10 ? UINT_MAX : conversion.width * 10 + digit;
    }
    if (!conversion.hasWidth)
        conversion.width = kUnlimitedWidth;
    conversion.isShort = *f == L'h';
    conversion.isLong = *f == L'l';
    if (conversion.isShort || conversion.isLong)
        ++f;
    return conversion;
}

/// Runs the reader of a letter; letters without one are ignored.
template<class Cursor>
bool readConversion(Cursor& in, wchar_t letter, ScanfConversion& conversion, va_list* args, int& stored)
{
    switch (letter) {
    case L'D':
    case L'O':
    case L'X':
    case L'B':
    case L'E':
    case L'F':
    case L'G':
        conversion.isLong = true;
        letter += L'a' - L'A';
        break;
    default:
        break;
    }
    switch (letter) {
    case L'd':
        conversion.base = 10;
        return readInteger(in, conversion, args, stored);
    case L'i':
    case L'u':
    case L'o':
    case L'x':
    case L'b':
        conversion.base = letter == L'i'   ? 0
                          : letter == L'u' ? 10
                          : letter == L'o' ? 8
                          : letter == L'x' ? 16
                                           : 2;
        conversion.isUnsigned = letter == L'u';
        conversion.zeroExtended = letter != L'i';
        return readInteger(in, conversion, args, stored);
    case L'e':
    case L'f':
    case L'g':
        return readDouble(in, conversion, args, stored);
    case L's':
        return readString(in, conversion, args, stored);
    case L'c':
        return readCharacters(in, conversion, args, stored);
    case L'n':
        // Meant: stored although suppressed, and never counted.
        if (int* const target = nextTarget<int>(args))
            *target = in.taken();
        return false;
    default:
        return false;
    }
}

/// The scan of what follows `stored` values: the number of values stored, or -1.
template<class Cursor>
int scanText(Cursor& in, const wchar_t* f, va_list* args, int stored = 0)
{
    for (;;) {
        if (*f && *f != L'%')
            skipSpace(in);
        while (isScanSpace(*f))
            ++f;
        if (!*f)
            break;
        if (*f == L'%' && *++f != L'%') {
            ScanfConversion conversion = parseScanConversion(f);
            const wchar_t letter = *f;
            if (letter != L'c' && letter != L'n')
                skipSpace(in);
            if (!letter)
                break;
            ++f;
            if (readConversion(in, letter, conversion, args, stored))
                break;
        } else {
            if (in.current() == -1 || in.current() != *f)
                break;
            in.take();
            ++f;
        }
    }
    return in.endsBlank() ? -1 : stored;
}

} // namespace TvFormatDetail

#endif

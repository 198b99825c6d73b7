#include "format/ScanEngines.h"
#include "format/ScanPlain.h"
#include "format/ScanPlainWindows.h"
#include "format/ScanReaders.h"

#include <cwchar>

namespace TvFormatDetail {

namespace {

// A place in a wide string. The text before it tells all that the end of the scan asks for.
class TextCursor {
public:
    explicit TextCursor(const wchar_t* text) : m_begin(text), m_at(text) {}

    // The terminating 0 reads as the end.
    std::int32_t current() const { return *m_at ? *m_at : -1; }
    void take() { ++m_at; }
    int taken() const { return static_cast<int>(m_at - m_begin); }
    bool hexDigitFollows() const { return scanDigitValue(m_at[1], 16) >= 0; }

    bool holds(unsigned n) const
    {
        const wchar_t* p = m_at;
        while (n != 0 && *p && *p != static_cast<wchar_t>(-1)) {
            ++p;
            --n;
        }
        return n == 0;
    }

    bool endsBlank() const
    {
        const wchar_t* p = m_begin;
        while (p != m_at && isScanSpace(*p))
            ++p;
        return p == m_at && current() == -1;
    }

    const wchar_t* position() const { return m_at; }
    void moveTo(const wchar_t* at) { m_at = at; }

private:
    const wchar_t* m_begin;
    const wchar_t* m_at;
};

// Takes the first digits of a mantissa, gathered in an integer: as long as that is exact in a
// double, so is every step of the digit-by-digit sum. False when more of it may follow.
bool readShortMantissa(TextCursor& in, unsigned& width, ScanMantissa& mantissa)
{
    constexpr int exactDigits = 15;
    const wchar_t* p = in.position();
    std::uint64_t digits = 0;
    int left = exactDigits;
    bool ended = false;
    while (width != 0 && left != 0 && !ended) {
        --width;
        const auto digit = static_cast<unsigned>(*p) - L'0';
        if (digit <= 9) {
            digits = digits * 10 + digit;
            mantissa.places += mantissa.point;
            --left;
            ++p;
        } else if (*p == L'.' && !mantissa.point) {
            mantissa.point = true;
            ++p;
        } else {
            ended = true;
        }
    }
    mantissa.matched = left != exactDigits;
    mantissa.value = static_cast<double>(digits);
    in.moveTo(p);
    return ended;
}

// In front of the general reader for this cursor.
bool readDouble(TextCursor& in, const ScanfConversion& conversion, va_list* args, int& stored)
{
    unsigned width = conversion.width;
    bool negative = false;
    if (!readNumberSign(in, width, negative))
        return true;
    ScanMantissa mantissa;
    if (!readShortMantissa(in, width, mantissa))
        readMantissa(in, width, mantissa);
    int power = 0;
    if (readExponent(in, width, mantissa.places, power))
        mantissa.value *= scanPower(power);
    if (!mantissa.matched)
        return true;
    storeDouble(negative ? -mantissa.value : mantissa.value, conversion, args, stored);
    return false;
}

const wchar_t* behindSpace(const wchar_t* p)
{
    while (isScanSpace(*p))
        ++p;
    return p;
}

// An integer that %d takes, or null.
[[gnu::noinline]] const wchar_t* readIntegerByDigits(const wchar_t* const text, int& value)
{
    const wchar_t* p = text;
    const bool negative = *p == L'-';
    p += negative || *p == L'+';
    std::uint32_t digit = static_cast<std::uint32_t>(*p) - L'0';
    if (digit > 9)
        return nullptr;
    std::uint32_t number = 0;
    do {
        number = number * 10 + digit; // wraps
        digit = static_cast<std::uint32_t>(*++p) - L'0';
    } while (digit <= 9);
    value = static_cast<int>(negative ? 0 - number : number);
    return static_cast<std::size_t>(p - text) <= kUnlimitedWidth ? p : nullptr;
}

// A number of few digits without an exponent that %lf takes, or null.
[[gnu::noinline]] const wchar_t* readDoubleByDigits(const wchar_t* const text, double& value)
{
    TextCursor in(text);
    unsigned width = kUnlimitedWidth;
    bool negative = false;
    ScanMantissa mantissa;
    if (!readNumberSign(in, width, negative) || !readShortMantissa(in, width, mantissa) ||
        !mantissa.matched || in.current() == L'e' || in.current() == L'E')
        return nullptr;
    value = mantissa.value * kScanPowers[kLargestScanPower - mantissa.places];
    value = negative ? -value : value;
    return in.position();
}

// Takes the bare %d and %lf, with or without white space before them, at the start of a format,
// the most frequent ones. Stops in front of what needs more; `f` and `at` are there then.
[[gnu::noinline]] void scanPlainByDigits(const wchar_t*& f, const wchar_t*& at, va_list& args, int& stored)
{
    for (;;) {
        const wchar_t* behindLetter = f;
        const PlainLetter letter = takePlainConversion(behindLetter);
        const wchar_t* behind = nullptr;
        if (letter == PlainLetter::Integer) {
            int value = 0;
            behind = readIntegerByDigits(behindSpace(at), value);
            if (behind)
                storePlain(value, args, stored);
        } else if (letter == PlainLetter::Double) {
            double value = 0;
            behind = readDoubleByDigits(behindSpace(at), value);
            if (behind)
                storePlain(value, args, stored);
        }
        if (!behind)
            return;
        f = behindLetter;
        at = behind;
    }
}

// Goes on at a place with the general engine.
[[gnu::noinline]] int scanRest(const wchar_t* text, const wchar_t* at, const wchar_t* format, va_list* args,
                               int stored)
{
    if (args)
        scanPlainByDigits(format, at, *args, stored);
    TextCursor cursor(text);
    cursor.moveTo(at);
    return scanText(cursor, format, args, stored);
}

} // namespace

double scanPower(int n)
{
    const bool inTable = n >= -kLargestScanPower && n <= kLargestScanPower;
    return inTable ? kScanPowers[n + kLargestScanPower] : TvMath::pow<double>(10, n);
}

int scanWideText(const wchar_t* text, const wchar_t* format, va_list* args)
{
    int stored = 0;
    const wchar_t* at = text;
    if (args) {
#ifdef TV_FORMAT_BY_SSE2
        scanPlainWindows(format, at, *args, stored);
        if (!*format && stored > 0)
            return stored;
#endif
    }
    return scanRest(text, at, format, args, stored);
}

} // namespace TvFormatDetail

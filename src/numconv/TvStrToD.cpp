#include "TvNumber.h"

#include "numconv/DecimalByProduct.h"
#include "numconv/DecimalExact.h"
#include "numconv/DecimalScan.h"
#include "numconv/DoubleBits.h"
#include "numconv/NumberVectors.h"
#include "runtime/ReadOn.h"
#ifdef TV_NUMBERS_BY_SSE2
#include "numconv/DecimalWindow.h"
#endif

#include <algorithm>
#include <cerrno>

namespace {

// The exact answer from the digits between `s` and `end`; `power` is that of the last of the
// first 19. Out of line, and without the address of anything, to keep the ordinary way in
// registers. `bits` is the answer when memory ran out.
template<class Char>
[[gnu::noinline]] std::uint64_t dividedExactly(const Char* s, const Char* end, std::int64_t power,
                                               std::uint64_t bits)
{
    char digits[kDigitsThatCount];
    int n = 0;
    bool more = false;
    for (; s < end; ++s) {
        if (*s == Char('.') || (n == 0 && *s == Char('0')))
            continue;
        if (n < kDigitsThatCount)
            digits[n++] = static_cast<char>(*s);
        else
            more = more || *s != Char('0');
    }
    if (!exactDouble(digits, n, power + std::min(n, static_cast<int>(kLeadingDigits)), more, bits))
        errno = ENOMEM;
    return bits;
}

// Any text.
template<class Char>
[[gnu::noinline]] double convertByScanning(const Char* text, Char** end)
{
    const DecimalText<Char> number = scanDecimal(text);
    if (end)
        *end = const_cast<Char*>(number.end ? number.end : text);
    if (number.leading == 0)
        return doubleOf(number.negative && number.end ? kSignBit : 0);
    std::uint64_t bits;
    if (!doubleByProduct(number.leading, number.power, number.cut, bits))
        bits = dividedExactly(number.digits, number.digitsEnd, number.power, bits);
    if (bits - 1 >= kInfinityBits - 1)
        errno = ERANGE;
    return doubleOf(bits | (number.negative ? kSignBit : 0));
}

#ifdef TV_NUMBERS_BY_SSE2

// leading * 10^power, written from `text` to `s`, with the whole of the power of ten.
template<class Char>
[[gnu::noinline]] double convertByProduct(const Char* text, Char** end, const Char* s, std::uint64_t leading,
                                          int power, bool negative)
{
    std::uint64_t bits;
    if (!doubleByProduct(leading, power, false, bits))
        return convertByScanning(text, end);
    if (bits - 1 >= kInfinityBits - 1)
        errno = ERANGE;
    if (end)
        *end = const_cast<Char*>(s);
    return doubleOf(bits | (negative ? kSignBit : 0));
}

// Ordinary text, its number at `s`; what does not fit is left to the functions above. They are
// called last or not at all, so that nothing has to be kept over a call.
template<class Char>
[[gnu::always_inline]] inline double convertWindow(const Char* text, Char** end, const Char* s, bool negative,
                                                   const DecimalWindow& window)
{
    WindowNumber number;
    if (!readWindow(s, window, number)) [[unlikely]]
        return convertByScanning(text, end);
    s += number.length;
    int power = number.power;
    if ((static_cast<unsigned>(*s) | 0x20) == 'e') {
        int exponent = 0;
        s = scanExponent(s, exponent);
        power += exponent;
    }
    std::uint64_t bits = 0;
    if (number.leading != 0 && !doubleByUpperProduct(number.leading, power, bits)) [[unlikely]]
        return convertByProduct(text, end, s, number.leading, power, negative);
    if (end)
        *end = const_cast<Char*>(s);
    return doubleOf(bits | (negative ? kSignBit : 0));
}

// The same where reading on is not allowed.
template<class Char>
[[gnu::noinline]] double convertCopy(const Char* text, Char** end, const Char* s, bool negative)
{
    return convertWindow(text, end, s, negative, windowOfCopy(s));
}

template<class Char>
inline double convert(const Char* text, Char** end)
{
    const Char* s = text;
    while (*s == Char(' ') || (*s >= Char('\t') && *s <= Char('\r')))
        ++s;
    const bool negative = *s == Char('-');
    if (negative || *s == Char('+')) {
        ++s;
        // Keeps this a branch: the window is then read before the sign is known.
        asm("" : "+r"(s));
    }
    if (!mayReadOn(s, kWindowCharacters<Char> * sizeof(Char))) [[unlikely]]
        return convertCopy(text, end, s, negative);
    return convertWindow(text, end, s, negative, windowAt(s));
}

#else

template<class Char>
inline double convert(const Char* text, Char** end)
{
    return convertByScanning(text, end);
}

#endif

} // namespace

double tvStrToD(const char* text, char** end) { return convert(text, end); }

double tvStrToD(const wchar_t* text, wchar_t** end) { return convert(text, end); }

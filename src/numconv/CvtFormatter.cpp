#include "TvNumber.h"

#include "numconv/ExponentText.h"
#include "numconv/LayoutInRegisters.h"
#include "numconv/NumberKernels.h"
#include "runtime/ReadOn.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <type_traits>

namespace {

template<class Char>
void fill(Char*& out, char c, int count)
{
    if (count > 0)
        out = std::fill_n(out, count, static_cast<Char>(c));
}

template<class Char>
void copy(Char*& out, const char*& digits, int count)
{
    if (count > 0)
        out = std::copy_n(digits, count, out);
    digits += std::max(count, 0);
}

// The whole of formatG.
template<class Char>
[[gnu::noinline]] void formatAnyG(Char* out, const char* digits, int n, int precision, int decpt, int sign,
                                  int expChar, int style)
{
    const char leading = n > 0 ? *digits : '0';
    // All precisions below the smallest fixed exponent are alike; this one can count down.
    precision = std::max(precision, -4);
    if (style != 1) {
        while (n > 0 && digits[n - 1] == '0')
            --n;
    }
    if (sign)
        *out++ = '-';
    if (decpt >= -3 && decpt <= precision) {
        if (decpt < 1) {
            *out++ = '0';
            *out++ = '.';
            // The zeros do not count as digits of the precision.
            fill(out, '0', -decpt);
            const int places = std::max(std::min(n, precision), 0);
            copy(out, digits, places);
            if (style == 1)
                fill(out, '0', precision - places);
        } else {
            const int whole = std::min(n, decpt);
            copy(out, digits, whole);
            n -= whole;
            fill(out, '0', decpt - whole);
            precision -= decpt;
            if (n > 0) {
                // Meant: no zeros behind these digits, in style 1 neither.
                *out++ = '.';
                copy(out, digits, std::min(n, precision));
            } else if (style >= 1) {
                *out++ = '.';
                if (style == 1)
                    fill(out, '0', precision);
                else if (style == 2)
                    *out++ = '0';
            }
        }
    } else {
        *out++ = static_cast<Char>(leading);
        --n;
        --precision;
        if (n > 0) {
            ++digits;
            *out++ = '.';
            const int places = std::max(std::min(n, precision), 0);
            copy(out, digits, places);
            if (style == 1)
                fill(out, '0', precision - places);
        } else if (style == 1) {
            *out++ = '.';
            fill(out, '0', precision);
        } else if (style == 2) {
            *out++ = '.';
            *out++ = '0';
        }
        *out++ = static_cast<Char>(expChar);
        out = putSignedExponent(out, std::int64_t{decpt} - 1);
    }
    *out = 0;
}

// The same for what is usual; false, with nothing written, for the rest.
inline bool formatUsualG(char* out, const char* digits, int n, int precision, int decpt, int sign,
                         int expChar, int style)
{
    const auto most = static_cast<unsigned>(precision);
    if (style >= 1 || most > kMostCharacters || static_cast<unsigned>(n) - 1 >= most)
        return false;
    while (digits[n - 1] == '0') {
        if (--n == 0)
            return false;
    }
    *out = '-';
    numberKernels().generalLayout(out + (sign != 0), digits, n, precision, decpt, expChar);
    return true;
}

} // namespace

void plainGeneralLayout(char* out, const char* digits, int n, int precision, int decpt, int expChar)
{
    char readable[kMostCharacters] = {};
    if (!mayReadOn(digits, 16))
        digits = static_cast<const char*>(std::memcpy(readable, digits, static_cast<std::size_t>(n)));
    const Characters characters = {SixteenCharacters(digits).first(n), n > 16 ? digits[16] : '0', n};
    putGeneral(out, characters, n, precision, decpt, expChar);
}

template<class Char>
void CvtFormatter<Char>::formatF(Char* out, const char* digits, int n, int precision, int decpt, int sign)
{
    if (!digits) {
        *out = 0;
        return;
    }
    if (sign)
        *out++ = '-';
    if (decpt < 1) {
        *out++ = '0';
        if (precision > 0) {
            *out++ = '.';
            const int zeros = decpt < -precision ? precision : -decpt;
            fill(out, '0', zeros);
            precision -= zeros;
        }
    } else {
        const int whole = std::min(n, decpt);
        copy(out, digits, whole);
        n -= whole;
        fill(out, '0', decpt - whole);
        if (precision > 0)
            *out++ = '.';
    }
    const int places = std::max(std::min(n, precision), 0);
    copy(out, digits, places);
    fill(out, '0', precision - places);
    *out = 0;
}

template<class Char>
void CvtFormatter<Char>::formatE(Char* out, const char* digits, int n, int precision, int decpt, int sign,
                                 int expChar)
{
    if (!digits) {
        *out = 0;
        return;
    }
    if (sign)
        *out++ = '-';
    *out++ = static_cast<Char>(n > 0 ? *digits++ : '0');
    *out++ = '.';
    const int places = std::max(std::min(n - 1, precision), 0);
    copy(out, digits, places);
    fill(out, '0', precision - places);
    *out++ = static_cast<Char>(expChar);
    *putSignedExponent(out, std::int64_t{decpt} - 1) = 0;
}

template<class Char>
void CvtFormatter<Char>::formatG(Char* out, const char* digits, int n, int precision, int decpt, int sign,
                                 int expChar, int style)
{
    if (!digits) {
        *out = 0;
        return;
    }
    if constexpr (std::is_same_v<Char, char>) {
        if (formatUsualG(out, digits, n, precision, decpt, sign, expChar, style))
            return;
    }
    formatAnyG(out, digits, n, precision, decpt, sign, expChar, style);
}

template<class Char>
void CvtFormatter<Char>::expToAscii(Char*& out, int exponent)
{
    out = putSignedExponent(out, exponent);
}

template class CvtFormatter<char>;
template class CvtFormatter<wchar_t>;

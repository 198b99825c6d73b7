#include "TvNumber.h"

#include <algorithm>

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

} // namespace

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
    expToAscii(out, decpt - 1);
    *out = 0;
}

template<class Char>
void CvtFormatter<Char>::formatG(Char* out, const char* digits, int n, int precision, int decpt, int sign,
                                 int expChar, int style)
{
    if (!digits) {
        *out = 0;
        return;
    }
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
        expToAscii(out, decpt - 1);
    }
    *out = 0;
}

template<class Char>
void CvtFormatter<Char>::expToAscii(Char*& out, int exponent)
{
    *out++ = exponent < 0 ? '-' : '+';
    const unsigned size =
        exponent < 0 ? 0u - static_cast<unsigned>(exponent) : static_cast<unsigned>(exponent);
    *out++ = static_cast<Char>('0' + size / 100 % 10);
    *out++ = static_cast<Char>('0' + size / 10 % 10);
    *out++ = static_cast<Char>('0' + size % 10);
}

template class CvtFormatter<char>;
template class CvtFormatter<wchar_t>;

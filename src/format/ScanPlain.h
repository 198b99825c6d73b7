// ScanPlain.h - the most frequent scans: the bare %d and %lf at the start of a format, with or
// without white space between them.
#ifndef TV_FORMAT_SCAN_PLAIN_H
#define TV_FORMAT_SCAN_PLAIN_H

#include "format/ScanEngines.h"

#include <cstdarg>

namespace TvFormatDetail {

/// The first character that is no white space of ASCII.
inline const wchar_t* behindPlainSpace(const wchar_t* p)
{
    while (isPlainSpace(*p))
        ++p;
    return p;
}

enum class PlainLetter { None, Integer, Double };

/// The conversion at the start of `f`, white space left out. `f` is then the place behind it, if
/// there is one.
[[gnu::always_inline]] inline PlainLetter takePlainConversion(const wchar_t*& f)
{
    const wchar_t* g = f;
    if (*g == L' ') // nearly always the only one
        ++g;
    if (*g != L'%') {
        if (!*g)
            return PlainLetter::None;
        g = behindPlainSpace(g);
        if (*g != L'%')
            return PlainLetter::None;
    }
    if (g[1] == L'd') {
        f = g + 2;
        return PlainLetter::Integer;
    }
    if (g[1] != L'l' || g[2] != L'f')
        return PlainLetter::None;
    f = g + 3;
    return PlainLetter::Double;
}

/// Stores through the next pointer of the list and counts.
template<class T>
void storePlain(T value, va_list& args, int& stored)
{
    if (T* const target = va_arg(args, T*)) {
        *target = value;
        ++stored;
    }
}

/// Powers of ten up to kLargestScanPower, from the smallest on.
inline constexpr double kScanPowers[2 * kLargestScanPower + 1] = {
    1e-22, 1e-21, 1e-20, 1e-19, 1e-18, 1e-17, 1e-16, 1e-15, 1e-14, 1e-13, 1e-12, 1e-11, 1e-10, 1e-9, 1e-8,
    1e-7,  1e-6,  1e-5,  1e-4,  1e-3,  1e-2,  1e-1,  1e0,   1e1,   1e2,   1e3,   1e4,   1e5,   1e6,  1e7,
    1e8,   1e9,   1e10,  1e11,  1e12,  1e13,  1e14,  1e15,  1e16,  1e17,  1e18,  1e19,  1e20,  1e21, 1e22};

} // namespace TvFormatDetail

#endif

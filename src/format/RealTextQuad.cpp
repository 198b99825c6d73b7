#include "format/RealText.h"

#include "format/QuadDecimal.h"

#include <cmath>
#include <cstdlib>
#include <cwchar>

namespace TvFormatDetail {

int nonFiniteText(wchar_t* out, double value)
{
    const wchar_t* const word = std::isnan(value) ? L"NaN" : value < 0 ? L"-Infinity" : L"Infinity";
    std::wcscpy(out, word);
    return static_cast<int>(std::wcslen(word));
}

int exponentText(wchar_t* out, int exponent)
{
    const int e = std::abs(exponent);
    out[0] = L'E';
    out[1] = exponent < 0 ? L'-' : L'+';
    out[2] = static_cast<wchar_t>(L'0' + e / 100 % 10);
    out[3] = static_cast<wchar_t>(L'0' + e / 10 % 10);
    out[4] = static_cast<wchar_t>(L'0' + e % 10);
    out[5] = 0;
    return 5;
}

int realTextQuad(wchar_t* out, TvQuad value, wchar_t letter, int precision, bool plus)
{
    TvQuad mantissa = value;
    int exponent = scaleQuad(mantissa);
    if (letter == L'f' || (letter != L'e' && exponent > -5 && exponent < 5)) {
        exponent += roundQuad(mantissa, precision, exponent);
        const bool sign = plus && mantissa >= 0;
        if (sign)
            *out = L'+';
        return sign + emitQuad(out + sign, mantissa, exponent + 1, precision);
    }
    // Meant: no plus sign in exponent notation.
    exponent += roundQuad(mantissa, precision, 0);
    const int length = emitQuad(out, mantissa, 1, precision);
    return length + exponentText(out + length, exponent);
}

} // namespace TvFormatDetail

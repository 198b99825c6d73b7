#include "TvNumber.h"

#include "TvAlloc.h"
#include "TvGdImpl.h"
#include "TvHooks.h"
#include "numconv/LayoutByScaling.h"
#include "numconv/WideRoom.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <memory>

namespace {

constexpr int kPointOfWords = 9999;

// The digits of a value for as long as it takes to lay them out.
struct Digits {
    Digits(double value, int mode, int ndigits)
    {
        char* end = nullptr;
        text = TvGdImpl::dtoa(value, mode, ndigits, &decpt, &sign, &end);
        n = text ? static_cast<int>(end - text) : 0;
    }
    ~Digits() { tvFreeCvt(text); }
    Digits(const Digits&) = delete;
    Digits& operator=(const Digits&) = delete;

    bool isWord() const { return decpt == kPointOfWords; }

    char* text;
    int n;
    int decpt = 0;
    int sign = 0;
};

// As tvEcvt and tvFcvt.
Digits significant(double value, int count) { return Digits(value, 2, count); }
Digits throughPlace(double value, int places) { return Digits(value, 5, places); }

template<class Char>
void writeWord(Char* out, const Digits& d)
{
    if (d.sign && *d.text == 'I')
        *out++ = '-';
    *std::copy_n(d.text, d.n, out) = 0;
}

template<class Layout>
void narrow(char* out, const Digits& d, Layout layout)
{
    if (!d.text)
        *out = '\0';
    else if (d.isWord())
        writeWord(out, d);
    else
        layout(out);
}

// `room` in characters, for finite values.
template<class Layout>
wchar_t* wide(const Digits& d, std::int64_t room, Layout layout)
{
    constexpr std::int64_t kRoomOfWords = sizeof "-Infinity";
    if (!d.text)
        return nullptr;
    const std::int64_t chars = d.isWord() ? kRoomOfWords : room;
    auto* out = static_cast<wchar_t*>(_tvMalloc(static_cast<std::size_t>(chars) * sizeof(wchar_t)));
    if (!out)
        return nullptr;
    if (d.isWord())
        writeWord(out, d);
    else
        layout(out);
    return out;
}

int digitsOfE(int precision)
{
    return precision < std::numeric_limits<int>::max() ? precision + 1 : precision;
}

} // namespace

char* tvEcvt(double value, int ndigits, int* decpt, int* sign)
{
    return TvGdImpl::dtoa(value, 2, ndigits, decpt, sign, nullptr);
}

char* tvFcvt(double value, int ndigits, int* decpt, int* sign)
{
    return TvGdImpl::dtoa(value, 5, ndigits, decpt, sign, nullptr);
}

void tvFreeCvt(char* digits) { TvGdImpl::freedtoa(digits); }

void tvFltToF(char* out, double value, int precision)
{
    precision = std::max(precision, 0);
    if (fixedText(out, value, precision))
        return;
    const Digits d = throughPlace(value, precision);
    narrow(out, d,
           [&](char* to) { CvtFormatter<char>::formatF(to, d.text, d.n, precision, d.decpt, d.sign); });
}

wchar_t* tvFltToF(double value, int precision)
{
    precision = std::max(precision, 0);
    const Digits d = throughPlace(value, precision);
    return wide(d, TvDetail::roomOfF(d.n, precision, d.decpt), [&](wchar_t* to) {
        CvtFormatter<wchar_t>::formatF(to, d.text, d.n, precision, d.decpt, d.sign);
    });
}

void tvFltToE(char* out, double value, int precision, int expChar)
{
    precision = std::max(precision, 0);
    if (exponentText(out, value, precision, expChar))
        return;
    const Digits d = significant(value, digitsOfE(precision));
    narrow(out, d, [&](char* to) {
        CvtFormatter<char>::formatE(to, d.text, d.n, precision, d.decpt, d.sign, expChar);
    });
}

wchar_t* tvFltToE(double value, int precision, int expChar)
{
    precision = std::max(precision, 0);
    const Digits d = significant(value, digitsOfE(precision));
    return wide(d, TvDetail::roomOfE(d.n, precision), [&](wchar_t* to) {
        CvtFormatter<wchar_t>::formatE(to, d.text, d.n, precision, d.decpt, d.sign, expChar);
    });
}

void tvFltToG(char* out, double value, int precision, int expChar, int style)
{
    precision = std::max(precision, 0);
    if (generalText(out, value, precision, expChar, style))
        return;
    const Digits d = significant(value, precision);
    narrow(out, d, [&](char* to) {
        CvtFormatter<char>::formatG(to, d.text, d.n, precision, d.decpt, d.sign, expChar, style);
    });
}

wchar_t* tvFltToG(double value, int precision, int expChar, int style)
{
    precision = std::max(precision, 0);
    const Digits d = significant(value, precision);
    return wide(d, TvDetail::roomOfG(d.n, precision, d.decpt), [&](wchar_t* to) {
        CvtFormatter<wchar_t>::formatG(to, d.text, d.n, precision, d.decpt, d.sign, expChar, style);
    });
}

void tvDToStr(char* out, double value, char conv, int precision, int style)
{
    switch (conv) {
    case 'e':
    case 'E':
        return tvFltToE(out, value, precision, conv);
    case 'f':
        return tvFltToF(out, value, precision);
    case 'g':
    case 'G':
        return tvFltToG(out, value, precision, conv - 2, style);
    default:
        *out = '\0';
        TvDetail::reportMessage(L"EMPTY THROW");
    }
}

wchar_t* tvDToStr(double value, char conv, int precision, int style)
{
    switch (conv) {
    case 'e':
    case 'E':
        return tvFltToE(value, precision, conv);
    case 'f':
        return tvFltToF(value, precision);
    case 'g':
    case 'G':
        return tvFltToG(value, precision, conv - 2, style);
    default:
        TvDetail::reportMessage(L"EMPTY THROW");
        return nullptr;
    }
}

#include "TvCharConverter.h"

#include "codepage/MapperSlots.h"

namespace {

enum : int { kCifLength = 7, kMifLength = 8, kCodeDigits = 4 };

// Backslash, one of two letters, plus sign.
template<class C>
bool startsEscape(const C* p, char upper, char lower)
{
    return p && p[0] == C('\\') && (p[1] == C(upper) || p[1] == C(lower)) && p[2] == C('+');
}

template<class C>
unsigned int fourDigits(const C* p)
{
    unsigned int value = 0;
    for (int i = 0; i < kCodeDigits; ++i)
        value = value << 4 | TvCharConverter::hexValue(p[i]);
    return value;
}

template<class C>
void writeFourDigits(unsigned int value, C* p)
{
    for (int i = 0; i < kCodeDigits; ++i)
        p[i] = C("0123456789ABCDEF"[value >> (12 - 4 * i) & 15]);
}

} // namespace

template<class C>
bool TvCharConverter::isDigit(C c)
{
    return c >= C('0') && c <= C('9');
}

template<class C>
bool TvCharConverter::isHexDigit(C c)
{
    return isDigit(c) || (c >= C('a') && c <= C('f')) || (c >= C('A') && c <= C('F'));
}

template<class C>
unsigned int TvCharConverter::hexValue(C c)
{
    if (isDigit(c))
        return static_cast<unsigned int>(c - C('0'));
    if (c >= C('a') && c <= C('f'))
        return static_cast<unsigned int>(c - C('a')) + 10;
    if (c >= C('A') && c <= C('F'))
        return static_cast<unsigned int>(c - C('A')) + 10;
    return 0;
}

template<class C>
bool TvCharConverter::checkDigits(const C* p, int n, bool hex)
{
    for (int i = 0; i < n; ++i) {
        if (!(hex ? isHexDigit(p[i]) : isDigit(p[i])))
            return false;
    }
    return true;
}

template<class C>
bool TvCharConverter::isCIF(const C* p)
{
    return startsEscape(p, 'U', 'u') && checkDigits(p + 3, kCodeDigits, true);
}

template<class C>
bool TvCharConverter::isMIF(const C* p)
{
    // The code page digit comes before the others so that the end of the text stops the test.
    return startsEscape(p, 'M', 'm') && p[3] >= C('0') && p[3] <= C('5') &&
           checkDigits(p + 4, kCodeDigits, true);
}

template<class C>
bool TvCharConverter::parseCIFString(const C* p, wchar_t& wc)
{
    if (!isCIF(p))
        return false;
    wc = static_cast<wchar_t>(fourDigits(p + 3));
    return true;
}

template<class C>
bool TvCharConverter::parseMIFString(const C* p, wchar_t& code, code_page_id& cp)
{
    if (!isMIF(p))
        return false;
    cp = getMIFCodepage(p[3]);
    code = static_cast<wchar_t>(fourDigits(p + 4));
    return true;
}

template<class C>
int TvCharConverter::getCIFString(unsigned short wc, C* buf, int size)
{
    if (!buf || size < kCifLength)
        return 0;
    buf[0] = C('\\');
    buf[1] = C('U');
    buf[2] = C('+');
    writeFourDigits(wc, buf + 3);
    return kCifLength;
}

template<class C>
int TvCharConverter::getMIFString(wchar_t code, code_page_id cp, C* buf, int size)
{
    if (!buf || size < kMifLength)
        return 0;
    buf[0] = C('\\');
    buf[1] = C('M');
    buf[2] = C('+');
    buf[3] = C(getMIFIndex(cp));
    writeFourDigits(static_cast<unsigned int>(code), buf + 4);
    return kMifLength;
}

char TvCharConverter::getMIFIndex(code_page_id id)
{
    switch (checkTheSameCP(id)) {
    case CP_ANSI_932:
        return '1';
    case CP_ANSI_950:
        return '2';
    case CP_ANSI_949:
        return '3';
    case CP_ANSI_1361:
        return '4';
    case CP_ANSI_936:
        return '5';
    default:
        return '0';
    }
}

template<class C>
code_page_id TvCharConverter::getMIFCodepage(C digit)
{
    switch (digit) {
    case C('0'):
        return TvCodePageMapper::ansiCpToOrnaCp(static_cast<int>(TvCodePageMapper::currentSystemAnsiCp()));
    case C('1'):
        return CP_ANSI_932;
    case C('2'):
        return CP_ANSI_950;
    case C('3'):
        return CP_ANSI_949;
    case C('4'):
        return CP_ANSI_1361;
    case C('5'):
        return CP_ANSI_936;
    default:
        return CP_UNDEFINED;
    }
}

bool TvCharConverter::isMBCBCodepage(code_page_id id) { return getMIFIndex(id) != '0'; }

bool TvCharConverter::isMIFCodepage(code_page_id id) { return isMBCBCodepage(id); }

code_page_id TvCharConverter::checkTheSameCP(code_page_id id) { return TvDetail::sameCodePage(id); }

char isCIForMIF(const wchar_t* p)
{
    if (TvCharConverter::isCIF(p))
        return 'u';
    // A MIF escape of the system code page is no escape here, though isMIF accepts it: it is
    // meant, such text is converted like any other.
    if (TvCharConverter::isMIF(p) && p[3] != L'0')
        return 'm';
    return 0;
}

// NOLINTBEGIN(bugprone-macro-parentheses): a type, which takes none
#define TV_INSTANTIATE_CONVERTER(C)                                                                          \
    template TV_OSBASE_API bool TvCharConverter::isDigit<C>(C);                                              \
    template TV_OSBASE_API bool TvCharConverter::isHexDigit<C>(C);                                           \
    template TV_OSBASE_API unsigned int TvCharConverter::hexValue<C>(C);                                     \
    template TV_OSBASE_API bool TvCharConverter::checkDigits<C>(const C*, int, bool);                        \
    template TV_OSBASE_API bool TvCharConverter::isCIF<C>(const C*);                                         \
    template TV_OSBASE_API bool TvCharConverter::isMIF<C>(const C*);                                         \
    template TV_OSBASE_API bool TvCharConverter::parseCIFString<C>(const C*, wchar_t&);                      \
    template TV_OSBASE_API bool TvCharConverter::parseMIFString<C>(const C*, wchar_t&, code_page_id&);       \
    template TV_OSBASE_API int TvCharConverter::getCIFString<C>(unsigned short, C*, int);                    \
    template TV_OSBASE_API int TvCharConverter::getMIFString<C>(wchar_t, code_page_id, C*, int);             \
    template TV_OSBASE_API code_page_id TvCharConverter::getMIFCodepage<C>(C);
// NOLINTEND(bugprone-macro-parentheses)

TV_INSTANTIATE_CONVERTER(char)
TV_INSTANTIATE_CONVERTER(unsigned char)
TV_INSTANTIATE_CONVERTER(wchar_t)

#undef TV_INSTANTIATE_CONVERTER

#include "TvCharOp.h"

#include "TvAlloc.h"
#include "runtime/TvPlatformCalls.h"

#include <cstring>
#include <cwchar>
#include <cwctype>

int TvCharToInt(wchar_t c)
{
    if (c >= L'0' && c <= L'9')
        return c - L'0';
    const wchar_t text[] = {c, L'\0'};
    return _wtoi(text);
}

bool isdigit_WithDiffCodeSys(int base, wchar_t c)
{
    if (base == 16) {
        const std::wint_t lower = std::towlower(static_cast<std::wint_t>(c));
        return TvCharOp::isDigit(c) || (lower >= L'a' && lower <= L'f');
    }
    return TvCharOp::isDigit(c) && (base == 0 || TvCharToInt(c) < base);
}

void* TvCharOp::zalloc(unsigned long bytes)
{
    void* const memory = _tvMalloc(bytes);
    return memory ? std::memset(memory, 0, bytes) : nullptr;
}

void TvCharOp::zfree(void* p)
{
    if (p)
        _tvFree(p);
}

bool TvCharOp::isDigit(wchar_t c) { return std::iswdigit(static_cast<std::wint_t>(c)) != 0; }

int TvCharOp::compare(const wchar_t* a, const wchar_t* b, unsigned long n) { return std::wcsncmp(a, b, n); }

int TvCharOp::compareNoCase(const wchar_t* a, const wchar_t* b) { return wcscasecmp(a, b); }

unsigned long TvCharOp::length(const wchar_t* text) { return text ? std::wcslen(text) : 0; }

unsigned long TvCharOp::length(const char* text)
{
    return text ? _mbslen(reinterpret_cast<const unsigned char*>(text)) : 0;
}

unsigned long TvCharOp::numOfChars(const char* text) { return text ? std::strlen(text) : 0; }

wchar_t* TvCharOp::copy(wchar_t* dst, const wchar_t* src) { return _tarmcscpy(dst, src); }

wchar_t* TvCharOp::copy(wchar_t* dst, const wchar_t* src, unsigned long n)
{
    return n ? std::wmemcpy(dst, src, n) : dst;
}

wchar_t* TvCharOp::cat(wchar_t* dst, const wchar_t* src) { return std::wcscat(dst, src); }

template const wchar_t* TvCharOp::find<wchar_t>(const wchar_t*, wchar_t, unsigned long, int*);
template bool TvCharOp::isPathSeparator<wchar_t>(wchar_t);

#include "TvCharOp.h"

#include <cwchar>

wchar_t* _tarmcscpy(wchar_t* dst, const wchar_t* src)
{
    if (!dst || !src)
        return nullptr;
    return std::wmemmove(dst, src, std::wcslen(src) + 1);
}

wchar_t* _tarmcscpy_s(wchar_t* dst, const wchar_t* src) { return _tarmcscpy(dst, src); }

wchar_t* _tarmcscpy_s(wchar_t* dst, int count, const wchar_t* src)
{
    if (!dst || !src)
        return nullptr;
    const std::size_t length = count > 0 ? wcsnlen(src, static_cast<std::size_t>(count)) : 0;
    std::wmemmove(dst, src, length);
    dst[length] = L'\0'; // behind the counted characters: the buffer has count + 1
    return dst;
}

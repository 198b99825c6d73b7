// PlatformText.cpp - the conversion functions with the Windows names.
#include "TvPlatformText.h"

#include "TvCharOp.h"
#include "codepage/MapperText.h"
#include "runtime/TvPlatformCalls.h"

#include <climits>
#include <cstddef>
#include <cstring>
#include <cwchar>

namespace {

code_page_id idOf(unsigned int cp) { return TvCodePageMapper::ansiCpToOrnaCp(static_cast<int>(cp)); }

std::size_t lengthOf(const char* text) { return std::strlen(text); }
std::size_t lengthOf(const wchar_t* text) { return std::wcslen(text); }

void copy(char* dst, int room, const char* src, int count)
{
    memcpy_s(dst, static_cast<std::size_t>(room), src, static_cast<std::size_t>(count));
}

void copy(wchar_t* dst, int room, const wchar_t* src, int count)
{
    wmemcpy_s(dst, static_cast<std::size_t>(room), src, static_cast<std::size_t>(count));
}

// What both directions do alike. `convert` turns the `length` elements from `src` on into a text
// with a terminator, or leaves the text empty when it fails. `dst` is not written before
// that, so that the two may overlap.
template<class From, class To, class Convert>
int convertText(const From* src, int srcLen, To* dst, int dstLen, Convert convert)
{
    if (!src || dstLen < 0 || srcLen == 0 || srcLen < -1 || (!dst && dstLen != 0))
        return 0;
    const bool isWhole = srcLen == -1;
    const std::size_t length = isWhole ? lengthOf(src) : static_cast<std::size_t>(srcLen);
    TvDetail::ShortText<To> text;
    if (length > 0 && length <= INT_MAX)
        convert(static_cast<int>(length), text);
    if (dstLen != 0)
        dst[0] = 0; // all that is left when the result does not fit
    if (length == 0)
        return 1; // the terminator, which dst has when there is room for it
    if (text.isEmpty())
        return 0;
    const int count = text.length() - 1 + (isWhole ? 1 : 0);
    if (dstLen != 0) {
        if (dstLen < count)
            return 0;
        copy(dst, dstLen, text.asArrayPtr(), count);
    }
    return count;
}

} // namespace

extern "C" int MultiByteToWideChar(unsigned int cp, unsigned int, const char* src, int srcLen, wchar_t* dst,
                                   int dstLen)
{
    return convertText(src, srcLen, dst, dstLen,
                       [&](int length, auto& text) { TvDetail::decodeText(idOf(cp), src, length, text); });
}

extern "C" int WideCharToMultiByte(unsigned int cp, unsigned int, const wchar_t* src, int srcLen, char* dst,
                                   int dstLen, const char*, int*)
{
    return convertText(src, srcLen, dst, dstLen,
                       [&](int length, auto& text) { TvDetail::encodeText(idOf(cp), src, length, text); });
}

int TvCharOp::tvMultiByteToWideChar(unsigned int cp, unsigned int flags, const char* src, int srcLen,
                                    wchar_t* dst, int dstLen)
{
    return MultiByteToWideChar(cp, flags, src, srcLen, dst, dstLen);
}

int TvCharOp::WideCharToMultiByteCIF(unsigned int cp, unsigned int flags, const wchar_t* src, int srcLen,
                                     char* dst, int dstLen, unsigned int)
{
    return WideCharToMultiByte(cp, flags, src, srcLen, dst, dstLen, nullptr, nullptr);
}

// TvPlatformCalls.h - TvPlatformBase.h for the sources of this library: what they call of
// libTvPlatformBase is bound to it, whatever functions of these names a host has of its own.
//
// The calls go by the second names of the functions, which only the two libraries know. Every
// source file includes this header and not TvPlatformBase.h; those that begin with tvPlatform
// need no second name.
#ifndef TV_PLATFORM_CALLS_H
#define TV_PLATFORM_CALLS_H

#include "TvPlatformBase.h"

#include <atomic>

// NOLINTNEXTLINE(bugprone-macro-parentheses): a name to declare, which takes none
#define TV_CALL_BY_SECOND_NAME(name) decltype(name) name __asm__("tvPlatform_" #name)

extern "C" {
TV_CALL_BY_SECOND_NAME(GetACP);
TV_CALL_BY_SECOND_NAME(GetSystemDefaultLCID);
TV_CALL_BY_SECOND_NAME(_wtoi);
TV_CALL_BY_SECOND_NAME(_wsplitpath_s);
TV_CALL_BY_SECOND_NAME(_waccess);
TV_CALL_BY_SECOND_NAME(memcpy_s);
TV_CALL_BY_SECOND_NAME(wmemcpy_s);
TV_CALL_BY_SECOND_NAME(_vscwprintf);
TV_CALL_BY_SECOND_NAME(_mbslen);
}

int vswprintf(wchar_t* buffer, const wchar_t* format, va_list args) __asm__("tvPlatform_vswprintf");

#undef TV_CALL_BY_SECOND_NAME

/// What GetACP() answers; 0 while nobody has asked.
extern "C" std::atomic<unsigned int> tvPlatform_ansiCodePage;

/// GetACP(), for those who ask so often that a call counts.
inline unsigned int ansiCodePage()
{
    const unsigned int known = tvPlatform_ansiCodePage.load(std::memory_order_relaxed);
    return known != 0 ? known : GetACP();
}

#endif

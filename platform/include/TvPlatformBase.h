// TvPlatformBase.h - the Windows-style functions of libTvPlatformBase.
//
// Each function has the documented semantics of the Windows function of the same name,
// so that code written against that interface runs on Linux unchanged. The header
// compiles as C and as C++. Threads: every function may be called from any thread
// unless its comment says otherwise.
#ifndef TV_PLATFORM_BASE_H
#define TV_PLATFORM_BASE_H

#include <stddef.h>
#include <wchar.h>

/// Marks a function that libTvPlatformBase exports.
#define TV_PLATFORM_API __attribute__((visibility("default")))

#ifdef __cplusplus
extern "C" {
#endif

/// Copies `count` bytes from `src` to `dst`, which has room for `dstSize` bytes.
///
/// Returns 0; EINVAL when `dst` is null, or when `src` is null (then `dst` is filled with
/// zeros); ERANGE when `count` exceeds `dstSize` (`dst` is filled with zeros as well).
/// A `count` of 0 always succeeds.
TV_PLATFORM_API int memcpy_s(void* dst, size_t dstSize, const void* src, size_t count);

/// As memcpy_s, with sizes in wide characters.
TV_PLATFORM_API int wmemcpy_s(wchar_t* dst, size_t dstSize, const wchar_t* src, size_t count);

#ifdef __cplusplus
}
#endif

#endif

#include "TvPlatformBase.h"

#include "SecondNames.h"

#include <cerrno>
#include <cstdint>
#include <cstring>

extern "C" {

int memcpy_s(void* dst, size_t dstSize, const void* src, size_t count)
{
    if (count == 0)
        return 0;
    if (!dst)
        return errno = EINVAL;
    if (src && count <= dstSize) {
        std::memcpy(dst, src, count);
        return 0;
    }
    std::memset(dst, 0, dstSize);
    return errno = src ? ERANGE : EINVAL;
}

int wmemcpy_s(wchar_t* dst, size_t dstSize, const wchar_t* src, size_t count)
{
    // Byte counts that would wrap cannot fit either, and must not look as if they did.
    if (count > SIZE_MAX / sizeof(wchar_t))
        count = SIZE_MAX / sizeof(wchar_t);
    if (dstSize > SIZE_MAX / sizeof(wchar_t))
        dstSize = SIZE_MAX / sizeof(wchar_t);
    return memcpy_s(dst, dstSize * sizeof(wchar_t), src, count * sizeof(wchar_t));
}

} // extern "C"

TV_SECOND_NAME(memcpy_s);
TV_SECOND_NAME(wmemcpy_s);

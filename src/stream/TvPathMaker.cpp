#include "TvFileSystem.h"

#include "TvCharOp.h"
#include "runtime/TvPlatformCalls.h"

#include <cstddef>

namespace {

// Room of the parts in wide characters, the terminating 0 included.
constexpr std::size_t kDriveRoom = 64;
constexpr std::size_t kDirectoryRoom = 260;
constexpr std::size_t kNameRoom = 1024;
constexpr std::size_t kExtensionRoom = 8;

// 0 unless `path` was split into `out`; then the length of what stands there.
int lengthOfPart(const wchar_t* out, int splitResult)
{
    return splitResult == 0 ? static_cast<int>(std::wcslen(out)) : 0;
}

} // namespace

bool TvPathMaker::isValidPath(const wchar_t* path)
{
    if (path == nullptr)
        return false;
    for (const wchar_t* at = path; *at != 0; ++at) {
        if (std::wcschr(L"*?<>|\"", *at) != nullptr)
            return false;
        if (*at == L':' && at != path + 1) // only behind a drive letter
            return false;
        if (TvCharOp::isPathSeparator(at[0]) && TvCharOp::isPathSeparator(at[1]))
            return false;
    }
    return true;
}

bool TvPathMaker::getAbsolutePath(wchar_t*, unsigned int, const wchar_t*) { return true; }

int TvPathMaker::getDriverName(wchar_t* out, const wchar_t* path)
{
    if (out == nullptr)
        return 0;
    out[0] = 0;
    if (path == nullptr)
        return 0;
    return lengthOfPart(out, _wsplitpath_s(path, out, kDriveRoom, nullptr, 0, nullptr, 0, nullptr, 0));
}

int TvPathMaker::getParentDir(wchar_t* out, const wchar_t* path)
{
    if (out == nullptr)
        return 0;
    out[0] = 0;
    if (path == nullptr)
        return 0;
    return lengthOfPart(out, _wsplitpath_s(path, nullptr, 0, out, kDirectoryRoom, nullptr, 0, nullptr, 0));
}

int TvPathMaker::getExtFileName(wchar_t* out, const wchar_t* path)
{
    if (out == nullptr)
        return 0;
    out[0] = 0;
    if (path == nullptr)
        return 0;
    return lengthOfPart(out, _wsplitpath_s(path, nullptr, 0, nullptr, 0, nullptr, 0, out, kExtensionRoom));
}

bool TvPathMaker::getFileName(const wchar_t* path, wchar_t* out, const wchar_t**)
{
    if (out == nullptr)
        return false;
    out[0] = 0;
    if (path == nullptr || *path == 0)
        return false;
    return _wsplitpath_s(path, nullptr, 0, nullptr, 0, out, kNameRoom, nullptr, 0) == 0;
}

bool TvPathMaker::getFullFileName(const wchar_t* path, wchar_t* out)
{
    if (out == nullptr)
        return false;
    out[0] = 0;
    if (path == nullptr || *path == 0)
        return false;
    wchar_t extension[kNameRoom] = {};
    const bool split = _wsplitpath_s(path, nullptr, 0, nullptr, 0, out, kNameRoom, extension, kNameRoom) == 0;
    if (out[0] != 0 && extension[0] != 0)
        std::wcsncat(out, extension, kNameRoom);
    else
        _tarmcscpy(out, path); // also for a name that merely has no extension: callers know it so
    return split;
}

bool TvPathMaker::splitPath(const wchar_t* path, wchar_t* drive, std::size_t driveCount, wchar_t* dir,
                            std::size_t dirCount, wchar_t* fname, std::size_t fnameCount, wchar_t* ext,
                            std::size_t extCount)
{
    if (path == nullptr || *path == 0)
        return false;
    return _wsplitpath_s(path, drive, driveCount, dir, dirCount, fname, fnameCount, ext, extCount) == 0;
}

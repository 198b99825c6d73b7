#include "TvPlatformBase.h"

#include "SecondNames.h"

#include <cerrno>
#include <cwchar>

namespace {

// One piece of the path and the caller's buffer for it.
struct Piece {
    wchar_t* buffer;
    size_t count;
    const wchar_t* first = nullptr;
    const wchar_t* last = nullptr;

    size_t length() const { return static_cast<size_t>(last - first); }
    bool isValid() const { return (buffer == nullptr) == (count == 0); }
    bool fits() const { return !buffer || length() < count; }
};

bool isSeparator(wchar_t c) { return c == L'/' || c == L'\\'; }

// Finds the four pieces: drive, directory, name, extension.
void split(const wchar_t* path, Piece (&pieces)[4])
{
    const wchar_t* afterDrive = path;
    if (path[0] && !isSeparator(path[0]) && path[1] == L':')
        afterDrive = path + 2;

    const wchar_t* afterDir = afterDrive;
    const wchar_t* dot = nullptr;
    const wchar_t* end = afterDrive;
    for (; *end; ++end) {
        if (isSeparator(*end)) {
            afterDir = end + 1;
            dot = nullptr;
        } else if (*end == L'.') {
            dot = end;
        }
    }
    if (!dot)
        dot = end;

    const wchar_t* const bounds[5] = {path, afterDrive, afterDir, dot, end};
    for (int i = 0; i < 4; ++i) {
        pieces[i].first = bounds[i];
        pieces[i].last = bounds[i + 1];
    }
}

int fail(const Piece (&pieces)[4], int error)
{
    for (const Piece& piece : pieces)
        if (piece.buffer && piece.count)
            *piece.buffer = L'\0';
    return errno = error;
}

} // namespace

extern "C" int _wsplitpath_s(const wchar_t* path, wchar_t* drive, size_t driveCount, wchar_t* dir,
                             size_t dirCount, wchar_t* fname, size_t fnameCount, wchar_t* ext,
                             size_t extCount)
{
    Piece pieces[4] = {{drive, driveCount}, {dir, dirCount}, {fname, fnameCount}, {ext, extCount}};
    if (!path)
        return fail(pieces, EINVAL);
    for (const Piece& piece : pieces)
        if (!piece.isValid())
            return fail(pieces, EINVAL);

    split(path, pieces);
    for (const Piece& piece : pieces)
        if (!piece.fits())
            return fail(pieces, ERANGE);
    for (const Piece& piece : pieces) {
        if (!piece.buffer)
            continue;
        std::wmemcpy(piece.buffer, piece.first, piece.length());
        piece.buffer[piece.length()] = L'\0';
    }
    return 0;
}

TV_SECOND_NAME(_wsplitpath_s);

// PathPieces.h - a path taken apart by searches from its end.
#ifndef TV_TEST_PATH_PIECES_H
#define TV_TEST_PATH_PIECES_H

#include <cstddef>
#include <string>

/// What _wsplitpath_s should find.
struct PathPieces {
    std::wstring drive, dir, fname, ext;
    bool operator==(const PathPieces&) const = default;
};

inline PathPieces piecesOf(std::wstring path)
{
    PathPieces pieces;
    if (path.size() >= 2 && path[1] == L':' && path[0] != L'/' && path[0] != L'\\') {
        pieces.drive = path.substr(0, 2);
        path.erase(0, 2);
    }
    const std::size_t separator = path.find_last_of(L"/\\");
    const std::size_t name = separator == path.npos ? 0 : separator + 1;
    pieces.dir = path.substr(0, name);
    path.erase(0, name);
    const std::size_t dot = path.rfind(L'.');
    pieces.fname = path.substr(0, dot);
    if (dot != path.npos)
        pieces.ext = path.substr(dot);
    return pieces;
}

#endif

// TvFileHandle.h - the handle of a file stream without a file.
#ifndef TV_FILE_HANDLE_H
#define TV_FILE_HANDLE_H

#include <cstdint>
#include <cstdio>

/// What stands in a stream's handle when it has no file. Null means the same.
inline std::FILE* tvNoFile() { return reinterpret_cast<std::FILE*>(~std::uintptr_t{0}); }

/// One comparison for both forms of "no file".
inline bool tvIsFile(const std::FILE* handle) { return reinterpret_cast<std::uintptr_t>(handle) + 1 > 1; }

#endif

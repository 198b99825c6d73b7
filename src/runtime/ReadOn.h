// Reading on behind the end of a text.
#ifndef TV_READ_ON_H
#define TV_READ_ON_H

#include <cstddef>
#include <cstdint>

/// True when `bytes` from `p` on lie in the page of `p`, where reading behind a text is
/// harmless. Never true in builds for tools that watch every read.
inline bool mayReadOn(const void* p, std::size_t bytes)
{
#ifdef TV_READ_INSIDE_TEXT
    static_cast<void>(p);
    static_cast<void>(bytes);
    return false;
#else
    constexpr std::size_t page = 4096;
    return (reinterpret_cast<std::uintptr_t>(p) & (page - 1)) <= page - bytes;
#endif
}

#endif

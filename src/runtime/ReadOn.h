// Reading on behind the end of a text, as far as its page reaches.
#ifndef TV_READ_ON_H
#define TV_READ_ON_H

#include "runtime/TvMemoryTools.h"

#include <cstddef>
#include <cstdint>

namespace TvDetail {

constexpr std::size_t kPageBytes = 4096; // no machine has smaller ones

// Whether what shares a page with a text may be loaded, which harms nobody. Not in builds for tools
// that watch every read.
#if defined(TV_READ_INSIDE_TEXT) || defined(TV_TOOL_ASAN)
constexpr bool kLoadsPages = false;
#else
constexpr bool kLoadsPages = true;
#endif

inline std::size_t pageOffset(const void* p) { return reinterpret_cast<std::uintptr_t>(p) % kPageBytes; }

} // namespace TvDetail

/// True when `bytes`, at most a page's worth, from `p` on lie in the page of `p` and may be loaded.
inline bool mayReadOn(const void* p, std::size_t bytes)
{
    return TvDetail::kLoadsPages && TvDetail::pageOffset(p) <= TvDetail::kPageBytes - bytes;
}

#endif

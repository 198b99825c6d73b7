// FirstRequests.h - what measurements of pooled memory do before they begin.
#ifndef TV_BENCH_FIRST_REQUESTS_H
#define TV_BENCH_FIRST_REQUESTS_H

#include "TvAlloc.h"
#include "TvHeap.h"

#include <vector>

/// The heap serves its first requests that need a new page from malloc; its usual way
/// begins after 8193 of them. False when it has no range to serve from.
inline bool passTheFirstRequests()
{
    std::vector<void*> early;
    while (early.size() < 10000 && (early.empty() || !g_tvGlobalHeap.isResident(early.back())))
        early.push_back(_tvMalloc(4096));
    const bool isServing = g_tvGlobalHeap.isResident(early.back());
    for (void* object : early)
        _tvFree(object);
    return isServing;
}

#endif

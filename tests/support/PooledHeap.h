// PooledHeap.h - what tests of pooled memory share.
#ifndef TV_TEST_POOLED_HEAP_H
#define TV_TEST_POOLED_HEAP_H

#include "TvAlloc.h"
#include "TvHeap.h"

#include <vector>

using GlobalHeap = TvHeap<34, TvPoolConfigurator<34>, TvHeapConfigurator, TvHeapDbgDumper>;

/// The search for a page starts beyond the reserved range, so the first requests that
/// need a page come from malloc. Makes these requests; false when the process has no
/// reserved range at all and stays with malloc.
inline bool runPageSearchDown()
{
    if (TvHeapConfigurator::pStartAddress == nullptr)
        return false;
    std::vector<void*> early;
    while (early.empty() || !g_tvGlobalHeap.isResident(early.back()))
        early.push_back(_tvMalloc(4096));
    for (void* ptr : early)
        _tvFree(ptr);
    return true;
}

/// Units that callers have not given back.
inline long pooledUnitsInUse()
{
    long units = 0;
    for (const auto* pool : g_tvGlobalHeap.pools) {
        if (pool == nullptr)
            continue;
        for (const auto* block = pool->availBlocks; block != nullptr; block = block->next)
            units += pool->unitsPerBlock - block->freeCount;
        for (const auto* block = pool->fullBlocks; block != nullptr; block = block->next)
            units += pool->unitsPerBlock;
    }
    for (const auto* pool : g_tvGlobalHeap.pagePools) {
        if (pool == nullptr)
            continue;
        for (const auto* page = pool->availPages; page != nullptr; page = page->next)
            units += pool->unitsPerPage - page->freeCount;
        for (const auto* page = pool->fullPages; page != nullptr; page = page->next)
            units += pool->unitsPerPage;
    }
    return units;
}

#endif

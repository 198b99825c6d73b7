#include "HeapStats.h"

#include "TvAlloc.h"
#include "TvHeap.h"

#include <algorithm>
#include <unistd.h>

#include <sys/mman.h>

namespace {

using Heap = std::remove_reference_t<decltype(g_tvGlobalHeap)>;

// The last page id of the reserved range; id 0 is never handed out.
constexpr int kLastPageId = static_cast<int>(Heap::kRangeSize / Heap::kPageSize) - 1;

char* pageAddress(int id)
{
    return static_cast<char*>(TvHeapConfigurator::sGetPageAddress(static_cast<short>(id)));
}

std::size_t residentBytes(char* page)
{
    const auto step = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    unsigned char flags[Heap::kPageSize / 4096];
    if (mincore(page, Heap::kPageSize, flags) != 0)
        return 0;
    return step * static_cast<std::size_t>(std::count_if(flags, flags + Heap::kPageSize / step,
                                                         [](unsigned char flag) { return (flag & 1) != 0; }));
}

// Adds blocks, or page records, of a list whose members hold `units` units each.
template<class Holder>
void addHolders(PoolUse& use, const Holder* holder)
{
    for (; holder; holder = holder->next) {
        ++use.holders;
        use.unitsInUse += static_cast<std::size_t>(use.unitsPerHolder - holder->freeCount);
    }
}

void addFreeBlocks(HeapUse& use, const Heap::Page* page)
{
    for (; page; page = reinterpret_cast<const Heap::Page*>(pageAddress(page->nextPageId))) {
        use.freeBlocks += static_cast<std::size_t>(page->freeBlockCount);
        use.closedBlocks += static_cast<std::size_t>(page->decommittedCount);
    }
}

void addPages(HeapUse& use)
{
    for (int id = 1; id <= kLastPageId; ++id) {
        if ((g_tvGlobalHeap.m_pageFlags[id] & Heap::kPageInUse) == 0)
            continue;
        ++(g_tvGlobalHeap.pageHeaps[id].pageId == id ? use.unitPages : use.blockPages);
        use.residentBytes += residentBytes(pageAddress(id));
    }
}

} // namespace

HeapUse readHeapUse()
{
    const Heap& heap = g_tvGlobalHeap;
    HeapUse use{};
    use.rangeStart = reinterpret_cast<std::uintptr_t>(TvHeapConfigurator::pStartAddress);
    for (const Heap::Pool* pool : heap.pools) {
        if (!pool || pool->unitSize == 0)
            continue;
        use.pools.push_back({pool->unitSize, pool->unitsPerBlock, 0, 0});
        addHolders(use.pools.back(), pool->availBlocks);
        addHolders(use.pools.back(), pool->fullBlocks);
    }
    std::sort(use.pools.begin(), use.pools.end(),
              [](const PoolUse& a, const PoolUse& b) { return a.unitSize < b.unitSize; });
    for (const Heap::PagePool* pool : heap.pagePools) {
        if (!pool || (!pool->availPages && !pool->fullPages))
            continue;
        use.pagePools.push_back({pool->unitSize, pool->unitsPerPage, 0, 0});
        addHolders(use.pagePools.back(), pool->availPages);
        addHolders(use.pagePools.back(), pool->fullPages);
    }
    if (use.rangeStart != 0) {
        use.requestsToMalloc = static_cast<std::size_t>(std::max(heap.m_searchHint - kLastPageId, 0));
        addFreeBlocks(use, heap.m_freeBlockPages);
        addFreeBlocks(use, heap.m_decommittedPages);
        addPages(use);
    }
    return use;
}

std::size_t mostHeapPages() { return kLastPageId; }

void passFirstHeapRequests()
{
    for (std::size_t left = readHeapUse().requestsToMalloc; left > 0; --left)
        tvFreePage(tvAllocPage());
}

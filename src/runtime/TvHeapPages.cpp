// Pages: which ids are free, and the lists of pages that hold free blocks.
#include "runtime/TvHeapCheck.h"
#include "runtime/TvHeapInternals.h"
#include "runtime/TvMemoryTools.h"

#include <cstring>

namespace TvHeapInternals {
namespace {

constexpr int kSearchTries = 6;
constexpr int kLastPageId = Heap::kPageIds - 1;
constinit bool g_isWatched = false;
constexpr int kNeverSet = 4; // no page flag has this value: the search for it fails

// The highest id in (to, from] with the flag `wanted`, 0 when there is none.
int searchPageId(Heap& heap, int from, int to, int wanted)
{
    if (from <= to || from < 0)
        return 0;
    const unsigned char* const flags = heap.m_pageFlags;
    const void* const found = memrchr(flags + to + 1, wanted, static_cast<std::size_t>(from - to));
    if (found == nullptr)
        return 0;
    const auto id = static_cast<int>(static_cast<const unsigned char*>(found) - flags);
    heap.m_searchHint = wanted == Heap::kPageFree ? static_cast<short>(id - 1) : short(0);
    heap.m_pageFlags[id] |= Heap::kPageInUse;
    return id;
}

} // namespace

int takePageId(Heap& heap)
{
    if (TvHeapConfigurator::pStartAddress == nullptr)
        return 0;
    for (int i = 0; i < kSearchTries; ++i) {
        int id = 0;
        if (heap.m_searchHint != 0)
            id = searchPageId(heap, heap.m_searchHint, 0, Heap::kPageFree);
        if (id == 0)
            id = searchPageId(heap, kLastPageId, 0, Heap::kPageFree);
        if (id == 0)
            id = searchPageId(heap, kLastPageId, 0, kNeverSet);
        if (id != 0)
            return id;
    }
    return 0;
}

bool commit(void* start, std::size_t length)
{
    if (rangeOffset(start) >= Heap::kRangeSize)
        return false;
    const ErrnoKept kept;
    if (!g_isWatched) {
        g_isWatched = true;
        watchForEnd(); // for a library that the program starts with: it is in use now
    }
    return TvHeapConfigurator::tvMemoryCommit(start, length) != nullptr;
}

void releasePage(Heap& heap, void* page)
{
    TV_HEAP_NOTE_BLOCKS_CHANGED();
    const short id = TvHeapConfigurator::sGetPageId(page);
    g_state.kinds[id] = PageKind::None;
    heap.m_pageFlags[id] &= static_cast<unsigned char>(~Heap::kPageInUse);
    if (id > heap.m_searchHint)
        heap.m_searchHint = id;
    const ErrnoKept kept;
    TvHeapConfigurator::tvMemoryDeCommit(page, Heap::kPageSize);
    // A length of 0 unmaps nothing: the range stays reserved, and the call fails.
    TvHeapConfigurator::tvMemoryRelease(page, 0);
}

void pushPage(Page*& head, Page* page)
{
    page->prevPageId = 0;
    page->nextPageId = head != nullptr ? TvHeapConfigurator::sGetPageId(head) : std::int16_t(0);
    if (head != nullptr)
        head->prevPageId = TvHeapConfigurator::sGetPageId(page);
    head = page;
}

void unlinkPage(Page*& head, Page* page)
{
    auto* const next = static_cast<Page*>(TvHeapConfigurator::sGetPageAddress(page->nextPageId));
    auto* const prev =
        static_cast<Page*>(TvHeapConfigurator::sGetPageAddress(static_cast<short>(page->prevPageId)));
    if (prev != nullptr)
        prev->nextPageId = page->nextPageId;
    else
        head = next;
    if (next != nullptr)
        next->prevPageId = page->prevPageId;
    page->nextPageId = 0;
    page->prevPageId = 0;
}

} // namespace TvHeapInternals

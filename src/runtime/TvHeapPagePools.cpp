// Units of the page pools: one to 256 pages of 4 KiB each, out of whole 1 MiB pages.
#include "runtime/TvHeapCheck.h"
#include "runtime/TvHeapUnitSteps.h"

namespace TvHeapInternals {
namespace {

PageHeap* openPage(Heap& heap, PagePool& pool)
{
    const int id = takePageId(heap);
    if (id == 0)
        return nullptr;
    void* const start = TvHeapConfigurator::sGetPageAddress(static_cast<short>(id));
    if (!commit(start, Heap::kPageSize)) // the id stays taken, by intent
        return nullptr;
    TvMemoryTools::close(start, Heap::kPageSize);

    PageHeap& record = heap.pageHeaps[id];
    record.pageId = static_cast<std::int16_t>(id);
    record.poolIndex = static_cast<std::int16_t>(pool.index);
    record.freeUnit = g_state.start + record.firstUnit();
    record.freeCount = static_cast<std::int16_t>(pool.unitsPerPage);
    record.flags = 0;
    pushFront(pool.availPages, &record);
    g_state.kinds[id] = PageKind::Units;
    TV_HEAP_NOTE_BLOCKS_CHANGED();
    return &record;
}

} // namespace

void* takePageUnit(Heap& heap, PagePool& pool)
{
    PageHeap* record = pool.availPages;
    if (record == nullptr)
        record = openPage(heap, pool);
    if (record == nullptr)
        return nullptr;
    if (record->freeCount == 1) {
        unlink(pool.availPages, record);
        pushFront(pool.fullPages, record);
    }
    return popUnit(*record, pool.unitSize);
}

void givePageUnit(Heap& heap, PagePool& pool, PageHeap& record, void* unit)
{
    const int count = ++record.freeCount;
    if (count == pool.unitsPerPage) {
        unlink(count == 1 ? pool.fullPages : pool.availPages, &record);
        releasePage(heap, g_state.start + record.firstUnit());
        record.pageId = -1;
        return;
    }
    if (count == 1) {
        unlink(pool.fullPages, &record);
        pushFront(pool.availPages, &record);
        setOnlyUnit(record, unit, unit == g_state.start + record.lastUnit(pool.unitSize));
    } else {
        pushUnit(record, unit, pool.unitSize);
    }
}

} // namespace TvHeapInternals

#include "runtime/TvHeapCheck.h"

#include "runtime/TvHeapPending.h"
#include "runtime/TvHeapUnitSteps.h"

#include <algorithm>
#include <bitset>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace TvHeapInternals {
namespace {

constexpr int kAllBlocks = kReservedPages * kBlocksPerPage;
constexpr int kUsableBlocks = kBlocksPerPage - kFirstUsableBlock;
constexpr int kMaxUnits = static_cast<int>(Heap::kBlockSize) / 8;

bool g_blocksChanged = false;

// The free units of a block or page record whose first unit is at `first`.
template<class Holder>
const char* checkUnits(const Holder& holder, const char* first, std::size_t unitSize, int units)
{
    if (holder.freeCount < 0 || holder.freeCount > units)
        return "a free count outside 0 and the number of units";
    if (holder.freeCount == 0)
        return holder.freeUnit == nullptr ? nullptr : "a free unit where the count is 0";

    std::bitset<kMaxUnits> seen;
    const void* unit = holder.freeUnit;
    const char* const end = first + unitSize * static_cast<std::size_t>(units);
    if (!isLinked(holder.flags))
        return static_cast<const char*>(unit) + unitSize * static_cast<std::size_t>(holder.freeCount) == end
                   ? nullptr
                   : "a contiguous run that does not end with the last unit";
    for (int i = 0; i < holder.freeCount; ++i) {
        const char* const at = static_cast<const char*>(unit);
        if (at < first || at >= end || static_cast<std::size_t>(at - first) % unitSize != 0)
            return "a free unit that is no unit of its block";
        const std::size_t number = static_cast<std::size_t>(at - first) / unitSize;
        if (seen[number])
            return "a unit that is free twice";
        seen.set(number);
        unit = TvMemoryTools::loadLink(unit);
    }
    return unit == nullptr ? nullptr : "a free list longer than its count";
}

const char* checkBlock(const Heap& heap, const Block& block)
{
    if (block.poolIndex < 1 || block.poolIndex > kPools || heap.pools[block.poolIndex] == nullptr)
        return "a block in use without a pool";
    const Pool& pool = *heap.pools[block.poolIndex];
    if (block.freeCount == pool.unitsPerBlock)
        return "an empty block that was not given back";
    return checkUnits(block, block.firstUnit(), pool.unitSize, pool.unitsPerBlock);
}

const char* checkRecord(const Heap& heap, int id)
{
    const PageHeap& record = heap.pageHeaps[id];
    if (record.pageId != id)
        return "a page record with another page's id";
    if (record.poolIndex < 1 || record.poolIndex > Heap::kPagePools)
        return "a page record without a pool";
    const PagePool& pool = *heap.pagePools[record.poolIndex];
    if (record.freeCount == pool.unitsPerPage)
        return "an empty page that was not given back";
    return checkUnits(record, g_state.start + record.firstUnit(), pool.unitSize, pool.unitsPerPage);
}

// One list of free blocks; `found` collects their numbers.
const char* checkFreeBlocks(const Page& page, const Block* head, int count, bool mayBePending,
                            std::bitset<kBlocksPerPage>& found)
{
    for (; head != nullptr; head = head->next, --count) {
        if (count == 0)
            return "more free blocks than counted";
        if (pageOf(head) != &page || head->id() < kFirstUsableBlock)
            return "a free block of another page";
        if (found[static_cast<std::size_t>(head->id())])
            return "a block that is free twice";
        found.set(static_cast<std::size_t>(head->id()));
        if (head->poolIndex != 0)
            return "a free block that has a pool";
        if (!mayBePending && isPending(head->firstUnit()))
            return "a committed block whose access may go";
        if (isWithdrawn(head->firstUnit()) != (mayBePending && !isPending(head->firstUnit())))
            return "a free block with the wrong access";
    }
    return count == 0 ? nullptr : "fewer free blocks than counted";
}

const char* checkPage(const Heap& heap, const Page& page, int* blocksInUse)
{
    std::bitset<kBlocksPerPage> free;
    if (const char* wrong = checkFreeBlocks(page, page.freeBlocks, page.freeBlockCount, false, free))
        return wrong;
    if (const char* wrong = checkFreeBlocks(page, page.decommittedBlocks, page.decommittedCount, true, free))
        return wrong;
    *blocksInUse = kUsableBlocks - static_cast<int>(free.count());

    const auto* const descriptors = reinterpret_cast<const Block*>(&page);
    for (std::size_t i = kFirstUsableBlock; i < kBlocksPerPage; ++i) {
        if (free[i])
            continue;
        if (isPending(descriptors[i].firstUnit()))
            return "a block in use whose access may go";
        if (isWithdrawn(descriptors[i].firstUnit()))
            return "a block in use without access";
        if (const char* wrong = checkBlock(heap, descriptors[i]))
            return wrong;
    }
    return nullptr;
}

// A list of blocks or records, whose nodes must have a free unit or none.
template<class Node, class Visit>
const char* checkList(const Node* head, bool wantFree, Visit visit)
{
    const Node* prev = nullptr;
    int count = 0;
    for (; head != nullptr; prev = head, head = head->next) {
        if (++count > kAllBlocks)
            return "a list that runs in a circle";
        if (head->prev != prev)
            return "a list whose ways forth and back differ";
        if ((head->freeCount != 0) != wantFree)
            return "a full member among the available, or the other way round";
        if (const char* wrong = visit(*head))
            return wrong;
    }
    return nullptr;
}

const char* checkPools(const Heap& heap, short (&blocksOnLists)[kReservedPages])
{
    for (int i = 1; i <= kPools; ++i) {
        const Pool* const pool = heap.pools[i];
        if (pool == nullptr)
            continue;
        const auto visit = [&](const Block& block) -> const char* {
            if (kindOf(&block) != PageKind::Blocks || block.poolIndex != i)
                return "a block on another pool's list";
            ++blocksOnLists[rangeOffset(&block) >> 20];
            return nullptr;
        };
        if (const char* wrong = checkList(pool->availBlocks, true, visit))
            return wrong;
        if (const char* wrong = checkList(pool->fullBlocks, false, visit))
            return wrong;
    }
    return nullptr;
}

const char* checkPagePools(const Heap& heap, int& recordsOnLists)
{
    for (int i = 1; i <= Heap::kPagePools; ++i) {
        const PagePool* const pool = heap.pagePools[i];
        if (pool == nullptr)
            continue;
        const auto visit = [&](const PageHeap& record) -> const char* {
            if (record.poolIndex != i || record.pageId < 0)
                return "a page record on another pool's list";
            ++recordsOnLists;
            return nullptr;
        };
        if (const char* wrong = checkList(pool->availPages, true, visit))
            return wrong;
        if (const char* wrong = checkList(pool->fullPages, false, visit))
            return wrong;
    }
    return nullptr;
}

// The pages on one list; each must have, or lack, committed free blocks.
const char* checkPageList(const Page* page, bool committed, int& count)
{
    int prev = 0;
    for (; page != nullptr;
         page = static_cast<const Page*>(TvHeapConfigurator::sGetPageAddress(page->nextPageId))) {
        if (kindOf(page) != PageKind::Blocks)
            return "a page on a list that holds no blocks";
        if (page->prevPageId != prev)
            return "a page list whose ways forth and back differ";
        if ((page->freeBlockCount != 0) != committed || page->freeBlockCount + page->decommittedCount == 0)
            return "a page on the wrong list";
        prev = TvHeapConfigurator::sGetPageId(page);
        if (++count > kReservedPages)
            return "a page list that runs in a circle";
    }
    return nullptr;
}

// The flags of all ids, and that those beyond the reservation hold nothing. Eight flags at
// a time and no branch a step: this is most of what a check of a small heap has to read.
const char* checkIds(const Heap& heap)
{
    constexpr std::uint64_t kEach = 0x0101010101010101;
    std::uint64_t unknown = heap.m_pageFlags[0]; // the one that is 0
    for (int id = 1; id < Heap::kPageIds; id += 8) {
        std::uint64_t flags = 0;
        std::memcpy(&flags, heap.m_pageFlags + std::min(id, Heap::kPageIds - 8), sizeof flags);
        unknown |= (flags & ~(kEach * Heap::kPageInUse)) ^ (kEach * Heap::kPageFree);
    }
    if (unknown != 0)
        return "a page flag of no known value";
    int held = 0;
    for (int id = kReservedPages; id < Heap::kPageIds; ++id)
        held |= ~heap.pageHeaps[id].pageId;
    return held == 0 ? nullptr : "a page record in use beyond the reservation";
}

} // namespace

const char* checkHeap(const Heap& heap)
{
    static short blocksOnLists[kReservedPages];
    std::fill(std::begin(blocksOnLists), std::end(blocksOnLists), short(0));
    int recordsOnLists = 0;
    if (const char* wrong = checkPools(heap, blocksOnLists))
        return wrong;
    if (const char* wrong = checkPagePools(heap, recordsOnLists))
        return wrong;

    if (const char* wrong = checkIds(heap))
        return wrong;
    int pagesWithFree = 0;
    for (int id = 0; id < kReservedPages; ++id) {
        const PageKind kind = g_state.kinds[id];
        if ((kind == PageKind::Units) != (heap.pageHeaps[id].pageId != -1))
            return "a page and its record that disagree";
        if (kind != PageKind::None && (heap.m_pageFlags[id] & Heap::kPageInUse) == 0)
            return "a page that holds something and is not in use";
        if (kind == PageKind::Units) {
            --recordsOnLists;
            if (const char* wrong = checkRecord(heap, id))
                return wrong;
        } else if (kind == PageKind::Blocks) {
            const auto* const page =
                static_cast<const Page*>(TvHeapConfigurator::sGetPageAddress(static_cast<short>(id)));
            int inUse = 0;
            if (const char* wrong = checkPage(heap, *page, &inUse))
                return wrong;
            if (blocksOnLists[id] != inUse)
                return "a block in use that is on no list";
            pagesWithFree += inUse != kUsableBlocks;
        }
    }
    if (recordsOnLists != 0)
        return "a page record that is on no list, or on two";

    int pagesOnLists = 0;
    if (const char* wrong = checkPageList(heap.m_freeBlockPages, true, pagesOnLists))
        return wrong;
    if (const char* wrong = checkPageList(heap.m_decommittedPages, false, pagesOnLists))
        return wrong;
    if (pagesOnLists != pagesWithFree)
        return "a page with free blocks that is on no list";
    if (pendingBlocks() > kMaxPendingBlocks)
        return "more blocks whose access is to go than allowed";
    return nullptr;
}

void noteBlocksChanged() { g_blocksChanged = true; }

void checkAfterChange(const Heap& heap, const void* unit)
{
    const char* wrong = nullptr;
    if (g_blocksChanged)
        wrong = checkHeap(heap);
    else if (kindOf(unit) == PageKind::Units)
        wrong = checkRecord(heap, static_cast<int>(rangeOffset(unit) >> 20));
    else
        wrong = checkBlock(heap, *blockOf(unit));
    g_blocksChanged = false;
    if (wrong != nullptr) {
        std::fprintf(stderr, "The pooled heap is damaged: %s.\n", wrong);
        std::abort();
    }
}

} // namespace TvHeapInternals

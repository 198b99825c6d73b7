#include "TvHeap.h"

#include "runtime/TvHeapCheck.h"
#include "runtime/TvHeapInternals.h"
#include "runtime/TvMemoryTools.h"
#include "runtime/TvStartup.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <new>

#include <malloc.h>

namespace TvHeapInternals {

State g_state;

namespace {

constexpr int kFirstSearch = 16384; // beyond the reservation: the search comes down to it

void createPools(Heap& heap)
{
    heap.pools[0] = nullptr;
    for (int i = 1; i <= kPools; ++i) {
        const int unitSize = TvPoolConfigurator<34>::s_unitSizeOfPools[i];
        const int units = unitSize != 0 ? static_cast<int>(Heap::kBlockSize) / unitSize : 0;
        heap.pools[i] =
            new (std::nothrow) Pool{{}, static_cast<std::uint64_t>(unitSize), i, units, nullptr, nullptr};
    }
    heap.pagePools[0] = nullptr;
    for (int i = 1; i <= Heap::kPagePools; ++i) {
        const std::size_t unitSize = TvHeapConfigurator::sGetSizeOfPagePool(static_cast<std::size_t>(i));
        const int units = static_cast<int>(Heap::kPageSize / unitSize);
        heap.pagePools[i] = new (std::nothrow) PagePool{{}, unitSize, i, units, nullptr, nullptr};
    }
    for (std::size_t i = 0; i < std::size(g_state.poolOfEights); ++i)
        g_state.poolOfEights[i] = poolFor(heap, i * 8);
}

template<class Node>
void dumpAll(Node* head)
{
    for (; head != nullptr; head = head->next)
        head->dump();
}

// Reserves the range and makes what lies outside the object.
void openHeap(Heap& heap)
{
    for (TvLocker* locker : {&heap.m_smallLock, &heap.m_blockLock, &heap.m_pageLock})
        new (locker) TvLocker;
    void* const start = TvHeapConfigurator::tvMemoryInitialize(Heap::kRangeSize);
    TvHeapConfigurator::pStartAddress = start;
    TvHeapConfigurator::mOffSetId = TvHeapConfigurator::sGetPageId(start);
    g_state.start = static_cast<char*>(start);
    g_state.fastStart = start != nullptr ? reinterpret_cast<std::uintptr_t>(start) : kNowhere;
    if (start != nullptr)
        TvMemoryTools::rangeReserved(start, Heap::kRangeSize);
    heap.m_searchHint = kFirstSearch;
    createPools(heap);
    watchForEnd(); // for a library that is loaded by dlopen()
}

// Closes the books: without pools nothing is handed out or taken back any more. Pages
// and their records stay as they are, because units in use stay usable.
void closeHeap(Heap& heap)
{
    TvHeapDbgDumper::init();
    std::fill(std::begin(g_state.poolOfEights), std::end(g_state.poolOfEights), nullptr);
    for (Pool*& pool : heap.pools) {
        if (pool != nullptr) {
            dumpAll(pool->availBlocks);
            dumpAll(pool->fullBlocks);
        }
        delete pool;
        pool = nullptr;
    }
    for (PagePool*& pool : heap.pagePools) {
        delete pool;
        pool = nullptr;
    }
    g_state.fastStart = kNowhere;
    g_state.closed = true;
    TvHeapDbgDumper::uninit();
}

PageHeap& recordOf(Heap& heap, const void* unit) { return heap.pageHeaps[rangeOffset(unit) >> 20]; }

// A pointer that is the C library's as far as this heap can tell. After destruction an
// address of the range never is.
bool isForeign(const void* ptr)
{
    return !(g_state.closed && g_state.start != nullptr && rangeOffset(ptr) < Heap::kRangeSize);
}

std::size_t pooledSize(Heap& heap, const void* unit, PageKind kind)
{
    if (kind == PageKind::Units)
        return TvHeapConfigurator::sGetSizeOfPagePool(
            static_cast<std::size_t>(recordOf(heap, unit).poolIndex));
    const int index = blockOf(unit)->poolIndex;
    return index >= 0 && index <= kPools
               ? static_cast<std::size_t>(TvPoolConfigurator<34>::s_unitSizeOfPools[index])
               : 0;
}

// The unit that a pool gave for `size` bytes, or memory from the C library when it is null.
void* handOut([[maybe_unused]] const Heap& heap, void* unit, std::size_t size)
{
    if (unit == nullptr)
        return std::malloc(size);
    TvMemoryTools::unitTaken(unit, size);
    TV_HEAP_CHECK_AFTER_CHANGE(heap, unit);
    return unit;
}

void freePooled(Heap& heap, void* ptr, PageKind kind)
{
    if (kind == PageKind::Blocks) {
        Block& block = *blockOf(ptr);
        Pool* const pool =
            block.poolIndex >= 0 && block.poolIndex <= kPools ? heap.pools[block.poolIndex] : nullptr;
        if (pool == nullptr)
            return;
        TvMemoryTools::unitGiven(ptr, pool->unitSize);
        giveUnit(heap, *pool, block, ptr);
    } else {
        PageHeap& record = recordOf(heap, ptr);
        PagePool* const pool = heap.pagePools[record.poolIndex];
        if (pool == nullptr)
            return;
        TvMemoryTools::unitGiven(ptr, pool->unitSize);
        givePageUnit(heap, *pool, record, ptr);
    }
    TV_HEAP_CHECK_AFTER_CHANGE(heap, ptr);
}

} // namespace

} // namespace TvHeapInternals

using namespace TvHeapInternals;

// A constant, so that its records of 1 MiB come with the library's file and cost neither time
// nor memory before they are used; openHeap() does what has to run.
template<int N, class P, class C, class D>
constexpr TvHeap<N, P, C, D>::TvHeap()
    : m_smallLock(nullptr), m_blockLock(nullptr), m_pageLock(nullptr), pools{}, m_freeBlockPages(nullptr),
      m_decommittedPages(nullptr), pagePools{}, pageHeaps{}, m_searchHint(0), m_pageFlags{},
      m_freeDisabled(false)
{
    initPageFlags(m_pageFlags);
}

template<int N, class P, class C, class D>
TvHeap<N, P, C, D>::~TvHeap()
{
    closeHeap(*this);
}

template<int N, class P, class C, class D>
void* TvHeap<N, P, C, D>::allocHeap(std::size_t size)
{
    const std::size_t wanted = size == 0 ? 1 : size;
    Pool* const pool = poolFor(*this, wanted);
    return handOut(*this, pool != nullptr ? takeUnit(*this, *pool) : nullptr, wanted);
}

template<int N, class P, class C, class D>
void* TvHeap<N, P, C, D>::reallocHeap(void* ptr, std::size_t size)
{
    const PageKind kind = kindOf(ptr);
    if (kind == PageKind::None || g_state.closed)
        return isForeign(ptr) ? std::realloc(ptr, size) : nullptr;
    const std::size_t oldSize = pooledSize(*this, ptr, kind);
    void* const moved = allocHeap(size);
    if (moved == nullptr)
        return nullptr;
    TvMemoryTools::unitWhole(ptr, oldSize);
    std::memcpy(moved, ptr, std::min(oldSize, size));
    freePooled(*this, ptr, kind); // m_freeDisabled does not hold here, by intent
    return moved;
}

template<int N, class P, class C, class D>
void TvHeap<N, P, C, D>::freeHeap(void* ptr)
{
    const PageKind kind = kindOf(ptr);
    if (kind == PageKind::None) {
        if (isForeign(ptr))
            std::free(ptr);
    } else if (!m_freeDisabled && !g_state.closed) {
        freePooled(*this, ptr, kind);
    }
}

template<int N, class P, class C, class D>
std::size_t TvHeap<N, P, C, D>::sizeOfHeap(const void* ptr)
{
    const PageKind kind = kindOf(ptr);
    if (kind == PageKind::None)
        return isForeign(ptr) ? malloc_usable_size(const_cast<void*>(ptr)) : 0;
    const std::size_t size = pooledSize(*this, ptr, kind);
    TvMemoryTools::unitWhole(ptr, size);
    return size;
}

template<int N, class P, class C, class D>
void* TvHeap<N, P, C, D>::allocHeapPage(std::size_t size)
{
    const std::size_t wanted = size == 0 ? 1 : size;
    const std::size_t index = C::sGetPagePoolIndex(wanted);
    PagePool* const pool = index <= kPagePools ? pagePools[index] : nullptr;
    return handOut(*this, pool != nullptr ? takePageUnit(*this, *pool) : nullptr, wanted);
}

template<int N, class P, class C, class D>
void TvHeap<N, P, C, D>::freeHeapPage(void* ptr)
{
    freeHeap(ptr); // the page's kind tells what the pointer is
}

template<int N, class P, class C, class D>
bool TvHeap<N, P, C, D>::isResident(const void* ptr) const
{
    if (C::sIsOutofHeapRange(ptr) || rangeOffset(ptr) >= kRangeSize)
        return false;
    return (m_pageFlags[rangeOffset(ptr) >> 20] & kPageInUse) != 0;
}

// The operations alone: instantiating the whole class would export its constants too.
template void*
    TvHeap<34, TvPoolConfigurator<34>, TvHeapConfigurator, TvHeapDbgDumper>::allocHeap(std::size_t);
template void*
TvHeap<34, TvPoolConfigurator<34>, TvHeapConfigurator, TvHeapDbgDumper>::reallocHeap(void*, std::size_t);
template void TvHeap<34, TvPoolConfigurator<34>, TvHeapConfigurator, TvHeapDbgDumper>::freeHeap(void*);
template std::size_t
TvHeap<34, TvPoolConfigurator<34>, TvHeapConfigurator, TvHeapDbgDumper>::sizeOfHeap(const void*);
template void*
    TvHeap<34, TvPoolConfigurator<34>, TvHeapConfigurator, TvHeapDbgDumper>::allocHeapPage(std::size_t);
template void TvHeap<34, TvPoolConfigurator<34>, TvHeapConfigurator, TvHeapDbgDumper>::freeHeapPage(void*);
template bool
TvHeap<34, TvPoolConfigurator<34>, TvHeapConfigurator, TvHeapDbgDumper>::isResident(const void*) const;

namespace {

// In front of the heap, so that it is open when its destructor is registered.
struct HeapStart {
    HeapStart() { openHeap(g_tvGlobalHeap); }
};
const HeapStart g_heapStart __attribute__((init_priority(TvStartup::kGlobalHeap)));

} // namespace

constinit TvHeap<34, TvPoolConfigurator<34>, TvHeapConfigurator, TvHeapDbgDumper> g_tvGlobalHeap
    __attribute__((init_priority(TvStartup::kGlobalHeap)));

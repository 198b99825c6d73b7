#include "runtime/TvHeapFast.h"

namespace TvHeapInternals {
namespace {

// Takes the stores to a neighbour that is not there: which lists a block stands on, and
// where, is as good as random, and a mispredicted branch costs more than these stores.
Block g_nobody;

// `wanted`, or `other` when it is null, without a branch.
template<class T>
[[gnu::always_inline]] inline T* orElse(T* wanted, T* other)
{
#if defined(__x86_64__)
    __asm__("test %0, %0\n\tcmove %1, %0" : "+r"(wanted) : "r"(other) : "cc");
    return wanted;
#else
    return wanted != nullptr ? wanted : other;
#endif
}

static_assert(offsetof(Block, next) == 0);

[[gnu::always_inline]] inline void unlinkFast(Block*& head, Block* block)
{
    Block* const prev = block->prev;
    Block* const next = block->next;
    *orElse(reinterpret_cast<Block**>(prev), &head) = next; // prev->next, or the head
    orElse(next, &g_nobody)->prev = prev;
}

[[gnu::always_inline]] inline void pushFast(Block*& head, Block* block)
{
    Block* const next = head;
    block->prev = nullptr;
    block->next = next;
    orElse(next, &g_nobody)->prev = block;
    head = block;
}

[[gnu::always_inline]] inline void* handOut(void* unit, [[maybe_unused]] std::size_t size)
{
    TvMemoryTools::unitTaken(unit, size == 0 ? 1 : size);
    TV_HEAP_CHECK_AFTER_CHANGE(g_tvGlobalHeap, unit);
    return unit;
}

bool isLastOf(const void* ptr, std::size_t unitSize)
{
    return (reinterpret_cast<std::uintptr_t>(ptr) & (Heap::kBlockSize - 1)) == Heap::kBlockSize - unitSize;
}

} // namespace

void* takeFromNewBlock(std::size_t size)
{
    Pool* const pool = g_state.poolOfEights[(size + 7) >> 3];
    Page* const page = g_tvGlobalHeap.m_freeBlockPages;
    if (pool == nullptr || pool->availBlocks != nullptr || page == nullptr || page->freeBlockCount == 1)
        return g_tvGlobalHeap.allocHeap(size);
    TV_HEAP_NOTE_BLOCKS_CHANGED();
    Block* const block = page->freeBlocks;
    page->freeBlocks = block->next;
    --page->freeBlockCount;
    char* const unit = block->firstUnit();
    block->next = nullptr;
    block->prev = nullptr;
    block->freeUnit = unit + pool->unitSize;
    block->freeCount = pool->unitsPerBlock - 1;
    block->poolIndex = static_cast<std::int16_t>(pool->index);
    block->flags = 0;
    pool->availBlocks = block;
    return handOut(unit, size);
}

void* takeLastOf(Pool& pool, Block* block, std::size_t size)
{
    void* const unit = block->freeUnit;
    block->freeCount = 0;
    block->freeUnit = nullptr;
    Block* const next = block->next;
    pool.availBlocks = next;
    orElse(next, &g_nobody)->prev = nullptr;
    pushFast(pool.fullBlocks, block);
    return handOut(unit, size);
}

void giveToFull(void* ptr, Block* block)
{
    Pool& pool = *g_tvGlobalHeap.pools[block->poolIndex];
    TvMemoryTools::unitGiven(ptr, pool.unitSize);
    unlinkFast(pool.fullBlocks, block);
    pushFast(pool.availBlocks, block);
    block->freeCount = 1;
    block->flags = static_cast<std::int16_t>(isLastOf(ptr, pool.unitSize) ? 0 : Heap::kLinked);
    TvMemoryTools::storeLink(ptr, nullptr); // of no meaning in a run
    block->freeUnit = ptr;
    TV_HEAP_CHECK_AFTER_CHANGE(g_tvGlobalHeap, ptr);
}

void giveApart(void* ptr, Block* block)
{
    const std::size_t unitSize = kUnitShapes[static_cast<std::uint8_t>(block->poolIndex)].size;
    TvMemoryTools::unitGiven(ptr, unitSize);
    ++block->freeCount;
    pushUnit(*block, ptr, unitSize);
    TV_HEAP_CHECK_AFTER_CHANGE(g_tvGlobalHeap, ptr);
}

void giveLastOf(void* ptr, Block* block)
{
    const UnitShape shape = kUnitShapes[static_cast<std::uint8_t>(block->poolIndex)];
    if (shape.perBlock == 0)
        return givePlain(ptr);
    Pool& pool = *g_tvGlobalHeap.pools[block->poolIndex];
    TvMemoryTools::unitGiven(ptr, shape.size);
    unlinkFast(pool.availBlocks, block);
    block->freeCount = shape.perBlock;
    Page* const page = pageOf(block);
    if (page->freeBlockCount == 0 || page->freeBlockCount >= kMaxCommittedFree) {
        giveBlock(g_tvGlobalHeap, block);
    } else {
        TV_HEAP_NOTE_BLOCKS_CHANGED();
        block->poolIndex = 0;
        block->freeUnit = nullptr;
        block->next = page->freeBlocks;
        page->freeBlocks = block;
        ++page->freeBlockCount;
    }
    TV_HEAP_CHECK_AFTER_CHANGE(g_tvGlobalHeap, ptr);
}

void givePlain(void* ptr)
{
    if (ptr != nullptr)
        g_tvGlobalHeap.freeHeap(ptr);
}

} // namespace TvHeapInternals

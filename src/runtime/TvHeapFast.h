// TvHeapFast.h - the common cases of allocating and freeing a small unit, to be inlined
// into the entry points.
//
// They do exactly what takeUnit() and giveUnit() do for a block that is not opened or
// given back, with fewer loads: the pool is found by the rounded size, the range and the
// kind of a page in g_state, the units of a block in a table. Everything else is left to
// the plain way.
#ifndef TV_HEAP_FAST_H
#define TV_HEAP_FAST_H

#include "runtime/TvHeapCheck.h"
#include "runtime/TvHeapUnitSteps.h"

#include <array>

namespace TvHeapInternals {

struct UnitShape {
    std::uint16_t size;
    std::uint16_t perBlock;
};

// By pool index; the pools above 256 bytes are left to the plain way (perBlock 0).
extern const std::array<UnitShape, kPools + 1> kUnitShapes;

// Turns the free units of `block` into a list, `unit` first; the count is already raised.
void threadFast(Block& block, void* unit, std::size_t unitSize);

// Null: take the plain way. `size` is at most kMaxSmallSize.
inline void* takeFast(std::size_t size)
{
    Pool* const pool = g_state.poolOfEights[(size + 7) >> 3];
    if (__builtin_expect(pool == nullptr, 0))
        return nullptr;
    Block* const block = pool->availBlocks;
    if (__builtin_expect(block == nullptr, 0))
        return nullptr;
    char* const unit = static_cast<char*>(block->freeUnit);
    const int left = block->freeCount - 1;
    block->freeCount = left;
    if (__builtin_expect(left == 0, 0)) {
        block->freeUnit = nullptr;
        unlink(pool->availBlocks, block);
        pushFront(pool->fullBlocks, block);
    } else {
        block->freeUnit = isLinked(block->flags) ? TvMemoryTools::loadLink(unit) : unit + pool->unitSize;
    }
    TvMemoryTools::unitTaken(unit, size == 0 ? 1 : size);
    TV_HEAP_CHECK_AFTER_CHANGE(g_tvGlobalHeap, unit);
    return unit;
}

// False: nothing was done, take the plain way.
inline bool giveFast(void* ptr)
{
    const std::size_t offset =
        static_cast<std::size_t>(reinterpret_cast<std::uintptr_t>(ptr) - g_state.fastStart);
    if (__builtin_expect(offset >= Heap::kRangeSize || g_state.kinds[offset >> 20] != PageKind::Blocks ||
                             g_tvGlobalHeap.m_freeDisabled,
                         0))
        return false;
    Block* const block = blockOf(ptr);
    const auto index = static_cast<std::size_t>(static_cast<std::uint16_t>(block->poolIndex));
    if (__builtin_expect(index > kPools, 0))
        return false;
    const UnitShape shape = kUnitShapes[index];
    const int count = block->freeCount + 1;
    if (__builtin_expect(count >= shape.perBlock, 0))
        return false;
    TvMemoryTools::unitGiven(ptr, shape.size);
    block->freeCount = count;
    if (__builtin_expect(count == 1, 0)) {
        Pool& pool = *g_tvGlobalHeap.pools[index];
        unlink(pool.fullBlocks, block);
        pushFront(pool.availBlocks, block);
        setOnlyUnit(*block, ptr, ptr == block->lastUnit(shape.size));
    } else if (isLinked(block->flags)) {
        TvMemoryTools::storeLink(ptr, block->freeUnit);
        block->freeUnit = ptr;
    } else if (static_cast<char*>(ptr) + shape.size == block->freeUnit) {
        block->freeUnit = ptr;
    } else {
        threadFast(*block, ptr, shape.size);
    }
    TV_HEAP_CHECK_AFTER_CHANGE(g_tvGlobalHeap, ptr);
    return true;
}

} // namespace TvHeapInternals

#endif

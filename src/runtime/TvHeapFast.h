// TvHeapFast.h - the common cases of allocating and freeing a small unit, to be inlined
// into the entry points.
//
// They do exactly what takeUnit() and giveUnit() do for a block with free units that stays
// with its pool, with fewer loads and branches: the pool is found by the rounded size, the
// range and the kind of a page in g_state, the units of a block in a table. A branch that
// depends on which size is asked for is predicted badly, so there is none but for the
// moves between lists; those, and blocks that are opened or given back, are in
// TvHeapFast.cpp. Everything else is left to the plain way.
#ifndef TV_HEAP_FAST_H
#define TV_HEAP_FAST_H

#include "runtime/TvHeapCheck.h"
#include "runtime/TvHeapUnitSteps.h"

#include <array>
#include <cstdint>

namespace TvHeapInternals {

struct UnitShape {
    std::uint16_t size;
    std::uint16_t perBlock;
};

// By the low byte of a pool's index; perBlock is 0 for all that is left to the plain way:
// the pools above 256 bytes, and what the header of a page has in that place.
extern const std::array<UnitShape, 256> kUnitShapes;

// A request of at most kMaxSmallSize bytes whose pool has no block to serve it.
[[gnu::noinline]] void* takeFromNewBlock(std::size_t size);
// The last free unit of the first available block of a pool.
[[gnu::noinline]] void* takeLastOf(Pool& pool, Block* block, std::size_t size);

// A unit of a full block; of a block with a run of free units that it does not extend; of
// a block in which it is the last one in use, or that is left to the plain way.
[[gnu::noinline]] void giveToFull(void* ptr, Block* block);
[[gnu::noinline]] void giveApart(void* ptr, Block* block);
[[gnu::noinline]] void giveLastOf(void* ptr, Block* block);
// Anything else.
[[gnu::noinline]] void givePlain(void* ptr);

// `size` is at most kMaxSmallSize.
[[gnu::always_inline]] inline void* takeFast(std::size_t size)
{
    Pool* const pool = g_state.poolOfEights[(size + 7) >> 3];
    if (__builtin_expect(pool == nullptr, 0))
        return takeFromNewBlock(size);
    Block* const block = pool->availBlocks;
    if (__builtin_expect(block == nullptr, 0))
        return takeFromNewBlock(size);
    const int left = block->freeCount - 1;
    if (__builtin_expect(left == 0, 0))
        return takeLastOf(*pool, block, size);
    block->freeCount = left;
    char* const unit = static_cast<char*>(block->freeUnit);
    void* const link = TvMemoryTools::loadLink(unit); // of no meaning in a run
    void* const following = unit + pool->unitSize;
    block->freeUnit = __builtin_expect_with_probability(isLinked(block->flags), 1, 0.5) ? link : following;
    TvMemoryTools::unitTaken(unit, size == 0 ? 1 : size);
    TV_HEAP_CHECK_AFTER_CHANGE(g_tvGlobalHeap, unit);
    return unit;
}

[[gnu::always_inline]] inline void giveFast(void* ptr)
{
    const std::uintptr_t id = (reinterpret_cast<std::uintptr_t>(ptr) - g_state.fastStart) >> 20;
    if (__builtin_expect(id >= static_cast<std::uintptr_t>(kReservedPages) ||
                             g_state.kinds[id] != PageKind::Blocks || g_tvGlobalHeap.m_freeDisabled,
                         0))
        return givePlain(ptr);
    Block* const block = blockOf(ptr);
    const UnitShape shape = kUnitShapes[static_cast<std::uint8_t>(block->poolIndex)];
    const int count = block->freeCount + 1;
    if (__builtin_expect(count >= shape.perBlock, 0))
        return giveLastOf(ptr, block);
    if (__builtin_expect(count == 1, 0))
        return giveToFull(ptr, block);
    void* const next = block->freeUnit;
    const std::uintptr_t gap =
        (reinterpret_cast<std::uintptr_t>(ptr) + shape.size) ^ reinterpret_cast<std::uintptr_t>(next);
    const std::uintptr_t ifRun = static_cast<std::uintptr_t>(block->flags & Heap::kLinked) - 1;
    if (__builtin_expect((gap & ifRun) != 0, 0))
        return giveApart(ptr, block);
    TvMemoryTools::unitGiven(ptr, shape.size);
    TvMemoryTools::storeLink(ptr, next); // of no meaning in a run
    block->freeCount = count;
    block->freeUnit = ptr;
    TV_HEAP_CHECK_AFTER_CHANGE(g_tvGlobalHeap, ptr);
}

} // namespace TvHeapInternals

#endif

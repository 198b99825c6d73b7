// Units of the small pools.
#include "runtime/TvHeapUnitSteps.h"

namespace TvHeapInternals {
namespace {

// The larger unit sizes serve only requests close to them.
struct LargePool {
    std::size_t smallest;
    std::size_t largest;
    int index;
};
constexpr LargePool kLargePools[] = {{500, 512, 1}, {1000, 1024, 2}, {2000, 2048, 3}, {4000, 4096, 4}};

int poolIndexFor(std::size_t size)
{
    if (size <= kMaxSmallSize)
        return TvPoolConfigurator<34>::s_poolIndexOfSize[size];
    for (const LargePool& pool : kLargePools)
        if (size >= pool.smallest && size <= pool.largest)
            return pool.index;
    return 0;
}

Block* openBlock(Heap& heap, Pool& pool)
{
    Block* const block = takeBlock(heap);
    if (block == nullptr)
        return nullptr;
    block->poolIndex = static_cast<std::int16_t>(pool.index);
    block->freeUnit = block->firstUnit();
    block->freeCount = pool.unitsPerBlock;
    block->flags = 0;
    pushFront(pool.availBlocks, block);
    return block;
}

} // namespace

Pool* poolFor(const Heap& heap, std::size_t size) { return heap.pools[poolIndexFor(size == 0 ? 1 : size)]; }

void* takeUnit(Heap& heap, Pool& pool)
{
    Block* block = pool.availBlocks;
    if (block == nullptr)
        block = openBlock(heap, pool);
    if (block == nullptr)
        return nullptr;
    if (block->freeCount == 1) {
        unlink(pool.availBlocks, block);
        pushFront(pool.fullBlocks, block);
    }
    return popUnit(*block, pool.unitSize);
}

void giveUnit(Heap& heap, Pool& pool, Block& block, void* unit)
{
    const int count = ++block.freeCount;
    if (count == pool.unitsPerBlock) {
        unlink(count == 1 ? pool.fullBlocks : pool.availBlocks, &block);
        giveBlock(heap, &block);
        return;
    }
    if (count == 1) {
        unlink(pool.fullBlocks, &block);
        pushFront(pool.availBlocks, &block);
        setOnlyUnit(block, unit, unit == block.lastUnit(pool.unitSize));
    } else {
        pushUnit(block, unit, pool.unitSize);
    }
}

} // namespace TvHeapInternals

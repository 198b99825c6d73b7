// TvHeapUnitSteps.h - handing out and taking back one unit.
//
// Blocks and page records keep their free units alike: `freeUnit` is the next one, and
// behind it lies either a contiguous run or a list through the units' first words.
#ifndef TV_HEAP_UNIT_STEPS_H
#define TV_HEAP_UNIT_STEPS_H

#include "runtime/TvHeapInternals.h"
#include "runtime/TvMemoryTools.h"

namespace TvHeapInternals {

inline bool isLinked(int flags) { return (flags & Heap::kLinked) != 0; }

// The next free unit of a block or page record that has one.
template<class Holder>
inline void* popUnit(Holder& holder, std::size_t unitSize)
{
    char* const unit = static_cast<char*>(holder.freeUnit);
    if (--holder.freeCount == 0)
        holder.freeUnit = nullptr;
    else
        holder.freeUnit = isLinked(holder.flags) ? TvMemoryTools::loadLink(unit) : unit + unitSize;
    return unit;
}

// Threads the contiguous run of `count` units at `unit` into a list. By count, since the
// run need not reach the end of the block.
inline void threadRun(char* unit, std::size_t unitSize, int count)
{
    for (; count > 1; --count, unit += unitSize)
        TvMemoryTools::storeLink(unit, unit + unitSize);
    TvMemoryTools::storeLink(unit, nullptr);
}

// Adds `unit` to the free units of a holder that has others; the count is already raised.
template<class Holder>
inline void pushUnit(Holder& holder, void* unit, std::size_t unitSize)
{
    if (isLinked(holder.flags)) {
        TvMemoryTools::storeLink(unit, holder.freeUnit);
    } else if (static_cast<char*>(unit) + unitSize != holder.freeUnit) {
        TvMemoryTools::storeLink(unit, holder.freeUnit);
        threadRun(static_cast<char*>(holder.freeUnit), unitSize, holder.freeCount - 1);
        holder.flags |= Heap::kLinked;
    }
    holder.freeUnit = unit;
}

// Makes `unit` the only free unit of a holder. `isLast`: a contiguous run of one.
template<class Holder>
inline void setOnlyUnit(Holder& holder, void* unit, bool isLast)
{
    if (isLast) {
        holder.flags &= static_cast<std::int16_t>(~Heap::kLinked);
    } else {
        holder.flags |= Heap::kLinked;
        TvMemoryTools::storeLink(unit, nullptr);
    }
    holder.freeUnit = unit;
}

} // namespace TvHeapInternals

#endif

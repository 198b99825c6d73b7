// HeapStats.h - what the records of the library's heap say.
#ifndef TVBASE_HEAP_STATS_H
#define TVBASE_HEAP_STATS_H

#include <cstddef>
#include <cstdint>
#include <vector>

/// The units of one size.
struct PoolUse {
    std::size_t unitSize;   ///< bytes
    int unitsPerHolder;     ///< holder: a block of 4 KiB, or a page of 1 MiB of a page pool
    std::size_t holders;    ///< that hold units
    std::size_t unitsInUse; ///< handed out
};

struct HeapUse {
    std::uintptr_t rangeStart;      ///< 0 when no range could be reserved
    std::size_t blockPages;         ///< pages in use that hold blocks
    std::size_t unitPages;          ///< pages in use that page pools hold
    std::size_t freeBlocks;         ///< with access
    std::size_t closedBlocks;       ///< free, without access
    std::size_t residentBytes;      ///< of the pages in use, in memory
    std::size_t requestsToMalloc;   ///< that need a page and come from malloc before the range is used
    std::vector<PoolUse> pools;     ///< all, smallest unit first
    std::vector<PoolUse> pagePools; ///< those with pages, smallest unit first
};

/// Reads the heap's records, and nothing that lies in the units.
HeapUse readHeapUse();

/// Pages that the heap may hold at most.
std::size_t mostHeapPages();

/// Makes requests until the heap has gone through the page ids beyond its range, so that all
/// that is pooled comes from the range from now on. Nothing stays in use.
void passFirstHeapRequests();

#endif

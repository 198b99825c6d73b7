// TvHeapCheck.h - walks the heap's records and recounts them.
#ifndef TV_HEAP_CHECK_H
#define TV_HEAP_CHECK_H

#include "runtime/TvHeapInternals.h"

namespace TvHeapInternals {

// Everything: each list in both directions, each page, block, record and free unit, the
// counts, flags and kinds. Null when all is well, else what is wrong first.
const char* checkHeap(const Heap& heap);

// The page, and the block or record, that holds `unit`, which may just have been freed.
const char* checkAround(const Heap& heap, const void* unit);

// After each change in builds with structure checks: checkAround, and every now and then
// checkHeap. What is wrong goes to standard error and ends the process.
void checkAfterChange(const Heap& heap, const void* unit);

} // namespace TvHeapInternals

#if defined(TV_CHECK_STRUCTURES)
#define TV_HEAP_CHECK_AFTER_CHANGE(heap, unit) TvHeapInternals::checkAfterChange(heap, unit)
#else
#define TV_HEAP_CHECK_AFTER_CHANGE(heap, unit) static_cast<void>(0)
#endif

#endif

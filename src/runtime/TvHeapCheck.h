// TvHeapCheck.h - walks the heap's records and recounts them.
#ifndef TV_HEAP_CHECK_H
#define TV_HEAP_CHECK_H

#include "runtime/TvHeapInternals.h"

namespace TvHeapInternals {

// Everything: each list in both directions, each page, block, record and free unit, the
// counts, flags and kinds. Null when all is well, else what is wrong first.
const char* checkHeap(const Heap& heap);

// In builds with structure checks: a block or page was opened, given back or released,
// which is also when access to blocks comes and goes. The operation is still under way, so
// the whole heap is checked by the checkAfterChange() at its end.
void noteBlocksChanged();

// At the end of each operation in builds with structure checks: everything when blocks or
// pages have changed, else the block or record that holds `unit`. What is wrong goes to
// standard error and ends the process.
void checkAfterChange(const Heap& heap, const void* unit);

} // namespace TvHeapInternals

#if defined(TV_CHECK_STRUCTURES)
#define TV_HEAP_NOTE_BLOCKS_CHANGED() TvHeapInternals::noteBlocksChanged()
#define TV_HEAP_CHECK_AFTER_CHANGE(heap, unit) TvHeapInternals::checkAfterChange(heap, unit)
#else
#define TV_HEAP_NOTE_BLOCKS_CHANGED() static_cast<void>(0)
#define TV_HEAP_CHECK_AFTER_CHANGE(heap, unit) static_cast<void>(0)
#endif

#endif

// TvHeapPending.h - access to decommitted blocks, withdrawn late.
//
// A block that a page counts as decommitted keeps its access for a while: a program that
// frees and allocates in waves would otherwise pay two system calls a block. Access that is
// given back takes neighbours along, which are then pending as well. What is pending never
// exceeds 1 MiB; when it would, access to half of it or more is withdrawn, one call for each run
// of blocks without a used one between them, the longest runs first.
#ifndef TV_HEAP_PENDING_H
#define TV_HEAP_PENDING_H

namespace TvHeapInternals {

constexpr int kMaxPendingBlocks = 256;
constexpr int kMostEarly = 128; // neighbours that get access along with a run

// A page was taken of which the blocks from `firstWithout` on have no access.
void startPage(const void* page, int firstWithout);

// The block starting at `start` was put on its page's decommitted list.
void withdrawAccess(void* start);

// Makes `count` blocks from `start` on, all of one page, readable and writable; no system
// call when none has lost its access yet. False leaves them as they were.
bool giveAccess(void* start, int count);

// The page is given back as a whole, which withdraws its access.
void forgetPending(const void* page);

int pendingBlocks();
bool isPending(const void* blockStart);
bool isWithdrawn(const void* blockStart);

} // namespace TvHeapInternals

#endif

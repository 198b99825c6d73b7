#include "runtime/TvHeapPending.h"

#include "runtime/TvHeapInternals.h"
#include "runtime/TvMemoryTools.h"

#include <algorithm>
#include <bitset>

namespace TvHeapInternals {
namespace {

using Blocks = std::bitset<kBlocksPerPage>;

// By page id. A free block that is neither pending nor withdrawn has access, and one that
// is either stands on its page's decommitted list.
Blocks g_pending[kReservedPages];
Blocks g_withdrawn[kReservedPages];
constexpr int kLongRun = 8;
short g_pendingPages[kMaxPendingBlocks]; // pages that may have a bit set, without repetition
int g_pendingPageCount = 0;
int g_pendingCount = 0;

std::size_t pageIdOf(const void* address) { return rangeOffset(address) >> 20; }
std::size_t blockIdOf(const void* address) { return (rangeOffset(address) >> 12) & 0xFF; }

// Withdraws access to the runs of at least `least` pending blocks, one call for each; withdrawn
// blocks may lie between those of a run.
void withdrawRuns(std::size_t pageId, int least)
{
    Blocks& pending = g_pending[pageId];
    Blocks& withdrawn = g_withdrawn[pageId];
    char* const page = g_state.start + (pageId << 20);
    for (std::size_t first = pending._Find_first(); first < kBlocksPerPage;) {
        std::size_t end = first;
        std::size_t last = first;
        int length = 0;
        for (; end < kBlocksPerPage && (pending[end] || withdrawn[end]); ++end) {
            if (pending[end]) {
                last = end;
                ++length;
            }
        }
        if (length >= least) {
            TvHeapConfigurator::tvMemoryDeCommit(page + first * Heap::kBlockSize,
                                                 (last + 1 - first) * Heap::kBlockSize);
            for (std::size_t i = first; i <= last; ++i) {
                pending[i] = false;
                withdrawn[i] = true;
            }
            g_pendingCount -= length;
        }
        first = end < kBlocksPerPage ? pending._Find_next(end) : end;
    }
}

void withdrawFromAll(int least)
{
    int kept = 0;
    for (int i = 0; i < g_pendingPageCount; ++i) {
        const short pageId = g_pendingPages[i];
        withdrawRuns(static_cast<std::size_t>(pageId), least);
        if (g_pending[pageId].any())
            g_pendingPages[kept++] = pageId;
    }
    g_pendingPageCount = kept;
}

// Long runs first, many blocks a call: what stays may yet grow together, be used again or be
// given back with its page.
void withdrawMost()
{
    const ErrnoKept kept;
    for (int least = kLongRun; g_pendingCount > kMaxPendingBlocks / 2; least /= kLongRun)
        withdrawFromAll(least);
}

void dropPage(std::size_t pageId)
{
    for (int i = 0; i < g_pendingPageCount; ++i) {
        if (g_pendingPages[i] == static_cast<short>(pageId)) {
            g_pendingPages[i] = g_pendingPages[--g_pendingPageCount];
            return;
        }
    }
}

} // namespace

void withdrawAccess(void* start)
{
    if (g_pendingCount == kMaxPendingBlocks)
        withdrawMost();
    const std::size_t pageId = pageIdOf(start);
    if (g_pending[pageId].none())
        g_pendingPages[g_pendingPageCount++] = static_cast<short>(pageId);
    g_pending[pageId].set(blockIdOf(start));
    ++g_pendingCount;
}

void startPage(const void* page, int firstWithout)
{
    Blocks& withdrawn = g_withdrawn[pageIdOf(page)];
    withdrawn.set();
    withdrawn <<= static_cast<std::size_t>(firstWithout);
}

bool giveAccess(void* start, int count)
{
    const std::size_t pageId = pageIdOf(start);
    Blocks& pending = g_pending[pageId];
    Blocks& withdrawn = g_withdrawn[pageId];
    const std::size_t first = blockIdOf(start);
    const std::size_t end = first + static_cast<std::size_t>(count);
    const bool wasListed = pending.any();
    std::size_t lower = first;
    std::size_t upper = end;
    if (withdrawn._Find_next(first - 1) < end) {
        std::size_t more = static_cast<std::size_t>(std::min(kMostEarly, kMaxPendingBlocks - g_pendingCount));
        for (; more != 0 && upper < kBlocksPerPage && withdrawn[upper]; --more)
            ++upper;
        for (; more != 0 && withdrawn[lower - 1]; --more) // false for the blocks of descriptors
            --lower;
        char* const address = g_state.start + (pageId << 20) + lower * Heap::kBlockSize;
        const std::size_t length = (upper - lower) * Heap::kBlockSize;
        if (!commit(address, length))
            return false;
        TvMemoryTools::close(address, length);
    }
    for (std::size_t i = lower; i < upper; ++i) {
        const bool early = i < first || i >= end;
        g_pendingCount += static_cast<int>(early) - static_cast<int>(pending[i]);
        pending[i] = early;
        withdrawn[i] = false;
    }
    if (pending.any() != wasListed) {
        if (wasListed)
            dropPage(pageId);
        else
            g_pendingPages[g_pendingPageCount++] = static_cast<short>(pageId);
    }
    return true;
}

void forgetPending(const void* page)
{
    Blocks& blocks = g_pending[pageIdOf(page)];
    if (blocks.none())
        return;
    g_pendingCount -= static_cast<int>(blocks.count());
    blocks.reset();
    dropPage(pageIdOf(page));
}

int pendingBlocks() { return g_pendingCount; }

bool isPending(const void* blockStart) { return g_pending[pageIdOf(blockStart)][blockIdOf(blockStart)]; }

bool isWithdrawn(const void* blockStart) { return g_withdrawn[pageIdOf(blockStart)][blockIdOf(blockStart)]; }

} // namespace TvHeapInternals

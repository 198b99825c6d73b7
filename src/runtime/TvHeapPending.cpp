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
constexpr int kMostKept = kMaxPendingBlocks / 2;
short g_pendingPages[kMaxPendingBlocks]; // pages that may have a bit set, without repetition
int g_pendingPageCount = 0;
int g_pendingCount = 0;

// The blocks from `first` to `end`, without that.
Blocks blocksBetween(std::size_t first, std::size_t end)
{
    return Blocks().set() >> (kBlocksPerPage - (end - first)) << first;
}

std::size_t pageIdOf(const void* address) { return rangeOffset(address) >> 20; }
std::size_t blockIdOf(const void* address) { return (rangeOffset(address) >> 12) & 0xFF; }

// Pending blocks of a page without a used one between them; withdrawn ones may lie between.
struct Run {
    std::size_t pageId;
    std::size_t first;
    std::size_t end;
    int length; // pending blocks
};

// All runs there are, the longest first.
int findRuns(Run (&runs)[kMaxPendingBlocks])
{
    int count = 0;
    for (int i = 0; i < g_pendingPageCount; ++i) {
        const auto pageId = static_cast<std::size_t>(g_pendingPages[i]);
        const Blocks& pending = g_pending[pageId];
        const Blocks free = pending | g_withdrawn[pageId];
        for (std::size_t block = pending._Find_first(); block < kBlocksPerPage;) {
            Run& run = runs[count++];
            run = {pageId, block, 0, 0};
            for (; block < kBlocksPerPage && free[block]; ++block) {
                if (pending[block]) {
                    run.end = block + 1;
                    ++run.length;
                }
            }
            if (block < kBlocksPerPage)
                block = pending._Find_next(block);
        }
    }
    std::sort(runs, runs + count, [](const Run& a, const Run& b) { return a.length > b.length; });
    return count;
}

void withdraw(const Run& run)
{
    char* const page = g_state.start + (run.pageId << 20);
    TvHeapConfigurator::tvMemoryDeCommit(page + run.first * Heap::kBlockSize,
                                         (run.end - run.first) * Heap::kBlockSize);
    const Blocks blocks = blocksBetween(run.first, run.end);
    g_pending[run.pageId] &= ~blocks;
    g_withdrawn[run.pageId] |= blocks;
    g_pendingCount -= run.length;
}

// The longest runs first, most blocks a call: what stays may yet grow together, be used again or
// be given back with its page.
void withdrawLongest()
{
    const ErrnoKept errnoKept;
    Run runs[kMaxPendingBlocks];
    const int count = findRuns(runs);
    for (int i = 0; i < count && g_pendingCount > kMostKept; ++i)
        withdraw(runs[i]);
    const auto isDone = [](short pageId) { return g_pending[pageId].none(); };
    g_pendingPageCount = static_cast<int>(
        std::remove_if(g_pendingPages, g_pendingPages + g_pendingPageCount, isDone) - g_pendingPages);
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
        withdrawLongest();
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
        upper = std::min(end + more, (~withdrawn)._Find_next(end - 1));
        more -= upper - end;
        for (; more != 0 && withdrawn[lower - 1]; --more) // false for the blocks of descriptors
            --lower;
        char* const address = g_state.start + (pageId << 20) + lower * Heap::kBlockSize;
        const std::size_t length = (upper - lower) * Heap::kBlockSize;
        if (!commit(address, length))
            return false;
        TvMemoryTools::close(address, length);
    }
    const Blocks wanted = blocksBetween(first, end);
    const Blocks given = blocksBetween(lower, upper);
    g_pendingCount -= static_cast<int>(pending.count());
    pending = (pending | given) & ~wanted;
    g_pendingCount += static_cast<int>(pending.count());
    withdrawn &= ~given;
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

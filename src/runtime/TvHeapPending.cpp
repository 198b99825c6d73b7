#include "runtime/TvHeapPending.h"

#include "runtime/TvHeapInternals.h"
#include "runtime/TvMemoryTools.h"

#include <bitset>

namespace TvHeapInternals {
namespace {

using Blocks = std::bitset<kBlocksPerPage>;

Blocks g_pending[kReservedPages];        // by page id
short g_pendingPages[kMaxPendingBlocks]; // pages that may have a bit set, without repetition
int g_pendingPageCount = 0;
int g_pendingCount = 0;

std::size_t pageIdOf(const void* address) { return rangeOffset(address) >> 20; }
std::size_t blockIdOf(const void* address) { return (rangeOffset(address) >> 12) & 0xFF; }

void withdrawRuns(std::size_t pageId)
{
    Blocks& blocks = g_pending[pageId];
    char* const page = g_state.start + (pageId << 20);
    for (std::size_t first = blocks._Find_first(); first < kBlocksPerPage;) {
        std::size_t end = first + 1;
        while (end < kBlocksPerPage && blocks[end])
            ++end;
        TvHeapConfigurator::tvMemoryDeCommit(page + first * Heap::kBlockSize,
                                             (end - first) * Heap::kBlockSize);
        first = blocks._Find_next(end - 1);
    }
    blocks.reset();
}

void withdrawAll()
{
    for (int i = 0; i < g_pendingPageCount; ++i)
        withdrawRuns(static_cast<std::size_t>(g_pendingPages[i]));
    g_pendingPageCount = 0;
    g_pendingCount = 0;
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
        withdrawAll();
    const std::size_t pageId = pageIdOf(start);
    if (g_pending[pageId].none())
        g_pendingPages[g_pendingPageCount++] = static_cast<short>(pageId);
    g_pending[pageId].set(blockIdOf(start));
    ++g_pendingCount;
}

bool giveAccess(void* start, int count)
{
    Blocks& blocks = g_pending[pageIdOf(start)];
    const std::size_t first = blockIdOf(start);
    int pending = 0;
    for (int i = 0; i < count; ++i)
        pending += blocks[first + static_cast<std::size_t>(i)];
    const auto length = static_cast<std::size_t>(count) * Heap::kBlockSize;
    if (pending != count) {
        if (!commit(start, length))
            return false;
        TvMemoryTools::close(start, length);
    }
    if (pending != 0) {
        for (int i = 0; i < count; ++i)
            blocks.reset(first + static_cast<std::size_t>(i));
        g_pendingCount -= pending;
        if (blocks.none())
            dropPage(pageIdOf(start));
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

} // namespace TvHeapInternals

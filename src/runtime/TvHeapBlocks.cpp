// Blocks: taken from and given back to pages.
#include "runtime/TvHeapCheck.h"
#include "runtime/TvHeapInternals.h"
#include "runtime/TvHeapPending.h"
#include "runtime/TvMemoryTools.h"

namespace TvHeapInternals {
namespace {

constexpr std::size_t kFirstCommit = 0x10000; // blocks 0 to 15 of a new page
constexpr int kFirstDecommitted = static_cast<int>(kFirstCommit / Heap::kBlockSize);
constexpr int kUsableBlocks = kBlocksPerPage - kFirstUsableBlock;
constexpr int kMaxRecommit = 16;

// Links descriptors `first` to `last` of a page in order; returns the first.
Block* linkBlocks(Block* descriptors, int first, int last)
{
    for (int i = first; i <= last; ++i) {
        descriptors[i] = Block{};
        descriptors[i].next = i < last ? &descriptors[i + 1] : nullptr;
    }
    return &descriptors[first];
}

Page* newPage(Heap& heap)
{
    const int id = takePageId(heap);
    if (id == 0)
        return nullptr;
    void* const start = TvHeapConfigurator::sGetPageAddress(static_cast<short>(id));
    if (!commit(start, kFirstCommit)) // the id stays taken, by intent
        return nullptr;
    TvMemoryTools::close(static_cast<char*>(start) + kFirstUsableBlock * Heap::kBlockSize,
                         kFirstCommit - kFirstUsableBlock * Heap::kBlockSize);

    auto* const descriptors = static_cast<Block*>(start);
    descriptors[1] = Block{};
    auto* const page = static_cast<Page*>(start);
    page->freeBlocks = linkBlocks(descriptors, kFirstUsableBlock, kFirstDecommitted - 1);
    page->freeBlockCount = kFirstDecommitted - kFirstUsableBlock;
    page->decommittedBlocks = linkBlocks(descriptors, kFirstDecommitted, kBlocksPerPage - 1);
    page->decommittedCount = kBlocksPerPage - kFirstDecommitted;
    startPage(page, kFirstDecommitted);
    pushPage(heap.m_freeBlockPages, page);
    g_state.kinds[id] = PageKind::Blocks;
    return page;
}

// Gives access back to the run of consecutive blocks at the head of the first
// decommitted page. When that fails the page stays where it is: its only free blocks
// still have no access.
Page* recommitBlocks(Heap& heap)
{
    Page* const page = heap.m_decommittedPages;
    const int most = page->decommittedCount < kMaxRecommit ? page->decommittedCount : kMaxRecommit;
    Block* const first = page->decommittedBlocks;
    Block* last = first;
    int run = 1;
    while (run < most && last->next == last + 1) {
        last = last->next;
        ++run;
    }
    if (!giveAccess(first->firstUnit(), run))
        return nullptr;

    page->decommittedBlocks = last->next;
    page->decommittedCount -= run;
    last->next = nullptr;
    page->freeBlocks = first;
    page->freeBlockCount = run;
    unlinkPage(heap.m_decommittedPages, page);
    pushPage(heap.m_freeBlockPages, page);
    return page;
}

Block* takeBlockFrom(Heap& heap, Page* page)
{
    Block* const block = page->freeBlocks;
    page->freeBlocks = block->next;
    if (--page->freeBlockCount == 0) {
        unlinkPage(heap.m_freeBlockPages, page);
        if (page->decommittedCount != 0)
            pushPage(heap.m_decommittedPages, page);
    }
    return block;
}

bool isOnlyPage(const Heap& heap, const Page* page)
{
    return heap.m_decommittedPages == nullptr && page == heap.m_freeBlockPages;
}

} // namespace

Block* takeBlock(Heap& heap)
{
    Page* page = heap.m_freeBlockPages;
    if (page == nullptr)
        page = heap.m_decommittedPages != nullptr ? recommitBlocks(heap) : newPage(heap);
    if (page == nullptr)
        return nullptr;
    TV_HEAP_NOTE_BLOCKS_CHANGED();
    return takeBlockFrom(heap, page);
}

void giveBlock(Heap& heap, Block* block)
{
    TV_HEAP_NOTE_BLOCKS_CHANGED();
    Page* const page = pageOf(block);
    block->poolIndex = 0;
    block->freeUnit = nullptr;
    if (page->freeBlockCount < kMaxCommittedFree) {
        block->next = page->freeBlocks;
        page->freeBlocks = block;
        if (++page->freeBlockCount == 1) {
            if (page->decommittedCount != 0)
                unlinkPage(heap.m_decommittedPages, page);
            pushPage(heap.m_freeBlockPages, page);
        }
    } else if (page->freeBlockCount + page->decommittedCount + 1 == kUsableBlocks &&
               !isOnlyPage(heap, page)) {
        unlinkPage(heap.m_freeBlockPages, page);
        forgetPending(page);
        releasePage(heap, page);
    } else {
        block->next = page->decommittedBlocks;
        page->decommittedBlocks = block;
        ++page->decommittedCount;
        withdrawAccess(block->firstUnit());
    }
}

} // namespace TvHeapInternals

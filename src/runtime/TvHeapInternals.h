// TvHeapInternals.h - what the source files of the heap share.
//
// From below: page ids and page lists (TvHeapPages.cpp), withdrawn access
// (TvHeapPending.cpp), blocks (TvHeapBlocks.cpp), units of blocks (TvHeapUnits.cpp) and of
// page pools (TvHeapPagePools.cpp), the operations (TvHeap.cpp), and the end (TvHeapEnd.cpp).
#ifndef TV_HEAP_INTERNALS_H
#define TV_HEAP_INTERNALS_H

#include "TvHeap.h"

#include <cerrno>

namespace TvHeapInternals {

using Heap = TvHeap<34, TvPoolConfigurator<34>, TvHeapConfigurator, TvHeapDbgDumper>;
using Block = Heap::Block;
using Page = Heap::Page;
using PageHeap = Heap::PageHeap;
using Pool = Heap::Pool;
using PagePool = Heap::PagePool;

constexpr int kPools = 34;
constexpr int kReservedPages = static_cast<int>(Heap::kRangeSize / Heap::kPageSize);
constexpr int kBlocksPerPage = 256;
constexpr int kFirstUsableBlock = 2; // blocks 0 and 1 hold the descriptors
constexpr int kMaxCommittedFree = 16;
constexpr std::size_t kMaxSmallSize = 256;

// Every page may be taken but the first.
constexpr void initPageFlags(unsigned char* flags)
{
    flags[0] = 0;
    for (int id = 1; id < Heap::kPageIds; ++id)
        flags[id] = Heap::kPageFree;
}

enum class PageKind : unsigned char { None, Blocks, Units };

// The heap's private state: what the fast path reads, and how far the heap's life has
// gone. Outside the heap object, whose layout is a promise.
struct State {
    std::uintptr_t fastStart;       // `start` while the fast path may be taken, else kNowhere
    char* start;                    // range start; meaningful once a page has a kind
    Pool* poolOfEights[33];         // by size in units of 8, rounded up
    PageKind kinds[kReservedPages]; // a second view of page flags and records
    bool closed;                    // the heap was destroyed: units stay, books are closed
};
extern State g_state;

// A range start that makes every address of a process lie outside.
constexpr std::uintptr_t kNowhere = ~static_cast<std::uintptr_t>(Heap::kRangeSize) + 1;

// Bytes from the range start, as an unsigned number: huge for addresses below it.
inline std::size_t rangeOffset(const void* address)
{
    return static_cast<std::size_t>(reinterpret_cast<std::uintptr_t>(address) -
                                    reinterpret_cast<std::uintptr_t>(g_state.start));
}

// What holds `address`; None also outside the range.
inline PageKind kindOf(const void* address)
{
    const std::size_t id = rangeOffset(address) >> 20;
    return id < static_cast<std::size_t>(kReservedPages) ? g_state.kinds[id] : PageKind::None;
}

inline Block* blockOf(const void* unit)
{
    const auto address = reinterpret_cast<std::uintptr_t>(unit);
    return reinterpret_cast<Block*>((address & ~(Heap::kPageSize - 1)) + ((address >> 7) & (0xFF << 5)));
}

inline Page* pageOf(const void* address)
{
    return reinterpret_cast<Page*>(reinterpret_cast<std::uintptr_t>(address) & ~(Heap::kPageSize - 1));
}

// Doubly linked lists of blocks and of page records; both ends are null.
template<class Node>
inline void pushFront(Node*& head, Node* node)
{
    node->prev = nullptr;
    node->next = head;
    if (head != nullptr)
        head->prev = node;
    head = node;
}

template<class Node>
inline void unlink(Node*& head, Node* node)
{
    if (node->prev != nullptr)
        node->prev->next = node->next;
    else
        head = node->next;
    if (node->next != nullptr)
        node->next->prev = node->prev;
}

// A request that is served and a free leave errno alone, whatever a system call on the way said:
// a caller who asks errno about his own call may use the heap before he looks.
class ErrnoKept {
public:
    ErrnoKept() : m_before(errno) {}
    ~ErrnoKept() { errno = m_before; }
    ErrnoKept(const ErrnoKept&) = delete;
    ErrnoKept& operator=(const ErrnoKept&) = delete;

private:
    int m_before;
};

// Takes a page id and marks it in use; 0 when there is none. Ids beyond the reservation
// are taken too: their commit fails, which is how the search comes down to the range.
int takePageId(Heap& heap);
// The heap's own commit: refuses pages beyond the reservation without a system call.
bool commit(void* start, std::size_t length);
// Gives a whole page back.
void releasePage(Heap& heap, void* page);

void pushPage(Page*& head, Page* page);
void unlinkPage(Page*& head, Page* page);

// A free block of some page, its descriptor's pool fields stale; null when none can be had.
Block* takeBlock(Heap& heap);
void giveBlock(Heap& heap, Block* block);

// The pool serving `size` bytes; 0 is taken as 1. Null for sizes that are not pooled.
Pool* poolFor(const Heap& heap, std::size_t size);
void* takeUnit(Heap& heap, Pool& pool);
void giveUnit(Heap& heap, Pool& pool, Block& block, void* unit);

void* takePageUnit(Heap& heap, PagePool& pool);
void givePageUnit(Heap& heap, PagePool& pool, PageHeap& record, void* unit);

// Unmaps the range for good; the heap must be closed.
void releaseRange();
// Tells the end of the process from that of the library, if main() has begun by now.
void watchForEnd();

} // namespace TvHeapInternals

#endif

// TvHeap.h - the pooled heap behind _tvMalloc and its family.
//
// To get memory, take TvAlloc.h. This header is for those who look into the heap:
// debuggers, checkers and statistics, which read its records, and code that needs the
// address arithmetic of its range.
#ifndef TV_HEAP_H
#define TV_HEAP_H

#include "TvExport.h"
#include "TvLock.h"

#include <cstddef>
#include <cstdint>

/// Which unit sizes there are, and which of them serves a request.
///
/// **Errors**, **Memory**, **Threads**: none.
///
///     const int pool = TvPoolConfigurator<34>::s_poolIndexOfSize[20];       // 31
///     const int unit = TvPoolConfigurator<34>::s_unitSizeOfPools[pool];     // 24
template<int PoolCount>
struct TV_OSBASE_API TvPoolConfigurator {
    /// Unit size in bytes of each pool index; 0 for the two indexes that serve nothing.
    static const short s_unitSizeOfPools[PoolCount + 1];

    /// Pool index for requests of 0 to 256 bytes.
    static const unsigned char s_poolIndexOfSize[257];
};

/// @cond
template<>
TV_OSBASE_API const short TvPoolConfigurator<34>::s_unitSizeOfPools[35];
template<>
TV_OSBASE_API const unsigned char TvPoolConfigurator<34>::s_poolIndexOfSize[257];

/// @endcond

/// The address range of the heap: its arithmetic and the calls that map it.
///
/// A page is 1 MiB at a multiple of 1 MiB and has an id counted from the range start;
/// a block is 4 KiB and has a descriptor of 32 bytes at the start of its page.
///
/// **Errors:** null or false, never an exception.
/// **Memory:** the range belongs to the heap; it is unmapped when the library is unloaded.
/// **Threads:** one at a time.
///
///     TvHeapConfigurator::sGetPageId(p);        // in which page p lies
///     TvHeapConfigurator::sGetBlockAddress(p);  // the descriptor of p's block
class TV_OSBASE_API TvHeapConfigurator {
public:
    static void* pStartAddress; ///< range start, null when nothing could be reserved
    static short mOffSetId;     ///< page id of the range start: 0

    /// The id of the page that holds `address`, cut to 16 bits: meaningful inside the range only.
    static short sGetPageId(const void* address);
    /// Where the page starts; null for id 0, whose page is never handed out.
    static void* sGetPageAddress(short pageId);
    /// Where the page that holds `address` starts: the multiple of 1 MiB at or below it.
    static void* sGetPageAddress(const void* address);
    /// Bytes from the page's start to the descriptor of the block that holds `address`.
    static std::size_t sGetBlockOffset(const void* address);
    /// The descriptor of the block that holds `address`, at the start of its page.
    static void* sGetBlockAddress(const void* address);

    /// Whether `address` lies outside the 32 GiB from the range start on, of which only the
    /// first 8 are reserved.
    static bool sIsOutofHeapRange(const void* address);

    /// `size` / 4096 for exact multiples of 4096, else 0.
    static std::size_t sGetPagePoolIndex(std::size_t size);
    /// `index` * 4096: the bytes of a unit of that page pool.
    static std::size_t sGetSizeOfPagePool(std::size_t index);

    /// Fills 32768 bytes: every page may be taken but the first.
    static void sInitPageFlags(unsigned char* flags);

    /// mmap() of `length` bytes without a file; null when it fails. `flags` may hold MAP_FIXED, which
    /// replaces what is mapped there.
    static void* tvMemoryReserve(void* address, std::size_t length, int protection, int flags);
    /// Makes `length` bytes from `address` on readable and writable; six tries, then null. Else
    /// `address`.
    static void* tvMemoryCommit(void* address, std::size_t length);
    /// Takes all access to `length` bytes away; the content stays. False when it fails.
    static bool tvMemoryDeCommit(void* address, std::size_t length);
    /// munmap(): `length` bytes from `address` on; false when it fails.
    static bool tvMemoryRelease(void* address, std::size_t length);

    /// Reserves `length` bytes without access at the first candidate address that is
    /// free; null when none is. Nothing that is mapped is ever replaced.
    static void* tvMemoryInitialize(std::size_t length);
};

/// Where a debugging build would report units that are still in use; does nothing here.
///
/// **Errors**, **Memory**, **Threads**: none.
///
///     TvHeapDbgDumper::dump(unit);
class TV_OSBASE_API TvHeapDbgDumper {
public:
    /// Does nothing.
    static void init();
    /// Does nothing.
    static void uninit();
    /// Does nothing.
    static void dump(const void* unit);
};

/// A heap of 33 pools of small units in 4 KiB blocks and of 256 pools of page-multiples
/// in 1 MiB pages, all inside one reserved range of 8 GiB.
///
/// What surprises:
///  - some sizes below 4096 are not pooled (257 to 499, 513 to 999, 1025 to 1999, 2049
///    to 3999): they, and all above 4096, come from `malloc`;
///  - the search for a page starts beyond the reserved range, so the first 8193 requests
///    that need a new page come from `malloc`;
///  - a resize of a pooled unit always moves it, also when it shrinks;
///  - a unit is aligned to 8 bytes, no more.
///
/// Every pointer that an operation returned may go to every freeing, resizing or size
/// operation. There is one heap, g_tvGlobalHeap. Its records are laid out as they stand
/// here and may be read; only the heap changes them, but for m_freeDisabled.
///
/// **Errors:** a request that cannot be served is null; nothing is thrown or reported.
/// **Memory:** from the reserved range, or from `malloc` where that cannot serve.
/// Frees after the heap's destruction are ignored, requests then come from `malloc`.
/// **Threads:** one at a time, all operations together.
///
///     void* unit = g_tvGlobalHeap.allocHeap(20);
///     g_tvGlobalHeap.sizeOfHeap(unit);           // 24, the unit size of its pool
///     g_tvGlobalHeap.freeHeap(unit);
template<int PoolCount, class PoolConfigurator, class HeapConfigurator, class DbgDumper>
class TV_OSBASE_API TvHeap {
public:
    static constexpr std::size_t kRangeSize = 0x200000000; ///< bytes of the reserved range, 8 GiB
    static constexpr std::size_t kPageSize = 0x100000;     ///< bytes of a page, 1 MiB
    static constexpr std::size_t kBlockSize = 0x1000;      ///< bytes of a block, 4 KiB
    static constexpr int kPageIds = 32768; ///< page ids, of which the first 8192 lie in the range
    static constexpr int kPagePools = 256; ///< page pools, for units of 1 to 256 times 4096 bytes

    /// `Block::flags`, `PageHeap::flags`: the free units form a linked list, each one's
    /// first word the address of the next; clear: they are the run from `freeUnit` on.
    static constexpr int kLinked = 1;
    /// A page flag: the page is in use.
    static constexpr int kPageInUse = 1;
    /// A page flag's whole value: the page may be taken.
    static constexpr int kPageFree = 2;

    /// Descriptor of a block; that of block n lies at page start + n * 32.
    struct Block {
        Block* next;            ///< in the list that the block is on; null at its end
        Block* prev;            ///< the same, backwards
        void* freeUnit;         ///< next unit to hand out, null when none is free
        std::int32_t freeCount; ///< free units
        std::int16_t poolIndex; ///< 0 while the block is no pool's
        std::int16_t flags;     ///< kLinked or 0

        /// Which block of its page this is, 0 to 255.
        int id() const { return static_cast<int>((reinterpret_cast<std::uintptr_t>(this) >> 5) & 0xFF); }
        /// The block's start.
        char* firstUnit() const { return pageStart() + static_cast<std::size_t>(id()) * kBlockSize; }
        /// Where the last unit would start, counted back from the block's end: where `unitSize` does not
        /// divide 4096 this is no unit's address.
        char* lastUnit(std::size_t unitSize) const { return firstUnit() + kBlockSize - unitSize; }
        /// Does nothing; see TvHeapDbgDumper.
        void dump() {}

    private:
        char* pageStart() const
        {
            return reinterpret_cast<char*>(reinterpret_cast<std::uintptr_t>(this) & ~(kPageSize - 1));
        }
    };

    /// Descriptor 0 of a page that holds blocks. Page ids are links, 0 is none.
    struct Page {
        Block* freeBlocks;             ///< free blocks with access, linked through `next`
        Block* decommittedBlocks;      ///< the other free blocks, linked through `next`
        std::int16_t nextPageId;       ///< in the list of pages that the page is on
        std::int32_t prevPageId;       ///< the same, backwards
        std::int32_t freeBlockCount;   ///< blocks in freeBlocks
        std::int32_t decommittedCount; ///< blocks in decommittedBlocks
    };

    /// Record of a page that a page pool holds, outside the page.
    struct PageHeap {
        std::int16_t poolIndex = 0; ///< the page pool that holds the page
        std::int16_t flags = 0;     ///< kLinked or 0
        std::int16_t pageId = -1;   ///< -1 while no page pool holds the page
        std::int16_t freeCount = 0; ///< free units
        void* freeUnit = nullptr;   ///< an address in the page, unlike firstUnit()
        PageHeap* next = nullptr;   ///< in the list that the page is on; null at its end
        PageHeap* prev = nullptr;   ///< the same, backwards

        /// The page's start, in bytes from the range start on.
        std::uintptr_t firstUnit() const { return static_cast<std::uintptr_t>(pageId) << 20; }
        /// Where the last unit starts, in bytes from the range start on, counted back from the page's end.
        std::uintptr_t lastUnit(std::size_t unitSize) const
        {
            return (static_cast<std::uintptr_t>(pageId + 1) << 20) - unitSize;
        }
    };

    /// The blocks of one unit size.
    struct Pool {
        TvLocker lock;              ///< never taken
        std::uint64_t unitSize;     ///< bytes
        std::int32_t index;         ///< in `pools`
        std::int32_t unitsPerBlock; ///< 4096 by the unit size, without a remainder
        Block* availBlocks;         ///< blocks with a free unit
        Block* fullBlocks;          ///< blocks without one
    };

    /// The pages of one unit size.
    struct PagePool {
        TvLocker lock;             ///< never taken
        std::uint64_t unitSize;    ///< bytes, a multiple of 4096
        std::int32_t index;        ///< in `pagePools`
        std::int32_t unitsPerPage; ///< 1 MiB by the unit size, without a remainder
        PageHeap* availPages;      ///< pages with a free unit
        PageHeap* fullPages;       ///< pages without one
    };

    TvHeap(const TvHeap&) = delete;
    TvHeap& operator=(const TvHeap&) = delete;

    /// `size` bytes without a value; a size of 0 is taken as 1. Null when there is no memory.
    void* allocHeap(std::size_t size);
    /// Moves the content to `size` bytes; null leaves the old unit as it is. What did not come from
    /// the pools goes through the C library's realloc(), a null pointer too.
    void* reallocHeap(void* ptr, std::size_t size);
    /// Gives back what any operation here returned. Null is allowed.
    void freeHeap(void* ptr);
    /// Bytes that `ptr` may use: its unit's size, or what the C library says.
    std::size_t sizeOfHeap(const void* ptr);

    /// `size` bytes without a value: pooled for exact multiples of 4096 up to 1 MiB, else from `malloc`.
    void* allocHeapPage(std::size_t size);
    /// freeHeap().
    void freeHeapPage(void* ptr);

    /// Whether `ptr` lies in a page of the reserved range that is in use.
    bool isResident(const void* ptr) const;

    TvLocker m_smallLock;                ///< never taken
    TvLocker m_blockLock;                ///< never taken
    TvLocker m_pageLock;                 ///< never taken
    Pool* pools[PoolCount + 1];          ///< by pool index; null for 0
    Page* m_freeBlockPages;              ///< pages with free blocks that have access
    Page* m_decommittedPages;            ///< pages whose only free blocks have none
    PagePool* pagePools[kPagePools + 1]; ///< by multiple of 4096; null for 0
    PageHeap pageHeaps[kPageIds];        ///< by page id
    short m_searchHint;                  ///< page id where the next search for a free page starts
    unsigned char m_pageFlags[kPageIds]; ///< by page id: kPageInUse or kPageFree
    bool m_freeDisabled;                 ///< a host may set it: frees of pooled units are ignored then

    // One heap in the process: its range is the configurator's.
    TV_LOCAL constexpr TvHeap();
    TV_LOCAL ~TvHeap();
};

/// The heap of the process; the last static object of the library to be built, and the first to go.
extern TV_OSBASE_API TvHeap<34, TvPoolConfigurator<34>, TvHeapConfigurator, TvHeapDbgDumper> g_tvGlobalHeap;

#endif

// TvAlloc.h - allocation for the library and its clients.
//
// Small and page-sized requests come from the pooled heap of TvHeap.h, all others from
// the C library; compiles as C.
//
// What surprises:
//  - every pointer from here may go to every freeing, resizing or size function here, but
//    not to `free`, nor a pointer that `malloc` did not return;
//  - _tvRealloc with size 0 frees nothing;
//  - the allocating debug variants return null for every request;
//  - memory is aligned to 8 bytes, no more.
//
// Errors: null; nothing is thrown or reported. Memory: the caller's until it is freed here.
// Threads: one at a time, all functions together.
#ifndef TV_ALLOC_H
#define TV_ALLOC_H

#include "TvExport.h"

#include <stddef.h>
#include <wchar.h>

#ifdef __cplusplus
extern "C" {
#endif

/// `size` bytes without a value, 0 taken as 1; null above 0x80000000 and when there is no memory.
TV_OSBASE_API void* _tvMalloc(size_t size);

/// Resizes to `size` bytes, moving the content; null leaves the old memory as it is. With
/// size 0 the pointer comes back unchanged and stays valid. A null pointer is a new request,
/// served by the C library.
TV_OSBASE_API void* _tvRealloc(void* ptr, size_t size);

/// Gives back what any allocating function here returned. Null is allowed.
TV_OSBASE_API void _tvFree(void* ptr);

/// Bytes that the memory really has, at least those asked for; 0 for null.
TV_OSBASE_API size_t _tvMsize(void* ptr);

/// A copy of `text` (not null) with its terminating 0, freed with _tvStrdupFree or _tvFree; null
/// when there is no memory.
TV_OSBASE_API wchar_t* _tvStrdup(const wchar_t* text);

/// _tvFree() of such a copy. Null is allowed.
TV_OSBASE_API void _tvStrdupFree(void* text);

/// As _tvMalloc, without its limit: a size above 0x80000000 is asked of the C library.
TV_OSBASE_API void* _tvAllocate(size_t size);

/// As _tvRealloc but for size 0: pooled memory becomes a unit of the smallest size, and memory of
/// the C library goes the way of its realloc(), which frees it.
TV_OSBASE_API void* _tvReallocate(void* ptr, size_t size);

/// As _tvFree.
TV_OSBASE_API void _tvDeallocate(void* ptr);

/// As _tvMsize.
TV_OSBASE_API size_t _tvAllocSizeOf(void* ptr);

// Names kept for sources that ask for a debugging heap. The allocating ones return null
// for every request and leave `ptr` alone; the freeing ones free. `file` and `line` are
// never read.

/// Null, whatever is asked for: there is no debugging heap.
TV_OSBASE_API void* _tvMallocDbg(size_t size, const void* file, int line);

/// Null; `ptr` stays as it is and valid.
TV_OSBASE_API void* _tvReallocDbg(void* ptr, size_t size, const void* file, int line);

/// _tvFree(); `file` and `line` are not read.
TV_OSBASE_API void _tvFreeDbg(void* ptr, const void* file, int line);

/// _tvMsize().
TV_OSBASE_API size_t _tvMsizeDbg(void* ptr);

/// Null, whatever is asked for.
TV_OSBASE_API void* _tvAllocateDbg(size_t size, const void* file, int line);

/// Null; `ptr` stays as it is and valid.
TV_OSBASE_API void* _tvReallocateDbg(void* ptr, size_t size, const void* file, int line);

/// _tvFree(); `file` and `line` are not read.
TV_OSBASE_API void _tvDeallocateDbg(void* ptr, const void* file, int line);

/// _tvMsize().
TV_OSBASE_API size_t _tvAllocSizeOfDbg(void* ptr);

/// 1 MiB; null when there is no memory.
TV_OSBASE_API void* tvAllocPage(void);

/// Gives back what tvAllocPage() returned. Null is allowed.
TV_OSBASE_API void tvFreePage(void* ptr);

/// `size` bytes; pooled are exact multiples of 4096 up to 1 MiB. Null when there is no memory.
TV_OSBASE_API void* tvAllocPageHeap(size_t size);

/// Gives back what tvAllocPageHeap() returned. Null is allowed.
TV_OSBASE_API void tvFreePageHeap(void* ptr);

#ifdef __cplusplus
}

/// Base of classes whose objects come from the pooled heap.
///
/// **Errors:** `new` of such a class is null when memory runs out; nothing is thrown.
/// **Memory:** _tvMalloc and _tvFree.
/// **Threads:** one at a time.
///
///     struct Node : TvHeapOp { Node* next = nullptr; };
///     Node* node = new Node;      // may be null
///     delete node;
class TvHeapOp {
public:
    /// Memory for an object from _tvMalloc; null, not an exception, when there is none.
    static void* operator new(size_t size) noexcept { return _tvMalloc(size); }
    /// Gives the memory back. Null is allowed.
    static void operator delete(void* ptr) noexcept
    {
        if (ptr != nullptr)
            _tvFree(ptr);
    }
    /// The standard placement form, which the member above would hide.
    static void* operator new(size_t, void* where) noexcept { return where; }
    /// Goes with the placement form; does nothing.
    static void operator delete(void*, void*) noexcept {}
};
#endif

#endif

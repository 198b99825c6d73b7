/* TvAlloc.h - allocation for the library and its clients.
 *
 * Small and page-sized requests come from the pooled heap of TvHeap.h, all others from
 * the C library; compiles as C.
 *
 * What surprises:
 *  - every pointer from here may go to every freeing, resizing or size function here, but
 *    not to `free`, nor a pointer that `malloc` did not return;
 *  - _tvRealloc with size 0 frees nothing;
 *  - the allocating debug variants return null for every request;
 *  - memory is aligned to 8 bytes, no more.
 *
 * Errors: null; nothing is thrown or reported.
 * Memory: the caller's until it is freed here.
 * Threads: one at a time, all functions together.
 */
#ifndef TV_ALLOC_H
#define TV_ALLOC_H

#include "TvExport.h"

#include <stddef.h>
#include <wchar.h>

#ifdef __cplusplus
extern "C" {
#endif

/* `size` bytes, 0 taken as 1; null above 0x80000000. */
TV_OSBASE_API void* _tvMalloc(size_t size);

/* Resizes, moving the content; null leaves the old memory as it is. With size 0 the
 * pointer comes back unchanged and stays valid. A null pointer is a new request, served
 * by the C library. */
TV_OSBASE_API void* _tvRealloc(void* ptr, size_t size);

TV_OSBASE_API void _tvFree(void* ptr);

/* Bytes that the memory really has, at least those asked for; 0 for null. */
TV_OSBASE_API size_t _tvMsize(void* ptr);

/* A copy of `text` (not null), freed with _tvStrdupFree or _tvFree. */
TV_OSBASE_API wchar_t* _tvStrdup(const wchar_t* text);
TV_OSBASE_API void _tvStrdupFree(void* text);

/* The same without the tests for large sizes, size 0 and null. */
TV_OSBASE_API void* _tvAllocate(size_t size);
TV_OSBASE_API void* _tvReallocate(void* ptr, size_t size);
TV_OSBASE_API void _tvDeallocate(void* ptr);
TV_OSBASE_API size_t _tvAllocSizeOf(void* ptr);

/* Names kept for sources that ask for a debugging heap. The allocating ones return null
 * for every request and leave `ptr` alone; the freeing ones free. `file` and `line` are
 * never read. */
TV_OSBASE_API void* _tvMallocDbg(size_t size, const void* file, int line);
TV_OSBASE_API void* _tvReallocDbg(void* ptr, size_t size, const void* file, int line);
TV_OSBASE_API void _tvFreeDbg(void* ptr, const void* file, int line);
TV_OSBASE_API size_t _tvMsizeDbg(void* ptr);
TV_OSBASE_API void* _tvAllocateDbg(size_t size, const void* file, int line);
TV_OSBASE_API void* _tvReallocateDbg(void* ptr, size_t size, const void* file, int line);
TV_OSBASE_API void _tvDeallocateDbg(void* ptr, const void* file, int line);
TV_OSBASE_API size_t _tvAllocSizeOfDbg(void* ptr);

/* 1 MiB. */
TV_OSBASE_API void* tvAllocPage(void);
TV_OSBASE_API void tvFreePage(void* ptr);

/* `size` bytes; pooled are exact multiples of 4096 up to 1 MiB. */
TV_OSBASE_API void* tvAllocPageHeap(size_t size);
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
    static void* operator new(size_t size) noexcept { return _tvMalloc(size); }
    static void operator delete(void* ptr) noexcept
    {
        if (ptr != nullptr)
            _tvFree(ptr);
    }
    /// The standard placement form, which the member above would hide.
    static void* operator new(size_t, void* where) noexcept { return where; }
    static void operator delete(void*, void*) noexcept {}
};
#endif

#endif

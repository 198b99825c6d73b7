#include "TvAlloc.h"

#include "TvHeap.h"

#include "runtime/TvHeapFast.h"

#include <cwchar>

namespace {

constexpr std::size_t kMaxRequest = 0x80000000;

} // namespace

void* _tvMalloc(std::size_t size)
{
    if (size <= TvHeapInternals::kMaxSmallSize)
        return TvHeapInternals::takeFast(size);
    return size > kMaxRequest ? nullptr : g_tvGlobalHeap.allocHeap(size);
}

void* _tvRealloc(void* ptr, std::size_t size) { return size == 0 ? ptr : _tvReallocate(ptr, size); }

void _tvFree(void* ptr) { TvHeapInternals::giveFast(ptr); }

std::size_t _tvMsize(void* ptr) { return ptr == nullptr ? 0 : _tvAllocSizeOf(ptr); }

wchar_t* _tvStrdup(const wchar_t* text)
{
    const std::size_t length = std::wcslen(text) + 1;
    auto* const copy = static_cast<wchar_t*>(_tvMalloc(length * sizeof(wchar_t)));
    return copy != nullptr ? std::wmemcpy(copy, text, length) : nullptr;
}

void _tvStrdupFree(void* text)
{
    if (text != nullptr)
        _tvFree(text);
}

void* _tvAllocate(std::size_t size)
{
    if (size <= TvHeapInternals::kMaxSmallSize)
        return TvHeapInternals::takeFast(size);
    return g_tvGlobalHeap.allocHeap(size);
}

void* _tvReallocate(void* ptr, std::size_t size) { return g_tvGlobalHeap.reallocHeap(ptr, size); }
void _tvDeallocate(void* ptr) { TvHeapInternals::giveFast(ptr); }

std::size_t _tvAllocSizeOf(void* ptr) { return g_tvGlobalHeap.sizeOfHeap(ptr); }

void* _tvMallocDbg(std::size_t size, const void* file, int line) { return _tvAllocateDbg(size, file, line); }

void* _tvReallocDbg(void* ptr, std::size_t size, const void* file, int line)
{
    return _tvReallocateDbg(ptr, size, file, line);
}

void _tvFreeDbg(void* ptr, const void* file, int line) { _tvDeallocateDbg(ptr, file, line); }

std::size_t _tvMsizeDbg(void* ptr) { return ptr == nullptr ? 0 : _tvAllocSizeOfDbg(ptr); }

// The allocating debug variants have no memory to give, by intent; clients test for null.
void* _tvAllocateDbg(std::size_t, const void*, int) { return nullptr; }
void* _tvReallocateDbg(void*, std::size_t, const void*, int) { return nullptr; }

void _tvDeallocateDbg(void* ptr, const void*, int)
{
    if (ptr != nullptr)
        g_tvGlobalHeap.freeHeap(ptr);
}

std::size_t _tvAllocSizeOfDbg(void* ptr) { return g_tvGlobalHeap.sizeOfHeap(ptr); }

void* tvAllocPage(void) { return g_tvGlobalHeap.allocHeapPage(0x100000); }
void tvFreePage(void* ptr) { g_tvGlobalHeap.freeHeapPage(ptr); }
void* tvAllocPageHeap(std::size_t size) { return g_tvGlobalHeap.allocHeapPage(size); }
void tvFreePageHeap(void* ptr) { g_tvGlobalHeap.freeHeapPage(ptr); }

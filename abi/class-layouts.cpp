// Every public class in one object file, with the instantiations that modules exchange.
#include <TvOsBase.h>

static_assert(sizeof(TvVector<char>) == sizeof(void*), "");
static_assert(sizeof(TvVectorData<char, TvDefaultMemAllocator<char>, int, TvVectorDefaultGrowPolicy>) != 0,
              "");
static_assert(sizeof(TvVector<wchar_t>) == sizeof(void*), "");
static_assert(sizeof(TvVectorData<wchar_t, TvDefaultMemAllocator<wchar_t>, int, TvVectorDefaultGrowPolicy>) !=
                  0,
              "");
static_assert(sizeof(TvStringA) == sizeof(void*), "");
static_assert(sizeof(CStdStr<wchar_t>) == sizeof(std::wstring), "");
static_assert(sizeof(g_tvGlobalHeap) != 0, "");

// Nested classes are complete where something of them is asked for.
using Heap = TvHeap<34, TvPoolConfigurator<34>, TvHeapConfigurator, TvHeapDbgDumper>;
static_assert(sizeof(Heap::Block) == 32 && sizeof(Heap::Page) == 32 && sizeof(Heap::PageHeap) == 32, "");
static_assert(sizeof(Heap::Pool) != 0 && sizeof(Heap::PagePool) != 0, "");

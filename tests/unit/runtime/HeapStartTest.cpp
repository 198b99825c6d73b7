// What the heap's object costs before it is used. This program does not name the object: that
// would place a copy of it here.
#include "TvAlloc.h"
#include "TvHeap.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include <dlfcn.h>
#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr std::uint64_t kPresent = std::uint64_t{1} << 63;
constexpr std::uint64_t kOfAFile = std::uint64_t{1} << 61;

// How many pages of [object, object + size) this process has a copy of its own of; -1 when the
// system does not tell.
long ownPages(const void* object, std::size_t size)
{
    const auto pageSize = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    const std::size_t first = reinterpret_cast<std::uintptr_t>(object) / pageSize;
    const std::size_t last = (reinterpret_cast<std::uintptr_t>(object) + size - 1) / pageSize;
    std::vector<std::uint64_t> pages(last - first + 1);
    const std::size_t bytes = pages.size() * sizeof pages[0];
    const int file = open("/proc/self/pagemap", O_RDONLY);
    const ssize_t got =
        file < 0 ? -1 : pread(file, pages.data(), bytes, static_cast<off_t>(first * sizeof pages[0]));
    close(file);
    if (got != static_cast<ssize_t>(bytes))
        return -1;
    long own = 0;
    for (const std::uint64_t page : pages)
        own += (page & kPresent) != 0 && (page & kOfAFile) == 0;
    return own;
}

TEST(HeapStart, RecordsOfPagesAreNotWrittenBeforeTheyAreUsed)
{
    ASSERT_EQ(_tvMsize(nullptr), 0u); // a call, so that the library is linked
    const void* const heap = dlsym(RTLD_DEFAULT, "g_tvGlobalHeap");
    ASSERT_NE(heap, nullptr);
    const long own =
        ownPages(heap, sizeof(TvHeap<34, TvPoolConfigurator<34>, TvHeapConfigurator, TvHeapDbgDumper>));
    if (own < 0)
        GTEST_SKIP() << "no page map";
    // Of 265: those with the pools at the start and with the search's place.
    EXPECT_LE(own, 8);
}

} // namespace

// What the heap does after its destruction. The checks run in a child process, in the
// destructors of objects that were built before the heap's and before its range's.
#include "PooledHeap.h"
#include "runtime/TvHeapInternals.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <unistd.h>

namespace {

bool g_checksRun = false;
char* g_unit = nullptr;
char* g_page = nullptr;
char* g_foreign = nullptr;
void* g_early = nullptr;

#define REQUIRE(condition)                                                                                   \
    do {                                                                                                     \
        if (!(condition)) {                                                                                  \
            std::fprintf(stderr, "not so: %s\n", #condition);                                                \
            std::fflush(stderr);                                                                             \
            _exit(1);                                                                                        \
        }                                                                                                    \
    } while (false)

// Built before the heap, destroyed after it.
struct AfterHeap {
    AfterHeap() { g_early = _tvMalloc(20); }
    ~AfterHeap()
    {
        if (!g_checksRun)
            return;
        REQUIRE(std::strcmp(g_unit, "unit") == 0);
        REQUIRE(std::strcmp(g_page, "page") == 0);
        g_unit[0] = 'U';
        _tvFree(g_unit);
        tvFreePage(g_page);
        REQUIRE(std::strcmp(g_unit, "Unit") == 0);
        REQUIRE(_tvRealloc(g_unit, 100) == nullptr);
        REQUIRE(_tvMsize(g_unit) == 24);
        REQUIRE(_tvMsize(g_page) == 0x100000);
        _tvFree(g_page - 0x100000); // a page of the range that is not in use

        void* const late = _tvMalloc(20);
        REQUIRE(late != nullptr && !g_tvGlobalHeap.isResident(late));
        _tvFree(late);
        void* const latePage = tvAllocPage();
        REQUIRE(latePage != nullptr && !g_tvGlobalHeap.isResident(latePage));
        tvFreePage(latePage);
        g_foreign = static_cast<char*>(_tvRealloc(g_foreign, 9000));
        REQUIRE(std::strcmp(g_foreign, "foreign") == 0);
        _tvFree(g_foreign);
    }
};
__attribute__((init_priority(250))) AfterHeap g_afterHeap;

// Destroyed after all objects of the library. The range is there until the process has ended;
// its end with an unloaded library is made here.
struct AfterRange {
    ~AfterRange()
    {
        if (!g_checksRun)
            return;
        REQUIRE(std::strcmp(g_unit, "Unit") == 0);
        REQUIRE(_tvMsize(g_unit) == 24);
        TvHeapInternals::releaseRange();
        _tvFree(g_unit);
        tvFreePage(g_page);
        REQUIRE(_tvRealloc(g_unit, 100) == nullptr);
        REQUIRE(_tvMsize(g_unit) == 0);
        void* const late = _tvMalloc(20);
        REQUIRE(late != nullptr);
        _tvFree(late);
        std::fputs("all checks ran", stderr);
        std::fflush(stderr);
    }
};
__attribute__((init_priority(150))) AfterRange g_afterRange;

TEST(TvHeapEndDeathTest, UnitsStayUsableAndFreesAreIgnored)
{
    if (!runPageSearchDown())
        GTEST_SKIP() << "no reserved range in this process";
    EXPECT_EXIT(
        {
            g_unit = static_cast<char*>(_tvMalloc(20));
            g_page = static_cast<char*>(tvAllocPage());
            g_foreign = static_cast<char*>(_tvMalloc(5000));
            std::strcpy(g_unit, "unit");
            std::strcpy(g_page, "page");
            std::strcpy(g_foreign, "foreign");
            g_checksRun = true;
            std::exit(0);
        },
        ::testing::ExitedWithCode(0), "all checks ran");
}

TEST(TvHeapStart, BeforeTheHeapMemoryComesFromMalloc)
{
    EXPECT_NE(g_early, nullptr);
    EXPECT_FALSE(g_tvGlobalHeap.isResident(g_early));
    _tvFree(g_early);
    g_early = nullptr;
}

} // namespace

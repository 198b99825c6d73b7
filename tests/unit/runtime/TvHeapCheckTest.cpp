// The checker sees damage of each kind that it looks for.
#include "runtime/TvHeapCheck.h"

#include "EachTestAlone.h"
#include "PooledHeap.h"
#include "runtime/TvMemoryTools.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace {

using TvHeapInternals::blockOf;
using TvHeapInternals::checkHeap;
using TvHeapInternals::pageOf;

// Two blocks of pool 26 (64 bytes), the first full, and a page of page pool 128.
struct Scene {
    Scene()
    {
        for (int i = 0; i < 65; ++i)
            units.push_back(static_cast<char*>(_tvMalloc(64)));
        page = static_cast<char*>(tvAllocPageHeap(0x80000));
    }
    GlobalHeap::Block& full() const { return *blockOf(units[0]); }
    GlobalHeap::Block& open() const { return *blockOf(units[64]); }
    GlobalHeap::Page& blockPage() const { return *pageOf(units[0]); }
    GlobalHeap::Pool& pool() const { return *g_tvGlobalHeap.pools[26]; }
    GlobalHeap::PageHeap& record() const
    {
        return g_tvGlobalHeap.pageHeaps[TvHeapConfigurator::sGetPageId(page)];
    }
    // Leaves units 10, 20 and 30 of the first block free, as a list.
    void makeList() const
    {
        for (int i : {30, 20, 10})
            _tvFree(units[static_cast<std::size_t>(i)]);
    }
    std::vector<char*> units;
    char* page;
};

struct Damage {
    const char* name;
    void (*make)(Scene& scene);
    const char* told;
};

const Damage kDamages[] = {
    {"None", [](Scene&) {}, nullptr},
    {"CountOfARun", [](Scene& s) { --s.open().freeCount; },
     "a contiguous run that does not end with the last unit"},
    {"CountAboveTheUnits", [](Scene& s) { s.open().freeCount = 65; },
     "a free count outside 0 and the number of units"},
    {"CountBelowZero", [](Scene& s) { s.open().freeCount = -1; },
     "a free count outside 0 and the number of units"},
    {"EmptyBlockKept", [](Scene& s) { s.open().freeCount = 64; }, "an empty block that was not given back"},
    {"FreeUnitOfAFullBlock", [](Scene& s) { s.full().freeUnit = s.units[0]; },
     "a free unit where the count is 0"},
    {"UnitFreeTwice",
     [](Scene& s) {
         s.makeList();
         TvMemoryTools::storeLink(s.units[20], s.units[10]);
     },
     "a unit that is free twice"},
    {"LinkIntoTheMiddleOfAUnit",
     [](Scene& s) {
         s.makeList();
         TvMemoryTools::storeLink(s.units[20], s.units[30] + 8);
     },
     "a free unit that is no unit of its block"},
    {"LinkIntoAnotherBlock",
     [](Scene& s) {
         s.makeList();
         TvMemoryTools::storeLink(s.units[20], s.units[64]);
     },
     "a free unit that is no unit of its block"},
    {"ListLongerThanItsCount",
     [](Scene& s) {
         s.makeList();
         TvMemoryTools::storeLink(s.units[30], s.units[40]);
     },
     "a free list longer than its count"},
    {"BlockWithoutAPool", [](Scene& s) { s.pool().availBlocks = nullptr, s.open().poolIndex = 0; },
     "a block in use without a pool"},
    {"BlockOfAnotherPool", [](Scene& s) { s.open().poolIndex = 25; }, "a block on another pool's list"},
    {"BlockOnNoList", [](Scene& s) { s.pool().availBlocks = nullptr; }, "a block in use that is on no list"},
    {"FullBlockAmongTheAvailable", [](Scene& s) { std::swap(s.pool().availBlocks, s.pool().fullBlocks); },
     "a full member among the available, or the other way round"},
    {"BackwardLink", [](Scene& s) { s.open().prev = &s.full(); }, "a list whose ways forth and back differ"},
    {"FreeBlocksCountedTooFew", [](Scene& s) { --s.blockPage().freeBlockCount; },
     "more free blocks than counted"},
    {"FreeBlocksCountedTooMany", [](Scene& s) { ++s.blockPage().freeBlockCount; },
     "fewer free blocks than counted"},
    {"DecommittedCount", [](Scene& s) { ++s.blockPage().decommittedCount; },
     "fewer free blocks than counted"},
    {"BlockOnBothFreeLists", [](Scene& s) { s.blockPage().decommittedBlocks = s.blockPage().freeBlocks; },
     "a block that is free twice"},
    {"FreeBlockWithAPool", [](Scene& s) { s.blockPage().freeBlocks->poolIndex = 26; },
     "a free block that has a pool"},
    {"BlockInUseAmongTheFree", [](Scene& s) { s.blockPage().freeBlocks = &s.open(); },
     "a free block that has a pool"},
    {"DescriptorOfTheDescriptors", [](Scene& s) { s.blockPage().freeBlocks = &s.full() - 1; },
     "a free block of another page"},
    {"PageOnNoList", [](Scene&) { g_tvGlobalHeap.m_freeBlockPages = nullptr; },
     "a page with free blocks that is on no list"},
    {"PageOnTheWrongList",
     [](Scene&) { std::swap(g_tvGlobalHeap.m_freeBlockPages, g_tvGlobalHeap.m_decommittedPages); },
     "a page on the wrong list"},
    {"BackwardPageLink", [](Scene& s) { s.blockPage().prevPageId = 5; },
     "a page list whose ways forth and back differ"},
    {"PageFlag", [](Scene&) { g_tvGlobalHeap.m_pageFlags[100] = 6; }, "a page flag of no known value"},
    {"FlagOfTheFirstPage", [](Scene&) { g_tvGlobalHeap.m_pageFlags[0] = 2; },
     "a page flag of no known value"},
    {"BlockPageNotInUse",
     [](Scene& s) { g_tvGlobalHeap.m_pageFlags[TvHeapConfigurator::sGetPageId(&s.blockPage())] = 2; },
     "a page that holds something and is not in use"},
    {"RecordWithoutItsPage", [](Scene& s) { s.record().pageId = -1; },
     "a page record on another pool's list"},
    {"RecordWithAnotherId", [](Scene& s) { ++s.record().pageId; }, "a page record with another page's id"},
    {"RecordOfAPageThatHoldsNothing", [](Scene&) { g_tvGlobalHeap.pageHeaps[100].pageId = 100; },
     "a page and its record that disagree"},
    {"RecordBeyondTheReservation", [](Scene&) { g_tvGlobalHeap.pageHeaps[9000].pageId = 9000; },
     "a page record in use beyond the reservation"},
    {"RecordOnNoList", [](Scene&) { g_tvGlobalHeap.pagePools[128]->availPages = nullptr; },
     "a page record that is on no list, or on two"},
    {"RecordOfAnotherPool", [](Scene& s) { s.record().poolIndex = 127; },
     "a page record on another pool's list"},
    {"RunOfARecord", [](Scene& s) { s.record().freeUnit = s.page; },
     "a contiguous run that does not end with the last unit"},
};

class TvHeapCheck : public ::testing::TestWithParam<Damage> {};

TEST_P(TvHeapCheck, TellsWhatIsWrong)
{
    if (!runPageSearchDown())
        GTEST_SKIP() << "no reserved range in this process";
    Scene scene;
    ASSERT_STREQ(checkHeap(g_tvGlobalHeap), nullptr);
    GetParam().make(scene);
    EXPECT_STREQ(checkHeap(g_tvGlobalHeap), GetParam().told);
}

INSTANTIATE_TEST_SUITE_P(Damages, TvHeapCheck, ::testing::ValuesIn(kDamages),
                         [](const auto& test) { return test.param.name; });

#ifdef TV_CHECK_STRUCTURES
class TvHeapCheckDeathTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        if (!runPageSearchDown())
            GTEST_SKIP() << "no reserved range in this process";
    }
};

TEST_F(TvHeapCheckDeathTest, AUnitEventChecksItsBlock)
{
    Scene scene;
    --scene.open().freeCount;
    EXPECT_DEATH(_tvMalloc(64), "The pooled heap is damaged: a contiguous run");
}

TEST_F(TvHeapCheckDeathTest, AUnitEventChecksItsPageRecord)
{
    Scene scene;
    scene.record().poolIndex = 300;
    EXPECT_DEATH(tvAllocPageHeap(0x80000), "The pooled heap is damaged: a page record without a pool");
}

TEST_F(TvHeapCheckDeathTest, AnOpenedBlockChecksEverything)
{
    Scene scene;
    g_tvGlobalHeap.m_pageFlags[100] = 6;
    _tvFree(_tvMalloc(64)); // a unit event sees its block alone
    EXPECT_DEATH(_tvMalloc(32), "The pooled heap is damaged: a page flag");
}

TEST_F(TvHeapCheckDeathTest, ABlockGivenBackChecksEverything)
{
    Scene scene;
    g_tvGlobalHeap.m_pageFlags[100] = 6;
    EXPECT_DEATH(_tvFree(scene.units[64]), "The pooled heap is damaged: a page flag");
}

TEST_F(TvHeapCheckDeathTest, AnOpenedPageChecksEverything)
{
    Scene scene;
    g_tvGlobalHeap.m_pageFlags[100] = 6;
    EXPECT_DEATH(tvAllocPage(), "The pooled heap is damaged: a page flag");
}

TEST_F(TvHeapCheckDeathTest, AReleasedPageChecksEverything)
{
    Scene scene;
    g_tvGlobalHeap.m_pageFlags[100] = 6;
    EXPECT_DEATH(tvFreePageHeap(scene.page), "The pooled heap is damaged: a page flag");
}
#endif

} // namespace

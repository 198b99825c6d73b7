#include "EachTestAlone.h"
#include "PooledHeap.h"
#include "runtime/TvHeapCheck.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <vector>

namespace {

class TvHeapPagePool : public ::testing::Test {
protected:
    void SetUp() override
    {
        if (!runPageSearchDown())
            GTEST_SKIP() << "no reserved range in this process";
    }
    void TearDown() override
    {
        for (char* unit : m_units)
            tvFreePageHeap(unit);
        EXPECT_EQ(pooledUnitsInUse(), 0);
        check();
    }
    std::vector<char*> take(std::size_t size, int count)
    {
        std::vector<char*> units;
        for (int i = 0; i < count; ++i)
            units.push_back(static_cast<char*>(tvAllocPageHeap(size)));
        m_units.insert(m_units.end(), units.begin(), units.end());
        return units;
    }
    void give(char* unit)
    {
        m_units.erase(std::find(m_units.begin(), m_units.end(), unit));
        tvFreePageHeap(unit);
    }
    static GlobalHeap::PageHeap& record(const void* unit)
    {
        return g_tvGlobalHeap.pageHeaps[TvHeapConfigurator::sGetPageId(unit)];
    }
    static void check() { EXPECT_STREQ(TvHeapInternals::checkHeap(g_tvGlobalHeap), nullptr); }

    std::vector<char*> m_units;
};

TEST_F(TvHeapPagePool, PoolsDescribeTheirUnits)
{
    EXPECT_EQ(g_tvGlobalHeap.pagePools[0], nullptr);
    for (int i = 1; i <= 256; ++i) {
        EXPECT_EQ(g_tvGlobalHeap.pagePools[i]->unitSize, 4096u * static_cast<unsigned>(i));
        EXPECT_EQ(g_tvGlobalHeap.pagePools[i]->index, i);
        EXPECT_EQ(g_tvGlobalHeap.pagePools[i]->unitsPerPage, 256 / i);
    }
}

TEST_F(TvHeapPagePool, APageIsHandedOutFromItsStart)
{
    const auto units = take(0x10000, 16);
    const short id = TvHeapConfigurator::sGetPageId(units[0]);
    EXPECT_EQ(units[0], TvHeapConfigurator::sGetPageAddress(id));
    for (int i = 0; i < 16; ++i)
        EXPECT_EQ(units[i], units[0] + 0x10000 * i);
    EXPECT_EQ(record(units[0]).pageId, id);
    EXPECT_EQ(record(units[0]).poolIndex, 16);
    EXPECT_EQ(record(units[0]).freeCount, 0);
    EXPECT_EQ(record(units[0]).freeUnit, nullptr);
    EXPECT_EQ(g_tvGlobalHeap.pagePools[16]->fullPages, &record(units[0]));
}

TEST_F(TvHeapPagePool, FirstAndLastUnitAreKeptRelativeToTheRange)
{
    const auto units = take(0x10000, 1);
    const auto& page = record(units[0]);
    EXPECT_EQ(page.firstUnit(), static_cast<std::uintptr_t>(page.pageId) << 20);
    EXPECT_EQ(page.lastUnit(0x10000), (static_cast<std::uintptr_t>(page.pageId + 1) << 20) - 0x10000);
}

TEST_F(TvHeapPagePool, FreeUnitIsARealAddress)
{
    const auto units = take(0x10000, 1);
    EXPECT_EQ(record(units[0]).freeUnit, units[0] + 0x10000);
}

TEST_F(TvHeapPagePool, TheLastUnitFreedInAFullPageIsARunOfOne)
{
    const auto units = take(0x10000, 16);
    give(units[15]);
    EXPECT_EQ(record(units[0]).flags & 1, 0);
    give(units[14]);
    EXPECT_EQ(record(units[0]).flags & 1, 0);
    check();
}

TEST_F(TvHeapPagePool, FreeingOutOfOrderMakesAListOfRealAddresses)
{
    const auto units = take(0x10000, 4);
    give(units[1]);
    EXPECT_EQ(record(units[0]).flags & 1, 1);
    check();
    EXPECT_EQ(take(0x10000, 1)[0], units[1]);
    EXPECT_EQ(take(0x10000, 1)[0], units[3] + 0x10000);
    check();
}

TEST_F(TvHeapPagePool, WhereUnitsDoNotFillThePageTheLastOneIsAListOfOne)
{
    const auto units = take(0x5000, 51); // 51 units of 5 pages, one page is left over
    give(units[50]);
    EXPECT_EQ(record(units[0]).flags & 1, 1);
    give(units[20]);
    check();
}

TEST_F(TvHeapPagePool, AnEmptyPageIsReleased)
{
    const auto units = take(0x80000, 2);
    auto& page = record(units[0]);
    give(units[0]);
    EXPECT_TRUE(g_tvGlobalHeap.isResident(units[1]));
    give(units[1]);
    EXPECT_FALSE(g_tvGlobalHeap.isResident(units[1]));
    EXPECT_EQ(page.pageId, -1);
    EXPECT_EQ(g_tvGlobalHeap.pagePools[128]->availPages, nullptr);
}

TEST_F(TvHeapPagePool, ReleasingAPageLeavesErrnoAlone)
{
    char* const unit = take(0x100000, 1)[0];
    errno = 4321;
    give(unit);
    EXPECT_EQ(errno, 4321);
}

TEST_F(TvHeapPagePool, AUnitOfAWholePageComesAndGoesAsAWhole)
{
    const auto units = take(0x100000, 3);
    EXPECT_EQ(g_tvGlobalHeap.pagePools[256]->availPages, nullptr);
    EXPECT_EQ(g_tvGlobalHeap.pagePools[256]->fullPages, &record(units[2]));
    give(units[1]);
    EXPECT_EQ(g_tvGlobalHeap.pagePools[256]->fullPages->next, &record(units[0]));
    check();
}

TEST_F(TvHeapPagePool, AReleasedPageMayHoldBlocksNext)
{
    const auto units = take(0x100000, 1);
    const short id = TvHeapConfigurator::sGetPageId(units[0]);
    give(units[0]);
    std::vector<void*> blocks;
    do
        blocks.push_back(_tvMalloc(4096));
    while (TvHeapConfigurator::sGetPageId(blocks.back()) != id && blocks.size() < 2000);
    EXPECT_EQ(TvHeapConfigurator::sGetPageId(blocks.back()), id);
    EXPECT_EQ(g_tvGlobalHeap.sizeOfHeap(blocks.back()), 4096u);
    check();
    for (void* block : blocks)
        _tvFree(block);
}

} // namespace

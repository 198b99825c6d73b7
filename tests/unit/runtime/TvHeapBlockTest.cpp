#include "EachTestAlone.h"
#include "PooledHeap.h"
#include "runtime/TvHeapCheck.h"
#include "runtime/TvHeapPending.h"
#include "runtime/TvMemoryTools.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <random>
#include <string>
#include <vector>

namespace {

using TvHeapInternals::blockOf;
using TvHeapInternals::pageOf;
using Block = GlobalHeap::Block;
using Page = GlobalHeap::Page;

struct Mapping {
    std::uintptr_t start;
    std::uintptr_t end;
    bool readable;
};

std::vector<Mapping> mappingsOfTheProcess()
{
    std::vector<Mapping> mappings;
    std::ifstream file("/proc/self/maps");
    for (std::string line; std::getline(file, line);) {
        unsigned long start = 0;
        unsigned long end = 0;
        char rights[5] = "";
        if (std::sscanf(line.c_str(), "%lx-%lx %4s", &start, &end, rights) == 3)
            mappings.push_back({start, end, rights[0] == 'r'});
    }
    return mappings;
}

bool isReadable(const std::vector<Mapping>& mappings, const void* ptr)
{
    const auto address = reinterpret_cast<std::uintptr_t>(ptr);
    return std::any_of(mappings.begin(), mappings.end(), [address](const Mapping& m) {
        return m.readable && address >= m.start && address < m.end;
    });
}

// Each test starts with one page, all of its blocks free.
class TvHeapBlock : public ::testing::Test {
protected:
    void SetUp() override
    {
        if (!runPageSearchDown())
            GTEST_SKIP() << "no reserved range in this process";
        ASSERT_EQ(pooledUnitsInUse(), 0);
    }
    void TearDown() override
    {
        for (char* unit : m_units)
            _tvFree(unit);
        EXPECT_EQ(pooledUnitsInUse(), 0);
        check();
    }

    char* take(std::size_t size)
    {
        m_units.push_back(static_cast<char*>(_tvMalloc(size)));
        EXPECT_TRUE(g_tvGlobalHeap.isResident(m_units.back()));
        return m_units.back();
    }
    std::vector<char*> take(std::size_t size, int count)
    {
        std::vector<char*> units;
        for (int i = 0; i < count; ++i)
            units.push_back(take(size));
        return units;
    }
    void give(char* unit)
    {
        m_units.erase(std::find(m_units.begin(), m_units.end(), unit));
        _tvFree(unit);
    }
    static void check() { EXPECT_STREQ(TvHeapInternals::checkHeap(g_tvGlobalHeap), nullptr); }
    static bool linked(const void* unit) { return (blockOf(unit)->flags & 1) != 0; }
    static const GlobalHeap::Pool& pool(const void* unit)
    {
        return *g_tvGlobalHeap.pools[blockOf(unit)->poolIndex];
    }

    std::vector<char*> m_units;
};

TEST_F(TvHeapBlock, AFreshBlockIsHandedOutInOrder)
{
    const auto units = take(24, 170);
    for (int i = 0; i < 170; ++i)
        ASSERT_EQ(units[i], blockOf(units[0])->firstUnit() + 24 * i);
    EXPECT_FALSE(linked(units[0]));
}

TEST_F(TvHeapBlock, Unit171OpensASecondBlock)
{
    const auto units = take(24, 170);
    EXPECT_EQ(pool(units[0]).availBlocks, nullptr);
    EXPECT_EQ(pool(units[0]).fullBlocks, blockOf(units[0]));
    char* const next = take(24);
    EXPECT_NE(blockOf(next), blockOf(units[0]));
    EXPECT_EQ(pool(next).availBlocks, blockOf(next));
    check();
}

TEST_F(TvHeapBlock, TheFirstBlockOfAPageIsNumberTwo)
{
    char* const unit = take(64);
    EXPECT_EQ(unit, reinterpret_cast<char*>(pageOf(unit)) + 2 * 4096);
    EXPECT_EQ(pageOf(unit)->freeBlockCount, 13);
    EXPECT_EQ(pageOf(unit)->decommittedCount, 240);
}

TEST_F(TvHeapBlock, FreeingInReverseOrderKeepsTheRun)
{
    const auto units = take(24, 100);
    for (int i = 99; i > 0; --i) {
        give(units[i]);
        ASSERT_FALSE(linked(units[0]));
        ASSERT_EQ(blockOf(units[0])->freeUnit, units[i]);
    }
    EXPECT_EQ(blockOf(units[0])->freeCount, 169);
    check();
}

TEST_F(TvHeapBlock, FreeingTheFirstUnitWhileLaterOnesAreFreeMakesAList)
{
    const auto units = take(24, 3);
    give(units[0]);
    EXPECT_TRUE(linked(units[1]));
    EXPECT_EQ(blockOf(units[1])->freeUnit, units[0]);
    check();
    EXPECT_EQ(take(24), units[0]);
    EXPECT_EQ(take(24), units[2] + 24) << "then the old run, in order";
    EXPECT_EQ(take(24), units[2] + 48);
    EXPECT_TRUE(linked(units[1])) << "a list stays a list";
}

TEST_F(TvHeapBlock, AListHandsOutTheLastFreedFirst)
{
    const auto units = take(40, 50);
    for (int i : {3, 17, 8})
        give(units[i]);
    EXPECT_EQ(take(40), units[8]);
    EXPECT_EQ(take(40), units[17]);
    EXPECT_EQ(take(40), units[3]);
}

TEST_F(TvHeapBlock, AUnitFreedInAFullBlockIsAListOfOne)
{
    const auto units = take(64, 64);
    give(units[10]);
    EXPECT_TRUE(linked(units[0]));
    EXPECT_EQ(pool(units[0]).availBlocks, blockOf(units[0]));
    EXPECT_EQ(pool(units[0]).fullBlocks, nullptr);
    check();
    EXPECT_EQ(take(64), units[10]);
    EXPECT_EQ(blockOf(units[0])->freeUnit, nullptr);
}

TEST_F(TvHeapBlock, TheLastUnitFreedInAFullBlockIsARunOfOne)
{
    const auto units = take(64, 64);
    give(units[63]);
    EXPECT_FALSE(linked(units[0]));
    give(units[62]);
    EXPECT_FALSE(linked(units[0]));
    EXPECT_EQ(blockOf(units[0])->freeUnit, units[62]);
    check();
}

TEST_F(TvHeapBlock, ALinkedBlockThatFillsUpMayBecomeARunAgain)
{
    const auto units = take(64, 64);
    give(units[5]);
    EXPECT_TRUE(linked(units[0]));
    EXPECT_EQ(take(64), units[5]);
    give(units[63]);
    EXPECT_FALSE(linked(units[0]));
}

// 24 does not divide 4096: counted back from the block's end there is no unit.
TEST_F(TvHeapBlock, WhereUnitsDoNotFillTheBlockTheLastOneIsAListOfOne)
{
    const auto units = take(24, 170);
    give(units[169]);
    EXPECT_TRUE(linked(units[0]));
    check();
    give(units[0]);
    check();
}

TEST_F(TvHeapBlock, ThreadingTouchesNothingBehindTheUnits)
{
    const auto units = take(200, 3); // 20 units, 96 bytes are left over
    char* const rest = blockOf(units[0])->firstUnit() + 20 * 200;
    TvMemoryTools::open(rest, 96);
    std::fill(rest, rest + 96, '\x5A');
    give(units[0]);
    EXPECT_TRUE(linked(units[1]));
    EXPECT_EQ(std::count(rest, rest + 96, '\x5A'), 96);
}

TEST_F(TvHeapBlock, AnEmptyBlockGoesBackToItsPage)
{
    const auto units = take(64, 2);
    Page* const page = pageOf(units[0]);
    const int before = page->freeBlockCount;
    Block* const block = blockOf(units[0]);
    give(units[1]);
    EXPECT_EQ(page->freeBlockCount, before);
    give(units[0]);
    EXPECT_EQ(page->freeBlockCount, before + 1);
    EXPECT_EQ(page->freeBlocks, block);
    EXPECT_EQ(g_tvGlobalHeap.pools[26]->availBlocks, nullptr);
    EXPECT_EQ(block->poolIndex, 0);
}

TEST_F(TvHeapBlock, ABlockOfOneUnitComesAndGoesAsAWhole)
{
    char* const unit = take(4096);
    EXPECT_EQ(pool(unit).availBlocks, nullptr);
    EXPECT_EQ(pool(unit).fullBlocks, blockOf(unit));
    give(unit);
    EXPECT_EQ(g_tvGlobalHeap.pools[4]->fullBlocks, nullptr);
}

TEST_F(TvHeapBlock, BlocksFilledEarlierStandBehindOnTheLists)
{
    const auto units = take(2048, 6);
    const auto& lists = pool(units[0]);
    EXPECT_EQ(lists.fullBlocks, blockOf(units[4]));
    EXPECT_EQ(lists.fullBlocks->next, blockOf(units[2]));
    give(units[0]);
    give(units[2]);
    EXPECT_EQ(lists.availBlocks, blockOf(units[2]));
    EXPECT_EQ(lists.availBlocks->next, blockOf(units[0]));
    check();
}

TEST_F(TvHeapBlock, TheFifteenthBlockRecommitsARunOfSixteen)
{
    const auto units = take(4096, 14);
    Page* const page = pageOf(units[0]);
    EXPECT_EQ(g_tvGlobalHeap.m_freeBlockPages, nullptr);
    EXPECT_EQ(g_tvGlobalHeap.m_decommittedPages, page);
    char* const next = take(4096);
    EXPECT_EQ(blockOf(next)->id(), 16);
    EXPECT_EQ(page->freeBlockCount, 15);
    EXPECT_EQ(page->decommittedCount, 224);
    EXPECT_EQ(g_tvGlobalHeap.m_freeBlockPages, page);
    EXPECT_EQ(g_tvGlobalHeap.m_decommittedPages, nullptr);
    check();
}

TEST_F(TvHeapBlock, AFullPageIsOnNoList)
{
    const auto units = take(4096, 254);
    EXPECT_EQ(g_tvGlobalHeap.m_freeBlockPages, nullptr);
    EXPECT_EQ(g_tvGlobalHeap.m_decommittedPages, nullptr);
    EXPECT_EQ(blockOf(units[253])->id(), 255);
    check();
    char* const other = take(4096);
    EXPECT_NE(pageOf(other), pageOf(units[0]));
}

TEST_F(TvHeapBlock, SixteenFreeBlocksStayCommittedFurtherOnesDoNot)
{
    const auto units = take(4096, 254);
    Page* const page = pageOf(units[0]);
    for (int i = 0; i < 16; ++i)
        give(units[i]);
    EXPECT_EQ(page->freeBlockCount, 16);
    EXPECT_EQ(page->decommittedCount, 0);
    give(units[16]);
    give(units[17]);
    EXPECT_EQ(page->freeBlockCount, 16);
    EXPECT_EQ(page->decommittedCount, 2);
    EXPECT_EQ(page->decommittedBlocks, blockOf(units[17]));
    EXPECT_EQ(page->decommittedBlocks->next, blockOf(units[16]));
    check();
}

TEST_F(TvHeapBlock, ARecommittedRunIsConsecutive)
{
    const auto units = take(4096, 254);
    Page* const page = pageOf(units[0]);
    for (int i = 0; i < 16; ++i)
        give(units[i]);
    for (int i : {40, 102, 101, 100, 30}) // list: 30 100 101 102 40
        give(units[i]);
    for (int i = 0; i < 16; ++i)
        take(4096);
    EXPECT_EQ(g_tvGlobalHeap.m_decommittedPages, page);
    EXPECT_EQ(take(4096), units[30]) << "a run of one";
    EXPECT_EQ(take(4096), units[100]);
    EXPECT_EQ(page->freeBlockCount, 2);
    EXPECT_EQ(page->decommittedCount, 1);
    EXPECT_EQ(take(4096), units[101]);
    EXPECT_EQ(take(4096), units[102]);
    EXPECT_EQ(take(4096), units[40]);
    check();
}

TEST_F(TvHeapBlock, ABlockKeepsItsContentUntilItsAccessGoes)
{
    const auto units = take(4096, 254);
    for (int i = 0; i < 17; ++i)
        give(units[i]);
    EXPECT_TRUE(TvHeapInternals::isPending(units[16]));
    EXPECT_EQ(TvHeapInternals::pendingBlocks(), 1);
    for (int i = 0; i < 17; ++i)
        take(4096);
    EXPECT_FALSE(TvHeapInternals::isPending(units[16]));
    EXPECT_EQ(TvHeapInternals::pendingBlocks(), 0);
}

TEST_F(TvHeapBlock, WhatIsPendingNeverExceedsOneMiB)
{
    const auto units = take(4096, 254 * 4);
    int most = 0;
    for (int page = 0; page < 4; ++page) {
        for (int i = 0; i < 253; ++i) { // one block of each page stays in use
            give(units[page * 254 + i]);
            most = std::max(most, TvHeapInternals::pendingBlocks());
        }
    }
    EXPECT_EQ(most, 256);
    check();
    // The withdrawn ones come back too, usable.
    for (char* unit : take(4096, 253 * 4))
        unit[0] = unit[4095] = 1;
    check();
}

TEST_F(TvHeapBlock, OfTheDecommittedBlocksThePendingOnesHaveAccess)
{
    const auto units = take(4096, 254 * 4);
    std::mt19937 random(7);
    for (int wave = 0; wave < 8; ++wave) {
        for (char* unit : units)
            if (random() % 8 != 0 && std::count(m_units.begin(), m_units.end(), unit) != 0)
                give(unit);
        const std::vector<Mapping> mappings = mappingsOfTheProcess();
        for (int i = 0; i < 254 * 4; i += 254)
            for (const Block* block = pageOf(units[i])->decommittedBlocks; block; block = block->next)
                ASSERT_EQ(isReadable(mappings, block->firstUnit()),
                          TvHeapInternals::isPending(block->firstUnit()));
        for (std::size_t some = random() % 700; some != 0; --some)
            take(4096)[4095] = 1;
        check();
    }
}

TEST_F(TvHeapBlock, WithdrawnMemoryCannotBeTouched)
{
    const auto units = take(4096, 254 * 2);
    for (int page = 0; page < 2; ++page)
        for (int i = 0; i < 253; ++i)
            give(units[page * 254 + i]);
    ASSERT_LT(TvHeapInternals::pendingBlocks(), 2 * 237);
    EXPECT_DEATH(static_cast<volatile char*>(units[16])[0] = 1, "");
}

TEST_F(TvHeapBlock, TheLastBlockOfAPageReleasesItWhenAnotherPageIsDecommitted)
{
    const auto units = take(4096, 254 + 14);
    Page* const page = pageOf(units[0]);
    ASSERT_EQ(g_tvGlobalHeap.m_decommittedPages, pageOf(units[254]));
    const short id = TvHeapConfigurator::sGetPageId(page);
    for (int i = 0; i < 253; ++i)
        give(units[i]);
    EXPECT_TRUE(g_tvGlobalHeap.isResident(page));
    give(units[253]);
    EXPECT_FALSE(g_tvGlobalHeap.isResident(page));
    EXPECT_EQ(g_tvGlobalHeap.m_pageFlags[id], 2);
    EXPECT_EQ(g_tvGlobalHeap.m_searchHint, id);
    check();
    EXPECT_EQ(tvAllocPage(), static_cast<void*>(page)) << "the search finds it again";
    tvFreePage(page);
}

TEST_F(TvHeapBlock, TheLastBlockOfAPageReleasesItWhenAnotherPageIsInFront)
{
    const auto units = take(4096, 254 + 254);
    for (int i = 0; i < 253; ++i)
        give(units[i]);
    give(units[254]); // the second page goes to the front
    give(units[253]);
    EXPECT_FALSE(g_tvGlobalHeap.isResident(units[0]));
    check();
}

// A page in front counts as the only one as long as no page is decommitted.
TEST_F(TvHeapBlock, ThePageInFrontStaysThoughThereIsAnother)
{
    const auto units = take(4096, 255);
    Page* const page = pageOf(units[0]);
    ASSERT_NE(pageOf(units[254]), page);
    for (int i = 0; i < 254; ++i)
        give(units[i]);
    EXPECT_TRUE(g_tvGlobalHeap.isResident(page));
    EXPECT_EQ(page->freeBlockCount, 16);
    EXPECT_EQ(page->decommittedCount, 238);
    check();
}

TEST_F(TvHeapBlock, TheOnlyPageStaysWithItsBlocksDecommitted)
{
    const auto units = take(4096, 254);
    Page* const page = pageOf(units[0]);
    for (char* unit : units)
        give(unit);
    EXPECT_TRUE(g_tvGlobalHeap.isResident(page));
    EXPECT_EQ(page->freeBlockCount, 16);
    EXPECT_EQ(page->decommittedCount, 238);
    EXPECT_EQ(g_tvGlobalHeap.m_freeBlockPages, page);
    check();
}

// A new page starts with 14 committed free blocks; the only one in use comes back as the
// fourteenth.
TEST_F(TvHeapBlock, APageWithFewCommittedFreeBlocksStaysEvenWithOthers)
{
    take(4096, 254);
    char* const elsewhere = take(4096);
    Page* const fresh = pageOf(elsewhere);
    give(elsewhere);
    EXPECT_TRUE(g_tvGlobalHeap.isResident(fresh));
    EXPECT_EQ(fresh->freeBlockCount, 14);
}

TEST_F(TvHeapBlock, UnitsAreAlignedToEightBytes)
{
    for (std::size_t size = 1; size <= 4096; size += 7) {
        void* const ptr = _tvMalloc(size);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(ptr) % 8, 0u) << size;
        _tvFree(ptr);
    }
}

} // namespace

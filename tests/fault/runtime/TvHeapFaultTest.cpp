#include "EachTestAlone.h"
#include "FailMapping.h"
#include "FailNth.h"
#include "PooledHeap.h"
#include "runtime/TvHeapCheck.h"
#include "runtime/TvHeapPending.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace {

constexpr long kTries = 6; // calls of mprotect for one commit

// Fails nothing, counts the calls of mprotect.
class ProtectCalls : public FailMapping {
public:
    ProtectCalls() : FailMapping(FailMapping::Protect, LONG_MAX, 1) {}
};

class TvHeapFault : public ::testing::Test {
protected:
    void SetUp() override
    {
        if (!runPageSearchDown())
            GTEST_SKIP() << "no reserved range in this process";
    }
    void TearDown() override
    {
        for (void* ptr : m_taken)
            _tvFree(ptr);
        EXPECT_STREQ(TvHeapInternals::checkHeap(g_tvGlobalHeap), nullptr);
    }
    void* take(std::size_t size)
    {
        m_taken.push_back(nullptr);
        return m_taken.back() = _tvMalloc(size);
    }
    void fillPage()
    {
        for (int i = 0; i < 254; ++i)
            take(4096);
    }
    std::vector<void*> m_taken;
};

TEST_F(TvHeapFault, FiveFailedTriesOfACommitDoNoHarm)
{
    fillPage();
    m_taken.reserve(300);
    FailMapping fail(FailMapping::Protect, 1, kTries - 1);
    void* const ptr = take(4096);
    EXPECT_TRUE(fail.fired());
    EXPECT_EQ(fail.calls(), kTries);
    EXPECT_TRUE(g_tvGlobalHeap.isResident(ptr));
}

TEST_F(TvHeapFault, AFailedCommitOfANewPageKeepsItsIdAndServesFromMalloc)
{
    fillPage();
    const short hint = g_tvGlobalHeap.m_searchHint;
    void* ptr = nullptr;
    {
        FailMapping fail(FailMapping::Protect, 1, kTries);
        ptr = take(4096);
        EXPECT_EQ(fail.calls(), kTries);
    }
    ASSERT_NE(ptr, nullptr);
    EXPECT_EQ(g_tvGlobalHeap.m_pageFlags[hint], 3);
    EXPECT_EQ(g_tvGlobalHeap.m_searchHint, hint - 1);
    std::memset(ptr, 1, 4096);
    EXPECT_EQ(TvHeapConfigurator::sGetPageId(take(4096)), hint - 1);
}

TEST_F(TvHeapFault, AServedRequestLeavesErrnoAlone)
{
    fillPage();
    m_taken.reserve(300);
    FailMapping fail(FailMapping::Protect, 1, 2 * kTries - 1);
    errno = 4321;
    take(4096); // from malloc
    take(4096); // from a page, at the last try
    EXPECT_EQ(errno, 4321);
    EXPECT_EQ(fail.calls(), 2 * kTries);
}

TEST_F(TvHeapFault, WithdrawingAccessLeavesErrnoAlone)
{
    for (int i = 0; i < 600; ++i)
        take(4096);
    FailMapping fail(FailMapping::Protect, 1, LONG_MAX);
    errno = 4321;
    for (void* ptr : m_taken)
        _tvFree(ptr);
    m_taken.clear();
    EXPECT_EQ(errno, 4321);
    EXPECT_TRUE(fail.fired());
}

TEST_F(TvHeapFault, AFailedCommitOfAWholePageServesFromMalloc)
{
    const short hint = g_tvGlobalHeap.m_searchHint;
    FailMapping fail(FailMapping::Protect, 1, kTries);
    void* const page = tvAllocPage();
    m_taken.push_back(page);
    ASSERT_NE(page, nullptr);
    EXPECT_EQ(g_tvGlobalHeap.m_pageFlags[hint], 3);
    EXPECT_EQ(g_tvGlobalHeap.pageHeaps[hint].pageId, -1);
    EXPECT_EQ(g_tvGlobalHeap.pagePools[256]->fullPages, nullptr);
}

TEST_F(TvHeapFault, AFailedRecommitLeavesThePageOnTheDecommittedList)
{
    for (int i = 0; i < 14; ++i)
        take(4096);
    auto* const page = g_tvGlobalHeap.m_decommittedPages;
    ASSERT_NE(page, nullptr);
    {
        FailMapping fail(FailMapping::Protect, 1, kTries);
        EXPECT_NE(take(4096), nullptr);
        EXPECT_TRUE(fail.fired());
    }
    EXPECT_EQ(g_tvGlobalHeap.m_decommittedPages, page);
    EXPECT_EQ(g_tvGlobalHeap.m_freeBlockPages, nullptr);
    EXPECT_EQ(page->decommittedCount, 240);
    EXPECT_STREQ(TvHeapInternals::checkHeap(g_tvGlobalHeap), nullptr);
    EXPECT_TRUE(g_tvGlobalHeap.isResident(take(4096))) << "the next request tries again";
}

TEST_F(TvHeapFault, WithoutPageAndMallocARequestIsNull)
{
    fillPage();
    FailMapping commit(FailMapping::Protect, 1, kTries);
    FailNth memory(FailNth::Malloc, 1);
    void* const ptr = _tvMalloc(4096);
    EXPECT_EQ(ptr, nullptr);
}

TEST_F(TvHeapFault, AnUnpooledRequestIsNull)
{
    HeapBalance balance;
    FailNth fail(FailNth::Malloc, 1, FailNth::FromThenOn);
    EXPECT_EQ(_tvMalloc(300), nullptr);
    EXPECT_EQ(tvAllocPageHeap(5000), nullptr);
    EXPECT_EQ(_tvRealloc(nullptr, 20), nullptr);
}

// The heap's own functions take what malloc returned, and hand it on.
TEST_F(TvHeapFault, AMallocPointerIsFreedByMalloc)
{
    HeapBalance balance;
    g_tvGlobalHeap.freeHeap(std::malloc(100));
    g_tvGlobalHeap.freeHeapPage(std::malloc(100));
    _tvFree(std::malloc(100));
    tvFreePage(std::malloc(0x100000));
    EXPECT_EQ(pooledUnitsInUse(), 0);
}

TEST_F(TvHeapFault, AMallocPointerIsResizedByMalloc)
{
    HeapBalance balance;
    void* const moved = g_tvGlobalHeap.reallocHeap(std::malloc(100), 20);
    EXPECT_FALSE(g_tvGlobalHeap.isResident(moved));
    std::free(moved);
}

TEST_F(TvHeapFault, AResizeThatFailsKeepsThePooledUnit)
{
    char* const ptr = static_cast<char*>(take(20));
    std::strcpy(ptr, "still here");
    FailNth fail(FailNth::Malloc, 1);
    EXPECT_EQ(_tvRealloc(ptr, 300), nullptr);
    EXPECT_STREQ(ptr, "still here");
}

TEST_F(TvHeapFault, ADuplicateWithoutMemoryIsNull)
{
    const std::wstring text(2000, L'x');
    FailNth fail(FailNth::Malloc, 1);
    EXPECT_EQ(_tvStrdup(text.c_str()), nullptr);
}

// Whatever mapping call fails, from the first to the last that the traffic makes.
TEST_F(TvHeapFault, AnyMappingCallMayFail)
{
    for (long nth = 1; nth < 400; nth += nth < 40 ? 1 : 7) {
        std::vector<void*> taken;
        taken.reserve(700);
        bool fired = false;
        {
            FailMapping fail(FailMapping::Protect, nth, kTries);
            for (int i = 0; i < 600; ++i)
                taken.push_back(_tvMalloc(i % 3 == 0 ? 2048 : 4096));
            taken.push_back(tvAllocPage());
            for (void* ptr : taken)
                _tvFree(ptr);
            fired = fail.fired();
        }
        ASSERT_STREQ(TvHeapInternals::checkHeap(g_tvGlobalHeap), nullptr) << nth;
        if (!fired)
            break;
    }
    EXPECT_EQ(pooledUnitsInUse(), 0);
}

TEST_F(TvHeapFault, UnitsOfAnOpenBlockNeedNoSystemCall)
{
    const void* const block = take(40);
    ProtectCalls protect;
    std::vector<void*> units(101);
    for (int round = 0; round < 100; ++round) {
        for (void*& unit : units)
            unit = _tvMalloc(40);
        for (void* unit : units)
            _tvFree(unit);
    }
    EXPECT_EQ(protect.calls(), 0);
    EXPECT_TRUE(g_tvGlobalHeap.isResident(block));
}

TEST_F(TvHeapFault, BlocksThatComeBackSoonNeedNoSystemCall)
{
    fillPage();
    std::vector<void*> blocks(m_taken.begin(), m_taken.begin() + 200);
    ProtectCalls protect;
    for (int round = 0; round < 5; ++round) {
        for (void* block : blocks)
            _tvFree(block);
        EXPECT_GT(TvHeapInternals::pendingBlocks(), 100);
        for (void*& block : blocks)
            block = _tvMalloc(4096);
    }
    EXPECT_EQ(protect.calls(), 0);
    std::copy(blocks.begin(), blocks.end(), m_taken.begin());
}

TEST_F(TvHeapFault, NeighbouringBlocksLoseTheirAccessInOneCall)
{
    for (int page = 0; page < 2; ++page)
        fillPage();
    ProtectCalls protect;
    for (std::size_t page = 0; page < 2; ++page)
        for (std::size_t i = 0; i < 16 + 128; ++i) // the first 16 of each page stay committed
            _tvFree(m_taken[page * 254 + i]);
    EXPECT_EQ(TvHeapInternals::pendingBlocks(), 256);
    EXPECT_EQ(protect.calls(), 0);
    _tvFree(m_taken[16 + 128]);
    EXPECT_EQ(TvHeapInternals::pendingBlocks(), 128 + 1) << "half of them may stay";
    EXPECT_EQ(protect.calls(), 1) << "of one page's run";
    m_taken.erase(m_taken.begin() + 254, m_taken.begin() + 254 + 16 + 128);
    m_taken.erase(m_taken.begin(), m_taken.begin() + 16 + 129);
}

// 14 blocks with the page, then 16 and up to 128 more a call.
TEST_F(TvHeapFault, BlocksGetAccessTogetherWithTheirNeighbours)
{
    fillPage();
    ProtectCalls protect;
    fillPage();
    EXPECT_EQ(protect.calls(), 1 + 2);
    EXPECT_EQ(TvHeapInternals::pendingBlocks(), 0);
}

TEST_F(TvHeapFault, LongRunsLoseTheirAccessFirst)
{
    fillPage();
    const std::vector<void*> first = m_taken;
    fillPage();
    fillPage();
    std::vector<void*> kept;
    for (std::size_t i = 0; i < m_taken.size(); ++i) { // every other block of the first page
        if (i % 254 == 253 || (i < 254 && i % 2 == 1))
            kept.push_back(m_taken[i]);
        else
            _tvFree(m_taken[i]);
    }
    m_taken = kept;
    EXPECT_TRUE(TvHeapInternals::isPending(first[40]));
    EXPECT_LE(TvHeapInternals::pendingBlocks(), 256);
}

TEST_F(TvHeapFault, TheLongestRunLosesItsAccessInOneCallAndTheOthersStay)
{
    for (int page = 0; page < 2; ++page)
        fillPage();
    const std::vector<void*> blocks = m_taken;
    ProtectCalls protect;
    for (std::size_t i = 0; i < 16 + 106; ++i) // the first 16 of each page stay committed
        _tvFree(blocks[i]);
    for (std::size_t i = 0; i < 16 + 150; ++i)
        _tvFree(blocks[254 + i]);
    EXPECT_EQ(TvHeapInternals::pendingBlocks(), 256);
    _tvFree(blocks[253]);
    EXPECT_EQ(protect.calls(), 1);
    EXPECT_EQ(TvHeapInternals::pendingBlocks(), 106 + 1);
    EXPECT_TRUE(TvHeapInternals::isPending(blocks[16]));
    EXPECT_TRUE(TvHeapInternals::isWithdrawn(blocks[254 + 16]));
    EXPECT_TRUE(TvHeapInternals::isWithdrawn(blocks[254 + 16 + 149]));
    m_taken.assign(blocks.begin() + 254 + 16 + 150, blocks.end());
    m_taken.insert(m_taken.end(), blocks.begin() + 16 + 106, blocks.begin() + 253);
}

TEST(TvHeapReservation, ACommitBeyondItMakesNoSystemCall)
{
    if (TvHeapConfigurator::pStartAddress == nullptr)
        GTEST_SKIP() << "no reserved range in this process";
    ASSERT_GT(g_tvGlobalHeap.m_searchHint, 8192);
    const short hint = g_tvGlobalHeap.m_searchHint;
    ProtectCalls protect;
    _tvFree(_tvMalloc(4096));
    tvFreePage(tvAllocPage());
    EXPECT_EQ(protect.calls(), 0);
    EXPECT_EQ(g_tvGlobalHeap.m_searchHint, hint - 2) << "both took part in the search";
}

TEST(TvHeapReservation, ACandidateThatCannotBeMappedIsPassedOver)
{
    FailMapping fail(FailMapping::Map, 1, 100);
    EXPECT_EQ(TvHeapConfigurator::tvMemoryInitialize(0x200000000), nullptr);
}

TEST(TvLock, WithoutMemoryThereIsNoLock)
{
    FailNth fail(FailNth::New, 1, FailNth::FromThenOn);
    EXPECT_EQ(createTvLock(), nullptr);
    TvLocker locker;
}

} // namespace

// The order matters here: each test goes on where the one before stopped.
#include "PooledHeap.h"
#include "runtime/TvHeapCheck.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace {

constexpr int kFirstId = 16384;
constexpr int kLastReserved = 8191;
constexpr int kFailing = kFirstId - kLastReserved;

class TvHeapPageSearch : public ::testing::Test {
protected:
    void SetUp() override
    {
        if (TvHeapConfigurator::pStartAddress == nullptr)
            GTEST_SKIP() << "no reserved range in this process";
    }
};

TEST_F(TvHeapPageSearch, HintStartsBeyondTheReservation) { EXPECT_EQ(g_tvGlobalHeap.m_searchHint, kFirstId); }

TEST_F(TvHeapPageSearch, AFailedRequestMarksItsIdAndLowersTheHint)
{
    void* const ptr = g_tvGlobalHeap.allocHeap(8);
    EXPECT_FALSE(g_tvGlobalHeap.isResident(ptr));
    EXPECT_EQ(g_tvGlobalHeap.m_searchHint, kFirstId - 1);
    EXPECT_EQ(g_tvGlobalHeap.m_pageFlags[kFirstId], 3);
    g_tvGlobalHeap.freeHeap(ptr);
    EXPECT_EQ(g_tvGlobalHeap.m_pageFlags[kFirstId], 3);
}

TEST_F(TvHeapPageSearch, AWholePageRequestTakesPartInTheSearch)
{
    void* const ptr = tvAllocPage();
    EXPECT_FALSE(g_tvGlobalHeap.isResident(ptr));
    EXPECT_EQ(g_tvGlobalHeap.m_searchHint, kFirstId - 2);
    tvFreePage(ptr);
}

TEST_F(TvHeapPageSearch, NothingBeyondTheReservationIsResident)
{
    char* const start = static_cast<char*>(TvHeapConfigurator::pStartAddress);
    ASSERT_EQ(g_tvGlobalHeap.m_pageFlags[kFirstId], 3);
    EXPECT_FALSE(g_tvGlobalHeap.isResident(start + (std::size_t(kFirstId) << 20)));
}

TEST_F(TvHeapPageSearch, Request8194IsTheFirstFromThePools)
{
    std::vector<void*> early;
    for (int i = 2; i < kFailing; ++i) {
        early.push_back(g_tvGlobalHeap.allocHeap(100));
        ASSERT_FALSE(g_tvGlobalHeap.isResident(early.back())) << "request " << i + 1;
    }
    void* const pooled = g_tvGlobalHeap.allocHeap(100);
    ASSERT_TRUE(g_tvGlobalHeap.isResident(pooled));
    EXPECT_EQ(TvHeapConfigurator::sGetPageId(pooled), kLastReserved);
    EXPECT_EQ(g_tvGlobalHeap.m_searchHint, kLastReserved - 1);
    EXPECT_EQ(TvHeapInternals::checkHeap(g_tvGlobalHeap), nullptr);
    g_tvGlobalHeap.freeHeap(pooled);
    for (void* ptr : early)
        g_tvGlobalHeap.freeHeap(ptr);
}

TEST_F(TvHeapPageSearch, AReleasedIdRaisesTheHint)
{
    void* const first = tvAllocPage();
    void* const second = tvAllocPage();
    const short firstId = TvHeapConfigurator::sGetPageId(first);
    EXPECT_EQ(TvHeapConfigurator::sGetPageId(second), firstId - 1);
    EXPECT_EQ(g_tvGlobalHeap.m_searchHint, firstId - 2);

    tvFreePage(first);
    EXPECT_EQ(g_tvGlobalHeap.m_searchHint, firstId);
    EXPECT_EQ(g_tvGlobalHeap.m_pageFlags[firstId], 2);
    EXPECT_FALSE(g_tvGlobalHeap.isResident(first));

    tvFreePage(second);
    EXPECT_EQ(g_tvGlobalHeap.m_searchHint, firstId) << "a lower id does not lower it";
    void* const again = tvAllocPage();
    EXPECT_EQ(again, first);
    tvFreePage(again);
}

// Flags alone: an id that is taken by hand stands in for 8191 pages of memory.
TEST_F(TvHeapPageSearch, WithoutAFreeIdBelowTheHintTheSearchStartsFromTheTop)
{
    g_tvGlobalHeap.m_searchHint = 0;
    void* const ptr = tvAllocPage(); // id 32767, beyond the reservation
    EXPECT_FALSE(g_tvGlobalHeap.isResident(ptr));
    EXPECT_EQ(g_tvGlobalHeap.m_pageFlags[32767], 3);
    EXPECT_EQ(g_tvGlobalHeap.m_searchHint, 32766);
    tvFreePage(ptr);
}

TEST_F(TvHeapPageSearch, IdZeroIsNeverTaken)
{
    std::vector<unsigned char> kept(std::begin(g_tvGlobalHeap.m_pageFlags),
                                    std::end(g_tvGlobalHeap.m_pageFlags));
    for (int id = 1; id < 32768; ++id)
        g_tvGlobalHeap.m_pageFlags[id] = 3;
    g_tvGlobalHeap.m_pageFlags[1] = 2;
    g_tvGlobalHeap.m_searchHint = 5;

    void* const last = tvAllocPage();
    EXPECT_EQ(TvHeapConfigurator::sGetPageId(last), 1);
    EXPECT_EQ(g_tvGlobalHeap.m_searchHint, 0);
    void* const none = tvAllocPage();
    EXPECT_NE(none, nullptr);
    EXPECT_FALSE(g_tvGlobalHeap.isResident(none));
    EXPECT_EQ(g_tvGlobalHeap.m_pageFlags[0], 0);

    tvFreePage(none);
    tvFreePage(last);
    std::copy(kept.begin(), kept.end(), g_tvGlobalHeap.m_pageFlags);
}

} // namespace

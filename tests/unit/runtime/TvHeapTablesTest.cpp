#include "TvHeap.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <string>
#include <vector>

#include <sys/mman.h>

namespace {

using Heap = TvHeap<34, TvPoolConfigurator<34>, TvHeapConfigurator, TvHeapDbgDumper>;
using Sizes = TvPoolConfigurator<34>;

TEST(TvHeapLayout, BlockDescriptorIs32Bytes)
{
    EXPECT_EQ(sizeof(Heap::Block), 32u);
    EXPECT_EQ(offsetof(Heap::Block, next), 0u);
    EXPECT_EQ(offsetof(Heap::Block, prev), 8u);
    EXPECT_EQ(offsetof(Heap::Block, freeUnit), 16u);
    EXPECT_EQ(offsetof(Heap::Block, freeCount), 24u);
    EXPECT_EQ(offsetof(Heap::Block, poolIndex), 28u);
    EXPECT_EQ(offsetof(Heap::Block, flags), 30u);
}

TEST(TvHeapLayout, PageHeaderFitsDescriptorZero)
{
    EXPECT_EQ(sizeof(Heap::Page), 32u);
    EXPECT_EQ(offsetof(Heap::Page, freeBlocks), 0u);
    EXPECT_EQ(offsetof(Heap::Page, decommittedBlocks), 8u);
    EXPECT_EQ(offsetof(Heap::Page, nextPageId), 16u);
    EXPECT_EQ(offsetof(Heap::Page, prevPageId), 20u);
    EXPECT_EQ(offsetof(Heap::Page, freeBlockCount), 24u);
    EXPECT_EQ(offsetof(Heap::Page, decommittedCount), 28u);
}

TEST(TvHeapLayout, PageRecord)
{
    EXPECT_EQ(sizeof(Heap::PageHeap), 32u);
    EXPECT_EQ(offsetof(Heap::PageHeap, poolIndex), 0u);
    EXPECT_EQ(offsetof(Heap::PageHeap, flags), 2u);
    EXPECT_EQ(offsetof(Heap::PageHeap, pageId), 4u);
    EXPECT_EQ(offsetof(Heap::PageHeap, freeCount), 6u);
    EXPECT_EQ(offsetof(Heap::PageHeap, freeUnit), 8u);
    EXPECT_EQ(offsetof(Heap::PageHeap, next), 16u);
    EXPECT_EQ(offsetof(Heap::PageHeap, prev), 24u);
}

TEST(TvHeapLayout, PoolRecords)
{
    EXPECT_EQ(sizeof(Heap::Pool), 40u);
    EXPECT_EQ(offsetof(Heap::Pool, lock), 0u);
    EXPECT_EQ(offsetof(Heap::Pool, unitSize), 8u);
    EXPECT_EQ(offsetof(Heap::Pool, index), 16u);
    EXPECT_EQ(offsetof(Heap::Pool, unitsPerBlock), 20u);
    EXPECT_EQ(offsetof(Heap::Pool, availBlocks), 24u);
    EXPECT_EQ(offsetof(Heap::Pool, fullBlocks), 32u);
}

TEST(TvHeapLayout, PagePoolRecords)
{
    EXPECT_EQ(sizeof(Heap::PagePool), 40u);
    EXPECT_EQ(offsetof(Heap::PagePool, lock), 0u);
    EXPECT_EQ(offsetof(Heap::PagePool, unitSize), 8u);
    EXPECT_EQ(offsetof(Heap::PagePool, index), 16u);
    EXPECT_EQ(offsetof(Heap::PagePool, unitsPerPage), 20u);
    EXPECT_EQ(offsetof(Heap::PagePool, availPages), 24u);
    EXPECT_EQ(offsetof(Heap::PagePool, fullPages), 32u);
}

TEST(TvHeapLayout, HeapFieldsInOrder)
{
    EXPECT_EQ(offsetof(Heap, pools), 24u);
    EXPECT_EQ(offsetof(Heap, m_freeBlockPages), 24u + 35 * 8);
    EXPECT_EQ(offsetof(Heap, m_decommittedPages), 24u + 36 * 8);
    EXPECT_EQ(offsetof(Heap, pagePools), 24u + 37 * 8);
    EXPECT_EQ(offsetof(Heap, pageHeaps), 24u + (37 + 257) * 8);
    const std::size_t afterRecords = 24u + (37 + 257) * 8 + 32768 * 32;
    EXPECT_EQ(offsetof(Heap, m_searchHint), afterRecords);
    EXPECT_EQ(offsetof(Heap, m_pageFlags), afterRecords + 2);
    EXPECT_EQ(offsetof(Heap, m_freeDisabled), afterRecords + 2 + 32768);
}

TEST(TvHeapTables, UnitSizes)
{
    const std::vector<short> expected = {0,   512, 1024, 2048, 4096, 256, 240, 224, 208, 200, 192, 184,
                                         176, 168, 160,  152,  144,  136, 128, 120, 112, 104, 96,  88,
                                         80,  72,  64,   56,   48,   40,  32,  24,  16,  8,   0};
    EXPECT_EQ(std::vector<short>(std::begin(Sizes::s_unitSizeOfPools), std::end(Sizes::s_unitSizeOfPools)),
              expected);
}

TEST(TvHeapTables, EachSmallSizeGetsTheSmallestUnitThatHoldsIt)
{
    EXPECT_EQ(Sizes::s_poolIndexOfSize[0], 0);
    for (int size = 1; size <= 256; ++size) {
        int best = 0;
        for (int i = 5; i <= 33; ++i)
            if (Sizes::s_unitSizeOfPools[i] >= size)
                best = i;
        EXPECT_EQ(Sizes::s_poolIndexOfSize[size], best) << size;
    }
}

struct PoolRow {
    int index;
    std::uint64_t unitSize;
    std::int32_t unitsPerBlock;
};

const PoolRow kPoolRows[] = {
    {1, 512, 8},   {2, 1024, 4},  {3, 2048, 2},  {4, 4096, 1},  {5, 256, 16},  {6, 240, 17},  {7, 224, 18},
    {8, 208, 19},  {9, 200, 20},  {10, 192, 21}, {11, 184, 22}, {12, 176, 23}, {13, 168, 24}, {14, 160, 25},
    {15, 152, 26}, {16, 144, 28}, {17, 136, 30}, {18, 128, 32}, {19, 120, 34}, {20, 112, 36}, {21, 104, 39},
    {22, 96, 42},  {23, 88, 46},  {24, 80, 51},  {25, 72, 56},  {26, 64, 64},  {27, 56, 73},  {28, 48, 85},
    {29, 40, 102}, {30, 32, 128}, {31, 24, 170}, {32, 16, 256}, {33, 8, 512},  {34, 0, 0}, // serves nothing
};

class TvHeapPool : public ::testing::TestWithParam<PoolRow> {};

TEST_P(TvHeapPool, DescribesItsUnits)
{
    const Heap::Pool* const pool = g_tvGlobalHeap.pools[GetParam().index];
    ASSERT_NE(pool, nullptr);
    EXPECT_EQ(pool->unitSize, GetParam().unitSize);
    EXPECT_EQ(pool->index, GetParam().index);
    EXPECT_EQ(pool->unitsPerBlock, GetParam().unitsPerBlock);
}

INSTANTIATE_TEST_SUITE_P(All, TvHeapPool, ::testing::ValuesIn(kPoolRows),
                         [](const auto& test) { return std::to_string(test.param.index); });

TEST(TvHeapPools, ThereIsNoneOfIndexZero) { EXPECT_EQ(g_tvGlobalHeap.pools[0], nullptr); }

TEST(TvHeapPools, TheLastOneHasNoBlocks)
{
    EXPECT_EQ(g_tvGlobalHeap.pools[34]->availBlocks, nullptr);
    EXPECT_EQ(g_tvGlobalHeap.pools[34]->fullBlocks, nullptr);
}

TEST(TvHeapConfigurator, PageIdsCountFromTheRangeStart)
{
    char* const start = static_cast<char*>(TvHeapConfigurator::pStartAddress);
    EXPECT_EQ(TvHeapConfigurator::mOffSetId, 0);
    EXPECT_EQ(TvHeapConfigurator::sGetPageId(start), 0);
    EXPECT_EQ(TvHeapConfigurator::sGetPageId(start + 0xFFFFF), 0);
    EXPECT_EQ(TvHeapConfigurator::sGetPageId(start + 0x100000), 1);
    EXPECT_EQ(TvHeapConfigurator::sGetPageId(start + 0x1FFFFFFFF), 8191);
    EXPECT_EQ(TvHeapConfigurator::sGetPageId(start + 0x7FFFFFFFF), 32767);
}

TEST(TvHeapConfigurator, PageAddressOfAnId)
{
    char* const start = static_cast<char*>(TvHeapConfigurator::pStartAddress);
    EXPECT_EQ(TvHeapConfigurator::sGetPageAddress(short(0)), nullptr);
    EXPECT_EQ(TvHeapConfigurator::sGetPageAddress(short(1)), start + 0x100000);
    EXPECT_EQ(TvHeapConfigurator::sGetPageAddress(short(32767)), start + 0x7FFF00000);
}

TEST(TvHeapConfigurator, PageAndBlockOfAnAddress)
{
    const auto at = [](std::uintptr_t a) { return reinterpret_cast<void*>(a); };
    EXPECT_EQ(TvHeapConfigurator::sGetPageAddress(at(0x10123FFFF0)), at(0x1012300000));
    EXPECT_EQ(TvHeapConfigurator::sGetBlockOffset(at(0x1012300FFF)), 0u);
    EXPECT_EQ(TvHeapConfigurator::sGetBlockOffset(at(0x1012301000)), 32u);
    EXPECT_EQ(TvHeapConfigurator::sGetBlockOffset(at(0x10123FFFFF)), 255u * 32);
    EXPECT_EQ(TvHeapConfigurator::sGetBlockAddress(at(0x10123FFFFF)), at(0x1012300000 + 255 * 32));
}

TEST(TvHeapConfigurator, RangeTestCovers32GiB)
{
    char* const start = static_cast<char*>(TvHeapConfigurator::pStartAddress);
    EXPECT_FALSE(TvHeapConfigurator::sIsOutofHeapRange(start));
    EXPECT_FALSE(TvHeapConfigurator::sIsOutofHeapRange(start + 0x7FFFFFFFF));
    EXPECT_TRUE(TvHeapConfigurator::sIsOutofHeapRange(start + 0x800000000));
    EXPECT_TRUE(TvHeapConfigurator::sIsOutofHeapRange(nullptr) || start == nullptr);
}

TEST(TvHeapConfigurator, AnAddressBelowTheRangeIsOutside)
{
    if (TvHeapConfigurator::pStartAddress == nullptr)
        GTEST_SKIP();
    EXPECT_TRUE(
        TvHeapConfigurator::sIsOutofHeapRange(static_cast<char*>(TvHeapConfigurator::pStartAddress) - 1));
}

TEST(TvHeapConfigurator, OnlyExactMultiplesHaveAPagePool)
{
    EXPECT_EQ(TvHeapConfigurator::sGetPagePoolIndex(4096), 1u);
    EXPECT_EQ(TvHeapConfigurator::sGetPagePoolIndex(4095), 0u);
    EXPECT_EQ(TvHeapConfigurator::sGetPagePoolIndex(4097), 0u);
    EXPECT_EQ(TvHeapConfigurator::sGetPagePoolIndex(0x100000), 256u);
    EXPECT_EQ(TvHeapConfigurator::sGetSizeOfPagePool(256), 0x100000u);
}

TEST(TvHeapConfigurator, EveryPageMayBeTakenButTheFirst)
{
    std::vector<unsigned char> flags(32768, 9);
    TvHeapConfigurator::sInitPageFlags(flags.data());
    EXPECT_EQ(flags[0], 0);
    EXPECT_EQ(std::vector<unsigned char>(flags.begin() + 1, flags.end()),
              std::vector<unsigned char>(32767, 2));
}

TEST(TvHeapConfigurator, CommittedMemoryKeepsItsContentWithoutAccess)
{
    const int flags = MAP_PRIVATE | MAP_ANONYMOUS;
    void* const memory = TvHeapConfigurator::tvMemoryReserve(nullptr, 8192, PROT_NONE, flags);
    ASSERT_NE(memory, nullptr);
    ASSERT_EQ(TvHeapConfigurator::tvMemoryCommit(memory, 8192), memory);
    std::memset(memory, 7, 8192);
    EXPECT_TRUE(TvHeapConfigurator::tvMemoryDeCommit(memory, 4096));
    EXPECT_DEATH(static_cast<volatile char*>(memory)[0] = 1, "");
    ASSERT_EQ(TvHeapConfigurator::tvMemoryCommit(memory, 4096), memory);
    EXPECT_EQ(static_cast<char*>(memory)[4095], 7);
    EXPECT_TRUE(TvHeapConfigurator::tvMemoryRelease(memory, 8192));
}

TEST(TvHeapConfigurator, ReserveAnswersNullWhenTheKernelRefuses)
{
    EXPECT_EQ(TvHeapConfigurator::tvMemoryReserve(nullptr, 0, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS),
              nullptr);
}

TEST(TvHeapConfigurator, CommitOfUnmappedMemoryIsNull)
{
    const int flags = MAP_PRIVATE | MAP_ANONYMOUS;
    void* const memory = TvHeapConfigurator::tvMemoryReserve(nullptr, 4096, PROT_NONE, flags);
    ASSERT_TRUE(TvHeapConfigurator::tvMemoryRelease(memory, 4096));
    EXPECT_EQ(TvHeapConfigurator::tvMemoryCommit(memory, 4096), nullptr);
}

TEST(TvHeapConfigurator, ASecondReservationFindsNoCandidateAndReplacesNothing)
{
    if (TvHeapConfigurator::pStartAddress == nullptr)
        GTEST_SKIP();
    EXPECT_EQ(TvHeapConfigurator::tvMemoryInitialize(0x200000000), nullptr);
    // The counter has come round: the first candidate again, still taken.
    EXPECT_EQ(TvHeapConfigurator::tvMemoryInitialize(0x200000000), nullptr);
}

TEST(TvHeapDbgDumper, DoesNothing)
{
    TvHeapDbgDumper::init();
    TvHeapDbgDumper::dump(nullptr);
    TvHeapDbgDumper::uninit();
}

} // namespace

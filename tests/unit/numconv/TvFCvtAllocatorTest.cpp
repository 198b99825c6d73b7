#include "TvGdImpl.h"

#include "TvNumber.h"
#include "numconv/TvFCvtAllocatorCheck.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <vector>

namespace {

using Check = TvFCvtAllocatorCheck;

bool inPool(const void* p) { return Check::owns(tvFCvtAllocator(), p); }

// Takes blocks of class k until one comes from the heap; the last is that one.
std::vector<Bigint*> exhaust(int k)
{
    std::vector<Bigint*> blocks;
    do
        blocks.push_back(tvFCvtAllocator().Alloc(k));
    while (inPool(blocks.back()));
    return blocks;
}

void freeAll(const std::vector<Bigint*>& blocks)
{
    for (Bigint* b : blocks)
        tvFCvtAllocator().Free(b);
}

// Every test starts with a pool that holds nothing but the powers of five.
class NumberPool : public testing::Test {
protected:
    void SetUp() override
    {
        tvFCvtAllocator().release();
        tvFCvtAllocator().init();
    }
};

TEST_F(NumberPool, IsOneObjectForTheWholeLibrary) { EXPECT_EQ(&tvFCvtAllocator(), &tvFCvtAllocator()); }

TEST_F(NumberPool, HoldsLockPoolBumpPointerAndSixteenLists)
{
    const Check::Offsets at = Check::offsets(tvFCvtAllocator());
    EXPECT_EQ(at.lock, 0u);
    EXPECT_EQ(at.pool, 8u);
    EXPECT_EQ(at.next, 8u + 3944);
    EXPECT_EQ(at.lists, 8u + 3944 + 8);
    EXPECT_EQ(sizeof(TvFCvtAllocator), 8u + 3944 + 8 + 16 * 8);
    EXPECT_EQ(Check::poolBytes(), 3944u);
}

TEST_F(NumberPool, BlockSizesAreWholeEights)
{
    EXPECT_EQ(Check::blockBytes(0), 32u);
    EXPECT_EQ(Check::blockBytes(1), 40u);
    EXPECT_EQ(Check::blockBytes(2), 48u);
    EXPECT_EQ(Check::blockBytes(3), 64u);
    EXPECT_EQ(Check::blockBytes(7), 544u);
}

TEST_F(NumberPool, PowersOfFiveStandInThePoolFromLoadOn)
{
    for (const Bigint* b = G_Pow5Data; b; b = b->next)
        EXPECT_TRUE(inPool(b));
    EXPECT_EQ(Check::poolUsed(tvFCvtAllocator()), 488u);
}

TEST_F(NumberPool, NewBlocksAreCarvedFromThePool)
{
    const std::size_t before = Check::poolUsed(tvFCvtAllocator());
    Bigint* b = tvFCvtAllocator().Alloc(6);
    EXPECT_TRUE(inPool(b));
    EXPECT_EQ(Check::poolUsed(tvFCvtAllocator()), before + Check::blockBytes(6));
    tvFCvtAllocator().Free(b);
}

TEST_F(NumberPool, FreedPoolBlockIsTheNextOfItsClass)
{
    Bigint* b = tvFCvtAllocator().Alloc(2);
    b->sign = 1;
    b->wds = 3;
    tvFCvtAllocator().Free(b);
    Bigint* again = tvFCvtAllocator().Alloc(2);
    EXPECT_EQ(again, b);
    EXPECT_EQ(again->sign, 0);
    EXPECT_EQ(again->wds, 0);
    EXPECT_EQ(again->maxwds, 4);
    tvFCvtAllocator().Free(again);
}

TEST_F(NumberPool, HeapBlocksAreNeverListed)
{
    std::vector<Bigint*> blocks = exhaust(1);
    const int listed = Check::freeBlocks(tvFCvtAllocator(), 1);
    tvFCvtAllocator().Free(blocks.back());
    EXPECT_EQ(Check::freeBlocks(tvFCvtAllocator(), 1), listed);
    blocks.pop_back();
    freeAll(blocks);
    EXPECT_EQ(Check::freeBlocks(tvFCvtAllocator(), 1), listed + static_cast<int>(blocks.size()));
    EXPECT_TRUE(Check::consistent(tvFCvtAllocator()));
}

TEST_F(NumberPool, ThePoolIsUsedToItsLastBlock)
{
    freeAll(exhaust(0));
    EXPECT_GT(Check::poolUsed(tvFCvtAllocator()) + Check::blockBytes(0), Check::poolBytes());
}

TEST_F(NumberPool, LargeClassesComeFromTheHeapAndGoBack)
{
    for (const int k : {15, 16, 17, 20}) {
        Bigint* b = tvFCvtAllocator().Alloc(k);
        ASSERT_NE(b, nullptr) << k;
        EXPECT_FALSE(inPool(b));
        EXPECT_EQ(b->maxwds, 1 << k);
        b->x[(1 << k) - 1] = 1;
        tvFCvtAllocator().Free(b);
    }
    EXPECT_EQ(Check::freeBlocks(tvFCvtAllocator(), 15), 0);
}

TEST_F(NumberPool, ImpossibleClassesAreNull)
{
    for (const int k : {-1, 30, 31, 32, 1000, -2147483647 - 1})
        EXPECT_EQ(tvFCvtAllocator().Alloc(k), nullptr) << k;
}

TEST_F(NumberPool, NullMayBeFreed) { tvFCvtAllocator().Free(nullptr); }

TEST_F(NumberPool, InitTwiceChangesNothing)
{
    const std::size_t used = Check::poolUsed(tvFCvtAllocator());
    Bigint* powers = G_Pow5Data;
    tvFCvtAllocator().init();
    EXPECT_EQ(Check::poolUsed(tvFCvtAllocator()), used);
    EXPECT_EQ(G_Pow5Data, powers);
}

class ReleasedNumberPool : public testing::Test {
protected:
    void SetUp() override { tvFCvtAllocator().release(); }
    void TearDown() override { tvFCvtAllocator().init(); }
};

TEST_F(ReleasedNumberPool, ThePowersOfFiveAreGone) { EXPECT_EQ(G_Pow5Data, nullptr); }

TEST_F(ReleasedNumberPool, BlocksComeFromTheHeap)
{
    Bigint* b = tvFCvtAllocator().Alloc(1);
    EXPECT_FALSE(inPool(b));
    tvFCvtAllocator().Free(b);
}

TEST_F(ReleasedNumberPool, Pow5multWorksWithoutTheChain)
{
    Bigint* b = TvGdImpl::pow5mult(TvGdImpl::i2b(1), 300);
    tvFCvtAllocator().init();
    Bigint* expected = TvGdImpl::pow5mult(TvGdImpl::i2b(1), 300);
    EXPECT_EQ(TvGdImpl::cmp(b, expected), 0);
    TvGdImpl::Bfree(b);
    TvGdImpl::Bfree(expected);
}

TEST_F(ReleasedNumberPool, InitStartsThePoolAnew)
{
    tvFCvtAllocator().init();
    EXPECT_EQ(Check::poolUsed(tvFCvtAllocator()), 488u);
    EXPECT_NE(G_Pow5Data, nullptr);
}

TEST_F(NumberPool, ManyConversionsReusePoolBlocks)
{
    const std::vector<Bigint*> blocks = exhaust(0);
    freeAll(blocks);
    const std::size_t used = Check::poolUsed(tvFCvtAllocator());
    const int listed = Check::freeBlocks(tvFCvtAllocator(), 0);
    for (int i = 0; i < 1000; ++i) {
        int point, sign;
        char* digits = TvGdImpl::dtoa(i / 7.0, 0, 0, &point, &sign, nullptr);
        EXPECT_TRUE(inPool(digits));
        TvGdImpl::freedtoa(digits);
    }
    EXPECT_EQ(Check::poolUsed(tvFCvtAllocator()), used);
    EXPECT_EQ(Check::freeBlocks(tvFCvtAllocator(), 0), listed);
}

// Blocks of every class that are listed, and bytes carved.
std::vector<int> poolState()
{
    std::vector<int> state{static_cast<int>(Check::poolUsed(tvFCvtAllocator()))};
    for (int k = 0; k < 16; ++k)
        state.push_back(Check::freeBlocks(tvFCvtAllocator(), k));
    return state;
}

TEST_F(NumberPool, ReadingATieGivesEveryBlockBack)
{
    // The middle between two doubles, and a digit far behind it.
    const std::string tie = "9007199254740993" + std::string(600, '0');
    const std::string texts[] = {tie, tie + "1", tie + "e-400", "2." + tie + "e-308"};
    for (const std::string& text : texts)
        tvStrToD(text.c_str(), nullptr);
    const std::vector<int> before = poolState();
    for (int i = 0; i < 100; ++i) {
        for (const std::string& text : texts)
            tvStrToD(text.c_str(), nullptr);
    }
    EXPECT_EQ(poolState(), before);
}

TEST_F(NumberPool, DigitsOfEveryModeGiveEveryBlockBack)
{
    const auto convertAll = [] {
        for (int mode = 0; mode <= 9; ++mode) {
            for (const double value : {1.0 / 3, 5e-324, 0x1.fffffffffffffp1023, 1e23}) {
                int point, sign;
                TvGdImpl::freedtoa(TvGdImpl::dtoa(value, mode, 30, &point, &sign, nullptr));
            }
        }
    };
    convertAll();
    const std::vector<int> before = poolState();
    convertAll();
    EXPECT_EQ(poolState(), before);
}

} // namespace

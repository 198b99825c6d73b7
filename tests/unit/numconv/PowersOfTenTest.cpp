#include "numconv/PowersOfTen.h"

#include "TvGdImpl.h"

#include <gtest/gtest.h>

namespace {

// 10^p / 2^floorLog2Pow10(p) * 2^127 lies in [entry, entry + 1), by big integers.
class PowersOfTen : public testing::Test {
protected:
    // entry * 10^-p or the entry alone, against 2^s or 10^p * 2^s.
    static Bigint* entryPlus(int p, unsigned more)
    {
        const TenPower& e = tenPower(p);
        Bigint* b = TvGdImpl::Balloc(3);
        b->x[0] = static_cast<unsigned>(e.low);
        b->x[1] = static_cast<unsigned>(e.low >> 32);
        b->x[2] = static_cast<unsigned>(e.high);
        b->x[3] = static_cast<unsigned>(e.high >> 32);
        b->wds = 4;
        return TvGdImpl::multadd(b, 1, static_cast<int>(more));
    }

    static int compareEntryWithPower(int p, unsigned more)
    {
        // entry * 2^(log - 127) against 5^p * 2^p: fives and twos go where they are positive.
        const int twos = floorLog2Pow10(p) - 127 - p;
        Bigint* left = TvGdImpl::lshift(TvGdImpl::pow5mult(entryPlus(p, more), -p), twos);
        Bigint* right = TvGdImpl::lshift(TvGdImpl::pow5mult(TvGdImpl::i2b(1), p), -twos);
        const int order = TvGdImpl::cmp(left, right);
        TvGdImpl::Bfree(left);
        TvGdImpl::Bfree(right);
        return order;
    }
};

TEST_F(PowersOfTen, EveryEntryIsThePowerCutTo128Bits)
{
    for (int p = kLowestTenPower; p <= kHighestTenPower; ++p) {
        ASSERT_LE(compareEntryWithPower(p, 0), 0) << p;
        ASSERT_GT(compareEntryWithPower(p, 1), 0) << p;
    }
}

TEST_F(PowersOfTen, EveryEntryHasItsHighestBitSet)
{
    for (int p = kLowestTenPower; p <= kHighestTenPower; ++p)
        ASSERT_EQ(tenPower(p).high >> 63, 1u) << p;
}

TEST_F(PowersOfTen, ExactlyThoseFromZeroTo55AreExact)
{
    for (int p = kLowestTenPower; p <= kHighestTenPower; ++p)
        ASSERT_EQ(compareEntryWithPower(p, 0) == 0, isExactTenPower(p)) << p;
}

// Whether 10^q <= factor * 2^e, by big integers: fives and twos go where they are positive.
bool isAtMost(int q, int factor, int e)
{
    Bigint* power = TvGdImpl::lshift(TvGdImpl::pow5mult(TvGdImpl::i2b(1), q), q - e);
    Bigint* value = TvGdImpl::lshift(TvGdImpl::pow5mult(TvGdImpl::i2b(factor), -q), e - q);
    const bool result = TvGdImpl::cmp(power, value) <= 0;
    TvGdImpl::Bfree(power);
    TvGdImpl::Bfree(value);
    return result;
}

bool isFloorLog10(int p, int factor, int e) { return isAtMost(p, factor, e) && !isAtMost(p + 1, factor, e); }

// Whether 2^p <= 10^e < 2^(p + 1), for powers of ten that are no power of two.
bool isFloorLog2(int p, int e) { return e == 0 ? p == 0 : !isAtMost(e, 1, p) && isAtMost(e, 1, p + 1); }

TEST(FloorLog, OfAPowerOfTwoIsExactAsFarAsItSays)
{
    for (int e = -1650; e <= 1650; ++e)
        ASSERT_TRUE(isFloorLog10(floorLog10Pow2(e), 1, e)) << e;
}

TEST(FloorLog, OfAPowerOfTwoIsWrongBehindItsBounds)
{
    EXPECT_FALSE(isFloorLog10(floorLog10Pow2(1651), 1, 1651));
    EXPECT_FALSE(isFloorLog10(floorLog10Pow2(-1651), 1, -1651));
}

TEST(FloorLog, OfThreeQuartersOfAPowerOfTwoIsExactAsFarAsItSays)
{
    for (int e = -1100; e <= 1100; ++e)
        ASSERT_TRUE(isFloorLog10(floorLog10ThreeQuartersPow2(e), 3, e - 2)) << e;
}

TEST(FloorLog, OfAPowerOfTenIsExactAsFarAsItSays)
{
    for (int e = -642; e <= 642; ++e)
        ASSERT_TRUE(isFloorLog2(floorLog2Pow10(e), e)) << e;
}

TEST(FloorLog, OfAPowerOfTenIsWrongBehindItsBounds)
{
    EXPECT_FALSE(isFloorLog2(floorLog2Pow10(643), 643));
    EXPECT_FALSE(isFloorLog2(floorLog2Pow10(-643), -643));
}

} // namespace

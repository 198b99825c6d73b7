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

// Both sides of every step, by exact comparison of powers.
TEST(FloorLog, OfAPowerOfTwoIsExact)
{
    for (int e = -1200; e <= 1200; ++e) {
        const int p = floorLog10Pow2(e);
        // 10^p <= 2^e < 10^(p + 1), as 5^p <= 2^(e - p).
        const auto notAbove = [e](int q) {
            Bigint* left = TvGdImpl::lshift(TvGdImpl::pow5mult(TvGdImpl::i2b(1), q), q - e);
            Bigint* right = TvGdImpl::lshift(TvGdImpl::pow5mult(TvGdImpl::i2b(1), -q), e - q);
            const bool result = TvGdImpl::cmp(left, right) <= 0;
            TvGdImpl::Bfree(left);
            TvGdImpl::Bfree(right);
            return result;
        };
        ASSERT_TRUE(notAbove(p)) << e;
        ASSERT_FALSE(notAbove(p + 1)) << e;
    }
}

TEST(FloorLog, OfThreeQuartersOfAPowerOfTwoIsExact)
{
    for (int e = -1100; e <= 1100; ++e) {
        const int p = floorLog10ThreeQuartersPow2(e);
        // 10^p <= 3 * 2^(e - 2) < 10^(p + 1).
        const auto notAbove = [e](int q) {
            Bigint* left = TvGdImpl::lshift(TvGdImpl::pow5mult(TvGdImpl::i2b(1), q), q - (e - 2));
            Bigint* right = TvGdImpl::lshift(TvGdImpl::pow5mult(TvGdImpl::i2b(3), -q), e - 2 - q);
            const bool result = TvGdImpl::cmp(left, right) <= 0;
            TvGdImpl::Bfree(left);
            TvGdImpl::Bfree(right);
            return result;
        };
        ASSERT_TRUE(notAbove(p)) << e;
        ASSERT_FALSE(notAbove(p + 1)) << e;
    }
}

} // namespace

// The tables behind the scaling of numbers, proved by exact integer arithmetic.
#include "format/QuadDecimal.h"
#include "format/ScaledReal.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

using namespace TvFormatDetail;

namespace {

// A natural number in 32-bit limbs, least significant first, without zeros in front.
class Natural {
public:
    explicit Natural(UInt128 v)
    {
        for (; v; v >>= 32)
            m_limbs.push_back(static_cast<std::uint32_t>(v));
    }

    Natural timesTenTo(int power) const
    {
        Natural result = *this;
        for (int i = 0; i < power; ++i) {
            std::uint64_t carry = 0;
            for (std::uint32_t& limb : result.m_limbs) {
                carry += std::uint64_t{limb} * 10;
                limb = static_cast<std::uint32_t>(carry);
                carry >>= 32;
            }
            if (carry)
                result.m_limbs.push_back(static_cast<std::uint32_t>(carry));
        }
        return result;
    }

    Natural shifted(int bits) const
    {
        Natural result(0);
        result.m_limbs.assign(static_cast<std::size_t>(bits / 32), 0);
        std::uint64_t carry = 0;
        for (const std::uint32_t limb : m_limbs) {
            carry |= std::uint64_t{limb} << (bits % 32);
            result.m_limbs.push_back(static_cast<std::uint32_t>(carry));
            carry >>= 32;
        }
        if (carry)
            result.m_limbs.push_back(static_cast<std::uint32_t>(carry));
        return result;
    }

    bool operator<=(const Natural& other) const
    {
        if (m_limbs.size() != other.m_limbs.size())
            return m_limbs.size() < other.m_limbs.size();
        for (std::size_t i = m_limbs.size(); i-- > 0;) {
            if (m_limbs[i] != other.m_limbs[i])
                return m_limbs[i] < other.m_limbs[i];
        }
        return true;
    }

private:
    std::vector<std::uint32_t> m_limbs;
};

class PowerTable : public testing::TestWithParam<int> {};

// s * 2^e is nearest to 10^p when (2s - 1) * 2^(e-1) <= 10^p <= (2s + 1) * 2^(e-1).
TEST_P(PowerTable, PowerIsTheNearest)
{
    const ScaledReal power = realOf(kPowersOfTen[GetParam()]);
    constexpr int common = 200; // keeps both shifts positive
    const Natural exact = Natural(1).timesTenTo(1 << GetParam()).shifted(common);
    EXPECT_TRUE(Natural(power.significand * 2 - 1).shifted(power.exponent - 1 + common) <= exact);
    EXPECT_TRUE(exact <= Natural(power.significand * 2 + 1).shifted(power.exponent - 1 + common));
}

// The same times 10^p: (2s - 1) * 10^p <= 2^(1-e) <= (2s + 1) * 10^p.
TEST_P(PowerTable, ReciprocalIsTheNearest)
{
    const int p = 1 << GetParam();
    const ScaledReal reciprocal = realOf(kReciprocals[GetParam()]);
    const Natural exact = Natural(1).shifted(1 - reciprocal.exponent);
    EXPECT_TRUE(Natural(reciprocal.significand * 2 - 1).timesTenTo(p) <= exact);
    EXPECT_TRUE(exact <= Natural(reciprocal.significand * 2 + 1).timesTenTo(p));
}

INSTANTIATE_TEST_SUITE_P(Entries, PowerTable, testing::Range(0, kPowerCount));

TEST(HalfUnitTable, HasThirtyFiveEntries) { EXPECT_EQ(kHalfUnitCount, 35); }

TEST(HalfUnitTable, EachEntryIsATenthOfTheOneBefore)
{
    volatile TvQuad half = 5;
    for (int k = 0; k < kHalfUnitCount; ++k) {
        EXPECT_TRUE(kHalfUnits.at[k] == half) << "entry " << k;
        half = half / 10;
    }
}

TEST(RoundQuad, BehindTheTableAddsHalfOfItsLastEntry)
{
    TvQuad v = 1;
    EXPECT_EQ(roundQuad(v, 0, kHalfUnitCount - 1), 0);
    EXPECT_TRUE(v == 1 + kHalfUnits.at[kHalfUnitCount - 1] / 2);
}

TEST(RoundQuad, LastEntryIsAddedWhole)
{
    TvQuad v = 1;
    EXPECT_EQ(roundQuad(v, kHalfUnitCount - 2, 0), 0);
    EXPECT_TRUE(v == 1 + kHalfUnits.at[kHalfUnitCount - 1]);
}

TEST(RoundQuad, BehindTheTableNothingIsAddedWithoutAPositiveExponent)
{
    TvQuad v = 1;
    EXPECT_EQ(roundQuad(v, kHalfUnitCount - 1, 0), 0);
    EXPECT_TRUE(v == 1);
}

} // namespace

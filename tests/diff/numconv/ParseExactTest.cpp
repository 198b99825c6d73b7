// Long division by big integers, and the one multiplication, against comparison with every
// middle between doubles.
#include "numconv/DecimalByProduct.h"
#include "numconv/DecimalExact.h"

#include "DoublePatterns.h"
#include "NumberText.h"
#include "TestScale.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

std::uint64_t byDivision(const ExactDecimal& x, bool more = false)
{
    std::uint64_t bits = 1;
    EXPECT_TRUE(exactDouble(x.digits.data(), static_cast<int>(x.digits.size()), x.point, more, bits));
    return bits;
}

// True when the multiplication could tell; when it could not, it must be next to right.
bool checkProduct(const ExactDecimal& x, std::uint64_t expected)
{
    const int used = std::min(static_cast<int>(x.digits.size()), 19);
    std::uint64_t leading = 0;
    for (int i = 0; i < used; ++i)
        leading = leading * 10 + static_cast<unsigned>(x.digits[static_cast<std::size_t>(i)] - '0');
    std::uint64_t bits = 0;
    const bool told = doubleByProduct(leading, x.point - used, x.digits.size() > 19, bits);
    if (told) {
        EXPECT_EQ(bits, expected) << textOf(x);
    } else {
        EXPECT_LE(bits > expected ? bits - expected : expected - bits, 1u) << textOf(x);
    }
    return told;
}

TEST(ParseExact, DivisionFindsTheNearestDouble)
{
    const std::uint64_t seed = testSeed(20267);
    RecordProperty("seed", std::to_string(seed));
    RandomDoubles random(seed);
    for (long i = scaled(120); i > 0; --i) {
        const DoubleNeighbourhood n = neighbourhood(bitsOfDouble(random.next()));
        const ExactDecimal x =
            i % 3 ? cut(n.value, 1 + static_cast<int>(random.bits() % 25), false)
                  : cut(n.above, static_cast<int>(n.above.digits.size() - random.bits() % 2), false);
        const std::uint64_t expected = nearestDouble(x);
        ASSERT_EQ(byDivision(x), expected) << textOf(x) << " seed " << seed;
        checkProduct(x, expected);
    }
}

TEST(ParseExact, DivisionReadsEveryEdgeBack)
{
    for (const double value : edgeDoubles())
        ASSERT_EQ(byDivision(neighbourhood(bitsOfDouble(value)).value), bitsOfDouble(value));
}

TEST(ParseExact, MoreMatters)
{
    const ExactDecimal tie{"9007199254740993", 16};
    EXPECT_EQ(byDivision(tie, false), bitsOfDouble(9007199254740992.0));
    EXPECT_EQ(byDivision(tie, true), bitsOfDouble(9007199254740994.0));
    const ExactDecimal whole{"9007199254740992", 16};
    EXPECT_EQ(byDivision(whole, true), bitsOfDouble(9007199254740992.0));
}

TEST(ParseExact, ProductAndDivisionAgree)
{
    const std::uint64_t seed = testSeed(20268);
    RecordProperty("seed", std::to_string(seed));
    RandomDoubles random(seed);
    for (long i = scaled(100000); i > 0; --i) {
        std::string digits(1, static_cast<char>('1' + random.bits() % 9));
        const std::size_t length = 1 + random.bits() % 24;
        while (digits.size() < length)
            digits += static_cast<char>('0' + random.bits() % 10);
        const ExactDecimal x{digits, static_cast<int>(random.bits() % 640) - 328};
        checkProduct(x, byDivision(x));
        ASSERT_FALSE(HasFailure()) << "seed " << seed;
    }
}

TEST(ParseExact, ProductAnswersForShortDecimals)
{
    RandomDoubles random(3);
    for (int i = 0; i < 20000; ++i) {
        const ExactDecimal x{std::to_string(1 + random.bits() % 10000000000), static_cast<int>(i % 12)};
        ASSERT_TRUE(checkProduct(x, byDivision(x))) << textOf(x);
    }
}

} // namespace

#include "TvMath.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

const double kInf = std::numeric_limits<double>::infinity();
const double kNan = std::numeric_limits<double>::quiet_NaN();
const double kFullTurn = 6.283185307179586;

struct SignCase {
    const char* name;
    double x;
    double tol;
    bool positive;
    bool negative;
};

const SignCase kSignCases[] = {
    {"Bound", 1e-10, 1e-10, false, false},
    {"NegativeBound", -1e-10, 1e-10, false, false},
    {"JustAbove", std::nextafter(1e-10, 1.0), 1e-10, true, false},
    {"JustBelow", std::nextafter(-1e-10, -1.0), 1e-10, false, true},
    {"Zero", 0.0, 1e-10, false, false},
    {"NegativeZero", -0.0, 0.0, false, false},
    {"ZeroTolerance", std::numeric_limits<double>::denorm_min(), 0.0, true, false},
    {"ZeroToleranceBelow", -std::numeric_limits<double>::denorm_min(), 0.0, false, true},
    {"Infinity", kInf, 1e-10, true, false},
    {"NegativeInfinity", -kInf, 1e-10, false, true},
    {"NegativeToleranceIsBoth", 0.0, -1.0, true, true},
    {"NanIsNeither", kNan, 1e-10, false, false},
};

class Sign : public testing::TestWithParam<SignCase> {};

TEST_P(Sign, IsPositive) { EXPECT_EQ(TvMath::isPositive(GetParam().x, GetParam().tol), GetParam().positive); }

TEST_P(Sign, IsNegative) { EXPECT_EQ(TvMath::isNegative(GetParam().x, GetParam().tol), GetParam().negative); }

TEST_P(Sign, IsZeroWhenNeither)
{
    EXPECT_EQ(TvMath::isZero(GetParam().x, GetParam().tol), !GetParam().positive && !GetParam().negative);
}

TEST_P(Sign, IsEqualComparesTheDifference)
{
    EXPECT_EQ(TvMath::isEqual(GetParam().x, 0.0, GetParam().tol),
              TvMath::isZero(GetParam().x, GetParam().tol));
}

INSTANTIATE_TEST_SUITE_P(All, Sign, testing::ValuesIn(kSignCases),
                         [](const auto& test) { return test.param.name; });

TEST(TvMath, IsEqualIncludesTheTolerance)
{
    EXPECT_TRUE(TvMath::isEqual(3.0, 2.5, 0.5));
    EXPECT_TRUE(TvMath::isEqual(2.5, 3.0, 0.5));
    EXPECT_FALSE(TvMath::isEqual(3.0, 2.5, std::nextafter(0.5, 0.0)));
}

TEST(TvMath, RoundingFunctionsAreThoseOfTheLibrary)
{
    EXPECT_EQ(TvMath::floor(-2.5), -3.0);
    EXPECT_EQ(TvMath::ceil(-2.5), -2.0);
    EXPECT_EQ(TvMath::fabs(-2.5), 2.5);
    EXPECT_FALSE(std::signbit(TvMath::fabs(-0.0)));
}

TEST(TvMath, MaxGivesAReferenceToTheLarger)
{
    const int a = 3;
    const int b = 2;
    EXPECT_EQ(&TvMath::max<int>(a, b), &a);
    EXPECT_EQ(&TvMath::max<int>(b, a), &a);
}

TEST(TvMath, MaxOfEqualsIsTheSecond)
{
    const int a = 3;
    const int b = 3;
    EXPECT_EQ(&TvMath::max<int>(a, b), &b);
}

struct IntCase {
    const char* name;
    double x;
    double result;
};

const IntCase kIntCases[] = {
    {"Negative", -2.7, -2.0},
    {"Positive", 2.7, 2.0},
    {"Zero", 0.0, 0.0},
    {"BelowOne", 0.9999999999, 0.0},
    {"AboveMinusOne", -0.9999999999, 0.0},
    {"Large", 3e10, 3e10},
    {"LargeWithAFraction", 30000000000.75, 30000000000.0},
    {"LargeNegativeWithAFraction", -30000000000.75, -30000000000.0},
    {"LargestInt", 2147483647.0, 2147483647.0},
    {"BeyondLargestInt", 2147483647.5, 2147483647.0},
    {"BeforeLargestInt", 2147483646.5, 2147483646.0},
    {"SmallestInt", -2147483648.0, -2147483648.0},
    {"BeyondSmallestInt", -2147483648.5, -2147483648.0},
    {"BeforeSmallestInt", -2147483647.5, -2147483647.0},
    {"Infinity", kInf, kInf},
    {"NegativeInfinity", -kInf, -kInf},
    {"Huge", 1e300, 1e300},
};

class AsInt : public testing::TestWithParam<IntCase> {};

TEST_P(AsInt, TruncatesTowardZero) { EXPECT_EQ(TvMath::asInt<double>(GetParam().x), GetParam().result); }

INSTANTIATE_TEST_SUITE_P(All, AsInt, testing::ValuesIn(kIntCases),
                         [](const auto& test) { return test.param.name; });

TEST(TvMath, AsIntOfNanIsNan) { EXPECT_TRUE(std::isnan(TvMath::asInt<double>(kNan))); }

TEST(TvMath, AsIntTruncatesLikeTheLibraryOverTheIntRange)
{
    for (double x = -2147483648.0; x < 2147483648.0; x += 131071.37)
        ASSERT_EQ(TvMath::asInt<double>(x), std::trunc(x)) << x;
}

// The expected values follow from whole fractions of the full turn, which divide exactly.
const IntCase kAngleCases[] = {
    {"Zero", 0.0, 0.0},
    {"FullTurn", kFullTurn, 0.0},
    {"TwoTurns", 2 * kFullTurn, 0.0},
    {"MinusFullTurn", -kFullTurn, 0.0},
    {"Quarter", kFullTurn / 4, kFullTurn / 4},
    {"MinusQuarter", -kFullTurn / 4, kFullTurn * 3 / 4},
    {"Half", kFullTurn / 2, kFullTurn / 2},
    {"MinusHalf", -kFullTurn / 2, kFullTurn / 2},
    {"FiveQuarters", kFullTurn * 5 / 4, kFullTurn / 4},
    {"MinusFiveQuarters", -kFullTurn * 5 / 4, kFullTurn * 3 / 4},
    {"ManyTurns", kFullTurn * 1048576.5, kFullTurn / 2},
    {"ManyTurnsBack", -kFullTurn * 1048576.25, kFullTurn * 3 / 4},
    {"MoreTurnsThanAnInt", kFullTurn * 8589934592.5, kFullTurn / 2},
    {"TooLarge", 1e300, 0.0},
    {"TooLargeBackwards", -1e300, 0.0},
    {"Infinity", kInf, 0.0},
    {"JustTooLarge", 18014398509481984.0, 0.0},
    {"TinyBackwardsIsAFullTurn", -1e-20, 0.0},
};

class FixAngle : public testing::TestWithParam<IntCase> {};

TEST_P(FixAngle, BringsTheAngleIntoOneTurn)
{
    EXPECT_DOUBLE_EQ(TvMath::fixAngle<double>(GetParam().x), GetParam().result);
}

TEST_P(FixAngle, ResultIsBelowAFullTurn)
{
    const double angle = TvMath::fixAngle<double>(GetParam().x);
    EXPECT_GE(angle, 0.0);
    EXPECT_LT(angle, kFullTurn);
}

INSTANTIATE_TEST_SUITE_P(All, FixAngle, testing::ValuesIn(kAngleCases),
                         [](const auto& test) { return test.param.name; });

TEST(TvMath, FixAngleKeepsTheDirection)
{
    for (double angle = -100.0; angle < 100.0; angle += 0.37) {
        const double fixed = TvMath::fixAngle<double>(angle);
        ASSERT_GE(fixed, 0.0) << angle;
        ASSERT_LT(fixed, kFullTurn) << angle;
        ASSERT_NEAR(std::cos(fixed), std::cos(angle), 1e-12) << angle;
        ASSERT_NEAR(std::sin(fixed), std::sin(angle), 1e-12) << angle;
    }
}

TEST(TvMath, FixAngleOfNanIsNan) { EXPECT_TRUE(std::isnan(TvMath::fixAngle<double>(kNan))); }

TEST(TvMath, PowTakesAnIntegerExponent)
{
    EXPECT_EQ(TvMath::pow<double>(2.0, 10), 1024.0);
    EXPECT_EQ(TvMath::pow<double>(2.0, -2), 0.25);
    EXPECT_EQ(TvMath::pow<double>(10.0, 0), 1.0);
    EXPECT_EQ(TvMath::pow<double>(-3.0, 3), -27.0);
}

} // namespace

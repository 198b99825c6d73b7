#include "NumberText.h"

#include <gtest/gtest.h>

#include <cfenv>
#include <limits>

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr int kMax = std::numeric_limits<int>::max();
constexpr int kMin = std::numeric_limits<int>::min();

struct Case {
    const char* name;
    double value;
    int mode;
    int ndigits;
    const char* expected; // digits@point
};

class Dtoa : public testing::TestWithParam<Case> {};

TEST_P(Dtoa, GivesTheDigits)
{
    const Case& c = GetParam();
    EXPECT_EQ(dtoaText(c.value, c.mode, c.ndigits), c.expected);
}

// Modes 6 to 9 take the other way to the same digits.
TEST_P(Dtoa, GivesTheSameDigitsByBigIntegersAlone)
{
    const Case& c = GetParam();
    if (c.mode >= 2 && c.mode <= 5) {
        EXPECT_EQ(dtoaText(c.value, c.mode + 4, c.ndigits), c.expected);
    }
}

const Case kSpecial[] = {
    {"ZeroHasOneDigit", 0.0, 0, 0, "0@1"},
    {"ZeroHasOneDigitWithPlacesToo", 0.0, 3, 5, "0@1"},
    {"NegativeZeroKeepsItsSign", -0.0, 0, 0, "-0@1"},
    {"Infinity", kInfinity, 2, 3, "Infinity@9999"},
    {"NegativeInfinity", -kInfinity, 0, 0, "-Infinity@9999"},
    {"NaN", kNaN, 3, 3, "NaN@9999"},
    {"NaNKeepsItsSign", -kNaN, 0, 0, "-NaN@9999"},
    {"NegativeValue", -12.5, 0, 0, "-125@2"},
};

const Case kShortest[] = {
    {"OneTenth", 0.1, 0, 0, "1@0"},
    {"OneThird", 1.0 / 3, 0, 0, "3333333333333333@0"},
    {"HalfWayToANeighbourReadsBack", 1e23, 0, 0, "1@24"},
    {"Mode1StaysInsideTheMiddles", 1e23, 1, 0, "9999999999999999@23"},
    {"SmallestSubnormal", 5e-324, 0, 0, "5@-323"},
    {"LargestSubnormal", 2.2250738585072009e-308, 0, 0, "2225073858507201@-307"},
    {"SmallestNormal", 2.2250738585072014e-308, 0, 0, "22250738585072014@-307"},
    {"LargestDouble", 1.7976931348623157e308, 0, 0, "17976931348623157@309"},
    {"TieBetweenShortestGoesToEven", 5.684341886080802e-14, 0, 0, "5684341886080802@-13"},
    {"PowerOfTwoWithItsNarrowSide", 9007199254740992.0, 0, 0, "9007199254740992@16"},
    {"UnknownModeIsShortest", 1.0 / 3, 10, 3, "3333333333333333@0"},
    {"NegativeModeIsShortest", 1.0 / 3, -1, 3, "3333333333333333@0"},
    {"DigitCountDoesNotMatter", 1.0 / 3, 0, 3, "3333333333333333@0"},
    {"NegativeDigitCountDoesNotMatter", 1.0 / 3, 0, -7, "3333333333333333@0"},
};

const Case kSignificant[] = {
    {"NoTrailingZeros", 2.0, 2, 3, "2@1"},
    {"SeventeenDigits", 0.1, 2, 17, "10000000000000001@0"},
    {"EighteenDigits", 0.1, 2, 18, "100000000000000006@0"},
    {"NineteenDigits", 0.1, 2, 19, "1000000000000000056@0"},
    {"AllDigits", 0.1, 2, 100, "1000000000000000055511151231257827021181583404541015625@0"},
    {"AnyNumberOfDigits", 0.1, 2, kMax, "1000000000000000055511151231257827021181583404541015625@0"},
    {"ZeroDigitsAreOne", 0.26, 2, 0, "3@0"},
    {"NegativeDigitsAreOne", 0.26, 2, kMin, "3@0"},
    {"TieGoesDownToEven", 2.5, 2, 1, "2@1"},
    {"TieGoesUpToEven", 3.5, 2, 1, "4@1"},
    {"TieBehindNineIsCarried", 9.5, 2, 1, "1@2"},
    {"CarryThroughNines", 999.96, 2, 4, "1@4"},
    {"JustAboveATie", 2.5000000000000004, 2, 1, "3@1"},
    {"NearestThatDoesNotReadBack", 0x1p-44, 2, 16, "5684341886080801@-13"},
};

const Case kPlaces[] = {
    {"NothingLeft", 0.001, 3, 2, "@-2"},
    {"RoundedUpToTheLastPlace", 0.006, 3, 2, "1@-1"},
    {"TieToNothing", 0.5, 3, 0, "@0"},
    {"AboveTheTie", 0.50000000000000011, 3, 0, "1@1"},
    {"TieToOdd", 1.5, 3, 0, "2@1"},
    {"TieToEven", 2.5, 3, 0, "2@1"},
    {"LeftOfThePoint", 1234.0, 3, -2, "12@4"},
    {"LeftOfThePointTie", 1250.0, 3, -2, "12@4"},
    {"LeftOfThePointToNothing", 49.0, 3, -2, "@2"},
    {"LeftOfThePointTieToNothing", 50.0, 3, -2, "@2"},
    {"LeftOfThePointUp", 51.0, 3, -2, "1@3"},
    {"FarLeftOfThePoint", 99.0, 3, -3, "@3"},
    {"FartherThanAnyDouble", 1e300, 3, kMin, "@2147483647"},
    {"MorePlacesThanDigits", 0.125, 3, kMax, "125@0"},
    {"LargeValue", 1e22, 3, 3, "1@23"},
    {"CarryAddsADigit", 99.996, 3, 2, "1@3"},
};

const Case kStoppingAtShortest[] = {
    {"ShortestWhenThatIsShorter", 0.1, 5, 20, "1@0"},
    {"SignificantShortestWhenThatIsShorter", 0.1, 4, 20, "1@0"},
    {"RoundedWhenShortestIsLonger", 1.0 / 3, 5, 4, "3333@0"},
    {"SignificantRoundedWhenShortestIsLonger", 2.0 / 3, 4, 4, "6667@0"},
    {"ExactlyAsLongIsTheShortest", 9007199254740993.0, 4, 16, "9007199254740992@16"},
    {"ExactlyAsLongIsNotTheNearest", 0x1p-44, 4, 16, "5684341886080802@-13"},
    {"ExactlyAsManyPlacesIsNotTheNearest", 0x1p-44, 5, 29, "5684341886080802@-13"},
    {"LargeValueByPlaces", 1e23, 5, 2, "1@24"},
    {"LargeValueLeftOfThePoint", 123456.0, 5, -4, "12@6"},
    {"NothingLeft", 0.001, 5, 2, "@-2"},
    {"Subnormal", 5e-324, 4, 10, "5@-323"},
    {"SubnormalPlacesTooFew", 5e-324, 5, 100, "@-100"},
};

std::string nameOf(const testing::TestParamInfo<Case>& info) { return info.param.name; }

INSTANTIATE_TEST_SUITE_P(Special, Dtoa, testing::ValuesIn(kSpecial), nameOf);
INSTANTIATE_TEST_SUITE_P(Shortest, Dtoa, testing::ValuesIn(kShortest), nameOf);
INSTANTIATE_TEST_SUITE_P(Significant, Dtoa, testing::ValuesIn(kSignificant), nameOf);
INSTANTIATE_TEST_SUITE_P(Places, Dtoa, testing::ValuesIn(kPlaces), nameOf);
INSTANTIATE_TEST_SUITE_P(StoppingAtShortest, Dtoa, testing::ValuesIn(kStoppingAtShortest), nameOf);

TEST(DtoaEnd, MayBeLeftOut)
{
    int point, sign;
    char* digits = TvGdImpl::dtoa(1.25, 0, 0, &point, &sign, nullptr);
    EXPECT_STREQ(digits, "125");
    TvGdImpl::freedtoa(digits);
}

TEST(DtoaEnvironment, IsLeftAlone)
{
    const int modes[] = {FE_TONEAREST, FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO};
    for (const int rounding : modes) {
        SCOPED_TRACE(rounding);
        std::fesetround(rounding);
        std::feclearexcept(FE_ALL_EXCEPT);
        const std::string shortest = dtoaText(0.3, 0, 0);
        const std::string rounded = dtoaText(1e23, 2, 17);
        const std::string exact = dtoaText(2.5, 7, 0);
        const int flags = std::fetestexcept(FE_ALL_EXCEPT);
        const int after = std::fegetround();
        std::fesetround(FE_TONEAREST);
        EXPECT_EQ(shortest, "3@0");
        EXPECT_EQ(rounded, "99999999999999992@23");
        EXPECT_EQ(exact, "2@1");
        EXPECT_EQ(flags, 0);
        EXPECT_EQ(after, rounding);
    }
}

TEST(DtoaEnvironment, DigitsOfEveryModeAreTheSameInEveryRoundingMode)
{
    const double values[] = {0.1,
                             2.5,
                             1e23,
                             1.0 / 3,
                             999.96,
                             49.0,
                             12345.678901,
                             1e22,
                             1e-30,
                             5e-324,
                             0x1p-1022,
                             0x1p53,
                             0x1.fffffffffffffp1023};
    for (const double value : values) {
        for (int mode = 0; mode <= 9; ++mode) {
            for (const int ndigits : {-2, 0, 1, 3, 6, 15, 16, 17, 18, 25}) {
                const std::string expected = textOf(expectedDigits(bitsOfDouble(value), mode, ndigits));
                for (const int rounding : {FE_TONEAREST, FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO}) {
                    std::fesetround(rounding);
                    std::feclearexcept(FE_ALL_EXCEPT);
                    const std::string positive = dtoaText(value, mode, ndigits);
                    const std::string negative = dtoaText(-value, mode, ndigits);
                    const int flags = std::fetestexcept(FE_ALL_EXCEPT);
                    std::fesetround(FE_TONEAREST);
                    EXPECT_EQ(flags, 0) << value << " mode " << mode << " digits " << ndigits;
                    EXPECT_EQ(positive, expected)
                        << value << " mode " << mode << " digits " << ndigits << " rounding " << rounding;
                    EXPECT_EQ(negative, "-" + expected)
                        << value << " mode " << mode << " digits " << ndigits << " rounding " << rounding;
                }
            }
        }
    }
}

} // namespace

#include "TvNumber.h"

#include "TvAlloc.h"

#include <gtest/gtest.h>

#include <cfenv>
#include <limits>
#include <string>

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr int kLowest = std::numeric_limits<int>::min();

std::string narrowed(wchar_t* owned)
{
    if (!owned)
        return "null";
    const std::wstring wide = owned;
    _tvFree(owned);
    return std::string(wide.begin(), wide.end());
}

template<class Case>
std::string nameOf(const testing::TestParamInfo<Case>& info)
{
    return info.param.name;
}

struct FCase {
    const char* name;
    double value;
    int precision;
    const char* expected;
};

class TvFltToF : public testing::TestWithParam<FCase> {};

TEST_P(TvFltToF, WritesNarrowAndWideAlike)
{
    const FCase& c = GetParam();
    char out[400];
    tvFltToF(out, c.value, c.precision);
    EXPECT_STREQ(out, c.expected);
    EXPECT_EQ(narrowed(tvFltToF(c.value, c.precision)), c.expected);
}

const FCase kF[] = {
    {"Rounded", 3.14159, 2, "3.14"},
    {"RoundedToNothing", 0.001, 2, "0.00"},
    {"WholeNumber", 123.0, 2, "123.00"},
    {"Negative", -0.5, 2, "-0.50"},
    {"Zero", 0.0, 2, "0.00"},
    {"NegativeZero", -0.0, 1, "-0.0"},
    {"ZeroWithoutPlaces", 0.0, 0, "0"},
    {"NoPlacesNoPoint", 123.0, 0, "123"},
    {"TieToNothingKeepsItsSign", -0.5, 0, "-0"},
    {"TieToEven", 2.5, 0, "2"},
    {"CarryAddsADigit", 99.996, 2, "100.00"},
    {"CarryFromNothing", 0.996, 2, "1.00"},
    {"SmallPlaces", 0.000123, 6, "0.000123"},
    {"PlacesBehindTheShortestAreZeros", 0.1, 20, "0.10000000000000000000"},
    {"PlacesBehindTheShortestOfLargeValues", 1e23, 2, "100000000000000000000000.00"},
    {"LargeValueFilledWithZeros", 123456789012345680000.0, 1, "123456789012345680000.0"},
    {"SixPlacesOfALargeCoordinate", -98765.4321, 6, "-98765.432100"},
    {"SixPlacesJustBelow2To33", 8589934591.999999, 6, "8589934591.999999"},
    {"SixPlacesJustAbove2To33", 8589934592.0000019, 6, "8589934592.000002"},
    {"NegativePrecisionIsZero", 2.75, -3, "3"},
    {"LowestPrecisionIsZero", 2.75, kLowest, "3"},
    {"Infinity", kInfinity, 2, "Infinity"},
    {"NegativeInfinity", -kInfinity, 2, "-Infinity"},
    {"NaN", kNaN, 2, "NaN"},
    {"NaNHasNoSign", -kNaN, 2, "NaN"},
};
INSTANTIATE_TEST_SUITE_P(Values, TvFltToF, testing::ValuesIn(kF), nameOf<FCase>);

struct ECase {
    const char* name;
    double value;
    int precision;
    char expChar;
    const char* expected;
};

class TvFltToE : public testing::TestWithParam<ECase> {};

TEST_P(TvFltToE, WritesNarrowAndWideAlike)
{
    const ECase& c = GetParam();
    char out[400];
    tvFltToE(out, c.value, c.precision, c.expChar);
    EXPECT_STREQ(out, c.expected);
    EXPECT_EQ(narrowed(tvFltToE(c.value, c.precision, c.expChar)), c.expected);
}

const ECase kE[] = {
    {"Rounded", 12345.678, 3, 'e', "1.235e+004"},
    {"Zero", 0.0, 3, 'e', "0.000e+000"},
    {"PrecisionZeroKeepsThePoint", 5.0, 0, 'e', "5.e+000"},
    {"NegativeExponent", -1.5e-123, 1, 'E', "-1.5E-123"},
    {"LargeExponent", 1e308, 2, 'e', "1.00e+308"},
    {"AnyExponentLetter", 1.0, 1, 'D', "1.0D+000"},
    {"MoreDigitsThanThereAre", 0.5, 4, 'e', "5.0000e-001"},
    {"Carry", 9.996, 2, 'e', "1.00e+001"},
    {"NegativePrecisionIsZero", 7.0, -1, 'e', "7.e+000"},
    {"LowestPrecisionIsZero", 7.0, kLowest, 'e', "7.e+000"},
    {"Infinity", -kInfinity, 2, 'e', "-Infinity"},
    {"NaN", kNaN, 0, 'e', "NaN"},
};
INSTANTIATE_TEST_SUITE_P(Values, TvFltToE, testing::ValuesIn(kE), nameOf<ECase>);

struct GCase {
    const char* name;
    double value;
    int precision;
    int style;
    const char* expected;
};

class TvFltToG : public testing::TestWithParam<GCase> {};

TEST_P(TvFltToG, WritesNarrowAndWideAlike)
{
    const GCase& c = GetParam();
    char out[400];
    tvFltToG(out, c.value, c.precision, 'e', c.style);
    EXPECT_STREQ(out, c.expected);
    EXPECT_EQ(narrowed(tvFltToG(c.value, c.precision, 'e', c.style)), c.expected);
}

const GCase kG[] = {
    {"WholeWithoutPoint", 100000.0, 6, 0, "100000"},
    {"ExponentFromThePrecisionOn", 1000000.0, 6, 0, "1e+006"},
    {"SmallestFixed", 0.0001, 6, 0, "0.0001"},
    {"ExponentBelow", 0.00001, 6, 0, "1e-005"},
    {"DigitsOfFixed", 123.456, 6, 0, "123.456"},
    {"DigitsCut", 123.456, 4, 0, "123.5"},
    {"SmallDigits", -0.00123456, 3, 0, "-0.00123"},
    {"DigitsOfExponent", 1.2345e10, 3, 0, "1.23e+010"},
    {"Zero", 0.0, 6, 0, "0"},
    {"NegativeZero", -0.0, 6, 0, "-0"},
    {"ZerosInsideStay", 1050.0, 6, 0, "1050"},
    {"FifteenDigits", 0.1, 15, 0, "0.1"},
    {"SeventeenDigits", 0.1, 17, 0, "0.10000000000000001"},
    {"Style1FillsWholeNumbers", 2.0, 4, 1, "2.000"},
    {"Style1CountsTheZerosInFrontOfThePoint", 100.0, 6, 1, "100.000"},
    {"Style1FillsBelowOne", 0.5, 4, 1, "0.5000"},
    {"Style1DoesNotFillBehindDigits", 1.5, 4, 1, "1.5"},
    {"Style1FillsZero", 0.0, 4, 1, "0.000"},
    {"Style1FillsExponentNotation", 2e10, 4, 1, "2.000e+010"},
    {"Style1FillsDigitsOfExponentNotation", 2.5e10, 4, 1, "2.500e+010"},
    {"Style2EndsWholeNumbers", 2.0, 6, 2, "2.0"},
    {"Style2EndsZero", 0.0, 6, 2, "0.0"},
    {"Style2EndsExponentNotation", 2e10, 6, 2, "2.0e+010"},
    {"Style2LeavesFractions", 2.5, 6, 2, "2.5"},
    {"Style2LeavesBelowOne", 0.5, 6, 2, "0.5"},
    {"OtherStylesAboveZeroLeaveThePoint", 2.0, 6, 3, "2."},
    {"OtherStylesLeaveExponentNotation", 2e10, 6, 3, "2e+010"},
    {"NegativeStylesAreZero", 2.0, 6, -1, "2"},
    {"PrecisionZeroOfAHalf", 0.5, 0, 0, "0."},
    {"PrecisionZeroOfZero", 0.0, 0, 0, "0e+000"},
    {"PrecisionZeroOfOne", 1.0, 0, 0, "1e+000"},
    {"PrecisionZeroWithStyle1", 1.0, 0, 1, "1.e+000"},
    {"PrecisionZeroWithStyle2", 1.0, 0, 2, "1.0e+000"},
    {"PrecisionZeroWithStyle2AndSign", -1.0, 0, 2, "-1.0e+000"},
    {"NegativePrecisionIsZero", 1.0, -5, 0, "1e+000"},
    {"LowestPrecisionIsZero", 1.0, kLowest, 0, "1e+000"},
    {"Infinity", kInfinity, 6, 0, "Infinity"},
    {"NegativeInfinity", -kInfinity, 6, 2, "-Infinity"},
    {"NaN", kNaN, 6, 1, "NaN"},
};
INSTANTIATE_TEST_SUITE_P(Values, TvFltToG, testing::ValuesIn(kG), nameOf<GCase>);

TEST(TvFltToGLetter, TakesAnyExponentCharacter)
{
    char out[32];
    tvFltToG(out, 1e10, 3, 'D', 0);
    EXPECT_STREQ(out, "1D+010");
    wchar_t* wide = tvFltToG(1e10, 3, 0x2103, 0);
    EXPECT_EQ(wide[1], static_cast<wchar_t>(0x2103));
    _tvFree(wide);
}

TEST(TvFltTo, WritesNothingBehindTheTerminator)
{
    for (const double value : {0.0, -1.0, 12345.6789, 0.001, 98765432.125, 1e22, 1e-7}) {
        for (int precision = 0; precision < 20; ++precision) {
            char out[100];
            const auto behindIsUntouched = [&] {
                const std::string text = out;
                return std::string(out + text.size() + 1, out + sizeof out) ==
                       std::string(sizeof out - text.size() - 1, '#');
            };
            std::fill(out, out + sizeof out, '#');
            tvFltToF(out, value, precision);
            EXPECT_TRUE(behindIsUntouched()) << value << " f " << precision;
            std::fill(out, out + sizeof out, '#');
            tvFltToE(out, value, precision, 'e');
            EXPECT_TRUE(behindIsUntouched()) << value << " e " << precision;
            std::fill(out, out + sizeof out, '#');
            tvFltToG(out, value, precision, 'e', 0);
            EXPECT_TRUE(behindIsUntouched()) << value << " g " << precision;
        }
    }
}

TEST(TvFltTo, WideTextThatCannotBeAllocatedIsNull)
{
    const int most = std::numeric_limits<int>::max();
    EXPECT_EQ(tvFltToF(1.0, most), nullptr);
    EXPECT_EQ(tvFltToE(1.0, most, 'e'), nullptr);
    EXPECT_EQ(tvFltToG(1.0, most, 'e', 0), nullptr);
}

TEST(TvFltTo, RoundingModeDoesNotMatter)
{
    const int modes[] = {FE_TONEAREST, FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO};
    for (const int rounding : modes) {
        char f[32], e[32], g[32];
        std::fesetround(rounding);
        tvFltToF(f, 2.675, 2);
        tvFltToE(e, 2.5, 0, 'e');
        tvFltToG(g, 0.3, 17, 'e', 0);
        std::fesetround(FE_TONEAREST);
        EXPECT_STREQ(f, "2.67");
        EXPECT_STREQ(e, "2.e+000");
        EXPECT_STREQ(g, "0.29999999999999999");
    }
}

TEST(TvCvt, EcvtRoundsToSignificantDigits)
{
    int point, sign;
    char* digits = tvEcvt(-1234.567, 5, &point, &sign);
    EXPECT_STREQ(digits, "12346");
    EXPECT_EQ(point, 4);
    EXPECT_EQ(sign, 1);
    tvFreeCvt(digits);
}

TEST(TvCvt, EcvtGoesOnBehindTheShortest)
{
    int point, sign;
    char* digits = tvEcvt(0.1, 20, &point, &sign);
    EXPECT_STREQ(digits, "10000000000000000555");
    EXPECT_EQ(point, 0);
    tvFreeCvt(digits);
}

TEST(TvCvt, FcvtRoundsToPlaces)
{
    int point, sign;
    char* digits = tvFcvt(1234.567, 2, &point, &sign);
    EXPECT_STREQ(digits, "123457");
    EXPECT_EQ(point, 4);
    EXPECT_EQ(sign, 0);
    tvFreeCvt(digits);
}

TEST(TvCvt, FcvtStopsAtTheShortest)
{
    int point, sign;
    char* digits = tvFcvt(0.1, 20, &point, &sign);
    EXPECT_STREQ(digits, "1");
    EXPECT_EQ(point, 0);
    tvFreeCvt(digits);
}

TEST(TvCvt, NullMayBeFreed) { tvFreeCvt(nullptr); }

} // namespace

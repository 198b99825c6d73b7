#include "TvNumber.h"

#include "ExactDecimal.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cfenv>
#include <clocale>
#include <cmath>
#include <cstddef>
#include <string>

namespace {

constexpr double kInfinity = HUGE_VAL;

struct Case {
    const char* name;
    const char* text;
    double value;
    std::size_t used;
    int error = 0;
};

class TvStrToD : public testing::TestWithParam<Case> {};

void expectSame(double actual, double expected)
{
    EXPECT_EQ(actual, expected);
    EXPECT_EQ(std::signbit(actual), std::signbit(expected));
}

TEST_P(TvStrToD, ReadsNarrowText)
{
    const Case& c = GetParam();
    char* end = nullptr;
    errno = 0;
    expectSame(tvStrToD(c.text, &end), c.value);
    EXPECT_EQ(errno, c.error);
    EXPECT_EQ(static_cast<std::size_t>(end - c.text), c.used);
}

TEST_P(TvStrToD, ReadsWideText)
{
    const Case& c = GetParam();
    const std::string narrow = c.text;
    const std::wstring text(narrow.begin(), narrow.end());
    wchar_t* end = nullptr;
    errno = 0;
    expectSame(tvStrToD(text.c_str(), &end), c.value);
    EXPECT_EQ(errno, c.error);
    EXPECT_EQ(static_cast<std::size_t>(end - text.c_str()), c.used);
}

const Case kSyntax[] = {
    {"SpacesSignExponentAndRest", "  -12.5e1x", -125, 9},
    {"EveryWhiteSpace", "\t\n\v\f\r 7", 7, 7},
    {"PlusSign", "+3", 3, 2},
    {"TwoSigns", "+-3", 0, 0},
    {"SignAlone", "+", 0, 0},
    {"MinusAloneIsPlusZero", "-", 0, 0},
    {"SignThenLetter", "-x", 0, 0},
    {"SpaceAfterSign", "- 1", 0, 0},
    {"PointAlone", ".", 0, 0},
    {"MinusPointIsPlusZero", "-.", 0, 0},
    {"Empty", "", 0, 0},
    {"SpacesAlone", "   ", 0, 0},
    {"PointFirst", ".5", 0.5, 2},
    {"PointLast", "5.", 5, 2},
    {"PointLastThenExponent", "5.e1", 50, 4},
    {"TwoPoints", "1.2.3", 1.2, 3},
    {"CommaIsNoPoint", "1,5", 1, 1},
    {"LeadingZeros", "000123", 123, 6},
    {"ZerosBehindThePoint", "0.000123", 0.000123, 8},
    {"TrailingZeros", "1.5000", 1.5, 6},
    {"ExponentWithoutDigits", "1e", 1, 1},
    {"ExponentSignWithoutDigits", "1e+", 1, 1},
    {"ExponentMinusWithoutDigits", "1e-x", 1, 1},
    {"ExponentAfterSpace", "1 e5", 1, 1},
    {"CapitalExponent", "2E3", 2000, 3},
    {"NegativeExponent", "25e-1", 2.5, 5},
    {"LeadingZerosOfTheExponent", "1e0000000000000000000002", 100, 24},
    {"ZerosOfTheExponentAlone", "1e000x", 1, 5},
    {"ExponentWithoutMantissa", "e5", 0, 0},
    {"PointThenExponent", ".e5", 0, 0},
    {"Hexadecimal", "0x10", 0, 1},
    {"WordInf", "inf", 0, 0},
    {"WordNan", "nan", 0, 0},
    {"FloatSuffix", "1.5f", 1.5, 3},
    {"NegativeZero", "-0", -0.0, 2},
    {"NegativeZeroWithPlaces", "-0.000e5", -0.0, 8},
};

const Case kRange[] = {
    {"TooLarge", "1e400", kInfinity, 5, ERANGE},
    {"TooLargeNegative", "-1e400", -kInfinity, 6, ERANGE},
    {"TooSmall", "1e-400", 0, 6, ERANGE},
    {"TooSmallNegative", "-1e-400", -0.0, 7, ERANGE},
    {"ZeroWithHugeExponent", "0e99999", 0, 7},
    {"ZeroWithSmallExponent", "-0.0e-99999", -0.0, 11},
    {"LargestDouble", "1.7976931348623157e308", 1.7976931348623157e308, 22},
    {"BelowTheMiddleAboveTheLargest", "1.797693134862315807e308", 1.7976931348623157e308, 24},
    {"AboveTheMiddleAboveTheLargest", "1.797693134862315808e308", kInfinity, 24, ERANGE},
    {"SmallestSubnormal", "5e-324", 5e-324, 6},
    {"AboveHalfTheSmallest", "2.4703282292062328e-324", 5e-324, 23},
    {"BelowHalfTheSmallest", "2.4703282292062327e-324", 0, 23, ERANGE},
    {"SubnormalSetsNoError", "1e-310", 1e-310, 6},
    {"LargestSubnormal", "2.2250738585072009e-308", 2.2250738585072009e-308, 23},
    {"BetweenSubnormalAndNormal", "2.2250738585072011e-308", 2.2250738585072011e-308, 23},
    {"SmallestNormal", "2.2250738585072014e-308", 2.2250738585072014e-308, 23},
    {"ExponentOfNineDigits", "1e999999999", kInfinity, 11, ERANGE},
    {"ExponentBeyondAnyInteger", "1e-99999999999999999999", 0, 23, ERANGE},
};

const Case kRounding[] = {
    {"TieToEvenDown", "9007199254740993", 9007199254740992.0, 16},
    {"TieToEvenUp", "9007199254740995", 9007199254740996.0, 16},
    {"TieWithZerosBehind", "9007199254740993.00000000000000000000", 9007199254740992.0, 37},
    {"JustAboveTheTie", "9007199254740993.00000000000000000001", 9007199254740994.0, 37},
    {"TieOfTwentyDigits", "10300000832678917120", 0x1.1de1e85f041bep+63, 20},
    {"ExactPowerOfTen", "1e22", 1e22, 4},
    {"PowerOfTenWithATie", "1e23", 1e23, 4},
    {"NineteenDigits", "1234567890123456789", 1234567890123456768.0, 19},
    {"MultipleOf2To64", "18446744073709551616", 0x1p64, 20},
    {"MultipleOf2To64WithPlaces", "18446744073709551616.5", 0x1p64, 22},
    {"ManyZerosInFront", "000000000000000000000000.5", 0.5, 26},
    {"ZerosOnBothSidesOfThePoint", "0000.00000000000000000000000000123456789012345678901",
     1.2345678901234568e-27, 52},
    {"LongFraction", "0.1000000000000000055511151231257827021181583404541015625", 0.1, 57},
};

std::string nameOf(const testing::TestParamInfo<Case>& info) { return info.param.name; }

INSTANTIATE_TEST_SUITE_P(Syntax, TvStrToD, testing::ValuesIn(kSyntax), nameOf);
INSTANTIATE_TEST_SUITE_P(Range, TvStrToD, testing::ValuesIn(kRange), nameOf);
INSTANTIATE_TEST_SUITE_P(Rounding, TvStrToD, testing::ValuesIn(kRounding), nameOf);

struct BoundCase {
    ExactDecimal text;
    double value;
    int error;
};

// The middles in full, and a neighbour of each: one unit of the last digit less or more.
TEST(TvStrToDRange, EndsExactlyAtTheMiddles)
{
    ExactDecimal aboveLargest = exactDecimal((std::uint64_t{1} << 54) - 1, 970);
    ExactDecimal halfSmallest = exactDecimal(1, -1075);
    const ExactDecimal overflow = aboveLargest, underflow = halfSmallest;
    --aboveLargest.digits.back();
    ++halfSmallest.digits.back();
    const BoundCase cases[] = {
        {overflow, kInfinity, ERANGE},
        {aboveLargest, 0x1.fffffffffffffp1023, 0},
        {underflow, 0, ERANGE},
        {halfSmallest, 0x1p-1074, 0},
    };
    for (const BoundCase& c : cases) {
        const std::string text = "0." + c.text.digits + "e" + std::to_string(c.text.point);
        errno = 0;
        EXPECT_EQ(tvStrToD(text.c_str(), nullptr), c.value) << text;
        EXPECT_EQ(errno, c.error) << text;
    }
}

TEST(TvStrToDEnd, MayBeLeftOut)
{
    EXPECT_EQ(tvStrToD("2.5", nullptr), 2.5);
    EXPECT_EQ(tvStrToD(L"2.5", nullptr), 2.5);
}

TEST(TvStrToDErrno, IsLeftAloneButForTheRange)
{
    for (const char* text :
         {"1.5", "-0", "1e-310", "x", "", "1e", "9007199254740993", "123456789012345678901"}) {
        errno = 77;
        tvStrToD(text, nullptr);
        EXPECT_EQ(errno, 77) << text;
        const std::string narrow = text;
        tvStrToD(std::wstring(narrow.begin(), narrow.end()).c_str(), nullptr);
        EXPECT_EQ(errno, 77) << text;
    }
}

TEST(TvStrToDExponent, From20000OnCountsAs19999)
{
    const std::string zeros(20010, '0');
    // 10^-20011 times the exponent.
    const std::string small = "0." + zeros + "1";
    EXPECT_EQ(tvStrToD((small + "e19999").c_str(), nullptr), 1e-12);
    EXPECT_EQ(tvStrToD((small + "e20000").c_str(), nullptr), 1e-12);
    EXPECT_EQ(tvStrToD((small + "e123456789").c_str(), nullptr), 1e-12);
    EXPECT_EQ(tvStrToD((small + "e19998").c_str(), nullptr), 1e-13);
    EXPECT_EQ(tvStrToD(("1" + zeros + "e-30000").c_str(), nullptr), 1e11);
}

// A million characters of each kind. Time that grows with the square would be hours, and
// the program stopped long before.
class TvStrToDLongText : public testing::Test {
protected:
    static void expectValue(const std::string& text, double value, int error = 0)
    {
        char* end = nullptr;
        errno = 0;
        expectSame(tvStrToD(text.c_str(), &end), value);
        EXPECT_EQ(errno, error);
        EXPECT_EQ(end, text.c_str() + text.size());
        const std::wstring wide(text.begin(), text.end());
        wchar_t* wideEnd = nullptr;
        errno = 0;
        expectSame(tvStrToD(wide.c_str(), &wideEnd), value);
        EXPECT_EQ(errno, error);
        EXPECT_EQ(wideEnd, wide.c_str() + wide.size());
    }

    const std::string m_zeros = std::string(1000000, '0');
    const std::string m_nines = std::string(1000000, '9');
};

TEST_F(TvStrToDLongText, ZerosBehindATie) { expectValue("9007199254740993." + m_zeros, 9007199254740992.0); }

TEST_F(TvStrToDLongText, DigitFarBehindATie)
{
    expectValue("9007199254740993." + m_zeros + "1", 9007199254740994.0);
}

TEST_F(TvStrToDLongText, ZerosInFront) { expectValue("-" + m_zeros + "1.5", -1.5); }

TEST_F(TvStrToDLongText, WholeNumberTooLarge) { expectValue("1" + m_zeros, kInfinity, ERANGE); }

TEST_F(TvStrToDLongText, FractionTooSmall) { expectValue("-0." + m_zeros + "1", -0.0, ERANGE); }

TEST_F(TvStrToDLongText, NinesRoundUp) { expectValue("0." + m_nines, 1.0); }

TEST_F(TvStrToDLongText, NothingButZeros) { expectValue("-" + m_zeros + "." + m_zeros + "e7", -0.0); }

TEST_F(TvStrToDLongText, ZerosInTheExponent) { expectValue("25e-" + m_zeros + "1", 2.5); }

TEST_F(TvStrToDLongText, DigitsInTheExponent) { expectValue("1e" + m_nines, kInfinity, ERANGE); }

TEST_F(TvStrToDLongText, DigitsInANegativeExponent) { expectValue("-1e-" + m_nines, -0.0, ERANGE); }

TEST_F(TvStrToDLongText, WhiteSpaceInFront) { expectValue(std::string(1000000, ' ') + "7", 7.0); }

TEST(TvStrToDEnvironment, RoundingModeDoesNotMatterAndStays)
{
    const int modes[] = {FE_TONEAREST, FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO};
    for (const int rounding : modes) {
        SCOPED_TRACE(rounding);
        std::fesetround(rounding);
        std::feclearexcept(FE_ALL_EXCEPT);
        const double tenth = tvStrToD("0.1", nullptr);
        const double tie = tvStrToD("9007199254740993.000", nullptr);
        const double wide = tvStrToD(L"9007199254740993.0000000000001", nullptr);
        const int flags = std::fetestexcept(FE_ALL_EXCEPT);
        const int after = std::fegetround();
        std::fesetround(FE_TONEAREST);
        EXPECT_EQ(tenth, 0x1.999999999999ap-4);
        EXPECT_EQ(tie, 9007199254740992.0);
        EXPECT_EQ(wide, 9007199254740994.0);
        EXPECT_EQ(flags, 0);
        EXPECT_EQ(after, rounding);
    }
}

TEST(TvStrToDWide, CharactersBeyondAsciiAreNoDigits)
{
    const wchar_t text[] = {L'1', static_cast<wchar_t>(0x0662), L'3', 0};
    wchar_t* end = nullptr;
    EXPECT_EQ(tvStrToD(text, &end), 1.0);
    EXPECT_EQ(end, text + 1);
    const wchar_t large[] = {static_cast<wchar_t>(0x10030), static_cast<wchar_t>(-48), 0};
    EXPECT_EQ(tvStrToD(large, &end), 0.0);
    EXPECT_EQ(end, large);
}

TEST(TvStrToDNarrow, BytesAbove127AreNoDigits)
{
    const char text[] = "1\xB2\xE9";
    char* end = nullptr;
    EXPECT_EQ(tvStrToD(text, &end), 1.0);
    EXPECT_EQ(end, text + 1);
}

} // namespace

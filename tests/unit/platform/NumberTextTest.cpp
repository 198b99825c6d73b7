#include "TvPlatformBase.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cfloat>
#include <climits>
#include <cmath>
#include <string>

namespace {

constexpr int kUntouched = 12345;

struct IntegerCase {
    const char* name;
    const wchar_t* text;
    int value;
    int error;
};

class Integers : public testing::TestWithParam<IntegerCase> {};

TEST_P(Integers, AreRead)
{
    errno = kUntouched;
    EXPECT_EQ(_wtoi(GetParam().text), GetParam().value);
    EXPECT_EQ(errno, GetParam().error);
}

const IntegerCase kIntegers[] = {
    {"Plain", L"42", 42, kUntouched},
    {"Negative", L"-42", -42, kUntouched},
    {"PlusSign", L"+42", 42, kUntouched},
    {"LeadingSpace", L" \t\r\n\v\f42", 42, kUntouched},
    {"SpaceBeforeSign", L"  -7", -7, kUntouched},
    {"SpaceAfterSign", L"- 7", 0, kUntouched},
    {"TwoSigns", L"+-7", 0, kUntouched},
    {"SignAlone", L"-", 0, kUntouched},
    {"Empty", L"", 0, kUntouched},
    {"NoDigits", L"abc", 0, kUntouched},
    {"StopsAtText", L"12abc", 12, kUntouched},
    {"StopsAtPoint", L"3.9", 3, kUntouched},
    {"NoHexadecimal", L"0x10", 0, kUntouched},
    {"LeadingZeros", L"000000000000000000000017", 17, kUntouched},
    {"Largest", L"2147483647", INT_MAX, kUntouched},
    {"OneAboveLargest", L"2147483648", INT_MAX, ERANGE},
    {"Smallest", L"-2147483648", INT_MIN, kUntouched},
    {"OneBelowSmallest", L"-2147483649", INT_MIN, ERANGE},
    {"FarAbove", L"99999999999999999999999999", INT_MAX, ERANGE},
    {"FarBelow", L"-99999999999999999999999999", INT_MIN, ERANGE},
    {"WrapsTo64BitZero", L"18446744073709551616", INT_MAX, ERANGE},
    {"ArabicDigits", L"\x0661\x0662\x0663", 123, kUntouched},
    {"FullWidthDigits", L"-\xFF14\xFF12", -42, kUntouched},
    {"DevanagariDigits", L"\x0966\x096F", 9, kUntouched},
    {"MixedScripts", L"1\x0662\xFF13", 123, kUntouched},
    {"RomanNumeralIsNoDigit", L"\x2163", 0, kUntouched},
    {"SuperscriptIsNoDigit", L"\x00B2", 0, kUntouched},
    {"BehindARunOfDigits", L"\x066A", 0, kUntouched},
    {"Null", nullptr, 0, EINVAL},
};
INSTANTIATE_TEST_SUITE_P(NumberText, Integers, testing::ValuesIn(kIntegers),
                         [](const auto& instance) { return instance.param.name; });

struct FloatCase {
    const char* name;
    const wchar_t* text;
    double value;
    int error;
};

class Floats : public testing::TestWithParam<FloatCase> {};

TEST_P(Floats, AreRead)
{
    errno = kUntouched;
    const double value = _wtof(GetParam().text);
    EXPECT_EQ(value, GetParam().value);
    EXPECT_EQ(std::signbit(value), std::signbit(GetParam().value));
    EXPECT_EQ(errno, GetParam().error);
}

const FloatCase kFloats[] = {
    {"Integer", L"42", 42, kUntouched},
    {"Fraction", L"-2.5", -2.5, kUntouched},
    {"PointFirst", L".5", 0.5, kUntouched},
    {"PointLast", L"5.", 5, kUntouched},
    {"PointAlone", L".", 0, kUntouched},
    {"SecondPointEnds", L"1.5.5", 1.5, kUntouched},
    {"CommaEnds", L"1,5", 1, kUntouched},
    {"LeadingSpace", L" \t\n1.25", 1.25, kUntouched},
    {"SpaceAfterSign", L"- 1", 0, kUntouched},
    {"Exponent", L"1.5e3", 1500, kUntouched},
    {"CapitalExponent", L"1.5E+3", 1500, kUntouched},
    {"NegativeExponent", L"25e-1", 2.5, kUntouched},
    {"ExponentWithoutDigits", L"7e", 7, kUntouched},
    {"ExponentWithSignOnly", L"7e+", 7, kUntouched},
    {"ExponentLetterAlone", L"e5", 0, kUntouched},
    {"StopsAtText", L"1.5mm", 1.5, kUntouched},
    {"FortranExponentIsText", L"1d3", 1, kUntouched},
    {"NoNumber", L"abc", 0, kUntouched},
    {"Empty", L"", 0, kUntouched},
    {"NegativeZero", L"-0", -0.0, kUntouched},
    {"ZeroWithHugeExponent", L"0e999999999999999999999", 0, kUntouched},
    {"Largest", L"1.7976931348623157e308", DBL_MAX, kUntouched},
    {"Overflow", L"1e309", HUGE_VAL, ERANGE},
    {"NegativeOverflow", L"-1e309", -HUGE_VAL, ERANGE},
    {"HugeExponent", L"1e99999999999999999999999", HUGE_VAL, ERANGE},
    {"SmallestNormal", L"2.2250738585072014e-308", DBL_MIN, kUntouched},
    {"SmallestSubnormal", L"4.9406564584124654e-324", DBL_TRUE_MIN, kUntouched},
    {"HalfOfSmallestRoundsToZero", L"2.4703282292062327e-324", 0, ERANGE},
    {"JustAboveHalfOfSmallest", L"2.4703282292062328e-324", DBL_TRUE_MIN, kUntouched},
    {"Underflow", L"-1e-400", -0.0, ERANGE},
    {"TinyExponent", L"1e-99999999999999999999999", 0, ERANGE},
    {"TieGoesToEven", L"9007199254740993", 9007199254740992.0, kUntouched},
    {"AboveTie", L"9007199254740993.00000000000000000001", 9007199254740994.0, kUntouched},
    {"Hexadecimal", L"0x1.8p3", 12, kUntouched},
    {"HexadecimalCapitals", L"-0X.8P-1", -0.25, kUntouched},
    {"HexadecimalWithoutExponent", L"0xff", 255, kUntouched},
    {"HexadecimalPrefixAlone", L"0xg", 0, kUntouched},
    {"HexadecimalPointAlone", L"0x.", 0, kUntouched},
    {"HexadecimalZero", L"0x0p5", 0, kUntouched},
    {"Infinity", L"infinity", HUGE_VAL, kUntouched},
    {"NegativeInf", L"-Inf", -HUGE_VAL, kUntouched},
    {"ArabicDigits", L"\x0661.\x0665", 1.5, kUntouched},
    {"FullWidthExponent", L"1e\xFF13", 1000, kUntouched},
    {"Null", nullptr, 0, EINVAL},
};
INSTANTIATE_TEST_SUITE_P(NumberText, Floats, testing::ValuesIn(kFloats),
                         [](const auto& instance) { return instance.param.name; });

TEST(FloatText, NotANumberInAnyCase)
{
    EXPECT_TRUE(std::isnan(_wtof(L"nan")));
    EXPECT_TRUE(std::isnan(_wtof(L" +NaN(12)")));
}

TEST(FloatText, ManyZerosAndAnExponentCancel)
{
    const std::wstring zeros(100000, L'0');
    EXPECT_EQ(_wtof((L"1" + zeros + L"e-100000").c_str()), 1.0);
    EXPECT_EQ(_wtof((L"." + zeros + L"25e100001").c_str()), 2.5);
}

TEST(FloatText, ADigitFarBehindBreaksATie)
{
    std::wstring text = L"9007199254740993.";
    text.append(5000, L'0');
    EXPECT_EQ(_wtof(text.c_str()), 9007199254740992.0);
    EXPECT_EQ(_wtof((text + L'1').c_str()), 9007199254740994.0);
}

TEST(FloatText, AHexadecimalDigitFarBehindBreaksATie)
{
    std::wstring text = L"0x20000000000001.";
    text.append(5000, L'0');
    EXPECT_EQ(_wtof(text.c_str()), 9007199254740992.0);
    EXPECT_EQ(_wtof((text + L'1').c_str()), 9007199254740994.0);
}

} // namespace

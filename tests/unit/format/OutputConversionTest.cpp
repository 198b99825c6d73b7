// Every conversion letter, flag and size of the output engine, each case run plainly and
// with numbered arguments.
#include "CaseName.h"
#include "FormatCase.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

struct ConversionCase {
    const char* name;
    const wchar_t* format;
    std::wstring expected;
    FormatArgumentsOf arguments;
};

template<class... Args>
FormatArgumentsOf of(Args... args)
{
    return [=](FormatCall& call) { return call(args...); };
}

class OutputConversion : public testing::TestWithParam<ConversionCase> {};

TEST_P(OutputConversion, Plain)
{
    FormatCall call(GetParam().format, FormatCall::kRoom);
    const Formatted got = GetParam().arguments(call);
    EXPECT_EQ(got.text, GetParam().expected);
    EXPECT_EQ(got.result, static_cast<int>(GetParam().expected.size()));
}

TEST_P(OutputConversion, WithNumberedArguments)
{
    const std::wstring format = numberedForm(GetParam().format);
    FormatCall call(format.c_str(), FormatCall::kRoom);
    const Formatted got = GetParam().arguments(call);
    EXPECT_EQ(got.text, GetParam().expected) << "format " << testing::PrintToString(format);
    EXPECT_EQ(got.result, static_cast<int>(GetParam().expected.size()));
}

const double kInf = std::numeric_limits<double>::infinity();
const double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr long long kWide = 0x1234567800000000LL;

const ConversionCase kLetters[] = {
    {"Literal", L"wall 12", L"wall 12", of()},
    {"Empty", L"", L"", of()},
    {"Percent", L"100%%", L"100%", of()},
    {"Character", L"%c", L"A", of(int{L'A'})},
    {"CharacterBeyondAscii", L"%c", L"\x4E2D", of(0x4E2D)},
    {"Text", L"[%s]", L"[door]", of(L"door")},
    {"NullTextIsEmpty", L"[%s]", L"[]", of(static_cast<const wchar_t*>(nullptr))},
    {"Decimal", L"%d", L"42", of(42)},
    {"DecimalNegative", L"%d", L"-42", of(-42)},
    {"DecimalSmallest", L"%d", L"-2147483648", of(INT_MIN)},
    {"DecimalLargest", L"%d", L"2147483647", of(INT_MAX)},
    {"DecimalZero", L"%d", L"0", of(0)},
    {"I", L"%i", L"-7", of(-7)},
    {"Unsigned", L"%u", L"4294967295", of(-1)},
    {"Octal", L"%o", L"10", of(8)},
    {"OctalLargest", L"%o", L"37777777777", of(-1)},
    {"HexIsUpperCase", L"%x", L"FF", of(255)},
    {"PointerPrintsLow32Bits", L"%p", L"DEADBEEF", of(0xDEADBEEFu)},
    {"Binary", L"%b", L"101", of(5)},
    {"BinaryLargest", L"%b", std::wstring(32, L'1'), of(-1)},
    {"WideDecimal", L"%D", L"42", of(kWide + 42)},
    {"WideDecimalNegative", L"%D", L"-1", of(0x12FFFFFFFFLL)},
    {"WideI", L"%I", L"42", of(kWide + 42)},
    {"WideUnsigned", L"%U", L"4294967295", of(-1LL)},
    {"WideOctal", L"%O", L"10", of(kWide + 8)},
    {"WideHex", L"%X", L"FF", of(kWide + 255)},
    {"WideBinary", L"%B", L"101", of(kWide + 5)},
    {"Fixed", L"%f", L"1.500000", of(1.5)},
    {"FixedNegative", L"%f", L"-1.500000", of(-1.5)},
    {"FixedZero", L"%f", L"0.000000", of(0.0)},
    {"Exponent", L"%e", L"1.234568E+004", of(12345.678)},
    {"ExponentSmall", L"%e", L"1.230000E-004", of(0.000123)},
    {"ExponentZero", L"%e", L"0.000000E+000", of(0.0)},
    {"General", L"%g", L"1.500000", of(1.5)},
    {"GeneralUpper", L"%G", L"1.500000", of(1.5)},
    {"GeneralTurnsAt1e5", L"%g", L"1.234560E+005", of(123456.0)},
    {"GeneralFixedBelow1e5", L"%g", L"12345.000000", of(12345.0)},
    {"GeneralFixedDownTo1e4", L"%g", L"0.000100", of(0.0001)},
    {"GeneralExponentBelow1e4", L"%g", L"1.000000E-005", of(0.00001)},
    {"UpperEIsNoConversion", L"%E", L"E", of()},
    {"UpperFIsNoConversion", L"%F", L"F", of()},
    {"HashIsNoFlag", L"%#x", L"#x", of()},
    {"BlankIsNoFlag", L"% d", L" d", of()},
    {"UnknownLetter", L"%y|%w", L"y|w", of()},
};
INSTANTIATE_TEST_SUITE_P(Letters, OutputConversion, testing::ValuesIn(kLetters), nameOfCase<ConversionCase>);

const ConversionCase kFlagsAndSizes[] = {
    {"Width", L"%5d", L"   42", of(42)},
    {"WidthEqual", L"%2d", L"42", of(42)},
    {"WidthShorter", L"%1d", L"42", of(42)},
    {"Left", L"%-5d|", L"42   |", of(42)},
    {"Zero", L"%05d", L"-0042", of(-42)},
    {"ZeroPositive", L"%05d", L"00042", of(42)},
    {"LeftForcesBlanks", L"%-05d|", L"42   |", of(42)},
    {"PlusIgnoredByIntegers", L"%+d", L"42", of(42)},
    {"MinusPlus", L"%-+8.1f|", L"+2.0    |", of(2.0)},
    {"PlusMinus", L"%+-8.1f|", L"+2.0    |", of(2.0)},
    {"ZeroOnText", L"%06s", L"000abc", of(L"abc")},
    {"ZeroOnTextKeepsItsSign", L"%06s", L"000-ab", of(L"-ab")},
    {"ZeroOnCharacter", L"%03c", L"00x", of(int{L'x'})},
    {"ZeroOnPlusFixed", L"%+08.2f", L"+0001.50", of(1.5)},
    {"ZeroOnNegativeExponent", L"%015e", L"-01.500000E+000", of(-1.5)},
    {"TextWidth", L"%5s|", L"  abc|", of(L"abc")},
    {"TextLeft", L"%-5s|", L"abc  |", of(L"abc")},
    {"NullTextPadded", L"%3s|", L"   |", of(static_cast<const wchar_t*>(nullptr))},
    {"TextPrecision", L"%.3s", L"abc", of(L"abcdef")},
    {"TextPrecisionLonger", L"%.9s", L"abc", of(L"abc")},
    {"TextPrecisionZero", L"[%.s]", L"[]", of(L"abc")},
    {"UnknownPadded", L"%3%|", L"  %|", of()},
    {"SignLetterPaddedLikeText", L"%03-|%03+|", L"00-|00+|", of()},
    {"StarWidth", L"%*d", L"   42", of(5, 42)},
    {"StarWidthZero", L"%*d", L"42", of(0, 42)},
    {"StarPrecision", L"%.*f", L"1.50", of(2, 1.5)},
    {"NegativeStarPrecisionIsNone", L"%.*f", L"1.500000", of(-1, 1.5)},
    {"NegativeStarPrecisionOnInteger", L"%.*d", L"5", of(-1, 5)},
    {"NegativeStarPrecisionOnText", L"%.*s", L"abc", of(-3, L"abc")},
    {"StarBoth", L"%*.*f|", L"    1.5|", of(7, 1, 1.5)},
    {"StarLeft", L"%-*d|", L"42   |", of(5, 42)},
    {"LongDecimal", L"%ld", L"42", of(42)},
    {"UpperLong", L"%Ld", L"42", of(42)},
    {"Short", L"%hd", L"70000", of(70000)},
    {"LongDouble", L"%lf", L"1.500000", of(1.5)},
    {"TwoLongsPrintTheSecond", L"%lld", L"ld", of()},
    {"LongWide", L"%lX", L"FF", of(kWide + 255)},
    {"SeveralArguments", L"%s %d %.1f %c", L"a 7 2.5 z", of(L"a", 7, 2.5, int{L'z'})},
};
INSTANTIATE_TEST_SUITE_P(FlagsAndSizes, OutputConversion, testing::ValuesIn(kFlagsAndSizes),
                         nameOfCase<ConversionCase>);

const ConversionCase kIntegerPoints[] = {
    {"PointInsideZeros", L"%.2d", L"0.05", of(5)},
    {"PointAtTheEnd", L"%.0d", L"5.", of(5)},
    {"PointWithoutDigits", L"%.d", L"5.", of(5)},
    {"PointInside", L"%.3d", L"123.456", of(123456)},
    {"PointInsideNegative", L"%.2d", L"-12.34", of(-1234)},
    {"AllDigitsBehind", L"%.2d", L"0.12", of(12)},
    {"OneDigitBefore", L"%.1d", L"1.2", of(12)},
    {"NegativeInsideZeros", L"%.3d", L"-0.005", of(-5)},
    {"Hex", L"%.1x", L"F.F", of(255)},
    {"Binary", L"%.4b", L"0.0101", of(5)},
    {"Wide", L"%.2D", L"0.42", of(kWide + 42)},
    {"UnsignedBelow2To31", L"%.9u", L"2.147483647", of(INT_MAX)},
    {"UnsignedFrom2To31KeepsItsFirstDigit", L"%.9u", L"20.147483648", of(INT_MIN)},
    {"UnsignedFrom2To31ShortFraction", L"%.2u", L"42949672.95", of(-1)},
    {"HexFrom2To31", L"%.7x", L"F0.FFFFFFF", of(-1)},
    {"WithWidth", L"%7.2d", L"   0.05", of(5)},
    {"WithZeroPad", L"%07.2d", L"-000.05", of(-5)},
    {"WithLeft", L"%-7.2d|", L"0.05   |", of(5)},
    {"LongestField", L"%.2046d", L"0." + std::wstring(2045, L'0') + L"5", of(5)},
};
INSTANTIATE_TEST_SUITE_P(IntegerPoints, OutputConversion, testing::ValuesIn(kIntegerPoints),
                         nameOfCase<ConversionCase>);

const ConversionCase kReals[] = {
    {"SixteenDigits", L"%.20f", L"1.000000000000000", of(1.0)},
    {"SixteenDigitsOfAFraction", L"%.20f", L"0.1000000000000000", of(0.1)},
    {"HalfUp", L"%.0f", L"3", of(2.5)},
    {"HalfUpOdd", L"%.0f", L"2", of(1.5)},
    {"HalfUpNegative", L"%.0f", L"-3", of(-2.5)},
    {"HalfOfOne", L"%.0f", L"1", of(0.5)},
    {"BelowHalf", L"%.0f", L"0", of(0.4999999)},
    {"ScaledMantissaDecidesATie", L"%.0f", L"48168", of(48168.5)},
    {"PrecisionZeroHasNoPoint", L"%.0f", L"12", of(12.0)},
    {"DotAloneIsPrecisionZero", L"%.f", L"12", of(12.0)},
    {"ZeroPrecisionZero", L"%.0f", L"0", of(0.0)},
    {"TooSmall", L"%.2f", L"0.00", of(0.0001)},
    {"TooSmallNegativeKeepsTheSign", L"%.2f", L"-0.00", of(-0.0001)},
    {"NegativeZeroHasNoSign", L"%f", L"0.000000", of(-0.0)},
    {"NegativeZeroWithPlus", L"%+f", L"+0.000000", of(-0.0)},
    {"CarryIntoANewDigit", L"%.2f", L"10.00", of(9.999)},
    {"CarryFromZero", L"%.1f", L"1.0", of(0.96)},
    {"Plus", L"%+.1f", L"+2.0", of(2.0)},
    {"PlusNegative", L"%+.1f", L"-2.0", of(-2.0)},
    {"PlusGeneralFixed", L"%+g", L"+1.500000", of(1.5)},
    {"PlusGeneralExponentIgnored", L"%+g", L"1.500000E+006", of(1500000.0)},
    {"PlusExponentIgnored", L"%+e", L"1.500000E+000", of(1.5)},
    {"ExponentPrecisionZero", L"%.0e", L"2E+003", of(1500.0)},
    {"ExponentSixteenDigits", L"%.30e", L"1.000000000000000E+000", of(1.0)},
    {"ExponentThreeDigits", L"%.1e", L"1.8E+308", of(1.7976931348623157e308)},
    {"ExponentSmallest", L"%.2e", L"4.94E-324", of(5e-324)},
    {"ExponentNegative", L"%.2e", L"-1.50E-007", of(-1.5e-7)},
    {"ExponentCarry", L"%.2e", L"1.00E+001", of(9.999)},
    {"GeneralPrecisionIsFractionDigits", L"%.2g", L"123.46", of(123.456)},
    {"GeneralCarryStaysFixed", L"%.1g", L"100000.0", of(99999.96)},
    {"SixteenIntegerDigits", L"%f", L"1234567890123456", of(1234567890123456.0)},
    {"FifteenIntegerDigits", L"%f", L"123456789012345.5", of(123456789012345.5)},
    {"Infinity", L"%f|%e|%g|%G", L"Infinity|Infinity|Infinity|Infinity", of(kInf, kInf, kInf, kInf)},
    {"NegativeInfinity", L"%f", L"-Infinity", of(-kInf)},
    {"NaN", L"%f|%e|%g", L"NaN|NaN|NaN", of(kNan, -kNan, kNan)},
    {"NaNPaddedLikeText", L"%06f", L"000NaN", of(kNan)},
    {"InfinityPaddedLikeText", L"%012.1f", L"000-Infinity", of(-kInf)},
    {"InfinityHasNoPlus", L"%+f", L"Infinity", of(kInf)},
    {"NaNInUnits", L"%q0|%q2", L"NaN|NaN", of(kNan, kNan)},
    {"InfinityInUnitsPaddedLikeText", L"%012q0", L"000-Infinity", of(-kInf)},
    {"InfinityInUnits", L"%q0|%5q3|%q1", L"-Infinity|-Infinity|Infinity", of(-kInf, -kInf, kInf)},
};
INSTANTIATE_TEST_SUITE_P(Reals, OutputConversion, testing::ValuesIn(kReals), nameOfCase<ConversionCase>);

const ConversionCase kUnits[] = {
    {"Digit", L"%.20q0", L"66.5000", of(66.5)},
    {"UpperLetter", L"%.20Q0", L"66.5000", of(66.5)},
    {"Star", L"%.20q*", L"66.5000", of(0, 66.5)},
    {"StarWithFlags", L"%.20q*", L"66.5", of(0x0800, 66.5)},
    {"WidthAndMode", L"%9.20q0|", L"  66.5000|", of(66.5)},
    {"LeftAndMode", L"%-9.20q0|", L"66.5000  |", of(66.5)},
    {"ZeroPadBehindTheSign", L"%09.20q0", L"-066.5000", of(-66.5)},
    {"NegativeZeroLosesTheSign", L"%.20q0", L"0.0000", of(-0.00001)},
    {"SixCharactersUnlessSaid", L"%q0", L"1.0000", of(1.0)},
    {"LongerTextTurnsScientific", L"%q0", L"1E+03", of(1234.5)},
    {"DollarAfterTheModeIsText", L"%.20q0$", L"1.0000$", of(1.0)},
    {"KindsAboveThreeHaveNoText", L"[%.20q4]", L"[]", of(1.0)},
};
INSTANTIATE_TEST_SUITE_P(Units, OutputConversion, testing::ValuesIn(kUnits), nameOfCase<ConversionCase>);

TEST(OutputReal, MoreThanSixteenIntegerDigitsRunOnToThe125thCharacter)
{
    for (const wchar_t* format : {L"%f", L"%.0f", L"%.2f"}) {
        FormatCall call(format, FormatCall::kRoom);
        const Formatted got = call(1e20);
        EXPECT_EQ(got.result, 125);
        EXPECT_EQ(got.text.substr(0, 22), L"100000000000000000000.");
    }
}

TEST(OutputReal, SeventeenIntegerDigitsRunOn)
{
    FormatCall call(L"%.0f", FormatCall::kRoom);
    EXPECT_EQ(call(12345678901234568.0).result, 125);
}

TEST(OutputReal, PlusSignIsNotAmongThe125Characters)
{
    FormatCall call(L"%+f", FormatCall::kRoom);
    EXPECT_EQ(call(1e20).result, 126);
}

TEST(OutputReal, MinusSignIsAmongThe125Characters)
{
    FormatCall call(L"%f", FormatCall::kRoom);
    EXPECT_EQ(call(-1e20).result, 125);
}

TEST(OutputReal, IntegerDigitsStopAtThe125thCharacter)
{
    FormatCall call(L"%f", FormatCall::kRoom);
    const Formatted got = call(1e300);
    EXPECT_EQ(got.result, 125);
    EXPECT_EQ(got.text.find(L'.'), std::wstring::npos);
}

TEST(OutputReal, LeadingZerosStopAtThe125thCharacter)
{
    FormatCall call(L"%.200f", FormatCall::kRoom);
    const Formatted got = call(1e-150);
    EXPECT_EQ(got.text, L"0." + std::wstring(123, L'0'));
}

TEST(OutputReal, HugePrecisionIsSixteenDigits)
{
    FormatCall call(L"%.4294967295f", FormatCall::kRoom);
    EXPECT_EQ(call(2.0).text, L"2.000000000000000");
}

} // namespace

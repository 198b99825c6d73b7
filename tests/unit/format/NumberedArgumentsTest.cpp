// Formats with numbered arguments, and the operations that read such formats.
#include "CaseName.h"
#include "FormatCase.h"

#include <gtest/gtest.h>

namespace {

template<class... Args>
Formatted format(const wchar_t* text, Args... args)
{
    FormatCall call(text, FormatCall::kRoom);
    return call(args...);
}

TEST(NumberedArguments, AreTakenByNumber) { EXPECT_EQ(format(L"%2$s %1$d", 7, L"a").text, L"a 7"); }

TEST(NumberedArguments, MayRepeat) { EXPECT_EQ(format(L"%1$d %1$d %2$d", 7, 8).text, L"7 7 8"); }

TEST(NumberedArguments, SkippedNumberTakesNoArgument) { EXPECT_EQ(format(L"%1$d %3$d", 7, 8).text, L"7 8"); }

TEST(NumberedArguments, RecordsReachToTheLargestNumber)
{
    EXPECT_EQ(format(L"%1$d %3$d %3$d", 7, 8).text, L"7 8 8");
}

TEST(NumberedArguments, StarTakesItsNumber) { EXPECT_EQ(format(L"%1$*2$d|", 7, 4).text, L"   7|"); }

TEST(NumberedArguments, StarPrecisionTakesItsNumber)
{
    EXPECT_EQ(format(L"%1$.*2$f", 1.5, 3).text, L"1.500");
}

TEST(NumberedArguments, StarWithoutNumberTakesTheFirst) { EXPECT_EQ(format(L"%2$*d|", 4, 7).text, L"   7|"); }

TEST(NumberedArguments, NegativeStarWidthFails) { EXPECT_EQ(format(L"%1$*2$d", 7, -4).result, -1); }

TEST(NumberedArguments, ConversionWithoutNumberTakesTheFirst)
{
    EXPECT_EQ(format(L"%2$d %d", 7, 8).text, L"8 7");
}

TEST(NumberedArguments, DigitsWithoutDollarAreANumber) { EXPECT_EQ(format(L"%1$d %2d", 7, 8).text, L"7 8"); }

TEST(NumberedArguments, OrderIsThatOfTheNumbers)
{
    EXPECT_EQ(format(L"%3$s %2$.1f %1$c", int{L'x'}, 2.5, L"t").text, L"t 2.5 x");
}

TEST(NumberedArguments, WideSlotsAreFetchedAsSuch)
{
    EXPECT_EQ(format(L"%2$d %1$X", 0x1234567800000ABCLL, 5).text, L"5 ABC");
}

TEST(NumberedArguments, LastConversionGivesTheType)
{
    EXPECT_EQ(format(L"[%1$s] %1$d", 7).text, L"[] 7");
    EXPECT_EQ(format(L"%1$d [%1$s]", L"text").text, L"0 [text]");
}

TEST(NumberedArguments, SignedAndUnsignedAreOfDifferentType)
{
    EXPECT_EQ(format(L"%1$d %1$x", 255).text, L"0 FF");
    EXPECT_EQ(format(L"%1$x %1$d", 255).text, L"0 255");
    EXPECT_EQ(format(L"%1$d %1$c", int{L'A'}).text, L"0 A");
    EXPECT_EQ(format(L"%1$d %1$D", 255LL).text, L"0 255");
    EXPECT_EQ(format(L"%1$.1f %1$d", 255).text, L"0.0 255");
}

TEST(NumberedArguments, LettersOfOneTypeShareARecord)
{
    EXPECT_EQ(format(L"%1$d %1$i", 7).text, L"7 7");
    EXPECT_EQ(format(L"%1$b %1$o %1$p %1$u %1$x", 10).text, L"1010 12 A 10 A");
    EXPECT_EQ(format(L"%1$B %1$D %1$I %1$O %1$U %1$X", 10LL).text, L"1010 10 10 12 10 A");
    EXPECT_EQ(format(L"%1$.1f %1$.1e %1$.1g %1$.1G %1$.9q0", 2.5).text, L"2.5 2.5E+000 2.5 2.5 2.5000");
}

TEST(NumberedArguments, ZeroWithoutDollarIsANumberToo) { EXPECT_EQ(format(L"%1$d %0d", 7).result, -1); }

TEST(NumberedArguments, FlagsStandBehindTheNumber)
{
    EXPECT_EQ(format(L"%1$-5d|%1$05d|%2$+08.2f", 42, 1.5).text, L"42   |00042|+0001.50");
}

TEST(NumberedArguments, SkippedNumberShiftsLaterArgumentsOfAnyType)
{
    EXPECT_EQ(format(L"%1$s %3$.1f %4$s", L"a", 2.5, L"b").text, L"a 2.5 b");
}

TEST(NumberedArguments, StarOfAnotherTypeReadsZero)
{
    EXPECT_EQ(format(L"%1$*2$d|%2$s", 7, L"ab").text, L"7|ab");
}

TEST(NumberedArguments, UnitModeTakesItsNumber)
{
    EXPECT_EQ(format(L"%1$.20q*2", 66.5, 0x0800).text, L"66.5");
}

TEST(NumberedArguments, DollarBehindTheModeNumberIsText)
{
    EXPECT_EQ(format(L"%1$.20q*2$", 66.5, 0x0800).text, L"66.5$");
}

TEST(NumberedArguments, UnitWithoutModePrintsNothing)
{
    EXPECT_EQ(format(L"%1$qx %2$d", 1.5, 8).text, L"x 8");
}

TEST(NumberedArguments, NumberZeroFails)
{
    EXPECT_EQ(format(L"%0$d", 1).result, -1);
    EXPECT_EQ(format(L"a%1$*0$d", 1).result, -1);
    EXPECT_EQ(format(L"%1$.*0$f", 1.0).result, -1);
    EXPECT_EQ(format(L"%1$q*0", 1.0).result, -1);
}

TEST(NumberedArguments, FailureLeavesTerminatedText)
{
    const Formatted got = format(L"ab%0$d", 1);
    EXPECT_EQ(got.text, L"");
}

TEST(NumberedArguments, Number4096Works) { EXPECT_EQ(format(L"%4096$d", 7).text, L"7"); }

TEST(NumberedArguments, Number4097Fails)
{
    EXPECT_EQ(format(L"%4097$d", 7).result, -1);
    EXPECT_EQ(format(L"%1$*4097$d", 7).result, -1);
    EXPECT_EQ(format(L"%99999999999999999999$d", 7).result, -1);
}

TEST(NumberedArguments, FormatMayEndInsideAConversion)
{
    EXPECT_EQ(format(L"%1$d%", 7).text, L"7");
    EXPECT_EQ(format(L"%1$d%2$", 7).text, L"7");
}

struct ScanCase {
    const char* name;
    const wchar_t* format;
    bool positional;
    int count;
};

class NumberScan : public testing::TestWithParam<ScanCase> {};

TEST_P(NumberScan, CountsItemsAndLargestNumber)
{
    int count = -1;
    EXPECT_EQ(FormatUtil::isDefineSelfParaIndex(&count, GetParam().format), GetParam().positional);
    EXPECT_EQ(count, GetParam().count);
}

const ScanCase kScans[] = {
    {"Empty", L"", false, 0},
    {"NoConversions", L"abc", false, 0},
    {"Plain", L"%d %s", false, 0},
    {"WidthIsReadAsANumber", L"%5d", false, 1},
    {"Percent", L"%%", false, 0},
    {"One", L"%1$d", true, 1},
    {"TwoSwapped", L"%2$s %1$d", true, 2},
    {"Repeated", L"%1$d %1$d", true, 1},
    {"SkippedNumber", L"%1$d %3$d", true, 2},
    {"StarCounts", L"%1$*2$d", true, 2},
    {"StarInText", L"2*3$", true, 1},
    {"HugeNumber", L"%99999999999$d", true, 1},
    {"NumberZero", L"%0$d", true, 0},
    {"DollarWithoutDigits", L"%$d", false, 0},
};
INSTANTIATE_TEST_SUITE_P(Formats, NumberScan, testing::ValuesIn(kScans), nameOfCase<ScanCase>);

TEST(NumberScan, NullIsNotPositional)
{
    int count = -1;
    EXPECT_FALSE(FormatUtil::isDefineSelfParaIndex(&count, nullptr));
    EXPECT_EQ(count, 0);
    EXPECT_TRUE(FormatUtil::isDefineSelfParaIndex(nullptr, L"%1$d"));
}

bool fetch(FormatParameters* params, const wchar_t* format, int count, ...)
{
    va_list args;
    va_start(args, count);
    const bool result = FormatUtil::valist2FormatParameters(&args, params, format, count);
    va_end(args);
    return result;
}

TEST(FormatRecords, HoldTypeAndValue)
{
    FormatParameters params[7];
    EXPECT_TRUE(fetch(params, L"%1$d%2$x%3$X%4$f%5$c%6$s%7$*1$d", 7, -1, 255, 0x900000010LL, 1.5, int{L'c'},
                      L"t", 9));
    EXPECT_EQ(params[0].type, 1);
    EXPECT_EQ(params[0].value, 0xFFFFFFFFu);
    EXPECT_EQ(params[1].type, 2);
    EXPECT_EQ(params[1].value, 255u);
    EXPECT_EQ(params[2].type, 3);
    EXPECT_EQ(params[2].value, 0x10u);
    EXPECT_EQ(params[3].type, 4);
    EXPECT_EQ(params[3].value, 0x3FF8000000000000u);
    EXPECT_EQ(params[4].type, 5);
    EXPECT_EQ(params[4].value, unsigned{L'c'});
    EXPECT_EQ(params[5].type, 6);
    EXPECT_STREQ(reinterpret_cast<const wchar_t*>(params[5].value), L"t");
    EXPECT_EQ(params[6].type, 1);
    EXPECT_EQ(params[6].value, 9u);
}

TEST(FormatRecords, NumbersOutsideAreSkipped)
{
    FormatParameters params[2] = {{9, 9}, {9, 9}};
    EXPECT_TRUE(fetch(params, L"%1$d%2$d%3$d", 1, 5, 6, 7));
    EXPECT_EQ(params[0].value, 5u);
    EXPECT_EQ(params[1].type, 9);
}

TEST(FormatRecords, UnnamedOnesHaveTypeZero)
{
    FormatParameters params[2] = {{9, 9}, {9, 9}};
    EXPECT_TRUE(fetch(params, L"%2$d", 2, 5));
    EXPECT_EQ(params[0].type, 0);
    EXPECT_EQ(params[1].value, 5u);
}

} // namespace

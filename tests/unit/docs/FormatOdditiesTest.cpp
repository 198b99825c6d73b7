// The oddities of formatted output and input that docs/oddities.md lists: one case a heading.
#include "ScanCall.h"

#include <TvOsBase.h>

#include <gtest/gtest.h>

#include <cstdint>

namespace {

const double kQuarterPi = 0.78539816339744831;

TEST(FormatOddities, OnlyOneLIsRead)
{
    wchar_t text[256];

    FormatUtil::outputStringWithFormat(text, 256, L"%lld");
    EXPECT_STREQ(text, L"ld");
}

TEST(FormatOddities, UpperCaseLettersTake64BitsAndPrint32)
{
    wchar_t text[256];

    FormatUtil::outputStringWithFormat(text, 256, L"%D", 0x100000007LL);
    EXPECT_STREQ(text, L"7");
}

TEST(FormatOddities, PrecisionPutsAPointIntoAnInteger)
{
    wchar_t text[256];

    FormatUtil::outputStringWithFormat(text, 256, L"%.2d %.2d", 5, -1234);
    EXPECT_STREQ(text, L"0.05 -12.34");
}

TEST(FormatOddities, AnUnsignedNumberWithItsTopBitSetKeepsADigitInFront)
{
    wchar_t text[256];

    FormatUtil::outputStringWithFormat(text, 256, L"%.9x", -1);
    EXPECT_STREQ(text, L"F0.00FFFFFFF");
}

TEST(FormatOddities, NoPlusInExponentNotation)
{
    wchar_t text[256];

    FormatUtil::outputStringWithFormat(text, 256, L"%+.1f %+.1e", 1.5, 1.5);
    EXPECT_STREQ(text, L"+1.5 1.5E+000");
}

TEST(FormatOddities, NumbersAbove16DigitsRunOn)
{
    wchar_t text[256];

    EXPECT_EQ(FormatUtil::outputStringWithFormat(text, 256, L"%.0f", 1e20), 125);
}

TEST(FormatOddities, TextThatDoesNotFitAndAFieldThatDoesNotFitDiffer)
{
    wchar_t text[256];

    EXPECT_EQ(FormatUtil::outputStringWithFormat(text, 3, L"abcdef"), 0);
    EXPECT_EQ(FormatUtil::outputStringWithFormat(text, 3, L"%s", L"abcdef"), -1);
}

TEST(FormatOddities, AnUnnamedArgumentTakesNoPlace)
{
    wchar_t text[256];

    FormatUtil::outputStringWithFormat(text, 256, L"%1$d %3$d", 7, 8);
    EXPECT_STREQ(text, L"7 8");
}

TEST(FormatOddities, AWholeZeroGoesWhenAFractionFollows)
{
    wchar_t text[256];
    OrnaAppUnitSets units;
    units.dimLinearStyle = 4;
    initOsBaseUnits(units);

    FormatUtil::outputStringWithFormat(text, 256, L"%.32q0", 12.5);
    EXPECT_STREQ(text, L"1'-1/2\"");
}

TEST(FormatOddities, ABearingNeedsABase)
{
    wchar_t text[256];
    OrnaAppUnitSets units;
    units.angleStyle = 4;
    initOsBaseUnits(units);

    FormatUtil::outputStringWithFormat(text, 256, L"%.32q2 and %.32q3", kQuarterPi, kQuarterPi);
    EXPECT_STREQ(text, L"N 45d0'0\" E and 45d0'0\"");
}

TEST(FormatOddities, TextThatBeginsWith360IsZero)
{
    wchar_t text[256];
    OrnaAppUnitSets units;
    units.angleStyle = 0;
    units.anglePrecision = 1;
    initOsBaseUnits(units);

    FormatUtil::outputStringWithFormat(text, 256, L"%.32q3", 80 * kQuarterPi); // 3600 degrees
    EXPECT_STREQ(text, L"0.0");
}

TEST(FormatOddities, SecondsNear60BecomeAMinute)
{
    wchar_t text[256];
    const double kAlmost46 = (46 - 9.0 / 3600) * kQuarterPi / 45;
    OrnaAppUnitSets units;
    units.angleStyle = 1;
    units.anglePrecision = 3;
    initOsBaseUnits(units);

    FormatUtil::outputStringWithFormat(text, 256, L"%.32q3", kAlmost46); // 9 seconds less
    EXPECT_STREQ(text, L"46d0'0\"");
}

TEST(FormatOddities, AFillThatDoesNotFitIsWrittenInPart)
{
    wchar_t text[256];

    wchar_t* at = text;
    EXPECT_FALSE(FormatUtil::fillStringWithBlankChar(&at, 60, L'.', 35));
    EXPECT_EQ(at - text, 30);
}

TEST(FormatOddities, ThePlatformFormatterNeverStoresACount)
{
    wchar_t text[256];

    int count = 7;
    EXPECT_EQ(swprintf(text, L"door%n", &count), -1);
    EXPECT_EQ(count, 7);
}

TEST(FormatOddities, ASuppressedCountIsStored)
{
    int value = 0, taken = 0;

    EXPECT_EQ(scanText(L"12 doors", L"%d%*n", &value, &taken), 1);
    EXPECT_EQ(taken, 2);
}

TEST(FormatOddities, TheEndOfTheMantissaCostsWidth)
{
    double value = 0;

    EXPECT_EQ(scanText(L"1.5e3", L"%5F", &value), 1);
    EXPECT_EQ(value, 15.0);
}

TEST(FormatOddities, ShortAndUpperCaseStore64Bits)
{
    std::int64_t value = 0;

    EXPECT_EQ(scanText(L"-1", L"%hD", &value), 1);
    EXPECT_EQ(value, -1);
}

TEST(FormatOddities, InputIntegersWrap)
{
    int value = 0;

    EXPECT_EQ(scanText(L"4294967299", L"%d", &value), 1);
    EXPECT_EQ(value, 3);
}

} // namespace

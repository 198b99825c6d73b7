// The pieces of the output engine, called directly.
#include "TvFormat.h"

#include "CaseName.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>
#include <string>

namespace {

// Valgrind computes long double with the range of double.
bool isWholeLongDoubleThere()
{
    const volatile long double largest = std::numeric_limits<long double>::max();
    return largest / 2 < largest;
}

TEST(StringCopy, CopiesAndMovesTheCursor)
{
    wchar_t buffer[4];
    wchar_t* at = buffer;
    EXPECT_EQ(FormatUtil::StringCopy(&at, 4, L"abcdef", 3), 0);
    EXPECT_EQ(at, buffer + 3);
    EXPECT_STREQ(buffer, L"abc");
}

TEST(StringCopy, SourceMayLieInTheBuffer)
{
    wchar_t buffer[] = L"abcdef";
    wchar_t* at = buffer + 1;
    EXPECT_EQ(FormatUtil::StringCopy(&at, 6, buffer, 4), 0);
    EXPECT_STREQ(buffer, L"aabcd");
}

TEST(StringCopy, WithoutRoomOnlyTerminates)
{
    wchar_t buffer[4] = L"###";
    wchar_t* at = buffer;
    EXPECT_EQ(FormatUtil::StringCopy(&at, 3, L"abc", 3), -1);
    EXPECT_EQ(at, buffer);
    EXPECT_STREQ(buffer, L"");
}

TEST(StringCopy, NothingFitsIntoOne)
{
    wchar_t buffer[1] = {L'#'};
    wchar_t* at = buffer;
    EXPECT_EQ(FormatUtil::StringCopy(&at, 1, L"", 0), 0);
    EXPECT_EQ(buffer[0], 0);
}

TEST(StringCopy, WithoutRoomAtAllWritesNothing)
{
    wchar_t buffer[1] = {L'#'};
    wchar_t* at = buffer;
    EXPECT_EQ(FormatUtil::StringCopy(&at, 0, L"a", 1), -1);
    EXPECT_EQ(FormatUtil::StringCopy(&at, -5, L"a", 1), -1);
    EXPECT_EQ(buffer[0], L'#');
}

TEST(FillString, Fits)
{
    wchar_t buffer[65];
    wchar_t* at = buffer;
    EXPECT_TRUE(FormatUtil::fillStringWithBlankChar(&at, 64, L'x', 65));
    EXPECT_EQ(std::wstring(buffer), std::wstring(64, L'x'));
    EXPECT_EQ(at, buffer + 64);
}

TEST(FillString, StopsAtThePieceThatDoesNotFit)
{
    wchar_t buffer[64];
    wchar_t* at = buffer;
    EXPECT_FALSE(FormatUtil::fillStringWithBlankChar(&at, 64, L'x', 64));
    EXPECT_EQ(std::wstring(buffer), std::wstring(60, L'x'));
}

TEST(FillString, NothingToWrite)
{
    wchar_t buffer[2] = L"#";
    wchar_t* at = buffer;
    EXPECT_TRUE(FormatUtil::fillStringWithBlankChar(&at, 0, L'x', 1));
    EXPECT_STREQ(buffer, L"");
}

struct LongCase {
    const char* name;
    int value;
    int radix;
    const wchar_t* text;
};

class FormatLong : public testing::TestWithParam<LongCase> {};

TEST_P(FormatLong, WritesDigits)
{
    wchar_t buffer[40];
    EXPECT_EQ(FormatUtil::formatLong(buffer, GetParam().value, 40, GetParam().radix), buffer);
    EXPECT_STREQ(buffer, GetParam().text);
}

const LongCase kLongs[] = {
    {"Zero", 0, 10, L"0"},
    {"Signed", -255, -10, L"-255"},
    {"Unsigned", -1, 10, L"4294967295"},
    {"SignedHex", -255, -16, L"-FF"},
    {"Smallest", INT_MIN, -10, L"-2147483648"},
    {"Radix36", 35, 36, L"Z"},
    {"Radix37IsClamped", 36, 37, L"10"},
    {"Radix1IsClamped", 5, 1, L"101"},
    {"Radix0IsClamped", 5, 0, L"101"},
    {"RadixMinus1IsClamped", -5, -1, L"-101"},
    {"RadixSmallestIsClamped", -36, INT_MIN, L"-10"},
    {"Binary", INT_MIN, 2, L"10000000000000000000000000000000"},
    {"SignedBinary", INT_MIN, -2, L"-10000000000000000000000000000000"},
    {"NineDigits", 999999999, 10, L"999999999"},
    {"TenDigits", 1000000000, 10, L"1000000000"},
};
INSTANTIATE_TEST_SUITE_P(Values, FormatLong, testing::ValuesIn(kLongs), nameOfCase<LongCase>);

TEST(FormatLong, NullBufferIsReturned) { EXPECT_EQ(FormatUtil::formatLong(nullptr, 1, 10, 10), nullptr); }

TEST(FormatLong, IsCutToItsCapacity)
{
    wchar_t buffer[4] = {L'#', L'#', L'#', L'#'};
    FormatUtil::formatLong(buffer, 12345, 3, 10);
    EXPECT_EQ(std::wstring(buffer, 4), std::wstring(L"12\0#", 4));
}

struct ScaleCase {
    const char* name;
    long double value;
    int exponent;
    long double mantissa;
};

class Scale : public testing::TestWithParam<ScaleCase> {};

TEST_P(Scale, TakesTheExponentOut)
{
    long double v = GetParam().value;
    EXPECT_EQ(FormatUtil::scaleDoubleToScience(&v), GetParam().exponent);
    EXPECT_EQ(v, GetParam().mantissa);
}

const ScaleCase kScales[] = {
    {"Zero", 0.0L, 0, 0.0L},
    {"One", 1.0L, 0, 1.0L},
    {"BelowTen", 9.75L, 0, 9.75L},
    {"Ten", 10.0L, 1, 1.0L},
    {"Negative", -2500.0L, 3, -2.5L},
    {"Half", 0.5L, -1, 5.0L},
    {"NegativeSmall", -0.0625L, -2, -6.25L},
    {"Infinity", std::numeric_limits<long double>::infinity(), 0,
     std::numeric_limits<long double>::infinity()},
};
INSTANTIATE_TEST_SUITE_P(Values, Scale, testing::ValuesIn(kScales), nameOfCase<ScaleCase>);

TEST(Scale, NaNStays)
{
    long double v = std::numeric_limits<long double>::quiet_NaN();
    EXPECT_EQ(FormatUtil::scaleDoubleToScience(&v), 0);
    EXPECT_TRUE(std::isnan(v));
}

TEST(Scale, WholeRangeOfLongDouble)
{
    if (!isWholeLongDoubleThere())
        GTEST_SKIP() << "no such range here";
    for (const long double value :
         {std::numeric_limits<long double>::max(), std::numeric_limits<long double>::min(),
          std::numeric_limits<long double>::denorm_min()}) {
        long double v = value;
        const int exponent = FormatUtil::scaleDoubleToScience(&v);
        EXPECT_EQ(exponent, static_cast<int>(std::floor(std::log10(value))));
        EXPECT_GE(v, 1.0L);
        EXPECT_LT(v, 10.0L);
    }
}

// A long double just below a power of ten may have a mantissa that only binary128 tells from 10.
TEST(Scale, MantissaStaysBelowTenAfterRounding)
{
    if (!isWholeLongDoubleThere())
        GTEST_SKIP() << "no such range here";
    for (int power = 0; power < 4900; ++power) {
        const long double near = std::pow(10.0L, power);
        for (const long double value : {std::nextafter(near, 0.0L), near, -near, 1 / near}) {
            long double v = value;
            const int exponent = FormatUtil::scaleDoubleToScience(&v);
            ASSERT_GE(std::fabs(v), 1.0L) << "10^" << power;
            ASSERT_LT(std::fabs(v), 10.0L) << "10^" << power << " has exponent " << exponent;
        }
    }
}

TEST(Round, MantissaStaysBelowTenAfterRounding)
{
    for (int precision = 0; precision < 40; ++precision) {
        long double v = std::nextafter(10.0L, 0.0L);
        const int carry = FormatUtil::roundScienceDouble(&v, precision, 0);
        EXPECT_LT(v, 10.0L) << "precision " << precision;
        EXPECT_EQ(carry, v < 2) << "precision " << precision;
    }
}

TEST(Round, AddsHalfAUnit)
{
    long double v = 1.25L;
    EXPECT_EQ(FormatUtil::roundScienceDouble(&v, 1, 0), 0);
    EXPECT_NEAR(static_cast<double>(v), 1.3, 1e-15);
}

TEST(Round, CarriesAtTen)
{
    long double v = 9.96L;
    EXPECT_EQ(FormatUtil::roundScienceDouble(&v, 1, 0), 1);
    EXPECT_NEAR(static_cast<double>(v), 1.001, 1e-15);
}

TEST(Round, KeepsTheSign)
{
    long double v = -9.96L;
    EXPECT_EQ(FormatUtil::roundScienceDouble(&v, 1, 0), 1);
    EXPECT_NEAR(static_cast<double>(v), -1.001, 1e-15);
}

TEST(Round, LeftOfTheMantissaNothingIsAdded)
{
    long double v = 7.0L;
    EXPECT_EQ(FormatUtil::roundScienceDouble(&v, 0, -2), 0);
    EXPECT_EQ(v, 7.0L);
}

TEST(Round, BehindTheTableOnlyForPositiveExponents)
{
    long double v = 1.0L;
    FormatUtil::roundScienceDouble(&v, 40, 0);
    EXPECT_EQ(v, 1.0L);
}

TEST(FixedMantissa, PutsThePoint)
{
    wchar_t buffer[126];
    EXPECT_EQ(FormatUtil::formatScienceDouble(buffer, 1.25L, 126, 1, 2), 4);
    EXPECT_STREQ(buffer, L"1.25");
    EXPECT_EQ(FormatUtil::formatScienceDouble(buffer, -1.25L, 126, 3, 0), 4);
    EXPECT_STREQ(buffer, L"-125");
    EXPECT_EQ(FormatUtil::formatScienceDouble(buffer, 1.25L, 126, 0, 3), 5);
    EXPECT_STREQ(buffer, L"0.125");
    EXPECT_EQ(FormatUtil::formatScienceDouble(buffer, 1.25L, 126, -2, 4), 6);
    EXPECT_STREQ(buffer, L"0.0012");
    EXPECT_EQ(FormatUtil::formatScienceDouble(buffer, 1.25L, 126, -9, 4), 6);
    EXPECT_STREQ(buffer, L"0.0000");
    EXPECT_EQ(FormatUtil::formatScienceDouble(buffer, 1.25L, 126, 0, 0), 1);
    EXPECT_STREQ(buffer, L"0");
}

TEST(FixedMantissa, HasSixteenDigits)
{
    wchar_t buffer[126];
    EXPECT_EQ(FormatUtil::formatScienceDouble(buffer, 1.25L, 126, 10, 10), 17);
    EXPECT_STREQ(buffer, L"1250000000.000000");
    EXPECT_EQ(FormatUtil::formatScienceDouble(buffer, 1.25L, 126, -2, 30), 20);
    EXPECT_STREQ(buffer, L"0.001250000000000000");
}

TEST(FixedMantissa, CapacityIsNotConsulted)
{
    wchar_t buffer[126];
    EXPECT_EQ(FormatUtil::formatScienceDouble(buffer, 1.25L, 0, 1, 2), 4);
}

TEST(FixedMantissa, NeverLeaves125Characters)
{
    const long double inf = std::numeric_limits<long double>::infinity();
    for (const long double mantissa : {1.25L, -9.99L, 1e4000L, -1e4000L, inf, -inf, std::nanl("")}) {
        for (const int digits : {INT_MIN, -126, -1, 0, 1, 124, 125, 126, INT_MAX}) {
            for (const int precision : {INT_MIN, -1, 0, 1, 130, INT_MAX}) {
                wchar_t buffer[127];
                buffer[126] = L'#';
                const int length = FormatUtil::formatScienceDouble(buffer, mantissa, 126, digits, precision);
                EXPECT_LE(length, 125);
                EXPECT_EQ(buffer[126], L'#');
            }
        }
    }
}

struct StripCase {
    const char* name;
    int flags;
    const wchar_t* text;
    const wchar_t* stripped;
};

class StripZeros : public testing::TestWithParam<StripCase> {};

TEST_P(StripZeros, InPlace)
{
    wchar_t text[40];
    std::wcscpy(text, GetParam().text);
    delPrefixSurfixZero(GetParam().flags, text);
    EXPECT_STREQ(text, GetParam().stripped);
}

const StripCase kStrips[] = {
    {"NoFlags", 0, L"0.500", L"0.500"},
    {"Trailing", 8, L"0.500", L"0.5"},
    {"TrailingPoint", 8, L"5.000", L"5"},
    {"Leading", 4, L"0.500", L".500"},
    {"LeadingNegative", 4, L"-0.500", L"-.500"},
    {"LeadingOnlyBeforeThePoint", 4, L"05.0", L"05.0"},
    {"Both", 12, L"0.500", L".5"},
    {"BothOfZero", 12, L"0.000", L"0"},
    {"Letter", 8, L"12.50g", L"12.5g"},
    {"InchMark", 8, L"5'-6.00\"", L"5'-6\""},
    {"DegreeEscape", 8, L"12.500\\U+00B0", L"12.5\\U+00B0"},
    {"DegreeEscapeShortest", 8, L"0.0\\U+00B0", L"0\\U+00B0"},
    {"DegreeEscapeInNineIsNoSuffix", 8, L"45\\U+00B0", L"45\\U+00B"},
    {"OnePointOnly", 8, L"1..00", L"1."},
    {"LetterAlone", 8, L"g", L"g"},
    {"OnlyZeros", 8, L"000", L""},
    {"Empty", 12, L"", L""},
};
INSTANTIATE_TEST_SUITE_P(Texts, StripZeros, testing::ValuesIn(kStrips), nameOfCase<StripCase>);

TEST(StripZeros, NullIsIgnored) { delPrefixSurfixZero(12, nullptr); }

// The pieces for one conversion, with the arguments in a list.
bool callLong(wchar_t conv, bool hasPrecision, unsigned precision, wchar_t* buffer, int capacity,
              unsigned& length, ...)
{
    va_list args;
    va_start(args, length);
    bool isLong = false;
    const bool ok = formatLongUtil(conv, isLong, false, nullptr, 0, &args, buffer, capacity, hasPrecision,
                                   length, precision);
    va_end(args);
    return ok;
}

TEST(FormatLongUtil, WritesDigits)
{
    wchar_t buffer[20];
    unsigned length = 99;
    EXPECT_TRUE(callLong(L'd', false, 6, buffer, 20, length, -42));
    EXPECT_STREQ(buffer, L"-42");
    EXPECT_EQ(length, 3u);
}

TEST(FormatLongUtil, WritesThePoint)
{
    wchar_t buffer[6];
    unsigned length = 99;
    EXPECT_TRUE(callLong(L'd', true, 3, buffer, 6, length, 42));
    EXPECT_STREQ(buffer, L"0.042");
    EXPECT_EQ(length, 5u);
}

TEST(FormatLongUtil, OneShortIsEmpty)
{
    wchar_t buffer[6];
    unsigned length = 99;
    EXPECT_FALSE(callLong(L'd', true, 3, buffer, 5, length, 42));
    EXPECT_STREQ(buffer, L"");
    EXPECT_EQ(length, 0u);
    EXPECT_FALSE(callLong(L'd', false, 6, buffer, 2, length, 42));
    EXPECT_EQ(length, 0u);
}

TEST(FormatLongUtil, ReadsARecord)
{
    wchar_t buffer[20];
    unsigned length = 0;
    bool isLong = false;
    FormatParameters params[2] = {{1, 5}, {2, 255}};
    EXPECT_TRUE(formatLongUtil(L'x', isLong, true, params, 1, nullptr, buffer, 20, false, length, 6));
    EXPECT_STREQ(buffer, L"FF");
}

TEST(FormatScienceDoubleUtil, WritesExponentNotation)
{
    wchar_t buffer[40];
    unsigned length = 0;
    EXPECT_TRUE(formatScienceDoubleUtil(12345.678L, L'e', 2, true, buffer, 40, length));
    EXPECT_STREQ(buffer, L"1.23E+004");
    EXPECT_EQ(length, 9u);
    EXPECT_FALSE(formatScienceDoubleUtil(12345.678L, L'e', 2, true, buffer, 9, length));
    EXPECT_STREQ(buffer, L"");
}

TEST(FormatScienceDoubleUtil, TakesTheWholeRangeOfLongDouble)
{
    if (!isWholeLongDoubleThere())
        GTEST_SKIP() << "no such range here";
    wchar_t buffer[40];
    unsigned length = 0;
    EXPECT_TRUE(formatScienceDoubleUtil(1e999L, L'e', 2, true, buffer, 40, length));
    EXPECT_STREQ(buffer, L"1.00E+999");
}

void callUnits(const wchar_t*& format, bool& numeric, unsigned& length, wchar_t* buffer, int capacity,
               wchar_t*& text, ...)
{
    va_list args;
    va_start(args, text);
    formatQModeDoubleUtil(format, false, nullptr, &args, numeric, length, 0, buffer, capacity, 20, text);
    va_end(args);
}

TEST(FormatQModeDoubleUtil, ReadsModeAndValue)
{
    const wchar_t* format = L"q*x";
    wchar_t buffer[40];
    wchar_t* text = nullptr;
    unsigned length = 0;
    bool numeric = true;
    callUnits(format, numeric, length, buffer, 40, text, 0x0800, 2.5);
    EXPECT_STREQ(text, L"2.5");
    EXPECT_EQ(length, 3u);
    EXPECT_STREQ(format, L"*x");
    EXPECT_TRUE(numeric);
}

TEST(FormatQModeDoubleUtil, StartsBehindTheSignOfANegativeZero)
{
    const wchar_t* format = L"q0";
    wchar_t buffer[40];
    wchar_t* text = nullptr;
    unsigned length = 0;
    bool numeric = true;
    callUnits(format, numeric, length, buffer, 40, text, -1e-9);
    EXPECT_EQ(text, buffer + 1);
    EXPECT_EQ(length, 6u);
}

TEST(FormatQModeDoubleUtil, WithoutAModeFetchesNothing)
{
    const wchar_t* format = L"qx";
    wchar_t buffer[40];
    wchar_t* text = nullptr;
    unsigned length = 9;
    bool numeric = true;
    callUnits(format, numeric, length, buffer, 40, text, 1.0);
    EXPECT_EQ(length, 0u);
    EXPECT_FALSE(numeric);
    EXPECT_STREQ(format, L"qx");
}

TEST(FormatUtil, TablesAreReadyAtAnyTime)
{
    FormatUtil::initializeConstVar();
    wchar_t buffer[16];
    EXPECT_EQ(FormatUtil::outputStringWithFormat(buffer, 16, L"%.1f", 0.5), 3);
}

} // namespace

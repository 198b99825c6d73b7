// Every conversion of the input engine, and where a scan stops.
#include "ScanCall.h"

#include "CaseName.h"
#include "ScopedLocale.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstddef>
#include <string>

namespace {

constexpr int kUntouched = 0x5A5A5A5A;

// Every format ends in %n, so that what the number left in the text shows.
struct IntegerCase {
    const char* name;
    const wchar_t* format;
    const wchar_t* text;
    int result;
    int value;
    int taken;
};

class ScanInteger : public testing::TestWithParam<IntegerCase> {};

TEST_P(ScanInteger, StoresAndStops)
{
    const IntegerCase& c = GetParam();
    int value = kUntouched;
    int taken = kUntouched;
    EXPECT_EQ(scanText(c.text, c.format, &value, &taken), c.result);
    EXPECT_EQ(value, c.value);
    EXPECT_EQ(taken, c.taken);
}

constexpr int kNever = kUntouched;

const IntegerCase kIntegers[] = {
    {"Decimal", L"%d%n", L"42x", 1, 42, 2},
    {"DecimalSkipsWhiteSpace", L"%d%n", L" \t\n42", 1, 42, 5},
    {"Negative", L"%d%n", L"-42", 1, -42, 3},
    {"Positive", L"%d%n", L"+42", 1, 42, 3},
    {"SignAlone", L"%d%n", L"-", 0, kNever, kNever},
    {"SignBeforeBlank", L"%d%n", L"- 4", 0, kNever, kNever},
    {"TwoSigns", L"%d%n", L"--4", 0, kNever, kNever},
    {"NoDigit", L"%d%n", L"x", 0, kNever, kNever},
    {"EmptyText", L"%d%n", L"", -1, kNever, kNever},
    {"BlankText", L"%d%n", L"  \n ", -1, kNever, kNever},
    {"Width", L"%3d%n", L"12345", 1, 123, 3},
    {"WidthCountsTheSign", L"%3d%n", L"-12345", 1, -12, 3},
    {"Width1TakesNoSign", L"%1d%n", L"-5", 0, kNever, kNever},
    {"Width2TakesSignAndDigit", L"%2d%n", L"-55", 1, -5, 2},
    {"Width0TakesNothing", L"%0d%n", L"5", 0, kNever, kNever},
    {"HugeWidth", L"%99999999999d%n", L"42", 1, 42, 2},
    {"LargestInt", L"%d%n", L"2147483647", 1, INT_MAX, 10},
    {"SmallestInt", L"%d%n", L"-2147483648", 1, INT_MIN, 11},
    {"Wraps", L"%d%n", L"4294967297", 1, 1, 10},
    {"LeadingZerosAreDecimal", L"%d%n", L"017", 1, 17, 3},
    {"PrefixHex", L"%i%n", L"0x1F", 1, 31, 4},
    {"PrefixUpperHex", L"%i%n", L"0X1f", 1, 31, 4},
    {"PrefixOctal", L"%i%n", L"017", 1, 15, 3},
    {"PrefixNone", L"%i%n", L"17", 1, 17, 2},
    {"PrefixGivenBack", L"%i%n", L"0xg", 1, 0, 1},
    {"PrefixAtTheEnd", L"%i%n", L"0x", 1, 0, 1},
    {"PrefixZeroAlone", L"%i%n", L"0", 1, 0, 1},
    {"PrefixOctalStopsAt8", L"%i%n", L"018", 1, 1, 2},
    {"PrefixNegative", L"%i%n", L"-0x10", 1, -16, 5},
    {"PrefixWidth1", L"%1i%n", L"0x1F", 1, 0, 1},
    {"PrefixWidth3", L"%3i%n", L"0x1F", 1, 1, 3},
    {"Unsigned", L"%u%n", L"4294967295", 1, -1, 10},
    {"UnsignedTakesNoMinus", L"%u%n", L"-5", 0, kNever, kNever},
    {"UnsignedTakesNoPlus", L"%u%n", L"+5", 0, kNever, kNever},
    {"Octal", L"%o%n", L"778", 1, 63, 2},
    {"OctalNegative", L"%o%n", L"-7", 1, -7, 2},
    {"Hex", L"%x%n", L"ff", 1, 255, 2},
    {"HexUpper", L"%x%n", L"FFg", 1, 255, 2},
    {"HexWithPrefix", L"%x%n", L"0xff", 1, 255, 4},
    {"HexPrefixGivenBack", L"%x%n", L"0xg", 1, 0, 1},
    {"HexLeadingZero", L"%x%n", L"010", 1, 16, 3},
    {"HexNegative", L"%x%n", L"-a", 1, -10, 2},
    {"Binary", L"%b%n", L"1012", 1, 5, 3},
    {"BinaryOf2Fails", L"%b%n", L"2", 0, kNever, kNever},
    {"BinaryNegative", L"%b%n", L"-101", 1, -5, 4},
    {"OctalOf8Fails", L"%o%n", L"8", 0, kNever, kNever},
    {"OctalSignBefore8Fails", L"%o%n", L"-8", 0, kNever, kNever},
    {"HexSignBeforeGFails", L"%x%n", L"-g", 0, kNever, kNever},
    {"HexWidthEndsAtTheX", L"%2x%n", L"0x1F", 1, 0, 2},
    {"HexWidthEndsAtTheZero", L"%1x%n", L"0x1F", 1, 0, 1},
    {"PrefixSignBeforeLetterFails", L"%i%n", L"-x", 0, kNever, kNever},
    {"PrefixSignAlone", L"%i%n", L"-", 0, kNever, kNever},
    {"PrefixOctalWidth", L"%3i%n", L"0177", 1, 15, 3},
    {"HexIsNoPrefixOfDecimal", L"%d%n", L"0x10", 1, 0, 1},
    {"HexIsNoPrefixOfOctal", L"%o%n", L"0x10", 1, 0, 1},
    {"WrapsNegative", L"%d%n", L"-4294967297", 1, -1, 11},
    {"UnsignedWraps", L"%u%n", L"4294967296", 1, 0, 10},
    {"UnsignedWidth1", L"%1u%n", L"57", 1, 5, 1},
    {"UpperNIsIgnored", L"%N%d%n", L"42", 1, 42, 2},
    {"PercentBehindAStarIsIgnored", L"%*%%d%n", L"42", 1, 42, 2},
    {"SpaceInTheFormat", L" %d %n", L" 42  ", 1, 42, 5},
    {"LiteralBefore", L"n=%d%n", L"n=42", 1, 42, 4},
    {"LiteralSkipsWhiteSpace", L"n = %d%n", L"  n=42", 1, 42, 6},
    {"LiteralMismatch", L"n=%d%n", L"m=42", 0, kNever, kNever},
    {"LiteralOnEmptyText", L"n=%d%n", L"", -1, kNever, kNever},
    {"PercentBefore", L"%%%d%n", L"%42", 1, 42, 3},
    {"PercentDoesNotSkip", L"%%%d%n", L" %42", 0, kNever, kNever},
    {"IgnoredLetter", L"%k%d%n", L"42", 1, 42, 2},
    {"IgnoredUpperI", L"%I%d%n", L"42", 1, 42, 2},
    {"IgnoredUpperU", L"%U%d%n", L"42", 1, 42, 2},
    {"LetterBelowB", L"%A%d%n", L"42", 1, 42, 2},
    {"LetterAboveX", L"%y%d%n", L"42", 1, 42, 2},
    {"Suppressed", L"%*d%d%n", L"7 42", 1, 42, 4},
    {"SuppressedWithWidth", L"%*2d%d%n", L"742", 1, 2, 3},
};
INSTANTIATE_TEST_SUITE_P(Texts, ScanInteger, testing::ValuesIn(kIntegers), nameOfCase<IntegerCase>);

struct WideCase {
    const char* name;
    const wchar_t* format;
    const wchar_t* text;
    long long value;
};

class ScanWideInteger : public testing::TestWithParam<WideCase> {};

TEST_P(ScanWideInteger, Stores64Bits)
{
    long long value = 0x5A5A5A5A5A5A5A5A;
    EXPECT_EQ(scanText(GetParam().text, GetParam().format, &value), 1);
    EXPECT_EQ(value, GetParam().value);
}

const WideCase kWides[] = {
    {"LongDecimalKeepsItsSign", L"%ld", L"-5", -5},
    {"UpperDecimalKeepsItsSign", L"%D", L"-5", -5},
    {"LongPrefixKeepsItsSign", L"%li", L"-0x5", -5},
    {"UnsignedIsZeroExtended", L"%lu", L"4294967295", 4294967295},
    {"OctalIsZeroExtended", L"%lo", L"-1", 4294967295},
    {"UpperOctal", L"%O", L"17", 15},
    {"UpperHex", L"%X", L"ffffffff", 4294967295},
    {"LongHex", L"%lx", L"ffffffff", 4294967295},
    {"UpperBinary", L"%B", L"101", 5},
    {"LongBinary", L"%lb", L"-1", 4294967295},
    {"UpperWinsOverShort", L"%hD", L"-70000", -70000},
    {"WrapsIn32BitsFirst", L"%ld", L"4294967297", 1},
    {"LongSignedOverflowIsNegative", L"%ld", L"4294967295", -1},
    {"LongPrefixOverflowIsNegative", L"%li", L"0xffffffff", -1},
    {"ShortUpperOctal", L"%hO", L"377777", 131071},
    {"ShortUpperHex", L"%hX", L"12345", 0x12345},
    {"ShortUpperBinary", L"%hB", L"10000000000000000", 65536},
};
INSTANTIATE_TEST_SUITE_P(Texts, ScanWideInteger, testing::ValuesIn(kWides), nameOfCase<WideCase>);

TEST(ScanShort, Stores16Bits)
{
    short values[2] = {0, 0x5A5A};
    EXPECT_EQ(scanText(L"65537", L"%hd", &values[0]), 1);
    EXPECT_EQ(values[0], 1);
    EXPECT_EQ(values[1], 0x5A5A);
}

TEST(ScanShort, OfEveryLetter)
{
    short values[5] = {0, 0, 0, 0, 0};
    EXPECT_EQ(scanText(L"-1 -0x2 77 fe 101", L"%hd%hi%ho%hx%hb", &values[0], &values[1], &values[2],
                       &values[3], &values[4]),
              5);
    EXPECT_EQ(values[0], -1);
    EXPECT_EQ(values[1], -2);
    EXPECT_EQ(values[2], 63);
    EXPECT_EQ(values[3], 254);
    EXPECT_EQ(values[4], 5);
}

TEST(ScanShort, Unsigned)
{
    unsigned short value = 0;
    EXPECT_EQ(scanText(L"65535", L"%hu", &value), 1);
    EXPECT_EQ(value, 65535);
}

struct DoubleCase {
    const char* name;
    const wchar_t* format;
    const wchar_t* text;
    int result;
    double value;
    int taken;
};

class ScanDouble : public testing::TestWithParam<DoubleCase> {};

TEST_P(ScanDouble, StoresAndStops)
{
    const DoubleCase& c = GetParam();
    double value = kUntouched;
    int taken = kUntouched;
    EXPECT_EQ(scanText(c.text, c.format, &value, &taken), c.result);
    EXPECT_EQ(value, c.value);
    EXPECT_EQ(taken, c.taken);
}

const DoubleCase kDoubles[] = {
    {"Exponent", L"%lf%n", L"1.25e2", 1, 125.0, 6},
    {"UpperExponent", L"%lf%n", L"1.25E2", 1, 125.0, 6},
    {"NegativeExponent", L"%lf%n", L"125e-2", 1, 1.25, 6},
    {"PositiveExponent", L"%lf%n", L"1.25e+2", 1, 125.0, 7},
    {"Integer", L"%lf%n", L"42", 1, 42.0, 2},
    {"LetterE", L"%le%n", L"42", 1, 42.0, 2},
    {"LetterG", L"%lg%n", L"42", 1, 42.0, 2},
    {"UpperF", L"%F%n", L"1.5", 1, 1.5, 3},
    {"UpperE", L"%E%n", L"1.5", 1, 1.5, 3},
    {"UpperG", L"%G%n", L"1.5", 1, 1.5, 3},
    {"UpperWithShort", L"%hF%n", L"1.5", 1, 1.5, 3},
    {"OneMultiplication", L"%lf%n", L"0.3", 1, 0.30000000000000004, 3},
    {"Negative", L"%lf%n", L"-1.5", 1, -1.5, 4},
    {"Positive", L"%lf%n", L"+1.5", 1, 1.5, 4},
    {"PointFirst", L"%lf%n", L".5", 1, 0.5, 2},
    {"SignAndPoint", L"%lf%n", L"-.5", 1, -0.5, 3},
    {"PointLast", L"%lf%n", L"5.", 1, 5.0, 2},
    {"SecondPointEnds", L"%lf%n", L"1.5.5", 1, 1.5, 3},
    {"PointAlone", L"%lf%n", L".", 0, kNever, kNever},
    {"PointAndExponent", L"%lf%n", L".e5", 0, kNever, kNever},
    {"SignAlone", L"%lf%n", L"-", 0, kNever, kNever},
    {"SignAndLetter", L"%lf%n", L"-x", 0, kNever, kNever},
    {"EmptyText", L"%lf%n", L"", -1, kNever, kNever},
    {"NoNumber", L"%lf%n", L"x", 0, kNever, kNever},
    {"ExponentWithoutDigits", L"%lf%n", L"15ex", 1, 15.0, 3},
    {"ExponentSignWithoutDigits", L"%lf%n", L"1.5e+x", 1, 1.5, 5},
    {"ThirdExponentDigitStays", L"%lf%n", L"1e123", 1, 1e12, 4},
    {"ExponentZerosDoNotCount", L"%lf%n", L"1e00123", 1, 1e12, 6},
    {"WidthEndsAtTheExponent", L"%5lf%n", L"1.5e3", 1, 15.0, 4},
    {"WidthEndsBehindTheExponent", L"%6lf%n", L"1.5e3", 1, 1500.0, 5},
    {"WidthEndsAtTheEndingCharacter", L"%4lf%n", L"1.5e3", 1, 1.5, 3},
    {"WidthInTheMantissa", L"%3lf%n", L"1.567", 1, 1.5, 3},
    {"WidthDoesNotCountExponentDigits", L"%6lf%n", L"1.5e-12", 1, 1.5e-12, 7},
    {"WidthCountsTheSign", L"%3lf%n", L"-1.5", 1, -1.0, 3},
    {"Width1AndSign", L"%1lf%n", L"-5", 0, kNever, kNever},
    {"Width0", L"%0lf%n", L"5", 0, kNever, kNever},
    {"Suppressed", L"%*f%lf%n", L"1.5 2.5", 1, 2.5, 7},
    {"SignAndSecondSign", L"%lf%n", L"-+1", 0, kNever, kNever},
    {"SignPointAlone", L"%lf%n", L"-.", 0, kNever, kNever},
    {"SignPointExponent", L"%lf%n", L"+.e1", 0, kNever, kNever},
    {"WidthEndsAtTheSign", L"%2lf%n", L"-.5", 0, kNever, kNever},
    {"WidthEndsAtThePoint", L"%2lf%n", L"1.5", 1, 1.0, 2},
    {"WidthCountsTheSecondPoint", L"%5lf%n", L"1.5.e", 1, 1.5, 3},
    {"TwoExponentDigitsAtMost", L"%lf%n", L"1e100", 1, 1e10, 4},
    {"LargestExponent", L"%lf%n", L"1e99", 1, std::pow(10.0, 99), 4},
    {"NegativeLargestExponent", L"%lf%n", L"1e-99", 1, std::pow(10.0, -99), 5},
    {"ExponentAtTheEnd", L"%lf%n", L"1.5e", 1, 1.5, 4},
    {"SecondExponentStays", L"%lf%n", L"1e2e3", 1, 100.0, 3},
    {"NegativeZero", L"%lf%n", L"-0.0", 1, -0.0, 4},
    {"NoInfinity", L"%lf%n", L"inf", 0, kNever, kNever},
    {"NoHex", L"%lf%n", L"0x10", 1, 0.0, 1},
    {"SixteenDigits", L"%lf%n", L"9007199254740993", 1, 9007199254740992.0, 16},
};
INSTANTIATE_TEST_SUITE_P(Texts, ScanDouble, testing::ValuesIn(kDoubles), nameOfCase<DoubleCase>);

TEST(ScanDouble, FullMantissaTakesNoMoreDigits)
{
    const std::wstring text(400, L'9');
    double value = 0;
    int taken = 0;
    EXPECT_EQ(scanText(text.c_str(), L"%lf%n", &value, &taken), 1);
    EXPECT_EQ(taken, 400);
    EXPECT_GT(value, 1.7976931348623158e307);
    EXPECT_LE(value, 1.7976931348623157e308);
}

TEST(ScanFloat, StoresAFloat)
{
    float values[2] = {0, 7};
    EXPECT_EQ(scanText(L"1e123", L"%f", &values[0]), 1);
    EXPECT_EQ(values[0], 1e12f);
    EXPECT_EQ(values[1], 7.0f);
}

TEST(ScanFloat, WidthEndsAtTheExponent)
{
    float value = 0;
    EXPECT_EQ(scanText(L"1.5e3", L"%5f", &value), 1);
    EXPECT_EQ(value, 15.0f);
}

struct TextCase {
    const char* name;
    const wchar_t* format;
    const wchar_t* text;
    int result;
    std::wstring stored; // the array's eight characters afterwards
};

class ScanInto : public testing::TestWithParam<TextCase> {};

TEST_P(ScanInto, AnArray)
{
    wchar_t target[9] = L"########";
    EXPECT_EQ(scanText(GetParam().text, GetParam().format, target), GetParam().result);
    EXPECT_EQ(std::wstring(target, 8), GetParam().stored);
}

const TextCase kTexts[] = {
    {"Word", L"%s", L"hello world", 1, std::wstring(L"hello\0##", 8)},
    {"WordWithWidth", L"%5s", L"hello world", 1, std::wstring(L"hello\0##", 8)},
    {"WordCut", L"%3s", L"hello", 1, std::wstring(L"hel\0####", 8)},
    {"WordSkipsWhiteSpace", L"%s", L"  ab", 1, std::wstring(L"ab\0#####", 8)},
    {"WordAtTheEnd", L"%s", L"ab", 1, std::wstring(L"ab\0#####", 8)},
    {"WordOfNothing", L"%s", L"", -1, L"########"},
    {"WordWidth0", L"%0s", L"ab", 0, L"########"},
    {"WordSuppressed", L"%*s", L"ab", 0, L"########"},
    {"Character", L"%c", L"ab", 1, L"a#######"},
    {"CharacterTakesABlank", L"%c", L" b", 1, L" #######"},
    {"Characters", L"%3c", L"a bc", 1, L"a b#####"},
    {"CharactersToTheEnd", L"%4c", L"a bc", 1, L"a bc####"},
    {"TooFewCharacters", L"%5c", L"a bc", 0, L"########"},
    {"CharacterOfNothing", L"%c", L"", -1, L"########"},
    {"CharactersOfNothing", L"%3c", L"", -1, L"########"},
    {"TooFewBlanksAreTheEnd", L"%3c", L"  ", -1, L"########"},
    {"TooFewBlanksSuppressed", L"%*3c", L"  ", -1, L"########"},
    {"BlanksAloneAreTheEndThoughStored", L"%2c", L"  ", -1, L"  ######"},
    {"WordOfBlanks", L"%s", L"  ", -1, L"########"},
    {"WordStopsAtATab", L"%s", L"ab\tc", 1, std::wstring(L"ab\0#####", 8)},
    {"UpperSIsIgnored", L"%S", L"ab", 0, L"########"},
    {"UpperCIsIgnored", L"%C", L"ab", 0, L"########"},
    {"CharactersWidth0", L"%0c", L"ab", 0, L"########"},
    {"CharactersSuppressed", L"%*3c%c", L"abcd", 1, L"d#######"},
};
INSTANTIATE_TEST_SUITE_P(Texts, ScanInto, testing::ValuesIn(kTexts), nameOfCase<TextCase>);

TEST(Scan, StoresSeveralValues)
{
    int a = 0;
    int b = 0;
    EXPECT_EQ(scanText(L"12 34", L"%d %d", &a, &b), 2);
    EXPECT_EQ(a, 12);
    EXPECT_EQ(b, 34);
}

TEST(Scan, WhiteSpaceIsThatOfTheLocale)
{
    int value = 0;
    EXPECT_EQ(scanText(L"\x2003\x34\x32", L"%d", &value), 0);
    const ScopedLocale locale("C.UTF-8");
    EXPECT_EQ(scanText(L"\x2003\x34\x32", L"%d", &value), 1);
    EXPECT_EQ(value, 42);
}

TEST(Scan, StopsAtTheEndWithWhatWasStored)
{
    int a = 0;
    int b = kUntouched;
    EXPECT_EQ(scanText(L"12 ", L"%d %d", &a, &b), 1);
    EXPECT_EQ(b, kUntouched);
}

TEST(Scan, TooFewCharactersTakeNoArgument)
{
    wchar_t c = L'#';
    int taken = kUntouched;
    EXPECT_EQ(scanText(L"1", L"%*d%c%n", &c, &taken), 0);
    EXPECT_EQ(c, L'#');
    EXPECT_EQ(taken, kUntouched);
}

TEST(Scan, CountIsStoredThoughSuppressed)
{
    int taken = 0;
    EXPECT_EQ(scanText(L"ab", L"ab%*n", &taken), 0);
    EXPECT_EQ(taken, 2);
}

TEST(Scan, CountStoresAnIntWhateverTheSize)
{
    int taken[2] = {0, kUntouched};
    EXPECT_EQ(scanText(L"ab", L"ab%ln", taken), 0);
    EXPECT_EQ(taken[0], 2);
    EXPECT_EQ(taken[1], kUntouched);
}

TEST(Scan, WithoutAWidthAConversionTakes65535Characters)
{
    const std::wstring text(65536, L'0');
    int first = 1;
    int second = 1;
    int taken = 0;
    EXPECT_EQ(scanText((text + L"7").c_str(), L"%d%n%d", &first, &taken, &second), 2);
    EXPECT_EQ(taken, 65535);
    EXPECT_EQ(second, 7);
    EXPECT_EQ(scanText(text.c_str(), L"%*s%n", &taken), 0);
    EXPECT_EQ(taken, 65535);
    EXPECT_EQ(scanText(text.c_str(), L"%*f%n", &taken), 0);
    EXPECT_EQ(taken, 65535);
}

TEST(Scan, CountAfterTwoCharacters)
{
    wchar_t c[2] = {0, 0};
    int taken = 0;
    EXPECT_EQ(scanText(L"xyz", L"%2c%n", c, &taken), 1);
    EXPECT_EQ(taken, 2);
}

TEST(Scan, CountDoesNotSkipWhiteSpace)
{
    int taken = 0;
    EXPECT_EQ(scanText(L"12  3", L"%*d%n", &taken), 0);
    EXPECT_EQ(taken, 2);
}

TEST(Scan, EmptyFormatOnTextIsZero) { EXPECT_EQ(scanText(L"a", L""), 0); }
TEST(Scan, EmptyFormatOnNothingIsTheEnd) { EXPECT_EQ(scanText(L"", L""), -1); }
TEST(Scan, BlankFormatSkipsToTheEnd) { EXPECT_EQ(scanText(L"  ", L" "), -1); }
TEST(Scan, NullTextIsEmpty) { EXPECT_EQ(scanText(nullptr, L"%*d"), -1); }
TEST(Scan, NullFormatIsEmpty) { EXPECT_EQ(scanText(L"a", nullptr), 0); }

TEST(Scan, NullPointerIsSkippedAndNotCounted)
{
    int value = 0;
    EXPECT_EQ(scanText(L"1 2", L"%d %d", static_cast<int*>(nullptr), &value), 1);
    EXPECT_EQ(value, 2);
    EXPECT_EQ(InputWithFormat(false, L"1 a x 2.5", L"%d %s %c %f%n", nullptr), 0);
}

TEST(Scan, FormatMayEndInsideAConversion)
{
    for (const wchar_t* format : {L"%", L"%*", L"%12", L"%h", L"%l", L"%*12l"})
        EXPECT_EQ(scanText(L"12", format), 0);
}

TEST(Scan, EndOfTextMatchesNoCharacter)
{
    const wchar_t format[] = {L'a', static_cast<wchar_t>(-1), L'b', 0};
    EXPECT_EQ(scanText(L"a", format), 0);
}

TEST(Scan, CharacterThatReadsLikeTheEndIsTheEnd)
{
    const wchar_t text[] = {L'7', static_cast<wchar_t>(-1), L'8', 0};
    int value = 0;
    EXPECT_EQ(scanText(text, L"%d%*c%d", &value, nullptr), 1);
    EXPECT_EQ(value, 7);
}

TEST(ScanOtherKind, GivesOnlyZeroCharacters)
{
    wchar_t c = L'#';
    int taken = 0;
    EXPECT_EQ(scanEmptySource(L"%c%n", &c, &taken), 1);
    EXPECT_EQ(c, 0);
    EXPECT_EQ(taken, 1);
}

TEST(ScanOtherKind, MatchesNothingElse)
{
    int value = kUntouched;
    EXPECT_EQ(scanEmptySource(L"%d", &value), 0);
    EXPECT_EQ(scanEmptySource(L"%s", &value), 0);
    EXPECT_EQ(scanEmptySource(L"%f", &value), 0);
    EXPECT_EQ(scanEmptySource(L"a%n", &value), 0);
    EXPECT_EQ(value, kUntouched);
}

TEST(ScanSource, TakesCharacters)
{
    ScanfSourceBuf source{false, false, 0, 0, L" a"};
    getACharFromScanfBuf(&source);
    EXPECT_EQ(source.current, L' ');
    EXPECT_FALSE(source.seenNonSpace);
    getACharFromScanfBuf(&source);
    EXPECT_EQ(source.current, L'a');
    EXPECT_TRUE(source.seenNonSpace);
    getACharFromScanfBuf(&source);
    EXPECT_EQ(source.current, -1);
    EXPECT_EQ(source.count, 3);
}

TEST(ScanSource, StaysAtTheEnd)
{
    const wchar_t text[] = L"a\0b";
    ScanfSourceBuf source{false, false, 0, 0, text};
    for (int i = 0; i < 5; ++i)
        getACharFromScanfBuf(&source);
    EXPECT_EQ(source.current, -1);
    EXPECT_EQ(source.position, text + 1);
}

TEST(ScanSource, GivesTheLookAheadBack)
{
    const wchar_t text[] = L"ab";
    ScanfSourceBuf source{false, false, 0, 0, text};
    getACharFromScanfBuf(&source);
    getACharFromScanfBuf(&source);
    undoACharFromScanfBuf(&source);
    EXPECT_EQ(source.position, text + 1);
    EXPECT_EQ(source.count, 1);
    EXPECT_EQ(source.current, L'b');
    getACharFromScanfBuf(&source);
    EXPECT_EQ(source.current, L'b');
}

TEST(ScanSource, GivesTheEndBack)
{
    ScanfSourceBuf source{false, false, 0, 0, L"a"};
    getACharFromScanfBuf(&source);
    getACharFromScanfBuf(&source);
    undoACharFromScanfBuf(&source);
    getACharFromScanfBuf(&source);
    EXPECT_EQ(source.current, -1);
}

TEST(ScanSource, OfTheOtherKindGivesZeros)
{
    ScanfSourceBuf source{true, false, 7, 0, nullptr};
    getACharFromScanfBuf(&source);
    EXPECT_EQ(source.current, 0);
    EXPECT_EQ(source.count, 1);
    undoACharFromScanfBuf(&source);
    EXPECT_EQ(source.count, 0);
}

TEST(ScanSource, FieldsLieInOrder)
{
    EXPECT_EQ(offsetof(ScanfSourceBuf, kind), 0u);
    EXPECT_EQ(offsetof(ScanfSourceBuf, seenNonSpace), 1u);
    EXPECT_EQ(offsetof(ScanfSourceBuf, current), 4u);
    EXPECT_EQ(offsetof(ScanfSourceBuf, count), 8u);
    EXPECT_EQ(offsetof(ScanfSourceBuf, position), 16u);
}

bool callReader(bool (*reader)(ScanfSourceBuf*, const ScanfConversion&, va_list*, int&),
                ScanfSourceBuf* source, const ScanfConversion& conversion, int& stored, ...)
{
    va_list args;
    va_start(args, stored);
    const bool stop = reader(source, conversion, &args, stored);
    va_end(args);
    return stop;
}

TEST(ScanReader, EachTakesOneValue)
{
    ScanfSourceBuf source{false, false, 0, 0, L"12ab3.5x"};
    getACharFromScanfBuf(&source);
    ScanfConversion conversion{};
    conversion.base = 10;
    conversion.width = 65535;
    int stored = 0;
    int number = 0;
    EXPECT_FALSE(callReader(scanfIntegerFromBuf, &source, conversion, stored, &number));
    EXPECT_EQ(number, 12);
    wchar_t character = 0;
    EXPECT_FALSE(callReader(scanfCharFromBuf, &source, conversion, stored, &character));
    EXPECT_EQ(character, L'a');
    conversion.width = 1;
    wchar_t word[2];
    EXPECT_FALSE(callReader(scanfStringFromBuf, &source, conversion, stored, word));
    EXPECT_STREQ(word, L"b");
    conversion.width = 65535;
    float value = 0;
    EXPECT_FALSE(callReader(scanfDoubleFromBuf, &source, conversion, stored, &value));
    EXPECT_EQ(value, 3.5f);
    EXPECT_EQ(stored, 4);
    EXPECT_TRUE(callReader(scanfIntegerFromBuf, &source, conversion, stored, &number));
}

} // namespace

#include "TvCharOp.h"

#include "TvAlloc.h"
#include "TvPlatformBase.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cwctype>
#include <string>

namespace {

using namespace std::string_literals;

TEST(Tarmcscpy, CopiesWithTheTerminator)
{
    wchar_t dst[] = L"xxxxxx";
    EXPECT_EQ(_tarmcscpy(dst, L"abc"), dst);
    EXPECT_EQ(std::wstring(dst, 6), L"abc\0xx"s);
}

TEST(Tarmcscpy, EmptyTextWritesTheTerminator)
{
    wchar_t dst[] = L"xx";
    EXPECT_EQ(_tarmcscpy(dst, L""), dst);
    EXPECT_EQ(std::wstring(dst, 2), L"\0x"s);
}

TEST(Tarmcscpy, NullGivesNull)
{
    wchar_t dst[] = L"xx";
    EXPECT_EQ(_tarmcscpy(nullptr, L"abc"), nullptr);
    EXPECT_EQ(_tarmcscpy(dst, nullptr), nullptr);
    EXPECT_EQ(dst, L"xx"s);
}

TEST(Tarmcscpy, PiecesOfOneTextMayOverlap)
{
    wchar_t text[16] = L"abcdef";
    EXPECT_EQ(_tarmcscpy(text + 1, text), text + 1);
    EXPECT_EQ(text, L"aabcdef"s);
}

TEST(TarmcscpyS, WithoutACountCopiesAll)
{
    wchar_t dst[8];
    EXPECT_EQ(_tarmcscpy_s(dst, L"abc"), dst);
    EXPECT_EQ(dst, L"abc"s);
}

TEST(TarmcscpyS, WithoutACountNullGivesNull)
{
    wchar_t dst[8];
    EXPECT_EQ(_tarmcscpy_s(nullptr, L"abc"), nullptr);
    EXPECT_EQ(_tarmcscpy_s(dst, static_cast<const wchar_t*>(nullptr)), nullptr);
}

struct CountCase {
    const char* name;
    int count;
    std::wstring left; // of eight characters that were x
};

const CountCase kCountCases[] = {
    {"Three", 3, L"abc\0xxxx"s},
    {"One", 1, L"a\0xxxxxx"s},
    {"Zero", 0, L"\0xxxxxxx"s},
    {"Negative", -1, L"\0xxxxxxx"s},
    {"MostNegative", -2147483647 - 1, L"\0xxxxxxx"s},
    {"OneLess", 5, L"abcde\0xx"s},
    {"AllOfIt", 6, L"abcdef\0x"s},
    {"OneMore", 7, L"abcdef\0x"s},
    {"Largest", 2147483647, L"abcdef\0x"s},
};

class CountedCopy : public testing::TestWithParam<CountCase> {};

TEST_P(CountedCopy, WritesTheTerminatorBehindTheCount)
{
    wchar_t dst[] = L"xxxxxxxx";
    EXPECT_EQ(_tarmcscpy_s(dst, GetParam().count, L"abcdef"), dst);
    EXPECT_EQ(std::wstring(dst, 8), GetParam().left);
}

INSTANTIATE_TEST_SUITE_P(All, CountedCopy, testing::ValuesIn(kCountCases),
                         [](const auto& test) { return test.param.name; });

TEST(TarmcscpyS, NullGivesNull)
{
    wchar_t dst[] = L"xx";
    EXPECT_EQ(_tarmcscpy_s(nullptr, 1, L"abc"), nullptr);
    EXPECT_EQ(_tarmcscpy_s(dst, 1, nullptr), nullptr);
    EXPECT_EQ(dst, L"xx"s);
}

TEST(TarmcscpyS, ReadsNoMoreThanTheCount)
{
    const wchar_t src[] = {L'a', L'b', L'c'}; // without a terminator
    wchar_t dst[4];
    _tarmcscpy_s(dst, 3, src);
    EXPECT_EQ(dst, L"abc"s);
}

TEST(TvCharToInt, DigitsHaveTheirValue)
{
    EXPECT_EQ(TvCharToInt(L'0'), 0);
    EXPECT_EQ(TvCharToInt(L'5'), 5);
    EXPECT_EQ(TvCharToInt(L'9'), 9);
}

TEST(TvCharToInt, NeighboursOfTheDigitsAreZero)
{
    EXPECT_EQ(TvCharToInt(L'/'), 0);
    EXPECT_EQ(TvCharToInt(L':'), 0);
}

TEST(TvCharToInt, LettersSignsAndNothingAreZero)
{
    EXPECT_EQ(TvCharToInt(L'a'), 0);
    EXPECT_EQ(TvCharToInt(L'-'), 0);
    EXPECT_EQ(TvCharToInt(L'\0'), 0);
    EXPECT_EQ(TvCharToInt(static_cast<wchar_t>(-1)), 0);
}

TEST(TvCharToInt, DigitsOfOtherScriptsCount)
{
    EXPECT_EQ(TvCharToInt(L'\u0667'), 7); // Arabic-Indic
    EXPECT_EQ(TvCharToInt(L'\uFF13'), 3); // full width
}

struct DigitCase {
    const char* name;
    int base;
    wchar_t c;
    bool isDigit;
};

const DigitCase kDigitCases[] = {
    {"OctalSeven", 8, L'7', true},
    {"OctalEight", 8, L'8', false},
    {"OctalNine", 8, L'9', false},
    {"BinaryZero", 2, L'0', true},
    {"BinaryOne", 2, L'1', true},
    {"BinaryTwo", 2, L'2', false},
    {"DecimalZero", 10, L'0', true},
    {"DecimalNine", 10, L'9', true},
    {"DecimalSlash", 10, L'/', false},
    {"DecimalColon", 10, L':', false},
    {"DecimalLetter", 10, L'a', false},
    {"AnyBaseNine", 0, L'9', true},
    {"AnyBaseLetter", 0, L'a', false},
    {"HexNine", 16, L'9', true},
    {"HexSmallA", 16, L'a', true},
    {"HexSmallF", 16, L'f', true},
    {"HexSmallG", 16, L'g', false},
    {"HexBeforeSmallA", 16, L'`', false},
    {"HexCapitalA", 16, L'A', true},
    {"HexCapitalF", 16, L'F', true},
    {"HexCapitalG", 16, L'G', false},
    {"HexBeforeCapitalA", 16, L'@', false},
    {"HexEnd", 16, L'\0', false},
    {"HexNegative", 16, static_cast<wchar_t>(-1), false},
    {"ElevenHasNoLetters", 11, L'a', false},
    {"FifteenHasNoLetters", 15, L'A', false},
    {"ThirtySixHasNoLetters", 36, L'z', false},
    {"ThirtySixNine", 36, L'9', true},
    {"NegativeBase", -1, L'0', false},
    {"BaseOneZero", 1, L'0', true},
    {"BaseOneOne", 1, L'1', false},
};

class DigitInBase : public testing::TestWithParam<DigitCase> {};

TEST_P(DigitInBase, IsDigit)
{
    EXPECT_EQ(isdigit_WithDiffCodeSys(GetParam().base, GetParam().c), GetParam().isDigit);
}

INSTANTIATE_TEST_SUITE_P(All, DigitInBase, testing::ValuesIn(kDigitCases),
                         [](const auto& test) { return test.param.name; });

TEST(TvCharOp, ZallocZeroesMemoryThatWasUsed)
{
    auto* const used = static_cast<unsigned char*>(_tvMalloc(200));
    std::fill_n(used, 200, 0xAB);
    _tvFree(used);
    auto* const memory = static_cast<unsigned char*>(TvCharOp::zalloc(200));
    EXPECT_EQ(std::count(memory, memory + 200, 0), 200);
    TvCharOp::zfree(memory);
}

TEST(TvCharOp, ZallocIsNullBeyondTwoGigabytes) { EXPECT_EQ(TvCharOp::zalloc(0x80000001ul), nullptr); }

TEST(TvCharOp, ZallocOfNothingCanBeFreed) { TvCharOp::zfree(TvCharOp::zalloc(0)); }

TEST(TvCharOp, ZfreeIgnoresNull) { TvCharOp::zfree(nullptr); }

TEST(TvCharOp, NextIsOneCharacterOn)
{
    const wchar_t* const text = L"abc";
    EXPECT_EQ(TvCharOp::next(text), text + 1);
}

TEST(TvCharOp, NextByACount)
{
    const wchar_t* const text = L"abc";
    EXPECT_EQ(TvCharOp::next(text, 3), text + 3);
    EXPECT_EQ(TvCharOp::next(text, 0), text);
}

TEST(TvCharOp, IsDigitAgreesWithTheLibraryOverTheBasicPlane)
{
    for (std::uint32_t c = 0; c < 0x10000; ++c)
        ASSERT_EQ(TvCharOp::isDigit(static_cast<wchar_t>(c)), std::iswdigit(c) != 0) << c;
}

TEST(TvCharOp, IsDigitOfANegativeValueIsFalse) { EXPECT_FALSE(TvCharOp::isDigit(static_cast<wchar_t>(-5))); }

TEST(TvCharOp, CompareLooksAtTheCountedCharacters)
{
    EXPECT_EQ(TvCharOp::compare(L"abcX", L"abcY", 3), 0);
    EXPECT_LT(TvCharOp::compare(L"abcX", L"abcY", 4), 0);
    EXPECT_GT(TvCharOp::compare(L"b", L"a", 1), 0);
    EXPECT_EQ(TvCharOp::compare(L"b", L"a", 0), 0);
}

TEST(TvCharOp, CompareStopsAtTheEnd) { EXPECT_EQ(TvCharOp::compare(L"ab\0x", L"ab\0y", 4), 0); }

TEST(TvCharOp, CompareKnowsCase) { EXPECT_NE(TvCharOp::compare(L"a", L"A", 1), 0); }

TEST(TvCharOp, CompareNoCaseDoesNot)
{
    EXPECT_EQ(TvCharOp::compareNoCase(L"Hall.DWG", L"hALL.dwg"), 0);
    EXPECT_LT(TvCharOp::compareNoCase(L"a", L"B"), 0);
    EXPECT_GT(TvCharOp::compareNoCase(L"ab", L"A"), 0);
}

TEST(TvCharOp, LengthOfWideText)
{
    EXPECT_EQ(TvCharOp::length(L""), 0u);
    EXPECT_EQ(TvCharOp::length(L"abc"), 3u);
    EXPECT_EQ(TvCharOp::length(static_cast<const wchar_t*>(nullptr)), 0u);
}

class AnsiCodePage : public testing::Test {
protected:
    ~AnsiCodePage() override { tvPlatformSetACP(0); }
};

TEST_F(AnsiCodePage, LengthOfNarrowTextCountsCharacters)
{
    tvPlatformSetACP(932);
    EXPECT_EQ(TvCharOp::length("a\x83\x41z"), 3u);
}

TEST_F(AnsiCodePage, LengthOfNarrowTextInASingleByteCodePageCountsBytes)
{
    tvPlatformSetACP(1252);
    EXPECT_EQ(TvCharOp::length("a\x83\x41z"), 4u);
}

TEST_F(AnsiCodePage, NumOfCharsCountsBytes)
{
    tvPlatformSetACP(932);
    EXPECT_EQ(TvCharOp::numOfChars("a\x83\x41z"), 4u);
}

TEST(TvCharOp, NullNarrowTextHasNoLength)
{
    EXPECT_EQ(TvCharOp::length(static_cast<const char*>(nullptr)), 0u);
    EXPECT_EQ(TvCharOp::numOfChars(nullptr), 0u);
}

TEST(TvCharOp, CopyWritesTheTerminator)
{
    wchar_t dst[] = L"xxxxx";
    EXPECT_EQ(TvCharOp::copy(dst, L"abc"), dst);
    EXPECT_EQ(std::wstring(dst, 5), L"abc\0x"s);
    EXPECT_EQ(TvCharOp::copy(dst, nullptr), nullptr);
}

TEST(TvCharOp, CountedCopyWritesNoTerminator)
{
    wchar_t dst[] = L"xxxxx";
    EXPECT_EQ(TvCharOp::copy(dst, L"ab\0d", 4), dst);
    EXPECT_EQ(std::wstring(dst, 5), L"ab\0dx"s);
}

TEST(TvCharOp, CountedCopyOfNothingTouchesNothing)
{
    wchar_t dst[] = L"x";
    EXPECT_EQ(TvCharOp::copy(dst, nullptr, 0), dst);
    EXPECT_EQ(dst, L"x"s);
}

TEST(TvCharOp, CatAppends)
{
    wchar_t dst[8] = L"ab";
    EXPECT_EQ(TvCharOp::cat(dst, L"cd"), dst);
    EXPECT_EQ(dst, L"abcd"s);
}

struct FindCase {
    const char* name;
    wchar_t c;
    unsigned long start;
    int index; // in "abcabc"
};

const FindCase kFindCases[] = {
    {"First", L'a', 0, 0},
    {"Last", L'c', 5, 5},
    {"FromInside", L'a', 1, 3},
    {"AtTheStart", L'b', 1, 1},
    {"Absent", L'z', 0, -1},
    {"AbsentFromThere", L'a', 4, -1},
    {"AtTheEnd", L'a', 6, -1},
    {"TerminatorIsNeverFound", L'\0', 0, -1},
    {"TerminatorAtTheEnd", L'\0', 6, -1},
};

class Find : public testing::TestWithParam<FindCase> {};

TEST_P(Find, GivesPointerAndIndex)
{
    const wchar_t* const text = L"abcabc";
    int index = 99;
    const wchar_t* const found = TvCharOp::find<wchar_t>(text, GetParam().c, GetParam().start, &index);
    EXPECT_EQ(index, GetParam().index);
    EXPECT_EQ(found, GetParam().index < 0 ? nullptr : text + GetParam().index);
}

TEST_P(Find, IndexIsOptional)
{
    const wchar_t* const text = L"abcabc";
    const wchar_t* const found = TvCharOp::find<wchar_t>(text, GetParam().c, GetParam().start, nullptr);
    EXPECT_EQ(found, GetParam().index < 0 ? nullptr : text + GetParam().index);
}

INSTANTIATE_TEST_SUITE_P(All, Find, testing::ValuesIn(kFindCases),
                         [](const auto& test) { return test.param.name; });

TEST(TvCharOp, PathSeparatorsAreSlashAndBackslash)
{
    for (std::uint32_t c = 0; c < 0x10000; ++c)
        ASSERT_EQ(TvCharOp::isPathSeparator<wchar_t>(static_cast<wchar_t>(c)), c == 92 || c == 47) << c;
}

} // namespace

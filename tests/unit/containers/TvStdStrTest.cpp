#include "TvStdStr.h"

#include <gtest/gtest.h>

#include <climits>
#include <cwchar>
#include <locale>
#include <string>

namespace {

using Text = CStdStr<wchar_t>;

std::size_t lengthOf(const wchar_t* text) { return std::wcslen(text); }

TEST(CStdStr, StartsEmpty)
{
    EXPECT_TRUE(Text().IsEmpty());
    EXPECT_TRUE(Text().isEmpty());
}

TEST(CStdStr, IsMadeFromAPointer)
{
    const Text text(L"hall");
    EXPECT_EQ(text, L"hall");
    EXPECT_FALSE(text.IsEmpty());
    EXPECT_FALSE(text.isEmpty());
}

TEST(CStdStr, IsMadeFromAStandardString) { EXPECT_EQ(Text(std::wstring(L"hall")), L"hall"); }

TEST(CStdStr, NullIsEmpty) { EXPECT_TRUE(Text(static_cast<const wchar_t*>(nullptr)).IsEmpty()); }

TEST(CStdStr, ConvertsToAPointer) { EXPECT_EQ(lengthOf(Text(L"hall")), 4u); }

TEST(CStdStr, PointerOfAnEmptyOneIsAnEmptyText) { EXPECT_EQ(lengthOf(Text()), 0u); }

TEST(CStdStr, CopyIsItsOwn)
{
    Text text(L"hall");
    const Text copy(text);
    text = L"yard";
    EXPECT_EQ(copy, L"hall");
    EXPECT_EQ(text, L"yard");
}

TEST(CStdStr, AssignmentOfNullEmpties)
{
    Text text(L"hall");
    text = static_cast<const wchar_t*>(nullptr);
    EXPECT_TRUE(text.IsEmpty());
}

TEST(CStdStr, AssignmentOfItsOwnTail)
{
    Text text(L"C:hall");
    text = static_cast<const wchar_t*>(text) + 2;
    EXPECT_EQ(text, L"hall");
}

TEST(CStdStr, AssignmentOfAnother)
{
    Text text;
    const Text other(L"hall");
    text = other;
    EXPECT_EQ(text, other);
}

TEST(CStdStr, CompareIsExact)
{
    const Text text(L"hall");
    EXPECT_EQ(text.Compare(L"hall"), 0);
    EXPECT_GT(text.Compare(L"Hall"), 0);
    EXPECT_LT(text.Compare(L"hallway"), 0);
    EXPECT_GT(text.Compare(L""), 0);
    EXPECT_GT(text.Compare(nullptr), 0);
    EXPECT_EQ(Text().Compare(nullptr), 0);
}

struct CaseCase {
    const char* name;
    const wchar_t* a;
    const wchar_t* b;
    int result;
};

const CaseCase kCaseCases[] = {
    {"Equal", L"hall", L"hall", 0},
    {"OtherCase", L"Hall.DWG", L"hALL.dwg", 0},
    {"DifferenceOfTheLowered", L"B", L"a", 1},
    {"FirstIsShorter", L"ab", L"abc", -'c'},
    {"SecondIsShorter", L"abc", L"ab", 'c'},
    {"FirstDifferenceCounts", L"axz", L"aya", -1},
    {"Empty", L"", L"", 0},
    {"NullIsEmpty", L"", nullptr, 0},
    {"LettersBeyondAsciiKeepTheirCase", L"\u00C4", L"\u00E4", 0xC4 - 0xE4},
    {"UnderscoreIsBelowTheSmallLetters", L"_", L"A", '_' - 'a'},
};

class NoCase : public testing::TestWithParam<CaseCase> {};

TEST_P(NoCase, Compares) { EXPECT_EQ(Text(GetParam().a).CompareNoCase(GetParam().b), GetParam().result); }

INSTANTIATE_TEST_SUITE_P(All, NoCase, testing::ValuesIn(kCaseCases),
                         [](const auto& test) { return test.param.name; });

TEST(Ssicmp, NullsAreEmpty)
{
    EXPECT_EQ(ssicmp<wchar_t>(nullptr, nullptr), 0);
    EXPECT_EQ(ssicmp<wchar_t>(nullptr, L"a"), -'a');
}

TEST(Ssicmp, ExtremeValuesHaveADifference)
{
    const wchar_t least[] = {INT_MIN, 0};
    const wchar_t largest[] = {INT_MAX, 0};
    EXPECT_NE(ssicmp<wchar_t>(least, largest), 0);
}

TEST(Ssicmp, LowersAsTheClassicLocaleDoes)
{
    const auto& classic = std::use_facet<std::ctype<wchar_t>>(std::locale::classic());
    for (wchar_t c = 1; c < 0x10000; ++c) {
        const wchar_t text[] = {c, 0};
        ASSERT_EQ(ssicmp<wchar_t>(text, L""), classic.tolower(c)) << static_cast<long>(c);
    }
}

} // namespace

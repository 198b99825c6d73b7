#include "OrCodePage.h"

#include "CaseName.h"

#include <gtest/gtest.h>

#include <climits>
#include <iterator>
#include <string>

namespace {

struct ClassCase {
    const char* name;
    int wc;
    int breakClass;
};

class LineBreakClasses : public testing::TestWithParam<ClassCase> {};

TEST_P(LineBreakClasses, OfCharacters)
{
    EXPECT_EQ(OrCodePage::LineBreakClass(static_cast<wchar_t>(GetParam().wc)), GetParam().breakClass);
}

const ClassCase kCharacters[] = {
    {"OpeningParenthesis", L'(', 0},
    {"ClosingParenthesis", L')', 1},
    {"IdeographicComma", 0x3001, 1},
    {"IdeographicFullStop", 0x3002, 1},
    {"QuotationMark", L'"', 2},
    {"NoBreakSpace", 0x00A0, 3},
    {"SmallKana", 0x3041, 4},
    {"ExclamationMark", L'!', 5},
    {"Slash", L'/', 6},
    {"Comma", L',', 7},
    {"FullStop", L'.', 7},
    {"Dollar", L'$', 8},
    {"PerCent", L'%', 9},
    {"Zero", L'0', 10},
    {"Nine", L'9', 10},
    {"SmallA", L'a', 11},
    {"CapitalZ", L'Z', 11},
    {"IdeographicSpace", 0x3000, 12},
    {"HiraganaA", 0x3042, 12},
    {"Ellipsis", 0x2026, 13},
    {"HyphenMinus", L'-', 14},
    {"Tab", L'\t', 15},
    {"AcuteAccent", 0x00B4, 16},
    {"EmDash", 0x2014, 17},
    {"ZeroWidthSpace", 0x200B, 18},
    {"CombiningGrave", 0x0300, 19},
    {"Control", 0x0001, 19},
    {"WordJoiner", 0x2060, 20},
    {"CarriageReturn", L'\r', 21},
    {"LineFeed", L'\n', 22},
    {"NextLine", 0x0085, 23},
    {"FormFeed", L'\f', 24},
    {"LineSeparator", 0x2028, 24},
    {"PrivateUse", 0xE000, 25},
    {"Space", L' ', 26},
    {"ObjectReplacement", 0xFFFC, 27},
    {"ThaiLetter", 0x0E01, 28},
    {"AmbiguousIsALetter", 0x00A7, 11},
    {"SurrogateIsAnIdeograph", 0xD800, 12},
    {"HangulSyllableIsAnIdeograph", 0xAC00, 12},
    {"UnassignedIsAnIdeograph", 0x0378, 12},
    {"NoncharacterIsUnknown", 0xFDD0, 25},
    {"LastNoncharacterOfThePlaneIsUnknown", 0xFFFF, 25},
    {"UnassignedAboveTheFirstPlaneIsALetter", 0x10900, 11},
    {"LastOfTheLowTable", 0x31FF, 4},
    {"FirstOfTheHighTable", 0x3200, 12},
    {"LastOfTheFirstRange", 0x4DBF, 12},
    {"FirstHexagram", 0x4DC0, 11},
    {"LastHexagram", 0x4DFF, 11},
    {"FirstIdeographOfTheGreatBlock", 0x4E00, 12},
    {"LastSurrogate", 0xDFFF, 12},
    {"LastPrivateUse", 0xF8FF, 25},
    {"FirstCompatibilityIdeograph", 0xF900, 12},
    {"LastMusicalMark", 0x1D1AD, 19},
    {"AfterTheMusicalMarks", 0x1D1AE, 11},
    {"LastBeforeTheMathematicalDigits", 0x1D7CD, 11},
    {"FirstMathematicalDigit", 0x1D7CE, 10},
    {"LastMathematicalDigit", 0x1D7FF, 10},
    {"AboveTheDigitsCountsAsCombining", 0x1D800, 19},
    {"RareIdeographCountsAsCombining", 0x20000, 19},
    {"FirstTag", 0xE0001, 19},
    {"UnassignedTag", 0xE0002, 19},
    {"LastVariationSelector", 0xE01EF, 19},
    {"AboveTheTagsIsAnIdeograph", 0xE01F0, 12},
    {"LastCharacterIsAnIdeograph", 0x10FFFF, 12},
    {"LargestValueIsAnIdeograph", INT_MAX, 12},
    {"NegativeIsAnIdeograph", -1, 12},
    {"MostNegativeIsAnIdeograph", INT_MIN, 12},
};

INSTANTIATE_TEST_SUITE_P(All, LineBreakClasses, testing::ValuesIn(kCharacters), nameOfCase<ClassCase>);

// The class that a plain search from the first entry on finds.
int classByScan(unsigned int c)
{
    if (c < 12800)
        return OrCodePage::s_LowPartBrakClass[c];
    for (const OrCodePage::LineBreakRange& range : OrCodePage::s_HighPartBreakClass) {
        if (range.last >= c)
            return static_cast<int>(range.breakClass);
    }
    return 12;
}

TEST(LineBreakClass, IsThatOfTheFirstEntryThatReachesTheCharacter)
{
    for (unsigned int c = 0; c <= 0x110000; ++c)
        ASSERT_EQ(OrCodePage::LineBreakClass(static_cast<wchar_t>(c)), classByScan(c)) << std::hex << c;
}

TEST(LineBreakTables, Have12800And154Entries)
{
    EXPECT_EQ(std::size(OrCodePage::s_LowPartBrakClass), 12800u);
    EXPECT_EQ(std::size(OrCodePage::s_HighPartBreakClass), 154u);
}

struct RangeCase {
    int index;
    unsigned int last;
    unsigned int breakClass;
    unsigned int next;
};

TEST(LineBreakTables, BeginAndEndWithTheseRanges)
{
    const RangeCase ranges[] = {
        {0, 0x4DBF, 12, 0x4DC0},     {1, 0x4DFF, 11, 0x4E00},     {2, 0xDFFF, 12, 0xE000},
        {3, 0xF8FF, 25, 0xF900},     {150, 0x1D1AD, 19, 0x1D1AE}, {151, 0x1D7CD, 11, 0x1D7CE},
        {152, 0x1D7FF, 10, 0xE0001}, {153, 0xE01EF, 19, 0xE01F0},
    };
    for (const RangeCase& c : ranges) {
        const OrCodePage::LineBreakRange& range = OrCodePage::s_HighPartBreakClass[c.index];
        EXPECT_EQ(range.last, c.last) << c.index;
        EXPECT_EQ(range.breakClass, c.breakClass) << c.index;
        EXPECT_EQ(range.next, c.next) << c.index;
    }
}

TEST(LineBreakTables, RangesAscendAndNeighboursDiffer)
{
    for (int i = 1; i < 154; ++i) {
        EXPECT_LT(OrCodePage::s_HighPartBreakClass[i - 1].last, OrCodePage::s_HighPartBreakClass[i].last)
            << i;
        EXPECT_NE(OrCodePage::s_HighPartBreakClass[i - 1].breakClass,
                  OrCodePage::s_HighPartBreakClass[i].breakClass)
            << i;
    }
}

TEST(LineBreakTables, NextIsTheCharacterAfterButForTheGapBeforeTheTags)
{
    for (int i = 0; i < 154; ++i) {
        const OrCodePage::LineBreakRange& range = OrCodePage::s_HighPartBreakClass[i];
        EXPECT_EQ(range.next, i == 152 ? 0xE0001 : range.last + 1) << i;
    }
}

TEST(LineBreakTables, HoldClassesUpTo28)
{
    for (const unsigned char breakClass : OrCodePage::s_LowPartBrakClass)
        EXPECT_LE(breakClass, 28);
    for (const OrCodePage::LineBreakRange& range : OrCodePage::s_HighPartBreakClass)
        EXPECT_LE(range.breakClass, 28u);
}

TEST(LineBreakPairs, AreTheseByRow)
{
    const char* const rows[21] = {
        "333333333333333333333", "031133330100001100323", "331113331111111111333", "131113331111111111333",
        "031113330000001100323", "031113330000001100323", "031113330010001100323", "031113330011001100323",
        "131113330011101100333", "031113330000001100323", "031113330111011100323", "031113330011011100323",
        "031113330100011100323", "031113330000011100323", "031113330010001100323", "031113330000001100323",
        "131113331111111111333", "031113330000001103323", "000000000000000000320", "031113330011011100323",
        "131113331111111111333",
    };
    for (int before = 0; before < 21; ++before) {
        std::string row;
        for (int after = 0; after < 21; ++after)
            row += static_cast<char>('0' + OrCodePage::s_arrFullAnalyzeLineBreak[before * 21 + after]);
        EXPECT_EQ(row, rows[before]) << before;
    }
}

TEST(LineBreakPairs, EndWithSevenZeros)
{
    ASSERT_EQ(std::size(OrCodePage::s_arrFullAnalyzeLineBreak), 448u);
    for (int i = 441; i < 448; ++i)
        EXPECT_EQ(OrCodePage::s_arrFullAnalyzeLineBreak[i], 0) << i;
}

TEST(LineBreakAnalysis, DoesNothing)
{
    int classes[3] = {11, 26, 11};
    int breaks[3] = {7, 8, 9};
    EXPECT_EQ(OrCodePage::AnalyzeLineBreaks(classes, breaks, 3), 0);
    EXPECT_EQ(classes[0] * 10000 + classes[1] * 100 + classes[2], 112611);
    EXPECT_EQ(breaks[0] * 100 + breaks[1] * 10 + breaks[2], 789);
    EXPECT_EQ(OrCodePage::AnalyzeLineBreaks(nullptr, nullptr, -1), 0);
}

int wasCalled(int*, int*, int count) { return count; }

TEST(LineBreakAnalysis, HasAPlaceForARoutineThatIsNotCalled)
{
    EXPECT_EQ(OrCodePage::s_ptrAnalyzeLineBreak, nullptr);
    OrCodePage::s_ptrAnalyzeLineBreak = wasCalled;
    EXPECT_EQ(OrCodePage::AnalyzeLineBreaks(nullptr, nullptr, 5), 0);
    EXPECT_EQ(OrCodePage::s_ptrAnalyzeLineBreak(nullptr, nullptr, 5), 5);
    OrCodePage::s_ptrAnalyzeLineBreak = nullptr;
}

} // namespace

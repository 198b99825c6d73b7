#include "TvCharCategory.h"

#include "CaseName.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace {

using Puncts = std::vector<int>;

Puncts contentOf(const TvVector<wchar_t>& list) { return Puncts(list.begin(), list.end()); }

Puncts sorted(Puncts list)
{
    std::sort(list.begin(), list.end());
    return list;
}

const Puncts kLeft = {0x0028, 0x005B, 0x007B, 0x3010, 0x300A, 0xFF08, 0xFFE5, 0x002B, 0xFE35, 0x201A,
                      0x201E, 0x0024, 0x2039, 0x00A3, 0x00A4, 0x00A5, 0x20AC, 0x2116, 0xFF04, 0xFFE1,
                      0xFFE5, 0xFF08, 0xFF3B, 0xFF5B, 0xFE59, 0xFE5B, 0xFE5D, 0xFE69, 0x3008};

const Puncts kNormal = {0x002C, 0x003F, 0x0021, 0x002E, 0x003B, 0x003A, 0x3001, 0x3002, 0x3003,
                        0xFF0C, 0xFF0E, 0xFF1A, 0xFF1B, 0xFF1F, 0xFF01, 0x2026, 0x002D, 0xFE50,
                        0xFE51, 0xFE52, 0xFE54, 0xFE55, 0xFE56, 0xFE57, 0x0025, 0x2030, 0x2025,
                        0x00B0, 0x002F, 0x007C, 0x00B0, 0x2010, 0x2013, 0x2014, 0x2032, 0x2033,
                        0x2035, 0x00A2, 0xFFE0, 0x2103, 0x2109, 0xFF05, 0xFF09, 0xFFE0, 0xFE6A};

const Puncts kRight = {0x0029, 0x005D, 0x007D, 0xFF09, 0x300B, 0x3011, 0xFF3D,
                       0xFF5D, 0xFE5A, 0xFE5C, 0xFE5E, 0x203A, 0x3009};

const Puncts kQuotation = {0x0022, 0x2018, 0x2019, 0x201C, 0x201D, 0x0027, 0x00AB, 0x00BB, 0x2039, 0x203A};

const TvCharCategory& categories() { return TvCharCategory::s_instance; }

struct ListCase {
    const char* name;
    const TvVector<wchar_t>& (TvCharCategory::*list)() const;
    void (TvCharCategory::*init)();
    std::size_t length;
    const Puncts* expected;
};

const ListCase kLists[] = {
    {"Left", &TvCharCategory::leftPuncts, &TvCharCategory::initLeftPuncts, 29, &kLeft},
    {"Normal", &TvCharCategory::normalPuncts, &TvCharCategory::initNormalPuncts, 45, &kNormal},
    {"Right", &TvCharCategory::rightPuncts, &TvCharCategory::initRightPuncts, 13, &kRight},
    {"Quotation", &TvCharCategory::quotationPuncts, &TvCharCategory::initQuotationPuncts, 10, &kQuotation},
};

class PunctuationLists : public testing::TestWithParam<ListCase> {};

TEST_P(PunctuationLists, AreSortedWithTheirDuplicates)
{
    const Puncts content = contentOf((categories().*GetParam().list)());
    EXPECT_EQ(content.size(), GetParam().length);
    EXPECT_EQ(content, sorted(*GetParam().expected));
}

TEST_P(PunctuationLists, AreTheSameWhenMadeAgain)
{
    (TvCharCategory::s_instance.*GetParam().init)();
    EXPECT_EQ(contentOf((categories().*GetParam().list)()), sorted(*GetParam().expected));
    EXPECT_EQ(categories().allPuncts().length(), 97);
}

TEST_P(PunctuationLists, MadeAgainLeaveACopyAlone)
{
    TvVector<wchar_t> copy = (categories().*GetParam().list)();
    copy.at(0) = L'x';
    TvVector<wchar_t> shared = copy;
    (TvCharCategory::s_instance.*GetParam().init)();
    EXPECT_EQ(*shared.begin(), L'x');
    EXPECT_EQ(contentOf((categories().*GetParam().list)()), sorted(*GetParam().expected));
}

INSTANTIATE_TEST_SUITE_P(All, PunctuationLists, testing::ValuesIn(kLists), nameOfCase<ListCase>);

TEST(AllPunctuation, IsTheFourListsTogether)
{
    Puncts all = kLeft;
    for (const Puncts* list : {&kRight, &kNormal, &kQuotation})
        all.insert(all.end(), list->begin(), list->end());
    EXPECT_EQ(all.size(), 97u);
    EXPECT_EQ(contentOf(categories().allPuncts()), sorted(all));
}

struct CountCase {
    const char* name;
    int wc;
    int left;
    int normal;
    int right;
    int quotation;
};

class RepeatedPunctuation : public testing::TestWithParam<CountCase> {};

TEST_P(RepeatedPunctuation, IsKept)
{
    const auto countIn = [](const TvVector<wchar_t>& list) {
        return std::count(list.begin(), list.end(), static_cast<wchar_t>(GetParam().wc));
    };
    const CountCase& c = GetParam();
    EXPECT_EQ(countIn(categories().leftPuncts()), c.left);
    EXPECT_EQ(countIn(categories().normalPuncts()), c.normal);
    EXPECT_EQ(countIn(categories().rightPuncts()), c.right);
    EXPECT_EQ(countIn(categories().quotationPuncts()), c.quotation);
    EXPECT_EQ(countIn(categories().allPuncts()), c.left + c.normal + c.right + c.quotation);
}

const CountCase kRepeated[] = {
    {"FullwidthYen", 0xFFE5, 2, 0, 0, 0},
    {"FullwidthOpeningParenthesis", 0xFF08, 2, 0, 0, 0},
    {"Degree", 0x00B0, 0, 2, 0, 0},
    {"FullwidthCent", 0xFFE0, 0, 2, 0, 0},
    {"FullwidthClosingParenthesis", 0xFF09, 0, 1, 1, 0},
    {"LeftAngleQuotation", 0x2039, 1, 0, 0, 1},
    {"RightAngleQuotation", 0x203A, 0, 0, 1, 1},
    {"Letter", L'a', 0, 0, 0, 0},
};

INSTANTIATE_TEST_SUITE_P(All, RepeatedPunctuation, testing::ValuesIn(kRepeated), nameOfCase<CountCase>);

TEST(TvCharCategory, HoldsTheFiveListsInThisOrder)
{
    const auto* const lists = reinterpret_cast<const TvVector<wchar_t>*>(&TvCharCategory::s_instance);
    EXPECT_EQ(sizeof(TvCharCategory), 5 * sizeof(TvVector<wchar_t>));
    EXPECT_EQ(&categories().leftPuncts(), lists);
    EXPECT_EQ(&categories().rightPuncts(), lists + 2);
    EXPECT_EQ(&categories().normalPuncts(), lists + 1);
    EXPECT_EQ(&categories().quotationPuncts(), lists + 3);
    EXPECT_EQ(&categories().allPuncts(), lists + 4);
}

} // namespace

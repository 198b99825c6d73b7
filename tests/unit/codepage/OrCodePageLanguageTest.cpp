#include "OrCodePage.h"

#include "CaseName.h"

#include <gtest/gtest.h>

#include <iterator>
#include <vector>

namespace {

// The languages of a character set.
struct LanguageCase {
    const char* name;
    int charset;
    unsigned int codePage;
    int index;
    std::vector<unsigned short> languages;
};

const LanguageCase kLanguages[] = {
    {"Arabic",
     178,
     1256,
     0,
     {0x0401, 0x0801, 0x0C01, 0x1001, 0x1401, 0x1801, 0x1C01, 0x2001, 0x2401, 0x2801, 0x2C01, 0x3001, 0x3401,
      0x3801, 0x3C01, 0x4001, 0x0420, 0x0429}},
    {"Cyrillic",
     204,
     1251,
     0,
     {0x0402, 0x0419, 0x0C1A, 0x1C1A, 0x0422, 0x0423, 0x082C, 0x042F, 0x043F, 0x0440, 0x0843, 0x0444,
      0x0450}},
    {"Western", 0, 1252, 0, {0x0403, 0x0406, 0x0407, 0x0807, 0x0C07, 0x1007, 0x1407, 0x0409, 0x0809, 0x0C09,
                             0x1009, 0x1409, 0x1809, 0x1C09, 0x2009, 0x2409, 0x2809, 0x2C09, 0x3009, 0x3409,
                             0x040A, 0x080A, 0x0C0A, 0x100A, 0x140A, 0x180A, 0x1C0A, 0x200A, 0x240A, 0x280A,
                             0x2C0A, 0x300A, 0x340A, 0x380A, 0x3C0A, 0x400A, 0x440A, 0x480A, 0x4C0A, 0x500A,
                             0x040B, 0x040C, 0x080C, 0x0C0C, 0x100C, 0x140C, 0x180C, 0x040F, 0x0410, 0x0810,
                             0x0413, 0x0813, 0x0414, 0x0814, 0x0416, 0x0816, 0x041D, 0x081D, 0x0421, 0x042D,
                             0x0432, 0x0434, 0x0435, 0x0436, 0x0438, 0x043B, 0x083B, 0x0C3B, 0x103B, 0x143B,
                             0x183B, 0x1C3B, 0x203B, 0x243B, 0x043E, 0x083E, 0x0441, 0x0452, 0x0456, 0x046B,
                             0x086B, 0x0C6B, 0x046C}},
    {"TraditionalChinese", 136, 950, 2, {0x0404, 0x1404}},
    {"SimplifiedChinese", 134, 936, 5, {0x0804, 0x0C04, 0x1004}},
    {"CentralEuropean",
     238,
     1250,
     0,
     {0x0405, 0x040E, 0x0415, 0x0418, 0x041A, 0x081A, 0x101A, 0x141A, 0x181A, 0x041B, 0x041C, 0x0424, 0x042C,
      0x0443}},
    {"Greek", 161, 1253, 0, {0x0408}},
    {"Hebrew", 177, 1255, 0, {0x040D}},
    {"Japanese", 128, 932, 1, {0x0411}},
    {"Korean", 129, 949, 3, {0x0412}},
    {"Thai", 222, 874, 0, {0x041E}},
    {"Turkish", 162, 1254, 0, {0x041F}},
    {"Baltic", 186, 1257, 0, {0x0425, 0x0426, 0x0427}},
    {"Vietnamese", 163, 1258, 0, {0x042A}},
    {"Default", 1, 0, 0, {0x042B, 0x0437, 0x043A, 0x045A, 0x0465, 0x0481}},
    {"Devanagari", 263, 0, 0, {0x0439, 0x044E, 0x044F, 0x0457}},
    {"Bengali", 256, 0, 0, {0x0445}},
    {"Punjabi", 257, 0, 0, {0x0446}},
    {"Gujarati", 258, 0, 0, {0x0447}},
    {"Tamil", 259, 0, 0, {0x0449}},
    {"Telugu", 260, 0, 0, {0x044A}},
    {"Kannada", 261, 0, 0, {0x044B}},
    {"Malayalam", 262, 0, 0, {0x044C}},
};

class Languages : public testing::TestWithParam<LanguageCase> {};

TEST_P(Languages, HaveTheirCharacterSet)
{
    for (const unsigned short lcid : GetParam().languages) {
        EXPECT_EQ(OrCodePage::LCIDToCharSet(lcid), GetParam().charset) << std::hex << lcid;
        EXPECT_EQ(OrCodePage::LanguageToCharSet(lcid), GetParam().charset) << std::hex << lcid;
    }
}

TEST_P(Languages, HaveItsCodePage)
{
    for (const unsigned short lcid : GetParam().languages)
        EXPECT_EQ(OrCodePage::LanguageToCodePage(lcid), GetParam().codePage) << std::hex << lcid;
}

TEST_P(Languages, HaveItsIndex)
{
    for (const unsigned short lcid : GetParam().languages) {
        EXPECT_EQ(OrCodePage::LanguageToCodePageIndex(static_cast<short>(lcid)), GetParam().index)
            << std::hex << lcid;
        EXPECT_EQ(OrCodePage::LanguageIsDoubleByte(lcid), GetParam().index != 0) << std::hex << lcid;
    }
}

INSTANTIATE_TEST_SUITE_P(All, Languages, testing::ValuesIn(kLanguages), nameOfCase<LanguageCase>);

TEST(LanguageTable, Has160Rows)
{
    std::size_t listed = 0;
    for (const LanguageCase& row : kLanguages)
        listed += row.languages.size();
    EXPECT_EQ(listed, 160u);
    EXPECT_EQ(std::size(OrCodePage::s_lcidAndCharsetMap), 160u);
}

TEST(LanguageTable, IsOrderedByPrimaryLanguage)
{
    const auto keyOf = [](int lcid) { return std::pair(lcid & 0x3FF, lcid); };
    for (std::size_t i = 1; i < std::size(OrCodePage::s_lcidAndCharsetMap); ++i) {
        EXPECT_LT(keyOf(OrCodePage::s_lcidAndCharsetMap[i - 1].lcid),
                  keyOf(OrCodePage::s_lcidAndCharsetMap[i].lcid))
            << i;
    }
}

bool isListed(unsigned int lcid)
{
    for (const LanguageCase& row : kLanguages) {
        for (const unsigned short language : row.languages) {
            if (language == lcid)
                return true;
        }
    }
    return false;
}

TEST(LanguageTable, EveryOtherLanguageHasTheDefaultCharacterSet)
{
    for (unsigned int lcid = 0; lcid <= 0xFFFF; ++lcid) {
        if (!isListed(lcid)) {
            ASSERT_EQ(OrCodePage::LCIDToCharSet(lcid), 1) << std::hex << lcid;
        }
    }
}

TEST(LanguageTable, SortIdentifiersAreOtherLanguages)
{
    EXPECT_EQ(OrCodePage::LCIDToCharSet(0x10409), 1);
    EXPECT_EQ(OrCodePage::LanguageToCharSet(0x10411), 1);
    EXPECT_EQ(OrCodePage::LCIDToCharSet(0xFFFFFFFF), 1);
}

TEST(LanguageTable, UnknownLanguagesHaveNoCodePage)
{
    EXPECT_EQ(OrCodePage::LanguageToCodePage(0x0500), 0u);
    EXPECT_EQ(OrCodePage::LanguageToCodePageIndex(0x0500), 0);
    EXPECT_EQ(OrCodePage::LanguageToCodePageIndex(-1), 0);
    EXPECT_FALSE(OrCodePage::LanguageIsDoubleByte(0x0500));
}

TEST(LanguageDirection, IsRightToLeftForArabicAndHebrewAlone)
{
    for (int primary = 0; primary <= 0x3FF; ++primary) {
        for (const int sublanguage : {0, 1, 2, 0x3F, 0x7FFF}) {
            EXPECT_EQ(OrCodePage::LanguageIsRtoL(sublanguage << 10 | primary),
                      primary == 0x01 || primary == 0x0D)
                << primary << ' ' << sublanguage;
        }
    }
}

} // namespace

#include "OrCodePage.h"

#include "CaseName.h"

#include "TvPlatformBase.h"

#include <gtest/gtest.h>

#include <climits>
#include <iterator>

namespace {

TEST(OrCodePageEntries, AreFourteenInThisOrder)
{
    const unsigned int entries[] = {1252, 932,  949,  936, 950,  1255, 1256,
                                    1253, 1254, 1258, 874, 1250, 1251, 1257};
    ASSERT_EQ(OrCodePage::CodePageCount(), 14);
    ASSERT_EQ(std::size(OrCodePage::s_codePageEntry), 14u);
    for (int i = 0; i < 14; ++i) {
        EXPECT_EQ(OrCodePage::CodePageEntry(i), entries[i]) << i;
        EXPECT_EQ(OrCodePage::s_codePageEntry[i], entries[i]) << i;
    }
}

TEST(OrCodePageEntries, AnIndexOutsideGivesTheFirst)
{
    for (const int i : {-1, 14, 15, INT_MIN, INT_MAX})
        EXPECT_EQ(OrCodePage::CodePageEntry(i), 1252u) << i;
}

// What the platform calls a code page in its other vocabularies.
struct CodePageCase {
    const char* name;
    int codePage;
    int charset;
    unsigned short language;
    int index;
};

const CodePageCase kCodePages[] = {
    {"Thai", 874, 222, 1054, 0},
    {"Japanese", 932, 128, 1041, 1},
    {"SimplifiedChinese", 936, 134, 2052, 5},
    {"Korean", 949, 129, 1042, 3},
    {"TraditionalChinese", 950, 136, 1028, 2},
    {"CentralEuropean", 1250, 238, 1029, 0},
    {"Cyrillic", 1251, 204, 1049, 0},
    {"Western", 1252, 0, 1033, 0},
    {"Greek", 1253, 161, 1032, 0},
    {"Turkish", 1254, 162, 1055, 0},
    {"Hebrew", 1255, 177, 1037, 0},
    {"Arabic", 1256, 178, 1025, 0},
    {"Baltic", 1257, 186, 1061, 0},
    {"Vietnamese", 1258, 163, 1066, 0},
};

class CodePages : public testing::TestWithParam<CodePageCase> {};

TEST_P(CodePages, HaveACharacterSet)
{
    EXPECT_EQ(OrCodePage::CodePageToCharSet(static_cast<unsigned int>(GetParam().codePage)),
              GetParam().charset);
}

TEST_P(CodePages, ComeBackFromTheirCharacterSet)
{
    EXPECT_EQ(OrCodePage::CharSetToCodePage(static_cast<unsigned int>(GetParam().charset)),
              static_cast<unsigned int>(GetParam().codePage));
}

TEST_P(CodePages, HaveAChiefLanguage)
{
    EXPECT_EQ(OrCodePage::CodePageToLanguage(GetParam().codePage), GetParam().language);
}

TEST_P(CodePages, HaveAnIndexIfEastAsian)
{
    EXPECT_EQ(OrCodePage::CodePageToCodePageIndex(GetParam().codePage), GetParam().index);
}

TEST_P(CodePages, AreDoubleByteIfEastAsian)
{
    EXPECT_EQ(OrCodePage::CodePageIsDoubleByte(GetParam().codePage), GetParam().index != 0);
}

INSTANTIATE_TEST_SUITE_P(All, CodePages, testing::ValuesIn(kCodePages), nameOfCase<CodePageCase>);

TEST(OrCodePage, OtherCodePagesCountAsWestern)
{
    for (const int cp : {0, 1, 437, 873, 875, 931, 933, 935, 937, 948, 951, 1249, 1259, 1361, 65001, -1}) {
        EXPECT_EQ(OrCodePage::CodePageToCharSet(static_cast<unsigned int>(cp)), 0) << cp;
        EXPECT_EQ(OrCodePage::CodePageToLanguage(cp), 1033) << cp;
        EXPECT_EQ(OrCodePage::CodePageToCodePageIndex(cp), 0) << cp;
        EXPECT_FALSE(OrCodePage::CodePageIsDoubleByte(cp)) << cp;
    }
}

TEST(OrCodePage, SymbolCharacterSetIsWestern) { EXPECT_EQ(OrCodePage::CharSetToCodePage(2), 1252u); }

TEST(OrCodePage, OtherCharacterSetsHaveNoCodePage)
{
    for (const unsigned int cs :
         {1u,   3u,   77u,  127u, 130u, 131u, 133u, 135u, 137u, 160u, 164u, 176u, 179u,
          185u, 187u, 203u, 205u, 221u, 223u, 237u, 239u, 255u, 256u, 264u, 265u, 0xFFFFFFFFu})
        EXPECT_EQ(OrCodePage::CharSetToCodePage(cs), 0u) << cs;
}

// The East Asian code page indexes.
struct IndexCase {
    const char* name;
    int index;
    int charset;
    unsigned int codePage;
    unsigned int lcid;
};

constexpr unsigned int kSystemLcid = 0x0415;

const IndexCase kIndexes[] = {
    {"None", 0, 0, 1252, 1033},
    {"Japanese", 1, 128, 932, 1041},
    {"TraditionalChinese", 2, 136, 950, 1028},
    {"Korean", 3, 129, 949, 1042},
    {"JohabHasNoCodePageAndTheSystemsLanguage", 4, 130, 0, kSystemLcid},
    {"SimplifiedChinese", 5, 134, 936, 2052},
    {"Six", 6, 0, 1252, 1033},
    {"Negative", -1, 0, 1252, 1033},
    {"Lowest", INT_MIN, 0, 1252, 1033},
    {"Highest", INT_MAX, 0, 1252, 1033},
};

class CodePageIndexes : public testing::TestWithParam<IndexCase> {
protected:
    void SetUp() override { tvPlatformSetSystemDefaultLCID(kSystemLcid); }
    void TearDown() override { tvPlatformSetSystemDefaultLCID(0); }
};

TEST_P(CodePageIndexes, HaveACharacterSet)
{
    EXPECT_EQ(OrCodePage::CodePageIndexToCharSet(GetParam().index), GetParam().charset);
}

TEST_P(CodePageIndexes, HaveACodePage)
{
    EXPECT_EQ(OrCodePage::CodePageIndexToCodePage(GetParam().index), GetParam().codePage);
}

TEST_P(CodePageIndexes, HaveALanguage)
{
    EXPECT_EQ(OrCodePage::CodePageIndexToLCID(GetParam().index), GetParam().lcid);
    EXPECT_EQ(OrCodePage::CodePageIndexToLanguage(GetParam().index), GetParam().lcid);
}

INSTANTIATE_TEST_SUITE_P(All, CodePageIndexes, testing::ValuesIn(kIndexes), nameOfCase<IndexCase>);

TEST(OrCodePage, FiveCharacterSetsHaveAnIndexAndAreDoubleByte)
{
    for (int cs = -2; cs <= 300; ++cs) {
        const int index = cs == 128 ? 1 : cs == 136 ? 2 : cs == 129 ? 3 : cs == 130 ? 4 : cs == 134 ? 5 : 0;
        EXPECT_EQ(OrCodePage::CharSetToCodePageIndex(cs), index) << cs;
        EXPECT_EQ(OrCodePage::CharSetIsDoubleByte(cs), index != 0) << cs;
    }
}

struct CharsetCase {
    const char* name;
    int charset;
    unsigned int lcid;
};

const CharsetCase kCharsets[] = {
    {"Western", 0, 1033},
    {"Japanese", 128, 1041},
    {"Korean", 129, 1042},
    {"SimplifiedChinese", 134, 2052},
    {"TraditionalChinese", 136, 1028},
    {"Greek", 161, 1032},
    {"Turkish", 162, 1055},
    {"Vietnamese", 163, 1066},
    {"Hebrew", 177, 1037},
    {"Arabic", 178, 1025},
    {"Baltic", 186, 1061},
    {"Cyrillic", 204, 1049},
    {"Thai", 222, 1054},
    {"CentralEuropean", 238, 1029},
    {"Bengali", 256, 1093},
    {"Gujarati", 257, 1095},
    {"Tamil", 258, 1097},
    {"Telugu", 259, 1098},
    {"Kannada", 260, 1099},
    {"Malayalam", 261, 1100},
    {"Marathi", 262, 1102},
    {"Punjabi", 263, 1094},
    {"Oriya", 264, 1096},
};

class Charsets : public testing::TestWithParam<CharsetCase> {};

TEST_P(Charsets, HaveAChiefLanguage)
{
    EXPECT_EQ(OrCodePage::CharSetToLCID(GetParam().charset), GetParam().lcid);
    EXPECT_EQ(OrCodePage::CharSetToLanguage(GetParam().charset), GetParam().lcid);
}

INSTANTIATE_TEST_SUITE_P(All, Charsets, testing::ValuesIn(kCharsets), nameOfCase<CharsetCase>);

bool hasLanguage(int cs)
{
    for (const CharsetCase& row : kCharsets) {
        if (row.charset == cs)
            return true;
    }
    return false;
}

TEST(OrCodePage, OtherCharacterSetsBelow239HaveTheSystemsLanguage)
{
    tvPlatformSetSystemDefaultLCID(0x0419);
    for (int cs = -300; cs < 239; ++cs) {
        if (!hasLanguage(cs)) {
            EXPECT_EQ(OrCodePage::CharSetToLCID(cs), 0x0419u) << cs;
        }
    }
    EXPECT_EQ(OrCodePage::CharSetToLCID(INT_MIN), 0x0419u);
    tvPlatformSetSystemDefaultLCID(0);
}

TEST(OrCodePage, CharacterSetsAboveTheTableHaveTheSystemsLanguage)
{
    tvPlatformSetSystemDefaultLCID(0x0419);
    for (const int cs : {265, 266, 300, 65536, INT_MAX})
        EXPECT_EQ(OrCodePage::CharSetToLCID(cs), 0x0419u) << cs;
    tvPlatformSetSystemDefaultLCID(0);
}

TEST(OrCodePage, SystemLanguageIsCutTo16BitsForLowCharacterSetsOnly)
{
    tvPlatformSetSystemDefaultLCID(0x10407);
    EXPECT_EQ(OrCodePage::CharSetToLCID(1), 0x0407u);
    EXPECT_EQ(OrCodePage::CharSetToLCID(265), 0x10407u);
    EXPECT_EQ(OrCodePage::CharSetToLanguage(265), 0x0407);
    tvPlatformSetSystemDefaultLCID(0);
}

} // namespace

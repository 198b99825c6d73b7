#include "OrCodePage.h"

#include "CaseName.h"

#include <gtest/gtest.h>

#include <iterator>

namespace {

struct ClassRun {
    int first;
    int last;
    int unicodeClass;
};

const ClassRun kRuns[] = {
    {0x0000, 0x003F, 0},  {0x0040, 0x005A, 31}, {0x005B, 0x005F, 0},  {0x0060, 0x007A, 31},
    {0x007B, 0x009F, 0},  {0x00A0, 0x00FF, 32}, {0x0100, 0x017F, 26}, {0x0180, 0x024F, 25},
    {0x0250, 0x02AF, 0},  {0x02B0, 0x02FF, 28}, {0x0300, 0x036F, 0},  {0x0370, 0x03FF, 14},
    {0x0400, 0x052F, 10}, {0x0530, 0x058F, 0},  {0x0590, 0x05FF, 1},  {0x0600, 0x06FF, 2},
    {0x0700, 0x08FF, 0},  {0x0900, 0x097F, 24}, {0x0980, 0x09FF, 17}, {0x0A00, 0x0A7F, 18},
    {0x0A80, 0x0AFF, 19}, {0x0B00, 0x0B7F, 0},  {0x0B80, 0x0BFF, 20}, {0x0C00, 0x0C7F, 21},
    {0x0C80, 0x0CFF, 22}, {0x0D00, 0x0D7F, 23}, {0x0D80, 0x0DFF, 0},  {0x0E00, 0x0E7F, 4},
    {0x0E80, 0x1FFF, 0},  {0x2000, 0x206F, 32}, {0x2070, 0x209F, 6},  {0x20A0, 0x20CF, 3},
    {0x20D0, 0x20FF, 0},  {0x2100, 0x214F, 30}, {0x2150, 0x21FF, 13}, {0x2200, 0x22FF, 15},
    {0x2300, 0x23FF, 11}, {0x2400, 0x245F, 0},  {0x2460, 0x24FF, 9},  {0x2500, 0x257F, 29},
    {0x2580, 0x259F, 27}, {0x25A0, 0x25FF, 29}, {0x2600, 0x26FF, 13}, {0x2700, 0x27BF, 0},
    {0x27C0, 0x27EF, 15}, {0x27F0, 0x27FF, 13}, {0x2800, 0x28FF, 0},  {0x2900, 0x297F, 13},
    {0x2980, 0x2AFF, 15}, {0x2B00, 0x2E7F, 0},  {0x2E80, 0x2FDF, 13}, {0x2FE0, 0x2FEF, 0},
    {0x2FF0, 0x303F, 13}, {0x3040, 0x30FF, 9},  {0x3100, 0x312F, 8},  {0x3130, 0x318F, 5},
    {0x3190, 0x319F, 13}, {0x31A0, 0x31BF, 8},  {0x31C0, 0x31EF, 0},  {0x31F0, 0x31FF, 9},
    {0x3200, 0x32FF, 13}, {0x3300, 0x33FF, 12}, {0x3400, 0x4DBF, 13}, {0x4DC0, 0x4DFF, 0},
    {0x4E00, 0x9FFF, 13}, {0xA000, 0xABFF, 0},  {0xAC00, 0xD7A3, 5},  {0xD7A4, 0xDFFF, 0},
    {0xE000, 0xF8FF, 16}, {0xF900, 0xFAFF, 12}, {0xFB00, 0xFE2F, 0},  {0xFE30, 0xFE6F, 7},
    {0xFE70, 0xFEFE, 2},  {0xFEFF, 0xFEFF, 0},  {0xFF00, 0xFFEF, 13}, {0xFFF0, 0xFFFF, 0},
};

TEST(UnicodeClasses, AreConstantOverTheRuns)
{
    int next = 0;
    for (const ClassRun& run : kRuns) {
        EXPECT_EQ(run.first, next);
        for (int c = run.first; c <= run.last; ++c)
            EXPECT_EQ(OrCodePage::s_unicodeClassTable[c], run.unicodeClass) << std::hex << c;
        next = run.last + 1;
    }
    EXPECT_EQ(next, 0x10000);
    EXPECT_EQ(std::size(OrCodePage::s_unicodeClassTable), 65536u);
}

TEST(UnicodeClasses, CharacterSetsOfTheBits)
{
    const unsigned short charsets[] = {0,   238, 204, 186, 161, 162, 177, 178, 163, 222,
                                       134, 130, 129, 136, 128, 256, 257, 258, 259, 260,
                                       261, 262, 263, 263, 263, 263, 263, 257, 264};
    ASSERT_EQ(std::size(OrCodePage::s_charsetTable), 29u);
    for (int i = 0; i < 29; ++i)
        EXPECT_EQ(OrCodePage::s_charsetTable[i], charsets[i]) << i;
}

TEST(UnicodeClasses, BitsOfTheClasses)
{
    const unsigned int masks[] = {0x0,      0x40,     0x80,     0x141,    0x200,    0x1000,   0x1051,
                                  0x2000,   0x2400,   0x5400,   0x5404,   0x5441,   0x7000,   0x7400,
                                  0x74D1,   0x74DD,   0x76F8,   0x8000,   0x10000,  0x20000,  0x40000,
                                  0x80000,  0x100000, 0x200000, 0x400000, 0x7F85F1, 0x7F95AB, 0x7FB0FF,
                                  0x7FB5E3, 0x7FF4FF, 0x7FF5FF, 0x7FF73F, 0x7FF7FF};
    ASSERT_EQ(std::size(OrCodePage::s_supportLcidTable), 33u);
    ASSERT_EQ(std::size(masks), 33u);
    for (int i = 0; i < 33; ++i)
        EXPECT_EQ(OrCodePage::s_supportLcidTable[i], masks[i]) << i;
}

struct UnicodeCase {
    const char* name;
    int wc;
    unsigned short lcid1;
    unsigned short lcid2;
    int charset;
    unsigned short language;
};

class CharsetsOfCharacters : public testing::TestWithParam<UnicodeCase> {};

TEST_P(CharsetsOfCharacters, AreChosenByLanguage)
{
    const UnicodeCase& c = GetParam();
    EXPECT_EQ(OrCodePage::CharSetFromUnicode(static_cast<wchar_t>(c.wc), c.lcid1, c.lcid2), c.charset);
}

TEST_P(CharsetsOfCharacters, GiveTheLanguage)
{
    const UnicodeCase& c = GetParam();
    EXPECT_EQ(OrCodePage::LanguageFromUnicode(static_cast<wchar_t>(c.wc), c.lcid1, c.lcid2), c.language);
}

const UnicodeCase kUnicodeCases[] = {
    {"IdeographInTheFirstLanguage", 0x4E00, 0x0411, 0x0804, 128, 0x0411},
    {"IdeographInTheSecondLanguage", 0x4E00, 0x0409, 0x0804, 134, 0x0804},
    {"IdeographInNeitherIsInTheLowestBit", 0x4E00, 0x0409, 0x0409, 134, 0x0804},
    {"FirstLanguageWinsAlsoWithALaterBit", 0x4E00, 0x0411, 0x0404, 128, 0x0411},
    {"SecondLanguageWinsAlsoWithALaterBit", 0x4E00, 0x0409, 0x0411, 128, 0x0411},
    {"LetterInRussian", L'A', 0x0419, 0x0409, 204, 0x0419},
    {"LetterInRussianWhateverTheSecond", L'A', 0x0419, 0x0411, 204, 0x0419},
    {"DigitIsInTheFirstLanguage", L'1', 0x0411, 0x0804, 128, 0x0411},
    {"ThaiInEnglish", 0x0E01, 0x0409, 0x0409, 222, 0x041E},
    {"CyrillicInEnglish", 0x0416, 0x0409, 0x0409, 204, 0x0419},
    {"CyrillicInEnglishAndJapanese", 0x0416, 0x0409, 0x0411, 128, 0x0411},
    {"HebrewInArabic", 0x05D0, 0x0401, 0x0401, 177, 0x040D},
    {"ArabicInEnglish", 0x0627, 0x0409, 0x0419, 178, 0x0401},
    {"EuroInGreek", 0x20AC, 0x0408, 0x0409, 0, 0x0409},
    {"HiraganaInTheSecondLanguage", 0x3042, 0x0409, 0x0411, 128, 0x0411},
    {"KoreanInJapanese", 0xAC00, 0x0411, 0x0804, 129, 0x0412},
    {"BopomofoInSimplifiedChinese", 0x3105, 0x0804, 0x0404, 134, 0x0804},
    {"BengaliInEnglish", 0x0995, 0x0409, 0x0409, 256, 0x0445},
    {"LetterInHindi", L'A', 0x0439, 0x0409, 263, 0x0446},
    {"SixteenBitsEnd", 0xFFFF, 0x0411, 0x0804, 128, 0x0411},
    {"AboveSixteenBitsIsNoKnownCharacter", 0x10041, 0x0411, 0x0804, 128, 0x0411},
    {"NegativeIsNoKnownCharacter", -1, 0x0411, 0x0804, 128, 0x0411},
};

INSTANTIATE_TEST_SUITE_P(All, CharsetsOfCharacters, testing::ValuesIn(kUnicodeCases),
                         nameOfCase<UnicodeCase>);

} // namespace

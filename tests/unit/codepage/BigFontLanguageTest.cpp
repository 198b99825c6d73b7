// Unknown big fonts go by the system's default language, which is asked for once a process:
// each test is a process of its own.
#include "TvBigFont.h"
#include "TvCharMapper.h"
#include "TvPlatformBase.h"

#include "CaseName.h"
#include "EachTestAlone.h"

#include <cstdlib>

namespace {

struct Language {
    const char* name;
    unsigned lcid;
    int index;
    code_page_id id;
};

class BigFontLanguage : public testing::TestWithParam<Language> {};

TEST_P(BigFontLanguage, DecidesUnknownFonts)
{
    tvPlatformSetSystemDefaultLCID(GetParam().lcid);
    EXPECT_EQ(findCodepageByBigfont(L"unknown.shx", nullptr), GetParam().index);
    EXPECT_EQ(findCodepageByBigfontInUserDefined(L"unknown.shx", nullptr), GetParam().index);
    EXPECT_EQ(TvCharMapper::getCpByBigFont(L"/fonts/unknown", nullptr), GetParam().id);
}

TEST_P(BigFontLanguage, IsKeptOnceAskedFor)
{
    tvPlatformSetSystemDefaultLCID(GetParam().lcid);
    findCodepageByBigfont(L"unknown.shx", nullptr);
    tvPlatformSetSystemDefaultLCID(GetParam().index == 1 ? 0x0804 : 0x0411);
    EXPECT_EQ(findCodepageByBigfont(L"unknown.shx", nullptr), GetParam().index);
}

const Language kLanguages[] = {
    {"Japanese", 0x0411, 1, CP_ANSI_932},
    {"ChineseOfTaiwan", 0x0404, 2, CP_ANSI_950},
    {"ChineseOfMacau", 0x1404, 2, CP_ANSI_950},
    {"Korean", 0x0412, 3, CP_ANSI_949},
    {"ChineseOfTheMainland", 0x0804, 5, CP_ANSI_936},
    {"ChineseOfHongKong", 0x0C04, 5, CP_ANSI_936},
    {"ChineseOfSingapore", 0x1004, 5, CP_ANSI_936},
    {"English", 0x0409, 0, CP_UNDEFINED},
    {"Russian", 0x0419, 0, CP_UNDEFINED},
    {"Thai", 0x041E, 0, CP_UNDEFINED},
    {"Arabic", 0x0401, 0, CP_UNDEFINED},
    {"Unknown", 0x0500, 0, CP_UNDEFINED},
};

INSTANTIATE_TEST_SUITE_P(Languages, BigFontLanguage, testing::ValuesIn(kLanguages), nameOfCase<Language>);

struct Environment {
    const char* name;
    const char* locale;
    int index;
};

class BigFontEnvironment : public testing::TestWithParam<Environment> {};

TEST_P(BigFontEnvironment, DecidesUnknownFonts)
{
    setenv("LC_ALL", GetParam().locale, 1);
    EXPECT_EQ(findCodepageByBigfont(L"unknown.shx", nullptr), GetParam().index);
}

const Environment kEnvironments[] = {
    {"Japan", "ja_JP.UTF-8", 1},   {"Taiwan", "zh_TW.UTF-8", 2},  {"Korea", "ko_KR.UTF-8", 3},
    {"China", "zh_CN.GB18030", 5}, {"Germany", "de_DE.UTF-8", 0}, {"None", "C", 0},
};

INSTANTIATE_TEST_SUITE_P(Locales, BigFontEnvironment, testing::ValuesIn(kEnvironments),
                         nameOfCase<Environment>);

} // namespace

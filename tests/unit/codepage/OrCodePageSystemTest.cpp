#include "OrCodePage.h"

#include "EachTestAlone.h"

#include "TvPlatformBase.h"

#include <cstdlib>

namespace {

// Before the platform library has been asked for anything.
void setLocale(const char* locale) { ASSERT_EQ(setenv("LC_ALL", locale, 1), 0); }

TEST(SystemLanguage, IsTheEnvironments)
{
    setLocale("ja_JP.UTF-8");
    EXPECT_EQ(OrCodePage::SysDefaultLCID(), 0x0411);
    EXPECT_EQ(OrCodePage::SysCodePage(), 932);
}

TEST(SystemLanguage, OfAnUnknownLocaleIsEnglish)
{
    setLocale("C");
    EXPECT_EQ(OrCodePage::SysDefaultLCID(), 0x0409);
    EXPECT_EQ(OrCodePage::SysCodePage(), 1252);
}

TEST(SystemLanguage, IsNotAskedAtLoadTime)
{
    EXPECT_EQ(OrCodePage::s_sysDefaultLCID, 0);
    EXPECT_EQ(OrCodePage::s_sysCodePage, 0);
    tvPlatformSetSystemDefaultLCID(0x0419);
    tvPlatformSetACP(1251);
    EXPECT_EQ(OrCodePage::SysDefaultLCID(), 0x0419);
    EXPECT_EQ(OrCodePage::SysCodePage(), 1251);
}

TEST(SystemLanguage, IsKeptFromTheFirstAnswerOn)
{
    tvPlatformSetSystemDefaultLCID(0x0419);
    OrCodePage::SysDefaultLCID();
    tvPlatformSetSystemDefaultLCID(0x0408);
    EXPECT_EQ(OrCodePage::SysDefaultLCID(), 0x0419);
    EXPECT_EQ(OrCodePage::s_sysDefaultLCID, 0x0419);
}

TEST(SystemCodePage, FollowsTheHostsChoiceAtOnce)
{
    tvPlatformSetACP(1251);
    OrCodePage::SysCodePage();
    tvPlatformSetACP(936);
    EXPECT_EQ(OrCodePage::SysCodePage(), 936);
    EXPECT_EQ(OrCodePage::s_sysCodePage, 936);
}

TEST(SystemLanguage, IsCutTo16Bits)
{
    tvPlatformSetSystemDefaultLCID(0x50419);
    EXPECT_EQ(OrCodePage::SysDefaultLCID(), 0x0419);
}

TEST(SystemCodePage, IsCutTo16BitsAndKeptWhole)
{
    tvPlatformSetACP(0x104E4);
    EXPECT_EQ(OrCodePage::SysCodePage(), 0x04E4);
    EXPECT_EQ(OrCodePage::s_sysCodePage, 0x104E4);
}

// Character sets 239 to 255 stand for the system's own.

TEST(SystemCharsets, HaveTheChiefLanguageOfTheSystemsCharset)
{
    tvPlatformSetSystemDefaultLCID(0x0422); // Ukrainian: Cyrillic, whose chief language is Russian
    for (int cs = 239; cs <= 255; ++cs)
        EXPECT_EQ(OrCodePage::CharSetToLCID(cs), 0x0419u) << cs;
}

TEST(SystemCharsets, UseTheKeptLanguage)
{
    tvPlatformSetSystemDefaultLCID(0x0411);
    OrCodePage::SysDefaultLCID();
    tvPlatformSetSystemDefaultLCID(0x0408);
    EXPECT_EQ(OrCodePage::CharSetToLCID(255), 0x0411u);
}

TEST(SystemCharsets, OfALanguageWithoutCharsetHaveItsPresentValue)
{
    tvPlatformSetSystemDefaultLCID(0x0500);
    OrCodePage::SysDefaultLCID();
    tvPlatformSetSystemDefaultLCID(0x0408);
    EXPECT_EQ(OrCodePage::CharSetToLCID(239), 0x0408u);
}

TEST(SystemCharsets, OfAnIndicLanguageHaveItsChiefLanguage)
{
    tvPlatformSetSystemDefaultLCID(0x0439); // Hindi shares 263 with Punjabi
    EXPECT_EQ(OrCodePage::CharSetToLCID(240), 1094u);
}

TEST(SystemCharsets, EndAt238And256)
{
    tvPlatformSetSystemDefaultLCID(0x0422);
    EXPECT_EQ(OrCodePage::CharSetToLCID(238), 1029u);
    EXPECT_EQ(OrCodePage::CharSetToLCID(256), 1093u);
}

} // namespace

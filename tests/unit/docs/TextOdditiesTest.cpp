// The oddities of text and code pages that docs/oddities.md lists: one case a heading.
#include <TvOsBase.h>

#include <gtest/gtest.h>

#include <algorithm>

namespace {

TEST(TextOddities, WhatAPageLacksBecomesAnEscape)
{
    TvCharMapper::initialize(L"");

    TvVector<char> bytes;
    TvCharMapper::wideCharToMultiByte(CP_ANSI_1252, L"\u2300", 1, bytes);
    EXPECT_STREQ(bytes.asArrayPtr(), "\\U+2300");
}

TEST(TextOddities, AByteWithoutACharacterKeepsItsValue)
{
    TvCharMapper::initialize(L"");

    TvVector<wchar_t> wide;
    TvCharMapper::multiByteToWideChar(CP_ANSI_1252, "\x80", 1, wide);
    EXPECT_EQ(wide.at(0), 0x80);
}

TEST(TextOddities, ResultsCountTheirTerminator)
{
    TvCharMapper::initialize(L"");

    TvVector<wchar_t> wide;
    TvCharMapper::multiByteToWideChar(CP_ANSI_1252, "door", 4, wide);
    EXPECT_EQ(wide.length(), 5);
}

TEST(TextOddities, OneByteBehindUTF8TextIsRead)
{
    TvVector<wchar_t> wide;
    TvCharMapper::utf8ToUnicode("ab", 1, wide);
    EXPECT_STREQ(wide.asArrayPtr(), L"ab");
}

TEST(TextOddities, UTF8OfNothingHasNoTerminator)
{
    TvVector<char> utf8;
    TvCharMapper::unicodeToUtf8(L"", 0, utf8);
    EXPECT_EQ(utf8.length(), 0);
}

TEST(TextOddities, FourByteUTF8IsNotDecoded)
{
    TvVector<wchar_t> wide;
    TvCharMapper::utf8ToUnicode("\xF0\x9F\x98\x80", 4, wide);
    EXPECT_STREQ(wide.asArrayPtr(), L"\x07D8\x0080");
}

TEST(TextOddities, TheNumberOfIso88596Is28586)
{
    TvCharMapper::initialize(L"");

    EXPECT_EQ(TvCodePageMapper::ornaCpToAnsiCp(CP_ISO8859_6), 28586u);
    EXPECT_EQ(TvCodePageMapper::ansiCpToOrnaCp(28596), CP_UNDEFINED);
    EXPECT_EQ(theTvCodePages()->findMapperByAnsiCp(28596)->m_id, CP_ISO8859_6);
}

TEST(TextOddities, TheEscapeOfTheSystemPageIsNoEscapeToIsCIForMIF)
{
    EXPECT_TRUE(TvCharConverter::isMIF(L"\\M+0815F"));
    EXPECT_EQ(isCIForMIF(L"\\M+0815F"), 0);
    EXPECT_EQ(isCIForMIF(L"\\M+1815F"), 'm');
}

TEST(TextOddities, TwoLookUpsOfOneFontDiffer)
{
    tvPlatformSetSystemDefaultLCID(0x0409);

    EXPECT_EQ(TvCharMapper::getCpByBigFont(L"/fonts/extfont2", nullptr), CP_ANSI_932);
    EXPECT_EQ(TvCharMapper::getCpIndexByBigFont(L"/fonts/extfont2", nullptr), 0);
    EXPECT_EQ(TvCharMapper::getCpIndexByBigFont(L"extfont2.shx", nullptr), 1);
    tvPlatformSetSystemDefaultLCID(0);
}

TEST(TextOddities, UserDefinedCharactersAllLookAlike)
{
    wchar_t one, other;
    OrCodePage::UnicodeForUserDefinedDBCS(one, short(0x7040), 932);
    OrCodePage::UnicodeForUserDefinedDBCS(other, short(0x7041), 932);
    EXPECT_EQ(one, other);
    OrCodePage::InitUserDefinedDBCSArray();
}

TEST(TextOddities, HongKongCountsAsSimplifiedChinese)
{
    EXPECT_EQ(OrCodePage::LCIDToCharSet(0x0C04), 134);
    EXPECT_EQ(OrCodePage::LCIDToCharSet(0x0404), 136); // Taiwan
}

TEST(TextOddities, TheLanguageIsAskedOnceAndTheCodePageAlways)
{
    const unsigned short before = OrCodePage::SysDefaultLCID();
    tvPlatformSetSystemDefaultLCID(before == 0x0411 ? 0x0419 : 0x0411);
    EXPECT_EQ(OrCodePage::SysDefaultLCID(), before);
    tvPlatformSetACP(1253);
    EXPECT_EQ(OrCodePage::SysCodePage(), 1253);
    tvPlatformSetACP(0);
    tvPlatformSetSystemDefaultLCID(0);
}

TEST(TextOddities, Number0IsNotTheSystemPageUnderTheWindowsNames)
{
    TvCharMapper::initialize(L"");
    tvPlatformSetACP(1253);

    wchar_t plain, system;
    MultiByteToWideChar(0, 0, "\xE1", 1, &plain, 1);
    MultiByteToWideChar(3, 0, "\xE1", 1, &system, 1);
    EXPECT_EQ(plain, 0xE1);
    EXPECT_EQ(system, 0x3B1); // the alpha of 1253
    tvPlatformSetACP(0);
}

TEST(TextOddities, TheSystemIdsHaveNoLeadBytes)
{
    TvCharMapper::initialize(L"");

    tvPlatformSetACP(932);
    EXPECT_FALSE(tvIsLeadByte(0x82, CP_UNDEFINED));
    EXPECT_TRUE(tvIsLeadByte(0x82, CP_ANSI_932));
    tvPlatformSetACP(0);
}

TEST(TextOddities, HalfACharacterAtTheEndIsNotCounted)
{
    tvPlatformSetACP(932);
    const unsigned char text[] = {'a', 0x82, 0};
    EXPECT_EQ(_mbslen(text), 1u);
    tvPlatformSetACP(0);
}

TEST(TextOddities, PunctuationMayBeListedTwice)
{
    const TvVector<wchar_t>& all = TvCharCategory::s_instance.allPuncts();
    EXPECT_EQ(std::count(all.begin(), all.end(), L'\u203A'), 2);
}

} // namespace

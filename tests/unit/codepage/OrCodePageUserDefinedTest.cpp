#include "OrCodePage.h"

#include "EachTestAlone.h"

namespace {

constexpr wchar_t kUntouched = 0x1234;

wchar_t keep(short dbcs, int cp)
{
    wchar_t wc = kUntouched;
    EXPECT_TRUE(OrCodePage::UnicodeForUserDefinedDBCS(wc, dbcs, cp)) << dbcs;
    return wc;
}

void fillAllPlaces()
{
    for (int i = 0; i < 256; ++i)
        keep(static_cast<short>(0x7001 + i), 936);
}

TEST(UserDefinedCharacters, AreFreeAndOfOneCharacterWhenTheLibraryIsLoaded)
{
    for (const OrCodePage::UserDefinedDBCS& place : OrCodePage::s_arrUserDefinedDBCS) {
        EXPECT_EQ(place.dbcs, 0);
        EXPECT_EQ(place.codePage, 0);
        EXPECT_EQ(place.unicode, 0xE800);
    }
}

TEST(UserDefinedCharacters, AllReadAsTheFirst)
{
    EXPECT_EQ(keep(0x7140, 932), 0xE800);
    EXPECT_EQ(keep(0x7141, 932), 0xE800);
}

TEST(UserDefinedCharacters, TakeThePlacesInOrder)
{
    keep(0x7140, 932);
    keep(0x7141, 936);
    short dbcs = 0;
    int cp = 0;
    EXPECT_TRUE(OrCodePage::DBCSForUserDefinedUnicode(dbcs, 0xE800));
    EXPECT_TRUE(OrCodePage::CodepageForUserDefinedUnicode(cp, static_cast<short>(0xE800)));
    EXPECT_EQ(dbcs, 0x7140);
    EXPECT_EQ(cp, 932);
    EXPECT_TRUE(OrCodePage::DBCSForUserDefinedUnicode(dbcs, 0xE801));
    EXPECT_TRUE(OrCodePage::CodepageForUserDefinedUnicode(cp, static_cast<short>(0xE801)));
    EXPECT_EQ(dbcs, 0x7141);
    EXPECT_EQ(cp, 936);
}

TEST(UserDefinedCharacters, KeepTheirPlaceAndGetTheNewCodePage)
{
    keep(0x7140, 932);
    keep(0x7141, 936);
    keep(0x7140, 949);
    EXPECT_EQ(OrCodePage::s_arrUserDefinedDBCS[0].codePage, 949);
    EXPECT_EQ(OrCodePage::s_arrUserDefinedDBCS[1].codePage, 936);
    EXPECT_EQ(OrCodePage::s_arrUserDefinedDBCS[2].dbcs, 0);
}

TEST(UserDefinedCharacters, MayBeCodesAbove0x7FFF)
{
    keep(static_cast<short>(0xF040), 932);
    keep(static_cast<short>(0xF040), 932);
    EXPECT_EQ(OrCodePage::s_arrUserDefinedDBCS[0].dbcs, static_cast<short>(0xF040));
    EXPECT_EQ(OrCodePage::s_arrUserDefinedDBCS[1].dbcs, 0);
}

TEST(UserDefinedCharacters, CodeZeroTakesNoPlace)
{
    EXPECT_EQ(keep(0, 932), 0xE800);
    EXPECT_EQ(OrCodePage::s_arrUserDefinedDBCS[0].codePage, 932);
    keep(0x7140, 936);
    EXPECT_EQ(OrCodePage::s_arrUserDefinedDBCS[0].dbcs, 0x7140);
}

TEST(UserDefinedCharacters, FillTheTable)
{
    fillAllPlaces();
    short dbcs = 0;
    EXPECT_TRUE(OrCodePage::DBCSForUserDefinedUnicode(dbcs, 0xE8FF));
    EXPECT_EQ(dbcs, 0x7100);
}

TEST(UserDefinedCharacters, ANewOneIsRefusedByAFullTable)
{
    fillAllPlaces();
    wchar_t wc = kUntouched;
    EXPECT_FALSE(OrCodePage::UnicodeForUserDefinedDBCS(wc, 0x7000, 936));
    EXPECT_FALSE(OrCodePage::UnicodeForUserDefinedDBCS(wc, 0, 936));
    EXPECT_EQ(wc, kUntouched);
}

TEST(UserDefinedCharacters, AKnownOneIsFoundInAFullTable)
{
    fillAllPlaces();
    EXPECT_EQ(keep(0x7100, 950), 0xE800);
    EXPECT_EQ(OrCodePage::s_arrUserDefinedDBCS[255].codePage, 950);
}

TEST(UserDefinedCharacters, AreForgottenByInit)
{
    fillAllPlaces();
    OrCodePage::InitUserDefinedDBCSArray();
    for (const OrCodePage::UserDefinedDBCS& place : OrCodePage::s_arrUserDefinedDBCS) {
        EXPECT_EQ(place.dbcs, 0);
        EXPECT_EQ(place.codePage, 0);
        EXPECT_EQ(place.unicode, 0xE800);
    }
}

TEST(UserDefinedCharacters, FreePlacesAnswerZero)
{
    short dbcs = 1;
    int cp = 1;
    EXPECT_TRUE(OrCodePage::DBCSForUserDefinedUnicode(dbcs, 0xE8FF));
    EXPECT_TRUE(OrCodePage::CodepageForUserDefinedUnicode(cp, static_cast<short>(0xE8FF)));
    EXPECT_EQ(dbcs, 0);
    EXPECT_EQ(cp, 0);
}

TEST(UserDefinedCharacters, EndAtE800AndE8FF)
{
    short dbcs = 77;
    for (const int wc : {0, 0xE7FF, 0xE900, 0xFFFF, 0x1E800, -1, -6144})
        EXPECT_FALSE(OrCodePage::DBCSForUserDefinedUnicode(dbcs, static_cast<wchar_t>(wc))) << wc;
    int cp = 77;
    for (const int wc : {0, 0x7FFF, 0xE7FF, 0xE900, 0xFFFF})
        EXPECT_FALSE(OrCodePage::CodepageForUserDefinedUnicode(cp, static_cast<short>(wc))) << wc;
    EXPECT_EQ(dbcs, 77);
    EXPECT_EQ(cp, 77);
}

} // namespace

#include "TvCodePages.h"

#include "TvPlatformBase.h"

#include <gtest/gtest.h>

namespace {

code_page_id id(int value) { return static_cast<code_page_id>(value); }

TEST(TvCodePageMapper, NumberOfEachId)
{
    const unsigned int numbers[46] = {0,     20127, 28591, 28592, 28593, 28594, 28595, 28586, 28597, 28598,
                                      28599, 437,   850,   852,   855,   857,   860,   861,   863,   864,
                                      865,   869,   932,   10000, 10002, 949,   1361,  866,   1250,  1251,
                                      1252,  20936, 1253,  1254,  1255,  1256,  1257,  874,   932,   936,
                                      949,   950,   1361,  0,     1258,  65001};
    for (int i = 0; i < 46; ++i)
        EXPECT_EQ(TvCodePageMapper::arrAnsiOrnaCpMapper[i], numbers[i]) << i;
}

TEST(TvCodePageMapper, NumberOfAnIdIsThatOfTheTable)
{
    for (int i = 0; i < 46; ++i) {
        if (i != 0 && i != 1 && i != 43) {
            EXPECT_EQ(TvCodePageMapper::ornaCpToAnsiCp(id(i)), TvCodePageMapper::arrAnsiOrnaCpMapper[i]) << i;
        }
    }
    EXPECT_EQ(TvCodePageMapper::ornaCpToAnsiCp(id(45)), 65001u);
}

TEST(TvCodePageMapper, IdsWithoutANumberGiveTheThreadsCodePage)
{
    for (const int i : {0, 1, 43, 46, 47, 100, -1, 2147483647, -2147483647 - 1})
        EXPECT_EQ(TvCodePageMapper::ornaCpToAnsiCp(id(i)), 3u) << i;
}

// The highest id with this number in the table, 0 for none.
int idByScan(unsigned int number)
{
    int found = 45;
    while (found > 0 && TvCodePageMapper::arrAnsiOrnaCpMapper[found] != number)
        --found;
    return found;
}

TEST(TvCodePageMapper, IdOfEveryNumberIsWhatAScanOfTheTableFinds)
{
    for (int number = -70000; number <= 70000; ++number) {
        ASSERT_EQ(TvCodePageMapper::ansiCpToOrnaCp(number), idByScan(static_cast<unsigned int>(number)))
            << number;
    }
    // Numbers that differ from one of the table in high bits alone.
    for (const unsigned int number : TvCodePageMapper::arrAnsiOrnaCpMapper) {
        for (int bit = 7; bit < 32; ++bit) {
            const unsigned int other = number ^ 1u << bit;
            ASSERT_EQ(TvCodePageMapper::ansiCpToOrnaCp(static_cast<int>(other)), idByScan(other)) << other;
        }
    }
}

struct NumberCase {
    int number;
    int id;
};

TEST(TvCodePageMapper, ANumberOfTwoIdsGivesTheHigher)
{
    for (const NumberCase& c : {NumberCase{932, 38}, {949, 40}, {1361, 42}})
        EXPECT_EQ(TvCodePageMapper::ansiCpToOrnaCp(c.number), c.id) << c.number;
}

TEST(TvCodePageMapper, NumbersThatSurprise)
{
    for (const NumberCase& c : {NumberCase{28596, 0}, {28586, 7}, {0, 43}, {65001, 45}})
        EXPECT_EQ(TvCodePageMapper::ansiCpToOrnaCp(c.number), c.id) << c.number;
}

TEST(TvCodePageMapper, EveryOtherNumberGivesItsId)
{
    for (int i = 1; i < 46; ++i) {
        if (i != 22 && i != 25 && i != 26) {
            EXPECT_EQ(
                TvCodePageMapper::ansiCpToOrnaCp(static_cast<int>(TvCodePageMapper::arrAnsiOrnaCpMapper[i])),
                i);
        }
    }
}

TEST(TvCodePageMapper, UnknownNumbersGiveUndefined)
{
    for (const int number : {3, 1, 1259, -1, 65000, 2147483647})
        EXPECT_EQ(TvCodePageMapper::ansiCpToOrnaCp(number), 0) << number;
}

TEST(TvCodePageMapper, SystemNumberIsThePlatforms)
{
    tvPlatformSetACP(1253);
    EXPECT_EQ(TvCodePageMapper::currentSystemAnsiCp(), 1253u);
    tvPlatformSetACP(0);
    EXPECT_EQ(TvCodePageMapper::currentSystemAnsiCp(), GetACP());
}

TEST(OlderCodePageNames, TellTheDoubleByteCodePages)
{
    for (int i = -1; i <= 47; ++i) {
        const bool expected = i == 22 || (i >= 24 && i <= 26) || i == 31 || (i >= 38 && i <= 42);
        EXPECT_EQ(IsMultiByteCodePage(id(i)), expected) << i;
        EXPECT_EQ(isAsianCodepage(id(i)), expected) << i;
    }
}

TEST(OlderCodePageNames, MapEscapeDigits)
{
    EXPECT_EQ(mapCodepage('1'), CP_ANSI_932);
    EXPECT_EQ(mapCodepage('5'), CP_ANSI_936);
    EXPECT_EQ(mapCodepage('7'), CP_UNDEFINED);
    EXPECT_EQ(mapCodepage(-1), CP_UNDEFINED);
    EXPECT_EQ(reMapCodepage(CP_GB2312), '5');
    EXPECT_EQ(reMapCodepage(CP_ANSI_1252), '0');
}

TEST(CodePageId, IsThirtyTwoBitsWide)
{
    EXPECT_EQ(sizeof(code_page_id), 4u);
    EXPECT_EQ(CP_CNT, 46);
    EXPECT_EQ(numValidCodepages(), 46);
}

} // namespace

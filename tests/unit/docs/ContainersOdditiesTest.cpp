// The oddities of containers, strings and small helpers that docs/oddities.md lists: one case a heading.
#include "Recorder.h"

#include <TvOsBase.h>

#include <gtest/gtest.h>

#include <cstring>

namespace {

TEST(ContainersOddities, BeginAndEndDoNotUnshare)
{
    TvVector<int> numbers;
    for (int i = 1; i <= 3; ++i)
        numbers.append(i);

    TvVector<int> copy = numbers; // numbers is {1, 2, 3}
    EXPECT_EQ(copy.begin(), numbers.begin());
    copy.copyBeforeWrite(0); // the writer's own
    EXPECT_NE(copy.begin(), numbers.begin());
}

TEST(ContainersOddities, ASmallerReserveCutsElementsOff)
{
    TvVector<int> numbers;
    for (int i = 1; i <= 3; ++i)
        numbers.append(i);

    numbers.reserve(2); // numbers was {1, 2, 3}
    EXPECT_EQ(numbers.length(), 2);
    EXPECT_EQ(numbers.last(), 2);
}

TEST(ContainersOddities, ABadIndexIsReportedAndAnswered)
{
    TvVector<int> numbers;
    for (int i = 1; i <= 3; ++i)
        numbers.append(i);
    Recorder host;

    int* const place = &numbers.at(7); // numbers is {1, 2, 3}
    EXPECT_EQ(place, numbers.begin() + 7);
    EXPECT_EQ(host.statuses().at(0), Orna::eInvalidIndex);
}

TEST(ContainersOddities, AnEmptiedStringForgetsItsCodePage)
{
    TvStringA text("door");
    text.setCodepage(932);
    text.setEmpty();
    EXPECT_EQ(text.header()->codepage, 0);
}

TEST(ContainersOddities, EqualityOfStringsComparesAddresses)
{
    const TvStringA one("door"), other("door");
    EXPECT_FALSE(one == other);
    EXPECT_EQ(std::strcmp(one, other), 0);
}

TEST(ContainersOddities, ABufferIsTheLengthAtOnce)
{
    TvStringA text("door");
    char* room = text.getBuffer(20);
    EXPECT_EQ(text.numOfChars(), 20u);
    std::strcpy(room, "window");
    text.releaseBuffer(-1);
    EXPECT_EQ(text.numOfChars(), 6u);
}

TEST(ContainersOddities, LengthCountsCharactersAndNumOfCharsBytes)
{
    tvPlatformSetACP(932);
    EXPECT_EQ(TvCharOp::length("\x82\xA0"), 1u);
    EXPECT_EQ(TvCharOp::numOfChars("\x82\xA0"), 2u);
    tvPlatformSetACP(0);
}

TEST(ContainersOddities, ABoundedCopyWritesOneMore)
{
    wchar_t room[3] = {L'x', L'x', L'x'};
    _tarmcscpy_s(room, 2, L"abc");
    EXPECT_EQ(room[2], 0);
}

TEST(ContainersOddities, OnlyBase16HasLettersAsDigits)
{
    EXPECT_TRUE(isdigit_WithDiffCodeSys(16, L'b'));
    EXPECT_FALSE(isdigit_WithDiffCodeSys(12, L'b'));
}

TEST(ContainersOddities, TheLargerOfEqualsIsTheSecond)
{
    const int first = 4, second = 4;
    EXPECT_EQ(&TvMath::max(first, second), &second);
}

} // namespace

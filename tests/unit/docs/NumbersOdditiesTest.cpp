// The oddities of numbers that docs/oddities.md lists: one case a heading.
#include "Recorder.h"

#include <TvOsBase.h>

#include <gtest/gtest.h>

#include <cerrno>
#include <cmath>

namespace {

TEST(NumbersOddities, DigitsBehindTheShortestTextAreZeros)
{
    char text[64];

    tvFltToF(text, 0.1, 20);
    EXPECT_STREQ(text, "0.10000000000000000000");
}

TEST(NumbersOddities, ExponentsHaveThreeDigits)
{
    char text[64];

    tvFltToE(text, 1234.5, 3, 'e');
    EXPECT_STREQ(text, "1.234e+003"); // the tie goes to the even digit
}

TEST(NumbersOddities, Style1FillsSomeNumbersOnly)
{
    char text[64];

    tvFltToG(text, 2.0, 4, 'e', 1);
    EXPECT_STREQ(text, "2.000");
    tvFltToG(text, 1.5, 4, 'e', 1);
    EXPECT_STREQ(text, "1.5");
}

TEST(NumbersOddities, Precision0Below1LeavesTheBarePoint)
{
    char text[64];

    tvFltToG(text, 0.5, 0, 'e', 0);
    EXPECT_STREQ(text, "0.");
}

TEST(NumbersOddities, FIsNoConversionLetter)
{
    char text[64];
    Recorder host;

    tvDToStr(text, 1.5, 'F', 2, 0);
    EXPECT_STREQ(text, "");
    EXPECT_EQ(host.messages().at(0), L"EMPTY THROW");
}

TEST(NumbersOddities, OneReaderKnowsHexadecimalAndTheOtherDoesNot)
{
    EXPECT_EQ(_wtof(L"0x10"), 16.0);
    EXPECT_EQ(tvStrToD(L"0x10", nullptr), 0.0);
}

TEST(NumbersOddities, SubnormalResultsAreNoError)
{
    errno = 0;

    tvStrToD("1e-310", nullptr);
    EXPECT_EQ(errno, 0);
    tvStrToD("1e-400", nullptr);
    EXPECT_EQ(errno, ERANGE);
}

TEST(NumbersOddities, NotANumberHasASignInItsDigits)
{
    int point, negative;
    TvGdImpl::freedtoa(TvGdImpl::dtoa(-0.0, 0, 0, &point, &negative, nullptr));
    EXPECT_EQ(negative, 1);
    TvGdImpl::freedtoa(TvGdImpl::dtoa(-std::nan(""), 0, 0, &point, &negative, nullptr));
    EXPECT_EQ(negative, 1);
}

} // namespace

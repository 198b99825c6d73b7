#include "TvNumber.h"

#include "TvAlloc.h"

#include "Recorder.h"

#include <gtest/gtest.h>

#include <string>

namespace {

struct Case {
    char conv;
    const char* expected;
};

class TvDToStr : public testing::TestWithParam<Case> {};

TEST_P(TvDToStr, GoesByTheLetter)
{
    char out[64];
    tvDToStr(out, 1234567.0, GetParam().conv, 3, 0);
    EXPECT_STREQ(out, GetParam().expected);
    wchar_t* wide = tvDToStr(1234567.0, GetParam().conv, 3, 0);
    const std::wstring text = wide;
    EXPECT_EQ(std::string(text.begin(), text.end()), GetParam().expected);
    _tvFree(wide);
}

const Case kLetters[] = {
    {'e', "1.235e+006"}, {'E', "1.235E+006"}, {'f', "1234567.000"}, {'g', "1.23e+006"}, {'G', "1.23E+006"},
};
INSTANTIATE_TEST_SUITE_P(Letters, TvDToStr, testing::ValuesIn(kLetters),
                         [](const auto& test) { return std::string(1, test.param.conv); });

TEST(TvDToStrStyle, ReachesTheGeneralLayout)
{
    char out[64];
    tvDToStr(out, 2.0, 'g', 4, 1);
    EXPECT_STREQ(out, "2.000");
}

TEST(TvDToStrUnknownLetter, IsReportedAndLeavesAnEmptyString)
{
    for (const char letter : {'F', 'a', 'd', '\0', '%', '\xFF'}) {
        Recorder recorder;
        char out[8] = "before";
        tvDToStr(out, 1.0, letter, 3, 0);
        EXPECT_STREQ(out, "");
        EXPECT_EQ(recorder.messages(), std::vector<std::wstring>{L"EMPTY THROW"});
    }
}

TEST(TvDToStrUnknownLetter, IsReportedAndGivesNull)
{
    Recorder recorder;
    EXPECT_EQ(tvDToStr(1.0, 'F', 3, 0), nullptr);
    EXPECT_EQ(recorder.messages(), std::vector<std::wstring>{L"EMPTY THROW"});
}

TEST(TvDToStrUnknownLetter, WithoutARecorderLeavesAnEmptyString)
{
    char out[8] = "before";
    tvDToStr(out, 1.0, 'x', 3, 0);
    EXPECT_STREQ(out, "");
    EXPECT_EQ(tvDToStr(1.0, 'x', 3, 0), nullptr);
}

} // namespace

// The output engine when there is no memory for its numbered arguments.
#include "FailNth.h"
#include "TvFormat.h"

#include <gtest/gtest.h>

#include <string>

namespace {

// What a call left when the nth request for memory failed.
struct Outcome {
    int result;
    std::wstring text;
    bool failed;
};

template<class... Args>
Outcome formatFailing(int nth, FailNth::Length length, const wchar_t* format, Args... args)
{
    wchar_t buffer[80] = L"####";
    int result = 0;
    bool failed = false;
    {
        const HeapBalance balance;
        FailNth fail(FailNth::Malloc, nth, length);
        result = FormatUtil::outputStringWithFormat(buffer, 80, format, args...);
        failed = fail.fired();
    }
    return {result, buffer, failed};
}

TEST(FormatFault, AnyAllocationMayFail)
{
    int nth = 1;
    for (; nth < 10; ++nth) {
        const Outcome got = formatFailing(nth, FailNth::Once, L"ab%2$d%1$s", L"x", 7);
        if (!got.failed) { // one untouched run: each had its turn
            EXPECT_EQ(got.result, 4);
            EXPECT_EQ(got.text, L"ab7x");
            break;
        }
        EXPECT_EQ(got.result, -1);
        EXPECT_EQ(got.text, L"");
    }
    EXPECT_GT(nth, 1) << "nothing was refused";
}

TEST(FormatFault, ManyRecordsFailTheSameWay)
{
    const Outcome got = formatFailing(1, FailNth::FromThenOn, L"%4096$d", 7);
    EXPECT_TRUE(got.failed);
    EXPECT_EQ(got.result, -1);
    EXPECT_EQ(got.text, L"");
}

TEST(FormatFault, PlainFormatsNeedNoMemory)
{
    const Outcome got = formatFailing(1, FailNth::FromThenOn, L"%d %.2d %s %f %.20q0", 7, 5, L"x", 1.5, 2.5);
    EXPECT_FALSE(got.failed);
    EXPECT_EQ(got.result, 24);
    EXPECT_EQ(got.text, L"7 0.05 x 1.500000 2.5000");
}

TEST(FormatFault, RecordsAreReleasedOnEveryWayOut)
{
    wchar_t buffer[4];
    const HeapBalance balance;
    EXPECT_EQ(FormatUtil::outputStringWithFormat(buffer, 4, L"%4096$d", 7), 1);
    EXPECT_EQ(FormatUtil::outputStringWithFormat(buffer, 4, L"%4096$5d", 7), -1);
    EXPECT_EQ(FormatUtil::outputStringWithFormat(buffer, 4, L"%4096$dlong", 7), 0);
    EXPECT_EQ(FormatUtil::outputStringWithFormat(buffer, 4, L"%4096$*1$d", -7, 7), -1);
}

} // namespace

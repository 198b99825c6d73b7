#include "TvHooks.h"

#include "FailNth.h"

#include <gtest/gtest.h>

#include <cwchar>

namespace {

// Needs no memory to remember.
class CountingRecorder : public CrashRecorder {
public:
    CountingRecorder() { ornaSetCrashRecorder(this); }
    ~CountingRecorder() override { ornaSetCrashRecorder(nullptr); }
    void record(TvException* fault) override
    {
        ++reports;
        const wchar_t* const text = fault->description();
        std::wcsncpy(last, text ? text : L"(null)", 63);
    }
    int reports = 0;
    wchar_t last[64] = {};
};

int g_traces = 0;

TEST(TracerFault, WithoutABufferItReportsAndCallsNoSink)
{
    HeapBalance balance;
    g_traces = 0;
    TvTracer::setTraceFunctionW([](const wchar_t*) { ++g_traces; });
    CountingRecorder recorder;
    {
        FailNth fail(FailNth::Malloc, 1);
        TvTracer(L"%d", 5);
        EXPECT_TRUE(fail.fired());
    }
    TvTracer::setTraceFunctionW(TvTracer::defaultTraceW);
    EXPECT_EQ(g_traces, 0);
    EXPECT_EQ(recorder.reports, 1);
    EXPECT_STREQ(recorder.last, L"Out of memory!!");
}

TEST(ReportFault, WithoutAnObjectNothingIsRecorded)
{
    HeapBalance balance;
    CountingRecorder recorder;
    FailNth fail(FailNth::New, 1, FailNth::FromThenOn);
    TvDetail::reportStatus(Orna::eOutOfMemory);
    TvDetail::reportMessage(L"text");
    EXPECT_EQ(recorder.reports, 0);
}

TEST(ReportFault, WithoutACopyTheMessageIsNull)
{
    HeapBalance balance;
    CountingRecorder recorder;
    FailNth fail(FailNth::New, 2);
    TvDetail::reportMessage(L"text");
    EXPECT_EQ(recorder.reports, 1);
    EXPECT_STREQ(recorder.last, L"(null)");
}

TEST(ExceptionFault, CopiesOfAMessageMayFail)
{
    for (int nth = 1;; ++nth) {
        HeapBalance balance;
        FailNth fail(FailNth::New, nth);
        const TvExceptionWithMsg e(L"", 0, L"text");
        TvExceptionWithMsg copy(e);
        copy = e;
        const wchar_t* const text = copy.description();
        EXPECT_TRUE(!text || std::wcscmp(text, L"text") == 0 || *text == 0);
        if (!fail.fired())
            break;
    }
}

#ifndef __SANITIZE_ADDRESS__ // whose wcsdup asks nobody
TEST(ExceptionFault, DescriptionWithoutMemoryIsNullAndComesLater)
{
    HeapBalance balance;
    const TvErrorStatus e(Orna::eOutOfMemory);
    {
        FailNth fail(FailNth::Malloc, 1);
        EXPECT_EQ(e.description(), nullptr);
    }
    EXPECT_STREQ(e.description(), L"error type: 6\tmessage:");
}
#endif

} // namespace

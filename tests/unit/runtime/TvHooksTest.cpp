#include "TvHooks.h"

#include "Recorder.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <string>

#include <unistd.h>

namespace {

using namespace std::string_literals;

// What `action` prints. In a process of its own, because a stream keeps the width of the
// first character that it was given.
template<class Action>
std::string printedBy(Action action)
{
    int ends[2];
    if (pipe(ends) != 0)
        return "no pipe";
    std::fflush(stdout);
    const pid_t child = fork();
    if (child == 0) {
        dup2(ends[1], STDOUT_FILENO);
        if (!std::freopen("/dev/stdout", "w", stdout))
            _exit(1);
        action();
        std::fflush(stdout);
        _exit(0);
    }
    close(ends[1]);
    std::string text;
    char piece[256];
    for (ssize_t n; (n = read(ends[0], piece, sizeof piece)) > 0;)
        text.append(piece, static_cast<std::size_t>(n));
    close(ends[0]);
    return text;
}

std::wstring g_traced;
int g_traces = 0;

void keepTrace(const wchar_t* text)
{
    g_traced = text;
    ++g_traces;
}

class WideTrace : public testing::Test {
protected:
    WideTrace()
    {
        g_traced = L"nothing";
        g_traces = 0;
        TvTracer::setTraceFunctionW(keepTrace);
    }
    ~WideTrace() override { TvTracer::setTraceFunctionW(TvTracer::defaultTraceW); }
};

TEST(Hooks, NoRecorderAtLoad)
{
    EXPECT_EQ(gpOrnaCrashRecorder, nullptr);
    EXPECT_EQ(ornaGetCrashRecorder(), nullptr);
}

TEST(Hooks, SinksAtLoadAreTheDefaultOnes)
{
    EXPECT_EQ(TvTracer::sm_pfnTraceA, &TvTracer::defaultTraceA);
    EXPECT_EQ(TvTracer::sm_pfnTraceW, &TvTracer::defaultTraceW);
}

TEST(Hooks, RecorderIsStoredAndTakenBack)
{
    {
        Recorder recorder;
        EXPECT_EQ(gpOrnaCrashRecorder, &recorder);
        EXPECT_EQ(ornaGetCrashRecorder(), &recorder);
    }
    EXPECT_EQ(ornaGetCrashRecorder(), nullptr);
}

TEST(Report, StatusReachesTheRecorderWithoutAPlace)
{
    Recorder recorder;
    TvDetail::reportStatus(Orna::eInvalidIndex);
    ASSERT_EQ(recorder.faults().size(), 1u);
    EXPECT_TRUE(recorder.faults()[0].isStatus);
    EXPECT_EQ(recorder.faults()[0].status, Orna::eInvalidIndex);
    EXPECT_EQ(recorder.faults()[0].file, L"");
    EXPECT_EQ(recorder.faults()[0].line, 0);
}

TEST(Report, MessageComesFromAFileOfTwoQuotationMarks)
{
    Recorder recorder;
    TvDetail::reportMessage(L"Out of stream buffer!");
    ASSERT_EQ(recorder.faults().size(), 1u);
    EXPECT_FALSE(recorder.faults()[0].isStatus);
    EXPECT_EQ(recorder.faults()[0].message, L"Out of stream buffer!");
    EXPECT_EQ(recorder.faults()[0].file, L"\"\"");
    EXPECT_EQ(recorder.faults()[0].line, 0);
}

TEST(Report, WithoutARecorderNothingIsSeen)
{
    ASSERT_EQ(ornaGetCrashRecorder(), nullptr);
    ::testing::internal::CaptureStdout();
    ::testing::internal::CaptureStderr();
    TvDetail::reportStatus(Orna::eInvalidIndex);
    TvDetail::reportMessage(L"text");
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
}

class Deletion : public TvException {
public:
    explicit Deletion(int& deletions) : m_deletions(deletions) {}
    ~Deletion() override { ++m_deletions; }

private:
    int& m_deletions;
};

TEST(Report, ObjectIsDeletedAfterRecord)
{
    Recorder recorder;
    int deletions = 0;
    TvDetail::report(new Deletion(deletions));
    EXPECT_EQ(deletions, 1);
    EXPECT_EQ(recorder.faults().size(), 1u);
}

TEST(Report, ObjectIsDeletedWithoutARecorder)
{
    int deletions = 0;
    TvDetail::report(new Deletion(deletions));
    EXPECT_EQ(deletions, 1);
}

class Thrower : public CrashRecorder {
public:
    Thrower() { ornaSetCrashRecorder(this); }
    ~Thrower() override { ornaSetCrashRecorder(nullptr); }
    void record(TvException* fault) override { throw static_cast<TvErrorStatus*>(fault); }
};

TEST(Report, RecorderThatThrowsKeepsTheObject)
{
    Thrower recorder;
    try {
        TvDetail::reportStatus(Orna::eOutOfMemory);
        FAIL();
    } catch (TvErrorStatus* fault) {
        EXPECT_EQ(fault->errorType(), Orna::eOutOfMemory);
        delete fault;
    }
}

TEST(Report, RecordIsTheThirdSlot)
{
    Recorder recorder;
    void (**slots)(void*, TvException*);
    std::memcpy(&slots, static_cast<const void*>(&recorder), sizeof slots);
    TvErrorStatus fault(Orna::eFileLocked);
    slots[2](static_cast<CrashRecorder*>(&recorder), &fault);
    EXPECT_EQ(recorder.statuses(), std::vector{Orna::eFileLocked});
}

TEST(TvAsserter, DefaultPrintsFileAndLineAndATrailingBlank)
{
    EXPECT_EQ(printedBy([] { TvAsserter::sm_pfnAssert(L"ignored", L"plot.cpp", 31); }),
              "\nTvAsserter failed-- plot.cpp:31 ");
}

TEST(TvAsserter, DefaultTakesNullsAsEmpty)
{
    EXPECT_EQ(printedBy([] { TvAsserter::sm_pfnAssert(nullptr, nullptr, -1); }),
              "\nTvAsserter failed-- :-1 ");
}

struct SinkCase {
    const char* name;
    const char* text;
    const wchar_t* wide;
    const char* printed;
};

const SinkCase kSinkCases[] = {
    {"Plain", "line\n", L"line\n", "line\n"},
    {"Empty", "", L"", ""},
    {"Null", nullptr, nullptr, ""},
    {"Pair", "100%%", L"100%%", "100%"},
    {"PairInside", "a%%b%%c", L"a%%b%%c", "a%b%c"},
    {"Single", "100% of", L"100% of", "100% of"},
    {"SingleAtTheEnd", "100%", L"100%", "100%"},
    {"Three", "%%%", L"%%%", "%%"},
    {"Four", "%%%%", L"%%%%", "%%"},
    {"Conversions", "%s%d%n%p", L"%s%d%n%p", "%s%d%n%p"},
    {"PairBeforeALetter", "%%s", L"%%s", "%s"},
};

class DefaultSink : public testing::TestWithParam<SinkCase> {};

TEST_P(DefaultSink, Narrow)
{
    EXPECT_EQ(printedBy([] { TvTracer::defaultTraceA(GetParam().text); }), GetParam().printed);
}

TEST_P(DefaultSink, Wide)
{
    EXPECT_EQ(printedBy([] { TvTracer::defaultTraceW(GetParam().wide); }), GetParam().printed);
}

INSTANTIATE_TEST_SUITE_P(All, DefaultSink, testing::ValuesIn(kSinkCases),
                         [](const auto& test) { return test.param.name; });

TEST(NarrowTracer, FormatsToStandardOutput)
{
    EXPECT_EQ(printedBy([] { TvTracer("%s has %d%%\n", "hall", 42); }), "hall has 42%\n");
}

int g_narrowTraces = 0;

TEST(NarrowTracer, DoesNotGoThroughTheSink)
{
    TvTracer::setTraceFunctionA([](const char*) { ++g_narrowTraces; });
    EXPECT_EQ(printedBy([] {
                  TvTracer("%d", 7);
                  if (g_narrowTraces != 0)
                      TvTracer("sink called");
              }),
              "7");
    TvTracer::setTraceFunctionA(TvTracer::defaultTraceA);
}

TEST_F(WideTrace, GoesThroughTheSink)
{
    TvTracer(L"%s has %d%%", L"hall", 42);
    EXPECT_EQ(g_traced, L"hall has 42%");
    EXPECT_EQ(g_traces, 1);
}

TEST_F(WideTrace, EmptyTextIsTraced)
{
    TvTracer(L"");
    EXPECT_EQ(g_traced, L"");
}

TEST_F(WideTrace, TextMayBeLong)
{
    const std::wstring text(100000, L'x');
    TvTracer(L"%s", text.c_str());
    EXPECT_EQ(g_traced, text);
}

TEST_F(WideTrace, NullFormatTracesNothing)
{
    TvTracer(static_cast<const wchar_t*>(nullptr));
    EXPECT_EQ(g_traces, 0);
}

TEST_F(WideTrace, BadFormatTracesNothing)
{
    TvTracer(L"open %");
    EXPECT_EQ(g_traces, 0);
}

TEST_F(WideTrace, NullSinkSwallows)
{
    TvTracer::setTraceFunctionW(nullptr);
    TvTracer(L"text");
    EXPECT_EQ(g_traces, 0);
}

TEST_F(WideTrace, DefaultSinkPrintsWhatWasFormatted)
{
    TvTracer::setTraceFunctionW(TvTracer::defaultTraceW);
    EXPECT_EQ(printedBy([] { TvTracer(L"%d%%%%\n", 5); }), "5%\n");
}

} // namespace

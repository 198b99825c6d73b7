// The oddities of memory, errors and hooks that docs/oddities.md lists: one case a heading.
#include <TvOsBase.h>

#include <gtest/gtest.h>

namespace {

TEST(MemoryOddities, AResizeToNothingFreesNothing)
{
    void* memory = _tvMalloc(20);
    EXPECT_EQ(_tvRealloc(memory, 0), memory);
    _tvFree(memory);
}

TEST(MemoryOddities, TheDebugVariantsGiveNoMemory)
{
    EXPECT_EQ(_tvMallocDbg(20, __FILE__, __LINE__), nullptr);
    void* memory = _tvMalloc(20);
    _tvFreeDbg(memory, __FILE__, __LINE__);
}

TEST(MemoryOddities, SizesBetweenThePoolsComeFromMalloc)
{
    void* memory = _tvMalloc(300);
    EXPECT_FALSE(g_tvGlobalHeap.isResident(memory));
    _tvFree(memory);
}

TEST(MemoryOddities, ALockOfCreateTvLockLocksNothing)
{
    TvLock* lock = createTvLock();
    lock->lock();
    lock->lock(); // returns
    delete lock;
}

TEST(MemoryOddities, ACopyOfAnExceptionForgetsTheCause)
{
    TvException cause, outer(L"open.cpp", 12, &cause);
    const TvException copy(outer);
    EXPECT_EQ(copy.inner, nullptr);
}

TEST(MemoryOddities, TheCodeOfEveryExceptionIs0)
{
    const TvErrorStatus error(Orna::eOutOfMemory);
    EXPECT_EQ(error.code(), 0);
    EXPECT_EQ(error.errorType(), Orna::eOutOfMemory);
}

TEST(MemoryOddities, ADescriptionIsMadeOnce)
{
    TvErrorStatus error(Orna::eInvalidInput, L"before", L"plot.cpp", 7);
    error.description();
    error.message = L"after";
    EXPECT_STREQ(error.description(), L"error type: 2\tmessage:before");
}

TEST(MemoryOddities, TheNarrowTracerHasNoSink)
{
    testing::internal::CaptureStdout();

    TvTracer::setTraceFunctionA(nullptr);
    TvTracer("still printed\n");
    TvTracer::setTraceFunctionA(TvTracer::defaultTraceA);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "still printed\n");
}

TEST(MemoryOddities, WaitingDoesNotWait)
{
    struct Done : TvSignalObject {
        void signal() override {}
    } done;
    EXPECT_EQ(done.waitForMe(10000), 0); // at once
}

} // namespace

#include "TvLock.h"

#include <gtest/gtest.h>

#include <memory>

namespace {

class Signal : public TvSignalObject {
public:
    void signal() override { ++signals; }
    int signals = 0;
};

TEST(TvLock, FactoryMakesTheInertLock)
{
    std::unique_ptr<TvLock> lock(createTvLock());
    ASSERT_NE(dynamic_cast<TvImpLock_mac*>(lock.get()), nullptr);
}

TEST(TvLock, LockingTwiceDoesNotBlock)
{
    std::unique_ptr<TvLock> lock(createTvLock());
    lock->lock();
    lock->lock();
    lock->unlock();
}

TEST(TvLock, EachCallMakesANewLock)
{
    std::unique_ptr<TvLock> first(createTvLock());
    std::unique_ptr<TvLock> second(createTvLock());
    EXPECT_NE(first.get(), second.get());
}

TEST(TvLock, LockerIsOnePointer) { EXPECT_EQ(sizeof(TvLocker), sizeof(void*)); }

TEST(TvSignalObject, WaitsReturnZeroAtOnce)
{
    Signal object;
    EXPECT_EQ(object.waitForMe(0xFFFFFFFFu), 0);
    EXPECT_EQ(object.msgWaitForMe(0xFFFFFFFFu, 0), 0);
}

TEST(TvSignalObject, SignalReachesTheSubclass)
{
    Signal object;
    static_cast<TvSignalObject&>(object).signal();
    EXPECT_EQ(object.signals, 1);
}

} // namespace

#include "TvLock.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>

namespace {

class Signal : public TvSignalObject {
public:
    void signal() override { ++signals; }
    int signals = 0;
};

// Each override leaves its name; the order of the virtual functions is a promise to code
// compiled elsewhere.
std::string g_called;

class NamingLock : public TvLock {
public:
    ~NamingLock() override { g_called = "destructor"; }
    void unlock() override { g_called = "unlock"; }
    void lock() override { g_called = "lock"; }
};

class NamingSignal : public TvSignalObject {
public:
    ~NamingSignal() override { g_called = "destructor"; }
    int msgWaitForMe(unsigned int, unsigned int) const override
    {
        g_called = "msgWaitForMe";
        return 0;
    }
    int waitForMe(unsigned int) const override
    {
        g_called = "waitForMe";
        return 0;
    }
    void signal() override { g_called = "signal"; }
};

// The function behind a slot, called with arguments that any of them can take.
template<class Object>
std::string calledBySlot(Object& object, int slot)
{
    using Function = int (*)(void*, unsigned int, unsigned int);
    const Function* table = nullptr;
    std::memcpy(&table, static_cast<const void*>(&object), sizeof table);
    g_called = "nothing";
    table[slot](&object, 0, 0);
    return g_called;
}

TEST(TvLock, SlotsInOrder)
{
    NamingLock lock;
    EXPECT_EQ(calledBySlot(lock, 2), "lock");
    EXPECT_EQ(calledBySlot(lock, 3), "unlock");
}

TEST(TvLock, TheSecondSlotDeletes) { EXPECT_EQ(calledBySlot(*new NamingLock, 1), "destructor"); }

TEST(TvSignalObject, SlotsInOrder)
{
    NamingSignal object;
    EXPECT_EQ(calledBySlot(object, 2), "signal");
    EXPECT_EQ(calledBySlot(object, 3), "waitForMe");
    EXPECT_EQ(calledBySlot(object, 4), "msgWaitForMe");
}

TEST(TvSignalObject, TheSecondSlotDeletes) { EXPECT_EQ(calledBySlot(*new NamingSignal, 1), "destructor"); }

TEST(TvLock, ObjectsAreATableAlone)
{
    EXPECT_EQ(sizeof(TvImpLock_mac), sizeof(void*));
    EXPECT_EQ(sizeof(TvSignalObject), sizeof(void*));
}

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

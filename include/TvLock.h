// TvLock.h - the lock abstraction and the base of waitable objects.
//
// The library creates no threads, so the one lock that it makes does nothing; the
// interface is the place where a host with threads would put a real one.
#ifndef TV_LOCK_H
#define TV_LOCK_H

#include "TvExport.h"

/// A lock that is taken and given back by hand.
///
/// **Errors**: none. **Memory**: none. **Threads**: as the lock that implements it says.
///
///     TvLock* lock = createTvLock();
///     lock->lock();
///     lock->unlock();
///     delete lock;
class TV_OSBASE_API TvLock {
public:
    /// Gives nothing back: unlock() first.
    virtual ~TvLock();
    /// Takes the lock, waiting for it if need be.
    virtual void lock() = 0;
    /// Gives the lock back.
    virtual void unlock() = 0;
};

/// The inert lock: lock() and unlock() do nothing, by intent.
///
/// **Errors**, **Memory**: none. **Threads**: keeps none from another.
///
///     TvImpLock_mac lock;
///     lock.lock();
class TV_OSBASE_API TvImpLock_mac : public TvLock {
public:
    /// Nothing to free.
    ~TvImpLock_mac() override;
    /// Does nothing.
    void lock() override;
    /// Does nothing.
    void unlock() override;
};

/// Makes a new TvImpLock_mac, freed with delete by the caller; null when there is no memory.
TV_OSBASE_API TvLock* createTvLock();

/// Owns a lock from createTvLock().
///
/// Not a scope guard: neither end takes or gives back the lock.
///
/// **Errors**: without memory there is no lock to own. **Memory**: the lock is deleted with its
/// owner. **Threads**: none.
///
///     class LayerTable {
///         TvLocker m_lock;
///     };
class TV_OSBASE_API TvLocker {
public:
    /// Makes its lock, and does not take it.
    TvLocker();
    /// Deletes its lock, and does not give it back.
    ~TvLocker();
    TvLocker(const TvLocker&) = delete;
    TvLocker& operator=(const TvLocker&) = delete;

private:
    // Without a lock, for the heap's object, which is a constant until the library is loaded.
    template<int, class, class, class>
    friend class TvHeap;
    constexpr explicit TvLocker(decltype(nullptr)) noexcept : m_lock(nullptr) {}

    TvLock* m_lock;
};

/// Base of objects that a thread can wait for. The waits here return 0 at once.
///
/// **Errors**, **Memory**: none. **Threads**: as the class that implements signal() says.
///
///     class PlotDone : public TvSignalObject {
///         void signal() override { m_done = true; }
///         bool m_done = false;
///     };
class TV_OSBASE_API TvSignalObject {
public:
    /// Wakes nobody.
    virtual ~TvSignalObject();
    /// Ends the waits of others, as the class that implements it says.
    virtual void signal() = 0;

    /// 0 at once. `timeout` is in milliseconds.
    virtual int waitForMe(unsigned int timeout) const;

    /// 0 at once, as waitForMe(); `wakeMask` names the events that would end the wait early.
    virtual int msgWaitForMe(unsigned int timeout, unsigned int wakeMask) const;
};

#endif

// TvLock.h - the lock abstraction and the base of waitable objects.
//
// The library creates no threads, so the one lock that it makes does nothing; the
// interface is the place where a host with threads would put a real one.
#ifndef TV_LOCK_H
#define TV_LOCK_H

#include "TvExport.h"

/// A lock that is taken and given back by hand.
///
/// Errors: none. Memory: none. Threads: as the lock that implements it says.
///
///     TvLock* lock = createTvLock();
///     lock->lock();
///     lock->unlock();
///     delete lock;
class TV_OSBASE_API TvLock {
public:
    virtual ~TvLock();
    virtual void lock() = 0;
    virtual void unlock() = 0;
};

/// The inert lock: lock() and unlock() do nothing, by intent.
///
/// Errors, Memory: none. Threads: keeps none from another.
///
///     TvImpLock_mac lock;
///     lock.lock();
class TV_OSBASE_API TvImpLock_mac : public TvLock {
public:
    ~TvImpLock_mac() override;
    void lock() override;
    void unlock() override;
};

/// Makes a new TvImpLock_mac, freed with delete by the caller.
TV_OSBASE_API TvLock* createTvLock();

/// Owns a lock from createTvLock().
///
/// Not a scope guard: neither end takes or gives back the lock.
///
/// Errors: without memory there is no lock to own. Memory: the lock is deleted with its
/// owner. Threads: none.
///
///     class LayerTable {
///         TvLocker m_lock;
///     };
class TV_OSBASE_API TvLocker {
public:
    TvLocker();
    ~TvLocker();
    TvLocker(const TvLocker&) = delete;
    TvLocker& operator=(const TvLocker&) = delete;

private:
    TvLock* m_lock;
};

/// Base of objects that a thread can wait for. The waits here return 0 at once.
///
/// Errors, Memory: none. Threads: as the class that implements signal() says.
///
///     class PlotDone : public TvSignalObject {
///         void signal() override { m_done = true; }
///         bool m_done = false;
///     };
class TV_OSBASE_API TvSignalObject {
public:
    virtual ~TvSignalObject();
    virtual void signal() = 0;

    /// `timeout` is in milliseconds.
    virtual int waitForMe(unsigned int timeout) const;

    /// As waitForMe; `wakeMask` names the events that would end the wait early.
    virtual int msgWaitForMe(unsigned int timeout, unsigned int wakeMask) const;
};

#endif

#include "TvLock.h"

#include <new>

TvLock::~TvLock() = default;

TvImpLock_mac::~TvImpLock_mac() = default;
void TvImpLock_mac::lock() {}
void TvImpLock_mac::unlock() {}

TvLock* createTvLock() { return new (std::nothrow) TvImpLock_mac; }

TvLocker::TvLocker() : m_lock(createTvLock()) {}
TvLocker::~TvLocker() { delete m_lock; }

TvSignalObject::~TvSignalObject() = default;
int TvSignalObject::waitForMe(unsigned int) const { return 0; }
int TvSignalObject::msgWaitForMe(unsigned int, unsigned int) const { return 0; }

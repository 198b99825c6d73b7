#include "stream/TvFileLock.h"

#include <cerrno>
#include <cstdio>

#include <fcntl.h>
#include <unistd.h>

namespace {

struct flock wholeFile(short type)
{
    struct flock lock = {};
    lock.l_type = type;
    lock.l_whence = SEEK_SET;
    lock.l_start = 0;
    lock.l_len = 0; // to the end, however far the file grows
    lock.l_pid = ::getpid();
    return lock;
}

// A file server may be interrupted in its answer: a lock that was not asked for, or not seen,
// would let two processes in.
int askForLock(int descriptor, int command, struct flock& lock)
{
    for (;;) {
        const int result = ::fcntl(descriptor, command, &lock);
        if (result == 0 || errno != EINTR)
            return result;
    }
}

void setLock(int descriptor, short type)
{
    struct flock lock = wholeFile(type);
    askForLock(descriptor, F_SETLK, lock);
}

} // namespace

bool tvFileIsLockedElsewhere(int descriptor)
{
    struct flock lock = wholeFile(F_WRLCK);
    if (askForLock(descriptor, F_GETLK, lock) != 0)
        return false;
    return lock.l_type == F_RDLCK || lock.l_type == F_WRLCK;
}

void tvLockFileShared(int descriptor) { setLock(descriptor, F_RDLCK); }

void tvUnlockFile(int descriptor) { setLock(descriptor, F_UNLCK); }

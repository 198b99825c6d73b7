#include "stream/TvFileLock.h"

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

void setLock(int descriptor, short type)
{
    const struct flock lock = wholeFile(type);
    ::fcntl(descriptor, F_SETLK, &lock);
}

} // namespace

bool tvFileIsLockedElsewhere(int descriptor)
{
    struct flock lock = wholeFile(F_WRLCK);
    if (::fcntl(descriptor, F_GETLK, &lock) != 0)
        return false;
    return lock.l_type == F_RDLCK || lock.l_type == F_WRLCK;
}

void tvLockFileShared(int descriptor) { setLock(descriptor, F_RDLCK); }

void tvUnlockFile(int descriptor) { setLock(descriptor, F_UNLCK); }

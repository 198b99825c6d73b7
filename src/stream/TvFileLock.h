// TvFileLock.h - POSIX record locks over whole files.
//
// Such a lock belongs to the process and the file, not to the descriptor: a process never
// meets its own, and loses it when it closes any descriptor of the file.
#ifndef TV_FILE_LOCK_H
#define TV_FILE_LOCK_H

/// True when another process holds a lock of either kind.
bool tvFileIsLockedElsewhere(int descriptor);

/// Takes the shared lock that an exclusive open elsewhere will meet. It cannot be had on a
/// descriptor for writing only, which does no harm.
void tvLockFileShared(int descriptor);

void tvUnlockFile(int descriptor);

#endif

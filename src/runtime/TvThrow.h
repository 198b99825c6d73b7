// TvThrow.h - the one way in which file streams and the file system throw.
#ifndef TV_THROW_H
#define TV_THROW_H

#include "TvErrorStatus.h"

/// Throws the pointer itself, so `message` must be a constant that outlives every handler.
[[noreturn, gnu::cold]] void tvThrowMessage(const wchar_t* message);

/// Throws the value.
[[noreturn, gnu::cold]] void tvThrowStatus(Orna::ErrorStatus status);

#endif

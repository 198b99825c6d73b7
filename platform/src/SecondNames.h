// SecondNames.h - the names under which libTvOsBase calls this library.
//
// A host may have a GetACP or a memcpy_s of its own, and the loader would bind the calls of
// every module to it, also those of libTvOsBase, which rely on what this library does. A
// symbol version does not keep them here: the loader takes a definition without a version for
// any version. So each function that libTvOsBase calls has a second name that is nobody else's.
#ifndef TV_PLATFORM_SECOND_NAMES_H
#define TV_PLATFORM_SECOND_NAMES_H

#include "TvPlatformBase.h"

#include <atomic>

/// In the file that defines `name`, a function with C linkage.
#define TV_SECOND_NAME(name)                                                                                 \
    extern "C" TV_PLATFORM_API decltype(name) tvPlatform_##name __attribute__((alias(#name)))

/// What GetACP() answers; 0 while nobody has asked. libTvOsBase reads it for every string.
extern "C" TV_PLATFORM_API std::atomic<unsigned int> tvPlatform_ansiCodePage;

#endif

// ColdStart.h - tells whoever started this program what happened until main().
#ifndef TV_BENCH_COLD_START_H
#define TV_BENCH_COLD_START_H

#include "ProcessMemory.h"

#include <cstdio>
#include <ctime>

#include <sys/resource.h>

inline long long nowInNanoseconds()
{
    timespec now;
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<long long>(now.tv_sec) * 1000000000 + now.tv_nsec;
}

// The time of the clock that does not jump, the page faults so far, and the memory in use.
inline void tellStart()
{
    const long long now = nowInNanoseconds();
    rusage used;
    getrusage(RUSAGE_SELF, &used);
    const long resident = residentKiB();
    const long own = anonymousKiB();
    std::printf("main_ns %lld\nfaults %ld\nresident %ld\nown %ld\n", now, used.ru_minflt, resident, own);
}

#endif

// ColdStart.h - tells whoever started this program what happened until main().
#ifndef TV_BENCH_COLD_START_H
#define TV_BENCH_COLD_START_H

#include <cstdio>
#include <ctime>

#include <sys/resource.h>

inline long long nowInNanoseconds()
{
    timespec now;
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<long long>(now.tv_sec) * 1000000000 + now.tv_nsec;
}

// The time of day of the clock that does not jump, and the page faults so far.
inline void tellStart()
{
    const long long now = nowInNanoseconds();
    rusage used;
    getrusage(RUSAGE_SELF, &used);
    std::printf("main_ns %lld\nfaults %ld\n", now, used.ru_minflt);
}

#endif

// FirstRequests.h - what benchmarks of pooled memory do before they measure.
#ifndef TV_BENCH_FIRST_REQUESTS_H
#define TV_BENCH_FIRST_REQUESTS_H

#include "TvAlloc.h"

#include <benchmark/benchmark.h>

/// The heap serves its first requests that need a new page from malloc; its usual way
/// begins after 8193 of them. The pages asked for here stay in use.
inline void passTheFirstRequests()
{
    for (int i = 0; i < 200; ++i)
        benchmark::DoNotOptimize(tvAllocPage());
    for (int i = 0; i < 9000; ++i)
        benchmark::DoNotOptimize(_tvMalloc(65536));
}

#endif

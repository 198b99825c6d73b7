// TextKernels.cpp - which kernels this machine runs.
#include "codepage/TextKernels.h"

#include <atomic>

namespace TvDetail {

namespace {

std::atomic<const TextKernels*> s_chosen{nullptr};

} // namespace

KernelList runnableKernels() noexcept
{
    KernelList list{{&g_plainKernels, nullptr, nullptr, nullptr}, 1};
#if defined(__x86_64__)
    __builtin_cpu_init();
    list.sets[list.count++] = &g_sse2Kernels;
    if (__builtin_cpu_supports("avx2") && __builtin_cpu_supports("bmi") && __builtin_cpu_supports("bmi2") &&
        __builtin_cpu_supports("popcnt"))
        list.sets[list.count++] = &g_avx2Kernels;
    if (list.count == 3 && __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") &&
        __builtin_cpu_supports("avx512vl") && __builtin_cpu_supports("avx512dq") &&
        __builtin_cpu_supports("avx512vbmi") && __builtin_cpu_supports("avx512vbmi2"))
        list.sets[list.count++] = &g_avx512Kernels;
#endif
    return list;
}

// Chosen on first use and not while the library is loaded: two threads that come here at
// once store the same pointer.
const TextKernels& textKernels() noexcept
{
    const TextKernels* kernels = s_chosen.load(std::memory_order_relaxed);
    if (!kernels) {
        const KernelList list = runnableKernels();
        kernels = list.sets[list.count - 1];
        s_chosen.store(kernels, std::memory_order_relaxed);
    }
    return *kernels;
}

} // namespace TvDetail

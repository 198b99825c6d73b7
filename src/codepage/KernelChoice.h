// KernelChoice.h - which of the text kernels a machine runs best.
//
// A header of its own, so that what reports the choice asks by the same rule as what makes it.
#ifndef TV_KERNEL_CHOICE_H
#define TV_KERNEL_CHOICE_H

namespace TvDetail {

// Each machine runs all sets up to its best one.
enum class KernelSet { Plain, Sse2, Avx2, Avx512 };

constexpr const char* kKernelSetNames[] = {"plain", "sse2", "avx2", "avx512"};

inline KernelSet bestKernelSet() noexcept
{
#if defined(__x86_64__)
    __builtin_cpu_init();
    if (!__builtin_cpu_supports("avx2") || !__builtin_cpu_supports("bmi") ||
        !__builtin_cpu_supports("bmi2") || !__builtin_cpu_supports("popcnt"))
        return KernelSet::Sse2;
    if (__builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") &&
        __builtin_cpu_supports("avx512vl") && __builtin_cpu_supports("avx512dq") &&
        __builtin_cpu_supports("avx512vbmi") && __builtin_cpu_supports("avx512vbmi2"))
        return KernelSet::Avx512;
    return KernelSet::Avx2;
#else
    return KernelSet::Plain;
#endif
}

} // namespace TvDetail

#endif

// KernelChoice.h - which of the text kernels a machine runs best.
//
// A header of its own, so that what reports the choice asks by the same rule as what makes it.
#ifndef TV_KERNEL_CHOICE_H
#define TV_KERNEL_CHOICE_H

#include "runtime/CpuFeatures.h"

namespace TvDetail {

// Each machine runs all sets up to its best one.
enum class KernelSet { Plain, Sse2, Avx2, Avx512 };

constexpr const char* kKernelSetNames[] = {"plain", "sse2", "avx2", "avx512"};

inline KernelSet bestKernelSet() noexcept
{
#if defined(__x86_64__)
    if (!CPU_FEATURE_ACTIVE(AVX2) || !CPU_FEATURE_ACTIVE(BMI1) || !CPU_FEATURE_ACTIVE(BMI2) ||
        !CPU_FEATURE_ACTIVE(POPCNT))
        return KernelSet::Sse2;
    if (CPU_FEATURE_ACTIVE(AVX512F) && CPU_FEATURE_ACTIVE(AVX512BW) && CPU_FEATURE_ACTIVE(AVX512VL) &&
        CPU_FEATURE_ACTIVE(AVX512DQ) && CPU_FEATURE_ACTIVE(AVX512_VBMI) && CPU_FEATURE_ACTIVE(AVX512_VBMI2))
        return KernelSet::Avx512;
    return KernelSet::Avx2;
#else
    return KernelSet::Plain;
#endif
}

} // namespace TvDetail

#endif

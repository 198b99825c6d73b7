// TextKernels.cpp - which kernels this machine runs.
#include "codepage/TextKernels.h"

#include "codepage/KernelChoice.h"

namespace TvDetail {

constinit std::atomic<const TextKernels*> g_chosenKernels{nullptr};

KernelList runnableKernels() noexcept
{
#if defined(__x86_64__)
    return {{&g_plainKernels, &g_sse2Kernels, &g_avx2Kernels, &g_avx512Kernels},
            static_cast<int>(bestKernelSet()) + 1};
#else
    return {{&g_plainKernels, nullptr, nullptr, nullptr}, 1};
#endif
}

const TextKernels& chooseKernels() noexcept
{
    const KernelList list = runnableKernels();
    const TextKernels* const best = list.sets[list.count - 1];
    g_chosenKernels.store(best, std::memory_order_relaxed);
    return *best;
}

void forceTextKernels(const TextKernels* kernels) noexcept
{
    g_chosenKernels.store(kernels, std::memory_order_relaxed);
}

} // namespace TvDetail

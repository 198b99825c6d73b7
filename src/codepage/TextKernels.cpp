// TextKernels.cpp - which kernels this machine runs.
#include "codepage/TextKernels.h"

#include "codepage/KernelChoice.h"

#include <atomic>

namespace TvDetail {

namespace {

std::atomic<const TextKernels*> s_chosen{nullptr};

} // namespace

KernelList runnableKernels() noexcept
{
#if defined(__x86_64__)
    return {{&g_plainKernels, &g_sse2Kernels, &g_avx2Kernels, &g_avx512Kernels},
            static_cast<int>(bestKernelSet()) + 1};
#else
    return {{&g_plainKernels, nullptr, nullptr, nullptr}, 1};
#endif
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

void forceTextKernels(const TextKernels* kernels) noexcept
{
    s_chosen.store(kernels, std::memory_order_relaxed);
}

} // namespace TvDetail

// ForcedKernels.h - for programs that run the conversions with kernels of their own choice.
//
// Included by one file of a program whose calls of TvDetail::textKernels() the linker sends
// here (tv_force_kernels in CMakeLists.txt).
#ifndef TV_BENCH_FORCED_KERNELS_H
#define TV_BENCH_FORCED_KERNELS_H

#include "codepage/TextKernels.h"

namespace {

const TvDetail::TextKernels* g_forcedKernels = &TvDetail::g_plainKernels;

} // namespace

extern "C" const TvDetail::TextKernels& __wrap__ZN8TvDetail11textKernelsEv() noexcept;
extern "C" const TvDetail::TextKernels& __wrap__ZN8TvDetail11textKernelsEv() noexcept
{
    return *g_forcedKernels;
}

#endif

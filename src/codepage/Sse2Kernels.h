// Sse2Kernels.h - the kernels of the 128-bit set that the 256-bit one takes over.
#ifndef TV_SSE2_KERNELS_H
#define TV_SSE2_KERNELS_H

#include "codepage/TextKernels.h"

#include <cstddef>

namespace TvDetail {

KernelProgress sse2DecodeDouble(const unsigned char* src, std::size_t count, wchar_t* dst,
                                const CodepageTables& tables, const LeadRanges& leads) noexcept;
KernelProgress sse2EncodeDouble(const wchar_t* src, std::size_t count, char* dst,
                                const CodepageTables& tables) noexcept;

} // namespace TvDetail

#endif

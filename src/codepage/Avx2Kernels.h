// Avx2Kernels.h - the kernels of the 256-bit set that have a file of their own.
#ifndef TV_AVX2_KERNELS_H
#define TV_AVX2_KERNELS_H

#include "codepage/TextKernels.h"

#include <cstddef>

#define TV_AVX2 __attribute__((target("avx2,bmi,bmi2,popcnt")))

namespace TvDetail {

KernelProgress avx2Utf8Decode(const unsigned char* src, std::size_t count, wchar_t* dst) noexcept;
KernelProgress avx2Utf8Encode(const wchar_t* src, std::size_t count, char* dst) noexcept;
KernelProgress avx2DecodeSingle(const unsigned char* src, std::size_t count, wchar_t* dst,
                                const CodepageTables& tables) noexcept;
KernelProgress avx2EncodeSingle(const wchar_t* src, std::size_t count, char* dst,
                                const CodepageTables& tables) noexcept;

} // namespace TvDetail

#endif

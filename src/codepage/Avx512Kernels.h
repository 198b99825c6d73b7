// Avx512Kernels.h - the kernels of the 512-bit set, by name.
#ifndef TV_AVX512_KERNELS_H
#define TV_AVX512_KERNELS_H

#include "codepage/TextKernels.h"

namespace TvDetail {

KernelProgress avx512Utf8Decode(const unsigned char* src, std::size_t count, wchar_t* dst) noexcept;
KernelProgress avx512Utf8Encode(const wchar_t* src, std::size_t count, char* dst) noexcept;
KernelProgress avx512DecodeSingle(const unsigned char* src, std::size_t count, wchar_t* dst,
                                  const CodepageTables& tables) noexcept;
KernelProgress avx512DecodeDouble(const unsigned char* src, std::size_t count, wchar_t* dst,
                                  const CodepageTables& tables, const LeadRanges& leads) noexcept;
KernelProgress avx512EncodeSingle(const wchar_t* src, std::size_t count, char* dst,
                                  const CodepageTables& tables) noexcept;
KernelProgress avx512EncodeDouble(const wchar_t* src, std::size_t count, char* dst,
                                  const CodepageTables& tables) noexcept;

} // namespace TvDetail

#endif

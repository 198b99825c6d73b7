// Avx512Kernels.cpp - the 512-bit set (AVX-512 with VBMI2).
#include "codepage/Avx512Kernels.h"

#if defined(__x86_64__)

namespace TvDetail {

const TextKernels g_avx512Kernels = {"avx512",           avx512Utf8Decode,   avx512Utf8Encode,
                                     avx512DecodeSingle, avx512DecodeDouble, avx512EncodeSingle,
                                     avx512EncodeDouble};

} // namespace TvDetail

#endif

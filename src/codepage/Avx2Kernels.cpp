// Avx2Kernels.cpp - the 256-bit set. Double-byte text is mixed too finely for longer blocks.
#include "codepage/Avx2Kernels.h"

#if defined(__x86_64__)

#include "codepage/Sse2Kernels.h"

namespace TvDetail {

const TextKernels g_avx2Kernels = {"avx2",           avx2Utf8Decode,   avx2Utf8Encode,  avx2DecodeSingle,
                                   sse2DecodeDouble, avx2EncodeSingle, sse2EncodeDouble};

} // namespace TvDetail

#endif

// Avx2Kernels.cpp - ASCII in blocks of 32 (AVX2).
#include "codepage/Avx2Kernels.h"

#if defined(__x86_64__)

#include "codepage/Avx2Blocks.h"
#include "codepage/RunKernels.h"

namespace TvDetail {

namespace {

struct Avx2Runs {
    static constexpr std::size_t kBlock = 32;

    template<bool kStop, class Blocks>
    TV_AVX2 static AsciiRun widen(Blocks& blocks, const unsigned char* src, std::size_t first, wchar_t* dst)
    {
        std::size_t at = first;
        while (blocks.has(at, kBlock)) {
            for (; at + kBlock <= blocks.known(); at += kBlock) {
                const unsigned stops = stopsIn<kStop>(load32(src + at));
                if (stops != 0 && !areFew<kBlock>(stops))
                    return endBeforeMany<kBlock>(at - first);
                widen32(dst + at - first, src + at);
                if (stops != 0)
                    return endBeforeFew(at - first, stops);
            }
        }
        return {at - first, kBlock};
    }

    template<bool kStop, class Blocks>
    TV_AVX2 static AsciiRun narrow(Blocks& blocks, const wchar_t* src, std::size_t first, char* dst)
    {
        std::size_t at = first;
        while (blocks.has(at, kBlock)) {
            for (; at + kBlock <= blocks.known(); at += kBlock) {
                const wchar_t* from = src + at;
                const __m256i bytes =
                    packBytes(load8(from), load8(from + 8), load8(from + 16), load8(from + 24));
                const unsigned stops = stopsIn<kStop>(bytes);
                if (stops != 0 && !areFew<kBlock>(stops))
                    return endBeforeMany<kBlock>(at - first);
                store32(dst + at - first, bytes);
                if (stops != 0)
                    return endBeforeFew(at - first, stops);
            }
        }
        return {at - first, kBlock};
    }

private:
    template<bool kStop>
    TV_AVX2 static unsigned stopsIn(__m256i bytes)
    {
        __m256i stops = _mm256_cmpgt_epi8(allBytes(1), bytes);
        if (kStop)
            stops = _mm256_or_si256(stops, _mm256_cmpeq_epi8(bytes, allBytes('\\')));
        return maskOf(stops);
    }
};

} // namespace

using Avx2 = RunKernels<Avx2Runs>;

const TextKernels g_avx2Kernels = {
    "avx2",           avx2Utf8Decode,    avx2Utf8Encode, avx2DecodeSingle, Avx2::decodeDouble,
    avx2EncodeSingle, Avx2::encodeDouble};

} // namespace TvDetail

#endif

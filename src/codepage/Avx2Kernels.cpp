// Avx2Kernels.cpp - ASCII in blocks of 32 (AVX2).
#include "codepage/Avx2Kernels.h"

#include "codepage/RunKernels.h"

#if defined(__x86_64__)

#include <immintrin.h>

namespace TvDetail {

namespace {

struct Avx2Runs {
    static constexpr std::size_t kBlock = 32;

    template<bool kStop>
    TV_AVX2 static std::size_t widen(const unsigned char* src, std::size_t count, wchar_t* dst)
    {
        std::size_t at = 0;
        for (; at + kBlock <= count; at += kBlock) {
            const __m256i b = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(src + at));
            __m256i other = _mm256_cmpgt_epi8(_mm256_set1_epi8(1), b);
            if (kStop)
                other = _mm256_or_si256(other, _mm256_cmpeq_epi8(b, _mm256_set1_epi8('\\')));
            if (_mm256_movemask_epi8(other))
                break;
            auto* to = reinterpret_cast<__m256i*>(dst + at);
            for (std::size_t part = 0; part < 4; ++part) {
                const auto* eight = reinterpret_cast<const __m128i*>(src + at + 8 * part);
                _mm256_storeu_si256(to + part, _mm256_cvtepu8_epi32(_mm_loadl_epi64(eight)));
            }
        }
        return at;
    }

    template<bool kStop>
    TV_AVX2 static std::size_t narrow(const wchar_t* src, std::size_t count, char* dst)
    {
        const __m256i inOrder = _mm256_setr_epi32(0, 4, 1, 5, 2, 6, 3, 7);
        std::size_t at = 0;
        for (; at + kBlock <= count; at += kBlock) {
            const auto* from = reinterpret_cast<const __m256i*>(src + at);
            const __m256i v0 = _mm256_loadu_si256(from);
            const __m256i v1 = _mm256_loadu_si256(from + 1);
            const __m256i v2 = _mm256_loadu_si256(from + 2);
            const __m256i v3 = _mm256_loadu_si256(from + 3);
            // The packs keep 1..127 and bring nothing else into that range.
            const __m256i mixed = _mm256_packus_epi16(_mm256_packs_epi32(v0, v1), _mm256_packs_epi32(v2, v3));
            __m256i other = _mm256_cmpgt_epi8(_mm256_set1_epi8(1), mixed);
            if (kStop)
                other = _mm256_or_si256(other, _mm256_cmpeq_epi8(mixed, _mm256_set1_epi8('\\')));
            if (_mm256_movemask_epi8(other))
                break;
            _mm256_storeu_si256(reinterpret_cast<__m256i*>(dst + at),
                                _mm256_permutevar8x32_epi32(mixed, inOrder));
        }
        return at;
    }
};

} // namespace

using Avx2 = RunKernels<Avx2Runs>;

const TextKernels g_avx2Kernels = {"avx2",
                                   avx2Utf8Decode,
                                   avx2Utf8Encode,
                                   Avx2::decodeSingle,
                                   Avx2::decodeDouble,
                                   Avx2::encodeSingle,
                                   Avx2::encodeDouble};

} // namespace TvDetail

#endif

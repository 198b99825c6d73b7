// Sse2Kernels.cpp - ASCII in blocks of 16, for every 64-bit x86.
#include "codepage/RunKernels.h"

#if defined(__x86_64__)

#include <emmintrin.h>

namespace TvDetail {

namespace {

struct Sse2Runs {
    static constexpr std::size_t kBlock = 16;

    template<bool kStop, class Blocks>
    static std::size_t widen(Blocks& blocks, const unsigned char* src, std::size_t first, wchar_t* dst)
    {
        const __m128i zero = _mm_setzero_si128();
        std::size_t at = first;
        while (blocks.has(at, kBlock)) {
            for (; at + kBlock <= blocks.known(); at += kBlock) {
                const __m128i b = _mm_loadu_si128(reinterpret_cast<const __m128i*>(src + at));
                __m128i other = _mm_cmpgt_epi8(_mm_set1_epi8(1), b);
                if (kStop)
                    other = _mm_or_si128(other, _mm_cmpeq_epi8(b, _mm_set1_epi8('\\')));
                if (_mm_movemask_epi8(other))
                    return at - first;
                const __m128i low = _mm_unpacklo_epi8(b, zero);
                const __m128i high = _mm_unpackhi_epi8(b, zero);
                auto* to = reinterpret_cast<__m128i*>(dst + at - first);
                _mm_storeu_si128(to, _mm_unpacklo_epi16(low, zero));
                _mm_storeu_si128(to + 1, _mm_unpackhi_epi16(low, zero));
                _mm_storeu_si128(to + 2, _mm_unpacklo_epi16(high, zero));
                _mm_storeu_si128(to + 3, _mm_unpackhi_epi16(high, zero));
            }
        }
        return at - first;
    }

    template<bool kStop, class Blocks>
    static std::size_t narrow(Blocks& blocks, const wchar_t* src, std::size_t first, char* dst)
    {
        std::size_t at = first;
        while (blocks.has(at, kBlock)) {
            for (; at + kBlock <= blocks.known(); at += kBlock) {
                const auto* from = reinterpret_cast<const __m128i*>(src + at);
                const __m128i v0 = _mm_loadu_si128(from);
                const __m128i v1 = _mm_loadu_si128(from + 1);
                const __m128i v2 = _mm_loadu_si128(from + 2);
                const __m128i v3 = _mm_loadu_si128(from + 3);
                // Both packs keep 1..127 and nothing else in that range: larger values saturate at
                // 255, negative ones at 0, and the signed reading of 255 is below 1 as well.
                const __m128i b = _mm_packus_epi16(_mm_packs_epi32(v0, v1), _mm_packs_epi32(v2, v3));
                __m128i other = _mm_cmpgt_epi8(_mm_set1_epi8(1), b);
                if (kStop)
                    other = _mm_or_si128(other, _mm_cmpeq_epi8(b, _mm_set1_epi8('\\')));
                if (_mm_movemask_epi8(other))
                    return at - first;
                _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + at - first), b);
            }
        }
        return at - first;
    }
};

} // namespace

const TextKernels g_sse2Kernels = RunKernels<Sse2Runs>::named("sse2");

} // namespace TvDetail

#endif

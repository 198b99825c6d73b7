// Sse2Kernels.cpp - ASCII in blocks of 16, for every 64-bit x86.
#include "codepage/RunKernels.h"

#if defined(__x86_64__)

#include <emmintrin.h>

namespace TvDetail {

namespace {

struct Sse2Runs {
    static constexpr std::size_t kBlock = 16;

    template<bool kStop, class Blocks>
    static AsciiRun widen(Blocks& blocks, const unsigned char* src, std::size_t first, wchar_t* dst)
    {
        std::size_t at = first;
        while (blocks.has(at, kBlock)) {
            for (; at + kBlock <= blocks.known(); at += kBlock) {
                const __m128i b = _mm_loadu_si128(reinterpret_cast<const __m128i*>(src + at));
                const unsigned stops = stopsIn<kStop>(b);
                if (stops != 0 && !areFew<kBlock>(stops))
                    return endBeforeMany<kBlock>(at - first);
                widen16(dst + at - first, b);
                if (stops != 0)
                    return endBeforeFew(at - first, stops);
            }
        }
        return {at - first, kBlock};
    }

    template<bool kStop, class Blocks>
    static AsciiRun narrow(Blocks& blocks, const wchar_t* src, std::size_t first, char* dst)
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
                const unsigned stops = stopsIn<kStop>(b);
                if (stops != 0 && !areFew<kBlock>(stops))
                    return endBeforeMany<kBlock>(at - first);
                _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + at - first), b);
                if (stops != 0)
                    return endBeforeFew(at - first, stops);
            }
        }
        return {at - first, kBlock};
    }

private:
    template<bool kStop>
    static unsigned stopsIn(__m128i bytes)
    {
        __m128i stops = _mm_cmpgt_epi8(_mm_set1_epi8(1), bytes);
        if (kStop)
            stops = _mm_or_si128(stops, _mm_cmpeq_epi8(bytes, _mm_set1_epi8('\\')));
        return static_cast<unsigned>(_mm_movemask_epi8(stops));
    }

    static void widen16(wchar_t* dst, __m128i bytes)
    {
        const __m128i zero = _mm_setzero_si128();
        const __m128i low = _mm_unpacklo_epi8(bytes, zero);
        const __m128i high = _mm_unpackhi_epi8(bytes, zero);
        auto* to = reinterpret_cast<__m128i*>(dst);
        _mm_storeu_si128(to, _mm_unpacklo_epi16(low, zero));
        _mm_storeu_si128(to + 1, _mm_unpackhi_epi16(low, zero));
        _mm_storeu_si128(to + 2, _mm_unpacklo_epi16(high, zero));
        _mm_storeu_si128(to + 3, _mm_unpackhi_epi16(high, zero));
    }
};

} // namespace

const TextKernels g_sse2Kernels = RunKernels<Sse2Runs>::named("sse2");

} // namespace TvDetail

#endif

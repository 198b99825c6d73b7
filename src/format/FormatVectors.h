// FormatVectors.h - which machines handle wide text several characters at a time.
#ifndef TV_FORMAT_VECTORS_H
#define TV_FORMAT_VECTORS_H

#include <bit>

// Defined on machines with SSE2, which every x86-64 has; the others go the plain ways to the
// same results.
#if defined(__SSE2__) && !defined(TV_PLAIN_FORMATS)
#define TV_FORMAT_BY_SSE2 1
#include <emmintrin.h>

static_assert(std::endian::native == std::endian::little && sizeof(wchar_t) == 4);

namespace TvFormatDetail {

/// Sixteen characters as bytes. Saturation leaves 0 to 126 what they are and makes no other
/// character one of them.
inline __m128i sixteenCharactersAt(const wchar_t* p)
{
    const auto four = [p](int at) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + at)); };
    return _mm_packs_epi16(_mm_packs_epi32(four(0), four(4)), _mm_packs_epi32(four(8), four(12)));
}

/// A bit for each of sixteen bytes that is `c`.
inline unsigned placesIn(__m128i bytes, char c)
{
    return static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(bytes, _mm_set1_epi8(c))));
}

} // namespace TvFormatDetail

#endif

#endif

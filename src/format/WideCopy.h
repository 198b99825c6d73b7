// WideCopy.h - copies short wide texts whose length is not known.
#ifndef TV_FORMAT_WIDE_COPY_H
#define TV_FORMAT_WIDE_COPY_H

#include "format/FormatVectors.h"
#include "runtime/ReadOn.h"

#include <algorithm>
#include <cstddef>

namespace TvFormatDetail {

#ifdef TV_FORMAT_BY_SSE2

/// The most characters, the terminating 0 among them, that are looked at together.
constexpr int kShortText = 16;

/// A bit for each of the kShortText characters at `p` that is `c`.
inline unsigned placesOf(const wchar_t* p, char c) { return placesIn(sixteenCharactersAt(p), c); }

/// Copies `count` characters (1 to kShortText); the two places may overlap. Nothing else is read
/// or written.
inline void copyShort(wchar_t* out, const wchar_t* text, int count)
{
    if (count < 4) {
        const wchar_t first = text[0];
        const wchar_t middle = text[count >> 1];
        const wchar_t last = text[count - 1];
        out[0] = first;
        out[count >> 1] = middle;
        out[count - 1] = last;
        return;
    }
    const int third = count - 4;
    const int first = std::min(4, third);
    const int second = std::min(8, third);
    const auto four = [](const wchar_t* p) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p)); };
    const __m128i a = four(text);
    const __m128i b = four(text + first);
    const __m128i c = four(text + second);
    const __m128i d = four(text + third);
    const auto put = [](wchar_t* p, __m128i v) { _mm_storeu_si128(reinterpret_cast<__m128i*>(p), v); };
    put(out, a);
    put(out + first, b);
    put(out + second, c);
    put(out + third, d);
}

/// Whether placesOf() may look at a text.
inline bool isShortReadable(const wchar_t* text) { return mayReadOn(text, kShortText * sizeof(wchar_t)); }

#endif

} // namespace TvFormatDetail

#endif

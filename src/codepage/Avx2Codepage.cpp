// Avx2Codepage.cpp - conversions of single-byte code pages, 32 characters a step (AVX2).
#include "codepage/Avx2Kernels.h"

#if defined(__x86_64__)

#include "codepage/Avx2Blocks.h"
#include "codepage/TextEnd.h"
#include "codepage/TextSteps.h"

#include <algorithm>

namespace TvDetail {

namespace {

// What a table of 128 bytes has at each place; 0 for places from 128 on. Eight shuffles look
// into a row of 16 bytes each: a place that is in another row gets its top bit set, which a
// shuffle answers with 0.
TV_AVX2_STEP __m256i lookUp128(const unsigned char* table, __m256i places)
{
    __m256i found = _mm256_setzero_si256();
#pragma GCC unroll 8
    for (int row = 0; row < 8; ++row) {
        const __m256i bytes = _mm256_broadcastsi128_si256(
            _mm_loadu_si128(reinterpret_cast<const __m128i*>(table + static_cast<std::ptrdiff_t>(16) * row)));
        const __m256i inRow = _mm256_xor_si256(places, allBytes(16 * row));
        found = _mm256_or_si256(found, _mm256_shuffle_epi8(bytes, _mm256_adds_epu8(inRow, allBytes(0x70))));
    }
    return found;
}

TV_AVX2_STEP void storeUnits(wchar_t* dst, __m256i low, __m256i top)
{
    const __m256i units0 = _mm256_unpacklo_epi8(low, top);
    const __m256i units1 = _mm256_unpackhi_epi8(low, top);
    store8(dst, _mm256_cvtepu16_epi32(_mm256_castsi256_si128(units0)));
    store8(dst + 8, _mm256_cvtepu16_epi32(_mm256_castsi256_si128(units1)));
    store8(dst + 16, _mm256_cvtepu16_epi32(_mm256_extracti128_si256(units0, 1)));
    store8(dst + 24, _mm256_cvtepu16_epi32(_mm256_extracti128_si256(units1, 1)));
}

// 32 elements as 16-bit ones, in the order that packing leaves them in.
struct Units {
    __m256i half[2];
};

// The places of the units in a stretch of 128 characters, 255 for those outside.
TV_AVX2_STEP __m256i placesIn(const Units& units, unsigned base)
{
    const __m256i first = _mm256_set1_epi16(static_cast<short>(base));
    const __m256i most = _mm256_set1_epi16(127);
    __m256i places[2];
#pragma GCC unroll 2
    for (int i = 0; i < 2; ++i) {
        const __m256i place = _mm256_sub_epi16(units.half[i], first);
        const __m256i inside = _mm256_cmpeq_epi16(_mm256_min_epu16(place, most), place);
        places[i] = _mm256_blendv_epi8(_mm256_set1_epi16(255), place, inside);
    }
    return _mm256_packus_epi16(places[0], places[1]);
}

// The codes of 32 elements that are not all ASCII and none above U+FFFF, 0 for what is in
// neither of the stretches. `ascii` receives the ASCII characters, 0 for all others.
TV_AVX2_STEP __m256i encodeUnits(const Units& units, const CodepageTables& tables, __m256i& ascii)
{
    const __m256i places = placesIn(units, 0);
    ascii = _mm256_andnot_si256(_mm256_cmpeq_epi8(places, allBytes(255)), places);
    const __m256i codes0 = lookUp128(tables.windowCode[0], placesIn(units, tables.windowBase[0]));
    const __m256i codes1 = lookUp128(tables.windowCode[1], placesIn(units, tables.windowBase[1]));
    const __m256i codes = _mm256_or_si256(_mm256_or_si256(codes0, codes1), ascii);
    ascii = inOrder(ascii);
    return inOrder(codes);
}

// Decodes 32 bytes; returns what a conversion stops at, 0 and backslash, a bit for each byte.
TV_AVX2_STEP unsigned decode32(wchar_t* dst, const unsigned char* src, const CodepageTables& tables)
{
    const __m256i b = load32(src);
    if (maskOf(b) == 0) {
        widen32(dst, src);
    } else {
        const __m256i places = _mm256_xor_si256(b, allBytes(0x80)); // of ASCII bytes from 128 on
        const __m256i low = _mm256_blendv_epi8(b, lookUp128(tables.byteLow, places), b);
        storeUnits(dst, low, lookUp128(tables.byteHigh, places));
    }
    return maskOf(_mm256_or_si256(isZero(b), _mm256_cmpeq_epi8(b, allBytes('\\'))));
}

// Encodes 32 elements; returns a bit for each that has to be searched in the whole table, or that
// a conversion stops at: 0, backslash and what is in neither stretch.
TV_AVX2_STEP unsigned encode32(char* dst, const wchar_t* src, const CodepageTables& tables)
{
    const __m256i v0 = load8(src);
    const __m256i v1 = load8(src + 8);
    const __m256i v2 = load8(src + 16);
    const __m256i v3 = load8(src + 24);
    const __m256i bytes = packBytes(v0, v1, v2, v3);
    const __m256i other =
        _mm256_or_si256(_mm256_cmpgt_epi8(allBytes(1), bytes), _mm256_cmpeq_epi8(bytes, allBytes('\\')));
    if (maskOf(other) == 0) { // ASCII alone
        store32(dst, bytes);
        return 0;
    }
    const __m256i all = _mm256_or_si256(_mm256_or_si256(v0, v1), _mm256_or_si256(v2, v3));
    if (!_mm256_testz_si256(all, _mm256_set1_epi32(static_cast<int>(0xFFFF0000))))
        return ~0u;
    __m256i ascii;
    const __m256i codes =
        encodeUnits({{_mm256_packus_epi32(v0, v1), _mm256_packus_epi32(v2, v3)}}, tables, ascii);
    store32(dst, codes);
    return maskOf(_mm256_or_si256(isZero(codes), _mm256_cmpeq_epi8(ascii, allBytes('\\'))));
}

} // namespace

TV_AVX2 KernelProgress avx2DecodeSingle(const unsigned char* src, std::size_t count, wchar_t* dst,
                                        const CodepageTables& tables) noexcept
{
    TextBlocks blocks(src, count);
    std::size_t at = 0;
    while (blocks.has(at, 32)) {
        for (; at + 32 <= blocks.known(); at += 32) {
            const unsigned stops = decode32(dst + at, src + at, tables);
            if (stops != 0) {
                at += _tzcnt_u32(stops);
                return {at, at};
            }
        }
    }
    if (at == count || !lieInOnePage(src + at, 32)) {
        decodeSingleUntil(count, src, at, dst, tables);
        return {at, at};
    }
    // The last bytes, with what lies behind the text in its page.
    const std::size_t left = std::min<std::size_t>(count - at, 32);
    const unsigned stops = decode32(dst + at, src + at, tables);
    at += stops != 0 ? std::min<std::size_t>(_tzcnt_u32(stops), left) : left;
    return {at, at};
}

TV_AVX2 KernelProgress avx2EncodeSingle(const wchar_t* src, std::size_t count, char* dst,
                                        const CodepageTables& tables) noexcept
{
    TextBlocks blocks(src, count);
    std::size_t at = 0;
    while (blocks.has(at, 32)) {
        while (at + 32 <= blocks.known()) {
            const std::size_t end = at + 32;
            const unsigned stops = encode32(dst + at, src + at, tables);
            at += stops != 0 ? _tzcnt_u32(stops) : 32;
            // What is in neither stretch is searched in the whole table, and so is all behind it.
            if (at < end && !encodeSingleUntil(end, src, at, dst, tables))
                return {at, at};
        }
    }
    encodeSingleUntil(count, src, at, dst, tables);
    return {at, at};
}

} // namespace TvDetail

#endif

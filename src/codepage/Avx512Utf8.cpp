// Avx512Utf8.cpp - UTF-8 conversions, 64 bytes or 64 elements a step (AVX-512 with VBMI2).
#include "codepage/Avx512Kernels.h"

#if defined(__x86_64__)

#include "codepage/Avx512Blocks.h"
#include "codepage/TextEnd.h"

#include <algorithm>

namespace TvDetail {

namespace {

// Bits of `a` where `mask` has ones, bits of `b` elsewhere.
TV_AVX512_STEP __m512i pickBits(int mask, __m512i a, __m512i b)
{
    return _mm512_ternarylogic_epi32(_mm512_set1_epi8(static_cast<char>(mask)), a, b, 0xCA);
}

// Compresses the bytes that are not 0: in an encoded element those are the ones in use.
TV_AVX512_STEP char* storeUsedBytes(char* out, __m512i bytes)
{
    const std::uint64_t used = _mm512_test_epi8_mask(bytes, bytes);
    _mm512_storeu_si512(out, _mm512_maskz_compress_epi8(used, bytes));
    return out + _mm_popcnt_u64(used);
}

// Encodes 16 elements, of which those above U+FFFF and the zeros give no bytes.
TV_AVX512_STEP char* encode16(char* out, __m512i v)
{
    const __mmask16 two = _mm512_cmpge_epu32_mask(v, _mm512_set1_epi32(0x80));
    const __mmask16 three = _mm512_cmpge_epu32_mask(v, _mm512_set1_epi32(0x800));
    const __mmask16 kept = _mm512_cmple_epu32_mask(v, _mm512_set1_epi32(0xFFFF));
    const __m512i six = _mm512_set1_epi32(0x3F00);
    const __m512i form2 =
        _mm512_ternarylogic_epi32(_mm512_srli_epi32(v, 6), _mm512_and_si512(_mm512_slli_epi32(v, 8), six),
                                  _mm512_set1_epi32(0x80C0), 0xFE);
    const __m512i ends3 = _mm512_ternarylogic_epi32(
        _mm512_srli_epi32(v, 12), _mm512_and_si512(_mm512_slli_epi32(v, 16), _mm512_set1_epi32(0x3F0000)),
        _mm512_set1_epi32(0x8080E0), 0xFE);
    const __m512i form3 = _mm512_ternarylogic_epi32(_mm512_slli_epi32(v, 2), six, ends3, 0xEA);
    v = _mm512_mask_mov_epi32(v, two, form2);
    v = _mm512_mask_mov_epi32(v, three, form3);
    return storeUsedBytes(out, _mm512_maskz_mov_epi32(kept, v));
}

// Encodes 32 elements below 0x800, given as 16-bit ones.
TV_AVX512_STEP char* encode32Short(char* out, __m512i v)
{
    const __mmask32 two = _mm512_cmpge_epu16_mask(v, _mm512_set1_epi16(0x80));
    const __m512i form2 = _mm512_ternarylogic_epi32(
        _mm512_srli_epi16(v, 6), _mm512_and_si512(_mm512_slli_epi16(v, 8), _mm512_set1_epi16(0x3F00)),
        _mm512_set1_epi16(static_cast<short>(0x80C0)), 0xFE);
    return storeUsedBytes(out, _mm512_mask_mov_epi16(v, two, form2));
}

// Encodes the last block of a text, or all of a short one, up to a 0; `length` receives how many
// elements stand before that. There is no branch on the length but one: the lengths of short
// texts cannot be foreseen.
TV_AVX512_STEP char* encodeLast(char* out, const wchar_t* src, std::size_t count, std::size_t& length)
{
    __m512i v0 = loadFewWide(src, count, 0);
    __m512i v1 = loadFewWide(src, count, 16);
    __m512i v2 = loadFewWide(src, count, 32);
    __m512i v3 = loadFewWide(src, count, 48);
    // There are zeros behind a block that is not full.
    const std::uint64_t zeros = joinMasks(_mm512_testn_epi32_mask(v0, v0), _mm512_testn_epi32_mask(v1, v1),
                                          _mm512_testn_epi32_mask(v2, v2), _mm512_testn_epi32_mask(v3, v3));
    length = _tzcnt_u64(zeros); // 64 when there is none
    if (length < count) [[unlikely]] {
        v0 = loadFewWide(src, length, 0);
        v1 = loadFewWide(src, length, 16);
        v2 = loadFewWide(src, length, 32);
        v3 = loadFewWide(src, length, 48);
    }
    const __m512i all = _mm512_or_si512(_mm512_ternarylogic_epi32(v0, v1, v2, 0xFE), v3);
    if (!_mm512_cmpgt_epu32_mask(all, _mm512_set1_epi32(0x7F))) {
        _mm512_storeu_si512(out, packLowBytes(v0, v1, v2, v3));
        return out + length;
    }
    if (!_mm512_cmpgt_epu32_mask(all, _mm512_set1_epi32(0x7FF))) {
        out = encode32Short(out, packShort(v0, v1));
        return encode32Short(out, packShort(v2, v3));
    }
    out = encode16(out, v0);
    out = encode16(out, v1);
    if (length > 32) {
        out = encode16(out, v2);
        out = encode16(out, v3);
    }
    return out;
}

// Whether a byte begins a character is a local matter: it does unless it is a continuation
// byte right behind a byte from 0xC0 on, or second behind one from 0xE0 on. So the text is
// cut into blocks without regard to characters, every byte of a block is judged at once, and
// its character is put together beside it in two byte planes, which are then compressed to
// the places where characters begin.
// Texts that lie in one page need no look at where pages end.
template<bool kInOnePage>
TV_AVX512_STEP KernelProgress decodeText(const unsigned char* src, std::size_t count, wchar_t* dst)
{
    wchar_t* out = dst;
    // Of the block before, in the lowest bit: its last byte is a lead byte, one from 0xE0 on,
    // a continuation byte right behind one from 0xE0 on.
    std::uint64_t leadBefore = 0;
    std::uint64_t lead3Before = 0;
    std::uint64_t secondBefore = 0;
    for (std::size_t at = 0; at < count; at += 64) {
        const std::size_t left = kInOnePage ? count - at : loadable(src + at, count - at, 66);
        const __m512i b = loadBytes(src + at, left);
        const std::uint64_t high = _mm512_movepi8_mask(b);
        const std::uint64_t zero = _mm512_testn_epi8_mask(b, b);
        if (high == 0) {
            storeBytesWide(out, b);
            out += _tzcnt_u64(zero); // 64 when there is none
            if (zero)
                return {at + _tzcnt_u64(zero), static_cast<std::size_t>(out - dst)};
            leadBefore = lead3Before = secondBefore = 0;
            continue;
        }

        const __m512i b1 = loadBytesAt(src + at, left, 1);
        const __m512i b2 = loadBytesAt(src + at, left, 2);
        const __m512i firstLead = _mm512_set1_epi8(-64); // as signed bytes, all below it continue
        const std::uint64_t continuation = _mm512_cmplt_epi8_mask(b, firstLead);
        const std::uint64_t lead = high & ~continuation;
        const std::uint64_t lead3 = _mm512_cmpge_epu8_mask(b, _mm512_set1_epi8(static_cast<char>(0xE0)));
        const std::uint64_t form2 = _mm512_mask_cmplt_epi8_mask(lead, b1, firstLead);
        const std::uint64_t form3 = _mm512_mask_cmplt_epi8_mask(form2 & lead3, b2, firstLead);

        const std::uint64_t second = continuation & (lead3 << 1 | lead3Before);
        const std::uint64_t inside = continuation & (lead << 1 | leadBefore | second << 1 | secondBefore);
        leadBefore = lead >> 63;
        lead3Before = lead3 >> 63;
        secondBefore = second >> 63;
        const std::uint64_t begins = ~inside & bitsBelow(zero);

        __m512i lowPlane = _mm512_mask_mov_epi8(b, form2, pickBits(0xC0, _mm512_slli_epi16(b, 6), b1));
        lowPlane = _mm512_mask_mov_epi8(lowPlane, form3, pickBits(0xC0, _mm512_slli_epi16(b1, 6), b2));
        const __m512i high2 = _mm512_and_si512(_mm512_srli_epi16(b, 2), _mm512_set1_epi8(0x07));
        const __m512i high3 = pickBits(0xF0, _mm512_slli_epi16(b, 4), _mm512_srli_epi16(b1, 2));
        const __m512i highPlane = _mm512_mask_mov_epi8(_mm512_maskz_mov_epi8(form2, high2), form3, high3);

        const auto written = static_cast<std::size_t>(_mm_popcnt_u64(begins));
        storePlanesWide(out, _mm512_maskz_compress_epi8(begins, lowPlane),
                        _mm512_maskz_compress_epi8(begins, highPlane), written);
        out += written;
        if (zero)
            return {at + _tzcnt_u64(zero), static_cast<std::size_t>(out - dst)};
    }
    return {count, static_cast<std::size_t>(out - dst)};
}

template<bool kInOnePage>
TV_AVX512_STEP KernelProgress encodeText(const wchar_t* src, std::size_t count, char* dst)
{
    char* out = dst;
    std::size_t at = 0;
    for (; at + 64 <= count && (kInOnePage || loadable(src + at, 64, 64) == 64); at += 64) {
        const __m512i v0 = _mm512_loadu_si512(src + at);
        const __m512i v1 = _mm512_loadu_si512(src + at + 16);
        const __m512i v2 = _mm512_loadu_si512(src + at + 32);
        const __m512i v3 = _mm512_loadu_si512(src + at + 48);
        // A 0 ends the text, and this is its last block.
        const __m512i least = _mm512_min_epu32(_mm512_min_epu32(v0, v1), _mm512_min_epu32(v2, v3));
        if (_mm512_testn_epi32_mask(least, least))
            break;
        const __m512i all = _mm512_or_si512(_mm512_ternarylogic_epi32(v0, v1, v2, 0xFE), v3);
        if (!_mm512_cmpgt_epu32_mask(all, _mm512_set1_epi32(0x7F))) {
            _mm512_storeu_si512(out, packLowBytes(v0, v1, v2, v3));
            out += 64;
        } else if (!_mm512_cmpgt_epu32_mask(all, _mm512_set1_epi32(0x7FF))) {
            out = encode32Short(out, packShort(v0, v1));
            out = encode32Short(out, packShort(v2, v3));
        } else {
            out = encode16(out, v0);
            out = encode16(out, v1);
            out = encode16(out, v2);
            out = encode16(out, v3);
        }
    }
    std::size_t length = 0;
    if (at < count) {
        const std::size_t left = std::min<std::size_t>(count - at, 64);
        out = encodeLast(out, src + at, kInOnePage ? left : loadable(src + at, left, 64), length);
    }
    return {at + length, static_cast<std::size_t>(out - dst)};
}

[[gnu::noinline]] TV_AVX512 KernelProgress decodeOverPages(const unsigned char* src, std::size_t count,
                                                           wchar_t* dst)
{
    return decodeText<false>(src, count, dst);
}

[[gnu::noinline]] TV_AVX512 KernelProgress encodeOverPages(const wchar_t* src, std::size_t count, char* dst)
{
    return encodeText<false>(src, count, dst);
}

} // namespace

TV_AVX512 KernelProgress avx512Utf8Decode(const unsigned char* src, std::size_t count, wchar_t* dst) noexcept
{
    return lieInOnePage(src, count) ? decodeText<true>(src, count, dst) : decodeOverPages(src, count, dst);
}

TV_AVX512 KernelProgress avx512Utf8Encode(const wchar_t* src, std::size_t count, char* dst) noexcept
{
    return lieInOnePage(src, count) ? encodeText<true>(src, count, dst) : encodeOverPages(src, count, dst);
}

} // namespace TvDetail

#endif

// Avx2Utf8.cpp - UTF-8 conversions, 32 bytes or 32 elements a step (AVX2).
#include "codepage/Avx2Kernels.h"

#if defined(__x86_64__)

#include "codepage/Avx2Blocks.h"
#include "codepage/TextEnd.h"
#include "codepage/TextSteps.h"

namespace TvDetail {

namespace {

constexpr unsigned char kNoByte = 0x80; // a shuffle makes 0 of it

// Shuffles that bring the 16-bit lanes of a mask of eight to the front.
struct PickShorts {
    alignas(16) unsigned char rows[256][16];

    constexpr PickShorts() : rows{}
    {
        for (unsigned mask = 0; mask < 256; ++mask) {
            unsigned to = 0;
            for (unsigned lane = 0; lane < 8; ++lane) {
                if ((mask >> lane & 1) == 0)
                    continue;
                rows[mask][to++] = static_cast<unsigned char>(2 * lane);
                rows[mask][to++] = static_cast<unsigned char>(2 * lane + 1);
            }
            while (to < 16)
                rows[mask][to++] = kNoByte;
        }
    }
};
constexpr PickShorts kPickShorts;

// Shuffles that close the gaps between four encoded characters of 32 bits each. The lower half
// of a row's number has a one for each character of two or three bytes, the upper half for
// each of three.
struct CloseGaps {
    alignas(16) unsigned char rows[256][16];

    constexpr CloseGaps() : rows{}
    {
        for (unsigned number = 0; number < 256; ++number) {
            unsigned to = 0;
            for (unsigned lane = 0; lane < 4; ++lane) {
                const unsigned size = 1 + (number >> lane & 1) + (number >> (lane + 4) & 1);
                for (unsigned i = 0; i < size; ++i)
                    rows[number][to++] = static_cast<unsigned char>(4 * lane + i);
            }
            while (to < 16)
                rows[number][to++] = kNoByte;
        }
    }
};
constexpr CloseGaps kCloseGaps;

TV_AVX2_STEP __m128i loadRow(const unsigned char (&row)[16])
{
    return _mm_load_si128(reinterpret_cast<const __m128i*>(row));
}

// Bits of `a` where `mask` has ones, bits of `b` elsewhere.
TV_AVX2_STEP __m256i pickBits(int mask, __m256i a, __m256i b)
{
    return _mm256_or_si256(_mm256_and_si256(a, allBytes(mask)), _mm256_andnot_si256(allBytes(mask), b));
}

TV_AVX2_STEP __m256i isContinuation(__m256i bytes) { return _mm256_cmpgt_epi8(allBytes(-64), bytes); }

// Widens those of eight units that a mask of eight chooses; returns the place behind them.
TV_AVX2_STEP wchar_t* storePicked(wchar_t* out, __m128i units, unsigned mask)
{
    const __m128i picked = _mm_shuffle_epi8(units, loadRow(kPickShorts.rows[mask]));
    store8(out, _mm256_cvtepu16_epi32(picked));
    return out + __builtin_popcount(mask);
}

// What a block says of the first bytes behind it.
struct Carry {
    unsigned lead = 0;   // its last byte is a lead byte,
    unsigned lead3 = 0;  // one from 0xE0 on,
    unsigned second = 0; // a continuation byte right behind one from 0xE0 on

    // How many of the bytes behind the block belong to a character that began in it.
    std::size_t belonging(const unsigned char* src, std::size_t count) const
    {
        if (count == 0 || !isUtf8Continuation(src[0]) || (lead | second) == 0)
            return 0;
        return lead3 != 0 && count > 1 && isUtf8Continuation(src[1]) ? 2 : 1;
    }
};

// The characters of 32 bytes that are not all ASCII and hold no 0, with two readable bytes
// behind them. Each byte is judged without regard to the others' fate and its character put
// together beside it; then those bytes are picked where a character begins.
TV_AVX2_STEP wchar_t* decode32(wchar_t* out, const unsigned char* src, Carry& carry)
{
    const __m256i b = load32(src);
    const __m256i b1 = load32(src + 1);
    const __m256i b2 = load32(src + 2);
    const __m256i isLead =
        _mm256_and_si256(_mm256_cmpgt_epi8(b, allBytes(-65)), _mm256_cmpgt_epi8(_mm256_setzero_si256(), b));
    const __m256i isLead3 = _mm256_cmpeq_epi8(_mm256_max_epu8(b, allBytes(0xE0)), b);
    const __m256i form2 = _mm256_and_si256(isLead, isContinuation(b1));
    const __m256i form3 = _mm256_and_si256(_mm256_and_si256(form2, isLead3), isContinuation(b2));

    const unsigned continuation = maskOf(isContinuation(b));
    const unsigned lead = maskOf(isLead);
    const unsigned lead3 = maskOf(isLead3);
    const unsigned second = continuation & (lead3 << 1 | carry.lead3);
    const unsigned inside = continuation & (lead << 1 | carry.lead | second << 1 | carry.second);
    carry = {lead >> 31, lead3 >> 31, second >> 31};

    const __m256i low2 = pickBits(0xC0, _mm256_slli_epi16(b, 6), b1);
    const __m256i low3 = pickBits(0xC0, _mm256_slli_epi16(b1, 6), b2);
    const __m256i low = _mm256_blendv_epi8(_mm256_blendv_epi8(b, low2, form2), low3, form3);
    const __m256i top2 = _mm256_and_si256(_mm256_srli_epi16(b, 2), allBytes(0x07));
    const __m256i top3 = pickBits(0xF0, _mm256_slli_epi16(b, 4), _mm256_srli_epi16(b1, 2));
    const __m256i top = _mm256_blendv_epi8(_mm256_and_si256(top2, form2), top3, form3);

    const __m256i units0 = _mm256_unpacklo_epi8(low, top);
    const __m256i units1 = _mm256_unpackhi_epi8(low, top);
    out = storePicked(out, _mm256_castsi256_si128(units0), ~inside & 0xFF);
    out = storePicked(out, _mm256_castsi256_si128(units1), ~inside >> 8 & 0xFF);
    out = storePicked(out, _mm256_extracti128_si256(units0, 1), ~inside >> 16 & 0xFF);
    return storePicked(out, _mm256_extracti128_si256(units1, 1), ~inside >> 24);
}

TV_AVX2_STEP char* storeClosed(char* out, __m128i encoded, unsigned number)
{
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out),
                     _mm_shuffle_epi8(encoded, loadRow(kCloseGaps.rows[number])));
    return out + 4 + __builtin_popcount(number);
}

// Encodes eight elements from 1 to U+FFFF.
TV_AVX2_STEP char* encode8(char* out, __m256i v)
{
    const __m256i two = _mm256_cmpgt_epi32(v, _mm256_set1_epi32(0x7F));
    const __m256i three = _mm256_cmpgt_epi32(v, _mm256_set1_epi32(0x7FF));
    const __m256i six = _mm256_set1_epi32(0x3F00);
    const __m256i form2 = _mm256_or_si256(
        _mm256_or_si256(_mm256_srli_epi32(v, 6), _mm256_and_si256(_mm256_slli_epi32(v, 8), six)),
        _mm256_set1_epi32(0x80C0));
    const __m256i last3 = _mm256_and_si256(_mm256_slli_epi32(v, 16), _mm256_set1_epi32(0x3F0000));
    const __m256i form3 = _mm256_or_si256(
        _mm256_or_si256(_mm256_srli_epi32(v, 12), _mm256_and_si256(_mm256_slli_epi32(v, 2), six)),
        _mm256_or_si256(last3, _mm256_set1_epi32(0x8080E0)));
    const __m256i encoded = _mm256_blendv_epi8(_mm256_blendv_epi8(v, form2, two), form3, three);

    const auto twos = static_cast<unsigned>(_mm256_movemask_ps(_mm256_castsi256_ps(two)));
    const auto threes = static_cast<unsigned>(_mm256_movemask_ps(_mm256_castsi256_ps(three)));
    out = storeClosed(out, _mm256_castsi256_si128(encoded), (twos & 0x0F) | (threes & 0x0F) << 4);
    return storeClosed(out, _mm256_extracti128_si256(encoded, 1), twos >> 4 | (threes & 0xF0));
}

} // namespace

TV_AVX2 KernelProgress avx2Utf8Decode(const unsigned char* src, std::size_t count, wchar_t* dst) noexcept
{
    wchar_t* out = dst;
    std::size_t at = 0;
    Carry carry;
    TextBlocks blocks(src, count);
    bool ended = false;
    while (!ended && blocks.has(at, 34)) {
        for (; at + 34 <= blocks.known(); at += 32) {
            const __m256i b = load32(src + at);
            ended = maskOf(isZero(b)) != 0; // the text ends in here
            if (ended)
                break;
            if (maskOf(b) == 0) {
                widen32(out, src + at);
                out += 32;
                carry = {};
            } else {
                out = decode32(out, src + at, carry);
            }
        }
    }
    at += carry.belonging(src + at, count - at);
    auto written = static_cast<std::size_t>(out - dst);
    utf8DecodeUntil(count, src, count, at, dst, written);
    return {at, written};
}

TV_AVX2 KernelProgress avx2Utf8Encode(const wchar_t* src, std::size_t count, char* dst) noexcept
{
    std::size_t at = 0;
    std::size_t written = 0;
    TextBlocks blocks(src, count);
    while (blocks.has(at, 32)) {
        while (at + 32 <= blocks.known()) {
            const __m256i v0 = load8(src + at);
            const __m256i v1 = load8(src + at + 8);
            const __m256i v2 = load8(src + at + 16);
            const __m256i v3 = load8(src + at + 24);
            const __m256i all = _mm256_or_si256(_mm256_or_si256(v0, v1), _mm256_or_si256(v2, v3));
            const __m256i least = _mm256_min_epu32(_mm256_min_epu32(v0, v1), _mm256_min_epu32(v2, v3));
            const __m256i zero = _mm256_cmpeq_epi32(least, _mm256_setzero_si256());
            const __m256i large = _mm256_set1_epi32(static_cast<int>(0xFFFF0000));
            if (!_mm256_testz_si256(zero, zero) || !_mm256_testz_si256(all, large)) {
                if (!utf8EncodeUntil(at + 32, src, at, dst, written))
                    return {at, written};
                continue;
            }
            char* out = dst + written;
            if (_mm256_testz_si256(all, _mm256_set1_epi32(~0x7F))) {
                store32(out, packBytes(v0, v1, v2, v3));
                out += 32;
            } else {
                out = encode8(out, v0);
                out = encode8(out, v1);
                out = encode8(out, v2);
                out = encode8(out, v3);
            }
            written = static_cast<std::size_t>(out - dst);
            at += 32;
        }
    }
    utf8EncodeUntil(count, src, at, dst, written);
    return {at, written};
}

} // namespace TvDetail

#endif

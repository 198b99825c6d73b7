// Avx512EncodeDouble.cpp - wide text to double-byte text, up to 64 characters a step (AVX-512
// with VBMI2).
#include "codepage/Avx512Kernels.h"

#if defined(__x86_64__)

#include "codepage/Avx512Blocks.h"
#include "codepage/TextEnd.h"
#include "codepage/TextSteps.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace TvDetail {

namespace {

constexpr std::size_t kBlock = 64;

// Keeps the compiler from taking single values through vectors, which costs more than it saves.
TV_AVX512_STEP unsigned inRegister(unsigned value)
{
    __asm__("" : "+r"(value));
    return value;
}

// The code of an element that is not above U+FFFF.
TV_AVX512_STEP unsigned codeOf(wchar_t wc, const unsigned short* table)
{
    return inRegister(table[static_cast<unsigned>(wc)]);
}

// One element after the other, for texts with some above U+FFFF.
KernelProgress encodeSlowly(const wchar_t* src, std::size_t count, char* dst, const CodepageTables& tables)
{
    KernelProgress done = {0, 0};
    encodeDoubleUntil(count, src, done.read, dst, done.written, tables);
    return done;
}

// A block: the low bytes of its elements, and which of them are not ASCII.
struct Block {
    __m512i bytes;
    std::uint64_t foreign;
};

TV_AVX512_STEP Block blockOf(__m512i v0, __m512i v1, __m512i v2, __m512i v3)
{
    const __m512i most = _mm512_set1_epi32(0x7F);
    return {packLowBytes(v0, v1, v2, v3),
            joinMasks(_mm512_cmpgt_epu32_mask(v0, most), _mm512_cmpgt_epu32_mask(v1, most),
                      _mm512_cmpgt_epu32_mask(v2, most), _mm512_cmpgt_epu32_mask(v3, most))};
}

// A 0, of which there are some behind the end of a short block, or a backslash.
TV_AVX512_STEP std::uint64_t stopPlaces(const Block& block)
{
    return (_mm512_testn_epi8_mask(block.bytes, block.bytes) |
            _mm512_cmpeq_epi8_mask(block.bytes, _mm512_set1_epi8('\\'))) &
           ~block.foreign;
}

// Up to this many characters of a block are looked up one by one: few of them are done sooner
// than the many around them.
constexpr int kFew = 8;

// Writes the characters of a block before its first stop, of which those of `foreign` have two
// bytes each. Nothing of that counts when it answers false: one has another code, or none.
TV_AVX512_STEP bool encodeFew(char* dst, const wchar_t* src, __m512i bytes, std::uint64_t foreign,
                              const unsigned short* table)
{
    _mm512_storeu_si512(dst, bytes);
    unsigned shorter = 0; // the sign of code - 0x100 tells a code of one byte, or none
    for (std::uint64_t left = foreign; left; left &= left - 1) {
        const std::size_t at = _tzcnt_u64(left);
        const unsigned code = table[std::min(static_cast<unsigned>(src[at]), 0x10000u)];
        shorter |= code - 0x100;
        const std::uint16_t pair = __builtin_bswap16(static_cast<std::uint16_t>(code));
        std::memcpy(dst + at, &pair, sizeof pair);
        // All behind it moves on by a byte, and so does what is still to come.
        ++dst;
        const __m512i behind = _mm512_add_epi8(countBytes(), _mm512_set1_epi8(static_cast<char>(at + 1)));
        _mm512_storeu_si512(dst + at + 1, _mm512_permutexvar_epi8(behind, bytes));
    }
    return shorter >> 31 == 0;
}

// Stores the first `count` codes, at most 32, lead byte first where there is one.
TV_AVX512_STEP char* storeCodes(char* out, __m512i codes, std::size_t count)
{
    const __m512i bytes = _mm512_or_si512(_mm512_slli_epi16(codes, 8), _mm512_srli_epi16(codes, 8));
    const std::uint64_t used =
        (_mm512_test_epi8_mask(bytes, bytes) | 0xAAAAAAAAAAAAAAAA) & lowBits(2 * count);
    _mm512_storeu_si512(out, _mm512_maskz_compress_epi8(used, bytes));
    return out + _mm_popcnt_u64(used);
}

// Encodes up to kManyUnits elements, each looked up: first all the codes, by plain loads, which
// beat gathers, then the bytes. Less is read than there is only when something stops it.
constexpr std::size_t kManyUnits = 256;
[[gnu::noinline]] TV_AVX512 KernelProgress encodeMany(const wchar_t* src, std::size_t count, char* dst,
                                                      const CodepageTables& tables)
{
    alignas(64) std::uint16_t codes[kManyUnits];
    count = std::min(loadable(src, count, kManyUnits), kManyUnits);
    __m512i units = _mm512_setzero_si512();
    for (std::size_t at = 0; at < count; at += 16)
        units = _mm512_or_si512(units, loadWide(src + at, count - at));
    if (_mm512_cmpgt_epu32_mask(units, _mm512_set1_epi32(0xFFFF)) != 0)
        return encodeSlowly(src, count, dst, tables);
    const unsigned short* const table = tables.encodePair;
    std::size_t i = 0;
    for (; i + 8 <= count; i += 8) {
#pragma GCC unroll 8
        for (std::size_t j = i; j < i + 8; ++j)
            codes[j] = static_cast<std::uint16_t>(codeOf(src[j], table));
    }
    for (; i < count; ++i)
        codes[i] = static_cast<std::uint16_t>(codeOf(src[i], table));

    const __m512i backslash = _mm512_set1_epi32('\\');
    char* out = dst;
    for (std::size_t at = 0; at < count; at += 32) {
        const std::size_t left = count - at;
        const __m512i found = _mm512_maskz_loadu_epi16(static_cast<__mmask32>(lowBits(left)), codes + at);
        const __m512i v0 = loadWide(src + at, left);
        const __m512i v1 = left > 16 ? loadWide(src + at + 16, left - 16) : _mm512_setzero_si512();
        const std::uint64_t stops =
            _mm512_testn_epi16_mask(found, found) |
            _mm512_kunpackw(_mm512_cmpeq_epi32_mask(v1, backslash), _mm512_cmpeq_epi32_mask(v0, backslash));
        const std::size_t good = stops ? _tzcnt_u64(stops) : 32;
        out = storeCodes(out, found, good);
        if (stops)
            return {at + good, static_cast<std::size_t>(out - dst)};
    }
    return {count, static_cast<std::size_t>(out - dst)};
}

// The codes of eight elements.
TV_AVX512_STEP __m128i codesOfEight(const wchar_t* src, const unsigned short* table)
{
    __m128i first = _mm_cvtsi32_si128(static_cast<int>(codeOf(src[0], table)));
    __m128i second = _mm_cvtsi32_si128(static_cast<int>(codeOf(src[4], table)));
    first = _mm_insert_epi16(first, static_cast<int>(codeOf(src[1], table)), 1);
    second = _mm_insert_epi16(second, static_cast<int>(codeOf(src[5], table)), 1);
    first = _mm_insert_epi16(first, static_cast<int>(codeOf(src[2], table)), 2);
    second = _mm_insert_epi16(second, static_cast<int>(codeOf(src[6], table)), 2);
    first = _mm_insert_epi16(first, static_cast<int>(codeOf(src[3], table)), 3);
    second = _mm_insert_epi16(second, static_cast<int>(codeOf(src[7], table)), 3);
    return _mm_unpacklo_epi64(first, second);
}

// Encodes a short text, eight elements at a time.
TV_AVX512_STEP KernelProgress encodeEights(const wchar_t* src, std::size_t count, char* dst,
                                           const CodepageTables& tables)
{
    const __m128i swap = _mm_setr_epi8(1, 0, 3, 2, 5, 4, 7, 6, 9, 8, 11, 10, 13, 12, 15, 14);
    char* out = dst;
    for (std::size_t at = 0; at < count; at += 8) {
        const auto here = static_cast<__mmask8>(fewBits(std::min<std::size_t>(count - at, 8)));
        const __m256i units = _mm256_maskz_loadu_epi32(here, src + at);
        if (_mm256_cmpgt_epu32_mask(units, _mm256_set1_epi32(0xFFFF)) != 0)
            return encodeSlowly(src, count, dst, tables);
        const wchar_t* from = src + at;
        alignas(32) wchar_t last[8]; // with zeros behind the end
        if (count - at < 8) {
            _mm256_store_si256(reinterpret_cast<__m256i*>(last), units);
            from = last;
        }
        const __m128i codes = codesOfEight(from, tables.encodePair);
        const unsigned stops =
            _mm_testn_epi16_mask(codes, codes) | _mm256_cmpeq_epi32_mask(units, _mm256_set1_epi32('\\'));
        const std::size_t good = stops ? _tzcnt_u32(stops) : 8;
        const __m128i bytes = _mm_shuffle_epi8(codes, swap);
        const auto used =
            static_cast<__mmask16>((_mm_test_epi8_mask(bytes, bytes) | 0xAAAA) & fewBits(2 * good));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm_maskz_compress_epi8(used, bytes));
        out += _mm_popcnt_u32(used);
        if (stops)
            return {at + good, static_cast<std::size_t>(out - dst)};
    }
    return {count, static_cast<std::size_t>(out - dst)};
}

// A text of several blocks.
[[gnu::noinline]] TV_AVX512 KernelProgress encodeBlocks(const wchar_t* src, std::size_t count, char* dst,
                                                        const CodepageTables& tables)
{
    char* out = dst;
    std::size_t at = 0;
    while (at < count) {
        const std::size_t left = loadable(src + at, count - at, kBlock);
        const WideBlock loaded = loadBlock(src + at, left);
        const Block block = blockOf(loaded.v[0], loaded.v[1], loaded.v[2], loaded.v[3]);
        const std::uint64_t stops = stopPlaces(block);
        const std::uint64_t foreign = block.foreign & bitsBelow(stops);
        if (_mm_popcnt_u64(foreign) <= kFew &&
            encodeFew(out, src + at, block.bytes, foreign, tables.encodePair)) {
            const std::size_t good = _tzcnt_u64(stops); // 64 when there is none
            at += good;
            out += good + static_cast<std::size_t>(_mm_popcnt_u64(foreign));
            if (stops)
                break;
            continue;
        }
        const KernelProgress done = encodeMany(src + at, left, out, tables);
        at += done.read;
        out += done.written;
        if (done.read < std::min(left, kManyUnits))
            break;
    }
    return {at, static_cast<std::size_t>(out - dst)};
}

// One block that is not ASCII alone.
TV_AVX512 KernelProgress encodeBlock(const wchar_t* src, std::size_t count, char* dst,
                                     const CodepageTables& tables)
{
    const Block block = blockOf(loadFewWide(src, count, 0), loadFewWide(src, count, 16),
                                loadFewWide(src, count, 32), loadFewWide(src, count, 48));
    const std::uint64_t stops = stopPlaces(block);
    const std::uint64_t foreign = block.foreign & bitsBelow(stops);
    if (_mm_popcnt_u64(foreign) > kFew || !encodeFew(dst, src, block.bytes, foreign, tables.encodePair))
        return encodeEights(src, count, dst, tables);
    const std::size_t good = _tzcnt_u64(stops);
    return {good, good + static_cast<std::size_t>(_mm_popcnt_u64(foreign))};
}

} // namespace

TV_AVX512 KernelProgress avx512EncodeDouble(const wchar_t* src, std::size_t count, char* dst,
                                            const CodepageTables& tables) noexcept
{
    if (count > kBlock || !lieInOnePage(src, count))
        return encodeBlocks(src, count, dst, tables);
    const __m512i v0 = loadFewWide(src, count, 0);
    const __m512i v1 = loadFewWide(src, count, 16);
    const __m512i v2 = loadFewWide(src, count, 32);
    const __m512i v3 = loadFewWide(src, count, 48);
    const __m512i all = _mm512_or_si512(_mm512_ternarylogic_epi32(v0, v1, v2, 0xFE), v3);
    if (_mm512_cmpgt_epu32_mask(all, _mm512_set1_epi32(0x7F)) != 0)
        return encodeBlock(src, count, dst, tables);
    const __m512i bytes = packLowBytes(v0, v1, v2, v3);
    _mm512_storeu_si512(dst, bytes);
    const std::size_t at = _tzcnt_u64(stopPlaces({bytes, 0}));
    return {at, at};
}

} // namespace TvDetail

#endif

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

TV_AVX512_STEP std::uint64_t foreignPlaces(const WideBlock& loaded)
{
    const __m512i most = _mm512_set1_epi32(0x7F);
    return joinMasks(_mm512_cmpgt_epu32_mask(loaded.v[0], most), _mm512_cmpgt_epu32_mask(loaded.v[1], most),
                     _mm512_cmpgt_epu32_mask(loaded.v[2], most), _mm512_cmpgt_epu32_mask(loaded.v[3], most));
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
constexpr int kFewOfOne = 3; // in a text of one block

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

// The codes of eight elements, by their low halves.
TV_AVX512_STEP __m128i codesOfEight(const wchar_t* src, const unsigned short* table)
{
    const auto code = [=](int i) { return static_cast<int>(table[static_cast<std::uint16_t>(src[i])]); };
    __m128i codes = _mm_cvtsi32_si128(code(0));
    codes = _mm_insert_epi16(codes, code(1), 1);
    codes = _mm_insert_epi16(codes, code(2), 2);
    codes = _mm_insert_epi16(codes, code(3), 3);
    codes = _mm_insert_epi16(codes, code(4), 4);
    codes = _mm_insert_epi16(codes, code(5), 5);
    codes = _mm_insert_epi16(codes, code(6), 6);
    return _mm_insert_epi16(codes, code(7), 7);
}

// encodeSixteens() loads up to this many elements behind the last one of a text.
constexpr std::size_t kReadOn = 16;

// Encodes a short text, sixteen elements at a time, of which the last ones need not belong to it.
TV_AVX512_STEP KernelProgress encodeSixteens(const wchar_t* src, std::size_t count, char* dst,
                                             const CodepageTables& tables)
{
    const __m256i swap =
        _mm256_broadcastsi128_si256(_mm_setr_epi8(1, 0, 3, 2, 5, 4, 7, 6, 9, 8, 11, 10, 13, 12, 15, 14));
    char* out = dst;
    for (std::size_t at = 0; at < count; at += 16) {
        const std::size_t left = count - at;
        __m256i codes = _mm256_castsi128_si256(codesOfEight(src + at, tables.encodePair));
        if (left > 8)
            codes = _mm256_inserti128_si256(codes, codesOfEight(src + at + 8, tables.encodePair), 1);
        const __m512i units = _mm512_loadu_si512(src + at);
        const auto here = static_cast<__mmask16>(fewBits(std::min<std::size_t>(left, 16)));
        const unsigned stops =
            (_mm256_testn_epi16_mask(codes, codes) | _mm512_cmpeq_epi32_mask(units, _mm512_set1_epi32('\\')) |
             _mm512_cmpgt_epu32_mask(units, _mm512_set1_epi32(0xFFFF))) &
            here;
        const std::size_t good = stops ? _tzcnt_u32(stops) : std::min<std::size_t>(left, 16);
        const __m256i bytes = _mm256_shuffle_epi8(codes, swap);
        const auto used =
            static_cast<__mmask32>((_mm256_test_epi8_mask(bytes, bytes) | 0xAAAAAAAA) & fewBits(2 * good));
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(out), _mm256_maskz_compress_epi8(used, bytes));
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
        const Block block = {packLowBytes(loaded.v[0], loaded.v[1], loaded.v[2], loaded.v[3]),
                             foreignPlaces(loaded)};
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
TV_AVX512_STEP KernelProgress encodeBlock(const wchar_t* src, std::size_t count, char* dst,
                                          const CodepageTables& tables, const WideBlock& loaded)
{
    const std::uint64_t foreign = foreignPlaces(loaded);
    if (_mm_popcnt_u64(foreign) > kFewOfOne)
        return encodeSixteens(src, count, dst, tables);
    const Block block = {packLowBytes(loaded.v[0], loaded.v[1], loaded.v[2], loaded.v[3]), foreign};
    const std::uint64_t stops = stopPlaces(block);
    const std::uint64_t before = foreign & bitsBelow(stops);
    if (!encodeFew(dst, src, block.bytes, before, tables.encodePair))
        return encodeSixteens(src, count, dst, tables);
    const std::size_t good = _tzcnt_u64(stops);
    return {good, good + static_cast<std::size_t>(_mm_popcnt_u64(before))};
}

} // namespace

TV_AVX512 KernelProgress avx512EncodeDouble(const wchar_t* src, std::size_t count, char* dst,
                                            const CodepageTables& tables) noexcept
{
    if (count > kBlock || !lieInOnePage(src, count + kReadOn))
        return encodeBlocks(src, count, dst, tables);
    const WideBlock loaded = {{loadFewWide(src, count, 0), loadFewWide(src, count, 16),
                               loadFewWide(src, count, 32), loadFewWide(src, count, 48)}};
    const __m512i all =
        _mm512_or_si512(_mm512_ternarylogic_epi32(loaded.v[0], loaded.v[1], loaded.v[2], 0xFE), loaded.v[3]);
    if (_mm512_cmpgt_epu32_mask(all, _mm512_set1_epi32(0x7F)) != 0)
        return encodeBlock(src, count, dst, tables, loaded);
    const __m512i bytes = packLowBytes(loaded.v[0], loaded.v[1], loaded.v[2], loaded.v[3]);
    _mm512_storeu_si512(dst, bytes);
    const std::size_t at = _tzcnt_u64(stopPlaces({bytes, 0}));
    return {at, at};
}

} // namespace TvDetail

#endif

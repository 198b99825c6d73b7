// Avx512Single.cpp - conversions of single-byte code pages, 64 characters a step (AVX-512 with
// VBMI2).
//
// Texts of one block go a way of their own: it sets up nothing that a block does not need and
// has no branch that depends on the length.
#include "codepage/Avx512Kernels.h"

#if defined(__x86_64__)

#include "codepage/Avx512Blocks.h"
#include "codepage/TextEnd.h"

namespace TvDetail {

namespace {

constexpr std::size_t kBlock = 64;

// What ends a run: a backslash or a 0, of which there are some behind the end of a short block.
TV_AVX512_STEP std::uint64_t stopPlaces(__m512i bytes)
{
    return _mm512_testn_epi8_mask(bytes, bytes) | _mm512_cmpeq_epi8_mask(bytes, _mm512_set1_epi8('\\'));
}

// What the bytes from 0x80 on stand for.
struct ByteTables {
    __m512i low0, low1, high0, high1;
};

TV_AVX512_STEP ByteTables loadByteTables(const CodepageTables& tables)
{
    return {_mm512_loadu_si512(tables.byteLow), _mm512_loadu_si512(tables.byteLow + 64),
            _mm512_loadu_si512(tables.byteHigh), _mm512_loadu_si512(tables.byteHigh + 64)};
}

// Writes a block, of which the bytes of `high` are from 0x80 on.
TV_AVX512_STEP void decodeBlock(wchar_t* dst, __m512i b, std::uint64_t high, const ByteTables& tables)
{
    const __m512i low = _mm512_mask_mov_epi8(b, high, _mm512_permutex2var_epi8(tables.low0, b, tables.low1));
    storePlanesWide(dst, low, _mm512_maskz_permutex2var_epi8(high, tables.high0, b, tables.high1));
}

[[gnu::noinline]] TV_AVX512 KernelProgress decodeBlocks(const unsigned char* src, std::size_t count,
                                                        wchar_t* dst, const CodepageTables& tables)
{
    const ByteTables byteTables = loadByteTables(tables);
    for (std::size_t at = 0; at < count; at += kBlock) {
        const __m512i b = loadBytes(src + at, loadable(src + at, count - at, kBlock));
        const std::uint64_t high = _mm512_movepi8_mask(b);
        const std::uint64_t stops = stopPlaces(b);
        if (high)
            decodeBlock(dst + at, b, high, byteTables);
        else
            storeBytesWide(dst + at, b);
        if (stops) {
            at += _tzcnt_u64(stops);
            return {at, at};
        }
    }
    return {count, count};
}

// The codes of the two stretches of characters that hold most of a code page.
struct WindowTables {
    __m512i codes[2][2];
    __m512i base[2];
};

TV_AVX512_STEP WindowTables loadWindowTables(const CodepageTables& tables)
{
    return {{{_mm512_loadu_si512(tables.windowCode[0]), _mm512_loadu_si512(tables.windowCode[0] + 64)},
             {_mm512_loadu_si512(tables.windowCode[1]), _mm512_loadu_si512(tables.windowCode[1] + 64)}},
            {_mm512_set1_epi32(static_cast<int>(tables.windowBase[0])),
             _mm512_set1_epi32(static_cast<int>(tables.windowBase[1]))}};
}

using Block = WideBlock;

// Which elements are one of the 128 from `base` on.
TV_AVX512_STEP std::uint64_t inWindow(const Block& block, __m512i base)
{
    const __m512i size = _mm512_set1_epi32(128);
    return joinMasks(_mm512_cmplt_epu32_mask(_mm512_sub_epi32(block.v[0], base), size),
                     _mm512_cmplt_epu32_mask(_mm512_sub_epi32(block.v[1], base), size),
                     _mm512_cmplt_epu32_mask(_mm512_sub_epi32(block.v[2], base), size),
                     _mm512_cmplt_epu32_mask(_mm512_sub_epi32(block.v[3], base), size));
}

TV_AVX512_STEP bool isAscii(const Block& block)
{
    const __m512i all =
        _mm512_or_si512(_mm512_ternarylogic_epi32(block.v[0], block.v[1], block.v[2], 0xFE), block.v[3]);
    return _mm512_cmpgt_epu32_mask(all, _mm512_set1_epi32(0x7F)) == 0;
}

// Writes the codes of a block and tells where it stops: at what ends a run, and at characters
// without a code. `src` is where the block was loaded.
TV_AVX512_STEP std::uint64_t encodeBlock(char* dst, const Block& block, const wchar_t* src,
                                         const CodepageTables& tables, const WindowTables& windows)
{
    const __m512i bytes = packLowBytes(block.v[0], block.v[1], block.v[2], block.v[3]);
    const std::uint64_t ascii = inWindow(block, _mm512_setzero_si512());
    const std::uint64_t in0 = inWindow(block, windows.base[0]);
    const std::uint64_t in1 = inWindow(block, windows.base[1]);
    // Windows begin at multiples of 128: the low 7 bits are the place inside.
    __m512i codes = _mm512_mask_mov_epi8(
        bytes, in0, _mm512_permutex2var_epi8(windows.codes[0][0], bytes, windows.codes[0][1]));
    codes = _mm512_mask_mov_epi8(codes, in1,
                                 _mm512_permutex2var_epi8(windows.codes[1][0], bytes, windows.codes[1][1]));
    _mm512_storeu_si512(dst, codes);
    std::uint64_t stops = (stopPlaces(bytes) & ascii) | (_mm512_testn_epi8_mask(codes, codes) & (in0 | in1));
    for (std::uint64_t others = ~(ascii | in0 | in1) & bitsBelow(stops); others; others &= others - 1) {
        const std::size_t place = _tzcnt_u64(others);
        const auto wc = static_cast<unsigned>(src[place]);
        const unsigned char code = wc > 0xFFFF ? 0 : tables.encodeByte[wc];
        dst[place] = static_cast<char>(code);
        if (code == 0)
            return stops | std::uint64_t{1} << place;
    }
    return stops;
}

[[gnu::noinline]] TV_AVX512 KernelProgress encodeBlocks(const wchar_t* src, std::size_t count, char* dst,
                                                        const CodepageTables& tables)
{
    const WindowTables windows = loadWindowTables(tables);
    for (std::size_t at = 0; at < count; at += kBlock) {
        const Block block = loadBlock(src + at, loadable(src + at, count - at, kBlock));
        std::uint64_t stops;
        if (isAscii(block)) {
            const __m512i bytes = packLowBytes(block.v[0], block.v[1], block.v[2], block.v[3]);
            _mm512_storeu_si512(dst + at, bytes);
            stops = stopPlaces(bytes);
        } else {
            stops = encodeBlock(dst + at, block, src + at, tables, windows);
        }
        if (stops) {
            at += _tzcnt_u64(stops);
            return {at, at};
        }
    }
    return {count, count};
}

// One block that is not ASCII alone.
TV_AVX512 KernelProgress encodeForeign(const wchar_t* src, std::size_t count, char* dst,
                                       const CodepageTables& tables)
{
    const Block block = {{loadFewWide(src, count, 0), loadFewWide(src, count, 16),
                          loadFewWide(src, count, 32), loadFewWide(src, count, 48)}};
    const std::size_t at = _tzcnt_u64(encodeBlock(dst, block, src, tables, loadWindowTables(tables)));
    return {at, at};
}

} // namespace

TV_AVX512 KernelProgress avx512DecodeSingle(const unsigned char* src, std::size_t count, wchar_t* dst,
                                            const CodepageTables& tables) noexcept
{
    if (count > kBlock || !lieInOnePage(src, count))
        return decodeBlocks(src, count, dst, tables);
    const __m512i b = loadFewBytes(src, count);
    const std::uint64_t high = _mm512_movepi8_mask(b);
    if (high)
        decodeBlock(dst, b, high, loadByteTables(tables));
    else
        storeBytesWide(dst, b);
    const std::size_t at = _tzcnt_u64(stopPlaces(b)); // 64 when a whole block has none
    return {at, at};
}

TV_AVX512 KernelProgress avx512EncodeSingle(const wchar_t* src, std::size_t count, char* dst,
                                            const CodepageTables& tables) noexcept
{
    if (count > kBlock || !lieInOnePage(src, count))
        return encodeBlocks(src, count, dst, tables);
    const Block block = {{loadFewWide(src, count, 0), loadFewWide(src, count, 16),
                          loadFewWide(src, count, 32), loadFewWide(src, count, 48)}};
    if (!isAscii(block))
        return encodeForeign(src, count, dst, tables);
    const __m512i bytes = packLowBytes(block.v[0], block.v[1], block.v[2], block.v[3]);
    _mm512_storeu_si512(dst, bytes);
    const std::size_t at = _tzcnt_u64(stopPlaces(bytes));
    return {at, at};
}

} // namespace TvDetail

#endif

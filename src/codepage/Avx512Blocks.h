// Avx512Blocks.h - the steps that the 512-bit kernels share. Only for functions compiled
// for that instruction set.
#ifndef TV_AVX512_BLOCKS_H
#define TV_AVX512_BLOCKS_H

#include <immintrin.h>

#include <cstddef>
#include <cstdint>

// The vector headers of g++ 12 hand deliberately undefined registers to its built-ins and
// then warn of them.
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic ignored "-Wuninitialized"
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#endif

#define TV_AVX512                                                                                            \
    __attribute__((                                                                                          \
        target("avx512f,avx512bw,avx512vl,avx512dq,avx512vbmi,avx512vbmi2,avx2,bmi,bmi2,lzcnt,popcnt")))
#define TV_AVX512_STEP TV_AVX512 static inline __attribute__((always_inline))
#define TV_AVX512_MEMBER TV_AVX512 inline __attribute__((always_inline))

namespace TvDetail {

// The lowest `count` bits, all of them from 64 on.
TV_AVX512_STEP std::uint64_t lowBits(std::size_t count)
{
    return count >= 64 ? ~std::uint64_t{0} : (std::uint64_t{1} << count) - 1;
}

// The bits below the lowest one of `mask`; all bits when there is none.
TV_AVX512_STEP std::uint64_t bitsBelow(std::uint64_t mask) { return ~mask & (mask - 1); }

// The first `count` bytes, at most 64, with zeros behind; touches no byte further on.
TV_AVX512_STEP __m512i loadBytes(const unsigned char* src, std::size_t count)
{
    return count >= 64 ? _mm512_loadu_si512(src) : _mm512_maskz_loadu_epi8(lowBits(count), src);
}

// The first `count` elements, at most 16, with zeros behind; touches none further on.
TV_AVX512_STEP __m512i loadWide(const wchar_t* src, std::size_t count)
{
    return count >= 16 ? _mm512_loadu_si512(src)
                       : _mm512_maskz_loadu_epi32(static_cast<__mmask16>(lowBits(count)), src);
}

// The lowest `count` bits, at most 64, without a branch: the lengths of short texts cannot be
// foreseen.
TV_AVX512_STEP std::uint64_t fewBits(std::size_t count)
{
    return _bzhi_u64(~std::uint64_t{0}, static_cast<unsigned>(count));
}

// As loadBytes for up to 64.
TV_AVX512_STEP __m512i loadFewBytes(const unsigned char* src, std::size_t count)
{
    return _mm512_maskz_loadu_epi8(fewBits(count), src);
}

// Of up to 64 elements the sixteen from `offset` on, with zeros behind.
TV_AVX512_STEP __m512i loadFewWide(const wchar_t* src, std::size_t count, int offset)
{
    return _mm512_maskz_loadu_epi32(static_cast<__mmask16>(fewBits(count) >> offset), src + offset);
}

// The first `count` elements of up to 64, with zeros behind; touches none further on.
struct WideBlock {
    __m512i v[4];
};
TV_AVX512_STEP WideBlock loadBlock(const wchar_t* src, std::size_t count)
{
    if (count >= 64) [[likely]]
        return {{_mm512_loadu_si512(src), _mm512_loadu_si512(src + 16), _mm512_loadu_si512(src + 32),
                 _mm512_loadu_si512(src + 48)}};
    return {{loadFewWide(src, count, 0), loadFewWide(src, count, 16), loadFewWide(src, count, 32),
             loadFewWide(src, count, 48)}};
}

// Widens 64 bytes to 64 elements.
TV_AVX512_STEP void storeBytesWide(wchar_t* dst, __m512i bytes)
{
    _mm512_storeu_si512(dst, _mm512_cvtepu8_epi32(_mm512_castsi512_si128(bytes)));
    _mm512_storeu_si512(dst + 16, _mm512_cvtepu8_epi32(_mm512_extracti32x4_epi32(bytes, 1)));
    _mm512_storeu_si512(dst + 32, _mm512_cvtepu8_epi32(_mm512_extracti32x4_epi32(bytes, 2)));
    _mm512_storeu_si512(dst + 48, _mm512_cvtepu8_epi32(_mm512_extracti32x4_epi32(bytes, 3)));
}

// Joins byte planes to elements: lanes of 16 characters from place 16 * part on.
TV_AVX512_STEP __m512i joinPlanes(__m512i low, __m512i high, int part)
{
    const __m512i pick =
        _mm512_add_epi32(_mm512_setr_epi32(0x4000, 0x4101, 0x4202, 0x4303, 0x4404, 0x4505, 0x4606, 0x4707,
                                           0x4808, 0x4909, 0x4A0A, 0x4B0B, 0x4C0C, 0x4D0D, 0x4E0E, 0x4F0F),
                         _mm512_set1_epi32(part * 0x1010));
    return _mm512_maskz_permutex2var_epi8(0x3333333333333333, low, pick, high);
}

// Stores 64 elements from byte planes.
TV_AVX512_STEP void storePlanesWide(wchar_t* dst, __m512i low, __m512i high)
{
    _mm512_storeu_si512(dst, joinPlanes(low, high, 0));
    _mm512_storeu_si512(dst + 16, joinPlanes(low, high, 1));
    _mm512_storeu_si512(dst + 32, joinPlanes(low, high, 2));
    _mm512_storeu_si512(dst + 48, joinPlanes(low, high, 3));
}

// Stores `count` elements from byte planes, rounded up to 32 or 64.
TV_AVX512_STEP void storePlanesWide(wchar_t* dst, __m512i low, __m512i high, std::size_t count)
{
    _mm512_storeu_si512(dst, joinPlanes(low, high, 0));
    _mm512_storeu_si512(dst + 16, joinPlanes(low, high, 1));
    if (count > 32) {
        _mm512_storeu_si512(dst + 32, joinPlanes(low, high, 2));
        _mm512_storeu_si512(dst + 48, joinPlanes(low, high, 3));
    }
}

// The numbers from `first` on, one a 16-bit lane.
TV_AVX512_STEP __m512i countShort(int first)
{
    const __m512i pairs =
        _mm512_setr_epi32(0x10000, 0x30002, 0x50004, 0x70006, 0x90008, 0xB000A, 0xD000C, 0xF000E, 0x110010,
                          0x130012, 0x150014, 0x170016, 0x190018, 0x1B001A, 0x1D001C, 0x1F001E);
    return _mm512_add_epi16(pairs, _mm512_set1_epi16(static_cast<short>(first)));
}

// The numbers from 0 to 63, one a byte.
TV_AVX512_STEP __m512i countBytes()
{
    return _mm512_set_epi64(0x3F3E3D3C3B3A3938, 0x3736353433323130, 0x2F2E2D2C2B2A2928, 0x2726252423222120,
                            0x1F1E1D1C1B1A1918, 0x1716151413121110, 0x0F0E0D0C0B0A0908, 0x0706050403020100);
}

// Joins byte planes to 16-bit elements: 32 characters from place 32 * part on.
TV_AVX512_STEP __m512i joinShort(__m512i low, __m512i high, int part)
{
    // Lane i takes byte 32 * part + i of both planes; 64 is the first of the second plane.
    const __m512i lane = countShort(32 * part);
    const __m512i pick =
        _mm512_or_si512(_mm512_slli_epi16(lane, 8), _mm512_or_si512(lane, _mm512_set1_epi16(0x4000)));
    return _mm512_permutex2var_epi8(low, pick, high);
}

// Widens 32 16-bit elements.
TV_AVX512_STEP void storeShortWide(wchar_t* dst, __m512i units)
{
    _mm512_storeu_si512(dst, _mm512_cvtepu16_epi32(_mm512_castsi512_si256(units)));
    _mm512_storeu_si512(dst + 16, _mm512_cvtepu16_epi32(_mm512_extracti64x4_epi64(units, 1)));
}

// The low halves of 32 elements.
TV_AVX512_STEP __m512i packShort(__m512i v0, __m512i v1)
{
    return _mm512_permutex2var_epi16(v0, _mm512_slli_epi16(countShort(0), 1), v1);
}

// The low bytes of 64 16-bit elements.
TV_AVX512_STEP __m512i packBytes(__m512i units0, __m512i units1)
{
    return _mm512_inserti64x4(_mm512_castsi256_si512(_mm512_cvtepi16_epi8(units0)),
                              _mm512_cvtepi16_epi8(units1), 1);
}

// As loadBytes, from `offset` on: the bytes behind each byte of a block.
TV_AVX512_STEP __m512i loadBytesAt(const unsigned char* src, std::size_t count, std::size_t offset)
{
    return loadBytes(src + offset, count < offset ? 0 : count - offset);
}

// The low bytes of 64 elements.
TV_AVX512_STEP __m512i packLowBytes(__m512i v0, __m512i v1, __m512i v2, __m512i v3)
{
    const __m512i pick = _mm512_set_epi8(124, 120, 116, 112, 108, 104, 100, 96, 92, 88, 84, 80, 76, 72, 68,
                                         64, 60, 56, 52, 48, 44, 40, 36, 32, 28, 24, 20, 16, 12, 8, 4, 0, 124,
                                         120, 116, 112, 108, 104, 100, 96, 92, 88, 84, 80, 76, 72, 68, 64, 60,
                                         56, 52, 48, 44, 40, 36, 32, 28, 24, 20, 16, 12, 8, 4, 0);
    const __m512i low = _mm512_permutex2var_epi8(v0, pick, v1);
    const __m512i high = _mm512_permutex2var_epi8(v2, pick, v3);
    return _mm512_mask_mov_epi64(low, 0xF0, high);
}

// Four masks of 16 as one of 64.
TV_AVX512_STEP std::uint64_t joinMasks(__mmask16 m0, __mmask16 m1, __mmask16 m2, __mmask16 m3)
{
    return _mm512_kunpackd(_mm512_kunpackw(m3, m2), _mm512_kunpackw(m1, m0));
}

// Two masks of 32 as one of 64.
TV_AVX512_STEP std::uint64_t joinMasks(__mmask32 low, __mmask32 high)
{
    return low | static_cast<std::uint64_t>(high) << 32;
}

} // namespace TvDetail

#endif

// Avx512Codepage.cpp - code page conversions, up to 64 characters a step (AVX-512 with VBMI2).
#include "codepage/Avx512Kernels.h"

#if defined(__x86_64__)

#include "codepage/Avx512Blocks.h"

#include <algorithm>

namespace TvDetail {

namespace {

TV_AVX512_STEP std::uint64_t inRange(__m512i bytes, unsigned char first, unsigned char last)
{
    const __m512i offsets = _mm512_sub_epi8(bytes, _mm512_set1_epi8(static_cast<char>(first)));
    return _mm512_cmple_epu8_mask(offsets, _mm512_set1_epi8(static_cast<char>(last - first)));
}

// The lead bytes of a block whose first byte is not a trail byte. In an unbroken run of bytes
// that may lead, leads and trails alternate, a lead first. So in runs that begin at an even
// place the even places lead, in the others the odd ones. Adding a run's first bit to the
// mask carries through the run and clears it, which tells the two kinds of runs apart.
TV_AVX512_STEP std::uint64_t leadPlaces(std::uint64_t mayLead)
{
    constexpr std::uint64_t kEven = 0x5555555555555555;
    const std::uint64_t runStarts = mayLead & ~(mayLead << 1);
    const std::uint64_t evenRuns = mayLead & ~(mayLead + (runStarts & kEven));
    return (evenRuns & kEven) | ((mayLead ^ evenRuns) & ~kEven);
}

// What a table has for the first four 16-bit lanes. In blocks with few characters to look up
// this, in general registers, costs less than the way through memory.
constexpr int kFew = 4;
TV_AVX512_STEP __m128i lookUpFew(const unsigned short* table, std::uint64_t keys)
{
    return _mm_cvtsi64_si128(static_cast<long long>(
        table[keys & 0xFFFF] | static_cast<std::uint64_t>(table[keys >> 16 & 0xFFFF]) << 16 |
        static_cast<std::uint64_t>(table[keys >> 32 & 0xFFFF]) << 32 |
        static_cast<std::uint64_t>(table[keys >> 48]) << 48));
}

// Puts what the table has for the keys of `places`, at most four, into those places.
TV_AVX512_STEP __m512i encodeFew(__m512i keys, __mmask32 places, const unsigned short* table)
{
    const __m128i few = _mm512_castsi512_si128(_mm512_maskz_compress_epi16(places, keys));
    const __m128i values = lookUpFew(table, static_cast<std::uint64_t>(_mm_cvtsi128_si64(few)));
    return _mm512_mask_expand_epi16(keys, places, _mm512_zextsi128_si512(values));
}

// The place of the `nth` one of `mask`, counted from 0.
TV_AVX512_STEP std::size_t placeOfBit(std::uint64_t mask, std::size_t nth)
{
    return _tzcnt_u64(_pdep_u64(std::uint64_t{1} << nth, mask));
}

// The characters of a block of which at most eight are not ASCII: those are looked up and put
// in their places among the bytes. `low` and `top` are the halves of each code. Returns how
// many characters stand before the first that has none, all of them when each has one.
TV_AVX512_STEP std::size_t decodeFew(wchar_t* dst, __m512i b, __m512i low, __m512i top, std::uint64_t begins,
                                     std::uint64_t foreign, const unsigned short* table)
{
    const __m128i keys = _mm_unpacklo_epi8(_mm512_castsi512_si128(_mm512_maskz_compress_epi8(foreign, low)),
                                           _mm512_castsi512_si128(_mm512_maskz_compress_epi8(foreign, top)));
    const __m128i values0 = lookUpFew(table, static_cast<std::uint64_t>(_mm_cvtsi128_si64(keys)));
    const __m128i values1 = lookUpFew(table, static_cast<std::uint64_t>(_mm_extract_epi64(keys, 1)));
    const __m512i values = _mm512_zextsi128_si512(_mm_unpacklo_epi64(values0, values1));
    const std::uint64_t places = _pext_u64(foreign, begins);
    const auto places0 = static_cast<__mmask32>(places);
    const auto places1 = static_cast<__mmask32>(places >> 32);
    const __m512i valuesLeft = _mm512_permutexvar_epi16(countShort(_mm_popcnt_u32(places0)), values);
    const __m512i bytes = _mm512_maskz_compress_epi8(begins, b);
    const __m512i units0 =
        _mm512_mask_expand_epi16(_mm512_cvtepu8_epi16(_mm512_castsi512_si256(bytes)), places0, values);
    const __m512i units1 = _mm512_mask_expand_epi16(_mm512_cvtepu8_epi16(_mm512_extracti64x4_epi64(bytes, 1)),
                                                    places1, valuesLeft);
    storeShortWide(dst, units0);
    storeShortWide(dst + 32, units1);
    // Behind the last character everything is 0.
    return _tzcnt_u64(
        joinMasks(_mm512_testn_epi16_mask(units0, units0), _mm512_testn_epi16_mask(units1, units1)));
}

// Keeps the compiler from collecting single values in a vector, which costs more than
// storing them.
TV_AVX512_STEP unsigned inRegister(unsigned value)
{
    __asm__("" : "+r"(value));
    return value;
}

// Codes of characters that wait for being looked up. Many are looked up at once, so that the
// loads do not have to wait for the wide stores that put the codes there.
struct PendingCodes {
    static constexpr std::size_t kMany = 512;

    alignas(64) std::uint16_t codes[kMany + 64];
    std::size_t count = 0;
    std::size_t source = 0; // place of the first one's first byte

    // Adds the characters of a block. `low` and `top` are the halves of each code.
    TV_AVX512_MEMBER void add(std::size_t at, __m512i low, __m512i top, std::uint64_t begins)
    {
        if (count == 0)
            source = at + _tzcnt_u64(begins);
        // Blanks behind the last one: they have a character, and nobody looks at it.
        const __m512i lows = _mm512_mask_compress_epi8(_mm512_set1_epi8(' '), begins, low);
        const __m512i tops = _mm512_maskz_compress_epi8(begins, top);
        _mm512_storeu_si512(codes + count, joinShort(lows, tops, 0));
        _mm512_storeu_si512(codes + count + 32, joinShort(lows, tops, 1));
        count += static_cast<std::size_t>(_mm_popcnt_u64(begins));
    }

    // Writes the characters and forgets the codes. Returns how many stand before the first that
    // has none.
    TV_AVX512_MEMBER std::size_t lookUp(wchar_t* dst, const unsigned short* table)
    {
        const std::size_t all = count;
        count = 0;
        unsigned none = 0; // the sign of value - 1 tells a 0
        for (std::size_t i = 0; i < all; i += 8) {
#pragma GCC unroll 8
            for (std::size_t j = i; j < i + 8; ++j) {
                const unsigned value = inRegister(table[codes[j]]);
                none |= value - 1;
                dst[j] = static_cast<wchar_t>(value);
            }
        }
        if (none >> 31 == 0)
            return all;
        return static_cast<std::size_t>(std::find(dst, dst + all, 0) - dst);
    }

    // The place of the first byte of one of the characters last looked up.
    std::size_t place(std::size_t which) const
    {
        std::size_t at = source + which;
        for (std::size_t i = 0; i < which; ++i)
            at += codes[i] > 0xFF;
        return at;
    }
};

// Stores the first `count` codes, at most 32, lead byte first where there is one.
TV_AVX512_STEP char* storeCodes(char* out, __m512i codes, std::size_t count)
{
    const __m512i bytes = _mm512_or_si512(_mm512_slli_epi16(codes, 8), _mm512_srli_epi16(codes, 8));
    const std::uint64_t used =
        (_mm512_test_epi8_mask(bytes, bytes) | 0xAAAAAAAAAAAAAAAA) & lowBits(2 * count);
    _mm512_storeu_si512(out, _mm512_maskz_compress_epi8(used, bytes));
    return out + _mm_popcnt_u64(used);
}

// 64 elements as 16-bit ones; elements above U+FFFF and those behind the end are 0.
struct Units {
    __m512i half[2];
    std::uint64_t foreign; // not ASCII
    std::uint64_t stops;   // 0 or a backslash
};

TV_AVX512_STEP Units loadUnits(const wchar_t* src, std::size_t count)
{
    const __m512i most = _mm512_set1_epi32(0xFFFF);
    __m512i v[4];
#pragma GCC unroll 4
    for (std::size_t i = 0; i < 4; ++i) {
        v[i] = count > 16 * i ? loadWide(src + 16 * i, count - 16 * i) : _mm512_setzero_si512();
        v[i] = _mm512_maskz_mov_epi32(_mm512_cmple_epu32_mask(v[i], most), v[i]);
    }
    const __m512i half0 = packShort(v[0], v[1]);
    const __m512i half1 = packShort(v[2], v[3]);
    const __m512i foreign = _mm512_set1_epi16(0x80);
    const __m512i backslash = _mm512_set1_epi16('\\');
    return {{half0, half1},
            joinMasks(_mm512_cmpge_epu16_mask(half0, foreign), _mm512_cmpge_epu16_mask(half1, foreign)),
            joinMasks(_mm512_testn_epi16_mask(half0, half0) | _mm512_cmpeq_epi16_mask(half0, backslash),
                      _mm512_testn_epi16_mask(half1, half1) | _mm512_cmpeq_epi16_mask(half1, backslash))};
}

// Encodes up to kManyUnits elements, each looked up: first all the codes, by plain loads, which
// beat gathers, then the bytes. Less is read than there is only when something stops it.
constexpr std::size_t kManyUnits = 256;
TV_AVX512 KernelProgress encodeMany(const wchar_t* src, std::size_t count, char* dst,
                                    const unsigned short* table)
{
    alignas(64) std::uint16_t codes[kManyUnits];
    count = std::min(count, kManyUnits);
    std::size_t i = 0;
    for (; i + 8 <= count; i += 8) {
#pragma GCC unroll 8
        for (std::size_t j = i; j < i + 8; ++j)
            codes[j] = static_cast<std::uint16_t>(
                inRegister(table[std::min(static_cast<unsigned>(src[j]), 0x10000u)]));
    }
    for (; i < count; ++i)
        codes[i] = table[std::min(static_cast<unsigned>(src[i]), 0x10000u)];

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

} // namespace

TV_AVX512 KernelProgress avx512DecodeSingle(const unsigned char* src, std::size_t count, wchar_t* dst,
                                            const CodepageTables& tables) noexcept
{
    const __m512i low0 = _mm512_loadu_si512(tables.byteLow);
    const __m512i low1 = _mm512_loadu_si512(tables.byteLow + 64);
    const __m512i high0 = _mm512_loadu_si512(tables.byteHigh);
    const __m512i high1 = _mm512_loadu_si512(tables.byteHigh + 64);
    for (std::size_t at = 0; at < count; at += 64) {
        const __m512i b = loadBytes(src + at, count - at);
        const std::uint64_t high = _mm512_movepi8_mask(b);
        const std::uint64_t stops =
            _mm512_testn_epi8_mask(b, b) | _mm512_cmpeq_epi8_mask(b, _mm512_set1_epi8('\\'));
        if (high) {
            const __m512i low = _mm512_mask_mov_epi8(b, high, _mm512_permutex2var_epi8(low0, b, low1));
            const __m512i top = _mm512_maskz_permutex2var_epi8(high, high0, b, high1);
            storePlanesWide(dst + at, low, top, count - at);
        } else {
            storeBytesWide(dst + at, b);
        }
        if (stops) {
            at += _tzcnt_u64(stops);
            return {at, at};
        }
    }
    return {count, count};
}

// Blocks are cut without regard to pairs: `trailBefore` tells that the first byte belongs to
// the block before, and the byte behind the last one is loaded with the others.
TV_AVX512 KernelProgress avx512DecodeDouble(const unsigned char* src, std::size_t count, wchar_t* dst,
                                            const CodepageTables& tables, const LeadRanges& leads) noexcept
{
    PendingCodes pending;
    std::size_t written = 0;
    std::uint64_t trailBefore = 0;
    std::uint64_t stops = 0;
    std::size_t at = 0;
    for (; at < count && !stops; at += 64) {
        const std::size_t left = count - at;
        const __m512i b = loadBytes(src + at, left);
        const __m512i next = loadBytesAt(src + at, left, 1);
        const std::uint64_t high = _mm512_movepi8_mask(b);
        const std::uint64_t ends =
            _mm512_testn_epi8_mask(b, b) | _mm512_cmpeq_epi8_mask(b, _mm512_set1_epi8('\\'));
        if ((high | trailBefore | pending.count) == 0) { // ASCII alone
            storeBytesWide(dst + written, b);
            const std::size_t good = _tzcnt_u64(ends); // 64 when there is none
            written += good;
            if (ends)
                return {at + good, written};
            continue;
        }
        const std::uint64_t mayLead =
            inRange(b, leads.first[0], leads.last[0]) | inRange(b, leads.first[1], leads.last[1]);
        const std::uint64_t lead = leadPlaces(mayLead & ~trailBefore);
        const std::uint64_t trail = lead << 1 | trailBefore;
        trailBefore = lead >> 63;
        stops = (ends & ~trail) | _mm512_mask_testn_epi8_mask(lead, next, next);
        const std::uint64_t begins = ~trail & bitsBelow(stops);
        const std::uint64_t foreign = begins & high;
        const __m512i low = _mm512_mask_mov_epi8(b, lead, next);
        const __m512i top = _mm512_maskz_mov_epi8(lead, b);
        const bool few = _mm_popcnt_u64(foreign) <= 2LL * kFew;
        if (!few)
            pending.add(at, low, top, begins);
        if (few ? pending.count != 0 : pending.count > PendingCodes::kMany - 64) {
            const std::size_t all = pending.count;
            const std::size_t good = pending.lookUp(dst + written, tables.decode);
            written += good;
            if (good < all)
                return {pending.place(good), written};
        }
        if (few) {
            const auto all = static_cast<std::size_t>(_mm_popcnt_u64(begins));
            const std::size_t good = decodeFew(dst + written, b, low, top, begins, foreign, tables.decode);
            if (good < all)
                return {at + placeOfBit(begins, good), written + good};
            written += all;
        }
    }
    const std::size_t all = pending.count;
    const std::size_t good = pending.lookUp(dst + written, tables.decode);
    written += good;
    if (good < all)
        return {pending.place(good), written};
    return {stops ? at - 64 + _tzcnt_u64(stops) : count, written};
}

TV_AVX512 KernelProgress avx512EncodeSingle(const wchar_t* src, std::size_t count, char* dst,
                                            const CodepageTables& tables) noexcept
{
    const __m512i codes00 = _mm512_loadu_si512(tables.windowCode[0]);
    const __m512i codes01 = _mm512_loadu_si512(tables.windowCode[0] + 64);
    const __m512i codes10 = _mm512_loadu_si512(tables.windowCode[1]);
    const __m512i codes11 = _mm512_loadu_si512(tables.windowCode[1] + 64);
    const __m512i base0 = _mm512_set1_epi32(static_cast<int>(tables.windowBase[0]));
    const __m512i base1 = _mm512_set1_epi32(static_cast<int>(tables.windowBase[1]));
    const __m512i size = _mm512_set1_epi32(128);
    for (std::size_t at = 0; at < count; at += 64) {
        const std::size_t left = count - at;
        const __m512i none = _mm512_setzero_si512();
        const __m512i v0 = loadWide(src + at, left);
        const __m512i v1 = left > 16 ? loadWide(src + at + 16, left - 16) : none;
        const __m512i v2 = left > 32 ? loadWide(src + at + 32, left - 32) : none;
        const __m512i v3 = left > 48 ? loadWide(src + at + 48, left - 48) : none;
        const __m512i bytes = packLowBytes(v0, v1, v2, v3);
        const std::uint64_t ascii =
            joinMasks(_mm512_cmplt_epu32_mask(v0, size), _mm512_cmplt_epu32_mask(v1, size),
                      _mm512_cmplt_epu32_mask(v2, size), _mm512_cmplt_epu32_mask(v3, size));
        std::uint64_t stops =
            (_mm512_testn_epi8_mask(bytes, bytes) | _mm512_cmpeq_epi8_mask(bytes, _mm512_set1_epi8('\\'))) &
            ascii;
        if (ascii == ~std::uint64_t{0}) {
            _mm512_storeu_si512(dst + at, bytes);
        } else {
            const std::uint64_t in0 = joinMasks(_mm512_cmplt_epu32_mask(_mm512_sub_epi32(v0, base0), size),
                                                _mm512_cmplt_epu32_mask(_mm512_sub_epi32(v1, base0), size),
                                                _mm512_cmplt_epu32_mask(_mm512_sub_epi32(v2, base0), size),
                                                _mm512_cmplt_epu32_mask(_mm512_sub_epi32(v3, base0), size));
            const std::uint64_t in1 = joinMasks(_mm512_cmplt_epu32_mask(_mm512_sub_epi32(v0, base1), size),
                                                _mm512_cmplt_epu32_mask(_mm512_sub_epi32(v1, base1), size),
                                                _mm512_cmplt_epu32_mask(_mm512_sub_epi32(v2, base1), size),
                                                _mm512_cmplt_epu32_mask(_mm512_sub_epi32(v3, base1), size));
            // Windows begin at multiples of 128: the low 7 bits are the place inside.
            __m512i codes =
                _mm512_mask_mov_epi8(bytes, in0, _mm512_permutex2var_epi8(codes00, bytes, codes01));
            codes = _mm512_mask_mov_epi8(codes, in1, _mm512_permutex2var_epi8(codes10, bytes, codes11));
            _mm512_storeu_si512(dst + at, codes);
            stops |= _mm512_testn_epi8_mask(codes, codes) & (in0 | in1);
            for (std::uint64_t others = ~(ascii | in0 | in1) & bitsBelow(stops); others;
                 others &= others - 1) {
                const std::size_t place = _tzcnt_u64(others);
                const auto wc = static_cast<unsigned>(src[at + place]);
                const unsigned char code = wc > 0xFFFF ? 0 : tables.encodeByte[wc];
                dst[at + place] = static_cast<char>(code);
                if (code == 0) {
                    stops |= std::uint64_t{1} << place;
                    break;
                }
            }
        }
        if (stops) {
            at += _tzcnt_u64(stops);
            return {at, at};
        }
    }
    return {count, count};
}

TV_AVX512 KernelProgress avx512EncodeDouble(const wchar_t* src, std::size_t count, char* dst,
                                            const CodepageTables& tables) noexcept
{
    char* out = dst;
    std::size_t at = 0;
    while (at < count) {
        const std::size_t left = count - at;
        const Units units = loadUnits(src + at, left);
        if (units.foreign == 0) {
            _mm512_storeu_si512(out, packBytes(units.half[0], units.half[1]));
            if (units.stops) {
                const std::size_t good = _tzcnt_u64(units.stops);
                return {at + good, static_cast<std::size_t>(out - dst) + good};
            }
            at += 64;
            out += 64;
            continue;
        }
        const auto foreign0 = static_cast<__mmask32>(units.foreign);
        const auto foreign1 = static_cast<__mmask32>(units.foreign >> 32);
        if (_mm_popcnt_u32(foreign0) > kFew || _mm_popcnt_u32(foreign1) > kFew) {
            const KernelProgress done = encodeMany(src + at, left, out, tables.encodePair);
            at += done.read;
            out += done.written;
            if (done.read < std::min(left, kManyUnits))
                break;
            continue;
        }
        const __m512i codes0 = encodeFew(units.half[0], foreign0, tables.encodePair);
        const __m512i codes1 = encodeFew(units.half[1], foreign1, tables.encodePair);
        const std::uint64_t stops = units.stops | joinMasks(_mm512_testn_epi16_mask(codes0, codes0),
                                                            _mm512_testn_epi16_mask(codes1, codes1));
        if (stops) {
            const std::size_t good = _tzcnt_u64(stops);
            out = storeCodes(out, codes0, good);
            out = storeCodes(out, codes1, good < 32 ? 0 : good - 32);
            at += good;
            break;
        }
        // Whole blocks by constants: the next block does not wait for this one's look-ups.
        out = storeCodes(out, codes0, 32);
        out = storeCodes(out, codes1, 32);
        at += 64;
    }
    return {at, static_cast<std::size_t>(out - dst)};
}

const TextKernels g_avx512Kernels = {"avx512",           avx512Utf8Decode,   avx512Utf8Encode,
                                     avx512DecodeSingle, avx512DecodeDouble, avx512EncodeSingle,
                                     avx512EncodeDouble};

} // namespace TvDetail

#endif

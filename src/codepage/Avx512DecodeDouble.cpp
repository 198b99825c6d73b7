// Avx512DecodeDouble.cpp - double-byte text to wide text, 64 bytes a step (AVX-512 with VBMI2).
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

TV_AVX512_STEP __mmask64 inRange(__m512i bytes, unsigned char first, unsigned char last)
{
    const __mmask64 above = _mm512_cmpge_epu8_mask(bytes, _mm512_set1_epi8(static_cast<char>(first)));
    return _mm512_mask_cmple_epu8_mask(above, bytes, _mm512_set1_epi8(static_cast<char>(last)));
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

TV_AVX512_STEP std::uint64_t mayLead(__m512i bytes, const LeadRanges& leads)
{
    return _kor_mask64(inRange(bytes, leads.first[0], leads.last[0]),
                       inRange(bytes, leads.first[1], leads.last[1]));
}

// A 0 or a backslash.
TV_AVX512_STEP std::uint64_t endPlaces(__m512i bytes)
{
    return _mm512_testn_epi8_mask(bytes, bytes) | _mm512_cmpeq_epi8_mask(bytes, _mm512_set1_epi8('\\'));
}

// Up to this many characters of a block are looked up one by one, straight from the text: few of
// them are done sooner than the many around them. In a text of one block that many are fewer.
constexpr int kFew = 8;
constexpr int kFewOfOne = 3;

// A block taken apart, up to what stops it.
struct Characters {
    __m512i bytes;
    std::uint64_t begins;
    std::uint64_t lead;
    std::uint64_t foreign; // of those that begin, not ASCII
};

// Writes the characters of a block; false when one has none.
TV_AVX512_STEP bool decodeFew(wchar_t* dst, const unsigned char* src, const Characters& c,
                              const unsigned short* table)
{
    storeBytesWide(dst, _mm512_maskz_compress_epi8(c.begins, c.bytes));
    unsigned none = 0; // the sign of value - 1 tells a 0
    for (std::uint64_t left = c.foreign; left; left &= left - 1) {
        const std::size_t at = _tzcnt_u64(left);
        const bool isPair = (c.lead >> at & 1) != 0;
        const unsigned first = src[at];
        const unsigned value = table[isPair ? first << 8 | src[at + 1] : first];
        none |= value - 1;
        dst[_mm_popcnt_u64(_bzhi_u64(c.begins, static_cast<unsigned>(at)))] = static_cast<wchar_t>(value);
    }
    return none >> 31 == 0;
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

    alignas(64) std::uint16_t codes[kMany + kBlock];
    std::size_t count = 0;

    // Adds the characters of a block, of which `next` is one byte behind.
    TV_AVX512_MEMBER void add(const Characters& c, __m512i next)
    {
        const __m512i low = _mm512_mask_mov_epi8(c.bytes, c.lead, next);
        const __m512i top = _mm512_maskz_mov_epi8(c.lead, c.bytes);
        // Blanks behind the last one of a block that has fewer than 64.
        const __m512i lows = _mm512_mask_compress_epi8(_mm512_set1_epi8(' '), c.begins, low);
        const __m512i tops = _mm512_maskz_compress_epi8(c.begins, top);
        _mm512_storeu_si512(codes + count, joinShort(lows, tops, 0));
        _mm512_storeu_si512(codes + count + 32, joinShort(lows, tops, 1));
        count += static_cast<std::size_t>(_mm_popcnt_u64(c.begins));
    }

    // Writes the characters and forgets the codes; false when one has none.
    TV_AVX512_MEMBER bool lookUp(wchar_t* dst, const unsigned short* table)
    {
        const std::size_t all = count;
        count = 0;
        // In eights: behind the last one stand blanks or what an earlier text left. The table has an
        // entry for every number, and nobody looks at what those give.
        for (std::size_t i = 0; i < all; i += 8) {
#pragma GCC unroll 8
            for (std::size_t j = i; j < i + 8; ++j)
                dst[j] = static_cast<wchar_t>(inRegister(table[codes[j]]));
        }
        __m512i least = _mm512_set1_epi32(-1);
        for (std::size_t i = 0; i < all; i += 16) {
            const auto here = static_cast<__mmask16>(lowBits(all - i));
            least = _mm512_mask_min_epu32(least, here, least, _mm512_loadu_si512(dst + i));
        }
        return _mm512_testn_epi32_mask(least, least) == 0;
    }
};

// Goes on, one character at a time, behind what is `done`.
KernelProgress decodeSlowly(const unsigned char* src, std::size_t count, wchar_t* dst,
                            const CodepageTables& tables, const LeadRanges& leads, KernelProgress done)
{
    decodeDoubleUntil(count, src, count, done.read, dst, done.written, tables, leads);
    return done;
}

// Blocks are cut without regard to pairs: `trailBefore` tells that the first byte belongs to
// the block before, and the byte behind the last one is loaded with the others. When a
// character turns out to have none, all since what is settled is done again slowly.
[[gnu::noinline]] TV_AVX512 KernelProgress decodeBlocks(const unsigned char* src, std::size_t count,
                                                        wchar_t* dst, const CodepageTables& tables,
                                                        const LeadRanges& leads)
{
    PendingCodes pending;
    std::size_t most = kBlock; // to wait; little at first, for texts that stop often
    KernelProgress settled = {0, 0};
    std::size_t written = 0;
    std::uint64_t trailBefore = 0;
    std::uint64_t stops = 0;
    std::size_t at = 0;
    for (; at < count && !stops; at += kBlock) {
        const std::size_t left = loadable(src + at, count - at, kBlock + 1);
        Characters c;
        c.bytes = loadBytes(src + at, left);
        const std::uint64_t high = _mm512_movepi8_mask(c.bytes);
        const std::uint64_t ends = endPlaces(c.bytes);
        if ((high | trailBefore | pending.count) == 0) { // ASCII alone
            storeBytesWide(dst + written, c.bytes);
            written += _tzcnt_u64(ends); // 64 when there is none
            stops = ends;
            settled = {at + kBlock, written};
            continue;
        }
        const __m512i next = loadBytesAt(src + at, left, 1);
        c.lead = leadPlaces(mayLead(c.bytes, leads) & ~trailBefore);
        const std::uint64_t trail = c.lead << 1 | trailBefore;
        stops = (ends & ~trail) | _mm512_mask_testn_epi8_mask(c.lead, next, next);
        c.begins = ~trail & bitsBelow(stops);
        c.foreign = c.begins & high;
        trailBefore = c.lead >> 63;
        const auto characters = static_cast<std::size_t>(_mm_popcnt_u64(c.begins));
        const KernelProgress end = {at + kBlock + trailBefore, written + characters};
        if (pending.count == 0 && _mm_popcnt_u64(c.foreign) <= kFew) {
            if (!decodeFew(dst + written, src + at, c, tables.decode))
                return decodeSlowly(src, count, dst, tables, leads, settled);
            settled = end;
        } else {
            pending.add(c, next);
            if (pending.count > most - kBlock) {
                if (!pending.lookUp(dst + settled.written, tables.decode))
                    return decodeSlowly(src, count, dst, tables, leads, settled);
                settled = end;
                most = std::min(2 * most, PendingCodes::kMany);
            }
        }
        written = end.written;
    }
    if (!pending.lookUp(dst + settled.written, tables.decode))
        return decodeSlowly(src, count, dst, tables, leads, settled);
    return {stops ? at - kBlock + _tzcnt_u64(stops) : count, written};
}

// What a table has for the eight pairs of bytes that begin at `src` and at the seven places behind
// it, one a 16-bit lane. Which of them are pairs of the text is not asked.
TV_AVX512_STEP __m128i lookUpEight(const unsigned char* src, const unsigned short* table)
{
    std::uint64_t even;
    std::uint64_t odd;
    std::memcpy(&even, src, sizeof even);
    std::memcpy(&odd, src + 1, sizeof odd);
    even = __builtin_bswap64(even);
    odd = __builtin_bswap64(odd);
    __m128i units = _mm_cvtsi32_si128(table[even >> 48]);
    units = _mm_insert_epi16(units, table[odd >> 48], 1);
    units = _mm_insert_epi16(units, table[_bextr_u64(even, 32, 16)], 2);
    units = _mm_insert_epi16(units, table[_bextr_u64(odd, 32, 16)], 3);
    units = _mm_insert_epi16(units, table[_bextr_u64(even, 16, 16)], 4);
    units = _mm_insert_epi16(units, table[_bextr_u64(odd, 16, 16)], 5);
    units = _mm_insert_epi16(units, table[even & 0xFFFF], 6);
    return _mm_insert_epi16(units, table[odd & 0xFFFF], 7);
}

// The same of sixteen places, of which the last eight count only where `count` reaches them.
TV_AVX512_STEP __m256i lookUpSixteen(const unsigned char* src, std::size_t count, const unsigned short* table)
{
    const __m256i first = _mm256_castsi128_si256(lookUpEight(src, table));
    return count <= 8 ? first : _mm256_inserti128_si256(first, lookUpEight(src + 8, table), 1);
}

// As decodeFew, for a block of which `count` bytes are there. Nothing that is looked up waits for
// where the pairs begin, one is looked up at every byte: that goes on beside the search for them,
// and is sooner done than half as many look-ups behind it. The loop depends on `count` alone.
TV_AVX512_STEP bool decodeMany(wchar_t* dst, const unsigned char* src, std::size_t count, const Characters& c,
                               const unsigned short* table)
{
    wchar_t* out = dst;
    std::uint64_t begins = c.begins;
    std::uint64_t lead = c.lead;
    unsigned none = 0;
    for (std::size_t at = 0; at < count; at += 16) {
        const auto leadHere = static_cast<__mmask16>(lead);
        const auto beginsHere = static_cast<__mmask16>(begins);
        const __m256i bytes =
            _mm256_cvtepu8_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(src + at)));
        const __m256i units =
            _mm256_mask_mov_epi16(bytes, leadHere, lookUpSixteen(src + at, count - at, table));
        none |= _mm256_mask_testn_epi16_mask(leadHere, units, units);
        _mm512_storeu_si512(out, _mm512_cvtepu16_epi32(_mm256_maskz_compress_epi16(beginsHere, units)));
        out += _mm_popcnt_u32(beginsHere);
        begins >>= 16;
        lead >>= 16;
    }
    // Single bytes that are not ASCII: each has a character.
    for (std::uint64_t left = c.foreign & ~c.lead; left; left &= left - 1) {
        const std::size_t at = _tzcnt_u64(left);
        dst[_mm_popcnt_u64(_bzhi_u64(c.begins, static_cast<unsigned>(at)))] =
            static_cast<wchar_t>(table[src[at]]);
    }
    return none == 0;
}

// decodeMany() loads up to this many bytes behind the last one of a text.
constexpr std::size_t kReadOn = 16;

// Takes a block of `count` bytes apart as if nothing stopped it, and tells what does: a 0, or a
// backslash that is no trail byte.
TV_AVX512_STEP std::uint64_t takeApart(__m512i bytes, std::size_t count, std::uint64_t trailBefore,
                                       const LeadRanges& leads, Characters& c)
{
    const std::uint64_t all = fewBits(count);
    c.bytes = bytes;
    c.lead = leadPlaces(mayLead(bytes, leads) & ~trailBefore);
    c.begins = all & ~(c.lead << 1 | trailBefore);
    c.foreign = c.begins & _mm512_movepi8_mask(bytes);
    return (_mm512_testn_epi8_mask(bytes, bytes) & all) |
           (_mm512_cmpeq_epi8_mask(bytes, _mm512_set1_epi8('\\')) & c.begins);
}

// A text of up to 64 bytes that is not ASCII alone. It is taken for well formed; one that is not is
// done again. A function of its own, so that ASCII alone has no registers to save.
[[gnu::noinline]] TV_AVX512 KernelProgress decodeOneBlock(const unsigned char* src, std::size_t count,
                                                          __m512i bytes, wchar_t* dst,
                                                          const CodepageTables& tables,
                                                          const LeadRanges& leads)
{
    Characters c;
    const std::uint64_t stops = takeApart(bytes, count, 0, leads, c);
    const bool found = _mm_popcnt_u64(c.foreign) <= kFewOfOne ? decodeFew(dst, src, c, tables.decode)
                                                              : decodeMany(dst, src, count, c, tables.decode);
    if ((stops | c.lead >> (count - 1)) != 0)
        return decodeBlocks(src, count, dst, tables, leads);
    if (!found)
        return decodeSlowly(src, count, dst, tables, leads, {0, 0});
    return {count, static_cast<std::size_t>(_mm_popcnt_u64(c.begins))};
}

// The same of 65 to 128 bytes.
[[gnu::noinline]] TV_AVX512 KernelProgress decodeTwoBlocks(const unsigned char* src, std::size_t count,
                                                           wchar_t* dst, const CodepageTables& tables,
                                                           const LeadRanges& leads)
{
    Characters first;
    Characters second;
    const std::size_t behind = count - kBlock;
    const std::uint64_t stops =
        takeApart(_mm512_loadu_si512(src), kBlock, 0, leads, first) |
        takeApart(loadFewBytes(src + kBlock, behind), behind, first.lead >> 63, leads, second);
    const auto half = static_cast<std::size_t>(_mm_popcnt_u64(first.begins));
    bool found = decodeMany(dst, src, kBlock, first, tables.decode);
    found = decodeMany(dst + half, src + kBlock, behind, second, tables.decode) && found;
    if ((stops | second.lead >> (behind - 1)) != 0)
        return decodeBlocks(src, count, dst, tables, leads);
    if (!found)
        return decodeSlowly(src, count, dst, tables, leads, {0, 0});
    return {count, half + static_cast<std::size_t>(_mm_popcnt_u64(second.begins))};
}

} // namespace

TV_AVX512 KernelProgress avx512DecodeDouble(const unsigned char* src, std::size_t count, wchar_t* dst,
                                            const CodepageTables& tables, const LeadRanges& leads) noexcept
{
    if (count > 2 * kBlock || !lieInOnePage(src, count + kReadOn))
        return decodeBlocks(src, count, dst, tables, leads);
    if (count > kBlock)
        return decodeTwoBlocks(src, count, dst, tables, leads);
    const __m512i bytes = loadFewBytes(src, count);
    if (_mm512_movepi8_mask(bytes) != 0)
        return decodeOneBlock(src, count, bytes, dst, tables, leads);
    storeBytesWide(dst, bytes);
    const std::size_t at = _tzcnt_u64(endPlaces(bytes));
    return {at, at};
}

} // namespace TvDetail

#endif

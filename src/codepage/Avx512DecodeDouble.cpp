// Avx512DecodeDouble.cpp - double-byte text to wide text, 64 bytes a step (AVX-512 with VBMI2).
#include "codepage/Avx512Kernels.h"

#if defined(__x86_64__)

#include "codepage/Avx512Blocks.h"
#include "codepage/TextEnd.h"
#include "codepage/TextSteps.h"

#include <algorithm>
#include <cstdint>

namespace TvDetail {

namespace {

constexpr std::size_t kBlock = 64;

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

TV_AVX512_STEP std::uint64_t mayLead(__m512i bytes, const LeadRanges& leads)
{
    return inRange(bytes, leads.first[0], leads.last[0]) | inRange(bytes, leads.first[1], leads.last[1]);
}

// A 0 or a backslash.
TV_AVX512_STEP std::uint64_t endPlaces(__m512i bytes)
{
    return _mm512_testn_epi8_mask(bytes, bytes) | _mm512_cmpeq_epi8_mask(bytes, _mm512_set1_epi8('\\'));
}

// Up to this many characters of a block are looked up one by one, straight from the text: few of
// them are done sooner than the many around them.
constexpr int kFew = 8;

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

// What a table has for eight 16-bit numbers.
TV_AVX512_STEP __m128i lookUpEight(__m128i codes, const unsigned short* table)
{
    const auto low = static_cast<std::uint64_t>(_mm_cvtsi128_si64(codes));
    const auto high = static_cast<std::uint64_t>(_mm_extract_epi64(codes, 1));
    __m128i first = _mm_cvtsi32_si128(table[low & 0xFFFF]);
    __m128i second = _mm_cvtsi32_si128(table[high & 0xFFFF]);
    first = _mm_insert_epi16(first, table[low >> 16 & 0xFFFF], 1);
    second = _mm_insert_epi16(second, table[high >> 16 & 0xFFFF], 1);
    first = _mm_insert_epi16(first, table[low >> 32 & 0xFFFF], 2);
    second = _mm_insert_epi16(second, table[high >> 32 & 0xFFFF], 2);
    first = _mm_insert_epi16(first, table[low >> 48], 3);
    second = _mm_insert_epi16(second, table[high >> 48], 3);
    return _mm_unpacklo_epi64(first, second);
}

// Writes the characters of sixteen codes; false when one has none.
TV_AVX512_STEP bool decodeSixteen(wchar_t* dst, __m256i codes, const unsigned short* table)
{
    const __m128i units0 = lookUpEight(_mm256_castsi256_si128(codes), table);
    const __m128i units1 = lookUpEight(_mm256_extracti128_si256(codes, 1), table);
    const __m256i units = _mm256_inserti128_si256(_mm256_castsi128_si256(units0), units1, 1);
    _mm512_storeu_si512(dst, _mm512_cvtepu16_epi32(units));
    return _mm256_testn_epi16_mask(units, units) == 0;
}

// Writes up to 32 characters, of which those of `pairs` have two bytes; `b` begins with them.
// False when one has none.
TV_AVX512_STEP bool decodeMany(wchar_t* dst, __m512i b, std::uint64_t pairs, std::size_t count,
                               const unsigned short* table)
{
    // The bytes of each character in two places, a 0 before those that stand alone, and blanks
    // behind the last one: they have a character, and nobody looks at it.
    constexpr std::uint64_t kEven = 0x5555555555555555;
    const std::uint64_t mine = fewBits(2 * count);
    const std::uint64_t used = _pdep_u64(pairs, kEven) | (~kEven & mine);
    const __m512i blanks = _mm512_maskz_mov_epi8(~(mine | kEven), _mm512_set1_epi8(' '));
    const __m512i swap = _mm512_set4_epi32(0x0E0F0C0D, 0x0A0B0809, 0x06070405, 0x02030001);
    const __m512i codes = _mm512_shuffle_epi8(_mm512_mask_expand_epi8(blanks, used, b), swap);
    bool found = decodeSixteen(dst, _mm512_castsi512_si256(codes), table);
    if (count > 16)
        found = found & decodeSixteen(dst + 16, _mm512_extracti64x4_epi64(codes, 1), table);
    return found;
}

// One block that is not ASCII alone. It is taken for well formed; one that is not is done again.
TV_AVX512 KernelProgress decodeBlock(const unsigned char* src, std::size_t count, wchar_t* dst,
                                     const CodepageTables& tables, const LeadRanges& leads)
{
    const std::uint64_t all = fewBits(count);
    Characters c;
    c.bytes = _mm512_maskz_loadu_epi8(all, src);
    c.lead = leadPlaces(mayLead(c.bytes, leads));
    c.begins = all & ~(c.lead << 1);
    c.foreign = c.begins & _mm512_movepi8_mask(c.bytes);
    const auto written = static_cast<std::size_t>(_mm_popcnt_u64(c.begins));
    // A 0, a backslash, or an end behind a lead byte.
    if (((endPlaces(c.bytes) & all) | (c.lead & ~(all >> 1))) != 0)
        return decodeBlocks(src, count, dst, tables, leads);
    bool found;
    if (_mm_popcnt_u64(c.foreign) <= kFew) {
        found = decodeFew(dst, src, c, tables.decode);
    } else {
        const std::uint64_t pairs = _pext_u64(c.lead, c.begins);
        found = decodeMany(dst, c.bytes, pairs, std::min<std::size_t>(written, 32), tables.decode);
        if (written > 32) {
            // NOLINTNEXTLINE(bugprone-misplaced-widening-cast): at most 64
            const auto at = static_cast<std::size_t>(32 + _mm_popcnt_u32(static_cast<unsigned>(pairs)));
            found = found & decodeMany(dst + 32, loadFewBytes(src + at, count - at), pairs >> 32,
                                       written - 32, tables.decode);
        }
    }
    if (!found)
        return decodeSlowly(src, count, dst, tables, leads, {0, 0});
    return {count, written};
}

} // namespace

TV_AVX512 KernelProgress avx512DecodeDouble(const unsigned char* src, std::size_t count, wchar_t* dst,
                                            const CodepageTables& tables, const LeadRanges& leads) noexcept
{
    if (count > kBlock || !lieInOnePage(src, count))
        return decodeBlocks(src, count, dst, tables, leads);
    const __m512i b = loadFewBytes(src, count);
    if (_mm512_movepi8_mask(b) != 0)
        return decodeBlock(src, count, dst, tables, leads);
    storeBytesWide(dst, b);
    const std::size_t at = _tzcnt_u64(endPlaces(b));
    return {at, at};
}

} // namespace TvDetail

#endif

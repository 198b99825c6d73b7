// Sse2Kernels.cpp - ASCII in blocks of 16, everything else one character at a time: for every
// 64-bit x86.
#include "codepage/Sse2Kernels.h"

#if defined(__x86_64__)

#include "codepage/TextEnd.h"
#include "codepage/TextSteps.h"

#include <emmintrin.h>

#include <algorithm>
#include <bit>

namespace TvDetail {

namespace {

constexpr std::size_t kBlock = 16;

// TextBlocks of a text that lies in one page, where all blocks may be loaded.
struct OnePage {
    std::size_t all;

    std::size_t count() const { return all; }
    bool has(std::size_t at, std::size_t size) const { return at + size <= all; }
    std::size_t known() const { return all; }
};

// Runs `convert` with the blocks of a text.
template<class T, class Convert>
KernelProgress withBlocks(const T* src, std::size_t count, Convert convert)
{
    return lieInOnePage(src, count) ? convert(OnePage{count}) : convert(TextBlocks(src, count));
}

// Blocks of bytes that become elements.
struct Widening {
    using From = unsigned char;
    using To = wchar_t;

    static __m128i load(const From* src) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(src)); }

    static void store(To* dst, __m128i bytes)
    {
        const __m128i zero = _mm_setzero_si128();
        const __m128i low = _mm_unpacklo_epi8(bytes, zero);
        const __m128i high = _mm_unpackhi_epi8(bytes, zero);
        auto* const to = reinterpret_cast<__m128i*>(dst);
        _mm_storeu_si128(to, _mm_unpacklo_epi16(low, zero));
        _mm_storeu_si128(to + 1, _mm_unpackhi_epi16(low, zero));
        _mm_storeu_si128(to + 2, _mm_unpacklo_epi16(high, zero));
        _mm_storeu_si128(to + 3, _mm_unpackhi_epi16(high, zero));
    }
};

// Blocks of elements that become bytes.
struct Narrowing {
    using From = wchar_t;
    using To = char;

    // Both packs keep 1..127 and nothing else in that range: larger values saturate at 255,
    // negative ones at 0, and the signed reading of 255 is below 1 as well.
    static __m128i load(const From* src)
    {
        const auto* const from = reinterpret_cast<const __m128i*>(src);
        const __m128i v0 = _mm_loadu_si128(from);
        const __m128i v1 = _mm_loadu_si128(from + 1);
        const __m128i v2 = _mm_loadu_si128(from + 2);
        const __m128i v3 = _mm_loadu_si128(from + 3);
        return _mm_packus_epi16(_mm_packs_epi32(v0, v1), _mm_packs_epi32(v2, v3));
    }

    static void store(To* dst, __m128i bytes) { _mm_storeu_si128(reinterpret_cast<__m128i*>(dst), bytes); }
};

// What ends a run of ASCII: a 0, what is not ASCII and, with kStop, a backslash.
template<bool kStop>
unsigned stopsIn(__m128i bytes)
{
    __m128i stops = _mm_cmpgt_epi8(_mm_set1_epi8(1), bytes);
    if (kStop)
        stops = _mm_or_si128(stops, _mm_cmpeq_epi8(bytes, _mm_set1_epi8('\\')));
    return static_cast<unsigned>(_mm_movemask_epi8(stops));
}

// How many elements of ASCII were moved, and how many behind them to take one at a time before
// blocks are worth another try.
struct AsciiRun {
    std::size_t moved;
    std::size_t others;
};

// Whether no more than four bits are set.
bool areFew(unsigned stops)
{
    for (int i = 0; i < 4; ++i)
        stops &= stops - 1; // without the lowest bit
    return stops == 0;
}

// The end of a run in a block with `stops`, not 0; `moved` elements stand before the block. Where
// the stops are few, the whole block is stored for the ASCII before the first, the rest to be
// overwritten; where they are many, blocks are of no use for a while.
template<class Blocks>
AsciiRun endInBlock(typename Blocks::To* dst, std::size_t moved, __m128i bytes, unsigned stops)
{
    if (!areFew(stops))
        return {moved, 4 * kBlock};
    Blocks::store(dst + moved, bytes);
    const int before = std::countr_zero(stops);
    return {moved + static_cast<std::size_t>(before),
            static_cast<std::size_t>(std::countr_one(stops >> before))};
}

// Moves ASCII from `first` on. A last block that is not full is loaded with what lies behind the
// text in its page.
template<class Move, bool kStop, class Blocks>
AsciiRun moveAscii(Blocks& blocks, const typename Move::From* src, std::size_t first, typename Move::To* dst)
{
    std::size_t at = first;
    while (blocks.has(at, kBlock)) {
        for (; at + kBlock <= blocks.known(); at += kBlock) {
            const __m128i bytes = Move::load(src + at);
            const unsigned stops = stopsIn<kStop>(bytes);
            if (stops != 0)
                return endInBlock<Move>(dst, at - first, bytes, stops);
            Move::store(dst + at - first, bytes);
        }
    }
    if (at == blocks.count() || !lieInOnePage(src + at, kBlock))
        return {at - first, kBlock};
    const __m128i bytes = Move::load(src + at);
    const unsigned behind = 1u << std::min(blocks.count() - at, kBlock);
    return endInBlock<Move>(dst, at - first, bytes, (stopsIn<kStop>(bytes) & (behind - 1)) | behind);
}

// Runs of ASCII in blocks, and between them `others`, which takes the elements up to a place one
// at a time and returns whether the text goes on there.
template<class Move, bool kStop, class Others>
KernelProgress convert(const typename Move::From* src, std::size_t count, typename Move::To* dst,
                       Others others)
{
    return withBlocks(src, count, [&](auto blocks) {
        KernelProgress done{};
        AsciiRun run{};
        do {
            run = moveAscii<Move, kStop>(blocks, src, done.read, dst + done.written);
            done.read += run.moved;
            done.written += run.moved;
        } while (others(std::min(done.read + run.others, count), done) && done.read < count);
        return done;
    });
}

KernelProgress utf8Decode(const unsigned char* src, std::size_t count, wchar_t* dst) noexcept
{
    return convert<Widening, false>(src, count, dst, [&](std::size_t end, KernelProgress& done) {
        return utf8DecodeUntil(end, src, count, done.read, dst, done.written);
    });
}

KernelProgress utf8Encode(const wchar_t* src, std::size_t count, char* dst) noexcept
{
    return convert<Narrowing, false>(src, count, dst, [&](std::size_t end, KernelProgress& done) {
        return utf8EncodeUntil(end, src, done.read, dst, done.written);
    });
}

KernelProgress decodeSingle(const unsigned char* src, std::size_t count, wchar_t* dst,
                            const CodepageTables& tables) noexcept
{
    return convert<Widening, true>(src, count, dst, [&](std::size_t end, KernelProgress& done) {
        const bool goesOn = decodeSingleUntil(end, src, done.read, dst, tables);
        done.written = done.read;
        return goesOn;
    });
}

KernelProgress encodeSingle(const wchar_t* src, std::size_t count, char* dst,
                            const CodepageTables& tables) noexcept
{
    return convert<Narrowing, true>(src, count, dst, [&](std::size_t end, KernelProgress& done) {
        const bool goesOn = encodeSingleUntil(end, src, done.read, dst, tables);
        done.written = done.read;
        return goesOn;
    });
}

} // namespace

KernelProgress sse2DecodeDouble(const unsigned char* src, std::size_t count, wchar_t* dst,
                                const CodepageTables& tables, const LeadRanges& leads) noexcept
{
    return convert<Widening, true>(src, count, dst, [&](std::size_t end, KernelProgress& done) {
        return decodeDoubleUntil(end, src, count, done.read, dst, done.written, tables, leads);
    });
}

KernelProgress sse2EncodeDouble(const wchar_t* src, std::size_t count, char* dst,
                                const CodepageTables& tables) noexcept
{
    return convert<Narrowing, true>(src, count, dst, [&](std::size_t end, KernelProgress& done) {
        return encodeDoubleUntil(end, src, done.read, dst, done.written, tables);
    });
}

const TextKernels g_sse2Kernels = {"sse2",           utf8Decode,   utf8Encode,      decodeSingle,
                                   sse2DecodeDouble, encodeSingle, sse2EncodeDouble};

} // namespace TvDetail

#endif

// RunKernels.h - kernels that move unbroken ASCII in blocks and take everything else one
// character at a time.
//
// `Runs` supplies the blocks:
//   kBlock                                  elements of a block
//   widen<kStop>(blocks, src, at, dst)      ASCII from `at` on as elements
//   narrow<kStop>(blocks, src, at, dst)     ASCII elements from `at` on as bytes
// Both return an AsciiRun. They end in the first block that holds a 0, something else than ASCII
// or, with kStop, a backslash. `blocks` are those of the whole text, TextBlocks or OnePage.
#ifndef TV_RUN_KERNELS_H
#define TV_RUN_KERNELS_H

#include "codepage/TextEnd.h"
#include "codepage/TextSteps.h"

#include <algorithm>
#include <bit>

namespace TvDetail {

// What a run of blocks moved, and how many elements behind it to take one at a time before blocks
// are worth another try.
struct AsciiRun {
    std::size_t moved;
    std::size_t others;
};

// The end of a run in a block where `stops`, not 0, has a bit for each element that is no plain
// ASCII; `moved` elements stand before the block. Where they are few the ASCII before the first of
// them belongs to the run, and who asks writes the whole block, what is behind it to be
// overwritten. Where they are many, blocks are of no use for a while.
template<std::size_t kBlock>
bool areFew(unsigned stops)
{
    for (std::size_t i = 0; i < kBlock / 4; ++i)
        stops &= stops - 1; // without the lowest bit
    return stops == 0;
}

inline AsciiRun endBeforeFew(std::size_t moved, unsigned stops)
{
    const int before = std::countr_zero(stops);
    return {moved + static_cast<std::size_t>(before),
            static_cast<std::size_t>(std::countr_one(stops >> before))};
}

template<std::size_t kBlock>
AsciiRun endBeforeMany(std::size_t moved)
{
    return {moved, 4 * kBlock};
}

// TextBlocks of a text that lies in one page, where all blocks may be loaded.
struct OnePage {
    std::size_t count;

    bool has(std::size_t at, std::size_t size) const { return at + size <= count; }
    std::size_t known() const { return count; }
};

template<class Runs>
struct RunKernels {
    static KernelProgress utf8Decode(const unsigned char* src, std::size_t count, wchar_t* dst) noexcept
    {
        return lieInOnePage(src, count) ? utf8DecodeOf(OnePage{count}, src, count, dst)
                                        : utf8DecodeOf(TextBlocks(src, count), src, count, dst);
    }

    static KernelProgress utf8Encode(const wchar_t* src, std::size_t count, char* dst) noexcept
    {
        return lieInOnePage(src, count) ? utf8EncodeOf(OnePage{count}, src, count, dst)
                                        : utf8EncodeOf(TextBlocks(src, count), src, count, dst);
    }

    static KernelProgress decodeSingle(const unsigned char* src, std::size_t count, wchar_t* dst,
                                       const CodepageTables& tables) noexcept
    {
        return lieInOnePage(src, count) ? decodeSingleOf(OnePage{count}, src, count, dst, tables)
                                        : decodeSingleOf(TextBlocks(src, count), src, count, dst, tables);
    }

    static KernelProgress decodeDouble(const unsigned char* src, std::size_t count, wchar_t* dst,
                                       const CodepageTables& tables, const LeadRanges& leads) noexcept
    {
        return lieInOnePage(src, count)
                   ? decodeDoubleOf(OnePage{count}, src, count, dst, tables, leads)
                   : decodeDoubleOf(TextBlocks(src, count), src, count, dst, tables, leads);
    }

    static KernelProgress encodeSingle(const wchar_t* src, std::size_t count, char* dst,
                                       const CodepageTables& tables) noexcept
    {
        return lieInOnePage(src, count) ? encodeSingleOf(OnePage{count}, src, count, dst, tables)
                                        : encodeSingleOf(TextBlocks(src, count), src, count, dst, tables);
    }

    static KernelProgress encodeDouble(const wchar_t* src, std::size_t count, char* dst,
                                       const CodepageTables& tables) noexcept
    {
        return lieInOnePage(src, count) ? encodeDoubleOf(OnePage{count}, src, count, dst, tables)
                                        : encodeDoubleOf(TextBlocks(src, count), src, count, dst, tables);
    }

    static constexpr TextKernels named(const char* name)
    {
        return {name, utf8Decode, utf8Encode, decodeSingle, decodeDouble, encodeSingle, encodeDouble};
    }

private:
    template<class Blocks>
    static KernelProgress utf8DecodeOf(Blocks blocks, const unsigned char* src, std::size_t count,
                                       wchar_t* dst)
    {
        std::size_t at = 0;
        std::size_t written = 0;
        AsciiRun run{};
        do {
            run = Runs::template widen<false>(blocks, src, at, dst + written);
            at += run.moved;
            written += run.moved;
        } while (utf8DecodeUntil(endOf(run, at, count), src, count, at, dst, written) && at < count);
        return {at, written};
    }

    template<class Blocks>
    static KernelProgress utf8EncodeOf(Blocks blocks, const wchar_t* src, std::size_t count, char* dst)
    {
        std::size_t at = 0;
        std::size_t written = 0;
        AsciiRun run{};
        do {
            run = Runs::template narrow<false>(blocks, src, at, dst + written);
            at += run.moved;
            written += run.moved;
        } while (utf8EncodeUntil(endOf(run, at, count), src, at, dst, written) && at < count);
        return {at, written};
    }

    template<class Blocks>
    static KernelProgress decodeSingleOf(Blocks blocks, const unsigned char* src, std::size_t count,
                                         wchar_t* dst, const CodepageTables& tables)
    {
        std::size_t at = 0;
        AsciiRun run{};
        do {
            run = Runs::template widen<true>(blocks, src, at, dst + at);
            at += run.moved;
        } while (decodeSingleUntil(endOf(run, at, count), src, at, dst, tables) && at < count);
        return {at, at};
    }

    template<class Blocks>
    static KernelProgress decodeDoubleOf(Blocks blocks, const unsigned char* src, std::size_t count,
                                         wchar_t* dst, const CodepageTables& tables, const LeadRanges& leads)
    {
        std::size_t at = 0;
        std::size_t written = 0;
        AsciiRun run{};
        do {
            run = Runs::template widen<true>(blocks, src, at, dst + written);
            at += run.moved;
            written += run.moved;
        } while (decodeDoubleUntil(endOf(run, at, count), src, count, at, dst, written, tables, leads) &&
                 at < count);
        return {at, written};
    }

    template<class Blocks>
    static KernelProgress encodeSingleOf(Blocks blocks, const wchar_t* src, std::size_t count, char* dst,
                                         const CodepageTables& tables)
    {
        std::size_t at = 0;
        AsciiRun run{};
        do {
            run = Runs::template narrow<true>(blocks, src, at, dst + at);
            at += run.moved;
        } while (encodeSingleUntil(endOf(run, at, count), src, at, dst, tables) && at < count);
        return {at, at};
    }

    template<class Blocks>
    static KernelProgress encodeDoubleOf(Blocks blocks, const wchar_t* src, std::size_t count, char* dst,
                                         const CodepageTables& tables)
    {
        std::size_t at = 0;
        std::size_t written = 0;
        AsciiRun run{};
        do {
            run = Runs::template narrow<true>(blocks, src, at, dst + written);
            at += run.moved;
            written += run.moved;
        } while (encodeDoubleUntil(endOf(run, at, count), src, at, dst, written, tables) && at < count);
        return {at, written};
    }

    static std::size_t endOf(const AsciiRun& run, std::size_t at, std::size_t count)
    {
        return std::min(at + run.others, count);
    }
};

} // namespace TvDetail

#endif

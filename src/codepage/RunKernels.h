// RunKernels.h - kernels that move unbroken ASCII in blocks and take everything else one
// character at a time.
//
// `Runs` supplies the blocks:
//   kBlock                                  elements of a block
//   widen<kStop>(blocks, src, at, dst)      blocks of ASCII from `at` on as elements
//   narrow<kStop>(blocks, src, at, dst)     blocks of ASCII elements from `at` on as bytes
// Both return how many elements they moved, a multiple of kBlock, and leave a block alone
// that holds a 0, something else than ASCII or, with kStop, a backslash. `blocks` are those of
// the whole text, TextBlocks or OnePage.
#ifndef TV_RUN_KERNELS_H
#define TV_RUN_KERNELS_H

#include "codepage/TextEnd.h"
#include "codepage/TextSteps.h"

#include <algorithm>

namespace TvDetail {

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
        do {
            const std::size_t run = Runs::template widen<false>(blocks, src, at, dst + written);
            at += run;
            written += run;
        } while (utf8DecodeUntil(blockEnd(at, count), src, count, at, dst, written) && at < count);
        return {at, written};
    }

    template<class Blocks>
    static KernelProgress utf8EncodeOf(Blocks blocks, const wchar_t* src, std::size_t count, char* dst)
    {
        std::size_t at = 0;
        std::size_t written = 0;
        do {
            const std::size_t run = Runs::template narrow<false>(blocks, src, at, dst + written);
            at += run;
            written += run;
        } while (utf8EncodeUntil(blockEnd(at, count), src, at, dst, written) && at < count);
        return {at, written};
    }

    template<class Blocks>
    static KernelProgress decodeSingleOf(Blocks blocks, const unsigned char* src, std::size_t count,
                                         wchar_t* dst, const CodepageTables& tables)
    {
        std::size_t at = 0;
        do {
            at += Runs::template widen<true>(blocks, src, at, dst + at);
        } while (decodeSingleUntil(blockEnd(at, count), src, at, dst, tables) && at < count);
        return {at, at};
    }

    template<class Blocks>
    static KernelProgress decodeDoubleOf(Blocks blocks, const unsigned char* src, std::size_t count,
                                         wchar_t* dst, const CodepageTables& tables, const LeadRanges& leads)
    {
        std::size_t at = 0;
        std::size_t written = 0;
        do {
            const std::size_t run = Runs::template widen<true>(blocks, src, at, dst + written);
            at += run;
            written += run;
        } while (decodeDoubleUntil(blockEnd(at, count), src, count, at, dst, written, tables, leads) &&
                 at < count);
        return {at, written};
    }

    template<class Blocks>
    static KernelProgress encodeSingleOf(Blocks blocks, const wchar_t* src, std::size_t count, char* dst,
                                         const CodepageTables& tables)
    {
        std::size_t at = 0;
        do {
            at += Runs::template narrow<true>(blocks, src, at, dst + at);
        } while (encodeSingleUntil(blockEnd(at, count), src, at, dst, tables) && at < count);
        return {at, at};
    }

    template<class Blocks>
    static KernelProgress encodeDoubleOf(Blocks blocks, const wchar_t* src, std::size_t count, char* dst,
                                         const CodepageTables& tables)
    {
        std::size_t at = 0;
        std::size_t written = 0;
        do {
            const std::size_t run = Runs::template narrow<true>(blocks, src, at, dst + written);
            at += run;
            written += run;
        } while (encodeDoubleUntil(blockEnd(at, count), src, at, dst, written, tables) && at < count);
        return {at, written};
    }

    static std::size_t blockEnd(std::size_t at, std::size_t count)
    {
        return std::min(at + Runs::kBlock, count);
    }
};

} // namespace TvDetail

#endif

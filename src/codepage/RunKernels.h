// RunKernels.h - kernels that move unbroken ASCII in blocks and take everything else one
// character at a time.
//
// `Runs` supplies the blocks:
//   kBlock                                  elements of a block
//   widen<kStop>(src, count, dst)           leading blocks of ASCII as elements
//   narrow<kStop>(src, count, dst)          leading blocks of ASCII elements as bytes
// Both return how many elements they moved, a multiple of kBlock, and leave a block alone
// that holds a 0, something else than ASCII or, with kStop, a backslash.
#ifndef TV_RUN_KERNELS_H
#define TV_RUN_KERNELS_H

#include "codepage/TextSteps.h"

#include <algorithm>

namespace TvDetail {

template<class Runs>
struct RunKernels {
    static KernelProgress utf8Decode(const unsigned char* src, std::size_t count, wchar_t* dst) noexcept
    {
        std::size_t at = 0;
        std::size_t written = 0;
        do {
            const std::size_t run = Runs::template widen<false>(src + at, count - at, dst + written);
            at += run;
            written += run;
        } while (utf8DecodeUntil(blockEnd(at, count), src, count, at, dst, written) && at < count);
        return {at, written};
    }

    static KernelProgress utf8Encode(const wchar_t* src, std::size_t count, char* dst) noexcept
    {
        std::size_t at = 0;
        std::size_t written = 0;
        do {
            const std::size_t run = Runs::template narrow<false>(src + at, count - at, dst + written);
            at += run;
            written += run;
        } while (utf8EncodeUntil(blockEnd(at, count), src, at, dst, written) && at < count);
        return {at, written};
    }

    static KernelProgress decodeSingle(const unsigned char* src, std::size_t count, wchar_t* dst,
                                       const CodepageTables& tables) noexcept
    {
        std::size_t at = 0;
        do {
            at += Runs::template widen<true>(src + at, count - at, dst + at);
        } while (decodeSingleUntil(blockEnd(at, count), src, at, dst, tables) && at < count);
        return {at, at};
    }

    static KernelProgress decodeDouble(const unsigned char* src, std::size_t count, wchar_t* dst,
                                       const CodepageTables& tables, const LeadRanges& leads) noexcept
    {
        std::size_t at = 0;
        std::size_t written = 0;
        do {
            const std::size_t run = Runs::template widen<true>(src + at, count - at, dst + written);
            at += run;
            written += run;
        } while (decodeDoubleUntil(blockEnd(at, count), src, count, at, dst, written, tables, leads) &&
                 at < count);
        return {at, written};
    }

    static KernelProgress encodeSingle(const wchar_t* src, std::size_t count, char* dst,
                                       const CodepageTables& tables) noexcept
    {
        std::size_t at = 0;
        do {
            at += Runs::template narrow<true>(src + at, count - at, dst + at);
        } while (encodeSingleUntil(blockEnd(at, count), src, at, dst, tables) && at < count);
        return {at, at};
    }

    static KernelProgress encodeDouble(const wchar_t* src, std::size_t count, char* dst,
                                       const CodepageTables& tables) noexcept
    {
        std::size_t at = 0;
        std::size_t written = 0;
        do {
            const std::size_t run = Runs::template narrow<true>(src + at, count - at, dst + written);
            at += run;
            written += run;
        } while (encodeDoubleUntil(blockEnd(at, count), src, at, dst, written, tables) && at < count);
        return {at, written};
    }

    static constexpr TextKernels named(const char* name)
    {
        return {name, utf8Decode, utf8Encode, decodeSingle, decodeDouble, encodeSingle, encodeDouble};
    }

private:
    static std::size_t blockEnd(std::size_t at, std::size_t count)
    {
        return std::min(at + Runs::kBlock, count);
    }
};

} // namespace TvDetail

#endif

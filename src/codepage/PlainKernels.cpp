// PlainKernels.cpp - every kernel one character at a time: the reference for the others.
#include "codepage/TextSteps.h"
#include "codepage/Utf8.h"

namespace TvDetail {

namespace {

KernelProgress utf8Decode(const unsigned char* src, std::size_t count, wchar_t* dst) noexcept
{
    std::size_t at = 0;
    std::size_t written = 0;
    utf8DecodeUntil(count, src, count, at, dst, written);
    return {at, written};
}

KernelProgress utf8Encode(const wchar_t* src, std::size_t count, char* dst) noexcept
{
    std::size_t at = 0;
    std::size_t written = 0;
    utf8EncodeUntil(count, src, at, dst, written);
    return {at, written};
}

KernelProgress decodeSingle(const unsigned char* src, std::size_t count, wchar_t* dst,
                            const CodepageTables& tables) noexcept
{
    std::size_t at = 0;
    decodeSingleUntil(count, src, at, dst, tables);
    return {at, at};
}

KernelProgress decodeDouble(const unsigned char* src, std::size_t count, wchar_t* dst,
                            const CodepageTables& tables, const LeadRanges& leads) noexcept
{
    std::size_t at = 0;
    std::size_t written = 0;
    decodeDoubleUntil(count, src, count, at, dst, written, tables, leads);
    return {at, written};
}

KernelProgress encodeSingle(const wchar_t* src, std::size_t count, char* dst,
                            const CodepageTables& tables) noexcept
{
    std::size_t at = 0;
    encodeSingleUntil(count, src, at, dst, tables);
    return {at, at};
}

KernelProgress encodeDouble(const wchar_t* src, std::size_t count, char* dst,
                            const CodepageTables& tables) noexcept
{
    std::size_t at = 0;
    std::size_t written = 0;
    encodeDoubleUntil(count, src, at, dst, written, tables);
    return {at, written};
}

} // namespace

std::size_t utf8DecodePlain(const unsigned char* src, std::size_t count, wchar_t* dst) noexcept
{
    return utf8Decode(src, count, dst).written;
}

std::size_t utf8EncodePlain(const wchar_t* src, std::size_t count, char* dst) noexcept
{
    return utf8Encode(src, count, dst).written;
}

std::size_t utf8EncodedSize(const wchar_t* src, std::size_t count) noexcept
{
    std::size_t size = 0;
    for (std::size_t at = 0; at < count && src[at] != 0; ++at) {
        const auto value = static_cast<unsigned>(src[at]);
        size += value < 0x80 ? 1 : value < 0x800 ? 2 : value < 0x10000 ? 3 : 0;
    }
    return size;
}

const TextKernels g_plainKernels = {"plain",      utf8Decode,   utf8Encode,  decodeSingle,
                                    decodeDouble, encodeSingle, encodeDouble};

} // namespace TvDetail

// TextSteps.h - the conversions one character at a time, from `at` until a place `until` is
// reached or passed. The plain kernels are nothing else; the block kernels use these between
// their blocks.
//
// `at` and `written` move on. All return false when they stopped in front of something that
// ends the text or that they do not convert; see TextKernels.h and Utf8.h for what that is.
#ifndef TV_TEXT_STEPS_H
#define TV_TEXT_STEPS_H

#include "codepage/TextEnd.h"
#include "codepage/TextKernels.h"

namespace TvDetail {

// How many elements stand before the first that is not ASCII, where a 0 may or may not count; it
// looks at no more than 256, because who asks may stop at each backslash and ask again.
template<class T>
std::size_t asciiLength(const T* src, std::size_t count)
{
    constexpr std::size_t kStep = 8; // judged together, without a branch for each
    count = std::min<std::size_t>(loadable(src, count, 256), 256);
    std::size_t at = 0;
    for (; at + kStep <= count; at += kStep) {
        unsigned all = 0;
        for (std::size_t i = 0; i < kStep; ++i)
            all |= static_cast<unsigned>(src[at + i]);
        if (all > 0x7F)
            break;
    }
    while (at < count && static_cast<unsigned>(src[at]) < 0x80)
        ++at;
    return at;
}

inline bool isUtf8Continuation(unsigned char b) { return (b & 0xC0) == 0x80; }

inline bool utf8DecodeUntil(std::size_t until, const unsigned char* src, std::size_t count, std::size_t& at,
                            wchar_t* dst, std::size_t& written)
{
    while (at < until) {
        const unsigned lead = src[at];
        if (lead == 0)
            return false;
        const bool second = at + 1 < count && isUtf8Continuation(src[at + 1]);
        const bool third = second && at + 2 < count && isUtf8Continuation(src[at + 2]);
        if (lead >= 0xE0 && third) {
            const unsigned top = (lead << 12) & 0xFFFF;
            dst[written++] = static_cast<wchar_t>(top | (src[at + 1] & 0x3Fu) << 6 | (src[at + 2] & 0x3Fu));
            at += 3;
        } else if (lead >= 0xC0 && second) {
            dst[written++] = static_cast<wchar_t>((lead & 0x1F) << 6 | (src[at + 1] & 0x3Fu));
            at += 2;
        } else {
            dst[written++] = static_cast<wchar_t>(lead);
            at += 1;
        }
    }
    return true;
}

inline bool utf8EncodeUntil(std::size_t until, const wchar_t* src, std::size_t& at, char* dst,
                            std::size_t& written)
{
    for (; at < until; ++at) {
        const auto value = static_cast<unsigned>(src[at]);
        if (value == 0)
            return false;
        if (value < 0x80) {
            dst[written++] = static_cast<char>(value);
        } else if (value < 0x800) {
            dst[written++] = static_cast<char>(0xC0 | value >> 6);
            dst[written++] = static_cast<char>(0x80 | (value & 0x3F));
        } else if (value < 0x10000) {
            dst[written++] = static_cast<char>(0xE0 | value >> 12);
            dst[written++] = static_cast<char>(0x80 | (value >> 6 & 0x3F));
            dst[written++] = static_cast<char>(0x80 | (value & 0x3F));
        }
    }
    return true;
}

inline bool decodeSingleUntil(std::size_t until, const unsigned char* src, std::size_t& at, wchar_t* dst,
                              const CodepageTables& tables)
{
    for (; at < until; ++at) {
        const unsigned b = src[at];
        if (b == 0 || b == '\\')
            return false;
        dst[at] =
            static_cast<wchar_t>(b < 0x80 ? b : tables.byteLow[b - 0x80] | tables.byteHigh[b - 0x80] << 8);
    }
    return true;
}

inline bool decodeDoubleUntil(std::size_t until, const unsigned char* src, std::size_t count, std::size_t& at,
                              wchar_t* dst, std::size_t& written, const CodepageTables& tables,
                              const LeadRanges& leads)
{
    while (at < until) {
        unsigned code = src[at];
        std::size_t size = 1;
        if (code == '\\')
            return false;
        if (leads.holds(code)) {
            if (at + 1 == count || src[at + 1] == 0)
                return false;
            code = code << 8 | src[at + 1];
            size = 2;
        }
        const unsigned wc = tables.decode[code];
        if (wc == 0)
            return false;
        dst[written++] = static_cast<wchar_t>(wc);
        at += size;
    }
    return true;
}

inline bool encodeSingleUntil(std::size_t until, const wchar_t* src, std::size_t& at, char* dst,
                              const CodepageTables& tables)
{
    const unsigned char* const codes = tables.encodeByte; // the stores could change it otherwise
    for (; at < until; ++at) {
        const auto wc = static_cast<unsigned>(src[at]);
        if (wc > 0xFFFF || wc == '\\' || codes[wc] == 0)
            return false;
        dst[at] = static_cast<char>(codes[wc]);
    }
    return true;
}

// Writes two bytes for a code of one, too, the second to be overwritten: see kKernelSlack.
inline bool encodeDoubleUntil(std::size_t until, const wchar_t* src, std::size_t& at, char* dst,
                              std::size_t& written, const CodepageTables& tables)
{
    const unsigned short* const codes = tables.encodePair;
    std::size_t from = at;
    char* to = dst + written;
    for (; from < until; ++from) {
        const auto wc = static_cast<unsigned>(src[from]);
        if (wc > 0xFFFF || wc == '\\' || codes[wc] == 0)
            break;
        const unsigned code = codes[wc];
        const unsigned isPair = code > 0xFF;
        to[0] = static_cast<char>(code >> 8 * isPair);
        to[1] = static_cast<char>(code);
        to += 1 + isPair;
    }
    at = from;
    written = static_cast<std::size_t>(to - dst);
    return from >= until;
}

} // namespace TvDetail

#endif

// CodepageSearch.cpp - look-ups by searching.
#include "codepage/CodepageSearch.h"

#include <algorithm>

namespace TvDetail {

namespace {

constexpr int kByteCount = 128;

struct Identity {
    unsigned short bytes[kByteCount];
    constexpr Identity() : bytes{}
    {
        for (int i = 0; i < kByteCount; ++i)
            bytes[i] = static_cast<unsigned short>(0x80 + i);
    }
};
constexpr Identity kIdentity;

bool mycomp(const EkCpUnicodePair& a, const EkCpUnicodePair& b) { return a.code < b.code; }

} // namespace

CodepageView CodepageView::ofNone() noexcept { return {kIdentity.bytes, nullptr, 0}; }

int CodepageView::decode(unsigned code) const noexcept
{
    if (code < 0x80)
        return static_cast<int>(code);
    if (code <= 0xFF)
        return bytes[code - 0x80];
    if (code > 0xFFFF || pairCount == 0)
        return -1;
    const EkCpUnicodePair* end = pairs + pairCount;
    const EkCpUnicodePair wanted = {0, static_cast<unsigned short>(code)};
    const EkCpUnicodePair* found = std::lower_bound(pairs, end, wanted, mycomp);
    return found != end && found->code == code ? found->unicode : -1;
}

int CodepageView::encode(unsigned wc) const noexcept
{
    for (int i = 0; i < kByteCount; ++i) {
        if (bytes[i] == wc)
            return 0x80 + i;
    }
    for (int i = 0; i < pairCount; ++i) {
        if (pairs[i].unicode == wc)
            return pairs[i].code;
    }
    return -1;
}

} // namespace TvDetail

// CodepageSearch.h - look-ups by searching a mapper's tables: the reference for its index.
#ifndef TV_CODEPAGE_SEARCH_H
#define TV_CODEPAGE_SEARCH_H

#include "TvCodePages.h"

namespace TvDetail {

/// The tables of a code page as a search sees them; they live in a mapper.
struct CodepageView {
    const unsigned short* bytes; ///< of 0x80..0xFF
    const EkCpUnicodePair* pairs;
    int pairCount; ///< 0 also when the pairs are not loaded

    /// Of a mapper; of none, what holds before the registry is filled: each byte is the
    /// character of the same number.
    static CodepageView of(const EkCodepageMapper* mapper) noexcept
    {
        if (!mapper)
            return ofNone();
        const bool loaded = mapper->m_bLoaded == 1;
        return {mapper->m_pSingleByteTable, loaded ? mapper->m_pairs.asArrayPtr() : nullptr,
                loaded ? mapper->m_pairs.length() : 0};
    }
    static CodepageView ofNone() noexcept;

    /// The character of a code above 0xFF by binary search, or of a byte; -1 for none.
    int decode(unsigned code) const noexcept;

    /// The first code of a character from 0x80 on: bytes in order, then pairs in order; -1
    /// for none.
    int encode(unsigned wc) const noexcept;
};

} // namespace TvDetail

#endif

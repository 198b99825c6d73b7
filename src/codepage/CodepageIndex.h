// CodepageIndex.h - a mapper's tables turned over, so that every look-up is one step.
#ifndef TV_CODEPAGE_INDEX_H
#define TV_CODEPAGE_INDEX_H

#include "TvCodePages.h"
#include "codepage/CodepageSearch.h"
#include "codepage/TextKernels.h"

#include <atomic>

namespace TvDetail {

/// What the kernels need of one mapper, and what it was made from.
///
/// Its answers are those of the tables: for a character the lowest byte that has it, else the
/// first pair; for a double-byte code what a binary search over the pairs finds. Where a
/// conversion would not emit a double-byte code's character, 0 or "?", the entry is 0.
struct CodepageIndex {
    CodepageTables tables;
    bool searchWhenNone; ///< a character's first code is 0, which the tables cannot tell from none

    /// As those of the view that the index was made from, in one step for every character and
    /// for every code that has one. `code` is not below 0x80 and `wc` neither.
    int decode(unsigned code, const CodepageView& view) const noexcept;
    int encode(unsigned wc, const CodepageView& view) const noexcept;

    const unsigned short* madeFromBytes;
    const EkCpUnicodePair* madeFromPairs;
    int madeFromPairCount;
    bool madeForLeadBytes;

    /// Whether it was made from these tables.
    bool isOf(const CodepageView& view, bool leadBytes) const noexcept
    {
        return madeFromBytes == view.bytes && madeFromPairs == view.pairs &&
               madeFromPairCount == view.pairCount && madeForLeadBytes == leadBytes;
    }
};

/// Makes the index of a mapper that has none or one of other tables.
const CodepageIndex* makeCodepageIndex(const EkCodepageMapper& mapper, const CodepageView& view) noexcept;

/// The index of a mapper, whose view is `view`, made or made again where the mapper's tables
/// are others than before. Null when no memory could be had; the tables must then be searched.
inline const CodepageIndex* codepageIndex(const EkCodepageMapper& mapper, const CodepageView& view) noexcept
{
    const std::atomic_ref<CodepageIndex*> published(mapper.m_index);
    const CodepageIndex* const index = published.load(std::memory_order_acquire);
    return index && index->isOf(view, mapper.m_leadBytes.length() > 0) ? index
                                                                       : makeCodepageIndex(mapper, view);
}
inline const CodepageIndex* codepageIndex(const EkCodepageMapper& mapper) noexcept
{
    return codepageIndex(mapper, CodepageView::of(&mapper));
}

/// Tables of ASCII alone, for the single-byte kernels and text that holds nothing else.
extern const CodepageTables g_asciiTables;

/// Frees an index; null does nothing.
void deleteCodepageIndex(CodepageIndex* index) noexcept;

} // namespace TvDetail

#endif

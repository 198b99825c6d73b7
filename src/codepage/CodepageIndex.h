// CodepageIndex.h - a mapper's tables turned over, so that every look-up is one step.
#ifndef TV_CODEPAGE_INDEX_H
#define TV_CODEPAGE_INDEX_H

#include "TvCodePages.h"
#include "codepage/CodepageSearch.h"
#include "codepage/TextKernels.h"

#include <atomic>
#include <cstdint>
#include <cstring>

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
    int madeForLeadCount;

    /// The lead bytes as the kernels take them. They take no more than two ranges, and no bytes
    /// below 0x80: for others no kernel decodes.
    LeadRanges leads;
    bool kernelsDecode;

    bool hasLeads() const noexcept { return madeForLeadCount > 0; }

    /// leadBytes() of the mapper, 0 without lead bytes.
    std::uint32_t madeForLeads;

    /// Whether it was made from this mapper as it stands. It asks the mapper itself: a view of
    /// it would have to be put together first.
    bool isOf(const EkCodepageMapper& mapper) const noexcept
    {
        if (madeFromBytes != mapper.m_pSingleByteTable || madeForLeadCount != mapper.m_leadBytes.length())
            return false;
        if (madeForLeadCount != 0 && madeForLeads != leadBytes(mapper.m_leadBytes))
            return false;
        if (mapper.m_bLoaded != 1) [[unlikely]]
            return madeFromPairs == nullptr && madeFromPairCount == 0;
        return madeFromPairs == mapper.m_pairs.asArrayPtr() && madeFromPairCount == mapper.m_pairs.length();
    }

    /// The bytes of the first two ranges, or of the one there is; not of none.
    static std::uint32_t leadBytes(const TvVector<EkLeaderBytes>& ranges) noexcept
    {
        static_assert(sizeof(EkLeaderBytes) * 2 == sizeof(std::uint32_t));
        std::uint32_t bytes = 0;
        if (ranges.length() == 1)
            std::memcpy(&bytes, ranges.asArrayPtr(), sizeof(EkLeaderBytes));
        else
            std::memcpy(&bytes, ranges.asArrayPtr(), sizeof bytes);
        return bytes;
    }
};

/// Makes the index of a mapper that has none or one of other tables.
const CodepageIndex* makeCodepageIndex(const EkCodepageMapper& mapper) noexcept;

/// The index of a mapper, made or made again where the mapper's tables are others than before.
/// Null when no memory could be had; the tables must then be searched.
inline const CodepageIndex* codepageIndex(const EkCodepageMapper& mapper) noexcept
{
    const std::atomic_ref<CodepageIndex*> published(mapper.m_index);
    const CodepageIndex* const index = published.load(std::memory_order_acquire);
    if (!index || !index->isOf(mapper)) [[unlikely]]
        return makeCodepageIndex(mapper);
    return index;
}

/// Tables of ASCII alone, for the single-byte kernels and text that holds nothing else.
extern const CodepageTables g_asciiTables;

/// Frees an index; null does nothing.
void deleteCodepageIndex(CodepageIndex* index) noexcept;

} // namespace TvDetail

#endif

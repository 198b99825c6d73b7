// CodepageIndex.h - what speeds up look-ups in a mapper's tables.
#ifndef TV_CODEPAGE_INDEX_H
#define TV_CODEPAGE_INDEX_H

namespace TvDetail {

struct CodepageIndex {};

/// Frees an index; null does nothing.
void deleteCodepageIndex(CodepageIndex* index) noexcept;

} // namespace TvDetail

#endif

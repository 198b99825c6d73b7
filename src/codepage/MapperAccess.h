// MapperAccess.h - from a code page id to the mapper whose tables a conversion uses.
#ifndef TV_MAPPER_ACCESS_H
#define TV_MAPPER_ACCESS_H

#include "TvCodePages.h"
#include "codepage/CodepageIndex.h"
#include "codepage/MapperSlots.h"

namespace TvDetail {

/// The id of the system code page.
code_page_id systemCodePage();

/// Ids 0 and CP_CNT replaced by the system code page; others as they are.
inline code_page_id withSystemCodePage(code_page_id cp)
{
    if (cp == CP_UNDEFINED || cp == CP_CNT) [[unlikely]]
        return systemCodePage();
    return cp;
}

/// Whether an id stands for itself or for another code page with tables: not for the system code
/// page, not for UTF-8.
inline bool hasTables(code_page_id cp)
{
    return static_cast<unsigned int>(cp) - 1 < static_cast<unsigned int>(CP_UTF8) - 1;
}

/// The stream over the code page map file; null when there is no name or no such file. The
/// caller deletes it.
TvStreamBuf* openMapFile();

/// Reads the mapper's double-byte table if that has not happened yet, from the map file, which
/// is opened for this alone. Leaves the mapper as it is when the file does not have it.
void loadMapper(EkCodepageMapper& mapper);

/// The index of a mapper, which may be null; null also while the mapper's double-byte table is
/// not read, because the mapper is then about to change, and without memory.
inline const CodepageIndex* indexOf(const EkCodepageMapper* mapper)
{
    if (!mapper || mapper->m_bLoaded != 1) [[unlikely]]
        return nullptr;
    return codepageIndex(*mapper);
}

/// A mapper, which may be null, with what looks its characters up.
struct MapperAccess {
    EkCodepageMapper* mapper;
    CodepageView view;
    const CodepageIndex* index; ///< null: search

    /// The mapper of an id that is neither 0, CP_CNT nor CP_UTF8, as it stands.
    static MapperAccess of(code_page_id cp);

    /// The same after an attempt to load it.
    static MapperAccess loaded(code_page_id cp);

    /// Whether the tables are complete: nothing is left to be read from the map file.
    bool isLoaded() const { return !mapper || mapper->m_bLoaded == 1; }

    /// Whether no byte from 0x80 on has a character.
    bool hasNoBytes() const;

    /// The character of a code or the code of a character from 0x80 on, -1 for none.
    int decode(unsigned code) const { return index ? index->decode(code, view) : view.decode(code); }
    int encode(unsigned wc) const { return index ? index->encode(wc, view) : view.encode(wc); }
};

} // namespace TvDetail

#endif

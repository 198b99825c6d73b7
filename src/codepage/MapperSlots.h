// MapperSlots.h - from a code page id to its mapper without a call.
#ifndef TV_MAPPER_SLOTS_H
#define TV_MAPPER_SLOTS_H

#include "TvCodePages.h"

namespace TvDetail {

/// What theTvCodePages() answers.
extern EkCodepages g_codepages;

/// TvCharConverter::checkTheSameCP of each id. A table and no switch: what is asked for changes
/// little, but every jump costs.
struct SameCodePages {
    unsigned char ids[CP_CNT];

    constexpr SameCodePages() : ids{}
    {
        for (int i = 0; i < CP_CNT; ++i)
            ids[i] = static_cast<unsigned char>(i);
        ids[CP_DOS932] = CP_ANSI_932;
        ids[CP_BIG5] = CP_ANSI_950;
        ids[CP_KSC5601] = CP_ANSI_949;
        ids[CP_JOHAB] = CP_ANSI_1361;
        ids[CP_GB2312] = CP_ANSI_936;
    }
};
inline constexpr SameCodePages kSameCodePages;

/// TvCharConverter::checkTheSameCP.
inline code_page_id sameCodePage(code_page_id id)
{
    const auto number = static_cast<unsigned int>(id);
    return number < CP_CNT ? static_cast<code_page_id>(kSameCodePages.ids[number]) : id;
}

struct MapperSlots {
    /// EkCodepages::findMapperByAcadCp of the registry.
    static EkCodepageMapper* find(code_page_id id)
    {
        const auto slot = static_cast<unsigned int>(id);
        return g_codepages.m_mappers[slot < CP_CNT ? slot : 0];
    }

    /// The same of sameCodePage(), in one step.
    static EkCodepageMapper* findSame(code_page_id id)
    {
        const auto number = static_cast<unsigned int>(id);
        return g_codepages.m_mappers[number < CP_CNT ? kSameCodePages.ids[number] : 0];
    }
};

} // namespace TvDetail

#endif

// MapperAccess.cpp - finding and loading the mapper of an id.
#include "codepage/MapperAccess.h"

#include "TvCharMapper.h"
#include "TvFileStreamBuf.h"
#include "codepage/tables/SingleByteTables.h"

#include <memory>

namespace TvDetail {

namespace {

MapperAccess accessOf(EkCodepageMapper* mapper)
{
    return {mapper, CodepageView::of(mapper), indexOf(mapper)};
}

} // namespace

code_page_id systemCodePage()
{
    return TvCodePageMapper::ansiCpToOrnaCp(static_cast<int>(TvCodePageMapper::currentSystemAnsiCp()));
}

TvStreamBuf* openMapFile()
{
    const wchar_t* path = TvCharMapper::m_MapFile;
    if (!path || *path == 0)
        return nullptr;
    // Not as a mapping, which another process could cut short under the reader.
    Orna::ErrorStatus status = Orna::eOk;
    std::unique_ptr<TvStreamBuf> stream(
        createFileStreamBuf(path, &status, TvIO::kAccessRead, TvIO::kShareDenyNone, TvIO::kOpenExisting));
    return status == Orna::eOk ? stream.release() : nullptr;
}

void loadMapper(EkCodepageMapper& mapper)
{
    if (mapper.m_bLoaded == 1)
        return;
    const std::unique_ptr<TvStreamBuf> stream(openMapFile());
    mapper.verifyLoaded(stream.get());
}

MapperAccess MapperAccess::of(code_page_id cp) { return accessOf(MapperSlots::find(cp)); }

MapperAccess MapperAccess::loaded(code_page_id cp)
{
    EkCodepageMapper* mapper = MapperSlots::find(cp);
    if (mapper)
        loadMapper(*mapper);
    return accessOf(mapper);
}

bool MapperAccess::hasNoBytes() const { return view.bytes == g_emptyCodeTable; }

} // namespace TvDetail

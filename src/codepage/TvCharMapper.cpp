// TvCharMapper.cpp - start, end and lead bytes of the character mapper.
#include "TvCharMapper.h"

#include "TvStreamBuf.h"
#include "codepage/MapFile.h"
#include "codepage/MapperAccess.h"
#include "runtime/TvStartup.h"

#include <cstdint>
#include <memory>
#include <new>

namespace {

// Makes the name anew after its destructor, empty: static objects of other modules that live
// longer may still convert. Built before the name, so destroyed after it.
struct MapFileEnd {
    ~MapFileEnd() { new (&TvCharMapper::m_MapFile) CStdStr<wchar_t>(); }
};
MapFileEnd g_mapFileEnd __attribute__((init_priority(TvStartup::kMapFileName)));

} // namespace

// A constant: what was named before any code of this file runs is kept. clang 14, of which the
// fuzz targets are built, cannot evaluate the standard library's empty string; there the name is
// built at its step.
#ifndef __clang__
constinit
#endif
    CStdStr<wchar_t>
        TvCharMapper::m_MapFile __attribute__((init_priority(TvStartup::kMapFileName)));

namespace {

// Reads the header text up to its 0 byte; whether an "H" stands before that.
bool readMapHeader(TvStreamBuf& stream)
{
    unsigned char last = 0;
    for (std::uint64_t left = stream.length(); left > 0; --left) {
        const unsigned char b = stream.readByte();
        if (b == 0)
            return last == 'H';
        last = b;
    }
    return false;
}

bool readMapFile(TvStreamBuf& stream)
{
    try {
        return readMapHeader(stream) && TvDetail::readMapDirectory(*theTvCodePages(), stream);
    } catch (...) { // the file streams throw messages and statuses
        return false;
    }
}

} // namespace

Orna::ErrorStatus TvCharMapper::initialize(const CStdStr<wchar_t>& mapFile)
{
    theTvCodePages()->init();
    try {
        m_MapFile = mapFile;
    } catch (const std::bad_alloc&) {
        m_MapFile.clear();
    }
    const std::unique_ptr<TvStreamBuf> stream(TvDetail::openMapFile());
    const bool isBuilt = theTvCodePages()->findMapperByAcadCp(CP_UNDEFINED) != nullptr;
    if (!stream || !isBuilt) // without memory for the registry no file is of use
        return Orna::eFileNotFound;
    return readMapFile(*stream) ? Orna::eOk : Orna::eBadMapFile;
}

void TvCharMapper::unInitialize() { theTvCodePages()->release(); }

bool TvCharMapper::isLeadByte(unsigned char b, code_page_id cp) { return tvIsLeadByte(b, cp); }

bool tvIsLeadByte(unsigned char b, code_page_id cp)
{
    const EkCodepageMapper* mapper = TvDetail::MapperSlots::find(TvDetail::sameCodePage(cp));
    if (!mapper)
        return false;
    const EkLeaderBytes* ranges = mapper->m_leadBytes.asArrayPtr();
    for (int i = 0; i < mapper->m_leadBytes.length(); ++i) {
        if (b >= ranges[i].first && b <= ranges[i].last)
            return true;
    }
    return false;
}

extern "C" bool IsDBCSLeadByteEx(unsigned int ansiCp, unsigned char b)
{
    return tvIsLeadByte(b, TvCodePageMapper::ansiCpToOrnaCp(static_cast<int>(ansiCp)));
}

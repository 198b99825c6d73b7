#include "TvCodePages.h"

#include "TvStreamBuf.h"
#include "codepage/CodepageIndex.h"
#include "codepage/MapFile.h"

template class TvVector<EkCpUnicodePair>;
template class TvVector<EkLeaderBytes>;

EkCodepageMapper::EkCodepageMapper(code_page_id id, const wchar_t* desc, unsigned int ansiCp)
    : m_tableOffset(0), m_pSingleByteTable(nullptr), m_id(id), m_desc(desc ? desc : L""), m_ansiCp(ansiCp),
      m_bLoaded(0), m_index(nullptr)
{
}

EkCodepageMapper::~EkCodepageMapper() { TvDetail::deleteCodepageIndex(m_index); }

Orna::ErrorStatus EkCodepageMapper::verifyLoaded(TvStreamBuf* stream)
{
    if (m_bLoaded == 1)
        return Orna::eOk;
    if (m_tableOffset == 0 || !stream)
        return Orna::eInvalidInput;
    if (!TvDetail::readMapTable(*stream, m_tableOffset, m_pairs))
        return Orna::eInvalidInput;
    m_bLoaded = 1;
    return Orna::eOk;
}

unsigned short getUShort(TvStreamBuf* stream)
{
    return static_cast<unsigned short>(TvPlatformStreamer::readInt16(*stream));
}

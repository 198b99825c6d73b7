#include "TvCodePages.h"

#include "codepage/MapFile.h"
#include "codepage/MapperSlots.h"
#include "codepage/tables/SingleByteTables.h"
#include "runtime/TvStartup.h"

#include <iterator>
#include <memory>
#include <new>

namespace {

struct MapperRow {
    code_page_id id;
    const wchar_t* desc;
    unsigned int ansiCp;
    const unsigned short* table;
    EkLeaderBytes leadBytes[2] = {}; // {0, 0} = none
};

// Slot by slot. "iso8859_6" carries its published number here, unlike the table of numbers;
// slot 43 holds "undefined" a second time; the older names of the double-byte code pages
// have no table of their own, and 1361 and 1258 have none at all.
const MapperRow kRows[] = {
    {CP_UNDEFINED, L"undefined", 0, g_undefinedTable},
    {CP_ASCII, L"ascii", 20127, g_emptyCodeTable},
    {CP_ISO8859_1, L"iso8859_1", 28591, g_iso8859_1Table},
    {CP_ISO8859_2, L"iso8859_2", 28592, g_iso8859_2Table},
    {CP_ISO8859_3, L"iso8859_3", 28593, g_iso8859_3Table},
    {CP_ISO8859_4, L"iso8859_4", 28594, g_iso8859_4Table},
    {CP_ISO8859_5, L"iso8859_5", 28595, g_iso8859_5Table},
    {CP_ISO8859_6, L"iso8859_6", 28596, g_iso8859_6Table},
    {CP_ISO8859_7, L"iso8859_7", 28597, g_iso8859_7Table},
    {CP_ISO8859_8, L"iso8859_8", 28598, g_iso8859_8Table},
    {CP_ISO8859_9, L"iso8859_9", 28599, g_iso8859_9Table},
    {CP_DOS437, L"dos437", 437, g_dos437Table},
    {CP_DOS850, L"dos850", 850, g_dos850Table},
    {CP_DOS852, L"dos852", 852, g_dos852Table},
    {CP_DOS855, L"dos855", 855, g_dos855Table},
    {CP_DOS857, L"dos857", 857, g_dos857Table},
    {CP_DOS860, L"dos860", 860, g_dos860Table},
    {CP_DOS861, L"dos861", 861, g_dos861Table},
    {CP_DOS863, L"dos863", 863, g_dos863Table},
    {CP_DOS864, L"dos864", 864, g_dos864Table},
    {CP_DOS865, L"dos865", 865, g_dos865Table},
    {CP_DOS869, L"dos869", 869, g_dos869Table},
    {CP_DOS932, L"dos932", 932, g_emptyCodeTable},
    {CP_MAC_ROMAN, L"mac_roman", 10000, g_macRomanTable},
    {CP_BIG5, L"big5", 10002, g_emptyCodeTable},
    {CP_KSC5601, L"ksc5601", 949, g_emptyCodeTable},
    {CP_JOHAB, L"johab", 1361, g_emptyCodeTable},
    {CP_DOS866, L"dos866", 866, g_dos866Table},
    {CP_ANSI_1250, L"ansi_1250", 1250, g_ansi1250Table},
    {CP_ANSI_1251, L"ansi_1251", 1251, g_ansi1251Table},
    {CP_ANSI_1252, L"ansi_1252", 1252, g_ansi1252Table},
    {CP_GB2312, L"gb2312", 20936, g_emptyCodeTable},
    {CP_ANSI_1253, L"ansi_1253", 1253, g_ansi1253Table},
    {CP_ANSI_1254, L"ansi_1254", 1254, g_ansi1254Table},
    {CP_ANSI_1255, L"ansi_1255", 1255, g_ansi1255Table},
    {CP_ANSI_1256, L"ansi_1256", 1256, g_ansi1256Table},
    {CP_ANSI_1257, L"ansi_1257", 1257, g_ansi1257Table},
    {CP_ANSI_874, L"ansi_874", 874, g_ansi874Table},
    {CP_ANSI_932, L"ansi_932", 932, g_ansi932Table, {{0x81, 0x9F}, {0xE0, 0xFC}}},
    {CP_ANSI_936, L"ansi_936", 936, g_emptyCodeTable, {{0x81, 0xFE}}},
    {CP_ANSI_949, L"ansi_949", 949, g_emptyCodeTable, {{0x81, 0xFE}}},
    {CP_ANSI_950, L"ansi_950", 950, g_emptyCodeTable, {{0x81, 0xFE}}},
    {CP_ANSI_1361, L"ansi_1361", 1361, g_emptyCodeTable},
    {CP_UNDEFINED, L"undefined", 0, g_undefinedTable},
    {CP_ANSI_1258, L"ansi_1258", 1258, g_emptyCodeTable},
};
static_assert(std::size(kRows) == CP_UTF8, "one row for each slot but the last, which stays empty");

bool readsMapFile(code_page_id id) { return id >= CP_ANSI_932 && id <= CP_ANSI_950; }

// Null when memory runs out.
EkCodepageMapper* makeMapper(const MapperRow& row)
{
    try {
        auto mapper = std::make_unique<EkCodepageMapper>(row.id, row.desc, row.ansiCp);
        mapper->m_pSingleByteTable = row.table;
        mapper->m_bLoaded = readsMapFile(row.id) ? 0 : 1;
        for (const EkLeaderBytes& range : row.leadBytes) {
            if (range.first == 0)
                break;
            const int count = mapper->m_leadBytes.length();
            mapper->m_leadBytes.append(range);
            if (mapper->m_leadBytes.length() == count)
                return nullptr;
        }
        return mapper.release();
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

} // namespace

// A constant: mappers that are made before any code of this file runs are kept.
constinit EkCodepages TvDetail::g_codepages __attribute__((init_priority(TvStartup::kCodePageRegistry)));

// Leaves empty slots, as meant: static objects of other modules that live longer may ask.
EkCodepages::~EkCodepages() { release(); }

void EkCodepages::init()
{
    release();
    initCodepages();
}

void EkCodepages::init(TvStreamBuf* stream)
{
    if (stream)
        TvDetail::readMapDirectory(*this, *stream);
}

void EkCodepages::initCodepages()
{
    if (m_mappers[0])
        return;
    for (int slot = 0; slot < CP_UTF8; ++slot) {
        m_mappers[slot] = makeMapper(kRows[slot]);
        if (!m_mappers[slot])
            return release(); // all or none, so that a later call may try again
    }
}

void EkCodepages::release() { releaseCodepages(); }

void EkCodepages::releaseCodepages()
{
    for (EkCodepageMapper*& mapper : m_mappers) {
        delete mapper;
        mapper = nullptr;
    }
}

EkCodepageMapper* EkCodepages::findMapperByAcadCp(code_page_id id) const
{
    const auto slot = static_cast<unsigned int>(id);
    return m_mappers[slot < CP_CNT ? slot : 0];
}

EkCodepageMapper* EkCodepages::findMapperByAnsiCp(unsigned int cp) const
{
    for (int slot = CP_CNT - 1; slot > 0; --slot) {
        if (m_mappers[slot] && m_mappers[slot]->m_ansiCp == cp)
            return m_mappers[slot];
    }
    return m_mappers[0];
}

EkCodepageMapper* EkCodepages::findMapperByDesc(const CStdStr<wchar_t>& desc) const
{
    for (int slot = CP_CNT - 1; slot > 0; --slot) {
        if (m_mappers[slot] && m_mappers[slot]->m_desc.CompareNoCase(desc) == 0)
            return m_mappers[slot];
    }
    return m_mappers[0];
}

EkCodepages* theTvCodePages() { return &TvDetail::g_codepages; }

int numValidCodepages() { return CP_CNT; }

void ekInitCodepageMapper() { theTvCodePages()->init(); }

void ekCleanupCodepageMapper() { theTvCodePages()->release(); }

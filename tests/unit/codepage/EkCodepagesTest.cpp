#include "TvCodePages.h"

#include "TvCharMapper.h"

#include <cstddef>
#include <cstdint>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

code_page_id id(int value) { return static_cast<code_page_id>(value); }

EkCodepageMapper* mapperOf(int value) { return theTvCodePages()->findMapperByAcadCp(id(value)); }

using Ranges = std::vector<std::pair<int, int>>;

Ranges leadBytes(const EkCodepageMapper& mapper)
{
    Ranges ranges;
    for (int i = 0; i < mapper.m_leadBytes.length(); ++i) {
        const EkLeaderBytes range = mapper.m_leadBytes.asArrayPtr()[i];
        ranges.emplace_back(range.first, range.last);
    }
    return ranges;
}

class Registry : public testing::Test {
protected:
    void SetUp() override { theTvCodePages()->init(); }
    void TearDown() override { theTvCodePages()->release(); }
};

enum class Table { Empty, Identity, KatakanaOnly, Published };

struct MapperCase {
    int slot;
    code_page_id named; // the same id by name
    const wchar_t* desc;
    unsigned int number;
    Table table;
    Ranges leadBytes = {};
    bool fromMapFile = false;
};

const code_page_id kNoName = static_cast<code_page_id>(43);

const MapperCase kMappers[] = {
    {0, CP_UNDEFINED, L"undefined", 0, Table::Identity},
    {1, CP_ASCII, L"ascii", 20127, Table::Empty},
    {2, CP_ISO8859_1, L"iso8859_1", 28591, Table::Published},
    {3, CP_ISO8859_2, L"iso8859_2", 28592, Table::Published},
    {4, CP_ISO8859_3, L"iso8859_3", 28593, Table::Published},
    {5, CP_ISO8859_4, L"iso8859_4", 28594, Table::Published},
    {6, CP_ISO8859_5, L"iso8859_5", 28595, Table::Published},
    {7, CP_ISO8859_6, L"iso8859_6", 28596, Table::Published},
    {8, CP_ISO8859_7, L"iso8859_7", 28597, Table::Published},
    {9, CP_ISO8859_8, L"iso8859_8", 28598, Table::Published},
    {10, CP_ISO8859_9, L"iso8859_9", 28599, Table::Published},
    {11, CP_DOS437, L"dos437", 437, Table::Published},
    {12, CP_DOS850, L"dos850", 850, Table::Published},
    {13, CP_DOS852, L"dos852", 852, Table::Published},
    {14, CP_DOS855, L"dos855", 855, Table::Published},
    {15, CP_DOS857, L"dos857", 857, Table::Published},
    {16, CP_DOS860, L"dos860", 860, Table::Published},
    {17, CP_DOS861, L"dos861", 861, Table::Published},
    {18, CP_DOS863, L"dos863", 863, Table::Published},
    {19, CP_DOS864, L"dos864", 864, Table::Published},
    {20, CP_DOS865, L"dos865", 865, Table::Published},
    {21, CP_DOS869, L"dos869", 869, Table::Published},
    {22, CP_DOS932, L"dos932", 932, Table::Empty},
    {23, CP_MAC_ROMAN, L"mac_roman", 10000, Table::Published},
    {24, CP_BIG5, L"big5", 10002, Table::Empty},
    {25, CP_KSC5601, L"ksc5601", 949, Table::Empty},
    {26, CP_JOHAB, L"johab", 1361, Table::Empty},
    {27, CP_DOS866, L"dos866", 866, Table::Published},
    {28, CP_ANSI_1250, L"ansi_1250", 1250, Table::Published},
    {29, CP_ANSI_1251, L"ansi_1251", 1251, Table::Published},
    {30, CP_ANSI_1252, L"ansi_1252", 1252, Table::Published},
    {31, CP_GB2312, L"gb2312", 20936, Table::Empty},
    {32, CP_ANSI_1253, L"ansi_1253", 1253, Table::Published},
    {33, CP_ANSI_1254, L"ansi_1254", 1254, Table::Published},
    {34, CP_ANSI_1255, L"ansi_1255", 1255, Table::Published},
    {35, CP_ANSI_1256, L"ansi_1256", 1256, Table::Published},
    {36, CP_ANSI_1257, L"ansi_1257", 1257, Table::Published},
    {37, CP_ANSI_874, L"ansi_874", 874, Table::Published},
    {38, CP_ANSI_932, L"ansi_932", 932, Table::KatakanaOnly, {{0x81, 0x9F}, {0xE0, 0xFC}}, true},
    {39, CP_ANSI_936, L"ansi_936", 936, Table::Empty, {{0x81, 0xFE}}, true},
    {40, CP_ANSI_949, L"ansi_949", 949, Table::Empty, {{0x81, 0xFE}}, true},
    {41, CP_ANSI_950, L"ansi_950", 950, Table::Empty, {{0x81, 0xFE}}, true},
    {42, CP_ANSI_1361, L"ansi_1361", 1361, Table::Empty},
    {43, kNoName, L"undefined", 0, Table::Identity},
    {44, CP_ANSI_1258, L"ansi_1258", 1258, Table::Empty},
};

class RegistryRow : public testing::TestWithParam<MapperCase> {
protected:
    void SetUp() override { theTvCodePages()->init(); }
    void TearDown() override { theTvCodePages()->release(); }

    const EkCodepageMapper& mapper() const { return *mapperOf(GetParam().slot); }
};

TEST_P(RegistryRow, HasItsName) { EXPECT_EQ(GetParam().named, GetParam().slot); }

TEST_P(RegistryRow, CarriesItsIdDescriptionAndNumber)
{
    // Slot 43 holds a mapper that takes itself for "undefined".
    EXPECT_EQ(mapper().m_id, GetParam().slot == 43 ? 0 : GetParam().slot);
    EXPECT_EQ(std::wstring(mapper().m_desc), GetParam().desc);
    EXPECT_EQ(mapper().m_ansiCp, GetParam().number);
}

TEST_P(RegistryRow, HasItsLeadBytes) { EXPECT_EQ(leadBytes(mapper()), GetParam().leadBytes); }

TEST_P(RegistryRow, IsLoadedUnlessTheMapFileHasItsTable)
{
    EXPECT_EQ(mapper().m_bLoaded, GetParam().fromMapFile ? 0 : 1);
    EXPECT_EQ(mapper().m_tableOffset, 0u);
    EXPECT_EQ(mapper().m_pairs.length(), 0);
}

TEST_P(RegistryRow, HasItsKindOfTable)
{
    const unsigned short* table = mapper().m_pSingleByteTable;
    const unsigned short* empty = mapperOf(CP_ASCII)->m_pSingleByteTable;
    EXPECT_EQ(table == empty, GetParam().table == Table::Empty);
    for (int byte = 0x80; byte <= 0xFF; ++byte) {
        const int unit = table[byte - 0x80];
        const bool katakana = byte >= 0xA1 && byte <= 0xDF;
        switch (GetParam().table) {
        case Table::Empty:
            ASSERT_EQ(unit, 0) << byte;
            break;
        case Table::Identity:
            ASSERT_EQ(unit, byte);
            break;
        case Table::KatakanaOnly:
            ASSERT_EQ(unit, katakana ? byte - 0xA1 + 0xFF61 : 0) << byte;
            break;
        case Table::Published: // compared with its source elsewhere
            break;
        }
    }
}

TEST_P(RegistryRow, IsFoundByItsDescriptionInAnyCase)
{
    std::wstring upper = GetParam().desc;
    for (wchar_t& c : upper)
        c = c >= L'a' && c <= L'z' ? c - L'a' + L'A' : c;
    // "undefined" stands in two slots; the higher one is found.
    const int slot = GetParam().slot == 0 ? 43 : GetParam().slot;
    EXPECT_EQ(theTvCodePages()->findMapperByDesc(GetParam().desc), mapperOf(slot));
    EXPECT_EQ(theTvCodePages()->findMapperByDesc(upper.c_str()), mapperOf(slot));
}

std::string rowName(const testing::TestParamInfo<MapperCase>& row)
{
    std::string name = std::to_string(row.param.slot) + "_";
    for (const wchar_t* c = row.param.desc; *c; ++c)
        name += static_cast<char>(*c);
    return name;
}

INSTANTIATE_TEST_SUITE_P(All, RegistryRow, testing::ValuesIn(kMappers), rowName);

TEST_F(Registry, Utf8HasNoMapper)
{
    EXPECT_EQ(CP_UTF8, 45);
    EXPECT_EQ(mapperOf(45), nullptr);
}

TEST_F(Registry, UnknownIdsHaveTheMapperOfUndefined)
{
    for (const int value : {46, 47, 100, -1, 2147483647, -2147483647 - 1})
        EXPECT_EQ(mapperOf(value), mapperOf(0)) << value;
}

struct NumberCase {
    unsigned int number;
    int slot;
};

TEST_F(Registry, ANumberFindsTheHighestIdThatCarriesIt)
{
    for (const NumberCase& c : {NumberCase{932, 38}, {949, 40}, {1361, 42}, {0, 43}})
        EXPECT_EQ(theTvCodePages()->findMapperByAnsiCp(c.number), mapperOf(c.slot)) << c.number;
}

TEST_F(Registry, EveryOtherNumberFindsItsId)
{
    for (const MapperCase& c : kMappers) {
        if (c.slot != 0 && c.slot != 22 && c.slot != 25 && c.slot != 26) {
            EXPECT_EQ(theTvCodePages()->findMapperByAnsiCp(c.number), mapperOf(c.slot)) << c.number;
        }
    }
}

TEST_F(Registry, TheMapperOfIso8859_6CarriesItsPublishedNumber)
{
    EXPECT_EQ(theTvCodePages()->findMapperByAnsiCp(28596), mapperOf(7));
    EXPECT_EQ(theTvCodePages()->findMapperByAnsiCp(28586), mapperOf(0));
}

TEST_F(Registry, UnknownNumbersFindUndefined)
{
    for (const unsigned int number : {3u, 65001u, 0xFFFFFFFFu})
        EXPECT_EQ(theTvCodePages()->findMapperByAnsiCp(number), mapperOf(0)) << number;
}

TEST_F(Registry, UnknownDescriptionsFindUndefined)
{
    for (const wchar_t* desc : {L"", L"utf8", L"ansi_125", L"ansi_12522", L"ansi 1252"})
        EXPECT_EQ(theTvCodePages()->findMapperByDesc(desc), mapperOf(0)) << desc;
}

TEST_F(Registry, InitCodepagesOnAFilledRegistryChangesNothing)
{
    std::vector<const EkCodepageMapper*> before;
    for (int slot = 0; slot < 46; ++slot)
        before.push_back(mapperOf(slot));
    mapperOf(38)->m_tableOffset = 7;

    theTvCodePages()->initCodepages();

    for (int slot = 0; slot < 46; ++slot)
        EXPECT_EQ(mapperOf(slot), before[static_cast<std::size_t>(slot)]) << slot;
    EXPECT_EQ(mapperOf(38)->m_tableOffset, 7u);
}

TEST_F(Registry, InitAgainGivesUnloadedMappers)
{
    for (int slot = 38; slot <= 41; ++slot) {
        mapperOf(slot)->m_bLoaded = 1;
        mapperOf(slot)->m_tableOffset = 7;
        mapperOf(slot)->m_pairs.append({0x4E00, 0x88EA});
    }

    theTvCodePages()->init();

    for (int slot = 38; slot <= 41; ++slot) {
        EXPECT_EQ(mapperOf(slot)->m_bLoaded, 0) << slot;
        EXPECT_EQ(mapperOf(slot)->m_tableOffset, 0u) << slot;
        EXPECT_EQ(mapperOf(slot)->m_pairs.length(), 0) << slot;
    }
}

TEST_F(Registry, ReleaseEmptiesEverySlot)
{
    theTvCodePages()->release();
    for (int slot = -1; slot <= 46; ++slot)
        EXPECT_EQ(mapperOf(slot), nullptr) << slot;
    EXPECT_EQ(theTvCodePages()->findMapperByAnsiCp(1252), nullptr);
    EXPECT_EQ(theTvCodePages()->findMapperByDesc(L"ansi_1252"), nullptr);
}

TEST_F(Registry, IsFilledAgainAfterRelease)
{
    theTvCodePages()->release();
    theTvCodePages()->initCodepages();
    EXPECT_EQ(mapperOf(30)->m_ansiCp, 1252u);
}

TEST_F(Registry, CanBeReleasedTwice)
{
    theTvCodePages()->release();
    theTvCodePages()->release();
    EXPECT_EQ(mapperOf(0), nullptr);
}

// Looked at before the first test runs.
const bool g_registryBeganEmpty = theTvCodePages()->findMapperByAcadCp(CP_UNDEFINED) == nullptr &&
                                  theTvCodePages()->findMapperByAnsiCp(1252) == nullptr;
const bool g_mapFileNameBeganEmpty = TvCharMapper::m_MapFile.Compare(L"") == 0;

TEST(EkCodepages, TheOneRegistryAndTheMapFileNameAreEmptyWhenTheLibraryIsLoaded)
{
    EXPECT_TRUE(g_registryBeganEmpty);
    EXPECT_TRUE(g_mapFileNameBeganEmpty);
}

TEST(EkCodepages, StartsEmpty)
{
    EkCodepages pages;
    for (int slot = 0; slot < 46; ++slot)
        EXPECT_EQ(pages.findMapperByAcadCp(id(slot)), nullptr);
}

TEST(EkCodepages, NoStreamIsNoDirectory)
{
    EkCodepages pages;
    pages.init();
    pages.init(nullptr);
    EXPECT_EQ(pages.findMapperByAcadCp(CP_ANSI_932)->m_tableOffset, 0u);
}

TEST(EkCodepages, TheFunctionsServeTheOneRegistry)
{
    ekInitCodepageMapper();
    EXPECT_NE(mapperOf(0), nullptr);
    EXPECT_EQ(theTvCodePages(), theTvCodePages());
    ekCleanupCodepageMapper();
    EXPECT_EQ(mapperOf(0), nullptr);
}

TEST(EkCodepages, IsFortySixPointers) { EXPECT_EQ(sizeof(EkCodepages), 46 * sizeof(void*)); }

TEST(EkCodepageMapper, IsMadeWithoutTablesAndUnloaded)
{
    const EkCodepageMapper mapper(CP_ANSI_1252, L"my own", 4711);
    EXPECT_EQ(mapper.m_tableOffset, 0u);
    EXPECT_EQ(mapper.m_pSingleByteTable, nullptr);
    EXPECT_EQ(mapper.m_leadBytes.length(), 0);
    EXPECT_EQ(mapper.m_pairs.length(), 0);
    EXPECT_EQ(mapper.m_id, CP_ANSI_1252);
    EXPECT_EQ(std::wstring(mapper.m_desc), L"my own");
    EXPECT_EQ(mapper.m_ansiCp, 4711u);
    EXPECT_EQ(mapper.m_bLoaded, 0);
}

TEST(EkCodepageMapper, CopiesItsDescription)
{
    std::wstring desc = L"a description too long to be kept inside the string object";
    const EkCodepageMapper mapper(CP_ASCII, desc.c_str(), 0);
    desc[0] = L'X';
    EXPECT_EQ(std::wstring(mapper.m_desc), L"a description too long to be kept inside the string object");
}

TEST(EkCodepageMapper, TakesNoDescriptionForAnEmptyOne)
{
    const EkCodepageMapper mapper(CP_ASCII, nullptr, 0);
    EXPECT_EQ(std::wstring(mapper.m_desc), L"");
}

TEST(EkCodepageMapper, FieldsLieInTheirOrder)
{
    // Not of standard layout, so the addresses of one object are compared.
    const EkCodepageMapper mapper(CP_ASCII, L"", 0);
    const auto offset = [&mapper](const void* field) {
        return static_cast<const char*>(field) - reinterpret_cast<const char*>(&mapper);
    };
    EXPECT_EQ(offset(&mapper.m_tableOffset), 0);
    EXPECT_EQ(offset(&mapper.m_pSingleByteTable), 8);
    EXPECT_EQ(offset(&mapper.m_leadBytes), 16);
    EXPECT_EQ(offset(&mapper.m_pairs), 24);
    EXPECT_EQ(offset(&mapper.m_id), 32);
    EXPECT_EQ(offset(&mapper.m_desc), 40);
    const auto afterDesc = static_cast<std::ptrdiff_t>(40 + sizeof mapper.m_desc);
    EXPECT_EQ(offset(&mapper.m_ansiCp), afterDesc);
    EXPECT_EQ(offset(&mapper.m_bLoaded), afterDesc + 4);
}

TEST(EkCpUnicodePair, IsUnitThenCode)
{
    EXPECT_EQ(offsetof(EkCpUnicodePair, unicode), 0u);
    EXPECT_EQ(offsetof(EkCpUnicodePair, code), 2u);
    EXPECT_EQ(sizeof(EkCpUnicodePair), 4u);
}

TEST(EkLeaderBytes, IsFirstThenLast)
{
    EXPECT_EQ(offsetof(EkLeaderBytes, first), 0u);
    EXPECT_EQ(offsetof(EkLeaderBytes, last), 1u);
    EXPECT_EQ(sizeof(EkLeaderBytes), 2u);
}

} // namespace

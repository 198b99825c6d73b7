#include "TvCodePages.h"

#include "MapBytes.h"
#include "PlainStream.h"
#include "codepage/MapFile.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

using Pairs = std::vector<CodeUnit>;

const Pairs kPairs = {{0xB0A1, 0x554A}, {0xB0A2, 0x963F}, {0xF7FE, 0x9F44}};

Pairs pairsOf(const EkCodepageMapper& mapper)
{
    Pairs pairs;
    for (int i = 0; i < mapper.m_pairs.length(); ++i)
        pairs.emplace_back(mapper.m_pairs.asArrayPtr()[i].code, mapper.m_pairs.asArrayPtr()[i].unicode);
    return pairs;
}

// A stream that throws at its nth read, counted from 1.
class FailingStream : public PlainStream {
public:
    using PlainStream::readBytes;

    FailingStream(const std::string& content, int failing) : PlainStream(content), m_failing(failing) {}

    void readBytes(unsigned char* buf, std::uint32_t count) override
    {
        if (++m_reads == m_failing)
            throw L"End of file!";
        PlainStream::readBytes(buf, count);
    }
    int reads() const { return m_reads; }

private:
    int m_failing;
    int m_reads = 0;
};

class MapDirectory : public testing::Test {
protected:
    void SetUp() override { m_pages.init(); }

    EkCodepageMapper& mapper(int id) { return *m_pages.findMapperByAcadCp(static_cast<code_page_id>(id)); }

    // Every mapper has an offset already, so that one left behind is seen.
    void markOffsets()
    {
        for (int id = 0; id < 45; ++id)
            mapper(id).m_tableOffset = 0xDEAD;
    }
    void expectNoOffsets()
    {
        for (int id = 0; id < 45; ++id)
            EXPECT_EQ(mapper(id).m_tableOffset, 0u) << id;
    }

    EkCodepages m_pages;
};

TEST_F(MapDirectory, GivesEachMapperItsOffset)
{
    MapBytes map;
    for (int place = 0; place < 38; ++place)
        map.setEntry(place, static_cast<std::uint32_t>(1000 + place));
    PlainStream stream(map.bytes(), map.directory());

    m_pages.init(&stream);

    const std::vector<int> ids = {0,  1,  2,  3,  4,  5,  6,  7,  8,  9,  10, 11, 12, 13, 14, 15, 16, 17, 18,
                                  19, 20, 21, 23, 42, 27, 28, 29, 30, 32, 33, 34, 35, 36, 37, 38, 39, 40, 41};
    ASSERT_EQ(ids.size(), 38u);
    for (std::size_t place = 0; place < ids.size(); ++place)
        EXPECT_EQ(mapper(ids[place]).m_tableOffset, 1000 + place) << ids[place];
    for (const int id : {22, 24, 25, 26, 31, 43, 44})
        EXPECT_EQ(mapper(id).m_tableOffset, 0u) << id;
}

TEST_F(MapDirectory, LeavesTheCursorBehindItself)
{
    const MapBytes map;
    PlainStream stream(map.bytes() + "tail", map.directory());
    EXPECT_TRUE(TvDetail::readMapDirectory(m_pages, stream));
    EXPECT_EQ(stream.tell(), map.directory() + 152);
}

TEST_F(MapDirectory, KeepsOffsetsAsUnsignedNumbers)
{
    MapBytes map;
    map.setOffset(38, 0xFFFFFFFF);
    map.setOffset(39, 0x80000000);
    PlainStream stream(map.bytes(), map.directory());
    m_pages.init(&stream);
    EXPECT_EQ(mapper(38).m_tableOffset, 0xFFFFFFFFu);
    EXPECT_EQ(mapper(39).m_tableOffset, 0x80000000u);
}

TEST_F(MapDirectory, OneByteTooShortGivesNoOffsets)
{
    MapBytes map;
    for (int place = 0; place < 38; ++place)
        map.setEntry(place, 7);
    PlainStream stream(map.bytes().substr(0, map.directory() + 151), map.directory());
    markOffsets();
    EXPECT_FALSE(TvDetail::readMapDirectory(m_pages, stream));
    expectNoOffsets();
}

TEST_F(MapDirectory, IsNotReadFromAnEmptyFile)
{
    PlainStream stream;
    markOffsets();
    EXPECT_FALSE(TvDetail::readMapDirectory(m_pages, stream));
    expectNoOffsets();
}

TEST_F(MapDirectory, IsNotReadWithTheCursorPastTheEnd)
{
    const MapBytes map;
    PlainStream stream(map.bytes(), map.bytes().size() + 1000);
    EXPECT_FALSE(TvDetail::readMapDirectory(m_pages, stream));
    EXPECT_EQ(stream.calls().size(), 0u);
}

TEST_F(MapDirectory, AnyReadThatFailsGivesNoOffsets)
{
    MapBytes map;
    for (int place = 0; place < 38; ++place)
        map.setEntry(place, 7);
    for (int failing = 1;; ++failing) {
        FailingStream stream(map.bytes(), failing);
        stream.setCursor(map.directory());
        markOffsets();
        if (TvDetail::readMapDirectory(m_pages, stream)) {
            EXPECT_GT(failing, 1);
            break;
        }
        expectNoOffsets();
    }
}

TEST_F(MapDirectory, OfAnEmptyRegistryIsReadAndForgotten)
{
    m_pages.release();
    const MapBytes map;
    PlainStream stream(map.bytes(), map.directory());
    EXPECT_TRUE(TvDetail::readMapDirectory(m_pages, stream));
    EXPECT_EQ(m_pages.findMapperByAcadCp(CP_ANSI_932), nullptr);
}

class MapTable : public testing::Test {
protected:
    MapTable() : m_mapper(CP_ANSI_936, L"ansi_936", 936) {}

    // The status of loading the mapper from a file whose directory gives it `offset`.
    Orna::ErrorStatus load(const std::string& file, std::uint32_t offset)
    {
        PlainStream stream(file);
        m_mapper.m_tableOffset = offset;
        return m_mapper.verifyLoaded(&stream);
    }

    void expectUntouched()
    {
        EXPECT_EQ(m_mapper.m_bLoaded, 0);
        EXPECT_EQ(pairsOf(m_mapper), Pairs());
    }

    MapBytes m_map;
    EkCodepageMapper m_mapper;
};

TEST_F(MapTable, IsReadInTheOrderOfTheFile)
{
    const auto offset = m_map.append(tableBytes(kPairs));
    EXPECT_EQ(load(m_map.bytes(), offset), Orna::eOk);
    EXPECT_EQ(m_mapper.m_bLoaded, 1);
    EXPECT_EQ(pairsOf(m_mapper), kPairs);
}

TEST_F(MapTable, MayLieAnywhereInTheFile)
{
    m_map.append("something else");
    const auto offset = m_map.append(tableBytes(kPairs));
    m_map.append("and more");
    EXPECT_EQ(load(m_map.bytes(), offset), Orna::eOk);
    EXPECT_EQ(pairsOf(m_mapper), kPairs);
}

TEST_F(MapTable, AtOffsetOneIsRead)
{
    std::string file(257, ' ');
    EXPECT_EQ(load(file + tableBytes(kPairs), 1), Orna::eOk);
    EXPECT_EQ(pairsOf(m_mapper), kPairs);
}

TEST_F(MapTable, WithoutEntriesIsLoaded)
{
    const auto offset = m_map.append(tableBytes({}));
    EXPECT_EQ(load(m_map.bytes(), offset), Orna::eOk);
    EXPECT_EQ(m_mapper.m_bLoaded, 1);
    EXPECT_EQ(pairsOf(m_mapper), Pairs());
}

TEST_F(MapTable, OfTheGreatestLengthIsRead)
{
    Pairs pairs;
    for (unsigned i = 0; i < 65535; ++i)
        pairs.emplace_back(i, 65535 - i);
    const auto offset = m_map.append(tableBytes(pairs));
    EXPECT_EQ(load(m_map.bytes(), offset), Orna::eOk);
    EXPECT_EQ(pairsOf(m_mapper), pairs);
}

TEST_F(MapTable, IsNotReadWithoutAStream)
{
    m_mapper.m_tableOffset = 1;
    EXPECT_EQ(m_mapper.verifyLoaded(nullptr), Orna::eInvalidInput);
    expectUntouched();
}

TEST_F(MapTable, IsNotReadWithoutAnOffset)
{
    m_map.append(tableBytes(kPairs));
    EXPECT_EQ(load(m_map.bytes(), 0), Orna::eInvalidInput);
    expectUntouched();
}

TEST_F(MapTable, IsNotReadTwice)
{
    const auto offset = m_map.append(tableBytes(kPairs));
    ASSERT_EQ(load(m_map.bytes(), offset), Orna::eOk);
    PlainStream other;
    EXPECT_EQ(m_mapper.verifyLoaded(&other), Orna::eOk);
    EXPECT_EQ(m_mapper.verifyLoaded(nullptr), Orna::eOk);
    EXPECT_EQ(other.calls().size(), 0u);
    EXPECT_EQ(pairsOf(m_mapper), kPairs);
}

TEST_F(MapTable, CanBeReadAfterAFailure)
{
    const auto offset = m_map.append(tableBytes(kPairs));
    ASSERT_EQ(load("", offset), Orna::eInvalidInput);
    EXPECT_EQ(load(m_map.bytes(), offset), Orna::eOk);
    EXPECT_EQ(pairsOf(m_mapper), kPairs);
}

TEST_F(MapTable, AFailureKeepsWhatTheMapperHeld)
{
    m_mapper.m_pairs.append({0x4E00, 0xD2BB});
    const auto offset = m_map.append(tableBytes({{0xB0A2, 1}, {0xB0A1, 2}}));
    EXPECT_EQ(load(m_map.bytes(), offset), Orna::eInvalidInput);
    EXPECT_EQ(pairsOf(m_mapper), Pairs({{0xD2BB, 0x4E00}}));
}

TEST_F(MapTable, CutAtAnyByteIsRefused)
{
    const auto offset = m_map.append(tableBytes(kPairs));
    for (std::size_t length = 0; length < m_map.bytes().size(); ++length) {
        ASSERT_EQ(load(m_map.bytes().substr(0, length), offset), Orna::eInvalidInput) << length;
        ASSERT_EQ(pairsOf(m_mapper), Pairs()) << length;
    }
}

TEST_F(MapTable, AnyReadThatFailsIsAnAnswer)
{
    m_mapper.m_tableOffset = m_map.append(tableBytes(kPairs));
    for (int failing = 1;; ++failing) {
        FailingStream stream(m_map.bytes(), failing);
        if (m_mapper.verifyLoaded(&stream) == Orna::eOk) {
            EXPECT_GT(failing, 1);
            break;
        }
        EXPECT_EQ(stream.reads(), failing);
        expectUntouched();
    }
    EXPECT_EQ(pairsOf(m_mapper), kPairs);
}

struct HostileCase {
    const char* name;
    std::uint32_t offset;
    std::string tail; // behind 256 bytes of header
};

std::string tail(const Pairs& pairs) { return tableBytes(pairs); }

std::string count(unsigned n)
{
    std::string bytes;
    appendLittleEndian(bytes, n, 2);
    return bytes;
}

const HostileCase kHostile[] = {
    {"OffsetAtTheEnd", 10, std::string(10, '\0')},
    {"OffsetOneBeforeTheEnd", 9, std::string(10, '\0')},
    {"OffsetPastTheEnd", 11, std::string(10, '\0')},
    {"OffsetMinusOne", 0xFFFFFFFF, tail(kPairs)},
    {"OffsetMinusTwoHundredFiftySix", 0xFFFFFF00, tail(kPairs)},
    {"OffsetOfTheGreatestSignedNumber", 0x7FFFFFFF, tail(kPairs)},
    {"OffsetOfTheLeastSignedNumber", 0x80000000, tail(kPairs)},
    {"CountWithoutEntries", 1, ' ' + count(1)},
    {"CountOneTooHigh", 1, ' ' + count(4) + tail(kPairs).substr(2)},
    {"GreatestCount", 1, ' ' + count(0xFFFF) + std::string(1000, 'x')},
    {"GreatestCountWithAllButOneByte", 1, ' ' + count(0xFFFF) + std::string(4 * 0xFFFF - 1, 'x')},
    {"CodeTwice", 1, ' ' + tail({{0xB0A1, 1}, {0xB0A1, 2}})},
    {"CodesDescend", 1, ' ' + tail({{0xB0A2, 1}, {0xB0A1, 2}})},
    {"LastCodeOutOfOrder", 1, ' ' + tail({{0xB0A1, 1}, {0xB0A2, 2}, {0xB0A3, 3}, {0xB0A2, 4}})},
    {"AllCodesZero", 1, ' ' + count(300) + std::string(1200, '\0')},
};

class HostileTable : public testing::TestWithParam<HostileCase> {};

TEST_P(HostileTable, IsRefusedAndTheMapperStaysUnloaded)
{
    EkCodepageMapper mapper(CP_ANSI_936, L"ansi_936", 936);
    mapper.m_tableOffset = GetParam().offset;
    PlainStream stream(std::string(256, ' ') + GetParam().tail);

    EXPECT_EQ(mapper.verifyLoaded(&stream), Orna::eInvalidInput);

    EXPECT_EQ(mapper.m_bLoaded, 0);
    EXPECT_EQ(pairsOf(mapper), Pairs());
    EXPECT_EQ(mapper.m_tableOffset, GetParam().offset);
}

INSTANTIATE_TEST_SUITE_P(All, HostileTable, testing::ValuesIn(kHostile),
                         [](const auto& c) { return std::string(c.param.name); });

TEST_F(MapTable, AtAnOffsetThatWouldWrapIntoTheFileIsRefused)
{
    const std::string file = std::string(200, ' ') + tableBytes(kPairs) + std::string(500, ' ');
    EXPECT_EQ(load(file, 0xFFFFFF00u + 200), Orna::eInvalidInput);
    expectUntouched();
}

// A stream whose length is not true.
class LyingStream : public PlainStream {
public:
    using PlainStream::PlainStream;
    std::uint64_t length() const override { return ~std::uint64_t(0); }
};

TEST_F(MapTable, OfAStreamThatOverstatesItsLengthIsRefused)
{
    m_mapper.m_tableOffset = m_map.append(tableBytes(kPairs).substr(0, 9));
    LyingStream stream(m_map.bytes());
    EXPECT_EQ(m_mapper.verifyLoaded(&stream), Orna::eInvalidInput);
    expectUntouched();
}

// A stream whose cursor cannot be moved.
class StuckStream : public PlainStream {
public:
    using PlainStream::PlainStream;
    using PlainStream::seek;
    std::int64_t seek(std::uint64_t, TvIO::SeekType) override { return -1; }
};

TEST_F(MapTable, OfAStreamThatCannotSeekIsRefused)
{
    m_mapper.m_tableOffset = m_map.append(tableBytes(kPairs));
    StuckStream stream(m_map.bytes());
    EXPECT_EQ(m_mapper.verifyLoaded(&stream), Orna::eInvalidInput);
    expectUntouched();
}

TEST(getUShort, ReadsTheLowByteFirstAndUnsigned)
{
    PlainStream stream(std::string("\x34\x12\xFF\xFF", 4));
    EXPECT_EQ(getUShort(&stream), 0x1234);
    EXPECT_EQ(getUShort(&stream), 0xFFFF);
}

class ShippedMap : public testing::TestWithParam<std::pair<int, int>> {};

TEST_P(ShippedMap, HasThePairsOfTheCodePage)
{
    const std::string file = shippedMapBytes();
    EkCodepages pages;
    pages.init();
    PlainStream stream(file, file.find('\0') + 1);
    ASSERT_EQ(file[file.find('\0') - 1], 'H');
    pages.init(&stream);
    EkCodepageMapper& mapper = *pages.findMapperByAcadCp(static_cast<code_page_id>(GetParam().first));

    ASSERT_EQ(mapper.verifyLoaded(&stream), Orna::eOk);

    EXPECT_EQ(mapper.m_pairs.length(), GetParam().second);
}

INSTANTIATE_TEST_SUITE_P(All, ShippedMap,
                         testing::Values(std::pair(38, 7724), std::pair(39, 21791), std::pair(40, 17048),
                                         std::pair(41, 13503)),
                         [](const auto& c) { return "id" + std::to_string(c.param.first); });

TEST(ShippedMapFile, HasNoOtherTables)
{
    const std::string file = shippedMapBytes();
    EkCodepages pages;
    pages.init();
    PlainStream stream(file, file.find('\0') + 1);
    pages.init(&stream);
    for (int id = 0; id < 45; ++id) {
        const bool expected = id >= 38 && id <= 41;
        EXPECT_EQ(pages.findMapperByAcadCp(static_cast<code_page_id>(id))->m_tableOffset != 0, expected)
            << id;
    }
}

} // namespace

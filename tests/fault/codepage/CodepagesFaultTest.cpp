// The registry and its tables when memory runs out or the map file cannot be read.
#include "TvCodePages.h"
#include "TvFileSystem.h"

#include "FailNth.h"
#include "MapBytes.h"
#include "TempDir.h"

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <memory>
#include <string>

namespace {

EkCodepageMapper* mapperOf(const EkCodepages& pages, int id)
{
    return pages.findMapperByAcadCp(static_cast<code_page_id>(id));
}

int filledSlots(const EkCodepages& pages)
{
    int filled = 0;
    for (int id = 0; id < CP_CNT; ++id)
        filled += mapperOf(pages, id) != nullptr;
    return filled;
}

// A map file with one table, in a folder of its own.
class MapFile {
public:
    MapFile() : MapFile(MapBytes()) {}

    std::unique_ptr<TvStreamBuf> open() const
    {
        return std::unique_ptr<TvStreamBuf>(TvFileSystem::createFileBuf(
            path().c_str(), TvIO::kAccessRead, TvIO::kShareDenyNone, TvIO::kOpenExisting));
    }
    std::wstring path() const { return (m_folder / "codepage.map").wstring(); }
    void truncate(std::size_t size) const { std::filesystem::resize_file(m_folder / "codepage.map", size); }
    std::uint32_t offset() const { return m_offset; }
    std::size_t size() const { return m_size; }

private:
    explicit MapFile(MapBytes map)
    {
        m_offset = map.append(tableBytes({{0xB0A1, 0x554A}, {0xB0A2, 0x963F}, {0xF7FE, 0x9F44}}));
        m_size = map.bytes().size();
        std::ofstream(m_folder / "codepage.map", std::ios::binary) << map.bytes();
    }

    TempDir m_folder;
    std::uint32_t m_offset = 0;
    std::size_t m_size = 0;
};

class CodepagesWithoutMemory : public testing::TestWithParam<FailNth::Kind> {};

TEST_P(CodepagesWithoutMemory, AnyAllocationOfInitMayFail)
{
    for (int nth = 1;; ++nth) {
        const HeapBalance balance;
        EkCodepages pages;
        bool fired = false;
        {
            const FailNth fail(GetParam(), nth);
            pages.init();
            fired = fail.fired();
        }
        const int filled = filledSlots(pages);
        ASSERT_TRUE(filled == 0 || filled == 45) << nth << ": " << filled;
        if (!fired) {
            EXPECT_EQ(filled, 45);
            break;
        }
    }
}

TEST_P(CodepagesWithoutMemory, ARegistryLeftEmptyCanBeFilledLater)
{
    EkCodepages pages;
    {
        const FailNth fail(GetParam(), 1);
        pages.init();
        EXPECT_EQ(filledSlots(pages), 0);
    }
    pages.initCodepages();
    EXPECT_EQ(filledSlots(pages), 45);
}

TEST_P(CodepagesWithoutMemory, AnyAllocationOfLoadingMayFail)
{
    const MapFile file;
    for (int nth = 1;; ++nth) {
        const HeapBalance balance;
        EkCodepageMapper mapper(CP_ANSI_936, L"ansi_936", 936);
        mapper.m_tableOffset = file.offset();
        const std::unique_ptr<TvStreamBuf> stream = file.open();
        Orna::ErrorStatus status = Orna::eOk;
        bool fired = false;
        {
            const FailNth fail(GetParam(), nth);
            status = mapper.verifyLoaded(stream.get());
            fired = fail.fired();
        }
        ASSERT_TRUE(status == Orna::eOk || (fired && status == Orna::eInvalidInput)) << nth;
        ASSERT_EQ(mapper.m_pairs.length(), status == Orna::eOk ? 3 : 0) << nth;
        ASSERT_EQ(mapper.m_bLoaded, status == Orna::eOk ? 1 : 0) << nth;
        EXPECT_EQ(mapper.verifyLoaded(stream.get()), Orna::eOk) << nth;
        if (!fired)
            break;
    }
}

INSTANTIATE_TEST_SUITE_P(Kinds, CodepagesWithoutMemory, testing::Values(FailNth::Malloc, FailNth::New),
                         [](const auto& kind) { return kind.param == FailNth::New ? "New" : "Malloc"; });

TEST(CodepagesFault, ATableCutAtAnyByteIsAnAnswer)
{
    const MapFile file;
    for (std::size_t size = file.size(); size-- > 256;) {
        file.truncate(size);
        EkCodepageMapper mapper(CP_ANSI_936, L"ansi_936", 936);
        mapper.m_tableOffset = file.offset();
        const std::unique_ptr<TvStreamBuf> stream = file.open();
        ASSERT_EQ(mapper.verifyLoaded(stream.get()), Orna::eInvalidInput) << size;
        ASSERT_EQ(mapper.m_bLoaded, 0) << size;
    }
}

TEST(CodepagesFault, AnEmptyFileIsAnAnswer)
{
    const MapFile file;
    file.truncate(0);
    EkCodepages pages;
    pages.init();
    const std::unique_ptr<TvStreamBuf> stream = file.open();
    pages.init(stream.get());
    EkCodepageMapper& mapper = *mapperOf(pages, CP_ANSI_936);
    EXPECT_EQ(mapper.m_tableOffset, 0u);
    mapper.m_tableOffset = file.offset();
    EXPECT_EQ(mapper.verifyLoaded(stream.get()), Orna::eInvalidInput);
}

TEST(CodepagesFault, AFolderIsAnAnswer)
{
    const TempDir folder;
    EkCodepages pages;
    pages.init();
    const std::unique_ptr<TvStreamBuf> stream(TvFileSystem::createFileBuf(
        folder.path().wstring().c_str(), TvIO::kAccessRead, TvIO::kShareDenyNone, TvIO::kOpenExisting));
    ASSERT_NE(stream, nullptr);
    pages.init(stream.get());
    EkCodepageMapper& mapper = *mapperOf(pages, CP_ANSI_936);
    EXPECT_EQ(mapper.m_tableOffset, 0u);
    mapper.m_tableOffset = 1;
    EXPECT_EQ(mapper.verifyLoaded(stream.get()), Orna::eInvalidInput);
    EXPECT_EQ(mapper.m_bLoaded, 0);
}

} // namespace

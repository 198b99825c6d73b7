// A map file that somebody cuts short while it is read: before the first call that touches its
// content, and before each later one.
#include "TvFileStreamBuf.h"

#include "MapBytes.h"
#include "MapperText.h"
#include "TestFiles.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include <dlfcn.h>
#include <unistd.h>

namespace {

// Cuts a file to `size` bytes when the nth read or seek of this program is about to happen.
struct Cut {
    static inline std::string path;
    static inline long size = 0;
    static inline int countdown = 0;

    static void beforeCall()
    {
        if (countdown > 0 && --countdown == 0 && truncate(path.c_str(), size) != 0)
            std::abort();
    }
};

} // namespace

extern "C" {

size_t fread(void* buf, size_t size, size_t count, FILE* file)
{
    static auto* const real = reinterpret_cast<decltype(fread)*>(dlsym(RTLD_NEXT, "fread"));
    Cut::beforeCall();
    return real(buf, size, count, file);
}

int fseeko(FILE* file, off_t offset, int whence)
{
    static auto* const real = reinterpret_cast<decltype(fseeko)*>(dlsym(RTLD_NEXT, "fseeko"));
    Cut::beforeCall();
    return real(file, offset, whence);
}

} // extern "C"

namespace {

constexpr int kPairs = 5000; // more than the C library reads ahead
constexpr int kMostCalls = 10000;

class MapFileCutShort : public testing::Test {
protected:
    void TearDown() override
    {
        Cut::countdown = 0;
        TvCharMapper::unInitialize();
    }

    // A map file whose table of 936 begins at `table`.
    void makeFile(std::size_t table, const std::string& header = std::string("H\0", 2))
    {
        std::vector<CodeUnit> pairs;
        for (unsigned i = 0; i < kPairs; ++i)
            pairs.emplace_back(0x8140 + i, 0x4E00 + i);
        MapBytes map(header);
        m_directoryEnd = map.directory() + 152;
        map.append(std::string(table - map.bytes().size(), '\0'));
        map.setOffset(39, map.append(tableBytes(pairs)));
        m_content = map.bytes();
        restore();
    }

    void restore() { m_name = m_files.put("codepage.map", m_content); }

    // From here on the nth call cuts the file.
    void cutBefore(int nth, std::size_t size)
    {
        Cut::path = m_files.path("codepage.map");
        Cut::size = static_cast<long>(size);
        Cut::countdown = nth;
    }
    static bool hasCut() { return Cut::countdown == 0; }

    static const EkCodepageMapper& mapper() { return *theTvCodePages()->findMapperByAcadCp(CP_ANSI_936); }

    static void expectUnloaded(std::size_t size)
    {
        EXPECT_EQ(mapper().m_bLoaded, 0) << size;
        EXPECT_EQ(mapper().m_pairs.length(), 0) << size;
    }

    static void expectWhole(std::size_t size)
    {
        ASSERT_EQ(mapper().m_pairs.length(), kPairs) << size;
        for (int i = 0; i < kPairs; ++i) {
            const EkCpUnicodePair pair = mapper().m_pairs.asArrayPtr()[i];
            ASSERT_TRUE(pair.code == 0x8140 + i && pair.unicode == 0x4E00 + i) << size << ", pair " << i;
        }
    }

    TestFiles m_files;
    std::wstring m_name;
    std::string m_content;
    std::size_t m_directoryEnd = 0;
};

TEST_F(MapFileCutShort, InitializeIs74WhereThatHappensBeforeTheFirstRead)
{
    makeFile(1000);
    for (std::size_t size = 0; size < m_directoryEnd; size += size < 4 ? 1 : 3) {
        restore();
        cutBefore(1, size);
        ASSERT_EQ(TvCharMapper::initialize(m_name), Orna::eBadMapFile) << size;
        ASSERT_TRUE(hasCut());
        ASSERT_EQ(mapper().m_tableOffset, 0u) << size;
    }
    restore();
    cutBefore(1, m_directoryEnd);
    EXPECT_EQ(TvCharMapper::initialize(m_name), Orna::eOk);
}

// What the C library has read ahead may still be seen; half a directory never is.
TEST_F(MapFileCutShort, InitializeHasTheWholeDirectoryOrNoneWheneverThatHappens)
{
    makeFile(20000, std::string(5000, ' ') + std::string("H\0", 2));
    for (const std::size_t size : {std::size_t{0}, std::size_t{5000}, std::size_t{5001}, std::size_t{5002},
                                   m_directoryEnd - 1, m_directoryEnd}) {
        for (int nth = 1; nth < kMostCalls; nth += nth < 4990 ? 499 : 7) {
            restore();
            cutBefore(nth, size);
            const Orna::ErrorStatus status = TvCharMapper::initialize(m_name);
            ASSERT_TRUE(status == Orna::eOk || status == Orna::eBadMapFile) << status;
            ASSERT_EQ(mapper().m_tableOffset, status == Orna::eOk ? 20000u - 256 : 0u) << size << ", " << nth;
            if (!hasCut())
                break;
        }
        Cut::countdown = 0;
    }
}

class TableCutShort : public MapFileCutShort, public testing::WithParamInterface<int> {};

// The table lies at a block's start and inside one: the C library reads ahead in blocks.
TEST_P(TableCutShort, IsReadWholeOrVerifyLoadedIs2WheneverThatHappens)
{
    const auto table = static_cast<std::size_t>(GetParam());
    makeFile(table);
    const std::size_t end = m_content.size();
    for (const std::size_t size : {std::size_t{0}, std::size_t{256}, table - 1, table, table + 1, table + 2,
                                   table + 3, table + 4000, table + 2 + 2 * kPairs, end - 4096, end - 1}) {
        int nth = 1;
        for (; nth < kMostCalls; ++nth) {
            restore();
            ASSERT_EQ(TvCharMapper::initialize(m_name), Orna::eOk);
            Orna::ErrorStatus status = Orna::eOk;
            const std::unique_ptr<TvStreamBuf> stream(createFileStreamBuf(
                m_name.c_str(), &status, TvIO::kAccessRead, TvIO::kShareDenyNone, TvIO::kOpenExisting));
            ASSERT_EQ(status, Orna::eOk);
            cutBefore(nth, size);
            status = theTvCodePages()->findMapperByAcadCp(CP_ANSI_936)->verifyLoaded(stream.get());
            if (status == Orna::eOk)
                expectWhole(size);
            else
                expectUnloaded(size);
            ASSERT_TRUE(status == Orna::eOk || status == Orna::eInvalidInput) << status;
            ASSERT_TRUE(nth > 1 || status == Orna::eInvalidInput) << size;
            if (!hasCut())
                break;
        }
        EXPECT_GT(nth, 2);
        Cut::countdown = 0;
    }
}

INSTANTIATE_TEST_SUITE_P(Places, TableCutShort, testing::Values(4096, 8192, 1000, 4095, 5001));

TEST_F(MapFileCutShort, TextIsConvertedWithoutTheTableAndWithItOnceTheFileIsWholeAgain)
{
    makeFile(4096);
    ASSERT_EQ(TvCharMapper::initialize(m_name), Orna::eOk);
    cutBefore(1, 4096);
    EXPECT_EQ(toWide(CP_ANSI_936, "\x81\x40"), L"\\M+58140");
    cutBefore(1, 4096);
    EXPECT_EQ(toBytes(CP_ANSI_936, L"\x4E00"), "\\U+4E00");
    expectUnloaded(4096);
    restore();
    EXPECT_EQ(toWide(CP_ANSI_936, "\x81\x40"), L"\x4E00");
    expectWhole(0);
}

} // namespace

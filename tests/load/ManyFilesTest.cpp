// Thousands of files one after the other (2,000; with TV_TEST_SCALE=5 the 10,000 of ctest --preset
// long), as many at once as the system allows, and one of 6 GiB.
#include "FileStreams.h"
#include "OpenDescriptors.h"
#include "TestFiles.h"
#include "TestScale.h"
#include "TvFileSystem.h"
#include "TvMemStreamBuf.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include <sys/resource.h>
#include <sys/statvfs.h>

namespace {

TEST(ManyFiles, ThousandsAreMadeReadAndClosed)
{
    const TestFiles files;
    const long descriptors = openDescriptors();
    const long count = scaled(2000);
    for (long i = 0; i < count; ++i) {
        const std::string text = "drawing " + std::to_string(i);
        const std::wstring name = files.wide("drawing" + std::to_string(i));
        const auto out = openOut(name);
        ASSERT_EQ(out.status, Orna::eOk) << i;
        write(*out, text);
        out->close();
        const auto own = openExclusively(name);
        ASSERT_EQ(own.status, Orna::eOk) << i;
        ASSERT_EQ(openExclusively(name).status, Orna::eFileNotFound) << i;
        own->close();
        const auto in = openIn(name);
        ASSERT_EQ(in.status, Orna::eOk) << i;
        ASSERT_EQ(read(*in, static_cast<std::uint32_t>(text.size())), text);
    }
    EXPECT_EQ(openDescriptors(), descriptors);
    EXPECT_TRUE(TvFileStreamBufImpl::m_cstrAlreadyOpenFiles.empty());
}

// The open beyond the system's limit is told, the others stay usable, and one that is closed
// makes room for another.
TEST(ManyFiles, AsManyAtOnceAsTheSystemAllows)
{
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "the sanitizer wants descriptors of its own";
#endif
    const TestFiles files;
    struct rlimit limit = {};
    getrlimit(RLIMIT_NOFILE, &limit);
    const rlim_t before = limit.rlim_cur;
    limit.rlim_cur = before < 600 ? before : 600;
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &limit), 0);
    std::vector<Opened<TvFileOStreamBuf>> streams;
    for (;;) {
        streams.push_back(openOut(files.wide(std::to_string(streams.size()))));
        if (streams.back().status != Orna::eOk || streams.size() > limit.rlim_cur)
            break;
        write(*streams.back(), std::to_string(streams.size()));
    }
    EXPECT_EQ(streams.back().status, Orna::eFileOpenFailed);
    EXPECT_FALSE(hasFile(*streams.back()));
    streams.pop_back();
    EXPECT_GT(streams.size(), 500u);
    streams.front()->close();
    EXPECT_EQ(openOut(files.wide("another")).status, Orna::eOk);
    for (std::size_t i = 1; i < streams.size(); ++i)
        streams[i]->close();
    limit.rlim_cur = before;
    setrlimit(RLIMIT_NOFILE, &limit);
    for (std::size_t i = 0; i < streams.size(); ++i)
        EXPECT_EQ(files.get(std::to_string(i)), std::to_string(i + 1));
}

// A file of 6 GiB of which only the places that are written take room on the disk.
class SparseFile : public testing::Test {
protected:
    static constexpr std::uint64_t kSize = std::uint64_t{6} << 30;

    void SetUp() override
    {
        struct statvfs disk = {};
        struct rlimit limit = {};
        getrlimit(RLIMIT_FSIZE, &limit);
        if (statvfs(files.path("").c_str(), &disk) != 0 || limit.rlim_cur < kSize ||
            disk.f_bavail * disk.f_frsize < (std::uint64_t{256} << 20))
            GTEST_SKIP() << "no room for it";
        std::mt19937_64 random(testSeed(6));
        for (long i = scaled(500); i > 0; --i)
            places.push_back(random() % (kSize - 8));
        places.push_back(kSize - 8);
    }

    // A record tells its place.
    static std::string recordOf(std::uint64_t place)
    {
        return std::string(reinterpret_cast<const char*>(&place), sizeof place);
    }

    TestFiles files;
    std::vector<std::uint64_t> places;
};

TEST_F(SparseFile, IsWrittenAndReadBackAtEveryPlace)
{
    const std::wstring name = files.wide("sparse");
    {
        const auto out = openOut(name);
        ASSERT_EQ(out.status, Orna::eOk);
        for (const std::uint64_t place : places) {
            out->seek(place, TvIO::kSeekFromStart);
            write(*out, recordOf(place));
            ASSERT_EQ(out->tell(), place + 8);
        }
        out->close();
    }
    EXPECT_EQ(TvFileSystem::getFileSize(name.c_str()), kSize);
    const auto mapped = openIn(name);
    const auto plain = openFile(name, kRead, TvIO::kShareDenyNone, TvIO::kOpenExisting);
    ASSERT_EQ(mapped->length(), kSize);
    std::string bytes(8, '?');
    int overwritten = 0;
    for (const std::uint64_t place : places) {
        mapped->readBytes(place, reinterpret_cast<unsigned char*>(bytes.data()), 8);
        overwritten += bytes != recordOf(place);
        plain->seek(place, TvIO::kSeekFromStart);
        ASSERT_EQ(read(*plain, 8), bytes) << place;
    }
    EXPECT_LE(overwritten, 1) << "records that another one touches";
    EXPECT_EQ(mapped->seek(8, TvIO::kSeekFromEnd), static_cast<std::int64_t>(kSize - 8));
    EXPECT_EQ(read(*mapped, 8), recordOf(kSize - 8));
    EXPECT_EQ(thrownBy([&] { read(*mapped, 1); }), L"End of file!");
}

TEST_F(SparseFile, IsCopiedFromOneEndIntoMemory)
{
    const std::wstring name = files.wide("sparse");
    {
        const auto out = openOut(name);
        out->seek(kSize - 8, TvIO::kSeekFromStart);
        write(*out, recordOf(kSize - 8));
        out->close();
    }
    const auto in = openIn(name);
    TvFlatMemBuf memory(0);
    memory.copyFrom(in.stream.get(), kSize - 100000, kSize);
    ASSERT_EQ(memory.length(), 100000u);
    const auto* const end = memory.buffer() + 100000 - 8;
    EXPECT_EQ(std::string(end, end + 8), recordOf(kSize - 8));
}

} // namespace

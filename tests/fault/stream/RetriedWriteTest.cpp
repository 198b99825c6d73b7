// A write that reached the file only in part, and the caller who tries again: the cache keeps
// what has not been written and nothing else.
#include "TvFileStreamBuf.h"

#include "Child.h"
#include "FileStreams.h"
#include "TestFiles.h"

#include <gtest/gtest.h>

#include <csignal>
#include <string>

#include <dlfcn.h>
#include <sys/resource.h>

namespace {

// How much the next write to a file takes, -1 for all of it; the one after it takes all again.
long g_nextWriteTakes = -1;

} // namespace

extern "C" size_t fwrite(const void* buf, size_t size, size_t count, FILE* file)
{
    static auto* const real = reinterpret_cast<decltype(fwrite)*>(dlsym(RTLD_NEXT, "fwrite"));
    if (g_nextWriteTakes < 0)
        return real(buf, size, count, file);
    const auto most = static_cast<size_t>(g_nextWriteTakes);
    g_nextWriteTakes = -1;
    return real(buf, size, most < count ? most : count, file);
}

namespace {

const std::wstring kWriteError = L"Write file error!";
constexpr std::size_t kCached = 10000;

// Every byte tells its place, so that one lost or written twice is seen.
std::string pattern(std::size_t size)
{
    std::string bytes(size, '\0');
    for (std::size_t i = 0; i < size; ++i)
        bytes[i] = static_cast<char>(i % 251);
    return bytes;
}

// A stream whose cache holds kCached bytes, of which the next write takes `GetParam()`.
class ShortWrite : public testing::TestWithParam<int> {
protected:
    void SetUp() override
    {
        m_file = openOut(m_files.wide("a"));
        write(*m_file, m_text);
        g_nextWriteTakes = GetParam();
    }
    void TearDown() override { g_nextWriteTakes = -1; }

    void expectOnDisk(const std::string& expected) const { EXPECT_TRUE(m_files.get("a") == expected); }

    TestFiles m_files;
    const std::string m_text = pattern(kCached);
    Opened<TvFileOStreamBuf> m_file;
};

TEST_P(ShortWrite, LeavesTheBeginningInTheFileAndTheCursorBehindTheCache)
{
    EXPECT_EQ(thrownBy([&] { m_file->flush(); }), kWriteError);
    expectOnDisk(m_text.substr(0, static_cast<std::size_t>(GetParam())));
    EXPECT_EQ(m_file->tell(), kCached);
    EXPECT_EQ(m_file->length(), kCached);
}

TEST_P(ShortWrite, FlushAgainWritesTheRest)
{
    EXPECT_EQ(thrownBy([&] { m_file->flush(); }), kWriteError);
    EXPECT_EQ(thrownBy([&] { m_file->flush(); }), L"nothing");
    expectOnDisk(m_text);
    EXPECT_EQ(m_file->tell(), kCached);
    EXPECT_EQ(thrownBy([&] { m_file->close(); }), L"nothing");
    expectOnDisk(m_text);
}

TEST_P(ShortWrite, CloseWritesTheRest)
{
    EXPECT_EQ(thrownBy([&] { m_file->flush(); }), kWriteError);
    EXPECT_EQ(thrownBy([&] { m_file->close(); }), L"nothing");
    expectOnDisk(m_text);
}

TEST_P(ShortWrite, TheDestructorWritesTheRest)
{
    EXPECT_EQ(thrownBy([&] { m_file->flush(); }), kWriteError);
    m_file.stream.reset();
    expectOnDisk(m_text);
}

TEST_P(ShortWrite, SeekAgainWritesTheRest)
{
    EXPECT_EQ(thrownBy([&] { m_file->seek(5, TvIO::kSeekFromStart); }), kWriteError);
    EXPECT_EQ(thrownBy([&] { m_file->seek(5, TvIO::kSeekFromStart); }), L"nothing");
    EXPECT_EQ(m_file->tell(), 5u);
    expectOnDisk(m_text);
}

TEST_P(ShortWrite, ReadAgainWritesTheRest)
{
    unsigned char b = 0;
    EXPECT_EQ(thrownBy([&] { m_file->getBytes(0, &b, 1); }), kWriteError);
    EXPECT_EQ(thrownBy([&] { m_file->getBytes(7, &b, 1); }), L"nothing");
    EXPECT_EQ(b, 7);
    expectOnDisk(m_text);
}

TEST_P(ShortWrite, WhatIsWrittenNextStandsBehindTheRest)
{
    EXPECT_EQ(thrownBy([&] { m_file->flush(); }), kWriteError);
    write(*m_file, "and more");
    EXPECT_EQ(m_file->tell(), kCached + 8);
    m_file->close();
    expectOnDisk(m_text + "and more");
}

TEST_P(ShortWrite, APieceThatOverflowsTheCacheIsNotTakenUntilTheRestIsWritten)
{
    const std::string piece(kCached, 'p');
    EXPECT_EQ(thrownBy([&] { write(*m_file, piece); }), kWriteError);
    EXPECT_EQ(m_file->tell(), kCached);
    EXPECT_EQ(thrownBy([&] { write(*m_file, piece); }), L"nothing");
    m_file->close();
    expectOnDisk(m_text + piece);
}

TEST_P(ShortWrite, ALargePieceIsNotTakenUntilTheRestIsWritten)
{
    const std::string piece(20000, 'p');
    EXPECT_EQ(thrownBy([&] { write(*m_file, piece); }), kWriteError);
    EXPECT_EQ(m_file->tell(), kCached);
    EXPECT_EQ(thrownBy([&] { write(*m_file, piece); }), L"nothing");
    m_file->close();
    expectOnDisk(m_text + piece);
}

TEST_P(ShortWrite, MayBeFollowedByAnother)
{
    EXPECT_EQ(thrownBy([&] { m_file->flush(); }), kWriteError);
    g_nextWriteTakes = GetParam() / 2;
    const bool isAnother = GetParam() / 2 < static_cast<int>(kCached) - GetParam();
    EXPECT_EQ(thrownBy([&] { m_file->flush(); }), isAnother ? kWriteError : L"nothing");
    EXPECT_EQ(m_file->tell(), kCached);
    EXPECT_EQ(thrownBy([&] { m_file->flush(); }), L"nothing");
    expectOnDisk(m_text);
}

TEST_P(ShortWrite, InCloseIsToldAndTheStreamStartsAnew)
{
    EXPECT_EQ(thrownBy([&] { m_file->close(); }), kWriteError);
    expectOnDisk(m_text.substr(0, static_cast<std::size_t>(GetParam())));
    ASSERT_EQ(m_file->open(m_files.wide("b").c_str(), kBoth, TvIO::kShareDenyNone, TvIO::kCreateAlways),
              Orna::eOk);
    write(*m_file, "new");
    m_file->close();
    EXPECT_EQ(m_files.get("b"), "new");
}

INSTANTIATE_TEST_SUITE_P(Takes, ShortWrite, testing::Values(0, 1, 4999, 9999));

TEST(RetriedWrite, ALargePieceCutShortIsToldAndTheCursorTellsHowFarItCame)
{
    TestFiles files;
    const std::string text = pattern(30000);
    const auto file = openOut(files.wide("a"));
    g_nextWriteTakes = 12345;
    EXPECT_EQ(thrownBy([&] { write(*file, text); }), kWriteError);
    ASSERT_EQ(file->tell(), 12345u);
    write(*file, text.substr(12345));
    file->close();
    EXPECT_TRUE(files.get("a") == text);
}

// The C library remembers an error of the system, so every later write is told as one. All the
// same the file has each byte once.
TEST(RetriedWrite, AfterAFullDiskTheRestIsWrittenOnceThereIsRoom)
{
    TestFiles files;
    const std::string text = pattern(kCached);
    const int result = inOtherProcess([&] {
        std::signal(SIGXFSZ, SIG_IGN);
        struct rlimit limit = {};
        getrlimit(RLIMIT_FSIZE, &limit);
        const rlim_t unlimited = limit.rlim_cur;
        const auto file = openOut(files.wide("a"));
        write(*file, text);
        limit.rlim_cur = 4000;
        setrlimit(RLIMIT_FSIZE, &limit);
        if (thrownBy([&] { file->flush(); }) != kWriteError || file->tell() != kCached)
            return 1;
        limit.rlim_cur = unlimited;
        setrlimit(RLIMIT_FSIZE, &limit);
        if (thrownBy([&] { file->flush(); }) != kWriteError || file->tell() != kCached)
            return 2;
        return thrownBy([&] { file->close(); }) == L"nothing" ? 0 : 3;
    });
    EXPECT_EQ(result, 0);
    EXPECT_TRUE(files.get("a") == text);
}

} // namespace

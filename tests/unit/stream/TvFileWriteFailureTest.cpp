// Full disks and size limits: what was given to a stream is never lost without a word.

#include "TvFileStreamBuf.h"

#include "Child.h"
#include "FileStreams.h"
#include "OpenDescriptors.h"
#include "TestFiles.h"

#include <gtest/gtest.h>

#include <csignal>
#include <string>

#include <sys/resource.h>

namespace {

const std::wstring kWriteError = L"Write file error!";

Opened<TvFileStreamBufImpl> fullDisk() { return openFile(L"/dev/full"); }

Opened<TvFileOStreamBuf> cachedFullDisk()
{
    return openOut(L"/dev/full", kBoth, TvIO::kShareDenyNone, TvIO::kOpenExisting);
}

TEST(FullDisk, SmallWriteIsToldByClose)
{
    const auto file = fullDisk();
    EXPECT_EQ(thrownBy([&] { write(*file, "hello"); }), L"nothing"); // held back by the C library
    EXPECT_EQ(thrownBy([&] { file->close(); }), kWriteError);
}

TEST(FullDisk, LargeWriteIsToldAtOnce)
{
    const auto file = fullDisk();
    EXPECT_EQ(thrownBy([&] { write(*file, std::string(100000, 'x')); }), kWriteError);
}

TEST(FullDisk, WriteThatFailedMakesTheNextOneFail)
{
    const auto file = fullDisk();
    thrownBy([&] { write(*file, std::string(100000, 'x')); });
    EXPECT_EQ(thrownBy([&] { write(*file, ""); }), kWriteError);
}

TEST(FullDisk, CloseReleasesEverythingBeforeItThrows)
{
    const int before = openDescriptors();
    const auto file = openExclusively(L"/dev/full");
    ASSERT_EQ(file.status, Orna::eOk);
    write(*file, "hello");
    EXPECT_EQ(thrownBy([&] { file->close(); }), kWriteError);
    EXPECT_FALSE(hasFile(*file));
    EXPECT_EQ(file->fileName(), nullptr);
    EXPECT_TRUE(TvFileStreamBufImpl::m_cstrAlreadyOpenFiles.empty());
    EXPECT_EQ(openDescriptors(), before);
    EXPECT_EQ(thrownBy([&] { file->close(); }), L"nothing");
}

TEST(FullDisk, DestructorKeepsQuiet)
{
    const int before = openDescriptors();
    {
        const auto file = fullDisk();
        write(*file, "hello");
    }
    EXPECT_EQ(openDescriptors(), before);
}

TEST(FullDisk, ReopenTellsThatTheLastBytesAreLost)
{
    TestFiles files;
    const auto file = fullDisk();
    write(*file, "hello");
    EXPECT_EQ(thrownBy([&] {
                  file->open(files.put("a", "").c_str(), kBoth, TvIO::kShareDenyNone, TvIO::kOpenExisting);
              }),
              kWriteError);
    EXPECT_FALSE(hasFile(*file));
}

TEST(FullDisk, CachedWriteIsToldByClose)
{
    const auto file = cachedFullDisk();
    write(*file, "hello");
    EXPECT_EQ(thrownBy([&] { file->close(); }), kWriteError);
    EXPECT_FALSE(hasFile(*file));
    EXPECT_EQ(thrownBy([&] { file->close(); }), L"nothing");
}

TEST(FullDisk, CachedWriteIsToldByTheWriteThatOverflowsTheCache)
{
    const auto file = cachedFullDisk();
    write(*file, std::string(16384, 'x'));
    EXPECT_EQ(thrownBy([&] { write(*file, "y"); }), kWriteError);
    EXPECT_EQ(thrownBy([&] { file->close(); }), kWriteError);
}

TEST(FullDisk, CachedWriteIsToldByFlushSeekAndReads)
{
    const auto file = cachedFullDisk();
    write(*file, "hello");
    unsigned char b = 0;
    EXPECT_EQ(thrownBy([&] { file->flush(); }), kWriteError);
    EXPECT_EQ(thrownBy([&] { file->seek(0, TvIO::kSeekFromStart); }), kWriteError);
    EXPECT_EQ(thrownBy([&] { file->readBytes(&b, 1); }), kWriteError);
    EXPECT_EQ(thrownBy([&] { file->getBytes(&b, 1); }), kWriteError);
    EXPECT_EQ(thrownBy([&] { file->getBytes(0, &b, 1); }), kWriteError);
    EXPECT_EQ(thrownBy([&] { file->setBytes(bytesOf("longer than the cache"), 21); }), kWriteError);
    EXPECT_EQ(thrownBy([&] { file->close(); }), kWriteError);
}

TEST(FullDisk, SetBytesThrowsAndDoesNotEndTheProcess)
{
    const auto file = fullDisk();
    EXPECT_NE(thrownBy([&] { file->setBytes(bytesOf("hello"), 5); }), L"nothing");
    const auto cached = cachedFullDisk();
    EXPECT_EQ(thrownBy([&] { cached->setBytes(bytesOf("hello"), 5); }), kWriteError);
}

TEST(FullDisk, CachedDestructorKeepsQuiet)
{
    const int before = openDescriptors();
    {
        const auto file = cachedFullDisk();
        write(*file, "hello");
    }
    EXPECT_EQ(openDescriptors(), before);
}

TEST(FullDisk, LargeCachedWriteIsToldAtOnce)
{
    const auto file = cachedFullDisk();
    EXPECT_EQ(thrownBy([&] { write(*file, std::string(16385, 'x')); }), kWriteError);
}

TEST(FullDisk, StreamIsUsableForAnotherFileAfterwards)
{
    TestFiles files;
    const auto file = cachedFullDisk();
    write(*file, "lost");
    EXPECT_EQ(thrownBy([&] { file->close(); }), kWriteError);
    ASSERT_EQ(file->open(files.wide("a").c_str(), kBoth, TvIO::kShareDenyNone, TvIO::kCreateAlways),
              Orna::eOk);
    write(*file, "kept");
    EXPECT_EQ(thrownBy([&] { file->close(); }), L"nothing");
    EXPECT_EQ(files.get("a"), "kept");
}

// A process whose files may not pass `limit` bytes.
template<class Body>
int withSizeLimit(rlim_t limit, Body body)
{
    return inOtherProcess([&] {
        std::signal(SIGXFSZ, SIG_IGN);
        const struct rlimit size = {limit, limit};
        if (setrlimit(RLIMIT_FSIZE, &size) != 0)
            return 99;
        return body() ? 0 : 1;
    });
}

TEST(SizeLimit, UncachedWriteUpToTheLimitSucceedsAndMoreIsTold)
{
    TestFiles files;
    EXPECT_EQ(withSizeLimit(10000,
                            [&] {
                                const auto file = openFile(files.wide("a"));
                                write(*file, std::string(10000, 'x'));
                                write(*file, "y");
                                return thrownBy([&] { file->close(); }) == kWriteError;
                            }),
              0);
    EXPECT_EQ(files.get("a"), std::string(10000, 'x'));
}

TEST(SizeLimit, CachedWriteUpToTheLimitSucceeds)
{
    TestFiles files;
    EXPECT_EQ(withSizeLimit(20000,
                            [&] {
                                const auto file = openOut(files.wide("a"));
                                for (int i = 0; i < 10; ++i)
                                    write(*file, std::string(2000, 'x'));
                                return thrownBy([&] { file->close(); }) == L"nothing";
                            }),
              0);
    EXPECT_EQ(files.get("a").size(), 20000u);
}

TEST(SizeLimit, CachedWriteBeyondTheLimitIsTold)
{
    TestFiles files;
    EXPECT_EQ(withSizeLimit(20000,
                            [&] {
                                const auto file = openOut(files.wide("a"));
                                for (int i = 0; i < 10; ++i)
                                    write(*file, std::string(2000, 'x'));
                                write(*file, "y");
                                return thrownBy([&] { file->close(); }) == kWriteError;
                            }),
              0);
    EXPECT_EQ(files.get("a").size(), 20000u);
}

TEST(SizeLimit, FirstFailureOfTheCacheIsToldByTheWrite)
{
    TestFiles files;
    EXPECT_EQ(withSizeLimit(1000,
                            [&] {
                                const auto file = openOut(files.wide("a"));
                                write(*file, std::string(16384, 'x'));
                                return thrownBy([&] { write(*file, "y"); }) == kWriteError;
                            }),
              0);
}

} // namespace

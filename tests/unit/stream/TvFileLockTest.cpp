// Record locks, seen by real second processes.

#include "TvFileStreamBuf.h"

#include "Child.h"
#include "FileStreams.h"
#include "TestFiles.h"
#include "TestScale.h"

#include <gtest/gtest.h>

#include <string>

#include <fcntl.h>
#include <sched.h>
#include <unistd.h>

namespace {

class TvFileLock : public testing::Test {
protected:
    // The type of lock that another process holds, as a third one would see it; F_UNLCK for none.
    short lockSeenFromOutside() const
    {
        return static_cast<short>(inOtherProcess([&] {
            const int descriptor = open(files.path("a").c_str(), O_RDWR);
            struct flock lock = {};
            lock.l_type = F_WRLCK;
            lock.l_whence = SEEK_SET;
            fcntl(descriptor, F_GETLK, &lock);
            return static_cast<int>(lock.l_type);
        }));
    }

    // The status of an exclusive open in another process.
    int exclusiveOpenElsewhere() const
    {
        return inOtherProcess([&] {
            const auto file = openExclusively(files.wide("a"));
            return file.status == Orna::eFileLocked ? 33 : static_cast<int>(file.status);
        });
    }

    TestFiles files;
    const std::wstring name = files.put("a", "text");
    static constexpr int kLocked = 33; // 433 does not fit a process's result
};

TEST_F(TvFileLock, EveryOpenForReadingTakesASharedLock)
{
    const auto file = openFile(name, kRead, TvIO::kShareDenyNone, TvIO::kOpenExisting);
    EXPECT_EQ(lockSeenFromOutside(), F_RDLCK);
}

TEST_F(TvFileLock, ReadStreamTakesASharedLock)
{
    const auto file = openIn(name);
    EXPECT_EQ(lockSeenFromOutside(), F_RDLCK);
}

TEST_F(TvFileLock, OpenForWritingOnlyTakesNone)
{
    const auto file = openFile(name, kWrite, TvIO::kShareDenyNone, TvIO::kCreateAlways);
    ASSERT_EQ(file.status, Orna::eOk);
    EXPECT_EQ(lockSeenFromOutside(), F_UNLCK);
}

TEST_F(TvFileLock, ExclusiveOpenTakesASharedLock)
{
    const auto file = openExclusively(name);
    EXPECT_EQ(lockSeenFromOutside(), F_RDLCK);
}

TEST_F(TvFileLock, CloseEndsTheLock)
{
    const auto file = openExclusively(name);
    file->close();
    EXPECT_EQ(lockSeenFromOutside(), F_UNLCK);
}

TEST_F(TvFileLock, ExclusiveOpenMeetsAReaderElsewhere)
{
    const auto reader = openIn(name);
    EXPECT_EQ(exclusiveOpenElsewhere(), kLocked);
}

TEST_F(TvFileLock, ExclusiveOpenMeetsAnExclusiveOneElsewhere)
{
    const auto owner = openExclusively(name);
    EXPECT_EQ(exclusiveOpenElsewhere(), kLocked);
}

TEST_F(TvFileLock, ExclusiveOpenSucceedsOnceTheOtherHasClosed)
{
    const auto owner = openExclusively(name);
    owner->close();
    EXPECT_EQ(exclusiveOpenElsewhere(), 0);
}

TEST_F(TvFileLock, RefusedExclusiveOpenLeavesNothingBehind)
{
    Child other([&](Child::Gate& gate) {
        const auto reader = openIn(name);
        gate.reached();
        return 0;
    });
    ASSERT_TRUE(other.waitUntilReached());
    const auto refused = openExclusively(name);
    EXPECT_EQ(refused.status, Orna::eFileLocked);
    EXPECT_EQ(refused->fileHandle(), nullptr);
    EXPECT_EQ(refused->fileName(), nullptr);
    EXPECT_TRUE(TvFileStreamBufImpl::m_cstrAlreadyOpenFiles.empty());
    other.resume();
    EXPECT_EQ(other.result(), 0);
    EXPECT_EQ(openExclusively(name).status, Orna::eOk);
}

TEST_F(TvFileLock, ExclusiveOpenMeetsAForeignWriteLock)
{
    Child other([&](Child::Gate& gate) {
        const int descriptor = open(files.path("a").c_str(), O_RDWR);
        struct flock lock = {};
        lock.l_type = F_WRLCK;
        lock.l_whence = SEEK_SET;
        lock.l_start = 2;
        lock.l_len = 1;
        if (fcntl(descriptor, F_SETLK, &lock) != 0)
            return 1;
        gate.reached();
        return 0;
    });
    ASSERT_TRUE(other.waitUntilReached());
    EXPECT_EQ(openExclusively(name).status, Orna::eFileLocked);
    EXPECT_EQ(openFile(name, kBoth, TvIO::kShareDenyNone, TvIO::kOpenExisting).status, Orna::eOk);
    other.resume();
}

TEST_F(TvFileLock, LockElsewhereIsToldBeforeTheOwnExclusiveOpen)
{
    const auto own = openExclusively(name);
    Child other([&](Child::Gate& gate) {
        const auto reader = openIn(name);
        gate.reached();
        return 0;
    });
    ASSERT_TRUE(other.waitUntilReached());
    EXPECT_EQ(openExclusively(name).status, Orna::eFileLocked);
    other.resume();
    EXPECT_EQ(other.result(), 0);
    EXPECT_EQ(openExclusively(name).status, Orna::eFileNotFound);
}

TEST_F(TvFileLock, OwnerThatDiesLetsGo)
{
    Child other([&](Child::Gate& gate) {
        const auto owner = openExclusively(name);
        gate.reached();
        _exit(7); // no destructor runs
        return 0;
    });
    ASSERT_TRUE(other.waitUntilReached());
    EXPECT_EQ(openExclusively(name).status, Orna::eFileLocked);
    other.resume();
    EXPECT_EQ(other.result(), 7);
    EXPECT_EQ(openExclusively(name).status, Orna::eOk);
}

// Several processes open, write their mark, read it back and close, over and over: whoever
// holds the file finds only what he wrote himself. Nobody is promised a turn.
TEST_F(TvFileLock, TwoProcessesNeverBothSucceed)
{
    constexpr int kNeverWon = 2;
    const auto fight = [&](char mark) {
        int won = 0;
        for (long i = 0; i < scaled(3000); ++i) {
            const auto file = openExclusively(name);
            if (file.status != Orna::eOk)
                continue;
            ++won;
            write(*file, std::string(4, mark));
            file->rewind();
            sched_yield();
            if (read(*file, 4) != std::string(4, mark))
                return 1;
        }
        return won > 0 ? 0 : kNeverWon;
    };
    Child a([&](Child::Gate&) { return fight('a'); });
    Child b([&](Child::Gate&) { return fight('b'); });
    Child c([&](Child::Gate&) { return fight('c'); });
    for (const int result : {a.result(), b.result(), c.result()})
        EXPECT_TRUE(result == 0 || result == kNeverWon) << result;
}

TEST_F(TvFileLock, DeletedFileStaysReadableToItsReader)
{
    const auto reader = openIn(name);
    EXPECT_EQ(inOtherProcess([&] { return unlink(files.path("a").c_str()); }), 0);
    EXPECT_EQ(read(*reader, 4), "text");
    EXPECT_EQ(openIn(name).status, Orna::eFileNotFound);
}

TEST_F(TvFileLock, DeletedFileStaysWritableToItsWriterWithoutAFailure)
{
    const auto writer = openOut(name);
    unlink(files.path("a").c_str());
    write(*writer, "more");
    EXPECT_EQ(thrownBy([&] { writer->close(); }), L"nothing");
}

} // namespace

// Record locks of a file server whose answer is interrupted.
#include "TvFileStreamBuf.h"

#include "Child.h"
#include "FileStreams.h"
#include "TestFiles.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <string>

#include <dlfcn.h>
#include <fcntl.h>
#include <unistd.h>

namespace {

int g_interruptions = 0; // that are still to come

} // namespace

extern "C" int fcntl(int descriptor, int command, ...)
{
    static auto* const real = reinterpret_cast<int (*)(int, int, ...)>(dlsym(RTLD_NEXT, "fcntl"));
    va_list arguments;
    va_start(arguments, command);
    void* const argument = va_arg(arguments, void*);
    va_end(arguments);
    if ((command == F_GETLK || command == F_SETLK) && g_interruptions > 0) {
        --g_interruptions;
        errno = EINTR;
        return -1;
    }
    return real(descriptor, command, argument);
}

namespace {

class InterruptedLock : public testing::Test {
protected:
    void TearDown() override { EXPECT_EQ(g_interruptions, 0); }

    TestFiles files;
    const std::wstring name = files.put("a", "text");
};

TEST_F(InterruptedLock, IsSeenAllTheSame)
{
    Child other([&](Child::Gate& gate) {
        const auto reader = openIn(name);
        gate.reached();
        return 0;
    });
    ASSERT_TRUE(other.waitUntilReached());
    g_interruptions = 3;
    EXPECT_EQ(openExclusively(name).status, Orna::eFileLocked);
    other.resume();
}

TEST_F(InterruptedLock, IsTakenAllTheSame)
{
    g_interruptions = 3;
    const auto reader = openIn(name);
    EXPECT_EQ(inOtherProcess([&] { return openExclusively(name).status == Orna::eFileLocked ? 0 : 1; }), 0);
}

TEST_F(InterruptedLock, GoesAllTheSame)
{
    const auto owner = openExclusively(name);
    const int copy = dup(fileno(static_cast<std::FILE*>(owner->fileHandle())));
    g_interruptions = 3;
    owner->close();
    EXPECT_EQ(inOtherProcess([&] { return openExclusively(name).status == Orna::eOk ? 0 : 1; }), 0);
    ::close(copy);
}

} // namespace

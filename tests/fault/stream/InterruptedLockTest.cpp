// Record locks of a file server whose answer is interrupted, or whose lock another process
// overtakes.
#include "TvFileStreamBuf.h"

#include "Child.h"
#include "FileStreams.h"
#include "TestFiles.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <functional>
#include <string>
#include <utility>

#include <dlfcn.h>
#include <fcntl.h>
#include <unistd.h>

namespace {

int g_interruptions = 0; // that are still to come
std::function<void()> g_beforeNextLock;

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
    if (command == F_SETLK && g_beforeNextLock)
        std::exchange(g_beforeNextLock, nullptr)();
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

TEST(OvertakenLock, UndoesTheExclusiveOpen)
{
    const TestFiles files;
    const std::wstring name = files.put("a", "text");
    Child other([&](Child::Gate& gate) {
        gate.reached();
        const auto reader = openIn(name);
        gate.reached();
        return 0;
    });
    ASSERT_TRUE(other.waitUntilReached());
    g_beforeNextLock = [&] {
        other.resume();
        EXPECT_TRUE(other.waitUntilReached());
    };
    const auto file = openExclusively(name);
    EXPECT_FALSE(g_beforeNextLock);
    EXPECT_EQ(file.status, Orna::eFileLocked);
    EXPECT_FALSE(hasFile(*file));
    EXPECT_TRUE(TvFileStreamBufImpl::m_cstrAlreadyOpenFiles.empty());
    other.resume();
    EXPECT_EQ(other.result(), 0);
    EXPECT_EQ(openExclusively(name).status, Orna::eOk);
}

} // namespace

// The output engine when there is no memory for its numbered arguments.
#include "TvFormat.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdlib>

// The address sanitizer keeps its own malloc, which does not fail.
#if !defined(__SANITIZE_ADDRESS__)

namespace {

bool g_noMemory = false;
long g_liveBlocks = 0;

// Memory is refused for the length of one call.
class NoMemory {
public:
    NoMemory() { g_noMemory = true; }
    ~NoMemory() { g_noMemory = false; }
};

} // namespace

// The program stands in front of the C library.
extern "C" {
void* __libc_malloc(std::size_t size);
void __libc_free(void* block);

__attribute__((visibility("default"))) void* malloc(std::size_t size)
{
    void* const block = g_noMemory ? nullptr : __libc_malloc(size);
    g_liveBlocks += block != nullptr;
    return block;
}

__attribute__((visibility("default"))) void free(void* block)
{
    g_liveBlocks -= block != nullptr;
    __libc_free(block);
}
}

namespace {

TEST(FormatFault, WithoutMemoryNumberedArgumentsFail)
{
    wchar_t buffer[40] = L"####";
    int result = 0;
    {
        const NoMemory none;
        result = FormatUtil::outputStringWithFormat(buffer, 40, L"ab%2$d%1$s", L"x", 7);
    }
    EXPECT_EQ(result, -1);
    EXPECT_STREQ(buffer, L"");
}

TEST(FormatFault, ManyRecordsFailTheSameWay)
{
    wchar_t buffer[40] = L"####";
    int result = 0;
    {
        const NoMemory none;
        result = FormatUtil::outputStringWithFormat(buffer, 40, L"%4096$d", 7);
    }
    EXPECT_EQ(result, -1);
    EXPECT_STREQ(buffer, L"");
}

TEST(FormatFault, PlainFormatsNeedNoMemory)
{
    wchar_t buffer[80];
    int result = 0;
    {
        const NoMemory none;
        result =
            FormatUtil::outputStringWithFormat(buffer, 80, L"%d %.2d %s %f %.20q0", 7, 5, L"x", 1.5, 2.5);
    }
    EXPECT_EQ(result, 24);
    EXPECT_STREQ(buffer, L"7 0.05 x 1.500000 2.5000");
}

TEST(FormatFault, RecordsAreReleasedOnEveryWayOut)
{
    wchar_t buffer[4];
    const long before = g_liveBlocks;
    EXPECT_EQ(FormatUtil::outputStringWithFormat(buffer, 4, L"%4096$d", 7), 1);
    EXPECT_EQ(FormatUtil::outputStringWithFormat(buffer, 4, L"%4096$5d", 7), -1);
    EXPECT_EQ(FormatUtil::outputStringWithFormat(buffer, 4, L"%4096$dlong", 7), 0);
    EXPECT_EQ(g_liveBlocks, before);
}

} // namespace

#endif

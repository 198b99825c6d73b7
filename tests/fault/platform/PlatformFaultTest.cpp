#include "TvPlatformBase.h"

#include "FailNth.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cwchar>

namespace {

int count(const wchar_t* format, ...)
{
    va_list args;
    va_start(args, format);
    const int length = _vscwprintf(format, args);
    va_end(args);
    return length;
}

TEST(WideFormatFault, EachAllocationMayFailAndGivesAnEmptyText)
{
    static wchar_t buffer[4000];
    for (int nth = 1;; ++nth) {
        const HeapBalance balance;
        int length, error;
        bool fired;
        {
            const FailNth fail(FailNth::Malloc, nth);
            errno = 0;
            length = swprintf(buffer, L"%.3000f", 1 / 3.0);
            error = errno;
            fired = fail.fired();
        }
        if (!fired) {
            EXPECT_EQ(length, 3002);
            ASSERT_GT(nth, 1);
            break;
        }
        EXPECT_EQ(length, -1) << nth;
        EXPECT_EQ(error, ENOMEM) << nth;
        EXPECT_EQ(buffer[0], L'\0') << nth;
    }
}

TEST(WideFormatFault, CountingFailsLikeFormatting)
{
    const HeapBalance balance;
    int length;
    {
        const FailNth fail(FailNth::Malloc, 1, FailNth::FromThenOn);
        length = count(L"%.3000f", 1 / 3.0);
    }
    EXPECT_EQ(length, -1);
    EXPECT_EQ(count(L"%.3000f", 1 / 3.0), 3002);
}

// Numbers, names and paths allocate nothing, so no failure can reach them.
TEST(PlatformFault, NothingElseAllocates)
{
    tvPlatformSetACP(936);
    wchar_t drive[4], dir[32], fname[32], ext[8], text[64];
    char name[64];
    _wtof(L"1.5"); // the first call looks up the C locale
    bool fired;
    int failures = 0;
    {
        const FailNth fail(FailNth::Malloc, 1, FailNth::FromThenOn);
        failures += _wtoi(L"42") != 42;
        failures += _wtof(L"2.5") != 2.5;
        failures += _wsplitpath_s(L"C:\\a\\b.c", drive, 4, dir, 32, fname, 32, ext, 8) != 0;
        failures += _waccess(L"/", 0) != 0;
        failures += tvPlatformFileName(L"\x56FE", name, sizeof name) != 3;
        failures += swprintf(text, L"%d %s %.3f %hs", 1, L"a", 2.5, "b") != 11;
        failures += _mbslen(reinterpret_cast<const unsigned char*>("\xD6\xD0")) != 1;
        fired = fail.fired();
    }
    tvPlatformSetACP(0);
    EXPECT_EQ(failures, 0);
    EXPECT_FALSE(fired);
}

} // namespace

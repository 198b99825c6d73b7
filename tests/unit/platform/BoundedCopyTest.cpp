#include "TvPlatformBase.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <string>

namespace {

struct BoundedCopy : testing::Test {
    char bytes[6] = {'.', '.', '.', '.', '.', '.'};
    wchar_t wide[6] = {L'.', L'.', L'.', L'.', L'.', L'.'};

    std::string text() const { return std::string(bytes, sizeof bytes); }
    std::wstring wideText() const { return std::wstring(wide, 6); }
    void SetUp() override { errno = 0; }
};

TEST_F(BoundedCopy, CopiesThatManyBytes)
{
    EXPECT_EQ(memcpy_s(bytes, 6, "abcdef", 3), 0);
    EXPECT_EQ(text(), "abc...");
    EXPECT_EQ(errno, 0);
}

TEST_F(BoundedCopy, AFullBufferIsEnough)
{
    EXPECT_EQ(memcpy_s(bytes, 6, "abcdef", 6), 0);
    EXPECT_EQ(text(), "abcdef");
}

TEST_F(BoundedCopy, OneByteTooManyZeroesTheBuffer)
{
    EXPECT_EQ(memcpy_s(bytes, 5, "abcdef", 6), ERANGE);
    EXPECT_EQ(text(), std::string("\0\0\0\0\0.", 6));
    EXPECT_EQ(errno, ERANGE);
}

TEST_F(BoundedCopy, NullSourceZeroesTheBuffer)
{
    EXPECT_EQ(memcpy_s(bytes, 4, nullptr, 2), EINVAL);
    EXPECT_EQ(text(), std::string("\0\0\0\0..", 6));
    EXPECT_EQ(errno, EINVAL);
}

TEST_F(BoundedCopy, NullDestinationIsInvalid) { EXPECT_EQ(memcpy_s(nullptr, 4, "abcd", 2), EINVAL); }

TEST_F(BoundedCopy, NothingToCopyAlwaysSucceeds)
{
    EXPECT_EQ(memcpy_s(nullptr, 0, nullptr, 0), 0);
    EXPECT_EQ(memcpy_s(bytes, 6, nullptr, 0), 0);
    EXPECT_EQ(text(), "......");
}

TEST_F(BoundedCopy, AHugeCountDoesNotFit)
{
    EXPECT_EQ(memcpy_s(bytes, 6, "abcdef", SIZE_MAX), ERANGE);
    EXPECT_EQ(text(), std::string(6, '\0'));
}

TEST_F(BoundedCopy, WideSizesAreCharacters)
{
    EXPECT_EQ(wmemcpy_s(wide, 6, L"abcdef", 6), 0);
    EXPECT_EQ(wideText(), L"abcdef");
}

TEST_F(BoundedCopy, OneCharacterTooManyZeroesTheWideBuffer)
{
    EXPECT_EQ(wmemcpy_s(wide, 2, L"abcdef", 3), ERANGE);
    EXPECT_EQ(wideText(), std::wstring(L"\0\0....", 6));
}

TEST_F(BoundedCopy, WideNullSourceZeroesTheBuffer)
{
    EXPECT_EQ(wmemcpy_s(wide, 2, nullptr, 1), EINVAL);
    EXPECT_EQ(wideText(), std::wstring(L"\0\0....", 6));
}

TEST_F(BoundedCopy, WideNullDestinationIsInvalid) { EXPECT_EQ(wmemcpy_s(nullptr, 2, L"ab", 1), EINVAL); }

TEST_F(BoundedCopy, ACountWhoseBytesWrapDoesNotFit)
{
    EXPECT_EQ(wmemcpy_s(wide, 6, L"abcdef", SIZE_MAX / sizeof(wchar_t) + 2), ERANGE);
    EXPECT_EQ(wideText(), std::wstring(6, L'\0'));
}

} // namespace

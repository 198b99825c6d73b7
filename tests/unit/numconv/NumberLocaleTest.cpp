// The point is a point where the locale of the process has a comma.
#include "TvNumber.h"

#include "TvAlloc.h"

#include "NumberText.h"
#include "ScopedLocale.h"
#include "TempDir.h"

#include <gtest/gtest.h>

#include <clocale>
#include <memory>
#include <string>

namespace {

// The locale is compiled once for all tests, because that takes seconds.
class NumberInALocaleWithAComma : public testing::Test {
protected:
    static void SetUpTestSuite()
    {
        s_folder = std::make_unique<TempDir>();
        s_locale = std::make_unique<ScopedLocale>(s_folder->path(), "de_DE", "UTF-8");
    }
    static void TearDownTestSuite()
    {
        s_locale.reset();
        s_folder.reset();
    }
    void SetUp() override
    {
        if (!s_locale->ok())
            GTEST_SKIP() << "no locale sources on this machine";
        ASSERT_STREQ(std::localeconv()->decimal_point, ",");
    }

private:
    static inline std::unique_ptr<TempDir> s_folder;
    static inline std::unique_ptr<ScopedLocale> s_locale;
};

std::string narrowed(wchar_t* owned)
{
    const std::wstring wide = owned;
    _tvFree(owned);
    return std::string(wide.begin(), wide.end());
}

TEST_F(NumberInALocaleWithAComma, NarrowTextIsReadWithAPoint)
{
    const char text[] = "-1234.5";
    char* end = nullptr;
    EXPECT_EQ(tvStrToD(text, &end), -1234.5);
    EXPECT_EQ(end, text + 7);
}

TEST_F(NumberInALocaleWithAComma, WideTextIsReadWithAPoint)
{
    const wchar_t text[] = L"-1234.5";
    wchar_t* end = nullptr;
    EXPECT_EQ(tvStrToD(text, &end), -1234.5);
    EXPECT_EQ(end, text + 7);
}

TEST_F(NumberInALocaleWithAComma, LongTextIsReadWithAPoint)
{
    const std::string text = "9007199254740993.0000000000000000000000000000000001";
    EXPECT_EQ(tvStrToD(text.c_str(), nullptr), 9007199254740994.0);
    const std::wstring wide(text.begin(), text.end());
    EXPECT_EQ(tvStrToD(wide.c_str(), nullptr), 9007199254740994.0);
}

TEST_F(NumberInALocaleWithAComma, CommaEndsANumber)
{
    const char text[] = "1,5";
    char* end = nullptr;
    EXPECT_EQ(tvStrToD(text, &end), 1.0);
    EXPECT_EQ(end, text + 1);
    const wchar_t wide[] = L"1,5";
    wchar_t* wideEnd = nullptr;
    EXPECT_EQ(tvStrToD(wide, &wideEnd), 1.0);
    EXPECT_EQ(wideEnd, wide + 1);
}

TEST_F(NumberInALocaleWithAComma, DigitsOfEveryModeAreTheSame)
{
    for (int mode = 0; mode <= 9; ++mode)
        EXPECT_EQ(dtoaText(-12.375, mode, 5), "-12375@2") << "mode " << mode;
}

TEST_F(NumberInALocaleWithAComma, NarrowTextIsWrittenWithAPoint)
{
    char out[400];
    tvFltToF(out, 1234.5, 2);
    EXPECT_STREQ(out, "1234.50");
    tvFltToE(out, 1234.5, 3, 'e');
    EXPECT_STREQ(out, "1.234e+003");
    tvFltToG(out, 1234.5, 6, 'e', 0);
    EXPECT_STREQ(out, "1234.5");
    tvFltToF(out, 1e300 / 3, 1);
    EXPECT_EQ(std::string(out).substr(std::string(out).size() - 2), ".0");
}

TEST_F(NumberInALocaleWithAComma, WideTextIsWrittenWithAPoint)
{
    EXPECT_EQ(narrowed(tvFltToF(1234.5, 2)), "1234.50");
    EXPECT_EQ(narrowed(tvFltToE(1234.5, 3, 'e')), "1.234e+003");
    EXPECT_EQ(narrowed(tvFltToG(1234.5, 6, 'e', 0)), "1234.5");
    EXPECT_EQ(narrowed(tvDToStr(1234.5, 'g', 6, 2)), "1234.5");
}

} // namespace

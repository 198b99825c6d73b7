// Big fonts and the conversions with the Windows names while memory runs out: each allocation
// fails once in turn, and from each one on.
#include "FailNth.h"
#include "MapperText.h"
#include "Recorder.h"
#include "TestFiles.h"
#include "TvBigFont.h"
#include "TvPlatformText.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

namespace {

using Fonts = std::map<std::wstring, int>;

class BigFontFault : public testing::TestWithParam<FailNth::Kind> {
protected:
    void SetUp() override { tvPlatformSetSystemDefaultLCID(0x0409); }

    // Calls `work` with its nth allocation failing, for every n. `work` tells whether it says
    // that it succeeded; `check` is called with that.
    template<class Work, class Check>
    void eachAllocation(Work work, Check check)
    {
        for (FailNth::Length length : {FailNth::Once, FailNth::FromThenOn}) {
            for (int nth = 1;; ++nth) {
                ASSERT_LT(nth, 10000);
                g_mapCP2Bigfont.clear();
                const HeapBalance balance;
                Recorder quiet;
                bool fired = false;
                bool done = false;
                {
                    const FailNth fail(GetParam(), nth, length);
                    done = work();
                    fired = fail.fired();
                }
                check(done);
                g_mapCP2Bigfont.clear();
                EXPECT_TRUE(fired || done);
                if (HasFailure() || !fired)
                    break; // one untouched run: each had its turn
            }
        }
    }
};

TEST_P(BigFontFault, FileIsReadUpToTheFailure)
{
    const TestFiles files;
    const std::wstring path =
        files.put("BIGFONT.INI", "a_font_whose_name_is_too_long_for_the_string_itself.shx;1\n"
                                 "b.shx;2\n");
    const Fonts expected = {{L"a_font_whose_name_is_too_long_for_the_string_itself.shx", 1}, {L"b.shx", 2}};
    eachAllocation([&] { return ReadBigfontIni(path.c_str()); },
                   [&](bool done) {
                       for (const auto& [name, index] : g_mapCP2Bigfont)
                           EXPECT_EQ(expected.at(name), index);
                       if (done) {
                           EXPECT_EQ(g_mapCP2Bigfont, expected);
                       }
                   });
}

TEST_P(BigFontFault, FontHasNoCodePageThen)
{
    code_page_id id = CP_CNT;
    eachAllocation(
        [&] {
            id = TvCharMapper::getCpByBigFont(L"/a folder/gbcbig", nullptr);
            return id == CP_ANSI_936;
        },
        [&](bool done) { EXPECT_EQ(id, done ? CP_ANSI_936 : CP_UNDEFINED); });
    eachAllocation(
        [&] {
            const wchar_t* const path = L"/a folder/a font whose name is too long for the string itself";
            id = TvCharMapper::getCpByBigFont(path, nullptr);
            return true;
        },
        [&](bool) { EXPECT_EQ(id, CP_UNDEFINED); });
}

TEST_P(BigFontFault, NamesAsTheyAreNeedNoMemory)
{
    const std::wstring name(1000, L'n');
    const std::wstring known = L"GBCBIG.SHX";
    const FailNth fail(GetParam(), 1, FailNth::FromThenOn);
    EXPECT_EQ(TvCharMapper::getCpIndexByBigFont(name.c_str(), nullptr), 0);
    EXPECT_EQ(findCodepageByBigfont(known, nullptr), 5);
    EXPECT_FALSE(fail.fired());
}

TEST_P(BigFontFault, ConversionsGive0AndAnEmptyText)
{
    ASSERT_EQ(TvCharMapper::initialize(shippedMapFile()), Orna::eOk);
    toWide(CP_ANSI_936, "\xB0\xA1"); // the tables are there
    const std::wstring text(2000, L'\x554A');
    const std::string bytes = toBytes(CP_ANSI_936, text);
    std::wstring wide(2000, L'*');
    std::string narrow(4000, '*');
    int result = 0;
    eachAllocation(
        [&] {
            wide.assign(2000, L'*');
            result = MultiByteToWideChar(936, 0, bytes.data(), 4000, wide.data(), 2000);
            return result == 2000;
        },
        [&](bool done) {
            if (done) {
                EXPECT_EQ(wide, text);
            } else {
                EXPECT_TRUE(result == 0 && wide == L'\0' + std::wstring(1999, L'*'));
            }
        });
    eachAllocation(
        [&] {
            narrow.assign(4000, '*');
            result = WideCharToMultiByte(936, 0, text.data(), 2000, narrow.data(), 4000, nullptr, nullptr);
            return result == 4000;
        },
        [&](bool done) {
            if (done) {
                EXPECT_EQ(narrow, bytes);
            } else {
                EXPECT_TRUE(result == 0 && narrow == '\0' + std::string(3999, '*'));
            }
        });
    TvCharMapper::unInitialize();
}

TEST_P(BigFontFault, BrokenTextIsEmptyThen)
{
    const std::string words(3000, 'w');
    const std::string front(2499, 'w');
    const TvStringA text(words.c_str());
    eachAllocation(
        [&] {
            TvAnsiTextIterator it(text, CP_ANSI_1252);
            TvStringA rest;
            EXPECT_EQ(it.breakSafely(2500, rest), 3);
            EXPECT_TRUE(rest.isEmpty() || rest.constStr() == front);
            return !rest.isEmpty();
        },
        [](bool) {});
}

INSTANTIATE_TEST_SUITE_P(Kinds, BigFontFault, testing::Values(FailNth::Malloc, FailNth::New));

} // namespace

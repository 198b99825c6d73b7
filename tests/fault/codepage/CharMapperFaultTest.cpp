// Conversions and the first use of a code page while memory runs out: each allocation fails
// once in turn, and from each one on.
#include "FailNth.h"
#include "MapperText.h"
#include "Recorder.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>

namespace {

const std::wstring kText = L"caf\xE9 \x20AC \x554A\x3042 \\U+00B0 \\M+5B0A1 end";
const std::string kBytes = "caf\xE9 \xB0\xA1\xFE\xFE \\U+20AC \\M+1815F \\M+5B0A1 \xB0";

class CharMapperFault : public testing::TestWithParam<FailNth::Kind> {
protected:
    void SetUp() override
    {
        map = shippedMapFile();
        ASSERT_EQ(TvCharMapper::initialize(map), Orna::eOk);
    }
    void TearDown() override { TvCharMapper::unInitialize(); }

    // Runs `work` with its nth allocation failing, for every n; then `check`.
    void eachAllocation(const std::function<void()>& prepare, const std::function<void()>& work,
                        const std::function<void()>& check)
    {
        for (FailNth::Length length : {FailNth::Once, FailNth::FromThenOn}) {
            for (int nth = 1;; ++nth) {
                ASSERT_LT(nth, 10000);
                prepare();
                Recorder quiet;
                bool fired = false;
                {
                    const FailNth fail(GetParam(), nth, length);
                    work();
                    fired = fail.fired();
                }
                check();
                if (HasFailure() || !fired)
                    break; // one untouched run: each had its turn
            }
        }
    }

    CStdStr<wchar_t> map;
};

TEST_P(CharMapperFault, WideToBytes)
{
    for (code_page_id cp : {CP_ANSI_1252, CP_ANSI_936, CP_UTF8}) {
        const std::string expected = toBytes(cp, kText);
        TvVector<char> out;
        eachAllocation(
            [&] {
                TvCharMapper::initialize(map); // tables and index are made again
                out = TvVector<char>();
            },
            [&] { TvCharMapper::wideCharToMultiByte(cp, kText.data(), static_cast<int>(kText.size()), out); },
            [&] {
                // Whole, or with every double-byte character an escape, or empty.
                if (out.isEmpty())
                    return;
                const std::string bytes = resultText(out);
                if (cp != CP_ANSI_936) {
                    EXPECT_EQ(bytes, expected);
                } else if (bytes != expected) {
                    EXPECT_EQ(bytes, toBytes(CP_ASCII, kText));
                }
            });
    }
}

TEST_P(CharMapperFault, BytesToWide)
{
    for (code_page_id cp : {CP_ANSI_1252, CP_ANSI_936, CP_UTF8}) {
        const std::wstring expected = toWide(cp, kBytes);
        TvVector<wchar_t> out;
        eachAllocation(
            [&] {
                TvCharMapper::initialize(map);
                out = TvVector<wchar_t>();
            },
            [&] {
                TvCharMapper::multiByteToWideChar(cp, kBytes.data(), static_cast<int>(kBytes.size()), out);
            },
            [&] {
                if (!out.isEmpty()) {
                    EXPECT_EQ(resultText(out).substr(0, 3), L"caf");
                }
            });
        EXPECT_EQ(toWide(cp, kBytes), expected); // and all is well again
    }
}

TEST_P(CharMapperFault, AResultThatOutgrowsItsFirstRoom)
{
    const std::string pairs(20000, '\xFE');
    const std::wstring foreign(20000, L'\xE000');
    TvVector<wchar_t> wide;
    TvVector<char> bytes;
    eachAllocation([&] { wide = TvVector<wchar_t>(); },
                   [&] { TvCharMapper::multiByteToWideChar(CP_ANSI_936, pairs.data(), 20000, wide); },
                   [&] { EXPECT_TRUE(wide.isEmpty() || wide.length() == 80001) << wide.length(); });
    eachAllocation([&] { bytes = TvVector<char>(); },
                   [&] { TvCharMapper::wideCharToMultiByte(CP_ANSI_936, foreign.data(), 20000, bytes); },
                   [&] { EXPECT_TRUE(bytes.isEmpty() || bytes.length() == 140001) << bytes.length(); });
}

TEST_P(CharMapperFault, SharedResultsStayWithTheirOtherHolder)
{
    TvVector<char> first;
    TvVector<char> second;
    eachAllocation(
        [&] {
            TvCharMapper::wideCharToMultiByte(CP_ANSI_1252, L"0123456789", 10, first);
            second = first;
        },
        [&] { TvCharMapper::wideCharToMultiByte(CP_ANSI_1252, L"abcdefghij", 10, second); },
        [&] {
            EXPECT_EQ(resultText(first), "0123456789");
            if (!second.isEmpty()) {
                EXPECT_EQ(resultText(second), "abcdefghij");
            }
        });
}

TEST_P(CharMapperFault, Initialize)
{
    Orna::ErrorStatus status = Orna::eOk;
    eachAllocation(
        [] {}, [&] { status = TvCharMapper::initialize(map); },
        [&] {
            EXPECT_TRUE(status == Orna::eOk || status == Orna::eFileNotFound || status == Orna::eBadMapFile)
                << status;
            const bool isBuilt = theTvCodePages()->findMapperByAcadCp(CP_UNDEFINED) != nullptr;
            EXPECT_TRUE(isBuilt || status == Orna::eFileNotFound) << status;
            EXPECT_EQ(toWide(CP_ANSI_1252, "abc"), L"abc");
        });
    EXPECT_EQ(TvCharMapper::initialize(map), Orna::eOk);
}

TEST_P(CharMapperFault, InitializeWithoutMemoryForTheRegistryIs72)
{
    for (FailNth::Length length : {FailNth::Once, FailNth::FromThenOn}) {
        Orna::ErrorStatus status = Orna::eOk;
        {
            const FailNth fail(GetParam(), 1, length);
            status = TvCharMapper::initialize(map);
            EXPECT_TRUE(fail.fired());
        }
        EXPECT_EQ(theTvCodePages()->findMapperByAcadCp(CP_UNDEFINED), nullptr);
        EXPECT_EQ(status, Orna::eFileNotFound);
    }
}

TEST_P(CharMapperFault, SingleCharacters)
{
    bool decoded = false;
    wchar_t wc = 0;
    eachAllocation(
        [&] {
            TvCharMapper::initialize(map);
            wc = 77;
        },
        [&] { decoded = TvCharMapper::codepageToUnicode(0xB0A1, CP_ANSI_936, wc); },
        [&] { EXPECT_EQ(wc, decoded ? 0x554A : 77); });
    eachAllocation(
        [&] {
            TvCharMapper::initialize(map);
            wc = 77;
        },
        [&] { decoded = TvCharMapper::unicodeToCodepage(0x554A, CP_ANSI_936, wc, false); },
        [&] { EXPECT_EQ(wc, decoded ? 0xB0A1 : 77); });
}

INSTANTIATE_TEST_SUITE_P(Requests, CharMapperFault, testing::Values(FailNth::Malloc, FailNth::New),
                         [](const auto& row) { return row.param == FailNth::New ? "New" : "Malloc"; });

} // namespace

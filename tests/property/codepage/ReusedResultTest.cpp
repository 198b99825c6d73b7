// A result vector that is used again, whatever it holds and whoever shares it, receives the same
// text as a new one.
#include "MapperText.h"
#include "TestScale.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace {

const code_page_id kPages[] = {CP_ANSI_1252, CP_ISO8859_7, CP_ANSI_932, CP_ANSI_936, CP_GB2312, CP_UTF8};

// Mostly ASCII, with escapes, foreign characters and, now and then, a 0.
std::string randomBytes(std::mt19937& random)
{
    const std::string pieces[] = {"abc",      "words of a label ", "\\U+00E9", "\\M+18FBC", "\\",  "\xE9",
                                  "\xC4\xE3", "\x93\xFA\x96\x7B",  "\xC3\xA9", "\xFF",      "\x81"};
    std::string text;
    for (unsigned n = random() % 12; n > 0; --n)
        text += pieces[random() % std::size(pieces)];
    if (random() % 16 == 0)
        text.push_back('\0');
    return text;
}

std::wstring randomWide(std::mt19937& random)
{
    const std::wstring pieces[] = {L"abc",    L"words of a label ", L"\\U+00E9", L"\\M+18FBC", L"\\",
                                   L"\u00E9", L"\u65E5\u672C",      L"\u20AC",   L"\uFF71",    L"\x1F600"};
    std::wstring text;
    for (unsigned n = random() % 12; n > 0; --n)
        text += pieces[random() % std::size(pieces)];
    if (random() % 16 == 0)
        text.push_back(L'\0');
    return text;
}

template<class T>
constexpr T kNothing = 0;

template<class T, class Text, class Convert>
void compareReused(std::mt19937& random, Convert convert, Text (*randomText)(std::mt19937&))
{
    TvVector<T> reused;
    for (long round = scaled(20000); round > 0; --round) {
        const code_page_id cp = kPages[random() % std::size(kPages)];
        const Text text = randomText(random);
        TvVector<T> fresh;
        convert(cp, text, fresh);
        const TvVector<T> before = random() % 4 == 0 ? reused : TvVector<T>();
        const std::basic_string<T> shared(before.isEmpty() ? &kNothing<T> : before.asArrayPtr(),
                                          static_cast<std::size_t>(before.length()));
        if (random() % 8 == 0)
            reused.reserve(random() % 200);
        convert(cp, text, reused);
        ASSERT_EQ(reused.length(), fresh.length()) << "in code page " << cp << ": " << testing::PrintToString(text);
        if (!fresh.isEmpty()) {
            ASSERT_EQ(resultText(reused), resultText(fresh)) << "in code page " << cp;
        }
        for (int i = 0; i < before.length(); ++i)
            ASSERT_EQ(before.asArrayPtr()[i], shared[static_cast<std::size_t>(i)]) << "a copy has changed";
    }
}

class ReusedResult : public testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(TvCharMapper::initialize(shippedMapFile()), Orna::eOk); }
    void TearDown() override { TvCharMapper::unInitialize(); }

    std::mt19937 m_random{static_cast<unsigned>(testSeed(17))};
};

TEST_F(ReusedResult, OfDecodingIsAsANewOne)
{
    compareReused<wchar_t, std::string>(
        m_random,
        [](code_page_id cp, const std::string& text, TvVector<wchar_t>& out) {
            TvCharMapper::multiByteToWideChar(cp, text.data(), static_cast<int>(text.size()), out);
        },
        randomBytes);
}

TEST_F(ReusedResult, OfEncodingIsAsANewOne)
{
    compareReused<char, std::wstring>(
        m_random,
        [](code_page_id cp, const std::wstring& text, TvVector<char>& out) {
            TvCharMapper::wideCharToMultiByte(cp, text.data(), static_cast<int>(text.size()), out);
        },
        randomWide);
}

} // namespace

// Random texts of every code page against the model, and the round trips that texts keep.
#include "MapperText.h"
#include "MapperModel.h"

#include "GuardPage.h"
#include "TestScale.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace {

class MapperTexts : public testing::Test {
protected:
    void SetUp() override
    {
        loadTables();
        m_seed = testSeed(31337);
        m_random.seed(static_cast<unsigned>(m_seed));
    }
    void TearDown() override { TvCharMapper::unInitialize(); }

    // The model does not.
    virtual void loadTables()
    {
        ASSERT_EQ(TvCharMapper::initialize(shippedMapFile()), Orna::eOk);
        for (code_page_id cp : {CP_ANSI_932, CP_ANSI_936, CP_ANSI_949, CP_ANSI_950})
            toWide(cp, "\xFF");
    }

    unsigned below(unsigned limit) { return static_cast<unsigned>(m_random() % limit); }

    code_page_id anyPage()
    {
        const int special[] = {22, 24, 25, 26, 31, 38, 39, 40, 41, 42, 45, 0, 46, 47, -7};
        return static_cast<code_page_id>(below(2) ? static_cast<int>(below(46))
                                                  : special[below(std::size(special))]);
    }

    std::string hex(unsigned value)
    {
        char text[5];
        std::snprintf(text, sizeof text, below(2) ? "%04X" : "%04x", value & 0xFFFF);
        return text;
    }

    // An escape, at times with a mistake or cut short.
    std::string escape()
    {
        const char letters[] = {'U', 'u', 'M', 'm'};
        std::string text = "\\";
        const char letter = letters[below(4)];
        text += letter;
        text += '+';
        if (letter == 'M' || letter == 'm')
            text += static_cast<char>('0' + below(8));
        text += hex(below(8) == 0 ? below(256) : below(2) ? 0x8100 + below(0x7E00) : below(65536));
        if (below(6) == 0)
            text[below(static_cast<unsigned>(text.size()))] = static_cast<char>('F' + below(3));
        if (below(6) == 0)
            text.resize(below(static_cast<unsigned>(text.size())));
        return text;
    }

    std::string anyBytes()
    {
        std::string text;
        while (below(12) != 0) {
            const unsigned count = below(70);
            const unsigned kind = below(7);
            for (unsigned i = 0; i < count; ++i) {
                if (kind == 0)
                    text += static_cast<char>(below(256));
                else if (kind == 1)
                    text += static_cast<char>(0x80 + below(128));
                else if (kind == 2)
                    text += {static_cast<char>(0xB0 + below(40)), static_cast<char>(0xA1 + below(94))};
                else if (kind == 3)
                    text += {static_cast<char>(0x81 + below(126)), static_cast<char>(0x40 + below(191))};
                else
                    text += static_cast<char>(' ' + below(95));
            }
            if (below(2))
                text += escape();
        }
        return text;
    }

    // Not empty: UTF-8 makes nothing at all of that.
    std::wstring anyWide()
    {
        std::wstring text(1, L'x');
        while (below(12) != 0) {
            const unsigned count = below(70);
            const unsigned kind = below(7);
            for (unsigned i = 0; i < count; ++i) {
                const unsigned unit = kind == 0   ? below(65536)
                                      : kind == 1 ? 0x80 + below(0x400)
                                      : kind == 2 ? 0x4E00 + below(0x5200)
                                      : kind == 3 ? 0x3040 + below(0x100)
                                      : kind == 4 ? static_cast<unsigned>(m_random())
                                                  : ' ' + below(95);
                text += static_cast<wchar_t>(unit);
            }
            if (below(2)) {
                const std::string inserted = escape();
                text.append(inserted.begin(), inserted.end());
            }
        }
        return text;
    }

    std::uint64_t m_seed = 0;
    std::mt19937 m_random;
};

class MapperTextsWithoutMapFile : public MapperTexts {
protected:
    void loadTables() override { ASSERT_EQ(TvCharMapper::initialize(L""), Orna::eFileNotFound); }
};

TEST_F(MapperTextsWithoutMapFile, BothWaysAsTheModelHasIt)
{
    SCOPED_TRACE("TV_TEST_SEED=" + std::to_string(m_seed));
    const SystemCodePage system(936);
    for (long round = scaled(4000); round > 0; --round) {
        const code_page_id cp = anyPage();
        const std::string text = anyBytes();
        ASSERT_EQ(toWide(cp, text), MapperModel::toWide(cp, text))
            << cp << ", text " << testing::PrintToString(text);
        const std::wstring wide = anyWide();
        ASSERT_EQ(toBytes(cp, wide), MapperModel::toBytes(cp, wide))
            << cp << ", text " << testing::PrintToString(wide);
    }
}

TEST_F(MapperTexts, ToWideAsTheModelHasIt)
{
    SCOPED_TRACE("TV_TEST_SEED=" + std::to_string(m_seed));
    const SystemCodePage system(949);
    for (long round = scaled(15000); round > 0; --round) {
        const code_page_id cp = anyPage();
        const std::string text = anyBytes();
        ASSERT_EQ(toWide(cp, text), MapperModel::toWide(cp, text))
            << cp << ", text " << testing::PrintToString(text);
    }
}

TEST_F(MapperTexts, ToBytesAsTheModelHasIt)
{
    SCOPED_TRACE("TV_TEST_SEED=" + std::to_string(m_seed));
    const SystemCodePage system(932);
    for (long round = scaled(700); round > 0; --round) {
        const code_page_id cp = anyPage();
        const std::wstring text = anyWide();
        ASSERT_EQ(toBytes(cp, text), MapperModel::toBytes(cp, text))
            << cp << ", text " << testing::PrintToString(text);
    }
}

TEST_F(MapperTexts, NothingBehindTheEndIsRead)
{
    SCOPED_TRACE("TV_TEST_SEED=" + std::to_string(m_seed));
    GuardedArray<char> bytes(1 << 20);
    GuardedArray<wchar_t> wide(1 << 18);
    for (long round = scaled(3000); round > 0; --round) {
        const code_page_id cp = anyPage();
        const std::string text = anyBytes();
        TvVector<wchar_t> wideOut;
        TvCharMapper::multiByteToWideChar(cp, bytes.hold(text.data(), text.size()),
                                          static_cast<int>(text.size()), wideOut);
        const std::wstring wideText = anyWide();
        TvVector<char> bytesOut;
        TvCharMapper::wideCharToMultiByte(cp, wide.hold(wideText.data(), wideText.size()),
                                          static_cast<int>(wideText.size()), bytesOut);
    }
}

TEST_F(MapperTexts, ReusedVectorsGiveTheSameAsFreshOnes)
{
    SCOPED_TRACE("TV_TEST_SEED=" + std::to_string(m_seed));
    TvVector<wchar_t> reused;
    for (long round = scaled(3000); round > 0; --round) {
        const code_page_id cp = anyPage();
        const std::string text = anyBytes();
        TvCharMapper::multiByteToWideChar(cp, text.data(), static_cast<int>(text.size()), reused);
        ASSERT_EQ(resultText(reused), toWide(cp, text));
    }
}

// Characters of the basic plane survive the way to bytes and back: as codes where the page has
// them, as escapes else. Texts that look like escapes themselves are left out, and so are
// bytes that the page reads as part of a pair.
TEST_F(MapperTexts, WideTextSurvivesTheRoundTripThroughEveryPage)
{
    SCOPED_TRACE("TV_TEST_SEED=" + std::to_string(m_seed));
    for (long round = scaled(3000); round > 0; --round) {
        const auto cp = static_cast<code_page_id>(1 + below(45));
        std::wstring text;
        for (unsigned i = 1 + below(200); i > 0; --i) {
            const unsigned unit = below(3) == 0 ? 1 + below(0xFFFF)
                                  : below(2)    ? 0x4E00 + below(0x5200)
                                                : ' ' + below(95);
            text += static_cast<wchar_t>(unit == '\\' ? '/' : unit);
        }
        const std::string bytes = toBytes(cp, text);
        ASSERT_EQ(toWide(cp, bytes), text) << cp << ", text " << testing::PrintToString(text);
    }
}

// Bytes that decode to characters or escapes come back; a page with two codes for a character
// gives the first one back, so only first codes are used.
TEST_F(MapperTexts, BytesWithEscapesSurviveTheRoundTrip)
{
    SCOPED_TRACE("TV_TEST_SEED=" + std::to_string(m_seed));
    for (code_page_id cp : {CP_ANSI_1250, CP_ANSI_1251, CP_ANSI_1253, CP_ANSI_1254, CP_ANSI_932, CP_ANSI_936,
                            CP_ANSI_949, CP_ANSI_950}) {
        for (long round = scaled(200); round > 0; --round) {
            std::string text;
            for (unsigned i = below(100); i > 0; --i) {
                const auto wc = static_cast<wchar_t>(below(2) ? 0x80 + below(0x500) : 0x3000 + below(0x7000));
                wchar_t code = 0;
                const bool known = TvCharMapper::unicodeToCodepage(wc, cp, code, false);
                if (known && code > 0xFF)
                    text += static_cast<char>(code >> 8);
                if (known)
                    text += static_cast<char>(code);
                else
                    text += toBytes(CP_ASCII, std::wstring(1, wc));
            }
            ASSERT_EQ(toBytes(cp, toWide(cp, text)), text) << cp << ", text " << testing::PrintToString(text);
        }
    }
}

} // namespace

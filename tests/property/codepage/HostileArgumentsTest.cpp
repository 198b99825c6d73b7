// The text iterator, the escapes and the tables with arguments from anywhere: answers are within
// their ranges, walks end, and nothing behind a text is read.
#include "GuardPage.h"
#include "MapperText.h"
#include "OrCodePage.h"
#include "TestScale.h"
#include "TvCharConverter.h"
#include "TvPlatformText.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cstring>
#include <iterator>
#include <random>
#include <string>
#include <vector>

namespace {

class HostileArguments : public testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(TvCharMapper::initialize(shippedMapFile()), Orna::eOk); }
    void TearDown() override { TvCharMapper::unInitialize(); }

    unsigned below(unsigned limit) { return static_cast<unsigned>(m_random() % limit); }

    // Small, large, at the ends, anything.
    int anyInt()
    {
        const int special[] = {INT_MIN, INT_MIN + 1, -1,  0,      1,       45,     46,
                               47,      255,         256, 0xFFFF, 0x10000, INT_MAX};
        return below(2) != 0 ? special[below(std::size(special))] : static_cast<int>(m_random());
    }
    code_page_id anyPage()
    {
        return below(4) != 0 ? static_cast<code_page_id>(below(47)) : static_cast<code_page_id>(anyInt());
    }

    // Bytes of which many begin escapes and double-byte characters.
    std::string anyBytes(unsigned most)
    {
        const char* const pieces[] = {"\\",        "\\U+",  "\\M+", "\\U+20A", "\\U+20AC",
                                      "\\M+1815F", "\\M+9", "\x81", "\xFE"};
        std::string text;
        while (text.size() < most && below(20) != 0) {
            if (below(3) == 0)
                text += pieces[below(std::size(pieces))];
            else
                text += static_cast<char>(1 + below(255));
        }
        return text.substr(0, most);
    }

    std::mt19937_64 m_random{testSeed(77)};
};

TEST_F(HostileArguments, WalksEndAtTheEndOfTheText)
{
    for (long round = scaled(10000); round > 0; --round) {
        const std::string bytes = anyBytes(60);
        const TvStringA text(bytes.c_str());
        const code_page_id page = anyPage();
        TvAnsiTextIterator it(text, page);
        std::size_t steps = 0;
        while (it.nextChar() != 0) {
            ASSERT_LE(++steps, bytes.size()) << testing::PrintToString(bytes) << " in " << page;
            if (below(8) == 0)
                it.appendDigits(static_cast<int>(below(9)), below(2) != 0);
            if (below(16) == 0)
                it.appendDigitsNoCheck(static_cast<int>(below(9)), below(2) != 0);
        }
        ASSERT_EQ(it.nextChar(), 0u);
        ASSERT_TRUE(!TvAnsiTextIterator::TvAnsiTextIteratorNotRequired(text, page) ||
                    bytes.find('\\') == std::string::npos);
    }
}

TEST_F(HostileArguments, BrokenTextIsTheBeginningOfTheText)
{
    for (long round = scaled(5000); round > 0; --round) {
        const std::string bytes = anyBytes(60);
        const TvStringA text(bytes.c_str());
        TvAnsiTextIterator it(text, anyPage());
        TvStringA rest;
        const int answer = it.breakSafely(below(2) != 0 ? static_cast<int>(below(70)) : anyInt(), rest);
        ASSERT_TRUE(answer == 0 || answer == 1 || answer == 3) << answer;
        const std::string front = rest.constStr();
        ASSERT_EQ(bytes.compare(0, front.size(), front), 0) << testing::PrintToString(bytes);
    }
}

template<class Char>
void readEscapes(GuardedArray<Char>& room, const std::string& bytes)
{
    std::vector<Char> text(bytes.begin(), bytes.end());
    text.push_back(0);
    const Char* const at = room.hold(text);
    wchar_t wc = 77;
    code_page_id page = CP_CNT;
    if (!TvCharConverter::parseCIFString(at, wc)) {
        EXPECT_EQ(wc, 77);
    }
    EXPECT_EQ(TvCharConverter::isCIF(at), wc != 77 || std::strncmp(bytes.c_str(), "\\U+004D", 7) == 0);
    wc = 77;
    TvCharConverter::parseMIFString(at, wc, page);
    EXPECT_EQ(TvCharConverter::isMIF(at), page != CP_CNT);
    TvCharConverter::checkDigits(at, static_cast<int>(bytes.size()), true);
}

TEST_F(HostileArguments, EscapesAreReadToTheTerminatorAtMost)
{
    GuardedArray<char> narrow(100);
    GuardedArray<wchar_t> wide(100);
    for (long round = scaled(10000); round > 0; --round) {
        const std::string bytes = (below(2) != 0 ? "\\" : "") + anyBytes(below(12));
        readEscapes(narrow, bytes);
        readEscapes(wide, bytes);
        const std::wstring text(bytes.begin(), bytes.end());
        const char kind = isCIForMIF(wide.hold(text.c_str(), text.size() + 1));
        ASSERT_TRUE(kind == 0 || kind == 'u' || kind == 'm');
    }
}

template<class T>
std::vector<T> contentOf(const TvVector<T>& v)
{
    return {v.begin(), v.begin() + v.length()};
}

// The text, whose 0 is the last element that can be read, with its own length and with a greater one.
TEST_F(HostileArguments, ALengthBehindTheTerminatorChangesNothing)
{
    GuardedArray<char> narrow(400);
    GuardedArray<wchar_t> wide(400);
    TvVector<wchar_t> decoded, decodedLonger;
    TvVector<char> encoded, encodedLonger;
    for (long round = scaled(10000); round > 0; --round) {
        // Without an index texts go another way, and so do tables that are not there.
        if (round % 500 == 0)
            TvCharMapper::initialize(below(2) != 0 ? shippedMapFile() : L"");
        const std::string bytes = std::string(below(4) == 0 ? below(100) : 0, 'a') + anyBytes(200);
        const int length = std::max(1, static_cast<int>(bytes.size()));
        const int longer = length + static_cast<int>(below(2) != 0 ? below(100) : below(100000));
        const code_page_id page = anyPage();
        SCOPED_TRACE(testing::PrintToString(bytes) + " in " + std::to_string(page));

        const char* const src = narrow.hold(bytes.c_str(), bytes.size() + 1);
        TvCharMapper::multiByteToWideChar(page, src, length, decoded);
        TvCharMapper::multiByteToWideChar(page, src, longer, decodedLonger);
        ASSERT_EQ(contentOf(decoded), contentOf(decodedLonger));
        TvCharMapper::utf8ToUnicode(src, length, decoded);
        TvCharMapper::utf8ToUnicode(src, longer, decodedLonger);
        ASSERT_EQ(contentOf(decoded), contentOf(decodedLonger));

        std::wstring text(bytes.begin(), bytes.end());
        for (wchar_t& wc : text)
            wc = wc > 0 ? wc : static_cast<wchar_t>(0x80 + below(0xFF80));
        const wchar_t* const wideSrc = wide.hold(text.c_str(), text.size() + 1);
        TvCharMapper::wideCharToMultiByte(page, wideSrc, length, encoded);
        TvCharMapper::wideCharToMultiByte(page, wideSrc, longer, encodedLonger);
        ASSERT_EQ(contentOf(encoded), contentOf(encodedLonger));
        TvCharMapper::unicodeToUtf8(wideSrc, length, encoded);
        TvCharMapper::unicodeToUtf8(wideSrc, longer, encodedLonger);
        ASSERT_EQ(contentOf(encoded), contentOf(encodedLonger));
    }
}

TEST_F(HostileArguments, TablesAnswerWithinTheirRanges)
{
    OrCodePage::InitUserDefinedDBCSArray();
    for (long round = scaled(10000); round > 0; --round) {
        const int x = anyInt();
        const auto u = static_cast<unsigned>(anyInt());
        const auto s = static_cast<unsigned short>(anyInt());
        const auto wc = static_cast<wchar_t>(anyInt());
        const int lineBreak = OrCodePage::LineBreakClass(wc);
        ASSERT_TRUE(lineBreak >= 0 && lineBreak <= 28) << lineBreak;
        ASSERT_EQ(OrCodePage::CodePageCount(), 14);
        ASSERT_NE(OrCodePage::CodePageEntry(x), 0u);
        for (const int index : {OrCodePage::CodePageToCodePageIndex(x), OrCodePage::CharSetToCodePageIndex(x),
                                OrCodePage::LanguageToCodePageIndex(static_cast<short>(x))})
            ASSERT_TRUE(index >= 0 && index <= 5) << index;
        OrCodePage::CodePageToCharSet(u);
        OrCodePage::CodePageToLanguage(x);
        OrCodePage::CodePageIsDoubleByte(x);
        OrCodePage::CodePageIndexToCodePage(x);
        OrCodePage::CodePageIndexToCharSet(x);
        OrCodePage::CodePageIndexToLCID(x);
        OrCodePage::CodePageIndexToLanguage(x);
        OrCodePage::CharSetToCodePage(u);
        OrCodePage::CharSetIsDoubleByte(x);
        OrCodePage::CharSetToLCID(x);
        OrCodePage::CharSetToLanguage(x);
        OrCodePage::LCIDToCharSet(u);
        OrCodePage::LanguageToCharSet(u);
        OrCodePage::LanguageToCodePage(s);
        OrCodePage::LanguageIsDoubleByte(s);
        OrCodePage::LanguageIsRtoL(x);
        OrCodePage::CharSetFromUnicode(wc, s, static_cast<unsigned short>(u));
        OrCodePage::LanguageFromUnicode(wc, s, static_cast<unsigned short>(u));
        short dbcs = 0;
        int page = 0;
        wchar_t user = wc;
        OrCodePage::UnicodeForUserDefinedDBCS(user, static_cast<short>(x), x);
        OrCodePage::DBCSForUserDefinedUnicode(dbcs, wc);
        OrCodePage::CodepageForUserDefinedUnicode(page, static_cast<short>(x));
    }
    OrCodePage::InitUserDefinedDBCSArray();
}

TEST_F(HostileArguments, SingleCharactersOfAnyValueAreAnswered)
{
    for (long round = scaled(30000); round > 0; --round) {
        const auto value = static_cast<wchar_t>(anyInt());
        const code_page_id page = anyPage();
        wchar_t out = 77;
        if (!TvCharMapper::unicodeToCodepage(value, page, out, false)) {
            ASSERT_EQ(out, 77) << static_cast<long>(value) << " in " << page;
        }
        out = 77;
        if (!TvCharMapper::codepageToUnicode(value, page, out)) {
            ASSERT_EQ(out, 77) << static_cast<long>(value) << " in " << page;
        } else {
            ASSERT_TRUE(out >= 0 && out <= 0xFFFF) << static_cast<long>(value) << " in " << page;
        }
        TvCharMapper::isLeadByte(static_cast<unsigned char>(value), page);
        IsDBCSLeadByteEx(static_cast<unsigned>(value), static_cast<unsigned char>(value));
        TvCodePageMapper::ornaCpToAnsiCp(page);
        TvCodePageMapper::ansiCpToOrnaCp(value);
        ASSERT_NE(theTvCodePages()->findMapperByAnsiCp(static_cast<unsigned>(value)), nullptr);
        ASSERT_TRUE(page == CP_UTF8 || theTvCodePages()->findMapperByAcadCp(page) != nullptr);
        TvCharMapper::getCodepageByCharset(static_cast<unsigned short>(value));
        TvCharMapper::getCharSetByCodepageId(page);
        mapCodepage(static_cast<short>(value));
        reMapCodepage(page);
    }
}

} // namespace

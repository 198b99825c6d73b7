// Real drawing texts through every conversion, both ways, under many system code pages: each
// comes back as it was. A system code page is a process of its own.
#include "DrawingTexts.h"

#include "EachTestAlone.h"
#include "MapperText.h"
#include "TvCharOp.h"
#include "TvPlatformText.h"

#include <string>

namespace {

constexpr int kPages = CP_CNT + 1; // with the count itself, the system code page

class DrawingTexts : public testing::TestWithParam<unsigned> {
protected:
    void SetUp() override
    {
        tvPlatformSetACP(GetParam());
        ASSERT_EQ(TvCharMapper::initialize(shippedMapFile()), Orna::eOk);
    }

    // Each text with its own code page, the system's under both its ids, and some others; under
    // 1252 with each code page id.
    template<class Check>
    void eachTextAndPage(Check check)
    {
        for (const DrawingText& text : kDrawingTexts) {
            for (int page = 0; page < kPages; ++page) {
                const bool isOften = page == text.page || page == CP_UNDEFINED || page == CP_CNT ||
                                     page == CP_ANSI_936 || page == CP_UTF8;
                if (!isOften && GetParam() != 1252)
                    continue;
                SCOPED_TRACE(testing::Message() << "text " << &text - kDrawingTexts << ", page " << page);
                check(std::wstring(text.text), static_cast<code_page_id>(page));
                if (HasFailure())
                    return;
            }
        }
    }
};

TEST_P(DrawingTexts, ThroughTheMapper)
{
    eachTextAndPage([](const std::wstring& text, code_page_id page) {
        const std::string bytes = toBytes(page, text);
        EXPECT_EQ(toWide(page, bytes), text);
        TvVector<wchar_t> wide;
        TvCharMapper::multiByteToWideChar(page, 1, bytes.data(), static_cast<int>(bytes.size()), wide);
        EXPECT_EQ(resultText(wide), text);
    });
}

TEST_P(DrawingTexts, ThroughUtf8)
{
    for (const DrawingText& text : kDrawingTexts) {
        TvVector<char> bytes;
        TvCharMapper::unicodeToUtf8(text.text, static_cast<int>(std::wcslen(text.text)), bytes);
        TvVector<wchar_t> wide;
        TvCharMapper::utf8ToUnicode(bytes.asArrayPtr(), 0, wide);
        EXPECT_EQ(resultText(wide), text.text);
        TvCharMapper::utf8ToUnicode(bytes.asArrayPtr(), bytes.length() - 1, wide);
        EXPECT_EQ(resultText(wide), text.text);
    }
}

TEST_P(DrawingTexts, CharacterByCharacter)
{
    eachTextAndPage([](const std::wstring& text, code_page_id page) {
        for (const wchar_t wc : text) {
            wchar_t code = 0;
            if (!TvCharMapper::unicodeToCodepage(wc, page, code, false))
                continue;
            wchar_t back = 0;
            EXPECT_TRUE(TvCharMapper::codepageToUnicode(code, page, back));
            EXPECT_EQ(back, wc);
            EXPECT_TRUE(TvCharMapper::codepageToUnicode(code, 0, page, back));
            EXPECT_EQ(back, wc);
        }
    });
}

TEST_P(DrawingTexts, ThroughTheFunctionsWithTheWindowsNames)
{
    eachTextAndPage([](const std::wstring& text, code_page_id page) {
        const unsigned cp = TvCodePageMapper::ornaCpToAnsiCp(page);
        const int length = static_cast<int>(text.size());
        const int size = WideCharToMultiByte(cp, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
        std::string bytes(static_cast<std::size_t>(size), '*');
        EXPECT_EQ(WideCharToMultiByte(cp, 0, text.data(), length, bytes.data(), size, nullptr, nullptr),
                  size);
        EXPECT_EQ(bytes, toBytes(TvCodePageMapper::ansiCpToOrnaCp(static_cast<int>(cp)), text));

        EXPECT_EQ(MultiByteToWideChar(cp, 0, bytes.data(), size, nullptr, 0), length);
        std::wstring wide(text.size(), L'*');
        EXPECT_EQ(MultiByteToWideChar(cp, 0, bytes.data(), size, wide.data(), length), length);
        EXPECT_EQ(wide, text);
    });
}

TEST_P(DrawingTexts, ThroughTheFunctionsWithTheWindowsNamesToTheTerminator)
{
    eachTextAndPage([](const std::wstring& text, code_page_id page) {
        const unsigned cp = TvCodePageMapper::ornaCpToAnsiCp(page);
        char bytes[1024];
        const int size = WideCharToMultiByte(cp, 0, text.c_str(), -1, bytes, 1024, nullptr, nullptr);
        EXPECT_EQ(size, static_cast<int>(std::strlen(bytes)) + 1);
        wchar_t wide[1024];
        EXPECT_EQ(MultiByteToWideChar(cp, 0, bytes, -1, wide, 1024), static_cast<int>(text.size()) + 1);
        EXPECT_EQ(wide, text);
    });
}

TEST_P(DrawingTexts, ThroughTheCharacterOperations)
{
    eachTextAndPage([](const std::wstring& text, code_page_id page) {
        const unsigned cp = TvCodePageMapper::ornaCpToAnsiCp(page);
        char bytes[1024];
        const int size = TvCharOp::WideCharToMultiByteCIF(cp, 0, text.c_str(), -1, bytes, 1024, 0);
        EXPECT_EQ(size, static_cast<int>(std::strlen(bytes)) + 1);
        wchar_t wide[1024];
        EXPECT_EQ(TvCharOp::tvMultiByteToWideChar(cp, 0, bytes, -1, wide, 1024),
                  static_cast<int>(text.size()) + 1);
        EXPECT_EQ(wide, text);
    });
}

TEST_P(DrawingTexts, NeedNoEscapesInTheirOwnPage)
{
    for (const DrawingText& text : kDrawingTexts) {
        const std::string bytes = toBytes(text.page, text.text);
        EXPECT_EQ(bytes.find("\\U+"), std::string::npos) << bytes;
    }
}

// The system's code page as ids 0 and CP_CNT and as number 3.
TEST_P(DrawingTexts, GoThroughTheSystemCodePageByAllItsNames)
{
    const code_page_id system = TvCodePageMapper::ansiCpToOrnaCp(static_cast<int>(GetParam()));
    for (const DrawingText& text : kDrawingTexts) {
        const std::string bytes = toBytes(system, text.text);
        EXPECT_EQ(toBytes(CP_UNDEFINED, text.text), bytes);
        EXPECT_EQ(toBytes(CP_CNT, text.text), bytes);
        char platform[1024];
        WideCharToMultiByte(3, 0, text.text, -1, platform, 1024, nullptr, nullptr);
        EXPECT_EQ(platform, bytes);
    }
}

INSTANTIATE_TEST_SUITE_P(SystemCodePages, DrawingTexts,
                         testing::Values(1250u, 1251u, 1252u, 1253u, 1254u, 1255u, 1256u, 1257u, 1258u, 874u,
                                         932u, 936u, 949u, 950u, 65001u),
                         testing::PrintToStringParamName());

} // namespace

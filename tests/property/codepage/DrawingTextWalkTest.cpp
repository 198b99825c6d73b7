// Real drawing texts under the text iterator: a character of the text is one step.
#include "DrawingTexts.h"

#include "MapperText.h"
#include "TvPlatformText.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

class DrawingTextWalk : public testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(TvCharMapper::initialize(shippedMapFile()), Orna::eOk); }
    void TearDown() override { TvCharMapper::unInitialize(); }

    // Each text in each code page but the system's and UTF-8, which the iterator does not know.
    template<class Check>
    void eachTextAndPage(Check check)
    {
        for (const DrawingText& text : kDrawingTexts) {
            for (int page = CP_ASCII; page < CP_UTF8; ++page) {
                SCOPED_TRACE(testing::Message() << "text " << &text - kDrawingTexts << ", page " << page);
                const auto id = static_cast<code_page_id>(page);
                check(std::wstring(text.text), TvStringA(toBytes(id, text.text).c_str()), id);
                if (HasFailure())
                    return;
            }
        }
    }
};

TEST_F(DrawingTextWalk, StepsAreCharacters)
{
    eachTextAndPage([](const std::wstring& text, const TvStringA& bytes, code_page_id page) {
        TvAnsiTextIterator it(bytes, page);
        std::size_t steps = 0;
        while (it.nextChar())
            ++steps;
        EXPECT_EQ(steps, text.size());
    });
}

TEST_F(DrawingTextWalk, WhereNoIteratorIsNeededStepsAreBytes)
{
    eachTextAndPage([](const std::wstring& text, const TvStringA& bytes, code_page_id page) {
        if (TvAnsiTextIterator::TvAnsiTextIteratorNotRequired(bytes, page)) {
            EXPECT_EQ(bytes.numOfChars(), text.size());
        }
    });
}

// However the text is broken, the part in front is whole characters of it.
TEST_F(DrawingTextWalk, BreaksSplitNoCharacter)
{
    eachTextAndPage([](const std::wstring& text, const TvStringA& bytes, code_page_id page) {
        if (page != CP_ANSI_1251 && page != CP_ANSI_932 && page != CP_ANSI_936)
            return; // the others break like one of these
        const int size = static_cast<int>(bytes.numOfChars());
        for (int maxBytes = 0; maxBytes <= size + 1; maxBytes += 1 + size / 12) {
            TvAnsiTextIterator it(bytes, page);
            TvStringA rest;
            const int result = it.breakSafely(maxBytes, rest);
            EXPECT_EQ(result, text.size() == 1 ? 0 : maxBytes > size ? 1 : 3);
            const std::wstring front = toWide(page, rest.constStr());
            EXPECT_EQ(front, text.substr(0, front.size()));
        }
    });
}

} // namespace

// Random pieces of text through the functions with the Windows names: what the mapper makes of
// them, cut to the buffer as promised. Lengths lie around the size up to which results need no
// allocation.
#include "DrawingTexts.h"
#include "MapperText.h"
#include "TestScale.h"
#include "TvPlatformText.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>

namespace {

class PlatformTextRandom : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_EQ(TvCharMapper::initialize(shippedMapFile()), Orna::eOk);
        m_random.seed(static_cast<unsigned>(testSeed(2718)));
    }
    void TearDown() override { TvCharMapper::unInitialize(); }

    std::size_t below(std::size_t limit) { return m_random() % limit; }

    code_page_id anyPage() { return static_cast<code_page_id>(below(CP_CNT)); }

    // The number for which the functions take a page: 3 for those without one of their own.
    static unsigned numberOf(code_page_id page) { return TvCodePageMapper::ornaCpToAnsiCp(page); }

    // Drawing texts in a row, at times with a 0 in them, cut at a random place.
    std::wstring anyText()
    {
        const std::size_t size = below(3) ? 1 + below(80) : 400 + below(300);
        std::wstring text;
        while (text.size() < size) {
            text += kDrawingTexts[below(std::size(kDrawingTexts))].text;
            if (below(8) == 0)
                text += L"\\U+20AC\\M+5B0A1\\";
            if (below(64) == 0)
                text += L'\0';
        }
        return text.substr(below(std::min<std::size_t>(text.size(), 4)), size);
    }

    // The conversion of `source` into a buffer of random size, against `expected`.
    template<class To, class From, class Convert>
    void check(const std::basic_string<From>& source, std::basic_string<To> expected, Convert convert)
    {
        const bool isWhole = below(2) == 0; // with -1 the terminator counts
        const int length = isWhole ? -1 : static_cast<int>(source.size());
        if (isWhole)
            expected += To(0);
        const auto size = static_cast<int>(expected.size());
        ASSERT_EQ(convert(source.c_str(), length, static_cast<To*>(nullptr), 0), size);

        const std::size_t room = below(2) ? expected.size() + below(100) : below(expected.size() + 1);
        std::basic_string<To> buffer(room + 1, To('*'));
        std::basic_string<To> after = buffer;
        const bool fits = room >= expected.size();
        if (fits)
            std::copy(expected.begin(), expected.end(), after.begin());
        if (room > 0 && (!fits || expected.empty()))
            after[0] = To(0);
        ASSERT_EQ(convert(source.c_str(), length, buffer.data(), static_cast<int>(room)),
                  fits || room == 0 ? size : 0);
        ASSERT_EQ(buffer, after);
    }

    std::mt19937 m_random;
};

TEST_F(PlatformTextRandom, BytesAreWhatTheMapperMakes)
{
    for (long round = scaled(6000); round > 0 && !HasFatalFailure(); --round) {
        const code_page_id page = anyPage();
        const unsigned cp = numberOf(page);
        const std::wstring text = anyText();
        const code_page_id id = TvCodePageMapper::ansiCpToOrnaCp(static_cast<int>(cp));
        check<char>(text, toBytes(id, text), [cp](const wchar_t* src, int length, char* dst, int room) {
            return WideCharToMultiByte(cp, 0, src, length, dst, room, nullptr, nullptr);
        });
    }
}

TEST_F(PlatformTextRandom, WideTextIsWhatTheMapperMakes)
{
    for (long round = scaled(6000); round > 0 && !HasFatalFailure(); --round) {
        const unsigned cp = numberOf(anyPage());
        // Bytes of another page as often as of its own.
        const std::string bytes =
            toBytes(below(2) ? TvCodePageMapper::ansiCpToOrnaCp(static_cast<int>(cp)) : anyPage(), anyText());
        if (bytes.empty())
            continue;
        const code_page_id id = TvCodePageMapper::ansiCpToOrnaCp(static_cast<int>(cp));
        check<wchar_t>(bytes, toWide(id, bytes), [cp](const char* src, int length, wchar_t* dst, int room) {
            return MultiByteToWideChar(cp, 0, src, length, dst, room);
        });
    }
}

} // namespace

// Random files of fonts against the model, in whole and taken in pieces of any size.
#include "BigFontIniModel.h"
#include "TestScale.h"

#include "codepage/BigFontIni.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>

namespace {

class BigFontIniRandom : public testing::Test {
protected:
    void SetUp() override { m_random.seed(static_cast<unsigned>(testSeed(1998))); }

    std::size_t below(std::size_t limit) { return m_random() % limit; }

    std::string piece()
    {
        static const std::string pieces[] = {
            ".shx;",
            ".SHX;",
            ".shx",
            ";",
            ";;",
            "#",
            " ",
            "\t",
            "\n",
            "\n",
            "\r\n",
            "\r",
            "1",
            "5",
            "-",
            "99999999",
            "0",
            "font",
            "\xC3\xA9",
            "\xE6\x98\x8E",
            "\xE6",
            "\x98",
            "\xF0",
            "\x9F",
            "\xED",
            "\xA0",
            "\xC0",
            "\xEF\xBB",
            "\xEF\xBB\xBF",
            "\xF4\x8F\xBF\xBF",
        };
        if (below(40) == 0)
            return std::string(1, '\0');
        if (below(200) == 0)
            return std::string(below(600), 'n');
        return pieces[below(std::size(pieces))];
    }

    std::string content()
    {
        std::string text;
        for (std::size_t left = below(60); left > 0; --left)
            text += below(4) == 0 ? "a.shx;" + std::to_string(below(9)) + "\n" : piece();
        return text;
    }

    std::mt19937 m_random;
};

TEST_F(BigFontIniRandom, FilesSayWhatTheModelReads)
{
    const long rounds = scaled(20000);
    for (long round = 0; round < rounds; ++round) {
        const std::string text = content();
        std::map<std::wstring, int> fonts;
        TvDetail::BigFontIni ini(fonts);
        for (std::size_t at = 0; at < text.size();) {
            const std::size_t count = std::min(text.size() - at, below(2) ? 1 + below(9) : text.size());
            ini.take(text.data() + at, count);
            at += count;
        }
        ini.finish();
        ASSERT_EQ(fonts, BigFontIniModel::read(text)) << testing::PrintToString(text);
    }
}

} // namespace

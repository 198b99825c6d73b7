// What ReadBigfontIni() makes of the lines of a file.
#include "TvBigFont.h"

#include "CaseName.h"
#include "TestFiles.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

namespace {

using Fonts = std::map<std::wstring, int>;

class BigFontIni : public testing::Test {
protected:
    void SetUp() override { g_mapCP2Bigfont.clear(); }

    // The table that a file of this content gives.
    Fonts read(const std::string& content)
    {
        EXPECT_TRUE(ReadBigfontIni(m_files.put("BIGFONT.INI", content).c_str()));
        return g_mapCP2Bigfont;
    }

    TestFiles m_files;
};

struct Line {
    const char* name;
    std::string text;
    Fonts fonts;
};

class BigFontIniLine : public BigFontIni, public testing::WithParamInterface<Line> {};

TEST_P(BigFontIniLine, GivesThis) { EXPECT_EQ(read(GetParam().text + "\n"), GetParam().fonts); }

TEST_P(BigFontIniLine, GivesTheSameAtTheEndOfTheFile) { EXPECT_EQ(read(GetParam().text), GetParam().fonts); }

TEST_P(BigFontIniLine, GivesTheSameBeforeCrLf)
{
    EXPECT_EQ(read(GetParam().text + "\r\n"), GetParam().fonts);
}

TEST_P(BigFontIniLine, LeavesItsNeighboursAlone)
{
    Fonts fonts = GetParam().fonts;
    fonts[L"before.shx"] = 1;
    fonts[L"behind.shx"] = 2;
    EXPECT_EQ(read("before.shx;1\n" + GetParam().text + "\nbehind.shx;2\n"), fonts);
}

const Fonts kNone;
const Fonts kMyFont5 = {{L"myfont.shx", 5}};

const Line kLines[] = {
    {"NameAndIndex", "myfont.shx;5", kMyFont5},
    {"Empty", "", kNone},
    {"BlanksVanish", "big font.shx ; 1", {{L"bigfont.shx", 1}}},
    {"BlanksVanishInTheName", "my font.SHX;2", {{L"myfont.SHX", 2}}},
    {"BlanksInFrontAndBehind", "  myfont.shx;5  ", kMyFont5},
    {"BlankInTheExtension", "myfont.s hx;5", kMyFont5},
    {"BlankFirstInTheValue", "myfont.shx; 5", kMyFont5},
    {"BlankWithinTheValue", "myfont.shx;1 5", {{L"myfont.shx", 15}}},
    {"BlanksOnly", "    ", kNone},
    {"ValueOfOneBlank", "myfont.shx; ", kNone},
    {"TabStaysInTheName", "my\tfont.shx;5", {{L"my\tfont.shx", 5}}},
    {"TabBeforeTheSeparator", "myfont.shx\t;5", kNone},
    {"TabBeforeTheNumber", "myfont.shx;\t5", kMyFont5},
    {"Comment", "# myfont.shx;5", kNone},
    {"CommentBehindTheValue", "myfont.shx;5 # ours; since 1998", kMyFont5},
    {"CommentInTheName", "my#font.shx;5", kNone},
    {"CommentBeforeTheSeparator", "myfont.shx#;5", kNone},
    {"NumberSignFirstInTheValue", "myfont.shx;#5", kNone},
    {"CommentThatEndsInASeparator", "myfont.shx;5#;", kMyFont5},
    {"OtherExtension", "myfont.ttf;2", kNone},
    {"NoExtension", "myfont;2", kNone},
    {"ExtensionInTheMiddle", "myfont.shx.bak;2", kNone},
    {"ExtensionAlone", ".shx;2", {{L".shx", 2}}},
    {"ShorterThanTheExtension", "shx;2", kNone},
    {"NothingBeforeTheSeparator", ";2", kNone},
    {"SeparatorAlone", ";", kNone},
    {"NoSeparator", "myfont.shx", kNone},
    {"NoSeparatorButANumber", "myfont.shx 5", kNone},
    {"EmptyValue", "myfont.shx;", kNone},
    {"SeparatorAtTheEnd", "myfont.shx;5;", kNone},
    {"SeparatorAndBlankAtTheEnd", "myfont.shx;5; ", kMyFont5},
    {"SeparatorTwice", "myfont.shx;;5", kNone},
    {"SeparatorTwiceAlone", "myfont.shx;;", kNone},
    {"SeparatorTwiceAtTheEnd", "myfont.shx;5;;", kNone},
    {"SeparatorThriceAtTheEnd", "myfont.shx;5;;;", kNone},
    {"SeparatorBehindABlankAtTheEnd", "myfont.shx;5 ;", kNone},
    {"SecondSeparatorIsSkipped", "myfont.shx;1;2", {{L"myfont.shx", 12}}},
    {"ThirdSeparatorIsSkipped", "myfont.shx;1;2;3", {{L"myfont.shx", 123}}},
    {"BlankBehindTheSecondSeparatorIsTaken", "myfont.shx;1; 2", {{L"myfont.shx", 1}}},
    {"NumberSignBehindTheSecondSeparatorIsTaken", "myfont.shx;1;#2", {{L"myfont.shx", 1}}},
    {"NoNumber", "myfont.shx;china", kNone},
    {"TextBehindTheNumber", "myfont.shx;5china", kMyFont5},
    {"Zero", "myfont.shx;0", kNone},
    {"Zeros", "myfont.shx;005", kMyFont5},
    {"Sign", "myfont.shx;+5", kMyFont5},
    {"BeyondTheIndexes", "myfont.shx;6", {{L"myfont.shx", 6}}},
    {"Negative", "myfont.shx;-5", {{L"myfont.shx", -5}}},
    {"Largest", "myfont.shx;2147483647", {{L"myfont.shx", 2147483647}}},
    {"Smallest", "myfont.shx;-2147483648", {{L"myfont.shx", -2147483647 - 1}}},
    {"BeyondTheLargest", "myfont.shx;2147483648", kNone},
    {"BeyondTheSmallest", "myfont.shx;-2147483649", kNone},
    {"HundredDigits", "myfont.shx;" + std::string(100, '7'), kNone},
    {"PathInTheName", "/fonts/myfont.shx;5", {{L"/fonts/myfont.shx", 5}}},
    {"Section", "[fonts]", kNone},
    {"Assignment", "myfont.shx=5", kNone},
    {"CarriageReturnWithin", "my\rfont.shx;5", {{L"my\rfont.shx", 5}}},
    {"ZeroEndsTheText", std::string("myfont.shx;5\0006", 14), kMyFont5},
    {"ZeroFirst", std::string("\0myfont.shx;5", 13), kNone},
    {"ZeroBehindASeparator", std::string("myfont.shx;5;\0", 14), kNone},
    {"Utf8", "\xE6\x98\x8E\xE6\x9C\x9D.shx;5", {{L"\x660E\x671D.shx", 5}}},
    {"Utf8OfTwoBytes",
     "stra\xC3\x9F"
     "e.shx;5",
     {{L"stra\x00DF"
       L"e.shx",
       5}}},
    {"Utf8BeyondTheBasicPlane", "\xF0\x9F\x98\x80.shx;5", {{L"\xD83D\xDE00.shx", 5}}},
    {"Utf8DigitIsANumber", "myfont.shx;\xEF\xBC\x95", kMyFont5}, // full-width 5
    {"ByteThatIsNoUtf8",
     "stra\xDF"
     "e.shx;5",
     {{L"stra\x00DF"
       L"e.shx",
       5}}},
    {"ContinuationByteAlone", "\x98.shx;5", {{L"\x0098.shx", 5}}},
    {"CutSequence", "\xE6\x98.shx;5", {{L"\x00E6\x0098.shx", 5}}},
    {"CutSequenceAtTheEnd", "myfont.shx;5\xE6\x98", kMyFont5},
    {"OverlongForm", "\xC0\xAF.shx;5", {{L"\x00C0\x00AF.shx", 5}}},
    {"OverlongFormOfThreeBytes", "\xE0\x80\xAF.shx;5", {{L"\x00E0\x0080\x00AF.shx", 5}}},
    {"Surrogate", "\xED\xA0\x80.shx;5", {{L"\x00ED\x00A0\x0080.shx", 5}}},
    {"BeyondUnicode", "\xF4\x90\x80\x80.shx;5", {{L"\x00F4\x0090\x0080\x0080.shx", 5}}},
    {"MarkOfUtf8NotAtTheStart", " \xEF\xBB\xBFmyfont.shx;5", {{L"\xFEFFmyfont.shx", 5}}},
};

INSTANTIATE_TEST_SUITE_P(Lines, BigFontIniLine, testing::ValuesIn(kLines), nameOfCase<Line>);

TEST_F(BigFontIni, LaterLineReplacesAnEarlierOneOfTheSameName)
{
    EXPECT_EQ(read("myfont.shx;1\nother.shx;3\nmyfont.shx;2\n"),
              (Fonts{{L"myfont.shx", 2}, {L"other.shx", 3}}));
}

TEST_F(BigFontIni, NamesOfOtherCaseAreOtherNames)
{
    EXPECT_EQ(read("myfont.shx;1\nMYFONT.SHX;2\n"), (Fonts{{L"myfont.shx", 1}, {L"MYFONT.SHX", 2}}));
}

TEST_F(BigFontIni, LineWithoutAnIndexDoesNotTakeAnEarlierOneAway)
{
    EXPECT_EQ(read("myfont.shx;5\nmyfont.shx;0\nmyfont.shx;\n"), kMyFont5);
}

TEST_F(BigFontIni, SecondFileAddsToTheFirst)
{
    read("myfont.shx;1\nother.shx;3\n");
    EXPECT_EQ(read("myfont.shx;5\n"), (Fonts{{L"myfont.shx", 5}, {L"other.shx", 3}}));
}

TEST_F(BigFontIni, MarkOfUtf8AtTheStartIsSkipped)
{
    EXPECT_EQ(read("\xEF\xBB\xBFmyfont.shx;5\n"), kMyFont5);
    g_mapCP2Bigfont.clear();
    EXPECT_EQ(read("\xEF\xBB\xBF"), kNone);
}

TEST_F(BigFontIni, EmptyFileIsRead) { EXPECT_EQ(read(""), kNone); }

TEST_F(BigFontIni, OneCarriageReturnBelongsToTheLineEnd)
{
    EXPECT_EQ(read("myfont.shx;\r\r\n"), kNone);
    EXPECT_EQ(read("myfont.shx;\r\n"), kNone);
    EXPECT_EQ(read("\r\n\r\nmyfont.shx;5\r\n\r\n"), kMyFont5);
}

// A name of `length` letters, then ".shx;" and digits: where the line is cut shows in the value.
std::string longLine(std::size_t nameLength, const std::string& letter, const std::string& value)
{
    std::string text;
    while (nameLength-- > 0)
        text += letter;
    return text + ".shx;" + value;
}

TEST_F(BigFontIni, Character512IsTheLastThatCounts)
{
    const std::wstring name = std::wstring(506, L'n') + L".shx";
    EXPECT_EQ(read(longLine(506, "n", "1")), (Fonts{{name, 1}})); // 512 characters
    EXPECT_EQ(read(longLine(506, "n", "23")), (Fonts{{name, 2}}));
    EXPECT_EQ(read(longLine(506, "n", "4" + std::string(10000, '5')) + "\r\nmyfont.shx;5\n"),
              (Fonts{{name, 4}, {L"myfont.shx", 5}}));
}

TEST_F(BigFontIni, SeparatorAsCharacter512EndsTheLine)
{
    EXPECT_EQ(read(longLine(507, "n", "5")), kNone);
    EXPECT_EQ(read(longLine(508, "n", "5")), kNone);
}

TEST_F(BigFontIni, CarriageReturnBehindCharacter512IsNotMissed)
{
    const std::wstring name = std::wstring(506, L'n') + L".shx";
    EXPECT_EQ(read(longLine(506, "n", "1\r\n")), (Fonts{{name, 1}}));
}

TEST_F(BigFontIni, LongLinesAreCountedInCharactersNotBytes)
{
    const std::wstring name = std::wstring(506, L'\x660E') + L".shx";
    EXPECT_EQ(read(longLine(506, "\xE6\x98\x8E", "12")), (Fonts{{name, 1}}));
    g_mapCP2Bigfont.clear();
    std::wstring pairs;
    for (int i = 0; i < 253; ++i)
        pairs += L"\xD83D\xDE00";
    EXPECT_EQ(read(longLine(253, "\xF0\x9F\x98\x80", "12")), (Fonts{{pairs + L".shx", 1}}));
}

TEST_F(BigFontIni, LongNamesOfAnyLengthDoNoHarm)
{
    EXPECT_EQ(read(std::string(100000, 'n') + ".shx;1\n" + std::string(5000, ';') + "\nmyfont.shx;5"),
              kMyFont5);
}

TEST_F(BigFontIni, LinesLieAcrossTheBlocksOfTheFile)
{
    std::string content;
    Fonts fonts;
    for (int i = 1; i <= 2000; ++i) {
        content += "font" + std::to_string(i) + ".shx;" + std::to_string(i) + "\n";
        fonts[L"font" + std::to_wstring(i) + L".shx"] = i;
    }
    EXPECT_EQ(read(content), fonts);
}

TEST_F(BigFontIni, FileThatIsNotThereIsRefused)
{
    EXPECT_FALSE(ReadBigfontIni(m_files.wide("missing.ini").c_str()));
    EXPECT_FALSE(ReadBigfontIni(L""));
    EXPECT_FALSE(ReadBigfontIni(nullptr));
}

TEST_F(BigFontIni, FolderIsRefused) { EXPECT_FALSE(ReadBigfontIni(m_files.wide("").c_str())); }

TEST_F(BigFontIni, PathOf511BytesIsTheLongest)
{
    const std::wstring file = m_files.put("BIGFONT.INI", "myfont.shx;5\n");
    const std::size_t folder = file.rfind(L'/');
    std::wstring path = file;
    while (path.size() < 511)
        path.insert(folder, L"/");
    EXPECT_TRUE(ReadBigfontIni(path.c_str()));
    path.insert(folder, L"/");
    EXPECT_FALSE(ReadBigfontIni(path.c_str()));
}

TEST_F(BigFontIni, PathMayHaveAnyCharacter)
{
    const std::wstring file = m_files.put("\xC3\xA9\xE6\x98\x8E.ini", "myfont.shx;5\n");
    const std::wstring path = file.substr(0, file.rfind(L'/')) + L"/\x00E9\x660E.ini";
    EXPECT_TRUE(ReadBigfontIni(path.c_str()));
    EXPECT_EQ(g_mapCP2Bigfont, kMyFont5);
}

} // namespace

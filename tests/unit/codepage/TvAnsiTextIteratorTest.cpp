// Walking narrow text: characters, escapes, digits, safe breaks.
#include "TvPlatformText.h"

#include "CaseName.h"
#include "MapperText.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using Values = std::vector<unsigned>;

class TextIterator : public testing::Test {
protected:
    // The double-byte code pages' lead bytes are known without a map file.
    void SetUp() override { TvCharMapper::initialize(L""); }
    void TearDown() override { TvCharMapper::unInitialize(); }
};

TvStringA stringOf(const std::string& bytes)
{
    TvStringA text;
    if (!bytes.empty()) {
        bytes.copy(text.getBuffer(static_cast<int>(bytes.size())), bytes.size());
        text.releaseBuffer(static_cast<int>(bytes.size()));
    }
    return text;
}

// All characters up to the first 0.
Values walk(const TvStringA& text, code_page_id cp)
{
    TvAnsiTextIterator it(text, cp);
    Values values;
    while (const unsigned value = it.nextChar()) {
        EXPECT_EQ(*it, value);
        values.push_back(value);
    }
    EXPECT_EQ(*it, 0u);
    EXPECT_EQ(it.nextChar(), 0u) << "at the end it stays";
    return values;
}

struct WalkCase {
    const char* name;
    code_page_id cp;
    std::string text;
    Values values;
};

class TextIteratorWalk : public TextIterator, public testing::WithParamInterface<WalkCase> {};

TEST_P(TextIteratorWalk, GivesTheseCharacters)
{
    EXPECT_EQ(walk(stringOf(GetParam().text), GetParam().cp), GetParam().values);
}

const WalkCase kWalks[] = {
    {"Empty", CP_ANSI_1252, "", {}},
    {"Ascii", CP_ANSI_1252, "ab", {'a', 'b'}},
    {"BytesAreNotConverted", CP_ANSI_1251, "\x80\xE9\xFF", {0x80, 0xE9, 0xFF}},
    {"Pair", CP_ANSI_936, "\xB0\xA1", {0xB0A1}},
    {"PairBetweenAscii", CP_ANSI_936, "a\xB0\xA1z", {'a', 0xB0A1, 'z'}},
    {"PairWithABackslash", CP_ANSI_932, "\x83\\U+0041", {0x835C, 'U', '+', '0', '0', '4', '1'}},
    {"NoLeadByte", CP_ANSI_932, "\xB1\xB2", {0xB1, 0xB2}},
    {"LeadBytesOfBothRanges", CP_ANSI_932, "\x9F\x40\xA0\xE0\x40", {0x9F40, 0xA0, 0xE040}},
    {"LeadByteAtTheEnd", CP_ANSI_936, "a\xB0", {'a', 0xB0}},
    {"AnyTrailByte", CP_ANSI_936, "\xB0\x01", {0xB001}},
    {"OlderIdOfTheSamePage", CP_GB2312, "\xB0\xA1", {0xB0A1}},
    {"JohabHasNoLeadBytes", CP_ANSI_1361, "\xB0\xA1", {0xB0, 0xA1}},
    {"Utf8IsWalkedByBytes", CP_UTF8, "\xC3\xA9", {0xC3, 0xA9}},
    {"Id0IsNotTheSystems", CP_UNDEFINED, "\xB0\xA1", {0xB0, 0xA1}},
    {"CountIsNotTheSystems", CP_CNT, "\xB0\xA1", {0xB0, 0xA1}},
    {"Cif", CP_ANSI_1252, "25\\U+00B0C", {'2', '5', 0xB0, 'C'}},
    {"CifInSmallLetters", CP_ANSI_1252, "\\u+20ac", {0x20AC}},
    {"CifFollowedByADigit", CP_ANSI_1252, "\\U+00B05", {0xB0, '5'}},
    {"CifCutShort", CP_ANSI_1252, "\\U+00B", {'\\', 'U', '+', '0', '0', 'B'}},
    {"CifWithoutPlus", CP_ANSI_1252, "\\U00B0", {'\\', 'U', '0', '0', 'B', '0'}},
    {"CifInADoubleBytePage", CP_ANSI_936, "\\U+00B0\xB0\xA1", {0xB0, 0xB0A1}},
    {"Mif", CP_ANSI_1252, "a\\M+1815Fz", {'a', 0x815F, 'z'}},
    {"MifInSmallLetters", CP_ANSI_1252, "\\m+5b0a1", {0xB0A1}},
    {"MifOfTheSystemsPage", CP_ANSI_1252, "\\M+0815F", {0x815F}},
    {"MifOfNoPage", CP_ANSI_1252, "\\M+6815F", {'\\', 'M', '+', '6', '8', '1', '5', 'F'}},
    {"MifCutShort", CP_ANSI_1252, "\\M+1815", {'\\', 'M', '+', '1', '8', '1', '5'}},
    {"Backslashes", CP_ANSI_1252, "\\\\P", {'\\', '\\', 'P'}},
    {"ZeroEndsTheText", CP_ANSI_1252, std::string("a\0b", 3), {'a'}},
    {"ZeroBehindALeadByte", CP_ANSI_936, std::string("\xB0\0b", 3), {0xB0}},
};

INSTANTIATE_TEST_SUITE_P(Texts, TextIteratorWalk, testing::ValuesIn(kWalks), nameOfCase<WalkCase>);

TEST_F(TextIterator, ValueIs0BeforeTheFirstCharacter)
{
    const TvStringA text("a");
    const TvAnsiTextIterator it(text, CP_ANSI_1252);
    EXPECT_EQ(*it, 0u);
}

TEST_F(TextIterator, EscapeOfZeroIs0AndIsPassed)
{
    const TvStringA text("\\U+0000z");
    TvAnsiTextIterator it(text, CP_ANSI_1252);
    EXPECT_EQ(it.nextChar(), 0u);
    EXPECT_EQ(it.nextChar(), unsigned{'z'});
}

TEST_F(TextIterator, DigitsAreAppendedToTheValue)
{
    const TvStringA text("x12aFg");
    TvAnsiTextIterator it(text, CP_ANSI_1252);
    it.nextChar();
    it.appendDigits(2, true);
    EXPECT_EQ(*it, 0x7812u);
    it.appendDigits(9, true); // stops at "g"
    EXPECT_EQ(*it, 0x7812AFu);
    EXPECT_EQ(it.nextChar(), unsigned{'g'});
}

TEST_F(TextIterator, DecimalDigitsStopAtALetter)
{
    const TvStringA text("12a");
    TvAnsiTextIterator it(text, CP_ANSI_1252);
    it.appendDigits(3, false);
    EXPECT_EQ(*it, 12u);
    EXPECT_EQ(it.nextChar(), unsigned{'a'});
}

TEST_F(TextIterator, NoDigitsAreTakenForACountBelow1)
{
    const TvStringA text("12");
    TvAnsiTextIterator it(text, CP_ANSI_1252);
    it.appendDigits(0, true);
    it.appendDigits(-1, true);
    it.appendDigitsNoCheck(-1, true);
    EXPECT_EQ(*it, 0u);
    EXPECT_EQ(it.nextChar(), unsigned{'1'});
}

TEST_F(TextIterator, UncheckedDigitsTakeAnyCharacter)
{
    const TvStringA text("1g2a");
    TvAnsiTextIterator it(text, CP_ANSI_1252);
    it.appendDigitsNoCheck(3, true);
    EXPECT_EQ(*it, 0x102u);
    TvAnsiTextIterator decimal(text, CP_ANSI_1252);
    decimal.appendDigitsNoCheck(4, false);
    EXPECT_EQ(*decimal, 1030u); // ((1 * 10 + 0) * 10 + 2) * 10 + 10
}

TEST_F(TextIterator, UncheckedDigitsEndWithTheText)
{
    const TvStringA text("12");
    TvAnsiTextIterator it(text, CP_ANSI_1252);
    it.appendDigitsNoCheck(1000000, true);
    EXPECT_EQ(*it, 0x12u);
    EXPECT_EQ(it.nextChar(), 0u);
    it.appendDigitsNoCheck(1, true);
    EXPECT_EQ(*it, 0u);
}

TEST_F(TextIterator, ManyDigitsWrapAround)
{
    const TvStringA text("123456789");
    TvAnsiTextIterator it(text, CP_ANSI_1252);
    it.appendDigits(9, true);
    EXPECT_EQ(*it, 0x23456789u);
}

struct NotRequiredCase {
    const char* name;
    code_page_id cp;
    std::string text;
    bool isNotRequired;
};

class TextIteratorNotRequired : public TextIterator, public testing::WithParamInterface<NotRequiredCase> {};

TEST_P(TextIteratorNotRequired, ForBytesThatAreCharacters)
{
    const TvStringA text = stringOf(GetParam().text);
    EXPECT_EQ(TvAnsiTextIterator::TvAnsiTextIteratorNotRequired(text, GetParam().cp),
              GetParam().isNotRequired);
}

const NotRequiredCase kNotRequired[] = {
    {"Ascii", CP_ANSI_1252, "abc", true},
    {"Empty", CP_ANSI_1252, "", true},
    {"HighBytes", CP_ANSI_1252, "\x80\xFF", true},
    {"Backslash", CP_ANSI_1252, "a\\P", false},
    {"BackslashAtTheEnd", CP_ANSI_1252, "a\\", false},
    {"BackslashBehindAZero", CP_ANSI_1252, std::string("a\0\\", 3), false},
    {"DoubleBytePage", CP_ANSI_936, "abc", false},
    {"EmptyInADoubleBytePage", CP_ANSI_936, "", false},
    {"OlderDoubleBytePage", CP_BIG5, "abc", false},
    {"Johab", CP_ANSI_1361, "abc", false},
    {"Utf8", CP_UTF8, "\xC3\xA9", true},
    {"SystemsPage", CP_UNDEFINED, "abc", true},
};

INSTANTIATE_TEST_SUITE_P(Texts, TextIteratorNotRequired, testing::ValuesIn(kNotRequired),
                         nameOfCase<NotRequiredCase>);

struct BreakCase {
    const char* name;
    code_page_id cp;
    std::string text;
    int maxBytes;
    int result;
    std::string rest;
};

class TextIteratorBreak : public TextIterator, public testing::WithParamInterface<BreakCase> {};

TEST_P(TextIteratorBreak, IsBeforeTheLastCharacterTaken)
{
    const TvStringA text = stringOf(GetParam().text);
    TvAnsiTextIterator it(text, GetParam().cp);
    TvStringA rest("what was there");
    EXPECT_EQ(it.breakSafely(GetParam().maxBytes, rest), GetParam().result);
    EXPECT_EQ(std::string(rest.constStr(), rest.numOfChars()), GetParam().rest);
}

const BreakCase kBreaks[] = {
    {"Empty", CP_ANSI_1252, "", 10, 0, ""},
    {"OneCharacter", CP_ANSI_1252, "a", 10, 0, ""},
    {"OnePair", CP_ANSI_936, "\xB0\xA1", 1, 0, ""},
    {"OneEscape", CP_ANSI_1252, "\\U+00B0", 3, 0, ""},
    {"NoRoom", CP_ANSI_1252, "abc", 0, 3, ""},
    {"NegativeRoom", CP_ANSI_1252, "abc", -5, 3, ""},
    {"RoomForOne", CP_ANSI_1252, "abc", 1, 3, ""},
    {"RoomForTwo", CP_ANSI_1252, "abc", 2, 3, "a"},
    {"ExactlyToTheEnd", CP_ANSI_1252, "abc", 3, 3, "ab"},
    {"BeyondTheEnd", CP_ANSI_1252, "abc", 4, 1, "abc"},
    {"FarBeyondTheEnd", CP_ANSI_1252, "abc", 1000, 1, "abc"},
    {"PairAcrossTheLimit", CP_ANSI_936, "a\xB0\xA1z", 2, 3, "a"},
    {"PairAtTheLimit", CP_ANSI_936, "a\xB0\xA1z", 3, 3, "a"},
    {"BehindThePair", CP_ANSI_936, "a\xB0\xA1z", 4, 3, "a\xB0\xA1"},
    {"EscapeAcrossTheLimit", CP_ANSI_1252, "a\\U+00B0z", 4, 3, "a"},
    {"BehindTheEscape", CP_ANSI_1252, "a\\U+00B0z", 9, 3, "a\\U+00B0"},
    {"MifAcrossTheLimit", CP_ANSI_936, "\xB0\xA1\\M+1815F\xB0\xA1", 5, 3, "\xB0\xA1"},
    {"EscapeOfZeroIsACharacter", CP_ANSI_1252, "a\\U+0000z", 8, 3, "a"},
    {"ZeroEndsTheText", CP_ANSI_1252, std::string("ab\0cd", 5), 5, 1, "ab"},
};

INSTANTIATE_TEST_SUITE_P(Texts, TextIteratorBreak, testing::ValuesIn(kBreaks), nameOfCase<BreakCase>);

TEST_F(TextIterator, BreakGoesOnFromThePosition)
{
    const TvStringA text("abcdef");
    TvAnsiTextIterator it(text, CP_ANSI_1252);
    TvStringA rest;
    it.breakSafely(3, rest);
    EXPECT_EQ(*it, unsigned{'c'});
    EXPECT_EQ(it.breakSafely(5, rest), 3);
    EXPECT_STREQ(rest.constStr(), "abcd");
    EXPECT_EQ(it.nextChar(), unsigned{'f'});
}

TEST_F(TextIterator, BreakAtTheEndGivesTheWholeText)
{
    const TvStringA text("ab");
    TvAnsiTextIterator it(text, CP_ANSI_1252);
    while (it.nextChar())
        ;
    TvStringA rest;
    EXPECT_EQ(it.breakSafely(10, rest), 0);
    EXPECT_STREQ(rest.constStr(), "ab");
}

TEST_F(TextIterator, BrokenTextKeepsTheNumberOfItsCodePage)
{
    TvStringA text("abc");
    text.setCodepage(936);
    TvAnsiTextIterator it(text, CP_ANSI_936);
    TvStringA rest;
    it.breakSafely(2, rest);
    EXPECT_EQ(rest.header()->codepage, 936);
}

TEST_F(TextIterator, BreakMayTakeTheTextItself)
{
    TvStringA text("a text that is long enough to have a block of its own");
    TvAnsiTextIterator it(text, CP_ANSI_1252);
    EXPECT_EQ(it.breakSafely(7, text), 3);
    EXPECT_STREQ(text.constStr(), "a text");
}

TEST_F(TextIterator, BreakLeavesTheTextAsItIs)
{
    const TvStringA text("abcdef");
    TvStringA rest(text); // shares the text
    TvAnsiTextIterator it(text, CP_ANSI_1252);
    it.breakSafely(3, rest);
    EXPECT_STREQ(text.constStr(), "abcdef");
    EXPECT_STREQ(rest.constStr(), "ab");
    EXPECT_EQ(it.nextChar(), unsigned{'d'});
}

} // namespace

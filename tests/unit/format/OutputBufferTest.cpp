// How the output engine fills its buffer: capacity, termination, failures.
#include "CaseName.h"
#include "FormatCase.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstdarg>
#include <string>
#include <utility>
#include <vector>

namespace {

// A call with exactly `capacity` characters; what lies behind them must stay as it is.
struct BufferCase {
    const char* name;
    const wchar_t* format;
    int capacity;
    int result;
    const wchar_t* text;
};

class OutputBuffer : public testing::TestWithParam<BufferCase> {};

TEST_P(OutputBuffer, StaysInsideItsCapacity)
{
    wchar_t buffer[301] = {};
    std::wmemset(buffer, L'#', 300);
    const BufferCase& c = GetParam();

    const int result = FormatUtil::outputStringWithFormat(buffer, c.capacity, c.format, 12345, L"abc");

    EXPECT_EQ(result, c.result);
    EXPECT_EQ(std::wstring(buffer), c.text);
    EXPECT_EQ(std::wcsspn(buffer + c.capacity, L"#"), 300u - static_cast<unsigned>(c.capacity));
}

const BufferCase kCases[] = {
    {"LiteralFits", L"door", 5, 4, L"door"},
    {"LiteralOneShort", L"door", 4, 0, L""},
    {"LiteralBehindAField", L"%d door", 11, 10, L"12345 door"},
    {"LiteralBehindAFieldOneShort", L"%d door", 10, 0, L"12345"},
    {"FieldFits", L"%d", 6, 5, L"12345"},
    {"FieldOneShort", L"%d", 5, -1, L""},
    {"FieldBehindALiteralOneShort", L"n=%d", 7, -1, L"n="},
    {"TextOneShort", L"%d%s", 8, -1, L"12345"},
    {"TextFits", L"%d%s", 9, 8, L"12345abc"},
    {"PaddedFieldFits", L"%7d", 8, 7, L"  12345"},
    {"PaddedFieldOneShortKeepsItsPadding", L"%7d", 7, -1, L"  "},
    {"PaddingOneShort", L"%-7d", 7, -1, L"12345"},
    {"PaddingInPiecesOf30", L"%105d", 80, -1,
     L"                                                            "},
    {"PaddingJustFits", L"%-40d", 41, 40, L"12345                                   "},
    {"PointFits", L"%.2d", 7, 6, L"123.45"},
    {"PointOneShort", L"%.2d", 6, -1, L""},
    {"EmptyFormat", L"", 1, 0, L""},
    {"EmptyFieldInOne", L"%q", 1, 0, L""},
    {"CapacityOne", L"%d", 1, -1, L""},
    {"UnknownLetterOneShort", L"%%", 1, -1, L""},
    {"EndsInPercent", L"ab%", 9, 2, L"ab"},
    {"EndsInFlag", L"ab%-", 9, 2, L"ab"},
    {"EndsInWidth", L"ab%12", 9, 2, L"ab"},
    {"EndsInDot", L"ab%12.", 9, 2, L"ab"},
    {"EndsInPrecision", L"ab%.12", 9, 2, L"ab"},
    {"EndsInLength", L"ab%l", 9, 2, L"ab"},
    {"ModeMissingLetterIsText", L"%qz", 9, 1, L"z"},
    {"ModeMissingIsPadded", L"%3q|", 9, 4, L"   |"},
    {"HugeWidth", L"%4294967295d", 20, -1, L""},
    {"WidthBeyond32Bits", L"%99999999999999999999d", 20, -1, L""},
    {"HugePrecisionOnInteger", L"%.4294967295d", 20, -1, L""},
    {"HugePrecisionOnText", L"%d%.4294967295s", 20, 8, L"12345abc"},
};
INSTANTIATE_TEST_SUITE_P(Capacity, OutputBuffer, testing::ValuesIn(kCases), nameOfCase<BufferCase>);

// What a call with a buffer of `capacity` characters left in it and behind it.
template<class... Args>
std::pair<int, std::wstring> formatInto(int capacity, const wchar_t* format, Args... args)
{
    wchar_t buffer[301] = {};
    std::wmemset(buffer, L'#', 300);
    const int result = FormatUtil::outputStringWithFormat(buffer, capacity, format, args...);
    EXPECT_EQ(std::wcsspn(buffer + capacity, L"#"), 300u - static_cast<unsigned>(capacity));
    return {result, capacity ? std::wstring(buffer) : std::wstring()};
}

// A width of 1 changes nothing, but must be parsed.
TEST(Output, BareConversionsFitLikeThoseWithAWidth)
{
    for (int capacity = 0; capacity < 150; ++capacity) {
        EXPECT_EQ(formatInto(capacity, L"a%db", -12345), formatInto(capacity, L"a%1db", -12345));
        EXPECT_EQ(formatInto(capacity, L"a%ib", 12345), formatInto(capacity, L"a%1ib", 12345));
        EXPECT_EQ(formatInto(capacity, L"a%sb", L"door"), formatInto(capacity, L"a%1sb", L"door"));
        for (const double value : {-1.5, 0.0, 123456.789, 1e20, -1e300, HUGE_VAL, std::nan("")}) {
            EXPECT_EQ(formatInto(capacity, L"a%fb", value), formatInto(capacity, L"a%1fb", value));
            EXPECT_EQ(formatInto(capacity, L"%.3f%.0f", value, value),
                      formatInto(capacity, L"%1.3f%1.0f", value, value));
            EXPECT_EQ(formatInto(capacity, L"%.9f", value), formatInto(capacity, L"%1.9f", value));
        }
    }
}

TEST(Output, NegativeStarWidthFails)
{
    wchar_t buffer[20];
    EXPECT_EQ(FormatUtil::outputStringWithFormat(buffer, 20, L"ab%*d", -5, 1), -1);
    EXPECT_STREQ(buffer, L"ab");
}

TEST(Output, TextLongerThanTheFieldBufferIsPrintedInPlace)
{
    const std::wstring text(3000, L'x');
    std::vector<wchar_t> buffer(3001);
    EXPECT_EQ(FormatUtil::outputStringWithFormat(buffer.data(), 3001, L"%s", text.c_str()), 3000);
    EXPECT_EQ(text, buffer.data());
}

TEST(Output, IntegerLongerThanTheFieldBufferFails)
{
    wchar_t buffer[2100];
    EXPECT_EQ(FormatUtil::outputStringWithFormat(buffer, 2100, L"%.2046d", 1), 2048);
    EXPECT_EQ(FormatUtil::outputStringWithFormat(buffer, 2100, L"%.2047d", 1), -1);
    EXPECT_STREQ(buffer, L"");
}

TEST(Output, TextWithPrecisionIsNotReadBehindIt)
{
    const wchar_t unterminated[3] = {L'a', L'b', L'c'};
    wchar_t buffer[10];
    EXPECT_EQ(FormatUtil::outputStringWithFormat(buffer, 10, L"%.3s", unterminated), 3);
    EXPECT_STREQ(buffer, L"abc");
}

TEST(Output, TextIsContinuedInItsOwnBuffer)
{
    wchar_t buffer[200] = L"door"; // with room enough for a conversion without parsing
    EXPECT_EQ(FormatUtil::outputStringWithFormat(buffer, 200, L"%s %d", buffer, 7), 6);
    EXPECT_STREQ(buffer, L"door 7");
    EXPECT_EQ(FormatUtil::outputStringWithFormat(buffer, 20, L"%1$s-%2$.1f", buffer, 1.5), 10);
    EXPECT_STREQ(buffer, L"door 7-1.5");
}

TEST(Output, TextWrittenSoFarIsTerminated)
{
    wchar_t buffer[200];
    std::wmemset(buffer, L'#', 200);
    buffer[199] = 0;
    EXPECT_EQ(FormatUtil::outputStringWithFormat(buffer, 20, L"ab%s", buffer), 4);
    EXPECT_STREQ(buffer, L"abab");
    EXPECT_EQ(FormatUtil::outputStringWithFormat(buffer, 20, L"%3d%s", 7, buffer), 6);
    EXPECT_STREQ(buffer, L"  7  7");
    EXPECT_EQ(FormatUtil::outputStringWithFormat(buffer, 200, L"%.1f%s", 1.5, buffer), 6);
    EXPECT_STREQ(buffer, L"1.51.5");
}

TEST(Output, CharacterZeroIsWritten)
{
    wchar_t buffer[10];
    EXPECT_EQ(FormatUtil::outputStringWithFormat(buffer, 10, L"a%cb", 0), 3);
    EXPECT_EQ(std::wstring(buffer, 3), std::wstring(L"a\0b", 3));
}

struct NoRoomCase {
    const char* name;
    const wchar_t* format;
    int result;
};

class OutputWithoutRoom : public testing::TestWithParam<NoRoomCase> {};

TEST_P(OutputWithoutRoom, WritesNothing)
{
    for (const int capacity : {0, -1, INT_MIN}) {
        wchar_t buffer[2] = {L'#', L'#'};
        EXPECT_EQ(FormatUtil::outputStringWithFormat(buffer, capacity, GetParam().format, 1),
                  GetParam().result);
        EXPECT_EQ(std::wstring(buffer, 2), L"##");
    }
}

const NoRoomCase kNoRoom[] = {
    {"EmptyFormat", L"", 0},   {"Literal", L"a", 0},        {"Field", L"%d", -1},
    {"EmptyField", L"%q", -1}, {"NumberZero", L"%0$d", -1},
};
INSTANTIATE_TEST_SUITE_P(Capacity, OutputWithoutRoom, testing::ValuesIn(kNoRoom), nameOfCase<NoRoomCase>);

int callEngine(wchar_t** out, int capacity, const wchar_t* format, ...)
{
    va_list args;
    va_start(args, format);
    const int result = OutputWithFormat(out, capacity, format, &args);
    va_end(args);
    return result;
}

TEST(OutputWithFormatCall, NullOutFails) { EXPECT_EQ(callEngine(nullptr, 10, L"a"), -1); }

TEST(OutputWithFormatCall, NullBufferFails)
{
    wchar_t* out = nullptr;
    EXPECT_EQ(callEngine(&out, 10, L"a"), -1);
}

TEST(OutputWithFormatCall, NullFormatFails)
{
    wchar_t buffer[10];
    wchar_t* out = buffer;
    EXPECT_EQ(callEngine(&out, 10, nullptr), -1);
}

TEST(OutputWithFormatCall, LeavesOutBehindTheText)
{
    wchar_t buffer[10];
    wchar_t* out = buffer;
    EXPECT_EQ(callEngine(&out, 10, L"a%db", 12), 4);
    EXPECT_EQ(out, buffer + 4);
    EXPECT_STREQ(buffer, L"a12b");
}

TEST(OutputWithFormatCall, LeavesOutBehindWhatWasWrittenWhenItFails)
{
    wchar_t buffer[10];
    wchar_t* out = buffer;
    EXPECT_EQ(callEngine(&out, 4, L"a%d", 1234), -1);
    EXPECT_EQ(out, buffer + 1);
    EXPECT_STREQ(buffer, L"a");
}

TEST(OutputWithFormatCall, WithoutAListArgumentsAreZero)
{
    wchar_t buffer[40];
    wchar_t* out = buffer;
    EXPECT_EQ(OutputWithFormat(&out, 40, L"a%d|%s|%.1f|%2$d", nullptr), 9);
    EXPECT_STREQ(buffer, L"a0||0.0|0");
}

TEST(FixedNotation, WritesSignDigitsAndPoint)
{
    wchar_t buffer[32];
    EXPECT_EQ(FormatScienceDoubleAndOutputString(buffer, 32, -12.345, 2), 6);
    EXPECT_STREQ(buffer, L"-12.35");
}

TEST(FixedNotation, FitsExactly)
{
    wchar_t buffer[7];
    EXPECT_EQ(FormatScienceDoubleAndOutputString(buffer, 7, -12.345, 2), 6);
}

TEST(FixedNotation, OneShortIsEmptyAndFails)
{
    wchar_t buffer[7] = L"######";
    EXPECT_EQ(FormatScienceDoubleAndOutputString(buffer, 6, -12.345, 2), -1);
    EXPECT_STREQ(buffer, L"");
}

TEST(FixedNotation, WithoutCapacityNothingIsWritten)
{
    wchar_t buffer[2] = {L'#', L'#'};
    EXPECT_EQ(FormatScienceDoubleAndOutputString(buffer, 0, 1.0, 2), -1);
    EXPECT_EQ(buffer[0], L'#');
    EXPECT_EQ(FormatScienceDoubleAndOutputString(nullptr, 10, 1.0, 2), -1);
}

TEST(FixedNotation, CountsThe125CharactersBehindTheSign)
{
    wchar_t buffer[200];
    EXPECT_EQ(FormatScienceDoubleAndOutputString(buffer, 200, -1e20, 0), 126);
    EXPECT_EQ(FormatScienceDoubleAndOutputString(buffer, 200, 1e20, 0), 125);
}

TEST(FixedNotation, NegativeZeroHasNoSign)
{
    wchar_t buffer[32];
    EXPECT_EQ(FormatScienceDoubleAndOutputString(buffer, 32, -0.0, 1), 3);
    EXPECT_STREQ(buffer, L"0.0");
}

TEST(FixedNotation, InfinityIsAWord)
{
    wchar_t buffer[32];
    EXPECT_EQ(FormatScienceDoubleAndOutputString(buffer, 32, -HUGE_VAL, 1), 9);
    EXPECT_STREQ(buffer, L"-Infinity");
}

} // namespace

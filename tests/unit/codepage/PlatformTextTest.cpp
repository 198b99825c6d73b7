// The conversion functions with the Windows names: arguments, sizes, code page numbers.
#include "TvPlatformText.h"

#include "CaseName.h"
#include "GuardPage.h"
#include "MapperText.h"
#include "TvCharOp.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>

extern "C" int platformTextWideFromC(const char* text, wchar_t* dst, int dstLen);
extern "C" int platformTextBytesFromC(const wchar_t* text, char* dst, int dstLen);

namespace {

class PlatformText : public testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(TvCharMapper::initialize(shippedMapFile()), Orna::eOk); }
    void TearDown() override { TvCharMapper::unInitialize(); }
};

std::wstring wideOf(unsigned cp, const std::string& bytes)
{
    const int size = static_cast<int>(bytes.size());
    const int needed = MultiByteToWideChar(cp, 0, bytes.data(), size, nullptr, 0);
    std::wstring text(static_cast<std::size_t>(needed), L'?');
    EXPECT_EQ(MultiByteToWideChar(cp, 0, bytes.data(), size, text.data(), needed), needed);
    return text;
}

std::string bytesOf(unsigned cp, const std::wstring& text)
{
    const int size = static_cast<int>(text.size());
    const int needed = WideCharToMultiByte(cp, 0, text.data(), size, nullptr, 0, nullptr, nullptr);
    std::string bytes(static_cast<std::size_t>(needed), '?');
    EXPECT_EQ(WideCharToMultiByte(cp, 0, text.data(), size, bytes.data(), needed, nullptr, nullptr), needed);
    return bytes;
}

// Sizes, for both directions: each row converts "abc" (with its 0 behind it) or "".
struct SizeCase {
    const char* name;
    bool isEmpty;
    int srcLen;
    int dstLen; // -1000: null dst with dstLen 0; -1001: null dst with dstLen 4
    int result;
    std::string dst; // first elements of a buffer full of '*'
};

constexpr int kNoBuffer = -1000;
constexpr int kNullBufferOf4 = -1001;

const SizeCase kSizeCases[] = {
    {"WholeTextMeasured", false, -1, kNoBuffer, 4, "********"},
    {"WholeTextMeasuredBesideABuffer", false, -1, 0, 4, "********"},
    {"WholeTextFits", false, -1, 4, 4, std::string("abc\0****", 8)},
    {"WholeTextInMoreRoom", false, -1, 8, 4, std::string("abc\0****", 8)},
    {"WholeTextWithoutRoomForItsEnd", false, -1, 3, 0, std::string("\0*******", 8)},
    {"WholeTextInOneElement", false, -1, 1, 0, std::string("\0*******", 8)},
    {"PartMeasured", false, 3, kNoBuffer, 3, "********"},
    {"PartFits", false, 3, 3, 3, "abc*****"},
    {"PartInMoreRoomHasNoTerminator", false, 3, 8, 3, "abc*****"},
    {"PartDoesNotFit", false, 3, 2, 0, std::string("\0*******", 8)},
    {"OneElement", false, 1, 1, 1, "a*******"},
    {"TerminatorGivenIsTheEnd", false, 4, 8, 3, "abc*****"},
    {"LengthBehindTheTerminator", false, 100, 8, 3, "abc*****"},
    {"NoLength", false, 0, 8, 0, "********"},
    {"NoLengthMeasured", false, 0, kNoBuffer, 0, "********"},
    {"LengthMinus2", false, -2, 8, 0, "********"},
    {"LeastLength", false, INT_MIN, 8, 0, "********"},
    {"NegativeRoom", false, -1, -1, 0, "********"},
    {"LeastRoom", false, 3, INT_MIN, 0, "********"},
    {"NullBufferWithRoom", false, -1, kNullBufferOf4, 0, "********"},
    {"EmptyMeasured", true, -1, kNoBuffer, 1, "********"},
    {"EmptyIsATerminator", true, -1, 8, 1, std::string("\0*******", 8)},
    {"EmptyInOneElement", true, -1, 1, 1, std::string("\0*******", 8)},
    {"EmptyPartMeasured", true, 1, kNoBuffer, 0, "********"},
    {"EmptyPart", true, 1, 8, 0, std::string("\0*******", 8)},
};

class PlatformTextSize : public PlatformText, public testing::WithParamInterface<SizeCase> {
protected:
    // The result of `convert(src, srcLen, dst, dstLen)`, and what it leaves in `dst`.
    template<class From, class To, class Convert>
    void check(Convert convert)
    {
        const SizeCase& size = GetParam();
        const From text[128] = {'a', 'b', 'c'}; // zeros behind it, as far as any length reaches
        To buffer[8];
        std::fill(std::begin(buffer), std::end(buffer), To('*'));
        const bool isNull = size.dstLen == kNoBuffer || size.dstLen == kNullBufferOf4;
        const int room = size.dstLen == kNoBuffer ? 0 : size.dstLen == kNullBufferOf4 ? 4 : size.dstLen;
        EXPECT_EQ(convert(size.isEmpty ? text + 3 : text, size.srcLen, isNull ? nullptr : buffer, room),
                  size.result);
        EXPECT_EQ(std::string(std::begin(buffer), std::end(buffer)), size.dst);
    }
};

const unsigned kPages[] = {1252, 936, 65001, 0};

TEST_P(PlatformTextSize, OfWideText)
{
    for (unsigned cp : kPages) {
        check<char, wchar_t>([cp](const char* src, int srcLen, wchar_t* dst, int dstLen) {
            return MultiByteToWideChar(cp, 0, src, srcLen, dst, dstLen);
        });
    }
}

TEST_P(PlatformTextSize, OfBytes)
{
    for (unsigned cp : kPages) {
        check<wchar_t, char>([cp](const wchar_t* src, int srcLen, char* dst, int dstLen) {
            return WideCharToMultiByte(cp, 0, src, srcLen, dst, dstLen, nullptr, nullptr);
        });
    }
}

TEST_P(PlatformTextSize, OfTheCompanions)
{
    check<char, wchar_t>([](const char* src, int srcLen, wchar_t* dst, int dstLen) {
        return TvCharOp::tvMultiByteToWideChar(1252, 0, src, srcLen, dst, dstLen);
    });
    check<wchar_t, char>([](const wchar_t* src, int srcLen, char* dst, int dstLen) {
        return TvCharOp::WideCharToMultiByteCIF(1252, 0, src, srcLen, dst, dstLen, 7);
    });
}

INSTANTIATE_TEST_SUITE_P(Sizes, PlatformTextSize, testing::ValuesIn(kSizeCases), nameOfCase<SizeCase>);

TEST_F(PlatformText, NullSourceGives0AndLeavesTheBuffer)
{
    wchar_t wide[2] = {L'*', L'*'};
    char bytes[2] = {'*', '*'};
    for (int srcLen : {-1, 0, 5}) {
        EXPECT_EQ(MultiByteToWideChar(1252, 0, nullptr, srcLen, wide, 2), 0);
        EXPECT_EQ(WideCharToMultiByte(1252, 0, nullptr, srcLen, bytes, 2, nullptr, nullptr), 0);
    }
    EXPECT_EQ(wide[0], L'*');
    EXPECT_EQ(bytes[0], '*');
}

TEST_F(PlatformText, CharacterThatThePageLacksIsAnEscapeOf7Bytes)
{
    const wchar_t euro[] = {0x20AC};
    EXPECT_EQ(WideCharToMultiByte(1252, 0, euro, 1, nullptr, 0, nullptr, nullptr), 7);
    EXPECT_EQ(bytesOf(1252, L"\x20AC"), "\\U+20AC");
}

TEST_F(PlatformText, DefaultCharacterIsNotConsulted)
{
    int used = 42;
    char bytes[8] = {};
    const wchar_t euro[] = {0x20AC, 0};
    EXPECT_EQ(WideCharToMultiByte(1252, 0xFFFFFFFF, euro, -1, bytes, 8, "?", &used), 8);
    EXPECT_STREQ(bytes, "\\U+20AC");
    EXPECT_EQ(used, 42);
}

TEST_F(PlatformText, FlagsAreNotConsulted)
{
    wchar_t wide[4] = {};
    EXPECT_EQ(MultiByteToWideChar(1252, 0xFFFFFFFF, "\x81\xE9", -1, wide, 4), 3);
    EXPECT_STREQ(wide, L"\x0081\x00E9");
}

TEST_F(PlatformText, EscapesAreReadAndKept)
{
    EXPECT_EQ(wideOf(1252, "25\\U+00B0 \\M+5B0A1"), L"25\x00B0 \x554A");
    EXPECT_EQ(bytesOf(1252, L"25\\U+00B0 \\M+5B0A1"), "25\\U+00B0 \\M+5B0A1");
}

struct PageCase {
    const char* name;
    unsigned cp;
    std::string bytes;
    std::wstring text;
};

class PlatformTextPage : public PlatformText, public testing::WithParamInterface<PageCase> {};

// The system code page is 1253 here, where byte E9 is iota.
TEST_P(PlatformTextPage, ReadsItsBytes)
{
    const SystemCodePage greek(1253);
    EXPECT_EQ(wideOf(GetParam().cp, GetParam().bytes), GetParam().text);
}

TEST_P(PlatformTextPage, WritesItsBytes)
{
    const SystemCodePage greek(1253);
    EXPECT_EQ(bytesOf(GetParam().cp, GetParam().text), GetParam().bytes);
}

const PageCase kPageCases[] = {
    {"Number0IsTheIdentity", 0, "\x80\xE9\xFF", L"\x0080\x00E9\x00FF"},
    {"Number3IsTheSystems", 3, "\xE9", L"\x03B9"},
    {"UnknownNumberIsTheSystems", 12345, "\xE9", L"\x03B9"},
    {"LargestNumberIsTheSystems", 0xFFFFFFFF, "\xE9", L"\x03B9"},
    {"Iso8859_6ByItsPublishedNumberIsTheSystems", 28596, "\xE9", L"\x03B9"},
    {"Iso8859_6ByTheTablesNumber", 28586, "\xE9", L"\x0649"},
    {"AsciiHasNoMore", 20127, "A\\U+00E9", L"A\x00E9"},
    {"Windows1252", 1252, "\xE9", L"\x00E9"},
    {"Windows1251", 1251, "\xE9", L"\x0439"},
    {"Dos437", 437, "\x82", L"\x00E9"},
    {"Japanese", 932, "\x83\x5C\xB1", L"\x30BD\xFF71"},
    {"SimplifiedChinese", 936, "\xB0\xA1", L"\x554A"},
    {"Korean", 949, "\xB0\xA1", L"\xAC00"},
    {"TraditionalChinese", 950, "\xA4\xA4", L"\x4E2D"},
    {"Utf8", 65001, "\xC3\xA9\xE4\xB8\xAD", L"\x00E9\x4E2D"},
};

INSTANTIATE_TEST_SUITE_P(Pages, PlatformTextPage, testing::ValuesIn(kPageCases), nameOfCase<PageCase>);

TEST_F(PlatformText, DoubleByteCharacterIsOneElementAndTwoBytes)
{
    EXPECT_EQ(MultiByteToWideChar(936, 0, "\xB0\xA1", 2, nullptr, 0), 1);
    const wchar_t text[] = {0x554A};
    EXPECT_EQ(WideCharToMultiByte(936, 0, text, 1, nullptr, 0, nullptr, nullptr), 2);
}

TEST_F(PlatformText, PairWithoutACharacterIsAnEscapeOf8Elements)
{
    EXPECT_EQ(wideOf(936, "\xFE\xFE"), L"\\M+5FEFE");
}

TEST_F(PlatformText, LeadByteAtTheEndOfThePartStandsAlone)
{
    EXPECT_EQ(MultiByteToWideChar(936, 0, "\xB0\xA1", 1, nullptr, 0), 1);
    wchar_t wide[1] = {};
    MultiByteToWideChar(936, 0, "\xB0\xA1", 1, wide, 1);
    EXPECT_EQ(wide[0], 0xB0);
}

TEST_F(PlatformText, Utf8IsNotReadBehindThePart)
{
    wchar_t wide[4] = {};
    EXPECT_EQ(MultiByteToWideChar(65001, 0, "ab\xC3\xA9", 3, wide, 4), 3);
    EXPECT_EQ(std::wstring(wide, 3), L"ab\x00C3");
    EXPECT_EQ(bytesOf(65001, std::wstring(L"ab\x00E9", 2)), "ab");
}

// Ends of the source and of the destination lie at the end of readable memory.
TEST_F(PlatformText, NothingBehindTheArgumentsIsTouched)
{
    const std::string bytes = "\\U+20AC\xB0\xA1\\M+5B0A";
    GuardedArray<char> source(bytes.size());
    GuardedArray<wchar_t> destination(8 * bytes.size());
    const std::wstring empty(8 * bytes.size(), L'*');
    for (unsigned cp : {0u, 1252u, 932u, 936u, 65001u}) {
        for (std::size_t count = 1; count <= bytes.size(); ++count) {
            const char* const src = source.hold(bytes.data(), count);
            const int size = static_cast<int>(count);
            const int needed = MultiByteToWideChar(cp, 0, src, size, nullptr, 0);
            ASSERT_GT(needed, 0);
            auto* const dst =
                const_cast<wchar_t*>(destination.hold(empty.data(), static_cast<std::size_t>(needed)));
            EXPECT_EQ(MultiByteToWideChar(cp, 0, src, size, dst, needed), needed);
        }
    }
}

TEST_F(PlatformText, SourceAndDestinationMayBeOne)
{
    // 3 bytes a character: the result lies behind what it is made of.
    alignas(wchar_t) char memory[64] = "\xE4\xB8\xAD\xE6\x96\x87";
    EXPECT_EQ(MultiByteToWideChar(65001, 0, memory, -1, reinterpret_cast<wchar_t*>(memory), 16), 3);
    EXPECT_STREQ(reinterpret_cast<wchar_t*>(memory), L"\x4E2D\x6587");
    EXPECT_EQ(
        WideCharToMultiByte(65001, 0, reinterpret_cast<wchar_t*>(memory), -1, memory, 64, nullptr, nullptr),
        7);
    EXPECT_STREQ(memory, "\xE4\xB8\xAD\xE6\x96\x87");
}

TEST_F(PlatformText, LongTextIsConvertedWhole)
{
    const std::wstring text(1 << 20, L'\x4E2D');
    const std::string bytes = bytesOf(936, text);
    EXPECT_EQ(bytes.size(), text.size() * 2);
    EXPECT_EQ(wideOf(936, bytes), text);
}

TEST_F(PlatformText, WithoutTheRegistryBytesAreTheirValues)
{
    TvCharMapper::unInitialize();
    EXPECT_EQ(wideOf(1252, "a\x80\xE9"), L"a\x0080\x00E9");
    EXPECT_EQ(bytesOf(1252, L"a\x00E9"), "a\xE9");
    EXPECT_EQ(bytesOf(65001, L"\x00E9"), "\xC3\xA9");
}

TEST_F(PlatformText, WithoutAMapFilePairsBecomeEscapes)
{
    TvCharMapper::initialize(L"");
    EXPECT_EQ(wideOf(936, "\xB0\xA1"), L"\\M+5B0A1");
    EXPECT_EQ(bytesOf(936, L"\x554A"), "\\U+554A");
}

TEST_F(PlatformText, CallsFromC)
{
    wchar_t wide[8] = {};
    EXPECT_EQ(platformTextWideFromC("caf\xE9", wide, 8), 5);
    EXPECT_STREQ(wide, L"caf\x00E9");
    char bytes[8] = {};
    EXPECT_EQ(platformTextBytesFromC(wide, bytes, 8), 5);
    EXPECT_STREQ(bytes, "caf\xE9");
}

} // namespace

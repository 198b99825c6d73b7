// UTF-8 in vectors: forms, ends of input, what the result replaces.
#include "TvCharMapper.h"

#include "GuardPage.h"
#include "MapperText.h"
#include "Utf8Model.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <iconv.h>
#include <string>
#include <vector>

using namespace std::string_literals;

namespace {

// Converts text that ends with a 0 behind its length, as callers pass it. Tests of many texts
// keep a vector for the results.
std::wstring decode(const std::string& bytes, TvVector<wchar_t>& out)
{
    TvCharMapper::utf8ToUnicode(bytes.c_str(), static_cast<int>(bytes.size()), out);
    return resultText(out);
}

std::wstring decode(const std::string& bytes)
{
    TvVector<wchar_t> out;
    return decode(bytes, out);
}

std::string encode(const std::wstring& text, TvVector<char>& out)
{
    TvCharMapper::unicodeToUtf8(text.c_str(), static_cast<int>(text.size()), out);
    return resultText(out);
}

std::string encode(const std::wstring& text)
{
    TvVector<char> out;
    return encode(text, out);
}

struct DecodeCase {
    const char* name;
    const char* bytes;
    std::wstring text;
};

const DecodeCase kDecodeCases[] = {
    {"TwoBytes", "\xC3\xA9", L"\xE9"},
    {"ThreeBytes", "\xE2\x82\xAC", L"\x20AC"},
    {"StrayContinuation", "\x80", L"\x80"},
    {"FourBytesAreThreeAndOne", "\xF0\x9F\x98\x80", L"\x07D8\x80"},
    {"LeadFfTakesTwoLikeAnyFromE0", "\xFF\x81\x82", L"\xF042"},
    {"ThreeByteLeadWithOneContinuationIsATwoByteForm", "\xE3\x81z", L"\xC1z"},
    {"ThreeByteLeadWithOneContinuationAtTheEnd", "\xE3\x81", L"\xC1"},
    {"TwoByteLeadAlone", "\xC3z", L"\xC3z"},
    {"TwoByteLeadAtTheEnd", "\xC3", L"\xC3"},
    {"TwoByteLeadTakesOneContinuationOnly", "\xC3\xA9\xA9", L"\xE9\xA9"},
    {"LastTwoByteLead", "\xDF\xBF\xBF", L"\x7FF\xBF"},
    {"FirstThreeByteLead", "\xE0\x80\x80z", std::wstring(1, L'\0') + L"z"},
    {"OverlongTwoByteFormPasses", "\xC0\x80z", std::wstring(1, L'\0') + L"z"},
    {"OverlongSlashPasses", "\xC0\xAF", L"/"},
    {"SurrogatePasses", "\xED\xA0\x80", std::wstring(1, static_cast<wchar_t>(0xD800))},
    {"LargestUnit", "\xEF\xBF\xBF", L"\xFFFF"},
    {"FirstContinuationValue", "\xC2\x80", L"\x80"},
    {"LastContinuationValue", "\xC2\xBF", L"\xBF"},
    {"C0IsNoContinuation", "\xC2\xC0", L"\xC2\xC0"},
    {"SevenFIsNoContinuation", "\xC2\x7F", L"\xC2\x7F"},
};

class Utf8Decode : public testing::TestWithParam<DecodeCase> {};

TEST_P(Utf8Decode, Gives) { EXPECT_EQ(decode(GetParam().bytes), GetParam().text); }

INSTANTIATE_TEST_SUITE_P(Forms, Utf8Decode, testing::ValuesIn(kDecodeCases),
                         [](const auto& row) { return std::string(row.param.name); });

struct EncodeCase {
    const char* name;
    std::wstring text;
    std::string bytes;
};

const EncodeCase kEncodeCases[] = {
    {"LastOneByte", L"\x7F", "\x7F"},
    {"FirstTwoBytes", L"\x80", "\xC2\x80"},
    {"LastTwoBytes", L"\x7FF", "\xDF\xBF"},
    {"FirstThreeBytes", L"\x800", "\xE0\xA0\x80"},
    {"Euro", L"\x20AC", "\xE2\x82\xAC"},
    {"LargestUnit", L"\xFFFF", "\xEF\xBF\xBF"},
    {"SurrogateLikeAnyOther", std::wstring(1, static_cast<wchar_t>(0xD83D)), "\xED\xA0\xBD"},
    {"AboveFfffIsDropped", std::wstring(1, 0x1F600), ""},
    {"DroppedAmongOthers", L"a" + std::wstring(1, 0x10000) + L"b", "ab"},
    {"NegativeIsDropped", std::wstring(1, static_cast<wchar_t>(-1)) + L"b", "b"},
};

class Utf8Encode : public testing::TestWithParam<EncodeCase> {};

TEST_P(Utf8Encode, Gives) { EXPECT_EQ(encode(GetParam().text), GetParam().bytes); }

INSTANTIATE_TEST_SUITE_P(Forms, Utf8Encode, testing::ValuesIn(kEncodeCases),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(Utf8, LengthZeroDecodesUpToTheTerminator)
{
    TvVector<wchar_t> out;
    TvCharMapper::utf8ToUnicode("a\xC3\xA9z", 0, out);
    EXPECT_EQ(resultText(out), L"a\xE9z");
    const std::string large(100000, 'x');
    TvCharMapper::utf8ToUnicode(large.c_str(), 0, out);
    EXPECT_EQ(out.length(), 100001);
}

TEST(Utf8, LengthZeroOfEmptyTextIsATerminator)
{
    TvVector<wchar_t> out;
    TvCharMapper::utf8ToUnicode("", 0, out);
    EXPECT_EQ(resultText(out), L"");
}

TEST(Utf8, LengthZeroEncodesNothingNotEvenATerminator)
{
    TvVector<char> out;
    TvCharMapper::unicodeToUtf8(L"abc", 0, out);
    EXPECT_EQ(out.length(), 0);
}

TEST(Utf8, NullEncodesNothing)
{
    TvVector<char> out;
    TvCharMapper::unicodeToUtf8(nullptr, 3, out);
    EXPECT_EQ(out.length(), 0);
}

TEST(Utf8, NullDecodesToATerminator)
{
    TvVector<wchar_t> out;
    TvCharMapper::utf8ToUnicode(nullptr, 3, out);
    EXPECT_EQ(resultText(out), L"");
}

TEST(Utf8, ANegativeLengthLeavesTheResultEmpty)
{
    TvVector<wchar_t> wide;
    wide.append(L'x');
    TvCharMapper::utf8ToUnicode("abc", -1, wide);
    EXPECT_EQ(wide.length(), 0);
    TvVector<char> bytes;
    bytes.append('x');
    TvCharMapper::unicodeToUtf8(L"abc", INT_MIN, bytes);
    EXPECT_EQ(bytes.length(), 0);
}

TEST(Utf8, ANonZeroElementAtTheEndIsStillTaken)
{
    TvVector<wchar_t> wide;
    TvCharMapper::utf8ToUnicode("abc", 2, wide);
    EXPECT_EQ(resultText(wide), L"abc");
    TvVector<char> bytes;
    TvCharMapper::unicodeToUtf8(L"abc", 2, bytes);
    EXPECT_EQ(resultText(bytes), "abc");
}

TEST(Utf8, NothingBehindTheElementAtTheEndIsRead)
{
    GuardedArray<char> guardedBytes(16);
    TvVector<wchar_t> wide;
    // The lead byte stands at [len] and the guard behind it.
    TvCharMapper::utf8ToUnicode(guardedBytes.hold("ab\xC3", 3), 2, wide);
    EXPECT_EQ(resultText(wide), L"ab\xC3");
    TvCharMapper::utf8ToUnicode(guardedBytes.hold("a\xE3\x81", 3), 2, wide);
    EXPECT_EQ(resultText(wide), L"a\xC1");
    GuardedArray<wchar_t> guardedWide(16);
    TvVector<char> bytes;
    TvCharMapper::unicodeToUtf8(guardedWide.hold(L"ab\x20AC", 3), 2, bytes);
    EXPECT_EQ(resultText(bytes), "ab\xE2\x82\xAC");
}

// A field padded with zeros, or a length that counts the terminator.
TEST(Utf8, TheElementAtTheEndIsNotReadBehindAZero)
{
    GuardedArray<char> guardedBytes(300);
    GuardedArray<wchar_t> guardedWide(300);
    for (std::size_t length = 1; length <= 260; ++length) {
        for (const std::size_t zero : {length - 1, length / 2, std::size_t(0)}) {
            std::string text(length, 'a');
            if (zero > 4)
                text.replace(zero - 4, 3, "\xE2\x82\xAC");
            text[zero] = 0;
            TvVector<wchar_t> wide;
            TvCharMapper::utf8ToUnicode(guardedBytes.hold(text.data(), length), static_cast<int>(length),
                                        wide);
            const std::wstring expected = decode(text.c_str());
            ASSERT_EQ(resultText(wide), expected) << length;

            std::wstring field = expected;
            field.resize(length, L'a');
            field[expected.size()] = 0;
            TvVector<char> bytes;
            TvCharMapper::unicodeToUtf8(guardedWide.hold(field.data(), length), static_cast<int>(length),
                                        bytes);
            ASSERT_EQ(resultText(bytes), text.c_str()) << length;
        }
    }
}

TEST(Utf8, AZeroEndsTheTextBeforeItsLength)
{
    EXPECT_EQ(decode("ab\0cd"s), L"ab");
    EXPECT_EQ(encode(L"ab\0cd"s), "ab");
    EXPECT_EQ(decode("\0cd"s), L"");
    EXPECT_EQ(encode(L"\0cd"s), "");
}

TEST(Utf8, ResultsReplaceWhatTheVectorHeld)
{
    TvVector<wchar_t> wide;
    TvVector<char> bytes;
    for (int i = 0; i < 500; ++i) {
        wide.append(L'x');
        bytes.append('x');
    }
    TvVector<wchar_t> sharedWide = wide;
    TvCharMapper::utf8ToUnicode("ab", 2, wide);
    TvCharMapper::unicodeToUtf8(L"ab", 2, bytes);
    EXPECT_EQ(resultText(wide), L"ab");
    EXPECT_EQ(resultText(bytes), "ab");
    EXPECT_EQ(sharedWide.length(), 500);
    EXPECT_EQ(sharedWide.at(0), L'x');
}

TEST(Utf8, EveryUnitRoundTrips)
{
    TvVector<char> encoded;
    TvVector<wchar_t> decoded;
    for (unsigned unit = 1; unit < 0x10000; ++unit) {
        const std::wstring text(1, static_cast<wchar_t>(unit));
        const std::string bytes = encode(text, encoded);
        ASSERT_EQ(bytes.size(), unit < 0x80 ? 1u : unit < 0x800 ? 2u : 3u) << unit;
        ASSERT_EQ(decode(bytes, decoded), text) << unit;
    }
}

TEST(Utf8, ValidTextAgreesWithIconv)
{
    std::wstring text;
    for (unsigned unit = 1; unit < 0x10000; ++unit) {
        if (unit < 0xD800 || unit > 0xDFFF)
            text.push_back(static_cast<wchar_t>(unit));
    }
    std::string expected(text.size() * 3, '\0');
    const iconv_t converter = iconv_open("UTF-8", "WCHAR_T");
    ASSERT_NE(converter, reinterpret_cast<iconv_t>(-1));
    char* in = reinterpret_cast<char*>(text.data());
    std::size_t inLeft = text.size() * sizeof(wchar_t);
    char* out = expected.data();
    std::size_t outLeft = expected.size();
    ASSERT_EQ(iconv(converter, &in, &inLeft, &out, &outLeft), 0u);
    iconv_close(converter);
    expected.resize(expected.size() - outLeft);
    EXPECT_TRUE(encode(text) == expected);
    EXPECT_TRUE(decode(expected) == text);
}

TEST(Utf8, EveryThreeBytesAgreeWithTheModel)
{
    TvVector<wchar_t> decoded;
    // Every lead with continuation bytes, their neighbours and ASCII behind it.
    const unsigned char tails[] = {0x01, 0x41, 0x7F, 0x80, 0x9A, 0xBF, 0xC0, 0xC3, 0xDF, 0xE0, 0xF0, 0xFF};
    for (int lead = 1; lead < 256; ++lead) {
        for (unsigned char second : tails) {
            for (unsigned char third : tails) {
                const std::vector<unsigned char> bytes = {static_cast<unsigned char>(lead), second, third};
                const std::vector<wchar_t> expected = Utf8Model::decode(bytes);
                ASSERT_EQ(decode(std::string(bytes.begin(), bytes.end()), decoded),
                          std::wstring(expected.begin(), expected.end()))
                    << lead << ' ' << int(second) << ' ' << int(third);
            }
        }
    }
}

} // namespace

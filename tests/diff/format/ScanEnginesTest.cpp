// The scan by pointer against the one through the character source.
#include "format/ScanEngines.h"
#include "format/ScanReaders.h"

#include "GuardPage.h"
#include "TestScale.h"

#include <gtest/gtest.h>

#include <cstring>
#include <cwchar>
#include <random>
#include <string>

using namespace TvFormatDetail;

namespace {

using Engine = int (*)(const wchar_t* text, const wchar_t* format, va_list* args);

int throughSource(const wchar_t* text, const wchar_t* format, va_list* args)
{
    return scanSourceBuf(false, text, format, args);
}

// What one scan left behind.
struct Outcome {
    int result;
    alignas(8) wchar_t stored[8][40];
};

int call(Engine engine, const wchar_t* text, const wchar_t* format, ...)
{
    va_list args;
    va_start(args, format);
    const int result = engine(text, format, &args);
    va_end(args);
    return result;
}

Outcome run(Engine engine, const wchar_t* text, const std::wstring& format)
{
    Outcome outcome;
    std::memset(&outcome, 0x5A, sizeof(outcome));
    outcome.result =
        call(engine, text, format.c_str(), outcome.stored[0], outcome.stored[1], outcome.stored[2],
             outcome.stored[3], outcome.stored[4], outcome.stored[5], outcome.stored[6], outcome.stored[7]);
    return outcome;
}

void expectSame(const std::wstring& text, const std::wstring& format)
{
    const Outcome expected = run(throughSource, text.c_str(), format);
    const Outcome got = run(scanWideText, text.c_str(), format);
    ASSERT_EQ(got.result, expected.result)
        << testing::PrintToString(format) << " on " << testing::PrintToString(text);
    ASSERT_EQ(std::memcmp(got.stored, expected.stored, sizeof(got.stored)), 0)
        << testing::PrintToString(format) << " on " << testing::PrintToString(text);
}

std::wstring randomNumber(std::mt19937_64& random)
{
    std::wstring text;
    if (random() % 3 == 0)
        text += random() % 2 ? L'-' : L'+';
    for (std::size_t n = random() % (random() % 8 ? 8 : 30); n > 0; --n)
        text += static_cast<wchar_t>(L'0' + random() % 10);
    if (random() % 2) {
        text += L'.';
        for (std::size_t n = random() % (random() % 8 ? 8 : 30); n > 0; --n)
            text += static_cast<wchar_t>(L'0' + random() % 10);
    }
    if (random() % 3 == 0) {
        text += random() % 2 ? L"e" : L"E-";
        text += std::to_wstring(random() % 400);
    }
    return text;
}

TEST(ScanEngines, RandomNumbers)
{
    std::mt19937_64 random(testSeed(31));
    for (long i = scaled(100000); i > 0; --i) {
        const std::wstring width = random() % 4 ? L"" : std::to_wstring(random() % 12);
        expectSame(randomNumber(random) + L" x", L"%" + width + L"lf%n%c");
        if (testing::Test::HasFatalFailure())
            return;
    }
}

TEST(ScanEngines, RandomTextsAndFormats)
{
    const wchar_t* const conversions[] = {L"%d",  L"%i",  L"%x",  L"%b",  L"%o",  L"%u",  L"%lf",
                                          L"%f",  L"%s",  L"%c",  L"%n",  L"%2d", L"%3i", L"%4f",
                                          L"%2s", L"%2c", L" ",   L"%%",  L"1",   L"%D",  L"%X",
                                          L"%hd", L"%lu", L"%*d", L"%*f", L"%*s", L"%k",  L"%3lf"};
    std::mt19937_64 random(testSeed(32));
    for (long i = scaled(150000); i > 0; --i) {
        std::wstring format;
        for (std::size_t n = random() % 8; n > 0; --n)
            format += conversions[random() % std::size(conversions)];
        std::wstring text;
        for (std::size_t n = random() % 24; n > 0; --n)
            text += L"0123456789 .-+eExXabf\t%k"[random() % 24];
        expectSame(text, format);
        if (testing::Test::HasFatalFailure())
            return;
    }
}

TEST(ScanEngines, PlainNumbersFirst)
{
    const wchar_t* const conversions[] = {L"%d", L"%d", L"%lf", L"%lf", L" ",
                                          L"\t", L"%n", L"%i",  L"%c",  L"x"};
    const wchar_t* const spaces[] = {L"", L" ", L"  ", L"\n\t", L" x"};
    std::mt19937_64 random(testSeed(33));
    for (long i = scaled(150000); i > 0; --i) {
        std::wstring format;
        std::wstring text;
        for (std::size_t n = random() % 6; n > 0; --n) {
            format += conversions[random() % std::size(conversions)];
            text += spaces[random() % std::size(spaces)] + randomNumber(random);
        }
        expectSame(text, format);
        if (testing::Test::HasFatalFailure())
            return;
    }
}

// Characters whose low bits, or whose saturation, look like those of numbers.
constexpr wchar_t kLookalikes[] = {0x10030, 0x0131, 0x7FFFFFFF, static_cast<wchar_t>(0x80000039),
                                   0x00B2,  0x0660, 0x2003,     0x00A0,
                                   0xFF11,  0x1F,   0x2F,       0x3A,
                                   0x012E,  0x0265, 0x8030,     static_cast<wchar_t>(0xFFFFFFFF)};

// Texts of up to eight numbers for plain conversions, some of them cut or spoilt.
std::wstring randomLine(std::mt19937_64& random, std::wstring& format)
{
    static const wchar_t* const spaces[] = {L" ", L" ", L" ", L"  ", L"\t", L"\r\n", L"", L"   \v\f ", L","};
    std::wstring text;
    format.clear();
    for (std::size_t n = 1 + random() % 8; n > 0; --n) {
        format += random() % 2 ? L"%d" : L"%lf";
        format += random() % 8 ? L" " : spaces[random() % std::size(spaces)];
        std::wstring number = randomNumber(random);
        if (random() % 4)
            number = std::to_wstring(static_cast<int>(random()) >> random() % 32);
        else if (random() % 2)
            number = number.substr(0, number.find_first_of(L"eE"));
        text += spaces[random() % (random() % 4 ? 3 : std::size(spaces))] + number;
    }
    if (random() % 4 == 0)
        text.resize(random() % (text.size() + 1));
    if (random() % 8 == 0)
        text.insert(random() % (text.size() + 1), 1, kLookalikes[random() % std::size(kLookalikes)]);
    return text;
}

TEST(ScanEngines, LinesThatEndWhereMemoryEnds)
{
    GuardedArray<wchar_t> memory(4096);
    std::mt19937_64 random(testSeed(34));
    std::wstring format;
    for (long i = scaled(50000); i > 0; --i) {
        std::wstring text = randomLine(random, format);
        const Outcome expected = run(throughSource, text.c_str(), format);
        // Memory that may be read follows the terminator, or none.
        const std::size_t size = text.size() + 1;
        text.resize(size + random() % 2 * (random() % 80), L'7');
        text[size - 1] = 0;
        const wchar_t* const held = memory.hold(text.c_str(), text.size());
        const Outcome got = run(scanWideText, held, format);
        ASSERT_EQ(got.result, expected.result)
            << testing::PrintToString(format) << " on " << testing::PrintToString(text);
        ASSERT_EQ(std::memcmp(got.stored, expected.stored, sizeof(got.stored)), 0)
            << testing::PrintToString(format) << " on " << testing::PrintToString(text);
    }
}

TEST(ScanEngines, EveryLookalikeInEveryPlace)
{
    const std::wstring line = L" 12 -345.25 6";
    for (const wchar_t c : kLookalikes) {
        for (std::size_t at = 0; at < line.size(); ++at) {
            std::wstring text = line;
            text[at] = c;
            expectSame(text, L"%d %lf %d");
            expectSame(line.substr(0, at) + c + line.substr(at), L"%d%lf%d");
        }
    }
}

// Digits before and behind the point, with the line moved through the places of a window.
TEST(ScanEngines, EveryNumberOfDigits)
{
    const std::wstring digits = L"90817263549081726354";
    for (std::size_t whole = 0; whole <= digits.size(); ++whole) {
        for (std::size_t places = 0; places <= digits.size(); ++places) {
            for (const std::size_t blanks : {0u, 1u, 9u, 15u, 16u, 17u, 30u, 31u, 32u, 33u}) {
                const std::wstring front = std::wstring(blanks, L' ') + L"-" + digits.substr(0, whole);
                expectSame(front + L"." + digits.substr(0, places) + L" 5", L"%lf %d");
                expectSame(front + L"." + digits.substr(0, places) + L"e5", L"%lf%n");
                expectSame(front + L" " + digits.substr(0, places), L"%d%d");
            }
        }
    }
}

TEST(ScanEngines, NumbersAroundTheWidestWidth)
{
    for (const wchar_t* sign : {L"", L"-", L"+"}) {
        for (const std::size_t digits : {65533u, 65534u, 65535u, 65536u, 65537u}) {
            const std::wstring text = L" " + (sign + std::wstring(digits, L'7'));
            for (const wchar_t* format : {L"%d%n%c", L"%lf%n%c", L"%d%d%n", L" %lf%lf%n"})
                expectSame(text, format);
        }
    }
}

TEST(ScanEngines, NullTargetsAreSkipped)
{
    for (const Engine engine : {throughSource, scanWideText}) {
        int value = 0;
        EXPECT_EQ(call(engine, L"1 2.5 3", L"%d %lf %d", static_cast<int*>(nullptr),
                       static_cast<double*>(nullptr), &value),
                  1);
        EXPECT_EQ(value, 3);
        EXPECT_EQ(engine(L"1 2.5", L"%d %lf", nullptr), 0);
    }
}

TEST(ScanPowers, AreThoseOfTheMathematicsLibrary)
{
    for (int n = -kLargestScanPower; n <= kLargestScanPower; ++n)
        EXPECT_EQ(scanPower(n), TvMath::pow<double>(10, n)) << "10^" << n;
}

} // namespace

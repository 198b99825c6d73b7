// The scan by pointer against the one through the character source.
#include "format/ScanEngines.h"
#include "format/ScanReaders.h"

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

Outcome run(Engine engine, const std::wstring& text, const std::wstring& format)
{
    Outcome outcome;
    std::memset(&outcome, 0x5A, sizeof(outcome));
    outcome.result =
        call(engine, text.c_str(), format.c_str(), outcome.stored[0], outcome.stored[1], outcome.stored[2],
             outcome.stored[3], outcome.stored[4], outcome.stored[5], outcome.stored[6], outcome.stored[7]);
    return outcome;
}

void expectSame(const std::wstring& text, const std::wstring& format)
{
    const Outcome expected = run(throughSource, text, format);
    const Outcome got = run(scanWideText, text, format);
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

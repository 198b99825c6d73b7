// The formatters against the C library over random formats of what both share: there %ls is
// wide text, here %s is.
#include "TvPlatformBase.h"

#include "HexPlaces.h"
#include "TestScale.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <cwchar>
#include <limits>
#include <random>
#include <string>

namespace {

class RandomFormat {
public:
    explicit RandomFormat(std::uint64_t seed) : m_random(seed) {}

    std::uint64_t number() { return m_random(); }
    std::uint64_t below(std::uint64_t limit) { return m_random() % limit; }

    // "%" with flags, width and precision, without size and letter.
    std::wstring start(bool withZeroFlag = true)
    {
        std::wstring text = L"%";
        for (std::uint64_t flags = below(4); flags > 0; --flags)
            text += (withZeroFlag ? L"-+ #0" : L"-+ #-")[below(5)];
        if (below(2))
            text += std::to_wstring(1 + below(40));
        if (below(2)) {
            text += L'.';
            if (below(4))
                text += std::to_wstring(below(30));
        }
        return text;
    }

private:
    std::mt19937_64 m_random;
};

template<class Argument>
void expectSame(const std::wstring& ours, const std::wstring& theirs, Argument argument)
{
    wchar_t text[4000], expected[4000];
    const int length = swprintf(text, ours.c_str(), argument);
    ASSERT_EQ(length, swprintf(expected, 4000, theirs.c_str(), argument)) << testing::PrintToString(ours);
    ASSERT_STREQ(text, expected) << testing::PrintToString(ours);
}

TEST(WideFormatDiff, Integers)
{
    const std::uint64_t seed = testSeed(20260521);
    SCOPED_TRACE(seed);
    RandomFormat random(seed);
    for (long i = scaled(100000); i > 0; --i) {
        const wchar_t* const sizes[] = {L"", L"h", L"hh", L"l", L"ll", L"j", L"z", L"t"};
        const std::uint64_t size = random.below(8);
        const std::wstring format = L"a" + random.start() + sizes[size] + L"diuoxX"[random.below(6)] + L"z";
        // Small numbers and zero often, all bit patterns otherwise.
        const std::uint64_t value = random.number() >> random.below(65) % 64;
        if (size < 3)
            expectSame(format, format, static_cast<int>(value));
        else
            expectSame(format, format, static_cast<long>(value));
    }
}

TEST(WideFormatDiff, Floats)
{
    const std::uint64_t seed = testSeed(20260521);
    SCOPED_TRACE(seed);
    RandomFormat random(seed);
    for (long i = scaled(50000); i > 0; --i) {
        const bool isLong = random.below(3) == 0;
        const std::wstring start = L"a" + random.start() + (isLong ? L"L" : L"");
        const std::wstring end = std::wstring(1, L"eEfFgGaA"[random.below(8)]) + L"z";
        double value = static_cast<double>(static_cast<std::int64_t>(random.number())) / 1e15;
        if (random.below(2)) {
            const std::uint64_t bits = random.number();
            std::memcpy(&value, &bits, sizeof value);
        }
        if (std::isnan(value)) // of which there are kinds here
            value = std::numeric_limits<double>::quiet_NaN();
        if (isLong)
            expectSame(start + end, start + end, static_cast<long double>(value));
        else
            expectSame(start + end, withHexPlaces(start, end[0]) + end, value);
    }
}

TEST(WideFormatDiff, SpecialFloats)
{
    const std::uint64_t seed = testSeed(20260521);
    SCOPED_TRACE(seed);
    RandomFormat random(seed);
    const double infinity = std::numeric_limits<double>::infinity();
    const double nan = std::numeric_limits<double>::quiet_NaN();
    for (long i = scaled(20000); i > 0; --i) {
        const double values[] = {0.0, -0.0, infinity, -infinity, nan, 1.0, 9.5, 0.5, 99.99};
        const std::wstring start = random.start();
        const wchar_t letter = L"eEfFgGaA"[random.below(8)];
        expectSame(start + letter, withHexPlaces(start, letter) + letter, values[random.below(9)]);
    }
}

// With the 0 flag text is padded with zeros here, which the C library leaves open.
TEST(WideFormatDiff, Texts)
{
    const std::uint64_t seed = testSeed(20260521);
    SCOPED_TRACE(seed);
    RandomFormat random(seed);
    for (long i = scaled(50000); i > 0; --i) {
        const std::wstring start = L"a" + random.start(false);
        const std::wstring wide(random.below(40), L'\x4E2D');
        const std::string bytes(random.below(40), 'b');
        expectSame(start + L"s", start + L"ls", wide.c_str());
        expectSame(start + L"hs", start + L"s", bytes.c_str());
        expectSame(start + L"S", start + L"s", bytes.c_str());
        expectSame(start + L"c", start + L"lc", static_cast<wint_t>(0x4E2D));
        expectSame(start + L"C", start + L"c", static_cast<int>('b'));
    }
}

TEST(WideFormatDiff, StarsTakeTheirArguments)
{
    const std::uint64_t seed = testSeed(20260521);
    SCOPED_TRACE(seed);
    RandomFormat random(seed);
    for (long i = scaled(50000); i > 0; --i) {
        const int width = static_cast<int>(random.below(80)) - 40;
        const int precision = static_cast<int>(random.below(30)) - 10;
        const int value = static_cast<int>(random.number());
        wchar_t text[300], expected[300];
        const int length = swprintf(text, L"%*.*d|%*.*f|%.*s", width, precision, value, width, precision,
                                    value / 7.0, precision, L"some text");
        ASSERT_EQ(length, swprintf(expected, 300, L"%*.*d|%*.*f|%.*ls", width, precision, value, width,
                                   precision, value / 7.0, precision, L"some text"));
        ASSERT_STREQ(text, expected);
    }
}

} // namespace

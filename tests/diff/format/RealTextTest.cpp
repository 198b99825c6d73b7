// The integer path of %f, %e and %g against the binary128 arithmetic that defines them.
#include "format/RealText.h"
#include "format/QuadDecimal.h"
#include "format/ScaledReal.h"

#include "DoublePatterns.h"
#include "TestScale.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cwchar>
#include <random>

using namespace TvFormatDetail;

namespace {

// Compares one text; what stands behind its terminator must stay.
void expectSame(double value, wchar_t letter, int precision, bool plus)
{
    wchar_t expected[kRealTextRoom + 1];
    wchar_t got[kRealTextRoom + 1];
    std::wmemset(got, L'#', kRealTextRoom + 1);
    const int expectedLength = realTextQuad(expected, value, letter, precision, plus);
    const int length = realText(got, value, letter, precision, plus);
    ASSERT_TRUE(std::all_of(got + length + 1, got + kRealTextRoom + 1, [](wchar_t c) { return c == L'#'; }))
        << "%." << precision << static_cast<char>(letter) << " of " << std::hexfloat << value;
    ASSERT_TRUE(length == expectedLength && std::wcscmp(got, expected) == 0)
        << "%" << (plus ? "+" : "") << "." << precision << static_cast<char>(letter) << " of "
        << std::hexfloat << value << "\n  is       " << testing::PrintToString(std::wstring(got))
        << "\n  expected " << testing::PrintToString(std::wstring(expected));
}

void expectSameInAllForms(double value, int precision)
{
    for (const wchar_t letter : {L'f', L'e', L'g'})
        expectSame(value, letter, precision, false);
}

TEST(RealText, EdgeDoubles)
{
    for (const double value : edgeDoubles()) {
        for (const int precision : {0, 1, 6, 15, 16, 17})
            expectSameInAllForms(value, precision);
        if (testing::Test::HasFatalFailure())
            return;
    }
}

TEST(RealText, EveryExponent)
{
    constexpr std::uint64_t fractions = std::uint64_t{1} << 52;
    std::mt19937_64 random(testSeed(17));
    for (std::uint64_t field = 0; field < 0x7FF; ++field) {
        const auto precision = static_cast<int>(random() % 18);
        for (long i = scaled(6); i > 0; --i)
            expectSameInAllForms(std::bit_cast<double>(field << 52 | random() % fractions), precision);
        for (const std::uint64_t fraction : {std::uint64_t{0}, fractions / 2, fractions - 1})
            expectSameInAllForms(std::bit_cast<double>(field << 52 | fraction), precision);
        if (testing::Test::HasFatalFailure())
            return;
    }
}

TEST(RealText, EveryPrecision)
{
    const double values[] = {0.0,     -0.0,  1.0,    0.1,    2.5,      48168.5,  9.5,          99.5,
                             1e-5,    5e-7,  1e15,   1e16,   1e17,     1e22,     1e23,         1.5e-9,
                             1.0 / 3, 1e300, 5e-324, 1e-100, -123.456, 99999.95, 0.00009999999};
    for (const double value : values) {
        for (int precision = -20; precision < 160; ++precision) {
            for (const wchar_t letter : {L'f', L'e', L'g', L'G'}) {
                expectSame(value, letter, precision, false);
                expectSame(-value, letter, precision, true);
                expectSame(value, letter, precision, true);
            }
        }
        expectSameInAllForms(value, 2147483647);
        expectSameInAllForms(value, -2147483647 - 1);
        if (testing::Test::HasFatalFailure())
            return;
    }
}

TEST(RealText, TiesAndTheirNeighbours)
{
    std::mt19937_64 random(testSeed(11));
    for (long i = scaled(20000); i > 0; --i) {
        const int precision = static_cast<int>(random() % 6);
        // An odd number of halves of the last digit: exact where it is a binary fraction.
        const double units = static_cast<double>(random() >> (12 + random() % 50)) + 0.5;
        double value = units / std::pow(10.0, precision);
        for (const double v : {std::nextafter(value, 0.0), value, std::nextafter(value, 1e308)})
            expectSameInAllForms(v, precision);
        if (testing::Test::HasFatalFailure())
            return;
    }
}

TEST(RealText, DrawingCoordinates)
{
    std::mt19937_64 random(testSeed(12));
    for (long i = scaled(100000); i > 0; --i) {
        const double decimals = static_cast<double>(random() % 10000000000) / 1e5;
        const double computed = std::sqrt(decimals) * 123.456;
        for (const double value : {decimals, -computed})
            expectSameInAllForms(value, static_cast<int>(random() % 9));
        if (testing::Test::HasFatalFailure())
            return;
    }
}

TEST(RealText, RandomBitPatterns)
{
    const std::uint64_t seed = testSeed(13);
    std::mt19937_64 random(seed);
    for (long i = scaled(150000); i > 0; --i) {
        const double value = std::bit_cast<double>(random());
        if (!std::isfinite(value))
            continue;
        expectSameInAllForms(value, static_cast<int>(random() % 20));
        if (testing::Test::HasFatalFailure())
            FAIL() << "seed " << seed;
    }
}

bool sameBits(const ScaledReal& a, TvQuad b)
{
    const ScaledReal expected = realOf(b);
    // 2^113 is 2^112 with the next exponent.
    return a.exponent == expected.exponent && a.significand == expected.significand;
}

TvQuad randomQuad(std::mt19937_64& random, int exponents)
{
    const auto field = static_cast<UInt128>(
        16383 - exponents + static_cast<int>(random() % (2u * static_cast<unsigned>(exponents))));
    UInt128 fraction = (UInt128{random()} << 64 | random()) & ((UInt128{1} << 112) - 1);
    if (random() % 4 == 0)
        fraction &= ~UInt128{0} << (random() % 112); // short fractions make ties
    return std::bit_cast<TvQuad>(field << 112 | fraction);
}

TEST(ScaledRealArithmetic, ProductsAreThoseOfBinary128)
{
    std::mt19937_64 random(testSeed(14));
    for (long i = scaled(200000); i > 0; --i) {
        const TvQuad a = randomQuad(random, 1000);
        const TvQuad b = randomQuad(random, 1000);
        ASSERT_TRUE(sameBits(product(realOf(a), realOf(b)), a * b));
    }
}

TEST(ScaledRealArithmetic, SumsAreThoseOfBinary128)
{
    std::mt19937_64 random(testSeed(15));
    for (long i = scaled(200000); i > 0; --i) {
        const TvQuad a = randomQuad(random, 1 + static_cast<int>(random() % 140));
        const TvQuad b = randomQuad(random, 1 + static_cast<int>(random() % 140));
        ASSERT_TRUE(sameBits(sum(realOf(a), realOf(b)), a + b));
    }
}

TEST(ScaledRealArithmetic, TenthsAreThoseOfBinary128)
{
    std::mt19937_64 random(testSeed(16));
    for (long i = scaled(100000); i > 0; --i) {
        const TvQuad a = 10 + (randomQuad(random, 1) - 1) * 2; // 10 and up, below 16
        if (a >= 10 && a < 16) {
            ASSERT_TRUE(sameBits(tenth(realOf(a)), a / 10));
        }
    }
}

} // namespace

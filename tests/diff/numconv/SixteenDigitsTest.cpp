// Sixteen digits at a time, by plain integers and by vectors, against one digit after the
// other.
#include "numconv/SixteenDigits.h"

#include "numconv/DecimalScan.h"

#include "TestScale.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>

namespace {

constexpr std::uint64_t kEnd = 10000000000000000;

std::string digitsOf(std::uint64_t n)
{
    std::string digits(16, '0');
    for (std::size_t i = 16; i-- > 0; n /= 10)
        digits[i] = static_cast<char>('0' + n % 10);
    return digits;
}

template<class Digits>
class SixteenDigitsOf : public testing::Test {
protected:
    static void expectRight(std::uint64_t n)
    {
        const std::string expected = digitsOf(n);
        const Digits digits(n);
        char stored[18] = "#################";
        digits.store(stored);
        ASSERT_EQ(stored, expected + '#') << n;
        std::string text;
        for (int i = 0; i < 16; ++i)
            text += static_cast<char>(static_cast<unsigned char>(digits.text() >> (8 * i)));
        ASSERT_EQ(text, expected) << n;
        // No digit but 0 is found where there is none: npos + 1 is 0.
        ASSERT_EQ(static_cast<std::size_t>(digits.significant()), expected.find_last_not_of('0') + 1) << n;
    }
};

#ifdef TV_NUMBERS_BY_SSE2
using Ways = testing::Types<PlainSixteenDigits, Sse2SixteenDigits>;
#else
using Ways = testing::Types<PlainSixteenDigits>;
#endif
TYPED_TEST_SUITE(SixteenDigitsOf, Ways);

TYPED_TEST(SixteenDigitsOf, EveryFourDigitsInEveryPlace)
{
    for (std::uint64_t unit = 1; unit < kEnd; unit *= 10000) {
        for (std::uint64_t four = 0; four < 10000; ++four)
            ASSERT_NO_FATAL_FAILURE(this->expectRight(four * unit));
    }
}

TYPED_TEST(SixteenDigitsOf, AroundEveryPowerOfTen)
{
    for (std::uint64_t power = 1; power <= kEnd; power *= 10) {
        ASSERT_NO_FATAL_FAILURE(this->expectRight(power - 1));
        if (power < kEnd) {
            ASSERT_NO_FATAL_FAILURE(this->expectRight(power));
            ASSERT_NO_FATAL_FAILURE(this->expectRight(power + 1));
        }
    }
}

TYPED_TEST(SixteenDigitsOf, RandomNumbers)
{
    const std::uint64_t seed = testSeed(20274);
    std::mt19937_64 random(seed);
    for (long i = scaled(200000); i > 0; --i)
        ASSERT_NO_FATAL_FAILURE(this->expectRight(random() % kEnd >> random() % 54)) << "seed " << seed;
}

TYPED_TEST(SixteenDigitsOf, UpperAndLowerHalfDoNotMix)
{
    for (const std::uint64_t upper : {0u, 1u, 99999999u, 90000000u, 10010010u}) {
        for (const std::uint64_t lower : {0u, 1u, 99999999u, 90000000u, 10010010u})
            ASSERT_NO_FATAL_FAILURE(this->expectRight(upper * 100000000 + lower));
    }
}

TEST(EightWideCharacters, OneByOneAreTheBytesOfAllAtOnce)
{
    std::mt19937_64 random(20275);
    for (int i = 0; i < 10000; ++i) {
        wchar_t text[8];
        for (wchar_t& c : text)
            c = static_cast<wchar_t>('0' + random() % 10);
        ASSERT_EQ(eightCharactersOneByOne(text), eightCharacters(text));
    }
}

} // namespace

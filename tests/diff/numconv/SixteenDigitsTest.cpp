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
        char text[18] = "#################";
        digits.characters().putTerminated(text, 16);
        ASSERT_EQ(text, expected + '#') << n;
        // No digit but 0 is found where there is none: npos + 1 is 0.
        ASSERT_EQ(static_cast<std::size_t>(digits.significant(false)), expected.find_last_not_of('0') + 1)
            << n;
        ASSERT_EQ(digits.significant(true), 17) << n;
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

template<class Characters>
class SixteenCharactersOf : public testing::Test {
protected:
    static constexpr const char* kText = "abcdefghijklmnop";
    const Characters m_characters{kText};

    static std::string all(const Characters& c)
    {
        char text[16];
        EXPECT_EQ(c.putAll(text), text + 16);
        return std::string(text, 16);
    }
};

#ifdef TV_NUMBERS_BY_SSE2
using CharacterWays = testing::Types<PlainSixteenCharacters, Sse2SixteenCharacters>;
#else
using CharacterWays = testing::Types<PlainSixteenCharacters>;
#endif
TYPED_TEST_SUITE(SixteenCharactersOf, CharacterWays);

template<Counts counts, class Characters>
void expectExactCounts(const Characters& characters, const std::string& text)
{
    for (int count = 1; count <= 16; ++count) {
        char out[20] = "###################";
        EXPECT_EQ(characters.template put<counts>(out + 1, count), out + 1 + count);
        const auto n = static_cast<std::size_t>(count);
        EXPECT_EQ(out, "#" + text.substr(0, n) + std::string(18 - n, '#'));
    }
}

TYPED_TEST(SixteenCharactersOf, PutWritesAsManyAsAskedFor)
{
    expectExactCounts<Counts::alike>(this->m_characters, this->kText);
    expectExactCounts<Counts::differ>(this->m_characters, this->kText);
}

TYPED_TEST(SixteenCharactersOf, PointMovesWhatStandsBehindIt)
{
    for (std::size_t place = 0; place <= 15; ++place) {
        std::string expected = this->kText;
        expected.insert(place, ".");
        EXPECT_EQ(this->all(this->m_characters.withPoint(static_cast<int>(place))), expected.substr(0, 16));
    }
}

TYPED_TEST(SixteenCharactersOf, FirstHasZerosBehind)
{
    for (std::size_t count = 0; count <= 17; ++count) {
        const std::string expected = std::string(this->kText).substr(0, count) + std::string(16, '0');
        EXPECT_EQ(this->all(this->m_characters.first(static_cast<int>(count))), expected.substr(0, 16));
    }
}

TYPED_TEST(SixteenCharactersOf, LastIsTheSixteenth) { EXPECT_EQ(this->m_characters.last(), 'p'); }

TYPED_TEST(SixteenCharactersOf, TerminatorsStandBehindTheCount)
{
    for (std::size_t count = 0; count <= 17; ++count) {
        char out[17] = "################";
        this->m_characters.putTerminated(out, static_cast<int>(count));
        const std::string expected = std::string(this->kText).substr(0, count) + std::string(16, '\0');
        EXPECT_EQ(std::string(out, 16), expected.substr(0, 16));
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

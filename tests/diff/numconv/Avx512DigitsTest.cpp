// Seventeen digits in one vector against one digit after the other.
#include "numconv/NumberKernels.h"

#ifdef TV_NUMBERS_BY_AVX512
#include "numconv/Avx512Digits.h"
#endif

#include "TestScale.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <string>

#ifdef TV_NUMBERS_BY_AVX512

namespace {

constexpr std::uint64_t kEnd = 10000000000000000;

TV_AVX512_NUMBERS void digitsInBlock(std::uint64_t sixteen, std::uint64_t last, std::uint64_t skip, char* out)
{
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(out),
                        seventeenDigits(sixteen, last, g_avx512Tables.block + skip));
}

class Avx512Digits : public testing::Test {
protected:
    void SetUp() override
    {
        if (&bestNumberKernels() != &g_avx512NumberKernels)
            GTEST_SKIP() << "not a machine with these vectors";
    }

    static void expectRight(std::uint64_t sixteen, std::uint64_t last)
    {
        char expected[32] = {};
        expected[Avx512Tables::kTextInBlock + 16] = static_cast<char>(last);
        std::uint64_t n = sixteen;
        for (int i = 16; i-- > 0; n /= 10)
            expected[Avx512Tables::kTextInBlock + i] = static_cast<char>(n % 10);
        char digits[32];
        digitsInBlock(sixteen, last, 0, digits);
        ASSERT_EQ(std::string(digits, 32), std::string(expected, 32)) << sixteen;
        if (sixteen < kEnd / 10) {
            digitsInBlock(sixteen, last, 1, digits);
            ASSERT_EQ(std::string(digits, 32), std::string(expected + 1, 31) + '\0') << sixteen;
        }
    }
};

TEST_F(Avx512Digits, EveryFourDigitsInEveryPlace)
{
    for (std::uint64_t unit = 1; unit < kEnd; unit *= 10000) {
        for (std::uint64_t four = 0; four < 10000; ++four)
            ASSERT_NO_FATAL_FAILURE(expectRight(four * unit, four % 10));
    }
}

// Where a digit that is computed too large or too small would show first.
TEST_F(Avx512Digits, OnBothSidesOfEveryChangeOfALeadingDigit)
{
    for (std::uint64_t unit = 1; unit < kEnd; unit *= 10) {
        for (std::uint64_t rest : {std::uint64_t{0}, kEnd / 10 / unit - 1}) {
            for (std::uint64_t digit = 1; digit < 10; ++digit) {
                const std::uint64_t n = (rest * 10 + digit) * unit;
                ASSERT_NO_FATAL_FAILURE(expectRight(n % kEnd, 9));
                ASSERT_NO_FATAL_FAILURE(expectRight((n - 1) % kEnd, 0));
            }
        }
    }
    ASSERT_NO_FATAL_FAILURE(expectRight(kEnd - 1, 9));
}

TEST_F(Avx512Digits, RandomNumbers)
{
    const std::uint64_t seed = testSeed(20283);
    std::mt19937_64 random(seed);
    for (long i = scaled(200000); i > 0; --i)
        ASSERT_NO_FATAL_FAILURE(expectRight(random() % kEnd >> random() % 54, random() % 10))
            << "seed " << seed;
}

} // namespace

#endif

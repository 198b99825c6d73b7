// What is written reads back. The random bit patterns are 200000, and ten million in the
// long run, which is TV_TEST_SCALE=50.
#include "TvNumber.h"

#include "NumberText.h"
#include "TestScale.h"

#include <gtest/gtest.h>

#include <cfenv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <string>

namespace {

class NumberRoundTrip : public testing::Test {
protected:
    std::uint64_t seed = testSeed(20269);
    RandomDoubles random{seed};
    long count = scaled(200000);

    void SetUp() override { RecordProperty("seed", std::to_string(seed)); }
    void TearDown() override { std::fesetround(FE_TONEAREST); }
};

TEST_F(NumberRoundTrip, ShortestReadsBackAndNothingShorterDoes)
{
    char text[64];
    for (long i = count; i > 0; --i) {
        const double value = random.next();
        int point, sign;
        char* digits = TvGdImpl::dtoa(value, 0, 0, &point, &sign, nullptr);
        const int n = static_cast<int>(std::strlen(digits));
        CvtFormatter<char>::formatE(text, digits, n, n - 1, point, sign, 'e');
        TvGdImpl::freedtoa(digits);
        ASSERT_EQ(bitsOfDouble(tvStrToD(text, nullptr)), bitsOfDouble(value)) << text << " seed " << seed;
        if (n > 1 && i % 8 == 0) {
            tvFltToE(text, value, n - 2, 'e');
            ASSERT_NE(bitsOfDouble(tvStrToD(text, nullptr)), bitsOfDouble(value)) << text << " seed " << seed;
        }
    }
}

// Bits as they come, of both signs; the counted ones are finite.
TEST_F(NumberRoundTrip, RandomBitPatternsReadBack)
{
    char text[64];
    wchar_t wide[64];
    for (long i = count; i > 0;) {
        const std::uint64_t bits = random.bits();
        const double value = doubleOfBits(bits);
        if (!std::isfinite(value))
            continue;
        --i;
        int point, sign;
        char* digits = TvGdImpl::dtoa(value, 0, 0, &point, &sign, nullptr);
        const int n = static_cast<int>(std::strlen(digits));
        CvtFormatter<wchar_t>::formatE(wide, digits, n, n - 1, point, sign, 'e');
        TvGdImpl::freedtoa(digits);
        ASSERT_EQ(bitsOfDouble(tvStrToD(wide, nullptr)), bits) << wide << " seed " << seed;
        tvFltToE(text, value, 16, 'e');
        ASSERT_EQ(bitsOfDouble(tvStrToD(text, nullptr)), bits) << text << " seed " << seed;
    }
}

TEST_F(NumberRoundTrip, SeventeenDigitsReadBackInEveryRoundingMode)
{
    const int modes[] = {FE_TONEAREST, FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO};
    char text[64];
    for (long i = count; i > 0; --i) {
        const double value = random.next();
        std::fesetround(modes[i & 3]);
        tvFltToE(text, value, 16, 'e');
        const std::uint64_t back = bitsOfDouble(tvStrToD(text, nullptr));
        std::fesetround(FE_TONEAREST);
        ASSERT_EQ(back, bitsOfDouble(value)) << text << " seed " << seed;
    }
}

TEST_F(NumberRoundTrip, WideTextIsTheNarrowText)
{
    char text[512];
    for (long i = count / 8; i > 0; --i) {
        const double value = random.next();
        const int precision = static_cast<int>(random.bits() % 20);
        tvFltToG(text, value, precision, 'e', static_cast<int>(random.bits() % 4));
        const std::wstring wide(text, text + std::strlen(text));
        ASSERT_EQ(bitsOfDouble(tvStrToD(wide.c_str(), nullptr)), bitsOfDouble(tvStrToD(text, nullptr)))
            << text << " seed " << seed;
    }
}

TEST_F(NumberRoundTrip, FastAndExactModesAgree)
{
    for (long i = count / 2; i > 0; --i) {
        const double value = random.next();
        const int mode = 2 + static_cast<int>(random.bits() & 3);
        const int ndigits = static_cast<int>(random.bits() % 24) - 3;
        ASSERT_EQ(dtoaText(value, mode, ndigits), dtoaText(value, mode + 4, ndigits))
            << value << " mode " << mode << " digits " << ndigits << " seed " << seed;
    }
}

} // namespace

// Every set of number kernels that the machine can run, against big-integer digits and wide text.
#include "numconv/NumberKernels.h"

#include "numconv/DigitsExact.h"
#include "numconv/DoubleBits.h"

#include "DoublePatterns.h"
#include "GuardPage.h"
#include "NumberText.h"
#include "TestScale.h"

#include "TvGdImpl.h"
#include "TvNumber.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <string>
#include <vector>

namespace {

std::vector<const NumberKernels*> runnableSets()
{
    std::vector<const NumberKernels*> sets = {&g_plainNumberKernels};
    if (&bestNumberKernels() != sets[0])
        sets.push_back(&bestNumberKernels());
    return sets;
}

class NumberKernelsTest : public testing::TestWithParam<const NumberKernels*> {
protected:
    static void expectShortest(double value)
    {
        int point = 0, sign = -1;
        char* end = nullptr;
        char* digits = GetParam()->shortestText(value, 0, 0, &point, &sign, &end);
        ASSERT_NE(digits, nullptr);
        const std::string text = digits;
        EXPECT_EQ(end, digits + text.size()) << value;
        EXPECT_EQ(sign, static_cast<int>(bitsOf(value) >> 63)) << value;
        TvGdImpl::freedtoa(digits);
        DigitText exact;
        ASSERT_TRUE(exactDigits(bitsOf(value) & ~kSignBit, 0, 0, exact));
        ASSERT_EQ(text + "@" + std::to_string(point),
                  std::string(exact.digits, exact.digits + exact.count) + "@" + std::to_string(exact.point))
            << value;
    }

    static void expectLikeWide(const char* digits, int n, int precision, int decpt)
    {
        constexpr std::size_t kRoom = 48;
        wchar_t wide[kRoom];
        CvtFormatter<wchar_t>::formatG(wide, digits, n, precision, decpt, 0, 'E', 0);
        const std::wstring expected = wide;
        char text[kRoom];
        std::fill(text, text + kRoom, '#');
        GetParam()->generalLayout(text + 1, digits, n, precision, decpt, 'E');
        ASSERT_EQ(std::string(text, kRoom), "#" + std::string(expected.begin(), expected.end()) + '\0' +
                                                std::string(kRoom - 2 - expected.size(), '#'))
            << std::string(digits, digits + n) << " precision " << precision << " point " << decpt;
    }
};

INSTANTIATE_TEST_SUITE_P(Sets, NumberKernelsTest, testing::ValuesIn(runnableSets()),
                         [](const auto& set) { return std::string(set.param->name); });

TEST_P(NumberKernelsTest, ShortestAtTheEdges)
{
    for (const double value : edgeDoubles()) {
        ASSERT_NO_FATAL_FAILURE(expectShortest(value));
        ASSERT_NO_FATAL_FAILURE(expectShortest(-value));
    }
}

TEST_P(NumberKernelsTest, ShortestOfRandomValues)
{
    const std::uint64_t seed = testSeed(20281);
    RecordProperty("seed", std::to_string(seed));
    RandomDoubles random(seed);
    for (long i = scaled(200000); i > 0; --i)
        ASSERT_NO_FATAL_FAILURE(expectShortest(random.next())) << "seed " << seed;
}

// Seventeen digits and fewer, read back at every place of the point.
TEST_P(NumberKernelsTest, ShortestOfShortDecimalsInEveryExponent)
{
    RandomDoubles random(20282);
    for (int power = -307; power <= 290; ++power) {
        for (int count = 1; count <= 17; ++count) {
            const std::string text = std::to_string(random.bits() | std::uint64_t{1} << 62)
                                         .substr(0, static_cast<std::size_t>(count)) +
                                     "e" + std::to_string(power);
            ASSERT_NO_FATAL_FAILURE(expectShortest(std::strtod(text.c_str(), nullptr)));
        }
    }
}

TEST_P(NumberKernelsTest, ShortestOfZerosAndWords)
{
    const double infinity = std::numeric_limits<double>::infinity();
    const struct {
        double value;
        const char* digits;
        int point, sign;
    } cases[] = {{0.0, "0", 1, 0},
                 {-0.0, "0", 1, 1},
                 {infinity, "Infinity", 9999, 0},
                 {-infinity, "Infinity", 9999, 1},
                 {std::numeric_limits<double>::quiet_NaN(), "NaN", 9999, 0}};
    for (const auto& c : cases) {
        int point = 0, sign = -1;
        char* digits = GetParam()->shortestText(c.value, 0, 0, &point, &sign, nullptr);
        EXPECT_STREQ(digits, c.digits);
        EXPECT_EQ(point, c.point);
        EXPECT_EQ(sign, c.sign);
        TvGdImpl::freedtoa(digits);
    }
}

TEST_P(NumberKernelsTest, ShortestWhenManyTextsAreKept)
{
    std::vector<char*> kept;
    for (int i = 0; i < 300; ++i) {
        int point, sign;
        kept.push_back(GetParam()->shortestText(1.5 + i, 0, 0, &point, &sign, nullptr));
    }
    for (int i = 0; i < 300; ++i) {
        EXPECT_EQ(kept[static_cast<std::size_t>(i)], std::to_string(i + 1) + "5");
        TvGdImpl::freedtoa(kept[static_cast<std::size_t>(i)]);
    }
}

TEST_P(NumberKernelsTest, LayoutInEveryPrecisionAndPlace)
{
    const std::string all = "12345678912345678999";
    for (int precision = 1; precision <= 17; ++precision) {
        for (int n = 1; n <= precision; ++n) {
            for (int decpt = -8; decpt <= 22; ++decpt)
                ASSERT_NO_FATAL_FAILURE(expectLikeWide(all.c_str(), n, precision, decpt));
        }
    }
}

TEST_P(NumberKernelsTest, LayoutOfExponentsOfAnySize)
{
    for (int decpt = -1100; decpt <= 1100; ++decpt) {
        ASSERT_NO_FATAL_FAILURE(expectLikeWide("125", 3, 6, decpt));
        ASSERT_NO_FATAL_FAILURE(expectLikeWide("7", 1, 6, decpt));
    }
    for (const int decpt : {9999, -99999, std::numeric_limits<int>::max(),
                            std::numeric_limits<int>::min() + 1, std::numeric_limits<int>::min()})
        ASSERT_NO_FATAL_FAILURE(expectLikeWide("125", 3, 6, decpt));
}

// What stands behind the digits may not be readable.
TEST_P(NumberKernelsTest, LayoutOfDigitsAtTheEndOfReadableMemory)
{
    const std::string all = "12345678912345678";
    GuardedArray<char> guarded(64);
    for (int n = 1; n <= 17; ++n) {
        const char* digits = guarded.hold(all.data(), static_cast<std::size_t>(n));
        for (int decpt = -4; decpt <= 18; ++decpt)
            ASSERT_NO_FATAL_FAILURE(expectLikeWide(digits, n, 17, decpt));
    }
}

} // namespace

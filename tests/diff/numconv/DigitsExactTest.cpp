// The big-integer digits against values written out in full.
#include "numconv/DigitsExact.h"

#include "DoublePatterns.h"
#include "NumberText.h"
#include "TestScale.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

std::string exactText(double value, int mode, int ndigits)
{
    DigitText text;
    if (!exactDigits(bitsOfDouble(value), mode, ndigits, text))
        return "out of memory";
    return std::string(text.digits, text.digits + text.count) + "@" + std::to_string(text.point);
}

void expectExact(double value, int mode, int ndigits)
{
    ASSERT_EQ(exactText(value, mode, ndigits), textOf(expectedDigits(bitsOfDouble(value), mode, ndigits)))
        << value << " mode " << mode << " digits " << ndigits;
}

TEST(DigitsExact, EveryModeAtTheEdges)
{
    const std::vector<double> edges = edgeDoubles();
    // Writing values out in full takes long: every value has its turn with some counts.
    const std::size_t step = 7;
    for (std::size_t i = 0; i < edges.size(); i += step) {
        const int count = static_cast<int>(i / step % 24) - 3;
        for (int mode = 0; mode <= 5; ++mode)
            ASSERT_NO_FATAL_FAILURE(expectExact(edges[i], mode, count));
    }
}

TEST(DigitsExact, EveryPowerOfTwoHasItsShortest)
{
    for (int field = 1; field < 2047; field += 3) {
        const double value = doubleOfBits(static_cast<std::uint64_t>(field) << 52);
        ASSERT_NO_FATAL_FAILURE(expectExact(value, 0, 0));
        ASSERT_NO_FATAL_FAILURE(expectExact(value, 1, 0));
    }
}

TEST(DigitsExact, RandomValues)
{
    const std::uint64_t seed = testSeed(20262);
    RecordProperty("seed", std::to_string(seed));
    RandomDoubles random(seed);
    for (long i = scaled(2500); i > 0; --i) {
        const double value = random.next();
        const std::uint64_t bits = random.bits();
        ASSERT_NO_FATAL_FAILURE(
            expectExact(value, static_cast<int>(bits % 6), static_cast<int>(bits >> 8) % 25));
    }
}

TEST(DigitsExact, ExtremeCounts)
{
    for (const int count : {std::numeric_limits<int>::max(), -2000000000, -400, 2000}) {
        for (const double value : {5e-324, 1.0 / 3, 1e22, 1.7976931348623157e308}) {
            for (int mode = 2; mode <= 5; ++mode) {
                if (mode == 2 || mode == 4 || count != std::numeric_limits<int>::max()) {
                    ASSERT_NO_FATAL_FAILURE(expectExact(value, mode, count));
                }
            }
        }
    }
}

} // namespace

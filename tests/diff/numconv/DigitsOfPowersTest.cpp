// Digits of every power of two and of ten and of both their neighbours, in every mode and
// both signs, against values written out in full. An ordinary run takes every seventh
// value, the long one, which is TV_TEST_SCALE=50, all of them.
#include "DoublePatterns.h"
#include "NumberText.h"
#include "TestScale.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

constexpr long kEveryOrdinarily = 7;

const int kCounts[] = {-400, -3, -1, 0, 1, 2, 6, 14, 15, 16, 17, 18, 19, 25, 330};

TEST(DigitsOfPowers, AreRightInEveryMode)
{
    const std::vector<double> values = edgeDoubles();
    const auto step = static_cast<std::size_t>(std::max(kEveryOrdinarily / scaled(1), 1L));
    for (std::size_t i = 0; i < values.size(); i += step) {
        const ExpectedDigits expected(bitsOfDouble(values[i]));
        for (int mode = 0; mode <= 9; ++mode) {
            for (const int count : kCounts) {
                const std::string text = textOf(expected.in(mode, count));
                ASSERT_EQ(dtoaText(values[i], mode, count), text)
                    << values[i] << " mode " << mode << " digits " << count;
                ASSERT_EQ(dtoaText(-values[i], mode, count), "-" + text)
                    << values[i] << " mode " << mode << " digits " << count;
                if (mode < 2)
                    break; // the count does not matter there
            }
        }
    }
}

} // namespace

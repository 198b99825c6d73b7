// The digits by one multiplication against the big-integer digits, mode by mode.
#include "numconv/DigitsByScaling.h"

#include "numconv/DigitsExact.h"
#include "numconv/ScaledInteger.h"

#include "DoublePatterns.h"
#include "NumberText.h"
#include "TestScale.h"

#include <gtest/gtest.h>

#include <cstring>

namespace {

std::string exactText(std::uint64_t bits, int mode, int ndigits)
{
    DigitText text;
    if (!exactDigits(bits, mode, ndigits, text))
        return "out of memory";
    return std::string(text.digits, text.digits + text.count) + "@" + std::to_string(text.point);
}

// False when the fast way did not answer.
bool checkScaled(std::uint64_t bits, int mode, int ndigits)
{
    char text[kScaledDigitsRoom + 8];
    std::memset(text, '#', sizeof text);
    int point = 0;
    const int count = scaledDigits(bits, mode, ndigits, text, &point);
    for (std::size_t i = kScaledDigitsRoom; i < sizeof text; ++i)
        EXPECT_EQ(text[i], '#') << "written beyond its room";
    if (count < 0)
        return false;
    EXPECT_EQ(std::strlen(text), static_cast<std::size_t>(count));
    const std::string scaledText = std::string(text, text + count) + "@" + std::to_string(point);
    EXPECT_EQ(scaledText, exactText(bits, mode, ndigits))
        << doubleOfBits(bits) << " mode " << mode << " digits " << ndigits;
    return true;
}

TEST(DigitsByScaling, EveryModeAtTheEdges)
{
    for (const double value : edgeDoubles()) {
        const std::uint64_t bits = bitsOfDouble(value);
        checkScaled(bits, 0, 0);
        for (const int count : {0, 1, 6, 14, 15, 16, 17, 18, 19}) {
            for (int mode = 2; mode <= 5; ++mode)
                checkScaled(bits, mode, count);
        }
        ASSERT_FALSE(HasFailure());
    }
}

TEST(DigitsByScaling, RandomValues)
{
    const std::uint64_t seed = testSeed(20263);
    RecordProperty("seed", std::to_string(seed));
    RandomDoubles random(seed);
    for (long i = scaled(200000); i > 0; --i) {
        const std::uint64_t bits = bitsOfDouble(random.next());
        const std::uint64_t more = random.bits();
        checkScaled(bits, 0, 0);
        checkScaled(bits, 2 + static_cast<int>(more & 3), static_cast<int>(more >> 8) % 20);
        ASSERT_FALSE(HasFailure()) << "seed " << seed;
    }
}

TEST(DigitsByScaling, NegativeCountsAreLeftToTheExactWay)
{
    EXPECT_FALSE(checkScaled(bitsOfDouble(12345.0), 3, -2));
    checkScaled(bitsOfDouble(12345.0), 5, -2);
    checkScaled(bitsOfDouble(12345.0), 4, -2);
    checkScaled(bitsOfDouble(12345.0), 2, -2);
}

TEST(DigitsByScaling, AnswersForOrdinaryValues)
{
    RandomDoubles random(7);
    long answered = 0;
    const long count = 20000;
    for (long i = 0; i < count; ++i) {
        const double value = static_cast<double>(random.bits() >> 11) * 0x1p-53 * 1e5;
        const std::uint64_t bits = bitsOfDouble(value + 0.001);
        answered += checkScaled(bits, 0, 0) && checkScaled(bits, 2, 15) && checkScaled(bits, 2, 17) &&
                    checkScaled(bits, 5, 6);
    }
    EXPECT_EQ(answered, count);
}

TEST(DigitsByScaling, AnswersForMostPowersOfTwo)
{
    int answered = 0;
    for (std::uint64_t field = 1; field < 0x7FF; ++field)
        answered += checkScaled(field << 52, 0, 0);
    EXPECT_GT(answered, 2000);
}

TEST(GapIsBelowPlace, OnlyWhereDoublesLieCloserThanOneUnit)
{
    EXPECT_TRUE(gapIsBelowPlace(bitsOfDouble(1.0), 15));
    EXPECT_FALSE(gapIsBelowPlace(bitsOfDouble(1.0), 16));
    EXPECT_TRUE(gapIsBelowPlace(bitsOfDouble(0x1p52 - 1), 0));
    EXPECT_FALSE(gapIsBelowPlace(bitsOfDouble(0x1p52), 0));
}

} // namespace

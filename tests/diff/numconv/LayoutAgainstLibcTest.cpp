// f, e and g text against the C library's, brought to three exponent digits.
#include "TvNumber.h"

#include "NumberText.h"
#include "TestScale.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <string>

namespace {

std::string libc(const char* format, int precision, double value)
{
    char text[600];
    std::snprintf(text, sizeof text, format, precision, value);
    return text;
}

std::string withThreeExponentDigits(std::string text)
{
    const std::size_t e = text.find('e');
    if (e != std::string::npos)
        text.insert(e + 2, 3 - (text.size() - e - 2), '0');
    return text;
}

class LayoutAgainstLibc : public testing::Test {
protected:
    std::uint64_t seed = testSeed(20264);
    RandomDoubles random{seed};
    char text[600];

    double signedValue()
    {
        const double value = random.next();
        return random.bits() & 1 ? -value : value;
    }
};

// Below the precision of doubles the two agree; beyond it f fills with zeros.
TEST_F(LayoutAgainstLibc, FixedOfCoordinates)
{
    for (long i = scaled(100000); i > 0; --i) {
        const double value = (static_cast<double>(random.bits() >> 11) * 0x1p-53 - 0.5) * 1e6;
        const int precision = static_cast<int>(random.bits() % 10);
        tvFltToF(text, value, precision);
        ASSERT_EQ(text, libc("%.*f", precision, value)) << "seed " << seed;
    }
}

TEST_F(LayoutAgainstLibc, Exponent)
{
    for (long i = scaled(100000); i > 0; --i) {
        const double value = signedValue();
        const int precision = 1 + static_cast<int>(random.bits() % 20);
        tvFltToE(text, value, precision, 'e');
        ASSERT_EQ(text, withThreeExponentDigits(libc("%.*e", precision, value))) << "seed " << seed;
    }
}

// The zeros of numbers below 1 do not count as digits in both.
TEST_F(LayoutAgainstLibc, General)
{
    for (long i = scaled(100000); i > 0; --i) {
        const double value =
            i % 3 ? signedValue() : std::ldexp(signedValue() < 0 ? -1.0 : 1.0, i % 40 - 20) * 1.1;
        const int precision = 1 + static_cast<int>(random.bits() % 20);
        tvFltToG(text, value, precision, 'e', 0);
        ASSERT_EQ(text, withThreeExponentDigits(libc("%.*g", precision, value))) << "seed " << seed;
    }
}

} // namespace

// Text laid out in registers against the wide formatters on big-integer digits.
#include "numconv/NumberKernels.h"

#include "TvNumber.h"

#include "DoublePatterns.h"
#include "NumberText.h"
#include "TestScale.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <string>

namespace {

enum Letter { F, E, G };

std::string byFormatter(Letter letter, double value, int precision)
{
    const int count = letter == E ? precision + 1 : precision;
    int point, sign;
    char* digits = TvGdImpl::dtoa(value, letter == F ? 9 : 6, count, &point, &sign, nullptr);
    const int n = static_cast<int>(std::strlen(digits));
    wchar_t text[400];
    switch (letter) {
    case F:
        CvtFormatter<wchar_t>::formatF(text, digits, n, precision, point, sign);
        break;
    case E:
        CvtFormatter<wchar_t>::formatE(text, digits, n, precision, point, sign, 'e');
        break;
    case G:
        CvtFormatter<wchar_t>::formatG(text, digits, n, precision, point, sign, 'e', 0);
        break;
    }
    TvGdImpl::freedtoa(digits);
    const std::wstring wide = text;
    return std::string(wide.begin(), wide.end());
}

// False when the kernels did not answer; nothing may then have been written.
bool checkText(const NumberKernels& kernels, Letter letter, double value, int precision)
{
    char text[64];
    std::fill(text, text + sizeof text, '#');
    const bool done = letter == F   ? kernels.fixedText(text, value, precision)
                      : letter == E ? kernels.exponentText(text, value, precision, 'e')
                                    : kernels.generalText(text, value, precision, 'e', 0);
    const std::size_t written = done ? std::strlen(text) + 1 : 0;
    EXPECT_EQ(std::count(text + written, text + sizeof text, '#'), static_cast<long>(sizeof text - written))
        << value << " " << precision << ": written behind the terminator";
    if (done) {
        EXPECT_EQ(text, byFormatter(letter, value, precision)) << value << " letter " << letter;
    }
    return done;
}

// By every set that the machine can run; they answer for the same values.
bool checkText(Letter letter, double value, int precision)
{
    const bool plain = checkText(g_plainNumberKernels, letter, value, precision);
    const NumberKernels& best = bestNumberKernels();
    EXPECT_EQ(&best == &g_plainNumberKernels ? plain : checkText(best, letter, value, precision), plain)
        << value << " letter " << letter << " precision " << precision;
    return plain;
}

void checkAll(double value, int precision)
{
    checkText(F, value, precision);
    checkText(E, value, precision);
    checkText(G, value, precision);
}

TEST(LayoutByScaling, EveryPrecisionAtTheEdges)
{
    int precision = 0;
    for (const double value : edgeDoubles()) {
        checkAll(value, precision % 19);
        checkAll(-value, (precision + 7) % 19);
        ++precision;
        ASSERT_FALSE(HasFailure());
    }
}

TEST(LayoutByScaling, EveryPrecisionOfShortValues)
{
    for (const double value :
         {1.0, 9.0, 9.5, 0.5, 0.05, 0.001, 0.00015, 0.0000999999, 99.99, 123456.789, 999999.5, 1e5, 1e14,
          1e15, 99999999999999.9, 4503599627370497.5, 0.1, 2.0 / 3, 1e-5}) {
        for (int precision = 0; precision < 20; ++precision) {
            checkAll(value, precision);
            checkAll(-value, precision);
        }
        ASSERT_FALSE(HasFailure());
    }
}

TEST(LayoutByScaling, RandomValues)
{
    const std::uint64_t seed = testSeed(20270);
    RecordProperty("seed", std::to_string(seed));
    RandomDoubles random(seed);
    for (long i = scaled(100000); i > 0; --i) {
        const double size = i % 2 ? random.next() : static_cast<double>(random.bits() >> 11) * 0x1p-53 * 1e5;
        checkAll(random.bits() & 1 ? size : -size, static_cast<int>(random.bits() % 17));
        ASSERT_FALSE(HasFailure()) << "seed " << seed;
    }
}

TEST(LayoutByScaling, AnswersForCoordinates)
{
    RandomDoubles random(11);
    for (int i = 0; i < 20000; ++i) {
        const double value = 0.001 + static_cast<double>(random.bits() >> 11) * 0x1p-53 * 1e5;
        ASSERT_TRUE(checkText(F, value, 6)) << value;
        ASSERT_TRUE(checkText(E, value, 14)) << value;
        ASSERT_TRUE(checkText(G, value, 15)) << value;
    }
}

TEST(LayoutByScaling, LeavesZerosAndWordsToTheFormatters)
{
    for (const double value : {0.0, -0.0, HUGE_VAL, -HUGE_VAL, std::nan("")}) {
        EXPECT_FALSE(checkText(F, value, 3));
        EXPECT_FALSE(checkText(E, value, 3));
        EXPECT_FALSE(checkText(G, value, 3));
    }
}

} // namespace

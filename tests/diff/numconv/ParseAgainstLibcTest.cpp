// tvStrToD against the C library's strtod, which rounds correctly.
#include "TvNumber.h"

#include "DoublePatterns.h"
#include "NumberText.h"
#include "TestScale.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

void expectLikeLibc(const std::string& text)
{
    char* expectedEnd = nullptr;
    const double expected = std::strtod(text.c_str(), &expectedEnd);
    char* end = nullptr;
    ASSERT_EQ(bitsOfDouble(tvStrToD(text.c_str(), &end)), bitsOfDouble(expected)) << text;
    ASSERT_EQ(end, expectedEnd) << text;
    const std::wstring wide(text.begin(), text.end());
    wchar_t* wideEnd = nullptr;
    ASSERT_EQ(bitsOfDouble(tvStrToD(wide.c_str(), &wideEnd)), bitsOfDouble(expected)) << text;
    ASSERT_EQ(wideEnd - wide.c_str(), expectedEnd - text.c_str()) << text;
}

std::string scientific(double value, int digits)
{
    char text[1200];
    std::snprintf(text, sizeof text, "%.*e", digits - 1, value);
    return text;
}

// 0.ddd... * 10^point as text, with the point somewhere among the digits.
std::string written(const ExactDecimal& x, std::size_t place)
{
    if (place > x.digits.size())
        place = x.digits.size();
    return x.digits.substr(0, place) + "." + x.digits.substr(place) + "e" +
           std::to_string(x.point - static_cast<int>(place));
}

TEST(ParseAgainstLibc, EdgesWithAnyNumberOfDigits)
{
    for (const double value : edgeDoubles()) {
        for (const int digits : {1, 2, 15, 16, 17, 18, 19, 20, 21, 40, 770})
            ASSERT_NO_FATAL_FAILURE(expectLikeLibc(scientific(value, digits)));
    }
}

// The middle between neighbours in full, a 1 far behind it, and one unit less at its end.
TEST(ParseAgainstLibc, MiddlesOfEdges)
{
    const std::vector<double> edges = edgeDoubles();
    for (std::size_t i = 0; i < edges.size(); ++i) {
        const ExactDecimal middle = neighbourhood(bitsOfDouble(edges[i])).above;
        ASSERT_NO_FATAL_FAILURE(expectLikeLibc(written(middle, i % 9)));
        ExactDecimal above = middle;
        above.digits += std::string(i % 1200, '0') + "1";
        ASSERT_NO_FATAL_FAILURE(expectLikeLibc(written(above, i % 30)));
        ExactDecimal below = middle;
        --below.digits.back();
        below.digits += std::string(i % 30, '9');
        ASSERT_NO_FATAL_FAILURE(expectLikeLibc(written(below, 1)));
    }
}

TEST(ParseAgainstLibc, RandomValues)
{
    const std::uint64_t seed = testSeed(20265);
    RecordProperty("seed", std::to_string(seed));
    RandomDoubles random(seed);
    for (long i = scaled(100000); i > 0; --i) {
        const double value = random.next();
        const int digits = 1 + static_cast<int>(random.bits() % 24);
        ASSERT_NO_FATAL_FAILURE(expectLikeLibc(scientific(value, digits))) << "seed " << seed;
        if (i % 64 == 0) {
            const ExactDecimal middle = neighbourhood(bitsOfDouble(value)).above;
            ASSERT_NO_FATAL_FAILURE(expectLikeLibc(written(middle, 17))) << "seed " << seed;
        }
    }
}

TEST(ParseAgainstLibc, RandomDigitsOfEveryLength)
{
    const std::uint64_t seed = testSeed(20266);
    RecordProperty("seed", std::to_string(seed));
    RandomDoubles random(seed);
    for (std::size_t length = 1; length <= 2000; length += length < 50 ? 1 : 13) {
        for (int i = 0; i < 4; ++i) {
            std::string digits;
            while (digits.size() < length)
                digits += static_cast<char>('0' + random.bits() % 10);
            digits.insert(random.bits() % (length + 1), ".");
            const int exponent = static_cast<int>(random.bits() % 700) - 350;
            ASSERT_NO_FATAL_FAILURE(expectLikeLibc(digits)) << "seed " << seed;
            ASSERT_NO_FATAL_FAILURE(expectLikeLibc("-" + digits + "e" + std::to_string(exponent)))
                << "seed " << seed;
        }
    }
}

// Hundreds of zeros move the power of five far beyond 5^511.
TEST(ParseAgainstLibc, PowersOfFiveBeyondTheChain)
{
    for (int zeros = 0; zeros <= 320; zeros += 8) {
        const std::string fraction(static_cast<std::size_t>(zeros), '0');
        ASSERT_NO_FATAL_FAILURE(expectLikeLibc("0." + fraction + "12345678901234567890123456789"));
        const ExactDecimal middle = neighbourhood(bitsOfDouble(5e-324) + static_cast<unsigned>(zeros)).above;
        ASSERT_NO_FATAL_FAILURE(
            expectLikeLibc("0." + std::string(static_cast<std::size_t>(-middle.point), '0') + middle.digits));
    }
}

} // namespace

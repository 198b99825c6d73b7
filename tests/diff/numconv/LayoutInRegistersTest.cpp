// Narrow g text, which is laid out in registers where it can be, against wide g text, which
// is laid out one character after the other.
#include "TvNumber.h"

#include "GuardPage.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <string>

namespace {

constexpr int kRoom = 96;

std::string wideG(const char* digits, int n, int precision, int decpt, int sign, int style)
{
    wchar_t text[kRoom];
    CvtFormatter<wchar_t>::formatG(text, digits, n, precision, decpt, sign, 'e', style);
    const std::wstring wide = text;
    return std::string(wide.begin(), wide.end());
}

void expectLikeWide(const char* digits, int n, int precision, int decpt, int sign, int style)
{
    char text[kRoom];
    std::fill(text, text + kRoom, '#');
    CvtFormatter<char>::formatG(text, digits, n, precision, decpt, sign, 'e', style);
    const std::string expected = wideG(digits, n, precision, decpt, sign, style);
    ASSERT_EQ(std::string(text, kRoom), expected + '\0' + std::string(kRoom - 1 - expected.size(), '#'))
        << digits << " precision " << precision << " point " << decpt << " style " << style;
}

TEST(LayoutInRegisters, EveryPlaceOfThePointInEveryPrecision)
{
    const std::string all = "12345678912345678912";
    for (int n = 0; n <= 20; ++n) {
        const std::string digits = all.substr(0, static_cast<std::size_t>(n));
        for (int precision = -5; precision <= 20; ++precision) {
            for (int decpt = -8; decpt <= 22; ++decpt) {
                for (int style = -1; style <= 3; ++style)
                    ASSERT_NO_FATAL_FAILURE(
                        expectLikeWide(digits.c_str(), n, precision, decpt, decpt & 1, style));
            }
        }
    }
}

TEST(LayoutInRegisters, ZerosAtTheEnd)
{
    for (const std::string digits : {"0", "000", "10", "1000000000000000", "10000000000000000",
                                     "12345678901234560", "1020300000", "100000000000000000"}) {
        for (int precision = 0; precision <= 18; ++precision) {
            for (int decpt = -5; decpt <= 19; ++decpt)
                ASSERT_NO_FATAL_FAILURE(
                    expectLikeWide(digits.c_str(), static_cast<int>(digits.size()), precision, decpt, 0, 0));
        }
    }
}

TEST(LayoutInRegisters, ExponentsOfAnySize)
{
    for (const int decpt :
         {-323, 309, 9999, -99999, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
        ASSERT_NO_FATAL_FAILURE(expectLikeWide("125", 3, 6, decpt, 1, 0));
        ASSERT_NO_FATAL_FAILURE(expectLikeWide("5", 1, 1, decpt, 0, 0));
    }
}

// What stands behind the `n` digits is not looked at, and may not be readable.
TEST(LayoutInRegisters, DigitsAtTheEndOfReadableMemory)
{
    const std::string all = "12345678912345678";
    GuardedArray<char> guarded(64);
    for (std::size_t n = 1; n <= all.size(); ++n) {
        const char* digits = guarded.hold(all.data(), n);
        for (int decpt = -4; decpt <= 18; ++decpt) {
            char text[kRoom];
            CvtFormatter<char>::formatG(text, digits, static_cast<int>(n), 17, decpt, 0, 'e', 0);
            ASSERT_EQ(text, wideG(all.substr(0, n).c_str(), static_cast<int>(n), 17, decpt, 0, 0));
        }
    }
}

TEST(LayoutInRegisters, OtherDigitsBehindTheCountDoNotMatter)
{
    for (int n = 1; n <= 17; ++n) {
        for (int decpt = -4; decpt <= 18; ++decpt)
            ASSERT_NO_FATAL_FAILURE(expectLikeWide("1234567891234567899999", n, 17, decpt, 0, 0));
    }
}

} // namespace

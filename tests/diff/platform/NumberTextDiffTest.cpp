// Numbers from wide text against the C library's own readers and ICU's digit values.
#include "TvPlatformBase.h"

#include "TestScale.h"

#include <gtest/gtest.h>
#include <unicode/uchar.h>

#include <cerrno>
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <random>
#include <string>

namespace {

TEST(NumberTextDiff, EveryElementOfTheBasicPlaneIsADigitWhereIcuSaysSo)
{
    for (wchar_t c = 1; c < 0x10000; ++c) {
        const wchar_t text[] = {L'1', c, L'\0'};
        const bool isDigit = u_charType(c) == U_DECIMAL_DIGIT_NUMBER;
        const int expected = isDigit ? 10 + u_charDigitValue(c) : 1;
        ASSERT_EQ(_wtoi(text), expected) << std::hex << static_cast<unsigned int>(c);
        ASSERT_EQ(_wtof(text), expected) << std::hex << static_cast<unsigned int>(c);
    }
}

TEST(NumberTextDiff, IntegersAgreeWithTheLongReader)
{
    const std::uint64_t seed = testSeed(20260521);
    SCOPED_TRACE(seed);
    std::mt19937_64 random(seed);
    for (long i = scaled(300000); i > 0; --i) {
        std::wstring text;
        for (std::uint64_t length = random() % 14; text.size() < length;)
            text += L"0123456789+- \tx2147483648"[random() % 25];
        errno = 0;
        const long expected = std::wcstol(text.c_str(), nullptr, 10);
        errno = 0;
        const int value = _wtoi(text.c_str());
        ASSERT_EQ(value, expected > INT_MAX   ? INT_MAX
                         : expected < INT_MIN ? INT_MIN
                                              : expected)
            << testing::PrintToString(text);
        ASSERT_EQ(errno == ERANGE, expected > INT_MAX || expected < INT_MIN) << testing::PrintToString(text);
    }
}

void expectSameFloat(const std::wstring& text)
{
    const double expected = std::wcstod(text.c_str(), nullptr);
    const double value = _wtof(text.c_str());
    std::uint64_t expectedBits, bits;
    std::memcpy(&expectedBits, &expected, sizeof bits);
    std::memcpy(&bits, &value, sizeof bits);
    ASSERT_EQ(bits, expectedBits) << testing::PrintToString(text);
}

TEST(NumberTextDiff, RandomNumbersAgreeWithTheCLibrary)
{
    const std::uint64_t seed = testSeed(20260521);
    SCOPED_TRACE(seed);
    std::mt19937_64 random(seed);
    for (long i = scaled(100000); i > 0; --i) {
        const std::uint64_t bits = random();
        double value;
        std::memcpy(&value, &bits, sizeof value);
        wchar_t text[800];
        const wchar_t* const formats[] = {L"%.17g", L"%.16e", L"%a", L"%.3g", L"%.40g"};
        ASSERT_GT(std::swprintf(text, 800, formats[random() % 5], value), 0);
        expectSameFloat(text);
    }
}

TEST(NumberTextDiff, RandomTextAgreesWithTheCLibrary)
{
    const std::uint64_t seed = testSeed(20260521);
    SCOPED_TRACE(seed);
    std::mt19937_64 random(seed);
    for (long i = scaled(300000); i > 0; --i) {
        std::wstring text;
        for (std::uint64_t length = random() % 12; text.size() < length;)
            text += L"0123456789+-..eExXpPabcdef infINF"[random() % 33];
        expectSameFloat(text);
    }
}

TEST(NumberTextDiff, LongNumbersAroundHalfwayPointsAgreeWithTheCLibrary)
{
    const std::uint64_t seed = testSeed(20260521);
    SCOPED_TRACE(seed);
    std::mt19937_64 random(seed);
    for (long i = scaled(3000); i > 0; --i) {
        // The exact midpoint of two doubles, from 64-bit arithmetic: up to 767 digits.
        const std::uint64_t bits = random() & 0x7FEFFFFFFFFFFFFF;
        double low;
        std::memcpy(&low, &bits, sizeof low);
        const double high = std::nextafter(low, HUGE_VAL);
        const long double middle = (static_cast<long double>(low) + static_cast<long double>(high)) / 2;
        wchar_t text[3000];
        ASSERT_GT(std::swprintf(text, 3000, L"%.800Le", middle), 0);
        std::wstring number(text);
        expectSameFloat(number);
        const size_t exponent = number.find(L'e');
        expectSameFloat(std::wstring(number).insert(exponent, L"0000000000000000000000000001"));
        expectSameFloat(std::wstring(number).insert(exponent, std::wstring(900, L'0') + L'1'));
    }
}

} // namespace

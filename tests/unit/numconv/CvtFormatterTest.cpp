#include "TvNumber.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <string>

namespace {

struct FCase {
    const char* digits;
    int precision, decpt, sign;
    const char* expected;
};

TEST(CvtFormatterF, LaysOutDigitsAroundThePoint)
{
    const FCase cases[] = {
        {"125", 2, 1, 0, "1.25"},    {"125", 2, 1, 1, "-1.25"},
        {"125", 5, 1, 0, "1.25000"}, {"125", 0, 3, 0, "125"},
        {"125", 0, 5, 0, "12500"},   {"125", 2, 5, 0, "12500.00"},
        {"125", 1, 1, 0, "1.2"},     {"125", 4, 0, 0, "0.1250"},
        {"125", 4, -2, 0, "0.0012"}, {"125", 1, -5, 0, "0.0"},
        {"", 2, -2, 0, "0.00"},      {"", 0, 0, 1, "-0"},
        {"5", 0, 0, 0, "0"},         {"", 1, 2, 0, "00.0"},
        {"5", -3, 2, 0, "50"},       {"5", 2, std::numeric_limits<int>::min(), 0, "0.00"},
    };
    for (const FCase& c : cases) {
        char out[64];
        CvtFormatter<char>::formatF(out, c.digits, static_cast<int>(std::strlen(c.digits)), c.precision,
                                    c.decpt, c.sign);
        EXPECT_STREQ(out, c.expected);
    }
}

TEST(CvtFormatterE, WritesAPointAlways)
{
    const FCase cases[] = {
        {"125", 2, 1, 0, "1.25e+000"}, {"125", 1, 1, 0, "1.2e+000"}, {"125", 4, 6, 1, "-1.2500e+005"},
        {"5", 0, 1, 0, "5.e+000"},     {"5", 0, -122, 0, "5.e-123"}, {"5", -2, 1, 0, "5.e+000"},
        {"", 1, 1, 0, "0.0e+000"},
    };
    for (const FCase& c : cases) {
        char out[64];
        CvtFormatter<char>::formatE(out, c.digits, static_cast<int>(std::strlen(c.digits)), c.precision,
                                    c.decpt, c.sign, 'e');
        EXPECT_STREQ(out, c.expected);
    }
}

struct GCase {
    const char* digits;
    int precision, decpt, style;
    const char* expected;
};

TEST(CvtFormatterG, ChoosesTheNotation)
{
    const GCase cases[] = {
        {"125", 6, 1, 0, "1.25"},     {"125", 6, -3, 0, "0.000125"}, {"125", 6, -4, 0, "1.25e-005"},
        {"125", 6, 6, 0, "125000"},   {"125", 6, 7, 0, "1.25e+006"}, {"12500", 6, 1, 0, "1.25"},
        {"12500", 6, 1, 1, "1.2500"}, {"000", 6, 1, 0, "0"},         {"1250", 2, 1, 0, "1.2"},
        {"125", 2, 0, 0, "0.12"},     {"125", 5, 0, 1, "0.12500"},   {"125", 2, 9, 0, "1.2e+008"},
        {"", 6, 1, 0, "0"},           {"", 6, 9, 0, "0e+008"},       {"125", 6, 3, 0, "125"},
        {"125", 6, 3, 1, "125.000"},  {"125", 6, 3, 2, "125.0"},     {"125", 6, 3, 7, "125."},
        {"125", -2, -3, 0, "0.000"},  {"125", -4, -3, 0, "1.e-004"},
    };
    for (const GCase& c : cases) {
        char out[64];
        CvtFormatter<char>::formatG(out, c.digits, static_cast<int>(std::strlen(c.digits)), c.precision,
                                    c.decpt, 0, 'e', c.style);
        EXPECT_EQ(std::string(out), c.expected)
            << c.digits << " " << c.precision << " " << c.decpt << " " << c.style;
    }
}

TEST(CvtFormatterG, LowestPrecisionIsExponentNotation)
{
    char out[64];
    CvtFormatter<char>::formatG(out, "5", 1, std::numeric_limits<int>::min(), 1, 0, 'e', 0);
    EXPECT_STREQ(out, "5e+000");
}

TEST(CvtFormatterExponent, IsRightForEveryPlaceOfThePoint)
{
    constexpr int lowest = std::numeric_limits<int>::min(), highest = std::numeric_limits<int>::max();
    char out[64];
    CvtFormatter<char>::formatE(out, "5", 1, 0, lowest, 0, 'e');
    EXPECT_STREQ(out, "5.e-649");
    CvtFormatter<char>::formatE(out, "5", 1, 0, highest, 0, 'e');
    EXPECT_STREQ(out, "5.e+646");
    for (const int style : {0, 1}) {
        CvtFormatter<char>::formatG(out, "5", 1, 1, lowest, 0, 'e', style);
        EXPECT_EQ(std::string(out), style ? "5.e-649" : "5e-649");
        CvtFormatter<char>::formatG(out, "5", 1, 1, highest, 0, 'e', style);
        EXPECT_EQ(std::string(out), style ? "5.e+646" : "5e+646");
    }
}

TEST(CvtFormatterWide, ReadsNarrowDigits)
{
    wchar_t out[32];
    CvtFormatter<wchar_t>::formatF(out, "125", 3, 2, 1, 1);
    EXPECT_STREQ(out, L"-1.25");
    CvtFormatter<wchar_t>::formatE(out, "125", 3, 2, 1, 0, L'E');
    EXPECT_STREQ(out, L"1.25E+000");
    CvtFormatter<wchar_t>::formatG(out, "125", 3, 6, 1, 0, 'e', 0);
    EXPECT_STREQ(out, L"1.25");
}

template<class Char>
void expectEmptyOfNoDigits()
{
    using Formatter = CvtFormatter<Char>;
    for (const int n : {0, 3}) {
        Char out[8];
        const auto isEmpty = [&](auto format) {
            std::fill(out, out + 8, Char('#'));
            format();
            return out[0] == 0 && out[1] == Char('#');
        };
        EXPECT_TRUE(isEmpty([&] { Formatter::formatF(out, nullptr, n, 2, 1, 1); }));
        EXPECT_TRUE(isEmpty([&] { Formatter::formatE(out, nullptr, n, 2, 1, 1, 'e'); }));
        EXPECT_TRUE(isEmpty([&] { Formatter::formatG(out, nullptr, n, 2, 1, 1, 'e', 1); }));
    }
}

TEST(CvtFormatterNull, GivesAnEmptyNarrowText) { expectEmptyOfNoDigits<char>(); }
TEST(CvtFormatterNull, GivesAnEmptyWideText) { expectEmptyOfNoDigits<wchar_t>(); }

struct ExponentCase {
    int exponent;
    const char* expected;
};

TEST(CvtFormatterExponent, IsASignAndThreeDigits)
{
    const ExponentCase cases[] = {
        {0, "+000"},    {5, "+005"},   {-5, "-005"},   {99, "+099"},
        {-123, "-123"}, {999, "+999"}, {1234, "+234"}, {std::numeric_limits<int>::min(), "-648"},
    };
    for (const ExponentCase& c : cases) {
        char out[8] = "#######";
        char* at = out;
        CvtFormatter<char>::expToAscii(at, c.exponent);
        EXPECT_EQ(at, out + 4);
        EXPECT_EQ(std::string(out, 4), c.expected);
        EXPECT_EQ(*at, '#');
    }
}

} // namespace

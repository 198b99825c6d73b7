#include "numconv/WideRoom.h"
#include "TvNumber.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <cwchar>
#include <string>
#include <vector>

namespace {

// Digits of both signs and many sizes, for every style and precision, as the wide functions
// ask for them. The pool rounds what they allocate up, so the room itself is compared.
std::vector<double> valuesOfAllSizes()
{
    std::vector<double> values = {0.0, -0.0, 4.9406564584124654e-324, -1.7976931348623157e308};
    for (const char* digits : {"1", "4", "5", "9", "25", "96", "999999", "12345678901234567"}) {
        for (int exponent = -30; exponent <= 30; ++exponent) {
            const double value = std::stod(digits + ("e" + std::to_string(exponent)));
            values.insert(values.end(), {value, -value});
        }
    }
    return values;
}

struct Cvt {
    Cvt(double value, int ndigits, bool places)
        : text(places ? tvFcvt(value, ndigits, &decpt, &sign) : tvEcvt(value, ndigits, &decpt, &sign)),
          n(static_cast<int>(std::strlen(text)))
    {
    }
    Cvt(const Cvt&) = delete;
    Cvt& operator=(const Cvt&) = delete;
    ~Cvt() { tvFreeCvt(text); }

    int decpt = 0;
    int sign = 0;
    char* text;
    int n;
};

std::int64_t written(const wchar_t* text) { return static_cast<std::int64_t>(std::wcslen(text)) + 1; }

TEST(WideRoom, IsEnoughForF)
{
    wchar_t out[1000];
    for (const double value : valuesOfAllSizes()) {
        for (int precision = 0; precision <= 20; ++precision) {
            const Cvt d(value, precision, true);
            CvtFormatter<wchar_t>::formatF(out, d.text, d.n, precision, d.decpt, d.sign);
            EXPECT_LE(written(out), TvDetail::roomOfF(d.n, precision, d.decpt))
                << value << " precision " << precision;
        }
    }
}

TEST(WideRoom, IsEnoughForE)
{
    wchar_t out[1000];
    for (const double value : valuesOfAllSizes()) {
        for (int precision = 0; precision <= 20; ++precision) {
            const Cvt d(value, precision + 1, false);
            CvtFormatter<wchar_t>::formatE(out, d.text, d.n, precision, d.decpt, d.sign, 'e');
            EXPECT_LE(written(out), TvDetail::roomOfE(d.n, precision)) << value << " precision " << precision;
        }
    }
}

TEST(WideRoom, IsEnoughForGOfEveryStyle)
{
    wchar_t out[1000];
    for (const double value : valuesOfAllSizes()) {
        for (int precision = 0; precision <= 20; ++precision) {
            const Cvt d(value, precision, false);
            for (int style = -1; style <= 3; ++style) {
                CvtFormatter<wchar_t>::formatG(out, d.text, d.n, precision, d.decpt, d.sign, 'e', style);
                EXPECT_LE(written(out), TvDetail::roomOfG(d.n, precision, d.decpt))
                    << value << " precision " << precision << " style " << style;
            }
        }
    }
}

TEST(WideRoom, LongestOneDigitTextOfGFillsItsRoom)
{
    wchar_t out[1000];
    CvtFormatter<wchar_t>::formatG(out, "1", 1, 0, 1, 1, 'e', 2);
    EXPECT_STREQ(out, L"-1.0e+000");
    EXPECT_EQ(written(out), TvDetail::roomOfG(1, 0, 1));
}

} // namespace

#include "TvPlatformBase.h"

#include "DecimalDigit.h"
#include "SecondNames.h"

#include <cerrno>
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cwctype>
#include <locale.h>

namespace {

using tvPlatform::decimalDigit;

const wchar_t* skipSpace(const wchar_t* text)
{
    while (std::iswspace(static_cast<wint_t>(*text)))
        ++text;
    return text;
}

bool takeSign(const wchar_t*& text)
{
    if (*text != L'-' && *text != L'+')
        return false;
    return *text++ == L'-';
}

int hexDigit(wchar_t c)
{
    if (c >= L'a' && c <= L'f')
        return c - L'a' + 10;
    if (c >= L'A' && c <= L'F')
        return c - L'A' + 10;
    return decimalDigit(c);
}

bool isLetter(wchar_t c, char lower) { return c == lower || c == lower - 'a' + 'A'; }

bool startsWith(const wchar_t* text, const char* lowerWord)
{
    for (; *lowerWord; ++text, ++lowerWord)
        if (!isLetter(*text, *lowerWord))
            return false;
    return true;
}

// The scanned number as ASCII digits without leading zeros, and the power of the base that
// the text's exponent and the place of its point give together.
class Mantissa {
public:
    explicit Mantissa(int base) : m_base(base) {}

    // Reads digits around at most one point; false when there is no digit.
    bool scan(const wchar_t*& text)
    {
        bool any = false;
        bool point = false;
        for (;; ++text) {
            if (*text == L'.' && !point) {
                point = true;
                continue;
            }
            const int value = m_base == 16 ? hexDigit(*text) : decimalDigit(*text);
            if (value < 0)
                return any;
            any = true;
            add(value, point);
        }
    }

    // The exponent after its letter; text that holds none leaves it 0.
    void scanExponent(const wchar_t* text)
    {
        const bool negative = takeSign(text);
        std::int64_t exponent = 0;
        for (int value; (value = decimalDigit(*text)) >= 0; ++text)
            if (exponent < kFarAway)
                exponent = exponent * 10 + value;
        m_exponent += negative ? -exponent : exponent;
    }

    bool isZero() const { return m_length == 0; }

    // Rounded once, by the C library, from at most kDigits digits that keep every tie apart.
    double value()
    {
        std::int64_t exponent = m_exponent + (m_base == 16 ? 4 * m_places : m_places);
        if (exponent > kLimit)
            exponent = kLimit;
        if (exponent < -kLimit)
            exponent = -kLimit;
        char text[kDigits + 32];
        std::snprintf(text, sizeof text, "%s%.*s%c%d", m_base == 16 ? "0x" : "", m_length, m_digits,
                      m_base == 16 ? 'p' : 'e', static_cast<int>(exponent));
        static const locale_t plain = newlocale(LC_ALL_MASK, "C", nullptr);
        return plain ? strtod_l(text, nullptr, plain) : std::strtod(text, nullptr);
    }

private:
    // More significant digits than the exact halfway point of two doubles can have (767).
    static constexpr int kDigits = 800;
    static constexpr std::int64_t kFarAway = INT64_MAX / 100;
    // Beyond this no mantissa of kDigits digits gives anything but zero or infinity.
    static constexpr int kLimit = 20000;

    void add(int value, bool behindPoint)
    {
        if (behindPoint)
            --m_places;
        if (m_length == 0 && value == 0)
            return;
        if (m_length < kDigits) {
            m_digits[m_length++] = "0123456789abcdef"[value];
            return;
        }
        // Dropped digits move the point, and only tell whether anything was there at all.
        ++m_places;
        if (value != 0)
            m_digits[kDigits - 1] = m_digits[kDigits - 1] == '0' ? '1' : m_digits[kDigits - 1];
    }

    int m_base;
    int m_length = 0;
    std::int64_t m_places = 0;
    std::int64_t m_exponent = 0;
    char m_digits[kDigits];
};

double finiteNumber(Mantissa& mantissa, bool negative)
{
    const int before = errno;
    const double value = mantissa.isZero() ? 0.0 : mantissa.value();
    errno = before;
    if (std::isinf(value) || (value == 0.0 && !mantissa.isZero()))
        errno = ERANGE;
    return negative ? -value : value;
}

} // namespace

extern "C" {

int _wtoi(const wchar_t* text)
{
    if (!text) {
        errno = EINVAL;
        return 0;
    }
    text = skipSpace(text);
    const bool negative = takeSign(text);
    const std::int64_t limit = negative ? -static_cast<std::int64_t>(INT_MIN) : INT_MAX;
    std::int64_t value = 0;
    for (int digit; (digit = decimalDigit(*text)) >= 0; ++text) {
        value = value * 10 + digit;
        if (value > limit) {
            errno = ERANGE;
            return negative ? INT_MIN : INT_MAX;
        }
    }
    return static_cast<int>(negative ? -value : value);
}

double _wtof(const wchar_t* text)
{
    if (!text) {
        errno = EINVAL;
        return 0.0;
    }
    text = skipSpace(text);
    const bool negative = takeSign(text);
    if (startsWith(text, "inf"))
        return negative ? -HUGE_VAL : HUGE_VAL;
    if (startsWith(text, "nan"))
        return std::copysign(std::nan(""), negative ? -1.0 : 1.0);
    if (text[0] == L'0' && isLetter(text[1], 'x')) {
        Mantissa hex(16);
        const wchar_t* digits = text + 2;
        // "0x" without a digit behind it is the number 0 and some other text.
        if (hex.scan(digits)) {
            if (isLetter(*digits, 'p'))
                hex.scanExponent(digits + 1);
            return finiteNumber(hex, negative);
        }
    }
    Mantissa decimal(10);
    if (!decimal.scan(text))
        return 0.0;
    if (isLetter(*text, 'e'))
        decimal.scanExponent(text + 1);
    return finiteNumber(decimal, negative);
}

} // extern "C"

TV_SECOND_NAME(_wtoi);

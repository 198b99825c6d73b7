#include "TvNumber.h"

#include "numconv/DecimalByProduct.h"
#include "numconv/DecimalExact.h"
#include "numconv/DecimalScan.h"
#include "numconv/DoubleBits.h"

#include <algorithm>
#include <cerrno>

namespace {

template<class Char>
void divideExactly(const DecimalText<Char>& number, std::uint64_t& bits)
{
    char digits[kDigitsThatCount];
    int n = 0;
    bool more = false;
    for (const Char* s = number.digits; s < number.digitsEnd; ++s) {
        if (*s == Char('.') || (n == 0 && *s == Char('0')))
            continue;
        if (n < kDigitsThatCount) {
            digits[n++] = static_cast<char>(*s);
        } else {
            more = more || *s != Char('0');
        }
    }
    const int leading = std::min(n, static_cast<int>(kLeadingDigits));
    if (!exactDouble(digits, n, number.power + leading, more, bits))
        errno = ENOMEM;
}

template<class Char>
double convert(const Char* text, Char** end)
{
    const DecimalText<Char> number = scanDecimal(text);
    if (end)
        *end = const_cast<Char*>(number.end ? number.end : text);
    std::uint64_t bits = 0;
    if (number.leading != 0) {
        if (!doubleByProduct(number.leading, number.power, number.cut, bits))
            divideExactly(number, bits);
        if (bits == 0 || bits == kInfinityBits)
            errno = ERANGE;
    }
    return doubleOf(bits | (number.negative && number.end ? kSignBit : 0));
}

} // namespace

double tvStrToD(const char* text, char** end) { return convert(text, end); }

double tvStrToD(const wchar_t* text, wchar_t** end) { return convert(text, end); }

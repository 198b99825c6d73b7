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
    const int n = static_cast<int>(std::min<std::size_t>(number.digits, kDigitsThatCount));
    const Char* s = number.first;
    for (int i = 0; i < n; ++s) {
        if (*s != Char('.'))
            digits[i++] = static_cast<char>(*s);
    }
    bool more = false;
    for (std::size_t i = kDigitsThatCount; i < number.digits && !more; ++s) {
        if (*s != Char('.')) {
            more = *s != Char('0');
            ++i;
        }
    }
    if (!exactDouble(digits, n, number.point, more, bits))
        errno = ENOMEM;
}

template<class Char>
double convert(const Char* text, Char** end)
{
    const DecimalText<Char> number = scanDecimal(text);
    if (end)
        *end = const_cast<Char*>(number.end ? number.end : text);
    std::uint64_t bits = 0;
    if (number.digits != 0) {
        if (!doubleByProduct(number.leading, number.digits, number.point, bits))
            divideExactly(number, bits);
        if (bits == 0 || bits == kInfinityBits)
            errno = ERANGE;
    }
    return doubleOf(bits | (number.negative && number.end ? kSignBit : 0));
}

} // namespace

double tvStrToD(const char* text, char** end) { return convert(text, end); }

double tvStrToD(const wchar_t* text, wchar_t** end) { return convert(text, end); }

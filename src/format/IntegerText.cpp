#include "format/IntegerText.h"

#include "format/WideDigits.h"

#include <algorithm>
#include <bit>
#include <cwchar>

namespace TvFormatDetail {

namespace {

// "00" to "99", so that two digits are one copy of eight bytes.
struct DigitPairs {
    wchar_t at[100][2];
};

constexpr DigitPairs makeDigitPairs()
{
    DigitPairs pairs{};
    for (int i = 0; i < 100; ++i) {
        pairs.at[i][0] = static_cast<wchar_t>(L'0' + i / 10);
        pairs.at[i][1] = static_cast<wchar_t>(L'0' + i % 10);
    }
    return pairs;
}

constexpr DigitPairs kDigitPairs = makeDigitPairs();

// Eight digits, zeros in front included, in two independent halves.
void writeEight(wchar_t* out, std::uint32_t value)
{
    const std::uint32_t high = value / 10000;
    const std::uint32_t low = value % 10000;
    std::copy_n(kDigitPairs.at[high / 100], 2, out);
    std::copy_n(kDigitPairs.at[high % 100], 2, out + 2);
    std::copy_n(kDigitPairs.at[low / 100], 2, out + 4);
    std::copy_n(kDigitPairs.at[low % 100], 2, out + 6);
}

} // namespace

int decimalText(wchar_t* out, std::uint32_t value)
{
    const int length = std::max(1, decimalLength(value));
    wchar_t* p = out + length;
    while (value >= 100) {
        p -= 2;
        std::copy_n(kDigitPairs.at[value % 100], 2, p);
        value /= 100;
    }
    if (value >= 10)
        std::copy_n(kDigitPairs.at[value], 2, out);
    else
        *out = static_cast<wchar_t>(L'0' + value);
    return length;
}

int decimalText64(wchar_t* out, std::uint64_t value)
{
    if (value < kEightDigits)
        return decimalText(out, static_cast<std::uint32_t>(value));
    const int length = decimalText(out, static_cast<std::uint32_t>(value / kEightDigits));
    writeEight(out + length, static_cast<std::uint32_t>(value % kEightDigits));
    return length + 8;
}

void fixedDigits(wchar_t* out, std::uint64_t value, int count)
{
    wchar_t* p = out + count;
    for (; count >= 8; count -= 8) {
        p -= 8;
        writeEight(p, static_cast<std::uint32_t>(value % kEightDigits));
        value /= kEightDigits;
    }
    for (; count >= 2; count -= 2) {
        p -= 2;
        std::copy_n(kDigitPairs.at[value % 100], 2, p);
        value /= 100;
    }
    if (count)
        *out = static_cast<wchar_t>(L'0' + value % 10);
}

int integerText(wchar_t* out, std::uint32_t value, int radix)
{
    wchar_t* p = out;
    if (radix < 0) {
        if (static_cast<std::int32_t>(value) < 0) {
            *p++ = L'-';
            value = 0 - value;
        }
        radix = radix < -36 ? 36 : -radix;
    }
    const auto base = static_cast<std::uint32_t>(std::clamp(radix, 2, 36));
    if (base == 10)
        return static_cast<int>(p - out) + decimalText(p, value);
    wchar_t digits[kIntegerTextRoom];
    wchar_t* const end = digits + kIntegerTextRoom;
    wchar_t* first = end;
    do {
        const std::uint32_t digit = value % base;
        *--first = static_cast<wchar_t>(digit < 10 ? L'0' + digit : L'A' + (digit - 10));
        value /= base;
    } while (value != 0);
    return static_cast<int>(std::copy(first, end, p) - out);
}

int radixOfLetter(wchar_t letter)
{
    switch (letter) {
    case L'd':
    case L'i':
    case L'D':
    case L'I':
        return -10;
    case L'u':
    case L'U':
        return 10;
    case L'x':
    case L'X':
    case L'p':
        return 16;
    case L'o':
    case L'O':
        return 8;
    case L'b':
    case L'B':
        return 2;
    default:
        return 0;
    }
}

bool insertPoint(wchar_t* text, unsigned& length, unsigned room, std::uint32_t value, unsigned precision)
{
    // Meant: the first character stays out of it for every value with the top bit set, a sign
    // or not, so that an unsigned letter keeps its first digit in front.
    const unsigned first = static_cast<std::int32_t>(value) < 0 ? 1 : 0;
    const unsigned digits = length - first;
    wchar_t* const number = text + first;
    if (precision == 0 || digits > precision) {
        if (length >= room)
            return false;
        wchar_t* const point = number + (digits - precision);
        std::wmemmove(point + 1, point, precision);
        *point = L'.';
        length += 1;
        return true;
    }
    const std::uint64_t total = std::uint64_t{first} + 2 + precision;
    if (total > room)
        return false;
    std::wmemmove(number + 2 + (precision - digits), number, digits);
    std::wmemset(number, L'0', 2 + (precision - digits));
    number[1] = L'.';
    length = static_cast<unsigned>(total);
    return true;
}

} // namespace TvFormatDetail

#include "numconv/LayoutByScaling.h"

#include "TvNumber.h"
#include "numconv/DigitsByScaling.h"
#include "numconv/DoubleBits.h"
#include "numconv/EmitDigits.h"

#include <algorithm>
#include <cstring>

namespace {

// Up to sixteen characters, the first in the lowest byte. With a point in it that leaves
// fifteen digits.
using Text = Uint128;
constexpr int kMostDigitsOfText = 15;

Text withPoint(Text text, int place)
{
    const Text before = (Text{1} << (8 * place)) - 1;
    return (text & before) | Text{'.'} << (8 * place) | (text & ~before) << 8;
}

// Writes exactly `count` characters, 1 to 16; overlapping stores cover every count.
char* put(char* out, Text text, int count)
{
    const auto low = static_cast<std::uint64_t>(text);
    if (count >= 8) {
        const auto tail = static_cast<std::uint64_t>(text >> (8 * (count - 8)));
        std::memcpy(out, &low, 8);
        std::memcpy(out + count - 8, &tail, 8);
    } else if (count >= 4) {
        const auto head = static_cast<std::uint32_t>(low);
        const auto tail = static_cast<std::uint32_t>(low >> (8 * (count - 4)));
        std::memcpy(out, &head, 4);
        std::memcpy(out + count - 4, &tail, 4);
    } else {
        out[0] = static_cast<char>(low);
        out[count / 2] = static_cast<char>(low >> (8 * (count / 2)));
        out[count - 1] = static_cast<char>(low >> (8 * (count - 1)));
    }
    return out + count;
}

bool isOrdinary(std::uint64_t bits) { return (bits & ~kSignBit) - 1 < kInfinityBits - 1; }

char* putSign(char* out, std::uint64_t bits)
{
    *out = '-';
    return out + (bits >> 63);
}

// `count` digits of the value as characters, and how many of them stand before zeros.
bool leadingCharacters(std::uint64_t bits, int count, Text& text, int& nonZero, int& point)
{
    std::uint64_t integer;
    int power;
    if (!significantInteger(bits, count, &integer, &power))
        return false;
    const SixteenDigits digits(integer * g_tens[16 - count]);
    text = digits.text();
    nonZero = digits.significant();
    point = power + 1;
    return true;
}

void putExponent(char* out, int expChar, int exponent)
{
    *out++ = static_cast<char>(expChar);
    CvtFormatter<char>::expToAscii(out, exponent);
    *out = '\0';
}

} // namespace

bool fixedText(char* out, double value, int precision)
{
    const std::uint64_t bits = bitsOf(value);
    std::uint64_t integer;
    if (!isOrdinary(bits) || precision >= kMostDigitsOfText || !gapIsBelowPlace(bits, precision) ||
        !scaledInteger(bits & ~kSignBit, precision, &integer) || integer >= g_tens[kMostDigitsOfText])
        return false;
    const int width = std::max(decimalWidth(integer), precision + 1);
    const Text digits = SixteenDigits(integer).text() >> (8 * (16 - width));
    out = putSign(out, bits);
    out = precision > 0 ? put(out, withPoint(digits, width - precision), width + 1) : put(out, digits, width);
    *out = '\0';
    return true;
}

bool exponentText(char* out, double value, int precision, int expChar)
{
    const std::uint64_t bits = bitsOf(value);
    Text text;
    int nonZero, point;
    if (!isOrdinary(bits) || precision >= kMostDigitsOfText ||
        !leadingCharacters(bits & ~kSignBit, precision + 1, text, nonZero, point))
        return false;
    out = put(putSign(out, bits), withPoint(text, 1), precision + 2);
    putExponent(out, expChar, point - 1);
    return true;
}

bool generalText(char* out, double value, int precision, int expChar, int style)
{
    const std::uint64_t bits = bitsOf(value);
    Text text;
    int nonZero, point;
    if (!isOrdinary(bits) || style != 0 || precision < 1 || precision > kMostDigitsOfText ||
        !leadingCharacters(bits & ~kSignBit, precision, text, nonZero, point))
        return false;
    out = putSign(out, bits);
    if (point < -3 || point > precision) {
        out = nonZero > 1 ? put(out, withPoint(text, 1), nonZero + 1) : put(out, text, 1);
        putExponent(out, expChar, point - 1);
        return true;
    }
    if (point < 1) {
        *out++ = '0';
        *out++ = '.';
        for (; point < 0; ++point)
            *out++ = '0';
        out = put(out, text, nonZero);
    } else if (nonZero > point) {
        out = put(out, withPoint(text, point), nonZero + 1);
    } else {
        out = put(out, text, point);
    }
    *out = '\0';
    return true;
}

#include "TvFormat.h"

#include "format/FormatRecords.h"
#include "format/FormatSpec.h"
#include "format/IntegerText.h"
#include "format/QuadDecimal.h"
#include "format/RealText.h"

#include <algorithm>
#include <cmath>
#include <cwchar>

using namespace TvFormatDetail;

namespace {

// Copies text and terminator. A text that does not fit leaves the buffer empty.
bool copyText(wchar_t* buffer, int capacity, const wchar_t* text, unsigned count)
{
    if (!buffer || capacity <= 0)
        return false;
    const bool fits = count < static_cast<unsigned>(capacity);
    if (fits)
        std::wmemcpy(buffer, text, count);
    buffer[fits ? count : 0] = 0;
    return fits;
}

// Runs an operation on a binary128 number over the caller's long double. A mantissa that
// reaches 10 only by rounding back becomes 1, with one more in the exponent or carry.
template<class Operation>
int widened(long double& v, Operation operation)
{
    TvQuad quad = v;
    const int result = operation(quad);
    v = static_cast<long double>(quad);
    if (quad >= 10 || quad <= -10 || !(std::fabs(v) >= 10))
        return result;
    v /= 10;
    return result + 1;
}

} // namespace

int FormatScienceDoubleAndOutputString(wchar_t* buffer, int capacity, const double& value, int precision)
{
    wchar_t text[1 + kRealTextRoom];
    int length = 0;
    if (!std::isfinite(value)) {
        length = nonFiniteText(text, value);
    } else {
        const bool negative = value < 0;
        if (negative)
            text[0] = L'-';
        length = negative + realText(text + negative, std::fabs(value), L'f', precision, false);
    }
    return copyText(buffer, capacity, text, static_cast<unsigned>(length)) ? length : -1;
}

int FormatUtil::outputStringWithFormat(wchar_t* buffer, int capacity, const wchar_t* format, ...)
{
    va_list args;
    va_start(args, format);
    const int result = OutputWithFormat(&buffer, capacity, format, &args);
    va_end(args);
    return result;
}

void FormatUtil::initializeConstVar() {}

int FormatUtil::StringCopy(wchar_t** dst, int room, const wchar_t* src, unsigned count)
{
    if (!dst || !*dst || room <= 0)
        return -1;
    const bool fits = count < static_cast<unsigned>(room) && (src || count == 0);
    if (fits && count) {
        std::wmemmove(*dst, src, count);
        *dst += count;
    }
    **dst = 0;
    return fits ? 0 : -1;
}

bool FormatUtil::fillStringWithBlankChar(wchar_t** dst, int count, wchar_t pad, int room)
{
    constexpr int piece = 30;
    wchar_t blanks[piece];
    std::wmemset(blanks, pad, piece);
    for (; count > piece; count -= piece, room -= piece) {
        if (StringCopy(dst, room, blanks, piece) != 0)
            return false;
    }
    return StringCopy(dst, room, blanks, static_cast<unsigned>(std::max(count, 0))) == 0;
}

wchar_t* FormatUtil::formatLong(wchar_t* buffer, int value, int capacity, int radix)
{
    if (!buffer || capacity <= 0)
        return buffer;
    wchar_t text[kIntegerTextRoom];
    const int length = integerText(text, static_cast<std::uint32_t>(value), radix);
    copyText(buffer, capacity, text, static_cast<unsigned>(std::min(length, capacity - 1)));
    return buffer;
}

int FormatUtil::scaleDoubleToScience(long double* v) { return widened(*v, scaleQuad); }

int FormatUtil::roundScienceDouble(long double* v, int precision, int exponent)
{
    return widened(*v, [=](TvQuad& quad) { return roundQuad(quad, precision, exponent); });
}

int FormatUtil::formatScienceDouble(wchar_t* buffer, long double mantissa, int, int intDigits, int precision)
{
    return emitQuad(buffer, mantissa, intDigits, precision);
}

bool formatLongUtil(wchar_t conv, bool&, bool positional, FormatParameters* params, int index, va_list* args,
                    wchar_t* buffer, int capacity, bool hasPrecision, unsigned& length, unsigned precision)
{
    FormatArguments arguments(args, positional, params, kMaxArgumentNumber);
    const int radix = radixOfLetter(conv);
    length = 0;
    if (radix == 0)
        return copyText(buffer, capacity, L"", 0);
    const std::uint32_t value = arguments.takeInteger(static_cast<unsigned>(index) + 1, argumentTypeOf(conv));
    wchar_t text[kIntegerTextRoom];
    const auto digits = static_cast<unsigned>(integerText(text, value, radix));
    if (!copyText(buffer, capacity, text, digits))
        return false;
    length = digits;
    if (!hasPrecision || insertPoint(buffer, length, static_cast<unsigned>(capacity) - 1, value, precision)) {
        buffer[length] = 0;
        return true;
    }
    length = 0;
    buffer[0] = 0;
    return false;
}

bool formatScienceDoubleUtil(long double value, wchar_t conv, unsigned precision, bool plus, wchar_t* buffer,
                             int capacity, unsigned& length)
{
    wchar_t text[kRealTextRoom];
    const int digits = static_cast<int>(std::min(precision, unsigned{INT_MAX}));
    const int count = std::isfinite(value) ? realTextQuad(text, value, conv, digits, plus)
                                           : nonFiniteText(text, static_cast<double>(value));
    const bool fits = copyText(buffer, capacity, text, static_cast<unsigned>(count));
    length = fits ? static_cast<unsigned>(count) : 0;
    return fits;
}

#include "format/UnitText.h"

#include "TvMath.h"
#include "TvUnits.h"
#include "format/FormatRecords.h"
#include "format/FormatSpec.h"
#include "format/RealText.h"

#include <algorithm>
#include <cmath>
#include <cwchar>
#include <cwctype>

using namespace TvFormatDetail;

namespace {

// The kinds of value in the low byte of a mode word.
enum UnitKind { kDimension = 0, kDistance = 1, kAngleFromBase = 2, kAngleAsGiven = 3 };

bool isAngle(int kind) { return kind == kAngleFromBase || kind == kAngleAsGiven; }

bool isAngleStyle(int style) { return style >= 0 && style <= 4; }

// The angle from the base angle in the drawing's direction, within one turn.
double fromBaseAngle(double value)
{
    const double base = g_appUnits.baseAngle;
    return TvMath::fixAngle(g_appUnits.clockwise ? base - value : value - base);
}

bool endsWith(const wchar_t* text, int length, const wchar_t* suffix, int suffixLength)
{
    return std::wmemcmp(text + length - suffixLength, suffix, static_cast<std::size_t>(suffixLength)) == 0;
}

void stripTrailingZeros(wchar_t* text)
{
    // A shorter text cannot hold a number with a point in front of the escape.
    constexpr int shortest = 9;
    const int length = static_cast<int>(std::wcslen(text));
    int suffix = 0;
    if (length > shortest && endsWith(text, length, kDegreeEscape, kDegreeEscapeLength))
        suffix = kDegreeEscapeLength;
    else if (length > 0 && (std::iswalpha(static_cast<wint_t>(text[length - 1])) || text[length - 1] == L'"'))
        suffix = 1;
    int end = length - suffix;
    while (end > 0 && text[end - 1] == L'0')
        --end;
    if (end > 0 && text[end - 1] == L'.')
        --end;
    std::wmemmove(text + end, text + length - suffix, static_cast<std::size_t>(suffix) + 1);
}

void stripLeadingZero(wchar_t* text)
{
    wchar_t* const number = text + (*text == L'-');
    if (number[0] == L'0' && number[1] == L'.')
        std::wmemmove(number, number + 1, std::wcslen(number));
}

// A text that does not fit leaves the buffer empty.
void copyOut(const UnitText& text, wchar_t* buffer, int capacity)
{
    const int length = text.length() < capacity ? text.length() : 0;
    std::wmemcpy(buffer, text.text(), static_cast<std::size_t>(length));
    buffer[length] = 0;
}

} // namespace

bool TvFormatDetail::isCompact(int flags) { return (g_appUnits.unitMode & 1) && !(flags & kNeverCompact); }

int TvFormatDetail::wrappedInteger(double value)
{
    constexpr double turn = 4294967296.0;
    return static_cast<int>(static_cast<std::uint32_t>(static_cast<std::int64_t>(std::fmod(value, turn))));
}

bool TvFormatDetail::makeUnitText(UnitText& text, double value, int mode, unsigned maxLength)
{
    const int kind = mode & 0xFF;
    const int flags = (mode >> 8) & 0xFF;
    text.clear();
    if (kind > kAngleAsGiven)
        return true;
    if (kind == kAngleFromBase && std::isfinite(value))
        value = fromBaseAngle(value);
    if (!std::isfinite(value)) {
        wchar_t word[kRealTextRoom];
        nonFiniteText(word, value);
        text.add(L"%s", static_cast<const wchar_t*>(word));
        return false;
    }
    int precision = 0;
    int style = 0;
    FormatUtil::convertQTypeToAppType(precision, style, kind, flags);
    if (isAngle(kind) && !isAngleStyle(style)) // no text, not even a sign
        return true;
    if (kind == kAngleAsGiven && style == 4) // a bearing needs a base
        style = 1;
    const bool bearing = isAngle(kind) && style == 4;
    if (value < 0 && !bearing) {
        text.add(L"-");
        value = -value;
        maxLength = shortened(maxLength, 1);
    }
    if (isAngle(kind))
        addAngle(text, value, style, precision, flags, maxLength);
    else
        addDistance(text, value, style, precision, flags, maxLength);
    if ((flags & (kNoLeadingZero | kNoTrailingZeros)) && std::wcschr(text.text(), L'.') &&
        !std::wcschr(text.text(), L'E')) {
        delPrefixSurfixZero(flags, text.text());
        text.cut(static_cast<int>(std::wcslen(text.text())));
    }
    return true;
}

const wchar_t* TvFormatDetail::withoutNegativeZero(const wchar_t* text)
{
    if (*text != L'-')
        return text;
    for (const wchar_t* p = text + 1; *p && *p != L'E' && *p != L'e'; ++p) {
        if (*p >= L'1' && *p <= L'9')
            return text;
    }
    return text + 1;
}

void FormatUtil::formatQModeDouble(wchar_t* buffer, int capacity, double value, int mode, unsigned maxLength)
{
    if (!buffer || capacity <= 0)
        return;
    UnitText text;
    makeUnitText(text, value, mode, maxLength);
    copyOut(text, buffer, capacity);
}

void FormatUtil::convertQTypeToAppType(int& precision, int& style, int kind, int flags)
{
    const OrnaAppUnitSets& units = g_appUnits;
    style = units.linearStyle;
    precision = units.linearPrecision;
    if (kind == kDimension && (flags & kLinearWithoutFeet)) {
        if (style == 4)
            precision = (precision + 2) / 3;
        if (style == 3 || style == 4)
            style = 2;
    } else if (kind == kDimension && !(flags & kLinearSettings)) {
        style = units.dimLinearStyle;
        precision = units.dimLinearPrecision;
    } else if (isAngle(kind) && !(flags & kLinearSettings)) {
        style = units.angleStyle;
        precision = units.anglePrecision;
    }
    precision = std::max(precision, 0);
}

void formatQModeDoubleUtil(const wchar_t*& format, bool positional, FormatParameters* params, va_list* args,
                           bool& numeric, unsigned& length, int index, wchar_t* buffer, int capacity,
                           unsigned precision, wchar_t*& text)
{
    FormatSpec spec;
    const wchar_t* behind = format + 1;
    readFormatMode(behind, positional, spec);
    format = behind - 1;
    text = buffer;
    length = 0;
    if (buffer && capacity > 0)
        *buffer = 0;
    if (!spec.hasMode) {
        numeric = false;
        return;
    }
    FormatArguments arguments(args, positional, params, kMaxArgumentNumber);
    const int mode =
        spec.mode.fromArgument ? arguments.takeCount(spec.mode.value) : static_cast<int>(spec.mode.value);
    const double value = arguments.takeDouble(static_cast<unsigned>(index) + 1);
    if (!buffer || capacity <= 0)
        return;
    UnitText units;
    numeric = makeUnitText(units, value, mode, precision);
    copyOut(units, buffer, capacity);
    if (numeric)
        text = buffer + (withoutNegativeZero(buffer) - buffer);
    length = static_cast<unsigned>(std::wcslen(text));
}

void delPrefixSurfixZero(int flags, wchar_t* text)
{
    if (!text)
        return;
    if (flags & kNoTrailingZeros)
        stripTrailingZeros(text);
    if (flags & kNoLeadingZero)
        stripLeadingZero(text);
}

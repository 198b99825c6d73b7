#include "format/UnitText.h"

#include "TvMath.h"

#include <algorithm>
#include <cmath>
#include <cwchar>

namespace TvFormatDetail {

namespace {

// OrnaAppUnitSets::angleStyle.
enum AngleStyle { kDecimalDegrees = 0, kDegreesMinutesSeconds = 1, kGrads = 2, kRadians = 3, kSurveyor = 4 };

constexpr double kPi = 3.141592653589793;
constexpr double kSecondsTolerance = 1e-10;

double degreesOf(double radians) { return radians * 180 / kPi; }

// How much of degrees, minutes and seconds fits: 0 degrees only, 1 and 2 minutes too, from 3
// on seconds, from 5 on seconds with parts - 4 fraction digits.
int partsFor(unsigned maxLength, int precision)
{
    unsigned parts = 0;
    if (maxLength >= 12)
        parts = maxLength - 7;
    else if (maxLength >= 10)
        parts = maxLength - 6;
    else if (maxLength >= 7)
        parts = maxLength - 5;
    return static_cast<int>(std::min(parts, static_cast<unsigned>(precision)));
}

struct SplitAngle {
    double degrees;
    int minutes;
    double seconds;
};

// Splits a non-negative angle, rounded to its parts; units that are full carry over.
SplitAngle split(double radians, int parts)
{
    double degrees = degreesOf(radians);
    if (parts == 0)
        degrees += 0.5;
    else if (parts <= 2)
        degrees += 1.0 / 120;
    SplitAngle angle{};
    angle.degrees = std::trunc(degrees);
    const double minutes = (degrees - angle.degrees) * 60;
    angle.minutes = static_cast<int>(minutes);
    angle.seconds = (minutes - angle.minutes) * 60;
    // Meant: with 3 parts the tolerance is 10 seconds, with 4 it is 1.
    if (parts > 2 && TvMath::isEqual(angle.seconds, 60, TvMath::pow<double>(10, 4 - parts))) {
        angle.seconds = 0;
        angle.minutes += 1;
    }
    if (angle.minutes == 60) {
        angle.minutes = 0;
        angle.degrees += 1;
    }
    if (angle.degrees == 360)
        angle.degrees = 0;
    return angle;
}

void addSplit(UnitText& text, const SplitAngle& angle, int parts, int flags)
{
    const int degrees = wrappedInteger(angle.degrees);
    if (flags & kMarkup)
        text.add(L"%d%s", degrees, kDegreeEscape);
    else
        text.add(L"%dd", degrees);
    if (parts > 0)
        text.add(L"%d'", angle.minutes);
    if (parts > 2)
        text.add(L"%.*f\"", std::max(0, parts - 4), angle.seconds);
}

void addDegreesMinutesSeconds(UnitText& text, double value, int precision, int flags, unsigned maxLength)
{
    if (!std::isfinite(degreesOf(value))) // of an angle near the largest double
        return text.add(L"%f", degreesOf(value));
    const int parts = partsFor(maxLength, precision);
    addSplit(text, split(value, parts), parts, flags);
}

// An acute angle from north or south towards east or west; a bearing of 0 is its first letter.
void addBearing(UnitText& text, double value, int precision, int flags, unsigned maxLength)
{
    const wchar_t* const gap = isCompact(flags) ? L"" : L" ";
    const double angle = TvMath::fixAngle(value);
    const bool north = angle < kPi;
    const double turned = angle - (north ? kPi / 2 : 3 * kPi / 2);
    const bool west = north == (turned >= 0);
    const double bearing = std::fabs(turned);
    const int parts = partsFor(shortened(maxLength, 4), precision);
    const SplitAngle shown = split(bearing, parts);
    text.add(north ? L"N" : L"S");
    const bool zero = parts == 0 ? bearing == 0
                                 : shown.degrees == 0 && shown.minutes == 0 &&
                                       (parts < 3 || TvMath::isZero(shown.seconds, kSecondsTolerance));
    if (zero)
        return;
    text.add(L"%s", gap);
    addSplit(text, shown, parts, flags);
    text.add(L"%s%c", gap, int{west ? L'W' : L'E'});
}

void addDecimalDegrees(UnitText& text, double value, int digits, int flags)
{
    const int start = text.length();
    text.add(L"%.*f", digits, degreesOf(value));
    // Meant: "3600" begins with a full turn too.
    if (std::wcsncmp(text.text() + start, L"360", 3) == 0) {
        text.cut(start);
        text.add(L"%.*f", digits, 0.0);
    }
    if (flags & kMarkup)
        text.add(L"%s", kDegreeEscape);
}

} // namespace

void addAngle(UnitText& text, double value, int style, int precision, int flags, unsigned maxLength)
{
    const auto digits = static_cast<int>(std::min(shortened(maxLength, 4), static_cast<unsigned>(precision)));
    switch (style) {
    case kDecimalDegrees:
        return addDecimalDegrees(text, value, digits, flags);
    case kDegreesMinutesSeconds:
        return addDegreesMinutesSeconds(text, value, precision, flags, maxLength);
    case kGrads:
        return text.add(L"%.*fg", digits, value * 200 / kPi);
    case kRadians:
        return text.add(L"%.*fr", digits, value);
    case kSurveyor:
        return addBearing(text, value, precision, flags, maxLength);
    default:
        return;
    }
}

} // namespace TvFormatDetail

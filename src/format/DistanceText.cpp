#include "format/UnitText.h"

#include "TvUnits.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cwchar>

namespace TvFormatDetail {

namespace {

// OrnaAppUnitSets::linearStyle.
enum LinearStyle { kScientific = 1, kDecimal = 2, kEngineering = 3, kArchitectural = 4, kFractional = 5 };

// Distances above this one are not laid out in feet or fractions.
constexpr double kLongestLaidOut = 1.19999e11;

// Below this distance no foot is looked for: the quotient would lose its digits.
constexpr double kShortestWithFeet = 2.6700886302086417e-307;

constexpr int kInchesPerFoot = 12;
constexpr int kMaxFractionPrecision = 30;

// Stacked fractions are markup, whose length says nothing.
constexpr unsigned kMarkupLength = 9999;

struct DistanceLayout {
    int style;
    int precision;
    int flags;
    unsigned maxLength;
};

bool isZeroText(const wchar_t* text) { return text[std::wcsspn(text, L"0.")] == 0; }

// Whole inches and a fraction in halves, quarters and so on. Tells whether the whole number
// was written.
bool addFraction(UnitText& text, double inches, bool feetWritten, DistanceLayout& layout)
{
    std::int64_t denominator = std::int64_t{1} << std::min(layout.precision, kMaxFractionPrecision);
    double whole = std::trunc(inches);
    const double halfUp = (inches - whole) * static_cast<double>(denominator) + 0.5;
    auto numerator = static_cast<std::int64_t>(halfUp);
    if (numerator == denominator) {
        whole += 1;
        numerator = 0;
    }
    const bool leftOut = whole == 0 && (numerator != 0 || (!feetWritten && (layout.flags & kNoZeroInches)));
    if (!leftOut)
        text.add(L"%ld", wrappedInteger(whole));
    if (numerator == 0)
        return !leftOut;
    if (!leftOut && !(layout.flags & kMarkup))
        text.add(isCompact(layout.flags) ? L"-" : L" ");
    while (numerator % 2 == 0) {
        numerator /= 2;
        denominator /= 2;
    }
    const int over = static_cast<int>(numerator);
    const int under = static_cast<int>(denominator);
    if (layout.flags & kMarkup) {
        text.add(L"{\\H%dx;\\S%d%c%d;}", int{g_appUnits.fractionHeight}, over,
                 int{g_appUnits.fractionStack ? L'#' : L'/'}, under);
        layout.maxLength = kMarkupLength;
    } else {
        text.add(L"%d/%d", over, under);
    }
    return !leftOut;
}

// Decimal inches; dropped where they are zero and need not be written.
void addDecimalInches(UnitText& text, double inches, bool feetWritten, const DistanceLayout& layout)
{
    const int start = text.length();
    text.add(L"%.*f", layout.precision, inches);
    if (feetWritten && (layout.flags & kNoZeroInches) && isZeroText(text.text() + start))
        text.cut(start);
}

// Feet, inches and fractions. False, with nothing written, when the distance is too long.
bool addFeetAndInches(UnitText& text, double value, DistanceLayout& layout)
{
    if (value > kLongestLaidOut)
        return false;
    const int start = text.length();
    const bool withFeet = layout.style != kFractional;
    double feet = withFeet && value >= kShortestWithFeet ? std::trunc(value / kInchesPerFoot) : 0;
    double inches = value - kInchesPerFoot * feet;
    for (;;) {
        const bool feetWritten = withFeet && (feet != 0 || !(layout.flags & kNoZeroFeet));
        if (feetWritten)
            text.add(L"%D'%s", static_cast<long long>(feet), isCompact(layout.flags) ? L"" : L"-");
        const int inchStart = text.length();
        bool wholeWritten = true;
        if (layout.style == kEngineering)
            addDecimalInches(text, inches, feetWritten, layout);
        else
            wholeWritten = addFraction(text, inches, feetWritten, layout);
        if (withFeet && wholeWritten && std::wcsncmp(text.text() + inchStart, L"12", 2) == 0) {
            feet += 1; // rounded up to a whole foot: laid out afresh
            inches = 0;
            text.cut(start);
            continue;
        }
        if (feetWritten && text.length() == inchStart)
            text.cut(inchStart - (isCompact(layout.flags) ? 0 : 1));
        else if (withFeet)
            text.add(L"\"");
        return true;
    }
}

void addScientific(UnitText& text, double value, const DistanceLayout& layout)
{
    constexpr unsigned exponentLength = 6;
    const auto digits = static_cast<int>(
        std::min(shortened(layout.maxLength, exponentLength), static_cast<unsigned>(layout.precision)));
    text.add(L"%.*e", digits, value);
    wchar_t* const exponent = text.text() + text.length() - 3;
    if (exponent[0] == L'0')
        std::wmemmove(exponent, exponent + 1, 2);
    else
        exponent[0] = exponent[1] = L'9';
    text.cut(text.length() - 1);
}

} // namespace

void addDistance(UnitText& text, double value, int style, int precision, int flags, unsigned maxLength)
{
    const int start = text.length();
    DistanceLayout layout{style, precision, flags, maxLength};
    if (style <= 0)
        layout.style = kDecimal;
    else if (style > kFractional)
        layout.style = kArchitectural;
    bool laidOut = layout.style != kScientific;
    if (layout.style == kDecimal)
        text.add(L"%.*f", precision, value);
    else if (laidOut)
        laidOut = addFeetAndInches(text, value, layout);
    if (!laidOut || static_cast<unsigned>(text.length() - start) > layout.maxLength) {
        text.cut(start);
        addScientific(text, value, layout);
    }
}

} // namespace TvFormatDetail

// Distances and angles by the unit settings.
#include "TvUnits.h"

#include "CaseName.h"
#include "TvFormat.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstddef>
#include <limits>
#include <string>

namespace {

constexpr double kPi = 3.141592653589793;
constexpr double kDegree = kPi / 180;

// Settings for one test; the old ones come back at its end.
class Settings {
public:
    Settings() : m_old(g_appUnits) { g_appUnits = OrnaAppUnitSets(); }
    ~Settings() { g_appUnits = m_old; }

private:
    OrnaAppUnitSets m_old;
};

std::wstring unitText(double value, int mode, unsigned maxLength)
{
    wchar_t buffer[200];
    FormatUtil::formatQModeDouble(buffer, 200, value, mode, maxLength);
    return buffer;
}

struct DistanceCase {
    const char* name;
    short style;
    short precision;
    short compact;
    int flags;
    double value;
    const wchar_t* text;
    unsigned maxLength = 40;
};

class Distance : public testing::TestWithParam<DistanceCase> {};

TEST_P(Distance, IsShownInItsStyle)
{
    Settings settings;
    const DistanceCase& c = GetParam();
    g_appUnits.unitMode = c.compact;
    g_appUnits.linearStyle = c.style;
    g_appUnits.linearPrecision = c.precision;
    g_appUnits.fractionHeight = 2;
    EXPECT_EQ(unitText(c.value, c.flags << 8 | 1, c.maxLength), c.text);
}

// What the %q conversion leaves of a text: a negative zero loses its sign.
std::wstring asField(const std::wstring& text)
{
    const bool zero = text.find_first_of(L"123456789") >= text.find_first_of(L"Ee");
    return text.substr(zero && text[0] == L'-');
}

std::wstring throughTheEngine(double value, int mode, unsigned maxLength)
{
    wchar_t buffer[200];
    FormatUtil::outputStringWithFormat(buffer, 200, L"%.*q*", static_cast<int>(maxLength), mode, value);
    return buffer;
}

TEST_P(Distance, IsTheSameThroughTheEngine)
{
    Settings settings;
    const DistanceCase& c = GetParam();
    g_appUnits.unitMode = c.compact;
    g_appUnits.linearStyle = c.style;
    g_appUnits.linearPrecision = c.precision;
    g_appUnits.fractionHeight = 2;
    EXPECT_EQ(throughTheEngine(c.value, c.flags << 8 | 1, c.maxLength), asField(c.text));
}

TEST_P(Distance, OfADimensionHasTheDimensionSettings)
{
    Settings settings;
    const DistanceCase& c = GetParam();
    g_appUnits.unitMode = c.compact;
    g_appUnits.dimLinearStyle = c.style;
    g_appUnits.dimLinearPrecision = c.precision;
    g_appUnits.fractionHeight = 2;
    EXPECT_EQ(unitText(c.value, c.flags << 8, c.maxLength), c.text);
}

const DistanceCase kDistances[] = {
    {"Decimal", 2, 4, 0, 0, 66.5, L"66.5000"},
    {"DecimalNegative", 2, 2, 0, 0, -66.5, L"-66.50"},
    {"DecimalNegativeZero", 2, 2, 0, 0, -0.001, L"-0.00"},
    {"DecimalNoTrailingZeros", 2, 4, 0, 8, 66.5, L"66.5"},
    {"DecimalNoLeadingZero", 2, 4, 0, 4, -0.5, L"-.5000"},
    {"DecimalNeitherZeros", 2, 4, 0, 12, 0.5, L".5"},
    {"DecimalWithoutAPointKeepsItsZeros", 2, 0, 0, 8, 100.0, L"100"},
    {"DecimalAsLongAsWanted", 2, 2, 0, 0, 123.456, L"123.46", 6},
    {"DecimalLongerTurnsScientific", 2, 2, 0, 0, 1234.56, L"1E+03", 6},
    {"NegativeMayBeOneShorter", 2, 2, 0, 0, -123.456, L"-123.46", 7},
    {"NegativeLongerTurnsScientific", 2, 2, 0, 0, -123.456, L"-1E+02", 6},
    {"Style0IsDecimal", 0, 2, 0, 0, 1.5, L"1.50"},
    {"NegativeStyleIsDecimal", -3, 2, 0, 0, 1.5, L"1.50"},
    {"Scientific", 1, 4, 0, 0, 1234.56, L"1.2346E+03", 20},
    {"ScientificSmall", 1, 2, 0, 0, 0.00123, L"1.23E-03", 20},
    {"ScientificZero", 1, 2, 0, 0, 0.0, L"0.00E+00", 20},
    {"ScientificDigitsFromLength", 1, 4, 0, 0, 1234.56, L"1.23E+03", 8},
    {"ScientificDigitsAtLength6", 1, 4, 0, 0, 1234.56, L"1E+03", 6},
    {"ScientificLengthBelow6", 1, 4, 0, 0, 1234.56, L"1E+03", 0},
    {"ScientificExponent99", 1, 2, 0, 0, 1.5e99, L"1.50E+99", 20},
    {"ScientificExponentFrom100Is99", 1, 2, 0, 0, 1.5e123, L"1.50E+99", 20},
    {"ScientificKeepsItsZeros", 1, 4, 0, 12, 1.5, L"1.5000E+00", 20},

    {"Engineering", 3, 2, 0, 0, 66.0, L"5'-6.00\""},
    {"EngineeringCompact", 3, 2, 1, 0, 66.0, L"5'6.00\""},
    {"EngineeringNeverCompact", 3, 2, 1, 0x10, 66.0, L"5'-6.00\""},
    {"EngineeringCompactByTheLowestBitAlone", 3, 2, 2, 0, 66.0, L"5'-6.00\""},
    {"EngineeringZeroFeet", 3, 2, 0, 0, 6.0, L"0'-6.00\""},
    {"EngineeringNoZeroFeet", 3, 2, 0, 1, 6.0, L"6.00\""},
    {"EngineeringFeetStayWithFlag", 3, 2, 0, 1, 18.0, L"1'-6.00\""},
    {"EngineeringZeroInches", 3, 2, 0, 0, 60.0, L"5'-0.00\""},
    {"EngineeringNoZeroInches", 3, 2, 0, 2, 60.0, L"5'"},
    {"EngineeringNoZeroInchesCompact", 3, 2, 1, 2, 60.0, L"5'"},
    {"EngineeringNoZeroInchesWithoutFeet", 3, 2, 0, 3, 0.0, L"0.00\""},
    {"EngineeringRollsOver", 3, 2, 0, 0, 71.999, L"6'-0.00\""},
    {"EngineeringRollsOverToNoInches", 3, 2, 0, 2, 71.999, L"6'"},
    {"EngineeringRollsOverFromNoFeet", 3, 2, 0, 1, 11.999, L"1'-0.00\""},
    {"EngineeringNegative", 3, 2, 0, 0, -66.0, L"-5'-6.00\""},
    {"EngineeringNoTrailingZeros", 3, 2, 0, 8, 66.0, L"5'-6\""},
    {"EngineeringLongerTurnsScientific", 3, 2, 0, 0, 66.0, L"6.6E+01", 7},

    {"EngineeringNoLeadingZeroIsForTheFirstNumber", 3, 2, 0, 4, 0.5, L"0'-0.50\""},
    {"EngineeringNoLeadingZeroWithoutFeet", 3, 2, 0, 5, 0.5, L".50\""},
    {"EngineeringZeroInchesKeptCompact", 3, 2, 1, 0, 60.0, L"5'0.00\""},
    {"EngineeringPrecision0", 3, 0, 0, 0, 66.6, L"5'-7\""},
    {"EngineeringElevenAndAHalfStays", 3, 1, 0, 0, 71.5, L"5'-11.5\""},
    {"EngineeringNoZeroInchesOfAFraction", 3, 2, 0, 2, 60.001, L"5'"},

    {"Architectural", 4, 4, 0, 0, 66.5, L"5'-6 1/2\""},
    {"ArchitecturalNegative", 4, 4, 0, 0, -66.5, L"-5'-6 1/2\""},
    {"ArchitecturalNeverCompact", 4, 4, 1, 0x10, 66.5, L"5'-6 1/2\""},
    {"ArchitecturalRollsOverFromNoFeet", 4, 4, 0, 1, 11.99, L"1'-0\""},
    {"ArchitecturalElevenAndAHalfStays", 4, 4, 0, 0, 71.5, L"5'-11 1/2\""},
    {"ArchitecturalFractionThatBeginsWith12Stays", 4, 7, 0, 0, 127.0 / 128, L"0'-127/128\""},
    {"ArchitecturalLongerTurnsScientific", 4, 4, 0, 0, 66.5, L"7E+01", 6},
    {"ArchitecturalCompact", 4, 4, 1, 0, 66.5, L"5'6-1/2\""},
    {"ArchitecturalSixteenth", 4, 4, 0, 0, 1.0625, L"0'-1 1/16\""},
    {"ArchitecturalNoZeroFeet", 4, 4, 0, 1, 0.5, L"1/2\""},
    {"ArchitecturalZeroInchesLeftOut", 4, 4, 0, 0, 12.5, L"1'-1/2\""},
    {"ArchitecturalWholeInches", 4, 4, 0, 0, 66.0, L"5'-6\""},
    {"ArchitecturalWholeFeet", 4, 4, 0, 0, 60.0, L"5'-0\""},
    {"ArchitecturalWholeFeetKeepTheirZero", 4, 4, 0, 2, 60.0, L"5'-0\""},
    {"ArchitecturalZero", 4, 4, 0, 0, 0.0, L"0'-0\""},
    {"ArchitecturalZeroWithoutFeet", 4, 4, 0, 1, 0.0, L"0\""},
    {"ArchitecturalZeroWithoutAnything", 4, 4, 0, 3, 0.0, L"\""},
    {"ArchitecturalRollsOver", 4, 4, 0, 0, 71.99, L"6'-0\""},
    {"ArchitecturalFractionRollsOver", 4, 4, 0, 0, 6.99, L"0'-7\""},
    {"ArchitecturalPrecision0", 4, 0, 0, 0, 66.5, L"5'-7\""},
    {"ArchitecturalPrecision30", 4, 30, 0, 1, 1.0 / 1073741824, L"1/1073741824\""},
    {"ArchitecturalPrecisionAbove30", 4, 99, 0, 1, 1.0 / 1073741824, L"1/1073741824\""},
    {"StyleAbove5IsArchitectural", 9, 4, 0, 0, 66.5, L"5'-6 1/2\""},
    {"ArchitecturalStacked", 4, 4, 0, 0x80, 66.5, L"5'-6{\\H2x;\\S1/2;}\""},
    {"StackedIsNeverTooLong", 4, 4, 0, 0x80, 66.5, L"5'-6{\\H2x;\\S1/2;}\"", 6},
    {"StackedFlagWithoutFraction", 4, 4, 0, 0x80, 66.0, L"5'-6\""},

    {"Fractional", 5, 3, 0, 0, 2.25, L"2 1/4"},
    {"FractionalCompact", 5, 3, 1, 0, 2.25, L"2-1/4"},
    {"FractionalHasNoFeet", 5, 3, 0, 0, 66.5, L"66 1/2"},
    {"FractionalBelowOne", 5, 3, 0, 0, 0.25, L"1/4"},
    {"FractionalZero", 5, 3, 0, 0, 0.0, L"0"},
    {"FractionalNoZero", 5, 3, 0, 2, 0.0, L""},
    {"FractionalStacked", 5, 3, 0, 0x80, 2.25, L"2{\\H2x;\\S1/4;}"},
    {"FractionalTwelveIsNoFoot", 5, 3, 0, 0, 12.0, L"12"},
    {"FractionalRoundsUp", 5, 3, 0, 0, 2.9999, L"3"},
    {"FractionalHalfOfThePartRoundsUp", 5, 1, 0, 0, 2.25, L"2 1/2"},
    {"FractionalStackedCompact", 5, 3, 1, 0x80, 2.25, L"2{\\H2x;\\S1/4;}"},
    {"FractionalStackedBelowOne", 5, 3, 0, 0x80, 0.25, L"{\\H2x;\\S1/4;}"},
    {"FractionalLongerTurnsScientific", 5, 3, 0, 0, 12345.25, L"1E+04", 6},
    {"FractionalNegativeLonger", 5, 3, 0, 0, -2.25, L"-2E+00", 5},
    {"FractionalNegativeJustFits", 5, 3, 0, 0, -2.25, L"-2 1/4", 6},
    {"FractionalNegative", 5, 3, 0, 0, -2.25, L"-2 1/4"},

    {"LongestLaidOut", 5, 0, 0, 0, 1.19999e11, L"-260084288"},
    {"AboveTheLongestIsScientific", 3, 2, 0, 0, 1.2e11, L"1.20E+11"},
    {"JustAboveTheLongestIsScientific", 5, 0, 0, 0, 1.199995e11, L"1E+11"},
    {"FeetWrapAt2To31", 3, 0, 0, 0, 2147483648.0 * 12, L"-2147483648'-0\""},
    {"TinyDistance", 4, 4, 0, 0, 5e-324, L"0'-0\""},
};
INSTANTIATE_TEST_SUITE_P(Styles, Distance, testing::ValuesIn(kDistances), nameOfCase<DistanceCase>);

TEST(StackedFraction, TakesTheHashWhenAsked)
{
    Settings settings;
    g_appUnits.linearStyle = 5;
    g_appUnits.fractionStack = 1;
    g_appUnits.fractionHeight = -3;
    EXPECT_EQ(unitText(2.25, 0x8001, 40), L"2{\\H-3x;\\S1#4;}");
}

TEST(StackedFraction, TakesTheHashForAnyValueButZero)
{
    Settings settings;
    g_appUnits.linearStyle = 5;
    for (const short stack : {2, -1, 256}) {
        g_appUnits.fractionStack = stack;
        EXPECT_EQ(unitText(2.25, 0x8001, 40), L"2{\\H0x;\\S1#4;}") << stack;
    }
}

struct AngleCase {
    const char* name;
    short style;
    short precision;
    short compact;
    int flags;
    double degrees;
    const wchar_t* text;
    unsigned maxLength = 40;
};

class AngleAsGiven : public testing::TestWithParam<AngleCase> {};

TEST_P(AngleAsGiven, IsShownInItsStyle)
{
    Settings settings;
    const AngleCase& c = GetParam();
    g_appUnits.unitMode = c.compact;
    g_appUnits.angleStyle = c.style;
    g_appUnits.anglePrecision = c.precision;
    g_appUnits.baseAngle = 1.0;
    EXPECT_EQ(unitText(c.degrees * kDegree, c.flags << 8 | 3, c.maxLength), c.text);
}

TEST_P(AngleAsGiven, IsTheSameThroughTheEngine)
{
    Settings settings;
    const AngleCase& c = GetParam();
    g_appUnits.unitMode = c.compact;
    g_appUnits.angleStyle = c.style;
    g_appUnits.anglePrecision = c.precision;
    EXPECT_EQ(throughTheEngine(c.degrees * kDegree, c.flags << 8 | 3, c.maxLength), asField(c.text));
}

const AngleCase kAngles[] = {
    {"Degrees", 0, 2, 0, 0, 45.5, L"45.50"},
    {"DegreesNegative", 0, 2, 0, 0, -45.5, L"-45.50"},
    {"DegreesWithEscape", 0, 2, 0, 0x80, 45.5, L"45.50\\U+00B0"},
    {"DegreesFullTurnIsZero", 0, 2, 0, 0, 360.0, L"0.00"},
    {"DegreesRoundedToAFullTurnAreZero", 0, 2, 0, 0, 359.999, L"0.00"},
    {"DegreesFullTurnWithEscape", 0, 2, 0, 0x80, 360.0, L"0.00\\U+00B0"},
    {"Degrees3600BeginsWith360", 0, 1, 0, 0, 3600.0, L"0.0"},
    {"DegreesNoTrailingZeros", 0, 4, 0, 8, 45.5, L"45.5"},
    {"DegreesNoTrailingZerosWithEscape", 0, 4, 0, 0x88, 45.5, L"45.5\\U+00B0"},
    {"DegreesNoLeadingZero", 0, 2, 0, 4, 0.5, L".50"},
    {"DegreesDigitsFromLength", 0, 4, 0, 0, 45.4321, L"45.43", 6},
    {"DegreesLength5", 0, 4, 0, 0, 45.4321, L"45.4", 5},
    {"DegreesLength4", 0, 4, 0, 0, 45.4321, L"45", 4},
    {"DegreesLength0", 0, 4, 0, 0, 45.4321, L"45", 0},
    {"DegreesNegativeTakesOneOff", 0, 4, 0, 0, -45.4321, L"-45.4", 6},
    {"Grads", 2, 2, 0, 0, 45.0, L"50.00g"},
    {"GradsNoTrailingZeros", 2, 2, 0, 8, 45.0, L"50g"},
    {"Radians", 3, 4, 0, 0, 90.0, L"1.5708r"},
    {"MinutesSeconds", 1, 4, 0, 0, 45.5125, L"45d30'45\""},
    {"MinutesSecondsFraction", 1, 6, 0, 0, 45.5125, L"45d30'45.00\""},
    {"MinutesSecondsEscape", 1, 4, 0, 0x80, 45.5125, L"45\\U+00B030'45\""},
    {"DegreesOnlyAtPrecision0", 1, 0, 0, 0, 45.5125, L"46d"},
    {"MinutesAtPrecision1", 1, 1, 0, 0, 45.5125, L"45d31'"},
    {"MinutesAtPrecision2", 1, 2, 0, 0, 45.5125, L"45d31'"},
    {"SecondsAtPrecision3", 1, 3, 0, 0, 45.5125, L"45d30'45\""},
    {"SecondsNear60At3Carry", 1, 3, 0, 0, 45.0 + 52.0 / 3600, L"45d1'0\""},
    {"SecondsNear60At4Stay", 1, 4, 0, 0, 45.0 + 52.0 / 3600, L"45d0'52\""},
    {"SecondsOneBelow60At4Carry", 1, 4, 0, 0, 45.0 + 59.3 / 3600, L"45d1'0\""},
    {"SecondsTenthBelow60At5Carry", 1, 5, 0, 0, 45.0 + 59.95 / 3600, L"45d1'0.0\""},
    {"SecondsCarryThroughDegrees", 1, 4, 0, 0, 45.0 - 0.1 / 3600, L"45d0'0\""},
    {"SecondsCarryToAFullTurn", 1, 4, 0, 0, 360.0 - 0.1 / 3600, L"0d0'0\""},
    {"MinutesCarryToAFullTurn", 1, 2, 0, 0, 359.9999, L"0d0'"},
    {"DegreesCarryToAFullTurn", 1, 0, 0, 0, 359.6, L"0d"},
    {"MinutesSecondsNegative", 1, 4, 0, 0, -45.5125, L"-45d30'45\""},
    {"PartsAtLength6", 1, 8, 0, 0, 45.5125, L"46d", 6},
    {"PartsAtLength7", 1, 8, 0, 0, 45.5125, L"45d31'", 7},
    {"PartsAtLength8", 1, 8, 0, 0, 45.5125, L"45d30'45\"", 8},
    {"PartsAtLength9", 1, 8, 0, 0, 45.5125, L"45d30'45\"", 9},
    {"PartsAtLength10", 1, 8, 0, 0, 45.5125, L"45d30'45\"", 10},
    {"PartsAtLength11", 1, 8, 0, 0, 45.5125, L"45d30'45.0\"", 11},
    {"PartsAtLength12", 1, 8, 0, 0, 45.5125, L"45d30'45.0\"", 12},
    {"PartsAtLength13", 1, 8, 0, 0, 45.5125, L"45d30'45.00\"", 13},
    {"BearingWithoutBaseIsMinutesSeconds", 4, 4, 0, 0, 45.5125, L"45d30'45\""},
    {"MinutesSecondsNoTrailingZeros", 1, 6, 0, 8, 45.5125, L"45d30'45\""},
    {"MinutesSecondsNoLeadingZeroIsForTheFirstNumber", 1, 6, 0, 4, 0.0, L"0d0'0.00\""},
    {"MinutesRoundUpAtHalf", 1, 2, 0, 0, 45.0 + 0.51 / 60, L"45d1'"},
    {"MinutesRoundDownBelowHalf", 1, 2, 0, 0, 45.0 + 0.49 / 60, L"45d0'"},
    {"DegreesRoundUpAtHalf", 1, 0, 0, 0, 45.51, L"46d"},
    {"DegreesRoundUpJustAboveHalf", 1, 0, 0, 0, 45.5001, L"46d"},
    {"DegreesWrapAt2To32", 1, 0, 0, 0, 4294967296.0 + 45, L"45d"},
    {"DegreesRoundDownBelowHalf", 1, 0, 0, 0, 45.49, L"45d"},
    {"NegativeMinutesSecondsTakeOneOff", 1, 8, 0, 0, -45.5125, L"-45d30'45\"", 9},
    {"NegativeMinutesSecondsAtLength8", 1, 8, 0, 0, -45.5125, L"-45d31'", 8},
    {"GradsNegative", 2, 2, 0, 0, -45.0, L"-50.00g"},
    {"GradsDigitsFromLength", 2, 4, 0, 0, 45.0, L"50.00g", 6},
    {"RadiansNegative", 3, 2, 0, 0, -90.0, L"-1.57r"},
    {"RadiansNoLeadingZero", 3, 2, 0, 4, 30.0, L".52r"},
    {"RadiansNegativeNoLeadingZero", 3, 2, 0, 4, -30.0, L"-.52r"},
    {"RadiansDigitsFromLength", 3, 8, 0, 0, 90.0, L"1.571r", 7},
    {"DegreesNegativeZeroKeepsTheSign", 0, 2, 0, 0, -0.001, L"-0.00"},
    {"DegreesNegativeFullTurn", 0, 2, 0, 0, -360.0, L"-0.00"},
    {"LinearSettingsGiveTheStyle", 0, 1, 0, 0x20, 45.0, L"50.0000g"},
    {"StyleAbove4HasNoText", 5, 4, 0, 0, 45.0, L""},
    {"StyleAbove4HasNoSignEither", 5, 4, 0, 0, -45.0, L""},
    {"NegativeStyleHasNoSignEither", -1, 4, 0, 0, -45.0, L""},
    {"NegativeStyleHasNoText", -1, 4, 0, 0, 45.0, L""},
};
INSTANTIATE_TEST_SUITE_P(Styles, AngleAsGiven, testing::ValuesIn(kAngles), nameOfCase<AngleCase>);

class Bearing : public testing::TestWithParam<AngleCase> {};

TEST_P(Bearing, IsShownFromNorthOrSouth)
{
    Settings settings;
    const AngleCase& c = GetParam();
    g_appUnits.unitMode = c.compact;
    g_appUnits.angleStyle = 4;
    g_appUnits.anglePrecision = c.precision;
    EXPECT_EQ(unitText(c.degrees * kDegree, c.flags << 8 | 2, c.maxLength), c.text);
}

const AngleCase kBearings[] = {
    {"DueNorth", 4, 4, 0, 0, 90, L"N"},
    {"DueSouth", 4, 4, 0, 0, 270, L"S"},
    {"DueEast", 4, 4, 0, 0, 0, L"N 90d0'0\" E"},
    {"DueWest", 4, 4, 0, 0, 180, L"S 90d0'0\" W"},
    {"NorthEast", 4, 4, 0, 0, 45, L"N 45d0'0\" E"},
    {"NorthWest", 4, 4, 0, 0, 135, L"N 45d0'0\" W"},
    {"SouthWest", 4, 4, 0, 0, 225, L"S 45d0'0\" W"},
    {"SouthEast", 4, 4, 0, 0, 315, L"S 45d0'0\" E"},
    {"Compact", 4, 4, 1, 0, 45, L"N45d0'0\"E"},
    {"Escape", 4, 4, 0, 0x80, 45, L"N 45\\U+00B00'0\" E"},
    {"MinutesOnly", 4, 2, 0, 0, 45.5, L"N 44d30' E"},
    {"DegreesOnly", 4, 0, 0, 0, 30, L"N 60d E"},
    {"DueNorthInDegreesOnly", 4, 0, 0, 0, 90, L"N"},
    {"DueNorthInMinutes", 4, 1, 0, 0, 90, L"N"},
    {"SecondsWithFraction", 4, 6, 0, 0, 45.5125, L"N 44d29'15.00\" E"},
    {"EastLooksLikeAnExponentAndKeepsItsZeros", 4, 6, 0, 8, 45.5125, L"N 44d29'15.00\" E"},
    {"BelowTheToleranceIsDueNorth", 4, 8, 0, 0, 90 + 1e-14, L"N"},
    {"AboveTheToleranceHasItsSeconds", 4, 8, 0, 0, 90 - 0.001 / 3600, L"N 0d0'0.0010\" E"},
    {"WholeSecondsCountAtPrecision3", 4, 3, 0, 0, 90 - 5.0 / 3600, L"N 0d0'5\" E"},
    {"DueSouthInDegreesOnly", 4, 0, 0, 0, 270, L"S"},
    {"DueSouthCompact", 4, 4, 1, 0, 270, L"S"},
    {"NearNorthInDegreesOnlyHasItsLetters", 4, 0, 0, 0, 89.8, L"N 0d E"},
    {"NearNorthInMinutesIsNorth", 4, 2, 0, 0, 90 - 0.4 / 60, L"N"},
    {"DueEastInMinutes", 4, 2, 0, 0, 0, L"N 90d0' E"},
    {"DueEastInDegreesOnly", 4, 0, 0, 0, 0, L"N 90d E"},
    {"NegativeIsBroughtIntoOneTurn", 4, 4, 0, 0, -45, L"S 45d0'0\" E"},
    {"LengthShrinksBy4", 4, 4, 0, 0, 45, L"N 45d0' E", 11},
    {"ShortLengthDegreesOnly", 4, 4, 0, 0, 45, L"N 45d E", 3},
};
INSTANTIATE_TEST_SUITE_P(Directions, Bearing, testing::ValuesIn(kBearings), nameOfCase<AngleCase>);

TEST(AngleFromBase, IsRelativeToTheBase)
{
    Settings settings;
    g_appUnits.angleStyle = 0;
    g_appUnits.baseAngle = kPi / 2;
    EXPECT_EQ(unitText(kPi, 2, 40), L"90.0000");
}

TEST(AngleFromBase, IsBroughtIntoOneTurn)
{
    Settings settings;
    g_appUnits.angleStyle = 0;
    g_appUnits.baseAngle = kPi / 2;
    EXPECT_EQ(unitText(0, 2, 40), L"270.0000");
}

TEST(AngleFromBase, RunsClockwise)
{
    Settings settings;
    g_appUnits.angleStyle = 0;
    g_appUnits.baseAngle = kPi / 2;
    g_appUnits.clockwise = true;
    EXPECT_EQ(unitText(0, 2, 40), L"90.0000");
}

TEST(AngleFromBase, FullTurnIsZero)
{
    Settings settings;
    g_appUnits.angleStyle = 3;
    EXPECT_EQ(unitText(6.283185307179586, 2, 40), L"0.0000r");
    EXPECT_EQ(unitText(-6.283185307179586, 2, 40), L"0.0000r");
}

TEST(AngleFromBase, BaseThatIsNoNumberGivesNaN)
{
    Settings settings;
    g_appUnits.baseAngle = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(unitText(1.0, 2, 40), L"NaN");
}

// Its degrees pass the largest double, and their minutes would be no number.
TEST(AngleAsGiven, DegreesBeyondTheLargestDoubleAreInfinity)
{
    Settings settings;
    g_appUnits.angleStyle = 1;
    for (const short precision : {0, 2, 8}) {
        g_appUnits.anglePrecision = precision;
        EXPECT_EQ(unitText(1.7e308, 3, 40), L"Infinity");
        EXPECT_EQ(unitText(-1.7e308, 3, 40), L"-Infinity");
    }
}

struct ChoiceCase {
    const char* name;
    int kind;
    int flags;
    int style;
    int precision;
};

class Choice : public testing::TestWithParam<ChoiceCase> {};

TEST_P(Choice, OfStyleAndPrecision)
{
    Settings settings;
    g_appUnits.linearStyle = 4;
    g_appUnits.linearPrecision = 5;
    g_appUnits.dimLinearStyle = 5;
    g_appUnits.dimLinearPrecision = 6;
    g_appUnits.angleStyle = 3;
    g_appUnits.anglePrecision = 7;
    int precision = -1;
    int style = -1;
    FormatUtil::convertQTypeToAppType(precision, style, GetParam().kind, GetParam().flags);
    EXPECT_EQ(style, GetParam().style);
    EXPECT_EQ(precision, GetParam().precision);
}

const ChoiceCase kChoices[] = {
    {"Dimension", 0, 0, 5, 6},
    {"DimensionLinear", 0, 0x20, 4, 5},
    {"DimensionWithoutFeet", 0, 0x40, 2, 2},
    {"DimensionBothFlags", 0, 0x60, 2, 2},
    {"Distance", 1, 0, 4, 5},
    {"DistanceIgnoresFlag40", 1, 0x40, 4, 5},
    {"AngleFromBase", 2, 0, 3, 7},
    {"AngleFromBaseLinear", 2, 0x20, 4, 5},
    {"Angle", 3, 0, 3, 7},
    {"AngleLinear", 3, 0x20, 4, 5},
    {"OtherKind", 9, 0, 4, 5},
};
INSTANTIATE_TEST_SUITE_P(Kinds, Choice, testing::ValuesIn(kChoices), nameOfCase<ChoiceCase>);

TEST(Choice, WithoutFeetEngineeringIsDecimalWithItsDigits)
{
    Settings settings;
    g_appUnits.linearStyle = 3;
    g_appUnits.linearPrecision = 5;
    int precision = 0;
    int style = 0;
    FormatUtil::convertQTypeToAppType(precision, style, 0, 0x40);
    EXPECT_EQ(style, 2);
    EXPECT_EQ(precision, 5);
}

TEST(Choice, WithoutFeetArchitecturalHasAThirdOfItsDigitsRoundedUp)
{
    Settings settings;
    g_appUnits.linearStyle = 4;
    const int thirds[] = {0, 1, 1, 1, 2, 2, 2, 3};
    for (short digits = 0; digits < 8; ++digits) {
        g_appUnits.linearPrecision = digits;
        int precision = -1;
        int style = 0;
        FormatUtil::convertQTypeToAppType(precision, style, 0, 0x40);
        EXPECT_EQ(precision, thirds[digits]) << digits;
    }
}

TEST(Choice, WithoutFeetFractionalStays)
{
    Settings settings;
    g_appUnits.linearStyle = 5;
    int precision = 0;
    int style = 0;
    FormatUtil::convertQTypeToAppType(precision, style, 0, 0x40);
    EXPECT_EQ(style, 5);
}

TEST(Choice, NegativePrecisionIsZero)
{
    Settings settings;
    g_appUnits.linearPrecision = -4;
    int precision = 9;
    int style = 0;
    FormatUtil::convertQTypeToAppType(precision, style, 1, 0);
    EXPECT_EQ(precision, 0);
}

TEST(UnitText, KindIsTheWholeLowByte)
{
    Settings settings;
    for (const int kind : {4, 0x80, 0x81, 0xFF})
        EXPECT_EQ(unitText(-1.5, kind, 40), L"") << kind;
}

TEST(UnitText, FitsExactly)
{
    Settings settings;
    wchar_t buffer[8] = L"#######";
    FormatUtil::formatQModeDouble(buffer, 8, 66.5, 1, 40);
    EXPECT_STREQ(buffer, L"66.5000");
}

TEST(UnitText, OneShortIsEmpty)
{
    Settings settings;
    wchar_t buffer[8] = L"#######";
    FormatUtil::formatQModeDouble(buffer, 7, 66.5, 1, 40);
    EXPECT_STREQ(buffer, L"");
    EXPECT_EQ(buffer[6], L'#');
}

TEST(UnitText, WithoutCapacityNothingIsWritten)
{
    wchar_t buffer[1] = {L'#'};
    FormatUtil::formatQModeDouble(buffer, 0, 66.5, 1, 40);
    EXPECT_EQ(buffer[0], L'#');
    FormatUtil::formatQModeDouble(nullptr, 9, 66.5, 1, 40);
}

TEST(UnitText, EveryModeAndLargeValueIsSafe)
{
    Settings settings;
    for (const short style : {0, 1, 2, 3, 4, 5, 6}) {
        g_appUnits.linearStyle = g_appUnits.dimLinearStyle = g_appUnits.angleStyle = style;
        for (const short precision : {0, 3, 40, SHRT_MAX}) {
            g_appUnits.linearPrecision = g_appUnits.dimLinearPrecision = g_appUnits.anglePrecision =
                precision;
            for (int mode = 0; mode < 0x10000; mode += mode % 0x100 == 3 ? 0xFD : 1) {
                for (const double value : {0.0, -1e-310, 11.9999999, 1.7e308, -1.7e308}) {
                    for (const unsigned maxLength : {0u, 12u, UINT_MAX})
                        EXPECT_LT(unitText(value, mode, maxLength).size(), 200u);
                }
            }
        }
    }
}

TEST(UnitSettings, Defaults)
{
    const OrnaAppUnitSets units;
    EXPECT_EQ(units.unitMode, 0);
    EXPECT_EQ(units.linearStyle, 2);
    EXPECT_EQ(units.linearPrecision, 4);
    EXPECT_EQ(units.dimLinearStyle, 2);
    EXPECT_EQ(units.dimLinearPrecision, 4);
    EXPECT_EQ(units.angleStyle, 2);
    EXPECT_EQ(units.anglePrecision, 4);
    EXPECT_EQ(units.fractionStack, 0);
    EXPECT_EQ(units.fractionHeight, 0);
    EXPECT_EQ(units.baseAngle, 0.0);
    EXPECT_FALSE(units.clockwise);
}

TEST(UnitSettings, FieldsLieInOrder)
{
    EXPECT_EQ(offsetof(OrnaAppUnitSets, unitMode), 0u);
    EXPECT_EQ(offsetof(OrnaAppUnitSets, linearStyle), 2u);
    EXPECT_EQ(offsetof(OrnaAppUnitSets, linearPrecision), 4u);
    EXPECT_EQ(offsetof(OrnaAppUnitSets, dimLinearStyle), 6u);
    EXPECT_EQ(offsetof(OrnaAppUnitSets, dimLinearPrecision), 8u);
    EXPECT_EQ(offsetof(OrnaAppUnitSets, angleStyle), 10u);
    EXPECT_EQ(offsetof(OrnaAppUnitSets, anglePrecision), 12u);
    EXPECT_EQ(offsetof(OrnaAppUnitSets, fractionStack), 14u);
    EXPECT_EQ(offsetof(OrnaAppUnitSets, fractionHeight), 16u);
    EXPECT_EQ(offsetof(OrnaAppUnitSets, baseAngle), 24u);
    EXPECT_EQ(offsetof(OrnaAppUnitSets, clockwise), 32u);
}

TEST(UnitSettings, AreCopiedOverTheGlobalOnes)
{
    Settings settings;
    OrnaAppUnitSets units;
    units.linearStyle = 4;
    initOsBaseUnits(units);
    EXPECT_EQ(g_appUnits.linearStyle, 4);
}

} // namespace

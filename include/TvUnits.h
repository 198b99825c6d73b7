// TvUnits.h - the drawing-unit settings that distances and angles are shown by.
//
// The text itself is made by the %q conversion of TvFormat.h.
#ifndef TV_UNITS_H
#define TV_UNITS_H

#include "TvExport.h"

/// How the drawing shows distances and angles. A plain record; defaults as written.
///
/// **Errors**: values outside the stated ranges are brought to the nearest style that has
/// text. **Memory**: none owned. **Threads**: g_appUnits is unguarded, so set it before other
/// threads format.
///
///     OrnaAppUnitSets units;
///     units.dimLinearStyle = 4;                  // feet and fractional inches
///     units.dimLinearPrecision = 4;              // sixteenths
///     initOsBaseUnits(units);
///     wchar_t text[64];
///     FormatUtil::outputStringWithFormat(text, 64, L"%.32q0", 66.5);   // 5'-6 1/2"
class TV_OSBASE_API OrnaAppUnitSets {
public:
    /// The defaults below.
    constexpr OrnaAppUnitSets() {}

    /// Bit 0: feet and inches, fractions and bearings are written without blanks.
    short unitMode = 0;

    /// 1 scientific, 2 decimal, 3 engineering (feet and decimal inches),
    /// 4 architectural (feet and fractional inches), 5 fractional.
    short linearStyle = 2;

    /// Fraction digits; in styles 4 and 5 the power of two of the denominator.
    short linearPrecision = 4;

    /// As linearStyle, for values of kind 0.
    short dimLinearStyle = 2;
    /// As linearPrecision, for values of kind 0.
    short dimLinearPrecision = 4;

    /// 0 decimal degrees, 1 degrees-minutes-seconds, 2 grads, 3 radians,
    /// 4 surveyor's bearing.
    short angleStyle = 2;
    /// Fraction digits. In styles 1 and 4: 0 degrees, 1 and 2 minutes too, 3 and 4 seconds too,
    /// from 5 on seconds with 1 fraction digit and more.
    short anglePrecision = 4;

    /// Non-zero: stacked fractions are written with # and not with /.
    short fractionStack = 0;

    /// Height factor written into the markup of stacked fractions.
    short fractionHeight = 0;

    /// The direction that counts as angle 0, in radians.
    double baseAngle = 0.0;

    /// Whether the drawing's angles grow clockwise.
    bool clockwise = false;
};

/// The settings in force.
TV_OSBASE_API extern OrnaAppUnitSets g_appUnits;

/// Copies `units` over g_appUnits; a host calls it whenever its settings change.
TV_OSBASE_API void initOsBaseUnits(OrnaAppUnitSets& units);

#endif

// Shows a distance in feet and inches, as a dimension text does.
#include <TvOsBase.h>

#include <cstdio>

int main()
{
    OrnaAppUnitSets units;
    units.dimLinearStyle = 4;       // feet and fractional inches
    units.dimLinearPrecision = 4;   // sixteenths of an inch
    initOsBaseUnits(units);

    // %q0 takes a double and writes it as a distance; 32 is the longest text wanted.
    wchar_t text[64];
    FormatUtil::outputStringWithFormat(text, 64, L"%s = %.32q0", L"width", 66.5);
    std::printf("%ls\n", text);
}

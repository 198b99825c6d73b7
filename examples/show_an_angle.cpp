// Shows one direction in each of the angle styles of a drawing.
#include <TvOsBase.h>

#include <cstdio>

int main()
{
    const double quarterPi = 0.78539816339744831;
    const char* const names[] = {"degrees", "deg min sec", "grads", "radians", "surveyor"};
    for (short style = 0; style < 5; ++style) {
        OrnaAppUnitSets units;
        units.angleStyle = style;
        units.anglePrecision = 4;
        initOsBaseUnits(units);

        // %q2 takes radians and counts from units.baseAngle; %q3 shows an angle as it is.
        wchar_t text[64];
        FormatUtil::outputStringWithFormat(text, 64, L"%.32q2", quarterPi);
        std::printf("%-11s %ls\n", names[style], text);
    }
}

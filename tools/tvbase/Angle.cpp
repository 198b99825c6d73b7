// tvbase angle - angles in drawing units.
#include "UnitOptions.h"
#include "WideArguments.h"

#include <memory>

namespace {

constexpr int kAngleFromBase = 2;
constexpr int kAngleAsGiven = 3;
constexpr int kSurveyor = 4;
constexpr double kDegree = 3.141592653589793 / 180;

const std::map<std::string, int> kStyles = {
    {"degrees", 0}, {"minutes", 1}, {"grads", 2}, {"radians", 3}, {"surveyor", kSurveyor}};

struct AngleOptions : UnitOptions {
    bool inDegrees = false;
    bool fromBase = false;
};

int showAngles(AngleOptions& options)
{
    const double unit = options.inDegrees ? kDegree : 1;
    const bool relative = options.fromBase || options.units.clockwise || options.style == kSurveyor;
    options.units.unitMode = options.compact;
    options.units.angleStyle = static_cast<short>(options.style);
    options.units.anglePrecision = static_cast<short>(options.precision);
    options.units.baseAngle *= unit;
    initOsBaseUnits(options.units);
    return forEachNumber(options.numbers, [&](double value) {
        printUnits(options, relative ? kAngleFromBase : kAngleAsGiven, value * unit);
    });
}

} // namespace

void addAngle(CLI::App& app, Shared& shared)
{
    const auto options = std::make_shared<AngleOptions>();
    CLI::App* const command = app.add_subcommand("angle", "Show angles, given in radians, in drawing units");
    addUnitOptions(*command, *options, kStyles);
    addUnitFlag(*command, *options, "--degree-escape", 0x80, "The degree sign as \\U+00B0");
    command->add_flag("--in-degrees", options->inDegrees, "The numbers are degrees");
    command
        ->add_option_function<double>(
            "--base",
            [options](double base) {
                options->units.baseAngle = base;
                options->fromBase = true;
            },
            "The angle to count from")
        ->type_name("ANGLE");
    command->add_flag("--clockwise", options->units.clockwise, "Angles run clockwise");
    command->footer("Example:\n"
                    "  tvbase angle --in-degrees --style minutes 45.5125      45d30'45\"\n"
                    "  tvbase angle --in-degrees --style surveyor 45          N 45d0'0\" E");
    command->callback([options, &shared] { shared.status = showAngles(*options); });
}

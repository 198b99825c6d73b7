// tvbase length - distances in drawing units.
#include "UnitOptions.h"
#include "WideArguments.h"

#include <memory>

namespace {

constexpr int kDistance = 1;

const std::map<std::string, int> kStyles = {
    {"scientific", 1}, {"decimal", 2}, {"engineering", 3}, {"architectural", 4}, {"fractional", 5}};

int showLengths(UnitOptions& options)
{
    options.units.unitMode = options.compact;
    options.units.linearStyle = static_cast<short>(options.style);
    options.units.linearPrecision = static_cast<short>(options.precision);
    initOsBaseUnits(options.units);
    return forEachNumber(options.numbers, [&](double value) { printUnits(options, kDistance, value); });
}

} // namespace

void addLength(CLI::App& app, Shared& shared)
{
    const auto options = std::make_shared<UnitOptions>();
    options->style = 2;
    CLI::App* const command = app.add_subcommand("length", "Show distances in drawing units");
    addUnitOptions(*command, *options, kStyles);
    addUnitFlag(*command, *options, "--no-zero-feet", 0x01, "No 0' before inches");
    addUnitFlag(*command, *options, "--no-zero-inches", 0x02, "No zero inches");
    addUnitFlag(*command, *options, "--stacked", 0x80, "Fractions as stacked markup");
    command->add_option("--stack-height", options->units.fractionHeight, "Height factor of stacked fractions")
        ->type_name("N");
    command->add_flag_callback(
        "--stack-hash", [options] { options->units.fractionStack = 1; }, "Stacked fractions with # for /");
    command->footer("Example:\n  tvbase length --style architectural --precision 4 66.5      5'-6 1/2\"");
    command->callback([options, &shared] { shared.status = showLengths(*options); });
}

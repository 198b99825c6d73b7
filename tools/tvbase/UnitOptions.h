// UnitOptions.h - what tvbase length and tvbase angle have in common.
#ifndef TVBASE_UNIT_OPTIONS_H
#define TVBASE_UNIT_OPTIONS_H

#include "Command.h"

#include "TvUnits.h"

#include <map>
#include <string>
#include <vector>

/// The options of a unit command and the settings that they make.
struct UnitOptions {
    OrnaAppUnitSets units;
    int style = 0;
    int precision = 4;
    unsigned maxLength = 255;
    bool compact = false;
    int flags = 0; ///< the flag byte of %q
    std::vector<std::string> numbers;
};

/// Adds --style, --precision, --compact, --max-length, the zero flags and the numbers.
void addUnitOptions(CLI::App& command, UnitOptions& options, const std::map<std::string, int>& styles);

/// Adds a flag that sets one bit of the flag byte.
void addUnitFlag(CLI::App& command, UnitOptions& options, const std::string& name, int bit,
                 const std::string& description);

/// Prints one value of the given kind by g_appUnits.
void printUnits(const UnitOptions& options, int kind, double value);

#endif

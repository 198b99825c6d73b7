// NumberArguments.h - numbers on the command line that begin with a minus sign and a point.
//
// The parser knows -5 for a number, but takes -.5 for an option. Such arguments are handed to
// it with a blank in front, which addNumbers() takes off again; blanks that the user wrote
// stay.
#ifndef TVBASE_NUMBER_ARGUMENTS_H
#define TVBASE_NUMBER_ARGUMENTS_H

#include "Command.h"

#include <string>
#include <vector>

/// The arguments behind the program's name as CLI::App::parse() takes them, last one first.
std::vector<std::string> parserArguments(int argc, char** argv);

/// Adds a list of numbers, or of texts that may be such, to a command.
CLI::Option* addNumbers(CLI::App& command, const std::string& name, std::vector<std::string>& numbers,
                        const std::string& description);

#endif

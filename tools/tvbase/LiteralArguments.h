// LiteralArguments.h - arguments that begin with a minus sign and are no options.
//
// Two kinds of them the parser does not know for what they are:
//  - numbers such as -.5 (it knows -5);
//  - what stands behind `--` where the arguments before it would do: of
//    `tvbase recode a.txt -- -b.txt` it takes the last one for an error.
// They are handed to it with a mark in front, which every option and positional takes off again.
#ifndef TVBASE_LITERAL_ARGUMENTS_H
#define TVBASE_LITERAL_ARGUMENTS_H

#include "Command.h"

#include <string>
#include <vector>

/// The arguments behind the program's name as `app` parses them, last one first. `--` itself is
/// left out, but for a `--` that is an option's value, and but for subcommands that take what
/// follows as it stands. Throws CommandError for a subcommand that does not exist.
std::vector<std::string> parserArguments(const CLI::App& app, int argc, char** argv);

/// Makes the options and positionals of `app` and its subcommands, once all are added, take
/// marked arguments.
void acceptLiterals(CLI::App& app);

#endif

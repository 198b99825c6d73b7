// Command.h - what the subcommands of tvbase share.
#ifndef TVBASE_COMMAND_H
#define TVBASE_COMMAND_H

#include "CommandError.h"

#include <CLI/CLI.hpp>

#include <string>

/// Options that every subcommand takes, and the result that main exits with.
struct Shared {
    std::string mapFile; ///< of --map; empty = not given
    bool json = false;   ///< of --json
    int status = 0;
};

/// Adds --map to a subcommand that needs the code page map file.
void addMapOption(CLI::App& command, Shared& shared);

/// Adds --json to a subcommand that shows a table.
void addJsonOption(CLI::App& command, Shared& shared);

/// One function a subcommand: adds it to the application.
void addRecode(CLI::App& app, Shared& shared);
void addList(CLI::App& app, Shared& shared);
void addMap(CLI::App& app, Shared& shared);
void addNum(CLI::App& app, Shared& shared);
void addLength(CLI::App& app, Shared& shared);
void addAngle(CLI::App& app, Shared& shared);
void addFormat(CLI::App& app, Shared& shared);
void addScan(CLI::App& app, Shared& shared);
void addBigFont(CLI::App& app, Shared& shared);
void addChart(CLI::App& app, Shared& shared);
void addEscapes(CLI::App& app, Shared& shared);
void addBreaks(CLI::App& app, Shared& shared);
void addHeap(CLI::App& app, Shared& shared);
void addInfo(CLI::App& app, Shared& shared);

#endif

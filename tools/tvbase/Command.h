// Command.h - what the subcommands of tvbase share.
#ifndef TVBASE_COMMAND_H
#define TVBASE_COMMAND_H

#include <CLI/CLI.hpp>

#include <stdexcept>
#include <string>

/// How a run ends, besides 0 for success.
constexpr int kExitFailed = 1; ///< some input could not be read or converted, or output not written
constexpr int kExitUsage = 2;  ///< the command line makes no sense

/// Ends the command: main prints "tvbase: " and the text, and exits with the status.
class CommandError : public std::runtime_error {
public:
    explicit CommandError(const std::string& message, int status = kExitFailed)
        : std::runtime_error(message), m_status(status)
    {
    }
    int status() const { return m_status; }

private:
    int m_status;
};

/// One input cannot be read; others may still be.
class InputError : public CommandError {
public:
    using CommandError::CommandError;
};

/// Options that every subcommand takes, and the result that main exits with.
struct Shared {
    std::string mapFile; ///< of --map; empty = not given
    int status = 0;
};

/// Adds --map to a subcommand that needs the code page map file.
void addMapOption(CLI::App& command, Shared& shared);

/// One function a subcommand: adds it to the application.
void addRecode(CLI::App& app, Shared& shared);
void addList(CLI::App& app, Shared& shared);
void addMap(CLI::App& app, Shared& shared);
void addNum(CLI::App& app, Shared& shared);
void addLength(CLI::App& app, Shared& shared);
void addAngle(CLI::App& app, Shared& shared);
void addFormat(CLI::App& app, Shared& shared);
void addScan(CLI::App& app, Shared& shared);

/// Prints one line, "tvbase: " and the text, on standard error.
void complain(const std::string& message);

#endif

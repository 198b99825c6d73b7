// CommandError.h - how a command of tvbase fails, and what it says then.
#ifndef TVBASE_COMMAND_ERROR_H
#define TVBASE_COMMAND_ERROR_H

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

/// Prints one line, "tvbase: " and the text, on standard error.
void complain(const std::string& message);

#endif

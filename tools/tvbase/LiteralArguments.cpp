#include "LiteralArguments.h"

#include <algorithm>

namespace {

const std::string kMark = "\x01--"; // no name, text or number begins so

// The subcommands whose arguments are numbers; the others take what stands there for a name
// or a text of its own.
bool takesNumbers(const std::string& subcommand)
{
    return subcommand == "length" || subcommand == "angle" || subcommand == "num";
}

// Blanks, perhaps none, and then -. and a digit.
bool looksLikeAnOption(const std::string& argument)
{
    const std::size_t minus = argument.find_first_not_of(' ');
    return minus != std::string::npos && argument.compare(minus, 2, "-.") == 0 &&
           argument.find_first_of("0123456789", minus) == minus + 2;
}

const CLI::App* subcommandOf(const CLI::App& command, const std::string& name)
{
    for (const CLI::App* const subcommand : command.get_subcommands(nullptr))
        if (subcommand->get_name() == name)
            return subcommand;
    return nullptr;
}

[[noreturn]] void refuseSubcommand(const CLI::App& command, const std::string& name)
{
    std::string message = "there is no subcommand \"" + name + "\"; there are";
    const char* separator = " ";
    for (const CLI::App* const subcommand : command.get_subcommands(nullptr)) {
        message += separator + subcommand->get_name();
        separator = ", ";
    }
    throw CommandError(message, kExitUsage);
}

// The subcommand that the arguments name from their start.
const CLI::App* commandOf(const CLI::App& app, const std::vector<std::string>& arguments)
{
    const CLI::App* command = &app;
    for (const std::string& argument : arguments) {
        const CLI::App* const next = subcommandOf(*command, argument);
        if (!next && command->get_require_subcommand_min() > 0 && argument.rfind('-', 0) != 0)
            refuseSubcommand(*command, argument);
        if (!next)
            break;
        command = next;
    }
    return command;
}

bool takesValue(const CLI::App& command, const std::string& argument)
{
    const CLI::Option* const option =
        argument.rfind('-', 0) == 0 ? command.get_option_no_throw(argument) : nullptr;
    return option && option->get_items_expected_max() > 0;
}

// Marks what stands behind the first `--` that is no option's value, and takes that out.
void markBehindDashes(const CLI::App& app, std::vector<std::string>& arguments)
{
    const CLI::App* const command = commandOf(app, arguments);
    if (command->get_prefix_command())
        return;
    auto dashes = std::find(arguments.begin(), arguments.end(), "--");
    while (dashes != arguments.begin() && dashes != arguments.end() && takesValue(*command, dashes[-1]))
        dashes = std::find(dashes + 1, arguments.end(), "--");
    if (dashes == arguments.end())
        return;
    for (auto literal = arguments.erase(dashes); literal != arguments.end(); ++literal)
        literal->insert(0, kMark);
}

} // namespace

std::vector<std::string> parserArguments(const CLI::App& app, int argc, char** argv)
{
    std::vector<std::string> arguments(argv + std::min(argc, 1), argv + argc);
    if (!arguments.empty() && takesNumbers(arguments.front())) {
        for (std::string& argument : arguments)
            if (looksLikeAnOption(argument))
                argument.insert(0, kMark);
    }
    markBehindDashes(app, arguments);
    std::reverse(arguments.begin(), arguments.end());
    return arguments;
}

void acceptLiterals(CLI::App& app)
{
    const auto withoutMarks = [](std::string argument) {
        while (argument.rfind(kMark, 0) == 0)
            argument.erase(0, kMark.size());
        return argument;
    };
    for (CLI::Option* const option : app.get_options())
        if (option->get_items_expected_max() > 0)
            option->transform(withoutMarks);
    for (CLI::App* const subcommand : app.get_subcommands(nullptr))
        acceptLiterals(*subcommand);
}

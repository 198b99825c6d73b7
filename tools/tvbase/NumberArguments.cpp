#include "NumberArguments.h"

#include <algorithm>

namespace {

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

} // namespace

std::vector<std::string> parserArguments(int argc, char** argv)
{
    std::vector<std::string> arguments(argv + std::min(argc, 1), argv + argc);
    if (!arguments.empty() && takesNumbers(arguments.front())) {
        for (std::string& argument : arguments) {
            if (looksLikeAnOption(argument))
                argument.insert(0, " ");
        }
    }
    std::reverse(arguments.begin(), arguments.end());
    return arguments;
}

CLI::Option* addNumbers(CLI::App& command, const std::string& name, std::vector<std::string>& numbers,
                        const std::string& description)
{
    return command.add_option(name, numbers, description)->transform([](const std::string& number) {
        return looksLikeAnOption(number) ? number.substr(1) : number;
    });
}

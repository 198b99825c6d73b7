#include "UnitOptions.h"

#include "WideArguments.h"

#include "TvFormat.h"

void addUnitFlag(CLI::App& command, UnitOptions& options, const std::string& name, int bit,
                 const std::string& description)
{
    command.add_flag_callback(
        name, [&options, bit] { options.flags |= bit; }, description);
}

void addUnitOptions(CLI::App& command, UnitOptions& options, const std::map<std::string, int>& styles)
{
    std::string names;
    for (const auto& [name, style] : styles)
        names += (names.empty() ? "" : ", ") + name;
    command.add_option("--style", options.style, "One of " + names)
        ->transform([styles, names](const std::string& text) {
            const auto style = styles.find(CLI::detail::to_lower(text));
            if (style == styles.end())
                throw CLI::ValidationError("--style", "\"" + text + "\" is none of " + names);
            return std::to_string(style->second);
        })
        ->type_name("STYLE");
    command.add_option("--precision", options.precision, "Digits, or the power of two of fractions (4)")
        ->check(CLI::Range(0, 99).description(""))
        ->type_name("N");
    command.add_option("--max-length", options.maxLength, "Longest text wanted (255)")->type_name("N");
    command.add_flag("--compact", options.compact, "No blanks inside");
    addUnitFlag(command, options, "--no-leading-zero", 0x04, "No zero before the point");
    addUnitFlag(command, options, "--no-trailing-zeros", 0x08, "No zeros at the end");
    command.add_option("NUMBER", options.numbers, "Numbers; without any, a column on standard input")
        ->type_name("NUMBER");
}

void printUnits(const UnitOptions& options, int kind, double value)
{
    constexpr int room = 2048;
    wchar_t text[room];
    FormatUtil::outputStringWithFormat(text, room, L"%.*q*", static_cast<int>(options.maxLength),
                                       options.flags << 8 | kind, value);
    printLine(text);
}

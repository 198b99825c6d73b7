// tvbase - the base library from a terminal.
#include "Command.h"
#include "LiteralArguments.h"

#include "TvExport.h"

#include <csignal>
#include <cstdio>
#include <exception>
#include <memory>

namespace {

// Help as a manual page has it: a positional by its name alone, an option with what it takes.
class HelpFormatter : public CLI::Formatter {
public:
    std::string make_option_opts(const CLI::Option* option) const override
    {
        std::string text;
        if (option->nonpositional() && option->get_type_size() != 0) {
            const std::string type = option->get_type_name(); // with the checks, behind a colon
            text += " " + type.substr(0, type.find(':'));
        }
        if (option->get_expected_max() == CLI::detail::expected_max_vector_size)
            text += " ...";
        if (option->nonpositional() && option->get_required())
            text += " (required)";
        return text;
    }
};

} // namespace

void complain(const std::string& message) { std::fprintf(stderr, "tvbase: %s\n", message.c_str()); }

void addMapOption(CLI::App& command, Shared& shared)
{
    command
        .add_option("--map", shared.mapFile,
                    "Code page map file (else $TVBASE_MAP, the installed one, the build's own)")
        ->type_name("FILE");
}

void addJsonOption(CLI::App& command, Shared& shared)
{
    command.add_flag("--json", shared.json, "As JSON, for programs");
}

// NOLINTNEXTLINE(bugprone-exception-escape): only for want of memory before and behind the command
int main(int argc, char** argv)
{
    // A file-size limit is a failed write like that of a full disk, not the end of the program.
    std::signal(SIGXFSZ, SIG_IGN);

    CLI::App app("Drawing text and the tables behind it, from a terminal.", "tvbase");
    app.set_version_flag("--version", "tvbase " + std::to_string(TV_OSBASE_VERSION_MAJOR) + "." +
                                          std::to_string(TV_OSBASE_VERSION_MINOR) + "." +
                                          std::to_string(TV_OSBASE_VERSION_PATCH));
    app.require_subcommand(1);
    app.formatter(std::make_shared<HelpFormatter>());
    app.get_formatter()->column_width(34);
    app.footer("Example:\n"
               "  tvbase recode -f ansi_936 notes.txt      Chinese drawing text to UTF-8\n"
               "\n"
               "Exit status: 0 success, 1 some input could not be read or converted, 2 usage.");

    app.failure_message([](const CLI::App*, const CLI::Error& error) {
        return "tvbase: " + std::string(error.what()) + "\nRun with --help for more information.\n";
    });

    Shared shared;
    addRecode(app, shared);
    addList(app, shared);
    addMap(app, shared);
    addEscapes(app, shared);
    addNum(app, shared);
    addLength(app, shared);
    addAngle(app, shared);
    addFormat(app, shared);
    addScan(app, shared);
    addBigFont(app, shared);
    addChart(app, shared);
    addBreaks(app, shared);
    addHeap(app, shared);
    addInfo(app, shared);
    acceptLiterals(app);
    try {
        app.parse(parserArguments(app, argc, argv));
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? 0 : kExitUsage;
    } catch (const CommandError& error) {
        complain(error.what());
        return error.status();
    } catch (const wchar_t* message) {
        // The file streams throw their messages so.
        complain(std::string(message, message + std::char_traits<wchar_t>::length(message)));
        return kExitFailed;
    } catch (const std::exception& error) {
        complain(error.what());
        return kExitFailed;
    }
    if (std::fflush(stdout) != 0 || std::ferror(stdout)) {
        complain("cannot write standard output");
        return kExitFailed;
    }
    return shared.status;
}

// tvbase recode - drawing text from one code page into another.
#include "Command.h"

#include "CodePageNames.h"
#include "MapFileSearch.h"
#include "Recoder.h"

#include "TvPlatformBase.h"

#include <memory>
#include <sys/stat.h>

namespace {

struct Options {
    std::string from = "utf8";
    std::string to = "utf8";
    std::string output;
    std::vector<std::string> files;
    bool report = false;
    std::string onUnmappable = "escape";
};

code_page_id usablePage(const std::string& name)
{
    code_page_id page = parseCodePage(name);
    if (page == CP_UNDEFINED)
        page = TvCodePageMapper::ansiCpToOrnaCp(static_cast<int>(GetACP()));
    requireTables(page);
    return page;
}

std::uint64_t totalLength(const std::vector<std::string>& files)
{
    std::uint64_t total = 0;
    for (const std::string& file : files) {
        struct stat status;
        if (file == "-" || stat(file.c_str(), &status) != 0 || !S_ISREG(status.st_mode))
            return 0;
        total += static_cast<std::uint64_t>(status.st_size);
    }
    return total;
}

void runRecode(const Options& options, Shared& shared)
{
    initializeMapper(shared);
    const code_page_id from = usablePage(options.from);
    const code_page_id to = usablePage(options.to);
    const std::vector<std::string> files =
        options.files.empty() ? std::vector<std::string>{"-"} : options.files;

    Output output(options.output);
    Progress progress(totalLength(files));
    const Unmappable unmappable = options.onUnmappable == "stop"   ? Unmappable::kStop
                                  : options.onUnmappable == "skip" ? Unmappable::kSkip
                                                                   : Unmappable::kEscape;
    Recoder recoder(from, to, unmappable, output, progress);
    bool complete = true;
    for (const std::string& file : files) {
        try {
            Input input(file);
            recoder.recode(input);
        } catch (const InputError& error) {
            progress.hide();
            complain(error.what());
            complete = false;
        }
    }
    progress.hide();
    if (complete)
        output.finish();
    else if (!options.output.empty())
        complain(options.output + ": not written, because not all input could be read");
    if (options.report)
        recoder.report().print();
    if (!complete || recoder.isDamaged())
        shared.status = kExitFailed;
}

} // namespace

void addRecode(CLI::App& app, Shared& shared)
{
    auto options = std::make_shared<Options>();
    CLI::App* command = app.add_subcommand("recode", "Recode text from one code page into another");
    command->add_option("-f,--from", options->from, "Code page of the input (default utf8)")->type_name("CP");
    command->add_option("-t,--to", options->to, "Code page of the output (default utf8)")->type_name("CP");
    command
        ->add_option("-o,--output", options->output,
                     "Write there. The file is replaced at the end, also when damaged bytes were\n"
                     "kept or something was left out (then the exit status is 1); it stays when\n"
                     "some input cannot be read, the run is stopped or writing fails")
        ->type_name("OUT");
    command->add_flag("--report", options->report, "Count the escapes read and written, by character");
    command
        ->add_option("--on-unmappable", options->onUnmappable,
                     "What has no place in the output, or is no character of the input:\n"
                     "escape (keep it in another form, the default), stop, skip (leave it out)")
        ->check(CLI::IsMember({"escape", "stop", "skip"}).description(""))
        ->type_name("escape|stop|skip");
    addMapOption(*command, shared);
    command->add_option("FILE", options->files, "Input files, one after the other; - or none: standard input")
        ->type_name("FILE");
    command->footer(
        "A code page is an id (39), a Windows number (936) or a name (ansi_936); tvbase list names all.\n"
        "\n"
        "Example:\n"
        "  tvbase recode -f ansi_936 -o notes.utf8 notes.txt\n"
        "  tvbase recode -t ansi_936 --report < notes.utf8 > again.txt");
    command->callback([options, &shared] { runRecode(*options, shared); });
}

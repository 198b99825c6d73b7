// tvbase bigfont - the code pages of big fonts.
#include "Command.h"

#include "CodePageNames.h"
#include "FileNames.h"
#include "WideArguments.h"

#include "TvBigFont.h"
#include "TvCharConverter.h"
#include "TvCharMapper.h"

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

namespace {

struct BigFontOptions {
    std::vector<std::string> names;
    std::string ini;
};

void printFont(const std::string& name, const std::string& index, code_page_id id)
{
    const std::string page = id == CP_UNDEFINED ? "none" : codePageName(id);
    std::printf("%s\t%s\t%s\n", name.c_str(), index.c_str(), page.c_str());
}

void readIni(const std::string& file)
{
    const std::wstring name = wideFileName(file);
    if (name.empty() || !ReadBigfontIni(name.c_str()))
        throw CommandError("cannot read \"" + file + "\"");
}

void showFonts(const BigFontOptions& options)
{
    if (options.names.empty() && options.ini.empty())
        throw CommandError("name a font, or a file of fonts with --ini", kExitUsage);
    TvCharMapper::initialize(L"");
    if (!options.ini.empty())
        readIni(options.ini);
    for (const std::string& name : options.names) {
        const code_page_id id = TvCharMapper::getCpByBigFont(wideArgument(name).c_str(), nullptr);
        printFont(name, std::string(1, TvCharConverter::getMIFIndex(id)), id);
    }
    for (const auto& [name, index] : g_mapCP2Bigfont) {
        if (!options.names.empty())
            break;
        // The digits of escapes are the same indexes.
        const code_page_id id = index >= 1 && index <= 5
                                    ? TvCharConverter::getMIFCodepage(static_cast<char>('0' + index))
                                    : CP_UNDEFINED;
        printFont(byteFileName(name), std::to_string(index), id);
    }
}

} // namespace

void addBigFont(CLI::App& app, Shared&)
{
    const auto options = std::make_shared<BigFontOptions>();
    CLI::App* command =
        app.add_subcommand("bigfont", "Show the code pages of big fonts: name, index 0 to 5, code page");
    command->add_option("NAME", options->names,
                        "Font files, with or without folders and .shx (else the fonts of --ini)");
    command->add_option("--ini", options->ini, "The user's fonts, a BIGFONT.INI")->type_name("FILE");
    command->footer("Example:\n  tvbase bigfont gbcbig /fonts/extfont2.shx");
    command->callback([options] { showFonts(*options); });
}

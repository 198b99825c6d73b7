// tvbase bigfont - the code pages of big fonts.
#include "Command.h"

#include "CodePageNames.h"
#include "FileNames.h"
#include "Json.h"
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

struct Font {
    std::string name;
    int index;         // as the library or the file has it
    code_page_id page; // CP_UNDEFINED for none
};

void print(const std::vector<Font>& fonts)
{
    for (const Font& font : fonts)
        std::printf("%s\t%d\t%s\n", font.name.c_str(), font.index,
                    font.page == CP_UNDEFINED ? "none" : codePageName(font.page).c_str());
}

void printAsJson(const std::vector<Font>& fonts)
{
    JsonWriter json;
    json.beginArray();
    for (const Font& font : fonts) {
        json.beginObject();
        json.text("name", font.name);
        json.number("index", font.index);
        if (font.page == CP_UNDEFINED)
            json.null("page");
        else
            json.text("page", codePageName(font.page));
        json.end();
    }
    json.end();
    json.print();
}

void readIni(const std::string& file)
{
    const std::wstring name = wideFileName(file);
    if (name.empty() || !ReadBigfontIni(name.c_str()))
        throw CommandError("cannot read \"" + file + "\"");
}

std::vector<Font> findFonts(const BigFontOptions& options)
{
    if (options.names.empty() && options.ini.empty())
        throw CommandError("name a font, or a file of fonts with --ini", kExitUsage);
    TvCharMapper::initialize(L"");
    if (!options.ini.empty())
        readIni(options.ini);
    std::vector<Font> fonts;
    for (const std::string& name : options.names) {
        const code_page_id id = TvCharMapper::getCpByBigFont(wideArgument(name).c_str(), nullptr);
        fonts.push_back({name, TvCharConverter::getMIFIndex(id) - '0', id});
    }
    for (const auto& [name, index] : g_mapCP2Bigfont) {
        if (!options.names.empty())
            break;
        // The digits of escapes are the same indexes.
        const code_page_id id = index >= 1 && index <= 5
                                    ? TvCharConverter::getMIFCodepage(static_cast<char>('0' + index))
                                    : CP_UNDEFINED;
        fonts.push_back({byteFileName(name), index, id});
    }
    return fonts;
}

} // namespace

void addBigFont(CLI::App& app, Shared& shared)
{
    const auto options = std::make_shared<BigFontOptions>();
    CLI::App* command =
        app.add_subcommand("bigfont", "Show the code pages of big fonts: name, index 0 to 5, code page");
    command->add_option("NAME", options->names,
                        "Font files, with or without folders and .shx (else the fonts of --ini)");
    command->add_option("--ini", options->ini, "The user's fonts, a BIGFONT.INI")->type_name("FILE");
    addJsonOption(*command, shared);
    command->footer("Example:\n  tvbase bigfont gbcbig /fonts/extfont2.shx");
    command->callback([options, &shared] {
        const std::vector<Font> fonts = findFonts(*options);
        shared.json ? printAsJson(fonts) : print(fonts);
    });
}

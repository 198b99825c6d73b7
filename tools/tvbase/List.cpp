// tvbase list - the code pages, or the languages.
#include "Command.h"

#include "CodePageNames.h"
#include "Json.h"
#include "LanguageList.h"

#include "TvCharConverter.h"
#include "TvCharMapper.h"

#include <algorithm>
#include <cstdio>
#include <memory>

namespace {

std::string describe(code_page_id id)
{
    if (id == CP_UNDEFINED)
        return "the system's code page";
    if (id == CP_UTF8)
        return "UTF-8";
    if (const code_page_id same = TvCharConverter::checkTheSameCP(id); same != id)
        return "the same as " + codePageName(same);
    const EkCodepageMapper* mapper = theTvCodePages()->findMapperByAcadCp(id);
    if (mapper->m_leadBytes.length() != 0)
        return "double-byte, tables in the map file";
    const unsigned short* table = mapper->m_pSingleByteTable;
    const bool isEmpty = std::all_of(table, table + 128, [](unsigned short unit) { return unit == 0; });
    return isEmpty ? "ASCII characters alone, all others as escapes" : "single-byte";
}

bool isPage(code_page_id id) { return id == CP_UNDEFINED || codePageName(id) != "undefined"; }

void listAsJson()
{
    TvCharMapper::initialize(L"");
    JsonWriter json;
    json.beginArray();
    for (int i = 0; i < CP_CNT; ++i) {
        const auto id = static_cast<code_page_id>(i);
        if (!isPage(id))
            continue;
        json.beginObject();
        json.number("id", i);
        json.number("number", TvCodePageMapper::arrAnsiOrnaCpMapper[i]);
        json.text("name", codePageName(id));
        json.text("text", describe(id));
        json.end();
    }
    json.end();
    json.print();
}

void runList()
{
    TvCharMapper::initialize(L"");
    std::printf("id  number  name       text\n");
    for (int i = 0; i < CP_CNT; ++i) {
        const auto id = static_cast<code_page_id>(i);
        if (!isPage(id))
            continue;
        std::printf("%2d  %6u  %-9s  %s\n", i, TvCodePageMapper::arrAnsiOrnaCpMapper[i],
                    codePageName(id).c_str(), describe(id).c_str());
    }
}

} // namespace

void addList(CLI::App& app, Shared& shared)
{
    const auto languages = std::make_shared<bool>(false);
    CLI::App* command = app.add_subcommand("list", "List the code pages, or the languages");
    command->add_flag("-l,--languages", *languages,
                      "Language identifiers with their character sets and code pages");
    addJsonOption(*command, shared);
    command->footer("Example:\n  tvbase list | grep double-byte");
    command->callback([languages, &shared] {
        if (*languages)
            shared.json ? printLanguagesAsJson() : printLanguages();
        else
            shared.json ? listAsJson() : runList();
    });
}

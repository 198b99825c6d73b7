// tvbase map - the code page map file: look at it, check it, print it, make it.
#include "Command.h"

#include "CodePageNames.h"
#include "Json.h"
#include "MapFileReader.h"
#include "MapFileSearch.h"
#include "Output.h"
#include "TextTable.h"

#include "TvCharConverter.h"
#include "TvCharMapper.h"

#include <cinttypes>
#include <cstdio>
#include <memory>

namespace {

constexpr code_page_id kTablePages[] = {CP_ANSI_932, CP_ANSI_936, CP_ANSI_949, CP_ANSI_950};

std::string requireMapFile(const Shared& shared)
{
    std::string file = findMapFile(shared);
    if (file.empty())
        throw CommandError("no code page map file was found; name one with --map");
    return file;
}

void print(const std::string& file, const MapFileContent& content)
{
    std::printf("file   %s\ntitle  %s\nsize   %" PRIu64 " bytes\n", file.c_str(), content.title.c_str(),
                content.size);
    if (!content.tables.empty())
        std::printf("\ncode page  position  pairs  codes\n");
    for (const MapFileTable& table : content.tables) {
        std::printf("%-9s  %8" PRIu64 "  %5zu", codePageName(static_cast<code_page_id>(table.id)).c_str(),
                    table.position, table.pairs.size());
        if (!table.pairs.empty())
            std::printf("  %04X to %04X", table.pairs.front().first, table.pairs.back().first);
        std::printf("\n");
    }
}

void printAsJson(const std::string& file, const MapFileContent& content)
{
    JsonWriter json;
    json.beginObject();
    json.text("file", file);
    json.text("title", content.title);
    json.number("size", content.size);
    json.beginArray("tables");
    for (const MapFileTable& table : content.tables) {
        json.beginObject();
        json.text("page", codePageName(static_cast<code_page_id>(table.id)));
        json.number("position", table.position);
        json.number("pairs", table.pairs.size());
        if (table.pairs.empty()) {
            json.null("first");
            json.null("last");
        } else {
            json.number("first", table.pairs.front().first);
            json.number("last", table.pairs.back().first);
        }
        json.end();
    }
    json.end();
    json.end();
    json.print();
}

void runInfo(Shared& shared)
{
    TvCharMapper::initialize(L"");
    const std::string file = requireMapFile(shared);
    const MapFileContent content = readMapFile(file);
    shared.json ? printAsJson(file, content) : print(file, content);
    for (const std::string& problem : content.problems)
        complain(file + ": " + problem);
    if (!content.problems.empty())
        shared.status = kExitFailed;
}

// What the library makes of the file must be what lies in it.
void compareWithLibrary(const std::string& file, MapFileContent& content)
{
    const bool opened = TvCharMapper::initialize(libraryMapFile(file).c_str()) == Orna::eOk;
    if (!opened) {
        content.problems.push_back("the library refuses the file");
        return;
    }
    for (const code_page_id id : kTablePages) {
        const MapFileTable* table = nullptr;
        for (const MapFileTable& candidate : content.tables)
            if (candidate.id == id)
                table = &candidate;
        wchar_t unit;
        TvCharMapper::codepageToUnicode(0x8140, id, unit); // makes the library load the table
        const EkCodepageMapper* mapper = theTvCodePages()->findMapperByAcadCp(id);
        if (!table) {
            content.problems.push_back(codePageName(id) + ": no table");
        } else if (mapper->m_bLoaded != 1) {
            content.problems.push_back(codePageName(id) + ": the library refuses the table");
        } else {
            for (const auto& [code, value] : table->pairs)
                if (!TvCharMapper::codepageToUnicode(code, id, unit) || unit != value) {
                    content.problems.push_back(codePageName(id) + ": the library reads another table");
                    break;
                }
        }
    }
}

void runCheck(Shared& shared)
{
    TvCharMapper::initialize(L"");
    const std::string file = requireMapFile(shared);
    MapFileContent content = readMapFile(file);
    if (content.problems.empty())
        compareWithLibrary(file, content);
    for (const std::string& problem : content.problems)
        complain(file + ": " + problem);
    if (!content.problems.empty()) {
        shared.status = kExitFailed;
        return;
    }
    std::size_t pairs = 0;
    for (const MapFileTable& table : content.tables)
        pairs += table.pairs.size();
    std::printf("%s: %zu tables, %zu pairs, no problem\n", file.c_str(), content.tables.size(), pairs);
}

void runDump(const std::string& page, const Shared& shared)
{
    initializeMapper(shared);
    const code_page_id id = TvCharConverter::checkTheSameCP(parseCodePage(page));
    if (!needsMapFile(id))
        throw CommandError(codePageName(id) + " has no table in map files", kExitUsage);
    requireTables(id);
    const auto& pairs = theTvCodePages()->findMapperByAcadCp(id)->m_pairs;
    std::printf("# %s: code and UTF-16 unit\n", codePageName(id).c_str());
    const EkCpUnicodePair* pair = pairs.asArrayPtr();
    for (int i = 0; i < pairs.length(); ++i)
        std::printf("%04X %04X\n", pair[i].code, pair[i].unicode);
}

MapFileTables tablesFromConverters()
{
    MapFileTables tables;
    for (const DoubleByteCodePage& page : kDoubleByteCodePages) {
        tables[page.id] = decodeDoubleByteTable(page);
        if (tables[page.id].empty())
            throw CommandError(std::string("the C library has no converter ") + page.converter);
    }
    return tables;
}

MapFileTables tablesFromFiles(const std::vector<std::string>& arguments)
{
    MapFileTables tables;
    for (const std::string& argument : arguments) {
        const std::size_t equals = argument.find('=');
        if (equals == argument.npos)
            throw CommandError("--table takes a code page and a file: ansi_936=pairs.txt", kExitUsage);
        const code_page_id id = TvCharConverter::checkTheSameCP(parseCodePage(argument.substr(0, equals)));
        if (!needsMapFile(id))
            throw CommandError(codePageName(id) + " has no table in map files", kExitUsage);
        if (!tables.emplace(id, readTextTable(argument.substr(equals + 1), id)).second)
            throw CommandError("two tables of " + codePageName(id), kExitUsage);
    }
    return tables;
}

struct MakeOptions {
    std::string output;
    std::string title = "Code page map";
    std::vector<std::string> tables;
};

void runMake(const MakeOptions& options)
{
    TvCharMapper::initialize(L"");
    const MapFileTables tables =
        options.tables.empty() ? tablesFromConverters() : tablesFromFiles(options.tables);
    const std::string bytes = makeMapFile(options.title + ". ", tables);
    Output output(options.output);
    output.write(bytes.data(), bytes.size());
    output.finish();
}

CLI::App* addSubcommand(CLI::App& map, const char* name, const char* description, const char* example)
{
    CLI::App* command = map.add_subcommand(name, description);
    command->footer(std::string("Example:\n  ") + example);
    return command;
}

} // namespace

void addMap(CLI::App& app, Shared& shared)
{
    CLI::App* map = app.add_subcommand("map", "Look at, check, print or make the code page map file");
    map->require_subcommand(1);
    map->footer("Example:\n  tvbase map check codepage.map");

    CLI::App* info = addSubcommand(*map, "info", "Say what the file holds", "tvbase map info");
    addJsonOption(*info, shared);
    addMapOption(*info, shared);
    info->callback([&shared] { runInfo(shared); });

    CLI::App* check =
        addSubcommand(*map, "check", "Check the file, also against what the library reads from it",
                      "tvbase map check codepage.map");
    addMapOption(*check, shared);
    check->callback([&shared] { runCheck(shared); });
    for (CLI::App* command : {info, check})
        command->add_option("FILE", shared.mapFile, "The file, as with --map")->type_name("FILE");

    auto page = std::make_shared<std::string>();
    CLI::App* dump = addSubcommand(*map, "dump", "Print the table of a code page, as map make reads it",
                                   "tvbase map dump ansi_932 > pairs.txt");
    dump->add_option("CP", *page, "The code page")->required()->type_name("CP");
    addMapOption(*dump, shared);
    dump->callback([page, &shared] { runDump(*page, shared); });

    auto options = std::make_shared<MakeOptions>();
    CLI::App* make = addSubcommand(
        *map, "make", "Make a file: all tables from the C library's converters, or the given ones",
        "tvbase map make -o new.map --table ansi_936=pairs.txt");
    make->add_option("-o,--output", options->output, "The file to make")->required()->type_name("OUT");
    make->add_option("--table", options->tables,
                     "Take the table of a code page from a text of code and unit pairs")
        ->type_name("CP=FILE")
        ->expected(1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    make->add_option("--title", options->title, "Begins the header of the file")->type_name("TEXT");
    make->callback([options] { runMake(*options); });
}

// tvbase info - which library this is, and what it found on this machine.
#include "Command.h"

#include "CodePageNames.h"
#include "FileNames.h"
#include "HeapStats.h"
#include "Json.h"
#include "LanguageList.h"
#include "MapFileSearch.h"

#include "codepage/KernelChoice.h"

#include "TvCharMapper.h"
#include "TvExport.h"
#include "TvPlatformBase.h"

#include <cinttypes>
#include <cstdio>
#include <dlfcn.h>
#include <string>

namespace {

struct Info {
    std::string version;
    std::string library; // file; empty when the loader does not tell
    std::string compiler = TVBASE_COMPILER;
    std::string buildType = TVBASE_BUILD_TYPE;
    std::string sanitizers = TVBASE_SANITIZERS;
    bool hasCheckers = TVBASE_CHECKERS != 0;
    const char* kernels;
    HeapUse heap;
    unsigned codePage;
    code_page_id codePageId;
    unsigned language;
    std::string mapFile; // empty when there is none
};

std::string libraryFile()
{
    Dl_info found;
    const void* const function = dlsym(RTLD_DEFAULT, "_tvMalloc");
    return function && dladdr(function, &found) != 0 && found.dli_fname ? found.dli_fname : "";
}

Info collect(const Shared& shared)
{
    initializeMapper(shared);
    Info info{};
    info.version = std::to_string(TV_OSBASE_VERSION_MAJOR) + "." + std::to_string(TV_OSBASE_VERSION_MINOR) +
                   "." + std::to_string(TV_OSBASE_VERSION_PATCH);
    info.library = libraryFile();
    info.kernels = TvDetail::kKernelSetNames[static_cast<int>(TvDetail::bestKernelSet())];
    info.heap = readHeapUse();
    info.codePage = GetACP();
    info.codePageId = TvCodePageMapper::ansiCpToOrnaCp(static_cast<int>(info.codePage));
    info.language = GetSystemDefaultLCID();
    info.mapFile = byteFileName(TvCharMapper::m_MapFile);
    return info;
}

std::string buildDescription(const Info& info)
{
    std::string text = info.compiler;
    if (!info.buildType.empty())
        text += ", " + info.buildType;
    if (info.hasCheckers)
        text += ", structure checkers";
    if (!info.sanitizers.empty())
        text += ", sanitizers " + info.sanitizers;
    return text;
}

void print(const Info& info)
{
    std::printf("version     %s\n", info.version.c_str());
    std::printf("library     %s\n", info.library.empty() ? "-" : info.library.c_str());
    std::printf("built with  %s\n", buildDescription(info).c_str());
    std::printf("kernels     %s\n", info.kernels);
    if (info.heap.rangeStart != 0)
        std::printf("heap        8 GiB reserved from 0x%" PRIxPTR "\n", info.heap.rangeStart);
    else
        std::printf("heap        malloc, because no address range could be reserved\n");
    std::printf("code page   %u, %s\n", info.codePage, codePageName(info.codePageId).c_str());
    std::printf("language    %04X, %s\n", info.language, languageName(static_cast<int>(info.language)));
    std::printf("map file    %s\n", info.mapFile.empty() ? "none found" : info.mapFile.c_str());
}

void textOrNull(JsonWriter& json, const char* key, const std::string& text)
{
    text.empty() ? json.null(key) : json.text(key, text);
}

void printAsJson(const Info& info)
{
    JsonWriter json;
    json.beginObject();
    json.text("version", info.version);
    textOrNull(json, "library", info.library);
    json.text("compiler", info.compiler);
    textOrNull(json, "buildType", info.buildType);
    json.boolean("structureCheckers", info.hasCheckers);
    textOrNull(json, "sanitizers", info.sanitizers);
    json.text("kernels", info.kernels);
    info.heap.rangeStart != 0 ? json.number("heapStart", info.heap.rangeStart) : json.null("heapStart");
    json.number("codePage", info.codePage);
    json.text("codePageName", codePageName(info.codePageId));
    json.number("language", info.language);
    textOrNull(json, "mapFile", info.mapFile);
    json.end();
    json.print();
}

} // namespace

void addInfo(CLI::App& app, Shared& shared)
{
    CLI::App* command = app.add_subcommand("info", "Show what library this is and what it found here");
    addJsonOption(*command, shared);
    addMapOption(*command, shared);
    command->footer("Example:\n  tvbase info");
    command->callback([&shared] {
        const Info info = collect(shared);
        shared.json ? printAsJson(info) : print(info);
    });
}

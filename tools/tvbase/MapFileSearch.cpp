#include "MapFileSearch.h"

#include "CodePageNames.h"
#include "Command.h"
#include "FileNames.h"

#include "TvCharConverter.h"
#include "TvCharMapper.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <unistd.h>

namespace {

std::string named(const std::string& file, const char* by)
{
    if (access(file.c_str(), R_OK) != 0)
        throw CommandError(file + " (" + by + "): " + std::strerror(errno));
    return file;
}

std::string seenFromThisProgram(const char* relative)
{
    std::error_code error;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
    return error ? std::string() : (program.parent_path() / relative).lexically_normal().string();
}

} // namespace

std::string findMapFile(const Shared& shared)
{
    if (!shared.mapFile.empty())
        return named(shared.mapFile, "--map");
    if (const char* variable = std::getenv("TVBASE_MAP"); variable && *variable)
        return named(variable, "TVBASE_MAP");
    for (const char* relative : {TVBASE_INSTALLED_MAP, TVBASE_BUILD_MAP})
        if (std::string file = seenFromThisProgram(relative);
            !file.empty() && access(file.c_str(), R_OK) == 0)
            return file;
    return {};
}

std::wstring libraryMapFile(const std::string& file)
{
    std::wstring wide = wideFileName(file);
    if (wide.empty() && !file.empty())
        throw CommandError(file + ": the path of a code page map file must be UTF-8, and this one is not");
    return wide;
}

void initializeMapper(const Shared& shared)
{
    const std::string file = findMapFile(shared);
    const Orna::ErrorStatus status = TvCharMapper::initialize(libraryMapFile(file).c_str());
    if (file.empty() || status == Orna::eOk)
        return;
    if (status == Orna::eBadMapFile)
        throw CommandError(file + ": no code page map file");
    throw CommandError(file + ": cannot be opened");
}

void requireTables(code_page_id id)
{
    if (!needsMapFile(id))
        return;
    id = TvCharConverter::checkTheSameCP(id);
    const std::string name = codePageName(id);
    if (TvCharMapper::m_MapFile.IsEmpty())
        throw CommandError(name + " needs the code page map file, and none was found; name one with --map");
    wchar_t ignored;
    TvCharMapper::codepageToUnicode(0x8140, id, ignored); // makes the library load the table
    if (theTvCodePages()->findMapperByAcadCp(id)->m_bLoaded != 1)
        throw CommandError(byteFileName(TvCharMapper::m_MapFile) + ": no usable table of " + name);
}

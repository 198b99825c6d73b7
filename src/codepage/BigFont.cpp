#include "TvBigFont.h"

#include "OrCodePage.h"
#include "TvCharMapper.h"
#include "TvCharOp.h"
#include "codepage/BigFontIni.h"
#include "runtime/TvPlatformCalls.h"
#include "runtime/TvStartup.h"

#include <cstdio>
#include <cwchar>
#include <iterator>
#include <memory>
#include <new>

std::map<std::wstring, int> g_mapCP2Bigfont __attribute__((init_priority(TvStartup::kBigFonts)));

namespace {

// True while the map lives: static objects of other modules may ask before and after.
constinit bool g_isMapThere = false;

struct MapLife {
    MapLife() { g_isMapThere = true; }
    ~MapLife() { g_isMapThere = false; }
};
MapLife g_mapLife __attribute__((init_priority(TvStartup::kBigFonts)));

constexpr int kUserTableDecides = -1;

const struct {
    const wchar_t* name;
    int index;
} ornaBigFontMap[] = {
    {L"@extfont2.shx", 1}, {L"bigfont.shx", 1}, {L"chineset.shx", 2}, {L"extfont.shx", 1},
    {L"extfont2.shx", 1},  {L"gbcbig.shx", 5},  {L"whgdtxt.shx", 3},  {L"whgtxt.shx", 3},
    {L"whtgtxt.shx", 3},   {L"whtmtxt.shx", 3}, {L"visiojp.shx", 1},  {L"visiotc.shx", 2},
};

bool s_bUserBigfontIniRead = false;

constexpr int kPathSize = 1024;     // of the buffer for findFile
constexpr int kFileNameBytes = 512; // the longest file name, with its terminating 0

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

void readUserFile(CReadUserDefBigfontIni& reader)
{
    wchar_t path[kPathSize] = {};
    if (!reader.findFile(path, kPathSize, L"BIGFONT.INI"))
        return; // looked for again with the next lookup
    path[kPathSize - 1] = 0;
    reader.loadMap(path, &g_mapCP2Bigfont);
    s_bUserBigfontIniRead = true;
}

int indexOfSystemLanguage()
{
    const auto language = static_cast<unsigned short>(OrCodePage::SysDefaultLCID());
    if (!OrCodePage::LanguageIsDoubleByte(language))
        return 0;
    return OrCodePage::LanguageToCodePageIndex(static_cast<short>(language));
}

int findInUserDefined(const wchar_t* fontName, CReadUserDefBigfontIni* reader)
{
    if (!g_isMapThere)
        return indexOfSystemLanguage();
    if (!s_bUserBigfontIniRead && reader)
        readUserFile(*reader);
    for (const auto& [name, index] : g_mapCP2Bigfont) {
        if (TvCharOp::compareNoCase(name.c_str(), fontName) == 0)
            return index;
    }
    return indexOfSystemLanguage();
}

int findEverywhere(const wchar_t* fontName, CReadUserDefBigfontIni* reader)
{
    for (const auto& font : ornaBigFontMap) {
        if (TvCharOp::compareNoCase(fontName, font.name) != 0)
            continue;
        if (font.index != kUserTableDecides)
            return font.index;
        break;
    }
    return findInUserDefined(fontName, reader);
}

// False when memory runs out.
bool shapeFontName(const wchar_t* path, std::wstring& name)
{
    try {
        name = extractFileName(path);
        if (name.find(L'.') == std::wstring::npos)
            name += L".shx";
        return true;
    } catch (const std::bad_alloc&) {
        return false;
    }
}

} // namespace

bool ReadBigfontIni(const wchar_t* path)
{
    char name[kFileNameBytes];
    if (!g_isMapThere || tvPlatformFileName(path, name, sizeof name) < 0)
        return false;
    const std::unique_ptr<std::FILE, CloseFile> file(std::fopen(name, "rbe"));
    if (!file)
        return false;
    try {
        TvDetail::BigFontIni ini(g_mapCP2Bigfont);
        char bytes[4096];
        while (const std::size_t count = std::fread(bytes, 1, sizeof bytes, file.get()))
            ini.take(bytes, count);
        if (std::ferror(file.get()))
            return false;
        ini.finish();
        return true;
    } catch (const std::bad_alloc&) {
        return false;
    }
}

int findCodepageByBigfont(const std::wstring& fontName, CReadUserDefBigfontIni* reader)
{
    return findEverywhere(fontName.c_str(), reader);
}

int findCodepageByBigfontInUserDefined(const std::wstring& fontName, CReadUserDefBigfontIni* reader)
{
    return findInUserDefined(fontName.c_str(), reader);
}

std::wstring extractFileName(const wchar_t* path)
{
    if (!path)
        return {};
    const wchar_t* const slash = std::wcsrchr(path, L'/');
    return slash ? slash + 1 : path;
}

code_page_id TvCharMapper::getCpByBigFont(const wchar_t* fontPath, CReadUserDefBigfontIni* reader)
{
    static constexpr code_page_id kIds[] = {CP_UNDEFINED, CP_ANSI_932,  CP_ANSI_950,
                                            CP_ANSI_949,  CP_ANSI_1361, CP_ANSI_936};
    std::wstring name;
    if (!shapeFontName(fontPath, name))
        return CP_UNDEFINED;
    const int index = findEverywhere(name.c_str(), reader);
    return index > 0 && index < static_cast<int>(std::size(kIds)) ? kIds[index] : CP_UNDEFINED;
}

// Without stripping folders or adding ".shx", unlike getCpByBigFont(): that is meant.
int TvCharMapper::getCpIndexByBigFont(const wchar_t* fontName, CReadUserDefBigfontIni* reader)
{
    return findEverywhere(fontName ? fontName : L"", reader);
}

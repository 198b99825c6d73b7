// consumer [MAP_FILE]: converts text with the installed library; the map file is the argument's or
// the one that the package named when this was built.
#include <TvOsBase.h>

#include <cstdio>
#include <cstring>
#include <string>

#ifndef MAP_FILE
#define MAP_FILE ""
#endif

namespace {

bool becomes(code_page_id page, const char* text, const char* expected)
{
    TvVector<wchar_t> wide;
    TvCharMapper::multiByteToWideChar(page, text, static_cast<int>(std::strlen(text)), wide);
    TvVector<char> utf8;
    TvCharMapper::unicodeToUtf8(wide.asArrayPtr(), wide.length() - 1, utf8);
    std::puts(utf8.asArrayPtr());
    return std::strcmp(utf8.asArrayPtr(), expected) == 0;
}

} // namespace

int main(int argc, char** argv)
{
    const std::string map = argc > 1 ? argv[1] : MAP_FILE;
    if (TvCharMapper::initialize(CStdStr<wchar_t>(std::wstring(map.begin(), map.end()).c_str())) != Orna::eOk)
        return 2;
    const bool same = becomes(CP_ANSI_1252, "\xE9t\xE9", "\xC3\xA9t\xC3\xA9") &&
                      becomes(CP_ANSI_936, "\xD6\xD0", "\xE4\xB8\xAD");
    return same ? 0 : 1;
}

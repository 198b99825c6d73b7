#include <TvOsBase.h>

#include <cstdio>
#include <cstring>

int main()
{
    TvCharMapper::initialize(CStdStr<wchar_t>(L""));
    const char text[] = "\xE9t\xE9";
    TvVector<wchar_t> wide;
    TvCharMapper::multiByteToWideChar(CP_ANSI_1252, text, 3, wide);
    TvVector<char> utf8;
    TvCharMapper::unicodeToUtf8(wide.asArrayPtr(), wide.length() - 1, utf8);
    std::puts(utf8.asArrayPtr());
    return std::strcmp(utf8.asArrayPtr(), "\xC3\xA9t\xC3\xA9") == 0 ? 0 : 1;
}

// Converts drawing text from a code page to wide text and on to UTF-8.
#include <TvOsBase.h>

#include <cstdio>
#include <cstring>

int main(int argc, char** argv)
{
    // The double-byte tables come from the map file; without one the single-byte pages
    // still convert, and initialize answers 72.
    const wchar_t* mapFile = L"";
    wchar_t path[1024] = L"";
    if (argc > 1) {
        std::mbstowcs(path, argv[1], 1023);
        mapFile = path;
    }
    TvCharMapper::initialize(CStdStr<wchar_t>(mapFile));

    // A Greek layer name; the escape stands for a character that the page lacks.
    const char layer[] = "\xD4\xEF\xDF\xF7\xEF\xF2 \\U+2300 20";
    TvVector<wchar_t> wide;
    TvCharMapper::multiByteToWideChar(CP_ANSI_1253, layer, static_cast<int>(std::strlen(layer)), wide);

    TvVector<char> utf8;
    TvCharMapper::unicodeToUtf8(wide.asArrayPtr(), wide.length() - 1, utf8);
    std::printf("%s\n", utf8.asArrayPtr());

    // And back: what the page lacks becomes an escape again, nothing is lost.
    TvVector<char> back;
    TvCharMapper::wideCharToMultiByte(CP_ANSI_1253, wide.asArrayPtr(), wide.length() - 1, back);
    std::printf("%s\n", std::strcmp(back.asArrayPtr(), layer) == 0 ? "came back the same" : "differs");

    TvCharMapper::unInitialize();
}

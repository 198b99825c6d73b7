// Text of a big font: its code page by the font's name and the user's own fonts, then to wide text.
#include <TvOsBase.h>

#include <cstdio>
#include <cwchar>
#include <fstream>

namespace {

const char* const kIniFile = "find_big_font.ini";

// Tells the library where this application keeps its files.
class UserBigFonts final : public CReadUserDefBigfontIni {
public:
    bool loadMap(const wchar_t* iniPath, std::map<std::wstring, int>*) override
    {
        return ReadBigfontIni(iniPath);
    }
    int findFile(wchar_t* pathOut, int pathOutSize, const wchar_t* fileName) override
    {
        std::printf("looking for %ls\n", fileName);
        return std::swprintf(pathOut, static_cast<std::size_t>(pathOutSize), L"%s", kIniFile) > 0;
    }
};

void show(const wchar_t* font, const char* bytes, UserBigFonts& reader)
{
    const unsigned int cp = TvCodePageMapper::ornaCpToAnsiCp(TvCharMapper::getCpByBigFont(font, &reader));
    wchar_t text[32];
    const int length = MultiByteToWideChar(cp, 0, bytes, -1, text, 32);
    std::printf("%ls: code page %u,", font, cp);
    for (int i = 0; i < length - 1; ++i)
        std::printf(" U+%04X", static_cast<unsigned>(text[i]));
    std::printf("\n");
}

} // namespace

int main()
{
    std::ofstream(kIniFile) << "# fonts of our own\nour font.shx;5\n";
    tvPlatformSetSystemDefaultLCID(0x0409); // what the environment would say otherwise
    tvPlatformSetACP(1252);
    TvCharMapper::initialize(L""); // without a map file pairs become escapes

    UserBigFonts reader;
    show(L"/fonts/EXTFONT2.SHX", "\xB1\xB2", reader); // well-known: Japanese
    show(L"ourfont", "\xB0\xA1", reader);             // the user's: simplified Chinese
    show(L"unknown.shx", "\xE9", reader);             // the system's code page
    std::remove(kIniFile);
}

// PrintSingleByte.cpp - prints every single-byte code page as conversions give it, for a check
// by another program: id, direction and what comes out, all numbers hexadecimal.
//
//     30 decode 0 1 2 ...          the unit of each of the 256 bytes, 0 for none
//     30 encode a0:a0 a1:a1 ...    unit and byte, for each unit from 80 on that has one
//     30 wide 1 2 3 ...            a text of the bytes 1 to ff
//     30 bytes 5c552b ...          a text of the units 80 to ffff
#include "TvCharMapper.h"

#include "TvCharConverter.h"

#include <cstdio>
#include <string>

namespace {

constexpr unsigned kFirstForeign = 0x80;
constexpr unsigned kUnits = 0x10000;

void printCodes(code_page_id cp)
{
    std::printf("%d decode", static_cast<int>(cp));
    for (unsigned byte = 0; byte < 0x100; ++byte) {
        wchar_t unit = 0;
        if (!TvCharMapper::codepageToUnicode(static_cast<wchar_t>(byte), cp, unit))
            unit = 0;
        std::printf(" %x", static_cast<unsigned>(unit));
    }
    std::printf("\n%d encode", static_cast<int>(cp));
    for (unsigned unit = kFirstForeign; unit < kUnits; ++unit) {
        wchar_t byte = 0;
        if (TvCharMapper::unicodeToCodepage(static_cast<wchar_t>(unit), cp, byte, false))
            std::printf(" %x:%x", unit, static_cast<unsigned>(byte));
    }
    std::printf("\n");
}

void printTexts(code_page_id cp)
{
    std::string bytes;
    for (unsigned byte = 1; byte < 0x100; ++byte)
        bytes += static_cast<char>(byte);
    TvVector<wchar_t> wide;
    TvCharMapper::multiByteToWideChar(cp, bytes.data(), static_cast<int>(bytes.size()), wide);
    std::printf("%d wide", static_cast<int>(cp));
    for (int i = 0; i + 1 < wide.length(); ++i)
        std::printf(" %x", static_cast<unsigned>(wide.asArrayPtr()[i]));

    std::wstring units;
    for (unsigned unit = kFirstForeign; unit < kUnits; ++unit)
        units += static_cast<wchar_t>(unit);
    TvVector<char> narrow;
    TvCharMapper::wideCharToMultiByte(cp, units.data(), static_cast<int>(units.size()), narrow);
    std::printf("\n%d bytes ", static_cast<int>(cp));
    for (int i = 0; i + 1 < narrow.length(); ++i)
        std::printf("%02x", static_cast<unsigned char>(narrow.asArrayPtr()[i]));
    std::printf("\n");
}

} // namespace

int main()
{
    TvCharMapper::initialize(L""); // single-byte code pages need no map file
    for (int id = CP_ISO8859_1; id <= CP_ANSI_874; ++id) {
        const auto cp = static_cast<code_page_id>(id);
        if (TvCharConverter::isMBCBCodepage(cp))
            continue;
        printCodes(cp);
        printTexts(cp);
    }
    TvCharMapper::unInitialize();
    return 0;
}

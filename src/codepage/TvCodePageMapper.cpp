#include "TvCodePages.h"

#include "TvCharConverter.h"
#include "runtime/TvPlatformCalls.h"

namespace {

// What the platform's conversion functions take as "the current thread's ANSI code page".
constexpr unsigned int kThreadAnsiCodePage = 3;

} // namespace

// 28586 for "iso8859_6" is meant: drawings written with it are read with it, and 28596 finds
// no id here.
constexpr unsigned int TvCodePageMapper::arrAnsiOrnaCpMapper[CP_CNT] = {
    0,    20127, 28591, 28592, 28593, 28594, 28595, 28586, 28597, 28598, 28599, 437, 850,  852,   855,  857,
    860,  861,   863,   864,   865,   869,   932,   10000, 10002, 949,   1361,  866, 1250, 1251,  1252, 20936,
    1253, 1254,  1255,  1256,  1257,  874,   932,   936,   949,   950,   1361,  0,   1258, 65001,
};

namespace {

// Spreads the numbers over 128 places so that no two of them share one.
constexpr unsigned int placeOf(unsigned int number) { return number * 137u >> 5 & 127u; }

// The highest id of the number at each place; 0 where there is none.
struct IdPlaces {
    unsigned char ids[128] = {};

    constexpr IdPlaces()
    {
        for (unsigned char id = 0; id < CP_CNT; ++id)
            ids[placeOf(TvCodePageMapper::arrAnsiOrnaCpMapper[id])] = id;
    }

    constexpr bool hasAll() const
    {
        for (const unsigned int number : TvCodePageMapper::arrAnsiOrnaCpMapper) {
            if (TvCodePageMapper::arrAnsiOrnaCpMapper[ids[placeOf(number)]] != number)
                return false;
        }
        return true;
    }
};

constexpr IdPlaces kIdPlaces;
static_assert(kIdPlaces.hasAll(), "two numbers share a place");

} // namespace

unsigned int TvCodePageMapper::ornaCpToAnsiCp(code_page_id id)
{
    const auto row = static_cast<unsigned int>(id);
    const unsigned int number = row < CP_CNT ? arrAnsiOrnaCpMapper[row] : 0;
    return number == 0 || id == CP_ASCII ? kThreadAnsiCodePage : number;
}

code_page_id TvCodePageMapper::ansiCpToOrnaCp(int cp)
{
    const auto number = static_cast<unsigned int>(cp);
    const unsigned char id = kIdPlaces.ids[placeOf(number)];
    return arrAnsiOrnaCpMapper[id] == number ? static_cast<code_page_id>(id) : CP_UNDEFINED;
}

unsigned int TvCodePageMapper::currentSystemAnsiCp() { return GetACP(); }

bool IsMultiByteCodePage(code_page_id id) { return TvCharConverter::isMBCBCodepage(id); }

bool isAsianCodepage(code_page_id id) { return TvCharConverter::isMIFCodepage(id); }

code_page_id mapCodepage(short c) { return TvCharConverter::getMIFCodepage(static_cast<wchar_t>(c)); }

int reMapCodepage(code_page_id id) { return TvCharConverter::getMIFIndex(id); }

#include "TvCodePages.h"

#include "TvCharConverter.h"
#include "TvPlatformBase.h"

namespace {

// What the platform's conversion functions take as "the current thread's ANSI code page".
constexpr unsigned int kThreadAnsiCodePage = 3;

} // namespace

// 28586 for "iso8859_6" is meant: drawings written with it are read with it, and 28596 finds
// no id here.
const unsigned int TvCodePageMapper::arrAnsiOrnaCpMapper[CP_CNT] = {
    0,    20127, 28591, 28592, 28593, 28594, 28595, 28586, 28597, 28598, 28599, 437, 850,  852,   855,  857,
    860,  861,   863,   864,   865,   869,   932,   10000, 10002, 949,   1361,  866, 1250, 1251,  1252, 20936,
    1253, 1254,  1255,  1256,  1257,  874,   932,   936,   949,   950,   1361,  0,   1258, 65001,
};

unsigned int TvCodePageMapper::ornaCpToAnsiCp(code_page_id id)
{
    const auto row = static_cast<unsigned int>(id);
    const unsigned int number = row < CP_CNT ? arrAnsiOrnaCpMapper[row] : 0;
    return number == 0 || id == CP_ASCII ? kThreadAnsiCodePage : number;
}

code_page_id TvCodePageMapper::ansiCpToOrnaCp(int cp)
{
    for (int id = CP_CNT - 1; id > 0; --id) {
        if (arrAnsiOrnaCpMapper[id] == static_cast<unsigned int>(cp))
            return static_cast<code_page_id>(id);
    }
    return CP_UNDEFINED;
}

unsigned int TvCodePageMapper::currentSystemAnsiCp() { return GetACP(); }

bool IsMultiByteCodePage(code_page_id id) { return TvCharConverter::isMBCBCodepage(id); }

bool isAsianCodepage(code_page_id id) { return TvCharConverter::isMIFCodepage(id); }

code_page_id mapCodepage(short c) { return TvCharConverter::getMIFCodepage(static_cast<wchar_t>(c)); }

int reMapCodepage(code_page_id id) { return TvCharConverter::getMIFIndex(id); }

// CharsetTable.cpp - Windows font character sets and code page ids.
#include "TvCharMapper.h"

namespace {

constexpr unsigned short kDefaultCharset = 1;

struct CharsetRow {
    unsigned short charset;
    code_page_id cp;
};

// Charset 2, symbols, is read as "ansi_1252" and never given: it stands behind the other
// row of that id.
constexpr CharsetRow kRows[] = {
    {0, CP_ANSI_1252},   {2, CP_ANSI_1252},   {128, CP_ANSI_932},  {129, CP_ANSI_949},  {134, CP_ANSI_936},
    {136, CP_ANSI_950},  {161, CP_ANSI_1253}, {162, CP_ANSI_1254}, {163, CP_ANSI_1258}, {177, CP_ANSI_1255},
    {178, CP_ANSI_1256}, {186, CP_ANSI_1257}, {204, CP_ANSI_1251}, {222, CP_ANSI_874},  {238, CP_ANSI_1250},
};

} // namespace

code_page_id TvCharMapper::getCodepageByCharset(unsigned short charset)
{
    for (const CharsetRow& row : kRows) {
        if (row.charset == charset)
            return row.cp;
    }
    return CP_UNDEFINED;
}

unsigned short TvCharMapper::getCharSetByCodepageId(code_page_id cp)
{
    for (const CharsetRow& row : kRows) {
        if (row.cp == cp)
            return row.charset;
    }
    return kDefaultCharset;
}

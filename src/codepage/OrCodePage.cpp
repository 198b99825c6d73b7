// OrCodePage.cpp - code pages, character sets, code page indexes.
#include "OrCodePage.h"

#include "runtime/TvPlatformCalls.h"

#include <iterator>

namespace {

// A Windows character set with its code page number and chief language.
struct CharsetRow {
    int charset;
    unsigned int codePage;
    unsigned int lcid; // 0 = the system's
};

constexpr CharsetRow kCharsets[] = {
    {0, 1252, 0x0409},   {2, 1252, 0},        {128, 932, 0x0411},  {129, 949, 0x0412},  {134, 936, 0x0804},
    {136, 950, 0x0404},  {161, 1253, 0x0408}, {162, 1254, 0x041F}, {163, 1258, 0x042A}, {177, 1255, 0x040D},
    {178, 1256, 0x0401}, {186, 1257, 0x0425}, {204, 1251, 0x0419}, {222, 874, 0x041E},  {238, 1250, 0x0405},
};

// Chief languages of the character sets that are this library's own.
constexpr int kFirstOwnCharset = 256;
constexpr unsigned int kOwnCharsetLcids[] = {0x0445, 0x0447, 0x0449, 0x044A, 0x044B,
                                             0x044C, 0x044E, 0x0446, 0x0448};

// Character set of each code page index; 0 has none. Johab, 130, stands here and in no row
// above: it has an index and no code page number.
constexpr int kIndexCharsets[] = {0, 128, 136, 129, 130, 134};

// Character sets that stand for "as the system has it".
constexpr int kFirstSystemCharset = 239;
constexpr int kLastSystemCharset = 255;

const CharsetRow* findCharset(int cs)
{
    for (const CharsetRow& row : kCharsets) {
        if (row.charset == cs)
            return &row;
    }
    return nullptr;
}

unsigned short low16(unsigned int value) { return static_cast<unsigned short>(value); }

} // namespace

const unsigned int OrCodePage::s_codePageEntry[14] = {1252, 932,  949,  936, 950,  1255, 1256,
                                                      1253, 1254, 1258, 874, 1250, 1251, 1257};

unsigned short OrCodePage::s_sysDefaultLCID = 0;
int OrCodePage::s_sysCodePage = 0;

int OrCodePage::CodePageCount() { return static_cast<int>(std::size(s_codePageEntry)); }

unsigned int OrCodePage::CodePageEntry(int i)
{
    return s_codePageEntry[i >= 0 && i < CodePageCount() ? i : 0];
}

int OrCodePage::CodePageToCharSet(unsigned int cp)
{
    for (const CharsetRow& row : kCharsets) {
        if (row.codePage == cp)
            return row.charset;
    }
    return 0;
}

unsigned short OrCodePage::CodePageToLanguage(int cp)
{
    return low16(CharSetToLCID(CodePageToCharSet(static_cast<unsigned int>(cp))));
}

int OrCodePage::CodePageToCodePageIndex(int cp)
{
    return CharSetToCodePageIndex(CodePageToCharSet(static_cast<unsigned int>(cp)));
}

bool OrCodePage::CodePageIsDoubleByte(int cp)
{
    return CharSetIsDoubleByte(CodePageToCharSet(static_cast<unsigned int>(cp)));
}

unsigned int OrCodePage::CodePageIndexToCodePage(int i)
{
    return CharSetToCodePage(static_cast<unsigned int>(CodePageIndexToCharSet(i)));
}

int OrCodePage::CodePageIndexToCharSet(int i)
{
    return i > 0 && i < static_cast<int>(std::size(kIndexCharsets)) ? kIndexCharsets[i] : 0;
}

unsigned int OrCodePage::CodePageIndexToLCID(int i) { return CharSetToLCID(CodePageIndexToCharSet(i)); }

unsigned short OrCodePage::CodePageIndexToLanguage(int i) { return low16(CodePageIndexToLCID(i)); }

unsigned int OrCodePage::CharSetToCodePage(unsigned int cs)
{
    const CharsetRow* const row = findCharset(static_cast<int>(cs));
    return row ? row->codePage : 0;
}

int OrCodePage::CharSetToCodePageIndex(int cs)
{
    for (int i = 1; i < static_cast<int>(std::size(kIndexCharsets)); ++i) {
        if (kIndexCharsets[i] == cs)
            return i;
    }
    return 0;
}

bool OrCodePage::CharSetIsDoubleByte(int cs) { return CharSetToCodePageIndex(cs) != 0; }

unsigned int OrCodePage::CharSetToLCID(int cs)
{
    // The system's own character set never lies in the range that stands for it.
    if (cs >= kFirstSystemCharset && cs <= kLastSystemCharset)
        cs = LCIDToCharSet(SysDefaultLCID());
    if (cs >= kFirstOwnCharset) {
        const int own = cs - kFirstOwnCharset;
        return own < static_cast<int>(std::size(kOwnCharsetLcids)) ? kOwnCharsetLcids[own]
                                                                   : GetSystemDefaultLCID();
    }
    const CharsetRow* const row = findCharset(cs);
    return row && row->lcid != 0 ? row->lcid : low16(GetSystemDefaultLCID());
}

unsigned short OrCodePage::CharSetToLanguage(int cs) { return low16(CharSetToLCID(cs)); }

unsigned short OrCodePage::SysDefaultLCID()
{
    if (s_sysDefaultLCID == 0)
        s_sysDefaultLCID = low16(GetSystemDefaultLCID());
    return s_sysDefaultLCID;
}

// Asked anew each time, unlike the language: what tvPlatformSetACP() chooses holds at once.
unsigned short OrCodePage::SysCodePage()
{
    s_sysCodePage = static_cast<int>(GetACP());
    return low16(static_cast<unsigned int>(s_sysCodePage));
}

// OrCodePageUnicode.cpp - the character set and language to show a character in.
#include "OrCodePage.h"

#include <bit>
#include <iterator>

namespace {

unsigned int charsetsOf(wchar_t wc)
{
    const auto unit = static_cast<unsigned int>(wc);
    const unsigned int unicodeClass =
        unit < std::size(OrCodePage::s_unicodeClassTable) ? OrCodePage::s_unicodeClassTable[unit] : 0;
    return OrCodePage::s_supportLcidTable[unicodeClass];
}

} // namespace

const unsigned short OrCodePage::s_charsetTable[29] = {0,   238, 204, 186, 161, 162, 177, 178, 163, 222,
                                                       134, 130, 129, 136, 128, 256, 257, 258, 259, 260,
                                                       261, 262, 263, 263, 263, 263, 263, 257, 264};

const unsigned int OrCodePage::s_supportLcidTable[33] = {
    0x0,      0x40,     0x80,     0x141,    0x200,    0x1000,   0x1051,   0x2000,   0x2400,
    0x5400,   0x5404,   0x5441,   0x7000,   0x7400,   0x74D1,   0x74DD,   0x76F8,   0x8000,
    0x10000,  0x20000,  0x40000,  0x80000,  0x100000, 0x200000, 0x400000, 0x7F85F1, 0x7F95AB,
    0x7FB0FF, 0x7FB5E3, 0x7FF4FF, 0x7FF5FF, 0x7FF73F, 0x7FF7FF};

int OrCodePage::CharSetFromUnicode(wchar_t wc, unsigned short lcid1, unsigned short lcid2)
{
    const int first = LCIDToCharSet(lcid1);
    const int second = LCIDToCharSet(lcid2);
    bool secondHasIt = false;
    int other = -1;
    for (unsigned int left = charsetsOf(wc); left != 0; left &= left - 1) {
        const int charset = s_charsetTable[std::countr_zero(left)];
        if (charset == first)
            return first;
        if (charset == second)
            secondHasIt = true;
        else if (other < 0)
            other = charset;
    }
    if (secondHasIt)
        return second;
    return other >= 0 ? other : first;
}

unsigned short OrCodePage::LanguageFromUnicode(wchar_t wc, unsigned short lcid1, unsigned short lcid2)
{
    return CharSetToLanguage(CharSetFromUnicode(wc, lcid1, lcid2));
}

// OrCodePageLanguages.cpp - the character set of each language.
#include "OrCodePage.h"

namespace {

constexpr int kDefaultCharset = 1;

constexpr int kPrimaryLanguageMask = 0x3FF;
constexpr int kArabic = 0x01;
constexpr int kHebrew = 0x0D;

} // namespace

// Character set 1 stands for scripts that no code page covers: Armenian, Georgian and others.
const OrCodePage::LcidAndCharset OrCodePage::s_lcidAndCharsetMap[160] = {
    {0x0401, 178}, {0x0801, 178}, {0x0C01, 178}, {0x1001, 178}, {0x1401, 178}, {0x1801, 178}, {0x1C01, 178},
    {0x2001, 178}, {0x2401, 178}, {0x2801, 178}, {0x2C01, 178}, {0x3001, 178}, {0x3401, 178}, {0x3801, 178},
    {0x3C01, 178}, {0x4001, 178}, {0x0402, 204}, {0x0403, 0},   {0x0404, 136}, {0x0804, 134}, {0x0C04, 134},
    {0x1004, 134}, {0x1404, 136}, {0x0405, 238}, {0x0406, 0},   {0x0407, 0},   {0x0807, 0},   {0x0C07, 0},
    {0x1007, 0},   {0x1407, 0},   {0x0408, 161}, {0x0409, 0},   {0x0809, 0},   {0x0C09, 0},   {0x1009, 0},
    {0x1409, 0},   {0x1809, 0},   {0x1C09, 0},   {0x2009, 0},   {0x2409, 0},   {0x2809, 0},   {0x2C09, 0},
    {0x3009, 0},   {0x3409, 0},   {0x040A, 0},   {0x080A, 0},   {0x0C0A, 0},   {0x100A, 0},   {0x140A, 0},
    {0x180A, 0},   {0x1C0A, 0},   {0x200A, 0},   {0x240A, 0},   {0x280A, 0},   {0x2C0A, 0},   {0x300A, 0},
    {0x340A, 0},   {0x380A, 0},   {0x3C0A, 0},   {0x400A, 0},   {0x440A, 0},   {0x480A, 0},   {0x4C0A, 0},
    {0x500A, 0},   {0x040B, 0},   {0x040C, 0},   {0x080C, 0},   {0x0C0C, 0},   {0x100C, 0},   {0x140C, 0},
    {0x180C, 0},   {0x040D, 177}, {0x040E, 238}, {0x040F, 0},   {0x0410, 0},   {0x0810, 0},   {0x0411, 128},
    {0x0412, 129}, {0x0413, 0},   {0x0813, 0},   {0x0414, 0},   {0x0814, 0},   {0x0415, 238}, {0x0416, 0},
    {0x0816, 0},   {0x0418, 238}, {0x0419, 204}, {0x041A, 238}, {0x081A, 238}, {0x0C1A, 204}, {0x101A, 238},
    {0x141A, 238}, {0x181A, 238}, {0x1C1A, 204}, {0x041B, 238}, {0x041C, 238}, {0x041D, 0},   {0x081D, 0},
    {0x041E, 222}, {0x041F, 162}, {0x0420, 178}, {0x0421, 0},   {0x0422, 204}, {0x0423, 204}, {0x0424, 238},
    {0x0425, 186}, {0x0426, 186}, {0x0427, 186}, {0x0429, 178}, {0x042A, 163}, {0x042B, 1},   {0x042C, 238},
    {0x082C, 204}, {0x042D, 0},   {0x042F, 204}, {0x0432, 0},   {0x0434, 0},   {0x0435, 0},   {0x0436, 0},
    {0x0437, 1},   {0x0438, 0},   {0x0439, 263}, {0x043A, 1},   {0x043B, 0},   {0x083B, 0},   {0x0C3B, 0},
    {0x103B, 0},   {0x143B, 0},   {0x183B, 0},   {0x1C3B, 0},   {0x203B, 0},   {0x243B, 0},   {0x043E, 0},
    {0x083E, 0},   {0x043F, 204}, {0x0440, 204}, {0x0441, 0},   {0x0443, 238}, {0x0843, 204}, {0x0444, 204},
    {0x0445, 256}, {0x0446, 257}, {0x0447, 258}, {0x0449, 259}, {0x044A, 260}, {0x044B, 261}, {0x044C, 262},
    {0x044E, 263}, {0x044F, 263}, {0x0450, 204}, {0x0452, 0},   {0x0456, 0},   {0x0457, 263}, {0x045A, 1},
    {0x0465, 1},   {0x046B, 0},   {0x086B, 0},   {0x0C6B, 0},   {0x046C, 0},   {0x0481, 1},
};

int OrCodePage::LCIDToCharSet(unsigned int lcid)
{
    for (const LcidAndCharset& row : s_lcidAndCharsetMap) {
        if (static_cast<unsigned int>(row.lcid) == lcid)
            return row.charset;
    }
    return kDefaultCharset;
}

int OrCodePage::LanguageToCharSet(unsigned int lcid) { return LCIDToCharSet(lcid); }

unsigned int OrCodePage::LanguageToCodePage(unsigned short lcid)
{
    return CharSetToCodePage(static_cast<unsigned int>(LCIDToCharSet(lcid)));
}

int OrCodePage::LanguageToCodePageIndex(short lcid)
{
    return CharSetToCodePageIndex(LCIDToCharSet(static_cast<unsigned short>(lcid)));
}

bool OrCodePage::LanguageIsDoubleByte(unsigned short lcid)
{
    return CharSetIsDoubleByte(LCIDToCharSet(lcid));
}

bool OrCodePage::LanguageIsRtoL(int lcid)
{
    const int primary = lcid & kPrimaryLanguageMask;
    return primary == kHebrew || primary == kArabic;
}

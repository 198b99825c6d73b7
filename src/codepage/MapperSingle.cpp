// MapperSingle.cpp - single characters between a code page and UTF-16.
#include "TvCharMapper.h"

#include "TvCharConverter.h"
#include "codepage/MapperAccess.h"
#include "codepage/Utf8.h"

namespace {

// The bytes of `code`, lowest first, are UTF-8.
wchar_t decodePackedUtf8(wchar_t code)
{
    unsigned char bytes[5] = {}; // a 0 behind the fourth
    for (unsigned i = 0; i < 4; ++i)
        bytes[i] = static_cast<unsigned char>(static_cast<unsigned>(code) >> 8 * i);
    wchar_t wide[4] = {};
    TvDetail::utf8DecodePlain(bytes, sizeof bytes, wide);
    return wide[0];
}

wchar_t encodePackedUtf8(wchar_t wc)
{
    char bytes[3] = {};
    TvDetail::utf8EncodePlain(&wc, 1, bytes);
    unsigned code = 0;
    for (unsigned i = 0; i < 3; ++i)
        code |= static_cast<unsigned>(static_cast<unsigned char>(bytes[i])) << 8 * i;
    return static_cast<wchar_t>(code);
}

} // namespace

bool TvCharMapper::codepageToUnicode(wchar_t code, code_page_id cp, wchar_t& wc)
{
    cp = TvDetail::withSystemCodePage(TvCharConverter::checkTheSameCP(cp));
    if (cp == CP_UTF8) {
        wc = decodePackedUtf8(code);
        return true;
    }
    const TvDetail::MapperAccess page = TvDetail::MapperAccess::loaded(cp);
    if (!page.isLoaded() && page.hasNoBytes())
        return false;
    const int found = page.decode(static_cast<unsigned>(code));
    if (found < 0)
        return false;
    wc = static_cast<wchar_t>(found);
    return true;
}

bool TvCharMapper::codepageToUnicode(wchar_t code, unsigned int, code_page_id cp, wchar_t& wc)
{
    return codepageToUnicode(code, TvCharConverter::checkTheSameCP(cp), wc);
}

bool TvCharMapper::unicodeToCodepage(wchar_t wc, code_page_id cp, wchar_t& code, bool)
{
    if (static_cast<unsigned>(wc) < 0x80) {
        code = wc;
        return true;
    }
    cp = TvDetail::withSystemCodePage(TvCharConverter::checkTheSameCP(cp));
    if (cp == CP_UTF8) {
        code = encodePackedUtf8(wc);
        return true;
    }
    const int found = TvDetail::MapperAccess::loaded(cp).encode(static_cast<unsigned>(wc));
    if (found < 0)
        return false;
    code = static_cast<wchar_t>(found);
    return true;
}

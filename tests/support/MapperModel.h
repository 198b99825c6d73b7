// MapperModel.h - the character mapper's text conversions spelled out rule by rule, slow and
// obvious, over the tables that the registry holds.
#ifndef TV_TEST_MAPPER_MODEL_H
#define TV_TEST_MAPPER_MODEL_H

#include "TvCodePages.h"
#include "TvPlatformBase.h"

#include "Utf8Model.h"

#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

namespace MapperModel {

inline code_page_id folded(code_page_id cp)
{
    switch (cp) {
    case CP_DOS932:
        return CP_ANSI_932;
    case CP_BIG5:
        return CP_ANSI_950;
    case CP_KSC5601:
        return CP_ANSI_949;
    case CP_JOHAB:
        return CP_ANSI_1361;
    case CP_GB2312:
        return CP_ANSI_936;
    default:
        return cp;
    }
}

inline code_page_id ofSystem(code_page_id cp)
{
    return cp == CP_UNDEFINED || cp == CP_CNT ? TvCodePageMapper::ansiCpToOrnaCp(static_cast<int>(GetACP()))
                                              : cp;
}

inline char mifDigit(code_page_id cp)
{
    switch (folded(cp)) {
    case CP_ANSI_932:
        return '1';
    case CP_ANSI_950:
        return '2';
    case CP_ANSI_949:
        return '3';
    case CP_ANSI_1361:
        return '4';
    case CP_ANSI_936:
        return '5';
    default:
        return '0';
    }
}

inline code_page_id mifPage(char digit)
{
    const code_page_id pages[] = {ofSystem(CP_UNDEFINED), CP_ANSI_932, CP_ANSI_950, CP_ANSI_949,
                                  CP_ANSI_1361,           CP_ANSI_936};
    return pages[digit - '0'];
}

// A code of a registered page to its character; nothing when it does not convert.
inline std::optional<int> decodeCode(unsigned code, code_page_id cp)
{
    cp = ofSystem(folded(cp));
    if (cp == CP_UTF8) {
        std::vector<unsigned char> bytes;
        for (unsigned i = 0; i < 4; ++i)
            bytes.push_back(static_cast<unsigned char>(code >> 8 * i));
        const std::vector<wchar_t> text = Utf8Model::decode(bytes);
        return text.empty() ? 0 : static_cast<int>(text[0]);
    }
    const EkCodepageMapper& page = *theTvCodePages()->findMapperByAcadCp(cp);
    const EkCodepageMapper& empty = *theTvCodePages()->findMapperByAcadCp(CP_ASCII);
    if (page.m_bLoaded != 1 && page.m_pSingleByteTable == empty.m_pSingleByteTable)
        return std::nullopt;
    if (code < 0x80)
        return static_cast<int>(code);
    if (code < 0x100)
        return page.m_pSingleByteTable[code - 0x80];
    for (int low = 0, high = page.m_pairs.length(); low < high;) {
        const int middle = (low + high) / 2;
        const EkCpUnicodePair pair = page.m_pairs.asArrayPtr()[middle];
        if (pair.code == code)
            return pair.unicode;
        (pair.code < code ? low : high) = pair.code < code ? middle + 1 : middle;
    }
    return std::nullopt;
}

inline bool isLead(unsigned b, code_page_id cp)
{
    const EkCodepageMapper& page = *theTvCodePages()->findMapperByAcadCp(folded(cp));
    for (int i = 0; i < page.m_leadBytes.length(); ++i) {
        const EkLeaderBytes range = page.m_leadBytes.asArrayPtr()[i];
        if (b >= range.first && b <= range.last)
            return true;
    }
    return false;
}

// The value of the hexadecimal digits at a place, -1 when they are not four.
template<class T>
long hexAt(const std::basic_string<T>& text, std::size_t at)
{
    std::string digits;
    for (std::size_t i = at; i < at + 4; ++i) {
        const auto c = i < text.size() ? static_cast<unsigned>(text[i]) : 0u;
        if (c > 127 || !std::isxdigit(static_cast<int>(c)))
            return -1;
        digits.push_back(static_cast<char>(c));
    }
    return std::strtol(digits.c_str(), nullptr, 16);
}

// Whether a backslash, one of two letters and a plus stand at a place.
template<class T>
bool beginsEscape(const std::basic_string<T>& text, std::size_t at, char upper)
{
    return at + 2 < text.size() && text[at] == T('\\') &&
           (text[at + 1] == T(upper) || text[at + 1] == T(upper + 32)) && text[at + 2] == T('+');
}

inline std::wstring toWide(code_page_id cp, std::string text)
{
    cp = ofSystem(cp);
    text = text.substr(0, text.find('\0'));
    if (cp == CP_UTF8) {
        const std::vector<wchar_t> wide = Utf8Model::decode({text.begin(), text.end()});
        return {wide.begin(), wide.end()};
    }
    std::wstring out;
    for (std::size_t at = 0; at < text.size();) {
        const auto b = static_cast<unsigned char>(text[at]);
        if (beginsEscape(text, at, 'U') && hexAt(text, at + 3) >= 0) {
            out.push_back(static_cast<wchar_t>(hexAt(text, at + 3)));
            at += 7;
        } else if (beginsEscape(text, at, 'M') && at + 3 < text.size() && text[at + 3] >= '0' &&
                   text[at + 3] <= '5' && hexAt(text, at + 4) >= 0) {
            const auto wc = decodeCode(static_cast<unsigned>(hexAt(text, at + 4)), mifPage(text[at + 3]));
            if (wc)
                out.push_back(static_cast<wchar_t>(*wc));
            else
                out.append(text.begin() + static_cast<long>(at), text.begin() + static_cast<long>(at) + 8);
            at += 8;
        } else if (b < 0x80) {
            out.push_back(b);
            ++at;
        } else {
            const bool pair = isLead(b, cp) && at + 1 < text.size();
            const unsigned code = pair ? b * 256u + static_cast<unsigned char>(text[at + 1]) : b;
            at += pair ? 2 : 1;
            const auto wc = decodeCode(code, cp);
            if (wc && *wc != 0 && *wc != '?') {
                out.push_back(static_cast<wchar_t>(*wc));
            } else if (pair && mifDigit(cp) != '0') {
                wchar_t escape[9];
                std::swprintf(escape, 9, L"\\M+%c%04X", mifDigit(cp), code);
                out += escape;
            } else {
                out.push_back(static_cast<wchar_t>(code));
            }
        }
    }
    return out;
}

inline std::string toBytes(code_page_id cp, std::wstring text)
{
    cp = ofSystem(cp);
    text = text.substr(0, text.find(L'\0'));
    if (cp == CP_UTF8) {
        const std::vector<char> bytes = Utf8Model::encode({text.begin(), text.end()});
        return {bytes.begin(), bytes.end()};
    }
    const EkCodepageMapper& page = *theTvCodePages()->findMapperByAcadCp(folded(cp));
    std::string out;
    for (std::size_t at = 0; at < text.size();) {
        const auto wc = static_cast<unsigned>(text[at]);
        std::size_t kept = 0;
        if (beginsEscape(text, at, 'U') && hexAt(text, at + 3) >= 0)
            kept = 7;
        if (beginsEscape(text, at, 'M') && at + 3 < text.size() && text[at + 3] >= L'1' &&
            text[at + 3] <= L'5' && hexAt(text, at + 4) >= 0)
            kept = 8;
        if (kept != 0) {
            for (std::size_t i = at; i < at + kept; ++i)
                out.push_back(static_cast<char>(text[i]));
            at += kept;
            continue;
        }
        ++at;
        if (wc < 0x80) {
            out.push_back(static_cast<char>(wc));
            continue;
        }
        int code = -1;
        for (int i = 127; i >= 0; --i)
            code = page.m_pSingleByteTable[i] == wc ? 0x80 + i : code;
        for (int i = 0; code < 0 && i < page.m_pairs.length(); ++i)
            code = page.m_pairs.asArrayPtr()[i].unicode == wc ? page.m_pairs.asArrayPtr()[i].code : -1;
        if (code < 0) {
            char escape[8];
            std::snprintf(escape, sizeof escape, "\\U+%04X", wc & 0xFFFF);
            out += escape;
        } else {
            if (code > 0xFF)
                out.push_back(static_cast<char>(code >> 8));
            out.push_back(static_cast<char>(code));
        }
    }
    return out;
}

} // namespace MapperModel

#endif

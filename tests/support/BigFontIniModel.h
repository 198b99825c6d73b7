// BigFontIniModel.h - what a BIGFONT.INI says, read the plain way from its whole text.
#ifndef TV_TEST_BIG_FONT_INI_MODEL_H
#define TV_TEST_BIG_FONT_INI_MODEL_H

#include "TvPlatformBase.h"

#include <algorithm>
#include <cerrno>
#include <cwchar>
#include <map>
#include <string>

namespace BigFontIniModel {

inline std::string utf8Of(char32_t c)
{
    if (c < 0x80)
        return {static_cast<char>(c)};
    if (c < 0x800)
        return {static_cast<char>(0xC0 | c >> 6), static_cast<char>(0x80 | (c & 0x3F))};
    if (c < 0x10000)
        return {static_cast<char>(0xE0 | c >> 12), static_cast<char>(0x80 | (c >> 6 & 0x3F)),
                static_cast<char>(0x80 | (c & 0x3F))};
    return {static_cast<char>(0xF0 | c >> 18), static_cast<char>(0x80 | (c >> 12 & 0x3F)),
            static_cast<char>(0x80 | (c >> 6 & 0x3F)), static_cast<char>(0x80 | (c & 0x3F))};
}

// A sequence counts when its character, encoded again, gives it: that leaves out overlong forms.
inline std::wstring decoded(const std::string& bytes)
{
    std::wstring text;
    for (std::size_t at = 0; at < bytes.size();) {
        std::size_t length = 4;
        char32_t c = 0;
        for (; length > 1; --length) {
            const std::string piece = bytes.substr(at, length);
            c = static_cast<unsigned char>(piece[0]) & (0x7Fu >> length);
            for (std::size_t i = 1; i < piece.size(); ++i)
                c = c << 6 | (static_cast<unsigned char>(piece[i]) & 0x3Fu);
            const bool isSurrogate = c >= 0xD800 && c < 0xE000;
            if (piece.size() == length && c <= 0x10FFFF && !isSurrogate && utf8Of(c) == piece)
                break;
        }
        if (length == 1)
            c = static_cast<unsigned char>(bytes[at]);
        at += length;
        if (c >= 0x10000) {
            text += static_cast<wchar_t>(0xD800 + ((c - 0x10000) >> 10));
            text += static_cast<wchar_t>(0xDC00 + ((c - 0x10000) & 0x3FF));
        } else {
            text += static_cast<wchar_t>(c);
        }
    }
    return text;
}

inline void readLine(std::wstring line, std::map<std::wstring, int>& fonts)
{
    line = line.substr(0, std::min<std::size_t>(line.find(L'\0'), 512));
    std::wstring name, value;
    std::wstring* part = &name;
    for (std::size_t i = 0; i < line.size() && line[i] != L'#'; ++i) {
        if (line[i] == L';') {
            const bool isShape =
                name.size() >= 4 && wcscasecmp(name.substr(name.size() - 4).c_str(), L".shx") == 0;
            if (!isShape || i + 1 == line.size())
                return;
            part = &value;
            value += line[++i];
            if (line[i] == L';' && i + 1 == line.size())
                return;
        } else if (line[i] != L' ') {
            *part += line[i];
        }
    }
    errno = 0;
    const int index = _wtoi(value.c_str());
    if (!name.empty() && !value.empty() && index != 0 && errno != ERANGE)
        fonts[name] = index;
}

inline std::map<std::wstring, int> read(std::string content)
{
    if (content.rfind("\xEF\xBB\xBF", 0) == 0)
        content.erase(0, 3);
    content += '\n';
    std::map<std::wstring, int> fonts;
    for (std::size_t at = 0; at < content.size();) {
        const std::size_t end = content.find('\n', at);
        std::string line = content.substr(at, end - at);
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        readLine(decoded(line), fonts);
        at = end + 1;
    }
    return fonts;
}

} // namespace BigFontIniModel

#endif

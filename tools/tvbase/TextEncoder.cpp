#include "TextEncoder.h"

#include "Utf8Sequence.h"

#include "TvCharConverter.h"
#include "TvCharMapper.h"

#include <new>

namespace {

bool isSurrogate(wchar_t c) { return c >= 0xD800 && c <= 0xDFFF; }

} // namespace

int wideLength(const wchar_t* text, std::size_t available)
{
    return available >= 2 && text[0] >= 0xD800 && text[0] <= 0xDBFF && text[1] >= 0xDC00 && text[1] <= 0xDFFF
               ? 2
               : 1;
}

char32_t wideCharacter(const wchar_t* text, std::size_t available)
{
    if (wideLength(text, available) == 1)
        return static_cast<char32_t>(text[0]);
    return static_cast<char32_t>(0x10000 + ((text[0] - 0xD800) << 10) + (text[1] - 0xDC00));
}

TextEncoder::TextEncoder(code_page_id page) : m_page(page), m_has(0x10000, page == CP_UTF8)
{
    for (int unit = 0; unit < 0x10000; ++unit) {
        wchar_t code;
        if (isSurrogate(unit))
            m_has[static_cast<std::size_t>(unit)] = false;
        else if (page != CP_UTF8)
            m_has[static_cast<std::size_t>(unit)] = TvCharMapper::unicodeToCodepage(unit, page, code, false);
    }
}

std::size_t TextEncoder::findMissing(const wchar_t* text, std::size_t length, std::size_t from) const
{
    for (std::size_t i = from; i < length; ++i) {
        if (m_has[static_cast<std::size_t>(text[i])])
            continue;
        if (m_page != CP_UTF8 || wideLength(text + i, length - i) == 1)
            return i;
        ++i;
    }
    return length;
}

void TextEncoder::encodeRun(const wchar_t* text, std::size_t length, std::string& out)
{
    if (length == 0)
        return;
    TvCharMapper::wideCharToMultiByte(m_page, text, static_cast<int>(length), m_bytes);
    if (m_bytes.length() <= 1)
        throw std::bad_alloc();
    out.append(m_bytes.asArrayPtr(), static_cast<std::size_t>(m_bytes.length() - 1));
}

void TextEncoder::encode(const wchar_t* text, std::size_t length, std::string& out)
{
    if (m_page != CP_UTF8)
        return encodeRun(text, length, out);
    // The library's UTF-8 knows no surrogates; they are few.
    std::size_t done = 0;
    for (std::size_t i = 0; i < length; ++i) {
        if (!isSurrogate(text[i]))
            continue;
        encodeRun(text + done, i - done, out);
        char bytes[8];
        const int count = wideLength(text + i, length - i);
        const int size = count == 2
                             ? writeUtf8(wideCharacter(text + i, length - i), bytes)
                             : TvCharConverter::getCIFString(static_cast<unsigned short>(text[i]), bytes, 8);
        out.append(bytes, static_cast<std::size_t>(size));
        i += static_cast<std::size_t>(count) - 1;
        done = i + 1;
    }
    encodeRun(text + done, length - done, out);
}

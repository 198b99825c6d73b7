#include "codepage/BigFontIni.h"

#include "TvCharOp.h"
#include "runtime/TvPlatformCalls.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace TvDetail {

namespace {

// Text of a bounded length that ends with a 0.
template<std::size_t Room>
class FixedText {
public:
    bool isFull() const { return m_length == Room; }
    bool isEmpty() const { return m_length == 0; }
    std::size_t length() const { return m_length; }
    const wchar_t* text() const { return m_text; }

    void put(wchar_t c)
    {
        m_text[m_length++] = c;
        m_text[m_length] = 0;
    }

private:
    wchar_t m_text[Room + 1] = {};
    std::size_t m_length = 0;
};

using Line = FixedText<512>;

bool isContinuation(unsigned char b) { return (b & 0xC0) == 0x80; }

// The bytes of the UTF-8 sequence that begins a text of `count` bytes, and its character; 1 and
// the byte itself where none begins: continuation bytes, cut and overlong forms, surrogates.
std::size_t readUtf8(const unsigned char* bytes, std::size_t count, char32_t& c)
{
    static constexpr struct {
        unsigned char first, last; // lead bytes
        std::size_t length;
        char32_t least;
    } kForms[] = {{0xC2, 0xDF, 2, 0x80}, {0xE0, 0xEF, 3, 0x800}, {0xF0, 0xF4, 4, 0x10000}};

    c = bytes[0];
    for (const auto& form : kForms) {
        if (bytes[0] < form.first || bytes[0] > form.last)
            continue;
        if (count < form.length || !std::all_of(bytes + 1, bytes + form.length, isContinuation))
            return 1;
        char32_t value = bytes[0] & (0xFFu >> (form.length + 1));
        for (std::size_t i = 1; i < form.length; ++i)
            value = value << 6 | (bytes[i] & 0x3Fu);
        if (value < form.least || value > 0x10FFFF || (value >= 0xD800 && value < 0xE000))
            return 1;
        c = value;
        return form.length;
    }
    return 1;
}

// The text up to a 0, as UTF-16 units like all wide text.
void decodeLine(const unsigned char* bytes, std::size_t count, Line& line)
{
    for (std::size_t at = 0; at < count && bytes[at] != 0 && !line.isFull();) {
        char32_t c = 0;
        at += readUtf8(bytes + at, count - at, c);
        if (c < 0x10000) {
            line.put(static_cast<wchar_t>(c));
            continue;
        }
        line.put(static_cast<wchar_t>(0xD7C0 + (c >> 10)));
        if (!line.isFull())
            line.put(static_cast<wchar_t>(0xDC00 + (c & 0x3FF)));
    }
}

bool isShapeFont(const Line& name)
{
    static constexpr wchar_t kExtension[] = L".shx";
    static constexpr std::size_t kLength = 4;
    return name.length() >= kLength &&
           TvCharOp::compareNoCase(name.text() + name.length() - kLength, kExtension) == 0;
}

// Splits a line. False when it says nothing.
bool splitLine(const wchar_t* line, Line& name, Line& value)
{
    bool isValue = false;
    for (const wchar_t* at = line; *at != 0 && *at != L'#'; ++at) {
        if (*at == L' ')
            continue;
        if (*at == L';') {
            if (!isShapeFont(name) || at[1] == 0)
                return false;
            isValue = true;
            value.put(*++at); // taken whatever it is, be it a blank or another ";"
            if (*at == L';' && at[1] == 0)
                return false; // the line ends in a separator all the same
            continue;
        }
        (isValue ? value : name).put(*at);
    }
    return !name.isEmpty() && !value.isEmpty();
}

// 0 for a text that is no number and for one beyond int.
int numberOf(const wchar_t* text)
{
    errno = 0;
    const int number = _wtoi(text);
    return errno == ERANGE ? 0 : number;
}

} // namespace

void BigFontIni::take(const char* bytes, std::size_t count)
{
    for (;;) {
        const void* const lineEnd = count ? std::memchr(bytes, '\n', count) : nullptr;
        const std::size_t length =
            lineEnd ? static_cast<std::size_t>(static_cast<const char*>(lineEnd) - bytes) : count;
        const std::size_t kept = std::min(length, kLineBytes - m_count);
        std::copy_n(bytes, kept, m_line + m_count);
        m_count += kept;
        if (!lineEnd)
            return;
        endLine();
        bytes += length + 1;
        count -= length + 1;
    }
}

void BigFontIni::finish() { endLine(); }

void BigFontIni::endLine()
{
    static constexpr unsigned char kMark[] = {0xEF, 0xBB, 0xBF};
    const unsigned char* line = m_line;
    std::size_t count = m_count;
    m_count = 0;
    if (count > 0 && line[count - 1] == '\r')
        --count;
    if (m_isFirst && count >= sizeof kMark && std::memcmp(line, kMark, sizeof kMark) == 0) {
        line += sizeof kMark;
        count -= sizeof kMark;
    }
    m_isFirst = false;

    Line text, name, value;
    decodeLine(line, count, text);
    if (!splitLine(text.text(), name, value))
        return;
    if (const int index = numberOf(value.text()))
        m_map[name.text()] = index;
}

} // namespace TvDetail

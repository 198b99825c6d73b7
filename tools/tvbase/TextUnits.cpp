#include "TextUnits.h"

#include "Utf8Sequence.h"

#include "TvCharConverter.h"
#include "TvCharMapper.h"

#include <algorithm>

namespace {

constexpr int kCifLength = 7;
constexpr int kMifLength = 8;

// Whether the text, which ends here for now, may yet become an escape.
bool mayBecomeEscape(const char* text, std::size_t available)
{
    if (available >= 2 && std::string_view("UuMm").find(text[1]) == std::string_view::npos)
        return false;
    const bool cif = available < 2 || text[1] == 'U' || text[1] == 'u';
    if (available >= static_cast<std::size_t>(cif ? kCifLength : kMifLength))
        return false;
    if (available >= 3 && text[2] != '+')
        return false;
    for (std::size_t i = 3; i < available; ++i)
        if (!TvCharConverter::isHexDigit(text[i]))
            return false;
    return true;
}

// Whether an escape for `value` stays as it is written. Any ASCII character may complete another
// escape with the text around it: with U for its escape, `\\U+0055+4E2D` would be `\U+4E2D`.
bool staysEscape(wchar_t value) { return value < 0x80; }

// The escape functions read up to a terminator.
struct Terminated {
    char text[kMifLength + 1] = {};
    Terminated(const char* from, std::size_t available)
    {
        std::copy_n(from, std::min<std::size_t>(available, kMifLength), text);
    }
};

} // namespace

TextUnits::TextUnits(code_page_id page) : m_page(page), m_isPlain(), m_isLead(), m_single()
{
    for (int byte = 1; byte < 256; ++byte) {
        wchar_t unit = 0;
        if (byte < 0x80)
            unit = byte;
        else if (page != CP_UTF8) {
            m_isLead[byte] = tvIsLeadByte(static_cast<unsigned char>(byte), page);
            if (!TvCharMapper::codepageToUnicode(byte, page, unit) || m_isLead[byte])
                unit = 0;
        }
        m_single[byte] = static_cast<unsigned short>(unit);
        m_isPlain[byte] = unit != 0 && byte != '\\' && byte != '\n';
    }
    for (int lead = 0x80; lead < 0x100; ++lead) {
        if (!m_isLead[lead])
            continue;
        m_pairs.resize(0x10000);
        for (int code = lead << 8 | 1; code <= (lead << 8 | 0xFF); ++code)
            if (wchar_t unit; TvCharMapper::codepageToUnicode(code, page, unit))
                m_pairs[static_cast<std::size_t>(code)] = static_cast<unsigned short>(unit);
    }
}

std::size_t TextUnits::skipPlain(const char* text, std::size_t available) const
{
    std::size_t count = 0;
    while (count < available && m_isPlain[static_cast<unsigned char>(text[count])])
        ++count;
    return count;
}

TextUnit TextUnits::read(const char* text, std::size_t available, bool last) const
{
    const auto byte = static_cast<unsigned char>(*text);
    if (byte == 0)
        return {TextUnit::kZero, 1, 0};
    if (byte == '\\')
        return readBackslash(text, available, last);
    if (byte < 0x80)
        return {TextUnit::kCharacter, 1, byte};
    return readHigh(text, available, last);
}

TextUnit TextUnits::readBackslash(const char* text, std::size_t available, bool last) const
{
    if (!last && mayBecomeEscape(text, available))
        return {TextUnit::kCut, 0, 0};
    const Terminated start(text, available);
    wchar_t value = 0;
    if (TvCharConverter::parseCIFString(start.text, value)) {
        if (m_page == CP_UTF8 || staysEscape(value))
            return {TextUnit::kVerbatim, kCifLength, 0};
        if (value < 0xD800 || value > 0xDBFF)
            return {TextUnit::kEscape, kCifLength, static_cast<char32_t>(value)};
        // The second surrogate may follow.
        const char* next = text + kCifLength;
        const std::size_t left = available - kCifLength;
        if (!last && (left == 0 || (*next == '\\' && mayBecomeEscape(next, left))))
            return {TextUnit::kCut, 0, 0};
        wchar_t low = 0;
        if (TvCharConverter::parseCIFString(Terminated(next, left).text, low) && low >= 0xDC00 &&
            low <= 0xDFFF)
            return {TextUnit::kEscape, 2 * kCifLength,
                    static_cast<char32_t>(0x10000 + ((value - 0xD800) << 10) + (low - 0xDC00))};
        return {TextUnit::kEscape, kCifLength, static_cast<char32_t>(value)};
    }
    code_page_id page;
    wchar_t code;
    if (TvCharConverter::parseMIFString(start.text, code, page)) {
        if (m_page == CP_UTF8 || !TvCharMapper::codepageToUnicode(code, page, value) || staysEscape(value))
            return {TextUnit::kVerbatim, kMifLength, 0};
        return {TextUnit::kEscape, kMifLength, static_cast<char32_t>(value)};
    }
    return {TextUnit::kCharacter, 1, '\\'};
}

TextUnit TextUnits::readHigh(const char* text, std::size_t available, bool last) const
{
    const auto byte = static_cast<unsigned char>(*text);
    const TextUnit bad = {TextUnit::kBadByte, 1, byte};
    if (m_page == CP_UTF8) {
        const Utf8Sequence sequence = readUtf8(text, available);
        if (sequence.length < 0)
            return last ? bad : TextUnit{TextUnit::kCut, 0, 0};
        if (sequence.length == 0)
            return bad;
        return {sequence.length == 4 ? TextUnit::kAbove : TextUnit::kCharacter, sequence.length,
                sequence.value};
    }
    if (!m_isLead[byte])
        return m_single[byte] ? TextUnit{TextUnit::kCharacter, 1, m_single[byte]} : bad;
    if (available < 2)
        return last ? bad : TextUnit{TextUnit::kCut, 0, 0};
    const auto trail = static_cast<unsigned char>(text[1]);
    if (trail == 0)
        return bad;
    const unsigned int code = static_cast<unsigned int>(byte) << 8 | trail;
    if (const char32_t unit = m_pairs[code])
        return {TextUnit::kCharacter, 2, unit};
    return {TextUnit::kNoPair, 2, code};
}

#include "TvPlatformText.h"

#include "TvCharConverter.h"
#include "TvCharMapper.h"

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace {

constexpr int kEscapeDigits = 4;
constexpr int kCifHead = 3; // backslash, letter, plus
constexpr int kMifHead = 4; // and the code page digit

// Offsets are int; what lies behind those is not walked.
int lengthOf(const TvStringA& text)
{
    return static_cast<int>(std::min<std::uint64_t>(text.numOfChars(), INT_MAX));
}

unsigned int byteAt(const char* p) { return static_cast<unsigned char>(*p); }

} // namespace

TvAnsiTextIterator::TvAnsiTextIterator(const TvStringA& text, code_page_id cp)
    : m_start(text.constStr()), m_position(m_start), m_length(lengthOf(text)), m_codePage(cp),
      m_charStart(m_start), m_end(m_start + m_length), m_isMultiByte(IsMultiByteCodePage(cp)),
      m_textCodePage(text.header()->codepage)
{
}

bool TvAnsiTextIterator::isAtEnd() const { return m_position >= m_end || *m_position == 0; }

unsigned int TvAnsiTextIterator::nextChar()
{
    m_charStart = m_position;
    m_value = 0;
    if (isAtEnd())
        return 0;
    if (TvCharConverter::isCIF(m_position)) {
        m_position += kCifHead;
        appendDigits(kEscapeDigits, true);
        return m_value;
    }
    if (TvCharConverter::isMIF(m_position)) {
        m_position += kMifHead;
        appendDigits(kEscapeDigits, true);
        return m_value;
    }
    m_value = byteAt(m_position++);
    const bool mayLead = m_isMultiByte && !isAtEnd();
    if (mayLead && TvCharMapper::isLeadByte(static_cast<unsigned char>(m_value), m_codePage))
        m_value = m_value * 256 + byteAt(m_position++);
    return m_value;
}

void TvAnsiTextIterator::appendDigits(int n, bool hex)
{
    for (; n > 0 && m_position < m_end && TvCharConverter::checkDigits(m_position, 1, hex); --n)
        appendDigitsNoCheck(1, hex);
}

void TvAnsiTextIterator::appendDigitsNoCheck(int n, bool hex)
{
    for (; n > 0 && m_position < m_end; --n)
        m_value = m_value * (hex ? 16 : 10) + TvCharConverter::hexValue(*m_position++);
}

int TvAnsiTextIterator::breakSafely(int maxBytes, TvStringA& rest)
{
    const TvStringA kept(rest); // rest may be the text itself, which is still to be read
    rest.setEmpty();
    nextChar();
    int result = 0;
    if (!isAtEnd()) {
        result = 3;
        while (m_position - m_start < maxBytes) {
            nextChar();
            if (m_position != m_charStart)
                continue;
            result = 1;
            break;
        }
    }
    const auto length = static_cast<int>(m_charStart - m_start);
    if (length == 0)
        return result;
    if (char* const text = rest.getBuffer(length)) {
        std::memcpy(text, m_start, static_cast<std::size_t>(length));
        rest.releaseBuffer(length);
        rest.setCodepage(m_textCodePage);
    }
    return result;
}

bool TvAnsiTextIterator::TvAnsiTextIteratorNotRequired(const TvStringA& text, code_page_id cp)
{
    const auto length = static_cast<std::size_t>(text.numOfChars());
    return !IsMultiByteCodePage(cp) && !std::memchr(text.constStr(), '\\', length);
}

// Any text as one with inline escapes: recognised, read and written by the converter in all
// three character types, and walked by the iterator, each beside its rules spelled out.
//
// Byte 0 chooses the code page; six bytes choose what is asked of the iterator.
#include "TvCharConverter.h"
#include "TvCharMapper.h"
#include "TvPlatformText.h"

#include "FuzzInput.h"
#include "MapperModel.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

namespace {

template<class C>
void checkWriting(unsigned short unit, code_page_id cp)
{
    const std::basic_string<C> empty(8, C('*'));
    for (int size = 0; size <= 8; ++size) {
        auto cif = exactly(std::basic_string<C>(static_cast<std::size_t>(size), C('*')));
        const int written = TvCharConverter::getCIFString(unit, cif.get(), size);
        require(written == (size < 7 ? 0 : 7));
        require(written == 7 || std::equal(cif.get(), cif.get() + size, empty.begin()));
        wchar_t wc = 0;
        require(written == 0 ||
                (TvCharConverter::parseCIFString(cif.get(), wc) && wc == static_cast<wchar_t>(unit)));

        auto mif = exactly(std::basic_string<C>(static_cast<std::size_t>(size), C('*')));
        require(TvCharConverter::getMIFString(unit, cp, mif.get(), size) == (size < 8 ? 0 : 8));
        code_page_id page = CP_UNDEFINED;
        require(size < 8 ||
                (TvCharConverter::parseMIFString(mif.get(), wc, page) && wc == static_cast<wchar_t>(unit) &&
                 page == MapperModel::mifPage(MapperModel::mifDigit(cp))));
    }
}

// Every place of a text of C, from its end to its start.
template<class C>
void checkReading(const std::basic_string<C>& text)
{
    using namespace MapperModel;
    const auto block = terminated(text);
    for (std::size_t at = text.size() + 1; at-- > 0;) {
        const C* const p = block.get() + at;
        const bool cif = beginsEscape(text, at, 'U') && hexAt(text, at + 3) >= 0;
        const bool mif = beginsEscape(text, at, 'M') && at + 3 < text.size() && text[at + 3] >= C('0') &&
                         text[at + 3] <= C('5') && hexAt(text, at + 4) >= 0;
        require(TvCharConverter::isCIF(p) == cif);
        require(TvCharConverter::isMIF(p) == mif);
        wchar_t value = -7;
        require(TvCharConverter::parseCIFString(p, value) == cif);
        require(value == (cif ? static_cast<wchar_t>(hexAt(text, at + 3)) : -7));
        value = -7;
        auto page = static_cast<code_page_id>(-7);
        require(TvCharConverter::parseMIFString(p, value, page) == mif);
        require(value == (mif ? static_cast<wchar_t>(hexAt(text, at + 4)) : -7));
        require(page == (mif ? mifPage(static_cast<char>(text[at + 3])) : static_cast<code_page_id>(-7)));
        if constexpr (sizeof(C) == sizeof(wchar_t))
            require(isCIForMIF(p) == (cif ? 'u' : mif && p[3] != L'0' ? 'm' : 0));
    }
}

// The characters of narrow text, as the iterator should find them.
class Walk {
public:
    Walk(const std::string& text, code_page_id cp) : m_text(text), m_cp(cp) {}

    bool isAtEnd() const { return m_at >= m_text.size() || m_text[m_at] == 0; }
    unsigned int next()
    {
        using namespace MapperModel;
        m_start = m_at;
        m_value = 0;
        if (isAtEnd())
            return 0;
        const auto b = byteAt(m_at);
        if (beginsEscape(m_text, m_at, 'U') && hexAt(m_text, m_at + 3) >= 0)
            return take(7, static_cast<unsigned int>(hexAt(m_text, m_at + 3)));
        if (beginsEscape(m_text, m_at, 'M') && m_at + 3 < m_text.size() && m_text[m_at + 3] >= '0' &&
            m_text[m_at + 3] <= '5' && hexAt(m_text, m_at + 4) >= 0)
            return take(8, static_cast<unsigned int>(hexAt(m_text, m_at + 4)));
        const bool pair =
            IsMultiByteCodePage(m_cp) && isLead(b, m_cp) && m_at + 1 < m_text.size() && m_text[m_at + 1] != 0;
        return pair ? take(2, b * 256 + byteAt(m_at + 1)) : take(1, b);
    }
    void digits(int n, bool hex, bool any)
    {
        for (; n > 0 && m_at < m_text.size(); --n, ++m_at) {
            const char c = m_text[m_at];
            const bool isDigit = c >= '0' && c <= '9';
            const bool isLetter = (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
            if (!any && !isDigit && !(hex && isLetter))
                return;
            const int value = isDigit ? c - '0' : isLetter ? (c | 0x20) - 'a' + 10 : 0;
            m_value = m_value * (hex ? 16 : 10) + static_cast<unsigned int>(value);
        }
    }
    int breakAt(int maxBytes, std::string& rest)
    {
        next();
        int result = 0;
        for (bool more = !isAtEnd(); more;) {
            result = 3;
            if (static_cast<int>(m_at) >= maxBytes)
                break;
            next();
            if (m_at == m_start) {
                result = 1;
                break;
            }
        }
        rest = m_text.substr(0, m_start);
        return result;
    }
    unsigned int value() const { return m_value; }

private:
    unsigned int byteAt(std::size_t at) const { return static_cast<unsigned char>(m_text[at]); }
    unsigned int take(std::size_t count, unsigned int value)
    {
        m_at += count;
        return m_value = value;
    }

    const std::string& m_text;
    code_page_id m_cp;
    std::size_t m_at = 0;
    std::size_t m_start = 0;
    unsigned int m_value = 0;
};

void checkWalking(Choices& choices, const std::string& text, code_page_id cp)
{
    TvStringA string;
    if (!text.empty()) {
        std::memcpy(string.getBuffer(static_cast<int>(text.size())), text.data(), text.size());
        string.releaseBuffer(static_cast<int>(text.size()));
    }
    require(TvAnsiTextIterator::TvAnsiTextIteratorNotRequired(string, cp) ==
            (!IsMultiByteCodePage(cp) && text.find('\\') == std::string::npos));

    TvAnsiTextIterator iterator(string, cp);
    Walk walk(text, cp);
    for (int i = 0; i < 5; ++i) {
        const std::uint8_t ask = choices.byte();
        for (int n = ask & 3; n > 0; --n)
            require(iterator.nextChar() == walk.next());
        const bool hex = (ask & 4) != 0;
        if (ask & 8)
            iterator.appendDigits(ask >> 5, hex), walk.digits(ask >> 5, hex, false);
        if (ask & 16)
            iterator.appendDigitsNoCheck(ask >> 5, hex), walk.digits(ask >> 5, hex, true);
        require(*iterator == walk.value());
    }
    // Into the string itself or into another.
    const int maxBytes = choices.byte() % 64 - 2;
    const bool isOwn = text.size() % 2 != 0;
    TvStringA other("what it held");
    TvStringA& rest = isOwn ? string : other;
    std::string expected;
    require(iterator.breakSafely(maxBytes, rest) == walk.breakAt(maxBytes, expected));
    require(std::string(rest.constStr(), static_cast<std::size_t>(rest.numOfChars())) == expected);
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    const std::string path = TV_SOURCE_DIR "/data/codepage.map";
    require(TvCharMapper::initialize(CStdStr<wchar_t>(std::wstring(path.begin(), path.end()))) == Orna::eOk);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Choices choices(data, size);
    const auto cp = static_cast<code_page_id>(static_cast<int>(choices.below(52)) - 3);
    Choices asked = choices;
    choices.number(6);
    const std::string text = choices.text(200);
    const auto unit = static_cast<unsigned short>(asked.number(2));

    checkWriting<char>(unit, cp);
    checkWriting<unsigned char>(unit, cp);
    checkWriting<wchar_t>(unit, cp);
    // In wide text a byte stands for an element of its own, or for a larger one.
    const std::string whole = text.substr(0, text.find('\0'));
    checkReading(whole);
    checkReading(std::basic_string<unsigned char>(whole.begin(), whole.end()));
    checkReading(std::wstring(whole.begin(), whole.end()));
    const std::wstring wide = wideOf(whole);
    checkReading(wide.substr(0, wide.find(L'\0')));
    checkWalking(asked, text, cp);
    return 0;
}

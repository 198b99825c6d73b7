#include "format/ScanEngines.h"
#include "format/ScanReaders.h"

#include <cwchar>

namespace TvFormatDetail {

namespace {

// A place in a wide string. The text before it tells all that the end of the scan asks for.
class TextCursor {
public:
    explicit TextCursor(const wchar_t* text) : m_begin(text), m_at(text) {}

    // The terminating 0 reads as the end.
    std::int32_t current() const { return *m_at ? *m_at : -1; }
    void take() { m_at += current() != -1; }
    int taken() const { return static_cast<int>(m_at - m_begin); }
    bool hexDigitFollows() const { return scanDigitValue(m_at[1], 16) >= 0; }

    bool holds(unsigned n) const
    {
        const wchar_t* p = m_at;
        while (n != 0 && *p && *p != static_cast<wchar_t>(-1)) {
            ++p;
            --n;
        }
        return n == 0;
    }

    bool endsBlank() const
    {
        const wchar_t* p = m_begin;
        while (p != m_at && isScanSpace(*p))
            ++p;
        return p == m_at && current() == -1;
    }

private:
    const wchar_t* m_begin;
    const wchar_t* m_at;
};

} // namespace

int scanWideText(const wchar_t* text, const wchar_t* format, va_list* args)
{
    TextCursor cursor(text);
    return scanText(cursor, format, args);
}

} // namespace TvFormatDetail

#include "TvScan.h"

#include "format/ScanEngines.h"
#include "format/ScanReaders.h"

namespace TvFormatDetail {

namespace {

constexpr std::int32_t kEnd = -1;

// A character that ends the text: its terminating 0, or one that reads like the end.
bool isEnd(wchar_t c) { return c == 0 || c == static_cast<wchar_t>(kEnd); }

class SourceCursor {
public:
    explicit SourceCursor(ScanfSourceBuf& source) : m_source(source) {}

    std::int32_t current() const { return m_source.current; }
    void take() { getACharFromScanfBuf(&m_source); }
    int taken() const { return m_source.count; }
    bool endsBlank() const { return !m_source.seenNonSpace && m_source.current == kEnd; }

    bool hexDigitFollows()
    {
        const std::int32_t lookAhead = m_source.current;
        take();
        const bool hex = scanDigitValue(m_source.current, 16) >= 0;
        undoACharFromScanfBuf(&m_source);
        m_source.current = lookAhead;
        return hex;
    }

    bool holds(unsigned n) const
    {
        if (m_source.kind)
            return true;
        if (m_source.current == kEnd)
            return false;
        for (unsigned i = 0; i + 1 < n; ++i) {
            if (isEnd(m_source.position[i]))
                return false;
        }
        return true;
    }

private:
    ScanfSourceBuf& m_source;
};

} // namespace

[[gnu::noinline]] int scanSourceBuf(bool kind, const wchar_t* text, const wchar_t* format, va_list* args)
{
    ScanfSourceBuf source{kind, false, 0, 0, text};
    getACharFromScanfBuf(&source);
    source.count = 0;
    SourceCursor cursor(source);
    return scanText(cursor, format, args);
}

} // namespace TvFormatDetail

using namespace TvFormatDetail;

void getACharFromScanfBuf(ScanfSourceBuf* source)
{
    ++source->count;
    if (source->kind)
        source->current = 0;
    else if (!source->position || isEnd(*source->position))
        source->current = kEnd;
    else
        source->current = *source->position++;
    if (source->current != kEnd && !isScanSpace(source->current))
        source->seenNonSpace = true;
}

void undoACharFromScanfBuf(ScanfSourceBuf* source)
{
    --source->count;
    // The end was read without stepping over it.
    if (!source->kind && source->current != kEnd)
        --source->position;
}

bool scanfIntegerFromBuf(ScanfSourceBuf* source, const ScanfConversion& conversion, va_list* args,
                         int& stored)
{
    SourceCursor cursor(*source);
    return readInteger(cursor, conversion, args, stored);
}

bool scanfDoubleFromBuf(ScanfSourceBuf* source, const ScanfConversion& conversion, va_list* args, int& stored)
{
    SourceCursor cursor(*source);
    return readDouble(cursor, conversion, args, stored);
}

bool scanfStringFromBuf(ScanfSourceBuf* source, const ScanfConversion& conversion, va_list* args, int& stored)
{
    SourceCursor cursor(*source);
    return readString(cursor, conversion, args, stored);
}

bool scanfCharFromBuf(ScanfSourceBuf* source, const ScanfConversion& conversion, va_list* args, int& stored)
{
    SourceCursor cursor(*source);
    return readCharacters(cursor, conversion, args, stored);
}

int InputWithFormat(bool kind, const void* source, const wchar_t* format, va_list* args)
{
    const auto* const text = source && !kind ? static_cast<const wchar_t*>(source) : L"";
    const wchar_t* const conversions = format ? format : L"";
    return kind ? scanSourceBuf(true, text, conversions, args) : scanWideText(text, conversions, args);
}

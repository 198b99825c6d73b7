#include "TvErrorStatus.h"

#include "TvCharOp.h"

#include <charconv>
#include <cstdlib>
#include <cwchar>
#include <new>
#include <utility>

namespace {

wchar_t* duplicate(const wchar_t* text) { return text ? wcsdup(text) : nullptr; }

wchar_t* copyOfMessage(const wchar_t* text)
{
    if (!text)
        text = L"";
    return _tarmcscpy(new (std::nothrow) wchar_t[std::wcslen(text) + 1], text);
}

// Writes text into a fixed buffer and drops what does not fit; there is always room for
// the terminating 0.
class CuttingWriter {
public:
    CuttingWriter(wchar_t* buffer, std::size_t size) : m_at(buffer), m_last(buffer + size - 1) { *m_at = 0; }

    void write(const wchar_t* text)
    {
        while (*text != 0 && m_at != m_last)
            *m_at++ = *text++;
        *m_at = 0;
    }

    void write(int number)
    {
        char digits[16];
        const char* end = std::to_chars(digits, digits + sizeof digits, number).ptr;
        wchar_t wide[16] = {};
        for (std::size_t i = 0; digits + i != end; ++i)
            wide[i] = static_cast<wchar_t>(digits[i]);
        write(wide);
    }

private:
    wchar_t* m_at;
    wchar_t* m_last;
};

} // namespace

TvException::TvException() : TvException(L"", 0, nullptr) {}

TvException::TvException(const wchar_t* sourceFile, int sourceLine)
    : TvException(sourceFile, sourceLine, nullptr)
{
}

TvException::TvException(const wchar_t* sourceFile, int sourceLine, TvException* cause)
    : inner(cause), m_flag(false), file(sourceFile), line(sourceLine)
{
}

// The cause belongs to somebody else and may be gone before the copy is: it is not copied.
TvException::TvException(const TvException& other)
    : inner(nullptr), m_flag(other.m_flag), file(other.file), line(other.line)
{
}

TvException& TvException::operator=(const TvException& other)
{
    if (this != &other) {
        inner = nullptr;
        m_flag = other.m_flag;
        file = other.file;
        line = other.line;
    }
    return *this;
}

TvException::~TvException() = default;

const wchar_t* TvException::description() const { return L"TvException"; }

int TvException::code() const { return 0; }

TvErrorStatus::TvErrorStatus(Orna::ErrorStatus errorStatus)
    : message(L""), m_cachedDescription(nullptr), m_status(errorStatus)
{
}

TvErrorStatus::TvErrorStatus(Orna::ErrorStatus errorStatus, const wchar_t* sourceFile, int sourceLine)
    : TvErrorStatus(errorStatus, L"", sourceFile, sourceLine)
{
}

TvErrorStatus::TvErrorStatus(Orna::ErrorStatus errorStatus, const wchar_t* text, const wchar_t* sourceFile,
                             int sourceLine)
    : TvException(sourceFile, sourceLine), message(text), m_cachedDescription(nullptr), m_status(errorStatus)
{
}

TvErrorStatus::TvErrorStatus(const TvErrorStatus& other)
    : TvException(other), message(other.message), m_cachedDescription(duplicate(other.m_cachedDescription)),
      m_status(other.m_status)
{
}

TvErrorStatus& TvErrorStatus::operator=(const TvErrorStatus& other)
{
    if (this != &other) {
        TvException::operator=(other);
        message = other.message;
        std::free(std::exchange(m_cachedDescription, duplicate(other.m_cachedDescription)));
        m_status = other.m_status;
    }
    return *this;
}

TvErrorStatus::~TvErrorStatus()
{
    std::free(m_cachedDescription);
    m_cachedDescription = nullptr;
}

const wchar_t* TvErrorStatus::description() const
{
    if (!m_cachedDescription) {
        wchar_t text[512];
        CuttingWriter writer(text, 512);
        writer.write(L"error type: ");
        writer.write(static_cast<int>(m_status));
        writer.write(L"\tmessage:");
        writer.write(message ? message : L"");
        m_cachedDescription = duplicate(text);
    }
    return m_cachedDescription;
}

TvExceptionWithMsg::TvExceptionWithMsg(const wchar_t* sourceFile, int sourceLine, const wchar_t* text)
    : TvExceptionWithMsg(sourceFile, sourceLine, text, nullptr)
{
}

TvExceptionWithMsg::TvExceptionWithMsg(const wchar_t* sourceFile, int sourceLine, const wchar_t* text,
                                       TvException* cause)
    : TvException(sourceFile, sourceLine, cause), m_message(copyOfMessage(text))
{
}

TvExceptionWithMsg::TvExceptionWithMsg(const TvExceptionWithMsg& other)
    : TvException(other), m_message(copyOfMessage(other.m_message))
{
}

TvExceptionWithMsg& TvExceptionWithMsg::operator=(const TvExceptionWithMsg& other)
{
    if (this != &other) {
        TvException::operator=(other);
        delete[] std::exchange(m_message, copyOfMessage(other.m_message));
    }
    return *this;
}

TvExceptionWithMsg::~TvExceptionWithMsg() { delete[] m_message; }

const wchar_t* TvExceptionWithMsg::description() const { return m_message; }

#include "TvPlatformBase.h"

#include "SecondNames.h"

#include <cerrno>
#include <climits>
#include <cstddef>
#include <cwchar>
#include <unistd.h>

namespace {

constexpr size_t kDoesNotFit = static_cast<size_t>(-1);
constexpr size_t kNoCharacter = static_cast<size_t>(-2);

bool isHighSurrogate(wchar_t c) { return c >= 0xD800 && c <= 0xDBFF; }
bool isLowSurrogate(wchar_t c) { return c >= 0xDC00 && c <= 0xDFFF; }

// Appends to a buffer of fixed size and remembers whether everything fitted.
class ByteSink {
public:
    ByteSink(char* out, size_t size) : m_out(out), m_size(size) {}

    void put(unsigned int byte)
    {
        if (m_length < m_size)
            m_out[m_length] = static_cast<char>(byte);
        ++m_length;
    }
    // Length with the terminating 0 in place, or kDoesNotFit.
    size_t finish()
    {
        if (m_length >= m_size)
            return kDoesNotFit;
        m_out[m_length] = '\0';
        return m_length;
    }

private:
    char* m_out;
    size_t m_size;
    size_t m_length = 0;
};

size_t encodeUtf8(const wchar_t* name, char* out, size_t size)
{
    ByteSink sink(out, size);
    for (; *name; ++name) {
        auto c = static_cast<unsigned int>(*name);
        if (c > 0x10FFFF)
            return kNoCharacter;
        if (isHighSurrogate(name[0]) && isLowSurrogate(name[1])) {
            c = 0x10000 + ((c - 0xD800) << 10) + (static_cast<unsigned int>(name[1]) - 0xDC00);
            ++name;
        }
        if (c < 0x80) {
            sink.put(c);
            continue;
        }
        if (c < 0x800) {
            sink.put(0xC0 | c >> 6);
        } else {
            if (c < 0x10000) {
                sink.put(0xE0 | c >> 12);
            } else {
                sink.put(0xF0 | c >> 18);
                sink.put(0x80 | (c >> 12 & 0x3F));
            }
            sink.put(0x80 | (c >> 6 & 0x3F));
        }
        sink.put(0x80 | (c & 0x3F));
    }
    return sink.finish();
}

// The C library drops characters that it holds to be invisible (tags, U+E0000 on) without a
// word; names that differ in them are different files.
bool isWhole(const wchar_t* name, const char* bytes)
{
    std::mbstate_t state{};
    return std::mbsrtowcs(nullptr, &bytes, 0, &state) == std::wcslen(name);
}

// kNoCharacter when the current locale cannot represent the whole name.
size_t encodeForLocale(const wchar_t* name, char* out, size_t size)
{
    const wchar_t* from = name;
    std::mbstate_t state{};
    const size_t length = std::wcsrtombs(nullptr, &from, 0, &state);
    if (length == static_cast<size_t>(-1))
        return kNoCharacter;
    if (length >= size)
        return kDoesNotFit;
    from = name;
    state = std::mbstate_t{};
    // A setlocale in another thread between the two passes must not lose the terminator.
    const size_t written = std::wcsrtombs(out, &from, size, &state);
    return written == length && isWhole(name, out) ? length : kNoCharacter;
}

} // namespace

extern "C" {

int tvPlatformFileName(const wchar_t* name, char* out, size_t outSize)
{
    if (!name || !out || outSize == 0) {
        if (out && outSize)
            *out = '\0';
        errno = EINVAL;
        return -1;
    }
    if (outSize > INT_MAX)
        outSize = INT_MAX;

    const int before = errno;
    size_t length = encodeForLocale(name, out, outSize);
    if (length == kNoCharacter)
        length = encodeUtf8(name, out, outSize);
    if (length != kDoesNotFit && length != kNoCharacter) {
        errno = before;
        return static_cast<int>(length);
    }
    *out = '\0';
    errno = length == kDoesNotFit ? ENAMETOOLONG : EILSEQ;
    return -1;
}

int _waccess(const wchar_t* path, int mode)
{
    static_assert(R_OK == 4 && W_OK == 2 && F_OK == 0, "the mode goes to access() as it is");
    if (!path || (mode & ~(R_OK | W_OK)) != 0) {
        errno = EINVAL;
        return -1;
    }
    char name[PATH_MAX];
    if (tvPlatformFileName(path, name, sizeof name) < 0) {
        errno = ENOENT;
        return -1;
    }
    if (access(name, mode) == 0)
        return 0;
    switch (errno) {
    case EACCES:
    case EPERM:
    case EROFS:
    case ETXTBSY:
        errno = EACCES;
        break;
    case ENOTDIR:
    case ELOOP:
    case ENAMETOOLONG:
        errno = ENOENT;
        break;
    default:
        break;
    }
    return -1;
}

} // extern "C"

TV_SECOND_NAME(_waccess);

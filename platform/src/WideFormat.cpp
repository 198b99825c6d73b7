#include "TvPlatformBase.h"

#include "SecondNames.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <sys/types.h>

namespace {

constexpr int kHexPlaces = 13; // digits of %a without a precision: all that a double has

// One conversion, from behind its % to its letter.
struct Conversion {
    bool left = false;
    bool plus = false;
    bool blank = false;
    bool alternate = false;
    bool zero = false;
    int width = 0;
    int precision = -1; // -1: none given

    enum class Size {
        kPlain,
        kChar,
        kShort,
        kLong,
        kLongLong,
        kMax,
        kSize,
        kPtrDiff,
        kInt32,
        kInt64,
        kLongDouble,
        kWide
    };
    Size size = Size::kPlain;
    wchar_t letter = 0;
};

using Size = Conversion::Size;

// Where the text goes: into a buffer without a bound, or nowhere but into the count.
class Output {
public:
    explicit Output(wchar_t* buffer) : m_buffer(buffer) {}

    void put(wchar_t c) { fill(c, 1); }
    void fill(wchar_t c, std::int64_t count)
    {
        if (count <= 0 || !claim(count))
            return;
        if (m_buffer)
            m_buffer = std::wmemset(m_buffer, c, static_cast<size_t>(count)) + count;
    }
    void copy(const wchar_t* text, size_t length)
    {
        if (!claim(static_cast<std::int64_t>(length)))
            return;
        if (m_buffer)
            m_buffer = std::wmemcpy(m_buffer, text, length) + length;
    }
    void copyAscii(const char* text, size_t length)
    {
        for (size_t i = 0; i < length; ++i)
            put(static_cast<unsigned char>(text[i]));
    }
    void fail(int error)
    {
        if (m_error == 0)
            m_error = error;
    }
    bool ok() const { return m_error == 0; }
    int error() const { return m_error; }
    int count() const { return static_cast<int>(m_count); }
    void terminate()
    {
        if (m_buffer)
            *m_buffer = L'\0';
    }

private:
    bool claim(std::int64_t count)
    {
        if (m_error == 0 && m_count + count > INT_MAX)
            m_error = EOVERFLOW;
        if (m_error != 0)
            return false;
        m_count += count;
        return true;
    }

    wchar_t* m_buffer;
    std::int64_t m_count = 0;
    int m_error = 0;
};

// The caller's arguments; a struct, so that helpers can take the next one by reference.
struct Arguments {
    va_list list;
};

// Reads a number of the format; false when it is above INT_MAX.
bool readNumber(const wchar_t*& at, int& value)
{
    std::int64_t number = 0;
    for (; *at >= L'0' && *at <= L'9'; ++at) {
        number = number * 10 + (*at - L'0');
        if (number > INT_MAX)
            return false;
    }
    value = static_cast<int>(number);
    return true;
}

void readFlags(const wchar_t*& at, Conversion& conversion)
{
    for (;; ++at) {
        switch (*at) {
        case L'-':
            conversion.left = true;
            break;
        case L'+':
            conversion.plus = true;
            break;
        case L' ':
            conversion.blank = true;
            break;
        case L'#':
            conversion.alternate = true;
            break;
        case L'0':
            conversion.zero = true;
            break;
        default:
            return;
        }
    }
}

bool readWidth(const wchar_t*& at, Arguments& arguments, Conversion& conversion)
{
    if (*at != L'*')
        return readNumber(at, conversion.width);
    ++at;
    conversion.width = va_arg(arguments.list, int);
    if (conversion.width < 0) {
        conversion.left = true;
        if (conversion.width == INT_MIN)
            return false;
        conversion.width = -conversion.width;
    }
    return true;
}

bool readPrecision(const wchar_t*& at, Arguments& arguments, Conversion& conversion)
{
    if (*at != L'.')
        return true;
    if (*++at != L'*')
        return readNumber(at, conversion.precision);
    ++at;
    conversion.precision = std::max(va_arg(arguments.list, int), -1);
    return true;
}

Size readSize(const wchar_t*& at)
{
    const auto take = [&at](int length, Size size) {
        at += length;
        return size;
    };
    switch (*at) {
    case L'h':
        return at[1] == L'h' ? take(2, Size::kChar) : take(1, Size::kShort);
    case L'l':
        return at[1] == L'l' ? take(2, Size::kLongLong) : take(1, Size::kLong);
    case L'j':
        return take(1, Size::kMax);
    case L'z':
        return take(1, Size::kSize);
    case L't':
        return take(1, Size::kPtrDiff);
    case L'L':
        return take(1, Size::kLongDouble);
    case L'w':
        return take(1, Size::kWide);
    case L'I':
        if (at[1] == L'6' && at[2] == L'4')
            return take(3, Size::kInt64);
        if (at[1] == L'3' && at[2] == L'2')
            return take(3, Size::kInt32);
        return take(1, Size::kSize);
    default:
        return Size::kPlain;
    }
}

// Puts a field of prefix ("-", "0x") and body of the given length, padded to the width.
template<class Body>
void putField(Output& out, const Conversion& conversion, const char* prefix, size_t prefixLength,
              std::int64_t bodyLength, bool zeroPad, Body body)
{
    const std::int64_t padding = conversion.width - static_cast<std::int64_t>(prefixLength) - bodyLength;
    if (!conversion.left && !zeroPad)
        out.fill(L' ', padding);
    out.copyAscii(prefix, prefixLength);
    if (!conversion.left && zeroPad)
        out.fill(L'0', padding);
    body();
    if (conversion.left)
        out.fill(L' ', padding);
}

std::int64_t signedArgument(Arguments& arguments, Size size)
{
    switch (size) {
    case Size::kChar:
        return static_cast<signed char>(va_arg(arguments.list, int));
    case Size::kShort:
        return static_cast<short>(va_arg(arguments.list, int));
    case Size::kLong:
        return va_arg(arguments.list, long);
    case Size::kLongLong:
    case Size::kLongDouble:
        return va_arg(arguments.list, long long);
    // NOLINTNEXTLINE(bugprone-branch-clone): each type by its own name, though here they are one
    case Size::kMax:
        return va_arg(arguments.list, std::intmax_t);
    case Size::kSize:
        return va_arg(arguments.list, ssize_t);
    case Size::kPtrDiff:
        return va_arg(arguments.list, std::ptrdiff_t);
    case Size::kInt64:
        return va_arg(arguments.list, std::int64_t);
    default:
        return va_arg(arguments.list, int);
    }
}

std::uint64_t unsignedArgument(Arguments& arguments, Size size)
{
    const auto value = static_cast<std::uint64_t>(signedArgument(arguments, size));
    switch (size) {
    case Size::kChar:
        return value & 0xFF;
    case Size::kShort:
        return value & 0xFFFF;
    case Size::kPlain:
    case Size::kWide:
    case Size::kInt32:
        return value & 0xFFFFFFFF;
    default:
        return value;
    }
}

void formatInteger(Output& out, const Conversion& conversion, Arguments& arguments)
{
    const wchar_t letter = conversion.letter;
    const bool isSigned = letter == L'd' || letter == L'i';
    char prefix[3];
    size_t prefixLength = 0;
    std::uint64_t value;
    if (isSigned) {
        const std::int64_t given = signedArgument(arguments, conversion.size);
        value = given < 0 ? 0 - static_cast<std::uint64_t>(given) : static_cast<std::uint64_t>(given);
        if (given < 0)
            prefix[prefixLength++] = '-';
        else if (conversion.plus || conversion.blank)
            prefix[prefixLength++] = conversion.plus ? '+' : ' ';
    } else {
        value = unsignedArgument(arguments, conversion.size);
    }

    const unsigned int base = letter == L'o' ? 8 : letter == L'x' || letter == L'X' ? 16 : 10;
    const char* digits = letter == L'X' ? "0123456789ABCDEF" : "0123456789abcdef";
    if (base == 16 && conversion.alternate && value != 0) {
        prefix[prefixLength++] = '0';
        prefix[prefixLength++] = static_cast<char>(letter);
    }

    char text[32]; // 22 octal digits of 64 bits
    char* first = text + sizeof text;
    for (; value != 0; value /= base)
        *--first = digits[value % base];
    const std::int64_t length = text + sizeof text - first;
    std::int64_t zeros = std::max(conversion.precision < 0 ? 1 : conversion.precision, 0) - length;
    if (base == 8 && conversion.alternate)
        zeros = std::max<std::int64_t>(zeros, 1);
    zeros = std::max<std::int64_t>(zeros, 0);
    putField(out, conversion, prefix, prefixLength, zeros + length,
             conversion.zero && conversion.precision < 0, [&] {
                 out.fill(L'0', zeros);
                 out.copyAscii(first, static_cast<size_t>(length));
             });
}

// The C library does the digits, without a width; the widening and padding are ours.
class FloatText {
public:
    ~FloatText() { std::free(m_large); }

    // `spec` takes the precision and the value. False when memory ran out or the text is
    // longer than INT_MAX.
    template<class Float>
    bool format(const char* spec, int precision, Float value)
    {
        const int length = std::snprintf(m_small, sizeof m_small, spec, precision, value);
        if (length < 0)
            return false;
        m_length = static_cast<size_t>(length);
        if (m_length < sizeof m_small)
            return true;
        m_large = static_cast<char*>(std::malloc(m_length + 1));
        return m_large && std::snprintf(m_large, m_length + 1, spec, precision, value) == length;
    }
    const char* text() const { return m_large ? m_large : m_small; }
    size_t length() const { return m_length; }

private:
    char m_small[512];
    char* m_large = nullptr;
    size_t m_length = 0;
};

// Reads text of the current locale without looking past its end or its terminating 0.
class LocaleReader {
public:
    enum class Step { kCharacter, kMore, kInvalid };

    Step feed(char byte, wchar_t& c)
    {
        switch (std::mbrtowc(&c, &byte, 1, &m_state)) {
        case static_cast<size_t>(-1):
            return Step::kInvalid;
        case static_cast<size_t>(-2):
            return Step::kMore;
        default:
            return Step::kCharacter;
        }
    }

private:
    std::mbstate_t m_state{};
};

// The locale's decimal point may be several bytes: everything else is ASCII.
std::int64_t countCharacters(const char* text, size_t length)
{
    LocaleReader reader;
    std::int64_t count = 0;
    wchar_t c;
    for (size_t i = 0; i < length; ++i)
        if (reader.feed(text[i], c) != LocaleReader::Step::kMore)
            ++count;
    return count;
}

void putCharacters(Output& out, const char* text, size_t length)
{
    LocaleReader reader;
    wchar_t c;
    for (size_t i = 0; i < length; ++i) {
        const auto step = reader.feed(text[i], c);
        if (step == LocaleReader::Step::kInvalid)
            out.fail(EILSEQ);
        else if (step == LocaleReader::Step::kCharacter)
            out.put(c);
    }
}

// What is printed behind "nan": a NaN that would trap, and the one that the processor makes of an
// operation without a result, have names of their own. `number` has passed no arithmetic.
const char* nanSuffix(double number, bool upper)
{
    std::uint64_t bits;
    std::memcpy(&bits, &number, sizeof bits);
    constexpr std::uint64_t kQuiet = 0x0008000000000000;
    constexpr std::uint64_t kIndefinite = 0xFFF8000000000000;
    if ((bits & kQuiet) == 0)
        return upper ? "(SNAN)" : "(snan)";
    if (bits == kIndefinite)
        return upper ? "(IND)" : "(ind)";
    return "";
}

void formatFloat(Output& out, const Conversion& conversion, Arguments& arguments)
{
    const bool isLong = conversion.size == Size::kLongDouble;
    const bool isUpper = conversion.letter < L'a';
    char spec[10];
    char* end = spec;
    *end++ = '%';
    if (conversion.alternate)
        *end++ = '#';
    if (conversion.plus)
        *end++ = '+';
    if (conversion.blank)
        *end++ = ' ';
    *end++ = '.';
    *end++ = '*'; // a negative precision is none
    if (isLong)
        *end++ = 'L';
    *end++ = static_cast<char>(conversion.letter);
    *end = '\0';

    FloatText number;
    const char* suffix = "";
    bool done;
    errno = ENOMEM;
    if (isLong) {
        const long double value = va_arg(arguments.list, long double);
        done = number.format(spec, conversion.precision, value);
        if (std::isnan(value))
            suffix = nanSuffix(static_cast<double>(value), isUpper);
    } else {
        const double value = va_arg(arguments.list, double);
        const bool isHexLetter = conversion.letter == L'a' || conversion.letter == L'A';
        const int precision = isHexLetter && conversion.precision < 0 ? kHexPlaces : conversion.precision;
        done = number.format(spec, precision, value);
        if (std::isnan(value))
            suffix = nanSuffix(value, isUpper);
    }
    if (!done)
        return out.fail(errno);

    const char* text = number.text();
    size_t length = number.length();
    size_t prefixLength = *text == '-' || *text == '+' || *text == ' ' ? 1 : 0;
    const bool isHex = text[prefixLength] == '0' && (text[prefixLength + 1] | 0x20) == 'x';
    if (isHex)
        prefixLength += 2;
    const char* body = text + prefixLength;
    const bool isFinite = isHex || (*body >= '0' && *body <= '9');
    length -= prefixLength;
    const size_t suffixLength = std::strlen(suffix);
    putField(out, conversion, text, prefixLength,
             countCharacters(body, length) + static_cast<std::int64_t>(suffixLength),
             conversion.zero && isFinite, [&] {
                 putCharacters(out, body, length);
                 out.copyAscii(suffix, suffixLength);
             });
}

void formatPointer(Output& out, const Conversion& conversion, Arguments& arguments)
{
    auto value = reinterpret_cast<std::uintptr_t>(va_arg(arguments.list, void*));
    char text[16];
    for (int i = 15; i >= 0; --i, value >>= 4)
        text[i] = "0123456789ABCDEF"[value & 0xF];
    putField(out, conversion, "", 0, sizeof text, conversion.zero, [&] { out.copyAscii(text, sizeof text); });
}

void putWideText(Output& out, const Conversion& conversion, const wchar_t* text, size_t length)
{
    putField(out, conversion, "", 0, static_cast<std::int64_t>(length), conversion.zero,
             [&] { out.copy(text, length); });
}

void formatWideString(Output& out, const Conversion& conversion, const wchar_t* text)
{
    if (!text)
        text = L"(null)";
    // With a precision the text need not be terminated.
    const size_t length = conversion.precision < 0 ? std::wcslen(text)
                                                   : wcsnlen(text, static_cast<size_t>(conversion.precision));
    putWideText(out, conversion, text, length);
}

// Calls `use` with each character, at most `limit`; false for bytes that the locale cannot read.
template<class Use>
bool forEachCharacter(const char* text, std::int64_t limit, Use use)
{
    LocaleReader reader;
    bool pending = false;
    for (std::int64_t count = 0; count < limit; ++text) {
        if (*text == '\0')
            return !pending;
        wchar_t c;
        const auto step = reader.feed(*text, c);
        if (step == LocaleReader::Step::kInvalid)
            return false;
        pending = step == LocaleReader::Step::kMore;
        if (pending)
            continue;
        use(c);
        ++count;
    }
    return true;
}

void formatByteString(Output& out, const Conversion& conversion, const char* text)
{
    if (!text)
        return formatWideString(out, conversion, nullptr);
    const std::int64_t limit = conversion.precision < 0 ? INT64_MAX : conversion.precision;
    std::int64_t length = 0;
    if (!forEachCharacter(text, limit, [&length](wchar_t) { ++length; }))
        return out.fail(EILSEQ);
    putField(out, conversion, "", 0, length, conversion.zero,
             [&] { forEachCharacter(text, limit, [&out](wchar_t c) { out.put(c); }); });
}

void formatCharacter(Output& out, const Conversion& conversion, Arguments& arguments, bool wide)
{
    auto c = static_cast<wchar_t>(va_arg(arguments.list, wint_t));
    if (!wide) {
        const wint_t read = std::btowc(static_cast<unsigned char>(c));
        if (read == WEOF)
            return out.fail(EILSEQ);
        c = static_cast<wchar_t>(read);
    }
    putWideText(out, conversion, &c, 1);
}

// In wide formatting the capital letters are the byte ones.
bool takesWideText(const Conversion& conversion)
{
    switch (conversion.size) {
    case Size::kLong:
    case Size::kWide:
        return true;
    case Size::kShort:
    case Size::kChar:
        return false;
    default:
        return conversion.letter == L's' || conversion.letter == L'c';
    }
}

void formatConversion(Output& out, const Conversion& conversion, Arguments& arguments)
{
    switch (conversion.letter) {
    case L'd':
    case L'i':
    case L'u':
    case L'o':
    case L'x':
    case L'X':
        return formatInteger(out, conversion, arguments);
    case L'e':
    case L'E':
    case L'f':
    case L'F':
    case L'g':
    case L'G':
    case L'a':
    case L'A':
        return formatFloat(out, conversion, arguments);
    case L'p':
        return formatPointer(out, conversion, arguments);
    case L'c':
    case L'C':
        return formatCharacter(out, conversion, arguments, takesWideText(conversion));
    case L's':
    case L'S':
        if (takesWideText(conversion))
            return formatWideString(out, conversion, va_arg(arguments.list, const wchar_t*));
        return formatByteString(out, conversion, va_arg(arguments.list, const char*));
    case L'n': // meant: never stores through an argument
    case L'\0':
        return out.fail(EINVAL);
    default: // meant: a letter without a meaning, the second % included, prints itself
        return out.put(conversion.letter);
    }
}

// The whole format; the result of the public functions.
int formatAll(Output& out, const wchar_t* format, Arguments& arguments)
{
    while (*format && out.ok()) {
        const wchar_t* literal = format;
        while (*format && *format != L'%')
            ++format;
        out.copy(literal, static_cast<size_t>(format - literal));
        if (!*format)
            break;
        ++format;

        Conversion conversion;
        readFlags(format, conversion);
        if (!readWidth(format, arguments, conversion) || !readPrecision(format, arguments, conversion)) {
            out.fail(EOVERFLOW);
            break;
        }
        conversion.size = readSize(format);
        conversion.letter = *format;
        formatConversion(out, conversion, arguments);
        if (*format)
            ++format;
    }
    if (out.ok())
        return out.count();
    errno = out.error();
    return -1;
}

int formatOrCount(wchar_t* buffer, const wchar_t* format, va_list args)
{
    const int before = errno;
    Output out(buffer);
    Arguments arguments;
    va_copy(arguments.list, args);
    const int count = formatAll(out, format, arguments);
    va_end(arguments.list);
    out.terminate();
    if (count < 0 && buffer)
        *buffer = L'\0';
    else if (count >= 0)
        errno = before;
    return count;
}

} // namespace

extern "C" int _vscwprintf(const wchar_t* format, va_list args)
{
    if (!format) {
        errno = EINVAL;
        return -1;
    }
    return formatOrCount(nullptr, format, args);
}

int vswprintf(wchar_t* buffer, const wchar_t* format, va_list args)
{
    if (!buffer || !format) {
        if (buffer)
            *buffer = L'\0';
        errno = EINVAL;
        return -1;
    }
    return formatOrCount(buffer, format, args);
}

int swprintf(wchar_t* buffer, const wchar_t* format, ...)
{
    va_list args;
    va_start(args, format);
    const int count = vswprintf(buffer, format, args);
    va_end(args);
    return count;
}

TV_SECOND_NAME(_vscwprintf);
extern "C" TV_PLATFORM_API int tvPlatform_vswprintf(wchar_t*, const wchar_t*, va_list)
    __attribute__((alias("_Z9vswprintfPwPKwP13__va_list_tag")));

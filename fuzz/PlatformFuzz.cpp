// Any bytes for the platform library's readers and formatters. Byte 0 chooses the function: the
// two number readers, path splitting and file names beside their rules spelled out, one
// conversion of a known argument beside the C library's, any format by itself.
#include "TvCharMapper.h"
#include "TvPlatformBase.h"
#include "TvPlatformText.h"

#include "FuzzInput.h"
#include "HexPlaces.h"
#include "PathPieces.h"

#include <algorithm>
#include <bit>
#include <cerrno>
#include <climits>
#include <cmath>
#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <cwchar>
#include <iterator>
#include <memory>
#include <string>

namespace {

// A number in digits of several scripts, and the same in ASCII.
struct NumberText {
    std::wstring scripts, ascii;

    explicit NumberText(const std::string& bytes)
    {
        constexpr wchar_t zeros[] = {0x0660, 0x0966, 0xFF10, 0x0E50};
        for (const char c : bytes.substr(0, bytes.find('\0'))) {
            const auto b = static_cast<unsigned char>(c);
            const int digit = b % 10;
            scripts += b < 0x80 ? static_cast<wchar_t>(b) : static_cast<wchar_t>(zeros[b / 10 % 4] + digit);
            ascii += b < 0x80 ? static_cast<wchar_t>(b) : static_cast<wchar_t>(L'0' + digit);
        }
    }
};

void checkInteger(const NumberText& number)
{
    const long expected = std::wcstol(number.ascii.c_str(), nullptr, 10);
    const bool isOut = expected > INT_MAX || expected < INT_MIN;
    errno = 0;
    const int value = _wtoi(terminated(number.scripts).get());
    require(errno == (isOut ? ERANGE : 0));
    require(value == (isOut ? (expected > 0 ? INT_MAX : INT_MIN) : static_cast<int>(expected)));
}

void checkFloat(const NumberText& number)
{
    // A NaN's own bits are not read here, and hexadecimal numbers are all ASCII.
    const std::wstring ascii = number.ascii.substr(0, number.ascii.find(L'('));
    const double expected = std::wcstod(ascii.c_str(), nullptr);
    errno = 0;
    const bool isDecimal = ascii.find_first_of(L"xX") == std::wstring::npos;
    const double value = _wtof(terminated(isDecimal ? number.scripts : number.ascii).get());
    require(std::bit_cast<std::uint64_t>(value) == std::bit_cast<std::uint64_t>(expected));
    require(errno == 0 || (errno == ERANGE && (std::isinf(value) || value == 0)));
    require(errno == ERANGE || !std::isinf(value) || ascii.find_first_of(L"nN") != std::wstring::npos);
}

// Each buffer of any size; one that is left out has none.
void checkSplitPath(Choices& choices)
{
    std::size_t room[4];
    std::unique_ptr<wchar_t[]> buffer[4];
    for (int i = 0; i < 4; ++i) {
        room[i] = choices.byte();
        if (room[i] != 0)
            buffer[i] = exactly(std::wstring(room[i], L'*'));
    }
    const std::wstring whole = wideOf(choices.rest());
    const std::wstring path = whole.substr(0, whole.find(L'\0'));
    const PathPieces found = piecesOf(path);
    const std::wstring pieces[4] = {found.drive, found.dir, found.fname, found.ext};
    bool fits = true;
    for (int i = 0; i < 4; ++i)
        fits = fits && (room[i] == 0 || pieces[i].size() < room[i]);
    const int result = _wsplitpath_s(terminated(path).get(), buffer[0].get(), room[0], buffer[1].get(),
                                     room[1], buffer[2].get(), room[2], buffer[3].get(), room[3]);
    require(result == (fits ? 0 : ERANGE));
    for (int i = 0; i < 4; ++i)
        require(room[i] == 0 || buffer[i].get() == (fits ? pieces[i] : std::wstring()));
}

// UTF-8 of whole characters; false for an element that is none.
bool utf8Of(const std::wstring& name, std::string& bytes)
{
    for (std::size_t at = 0; at < name.size(); ++at) {
        auto c = static_cast<std::uint32_t>(name[at]);
        if (c > 0x10FFFF)
            return false;
        const std::uint32_t next = at + 1 < name.size() ? static_cast<std::uint32_t>(name[at + 1]) : 0;
        if (c / 0x400 == 0x36 && next / 0x400 == 0x37) {
            c = 0x10000 + c % 0x400 * 0x400 + next % 0x400;
            ++at;
        }
        const int more = c < 0x80 ? 0 : c < 0x800 ? 1 : c < 0x10000 ? 2 : 3;
        constexpr unsigned heads[] = {0, 0xC0, 0xE0, 0xF0};
        bytes += static_cast<char>(heads[more] + (c >> 6 * more));
        for (int i = more - 1; i >= 0; --i)
            bytes += static_cast<char>(0x80 + (c >> 6 * i) % 64);
    }
    return true;
}

void checkFileName(Choices& choices)
{
    const std::size_t room = choices.byte();
    const std::wstring whole = wideOf(choices.rest());
    const std::wstring name = whole.substr(0, whole.find(L'\0'));
    std::string expected;
    const bool isName = utf8Of(name, expected);
    const bool fits = isName && expected.size() < room;
    const auto buffer = exactly(std::string(room, '*'));
    const int result = tvPlatformFileName(terminated(name).get(), buffer.get(), room);
    require(result == (fits ? static_cast<int>(expected.size()) : -1));
    require(room == 0 || buffer.get() == (fits ? expected : std::string()));
}

// Without 1361, which has lead bytes here and none in the registry.
void checkByteLength(Choices& choices)
{
    constexpr unsigned pages[] = {932, 936, 949, 950, 1252, 65001};
    const unsigned page = pages[choices.below(std::size(pages))];
    tvPlatformSetACP(page);
    const std::string whole = choices.rest();
    const std::string text = whole.substr(0, whole.find('\0'));
    std::size_t expected = 0;
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (IsDBCSLeadByteEx(page, static_cast<unsigned char>(text[at])) && ++at == text.size())
            break;
        ++expected;
    }
    require(_mbslen(reinterpret_cast<const unsigned char*>(terminated(text).get())) == expected);
    tvPlatformSetACP(0);
}

template<class Argument>
void requireSame(const std::wstring& ours, const std::wstring& theirs, Argument argument)
{
    static wchar_t text[4000], expected[4000];
    const int length = swprintf(text, ours.c_str(), argument);
    require(length == std::swprintf(expected, 4000, theirs.c_str(), argument));
    require(length < 0 || std::wcscmp(text, expected) == 0);
}

void checkConversion(Choices& choices)
{
    const std::uint8_t shape = choices.byte();
    std::wstring start = L"a%";
    for (int flags = shape & 3; flags > 0; --flags)
        start += L"-+ #0"[choices.below(5)];
    const std::uint32_t width = choices.below(100);
    if (width != 0)
        start += std::to_wstring(width);
    if (shape & 4)
        start += L'.';
    if ((shape & 12) == 12)
        start += std::to_wstring(choices.below(100));
    const std::uint32_t kind = choices.below(4);
    const std::uint32_t letter = choices.byte();
    const std::uint64_t value = choices.number(8);
    if (kind == 0) {
        constexpr const wchar_t* sizes[] = {L"", L"h", L"hh", L"l", L"ll", L"j", L"z", L"t"};
        const std::wstring format = start + sizes[letter % 8] + L"diuoxX"[letter / 8 % 6] + L"z";
        if (letter % 8 < 3)
            requireSame(format, format, static_cast<int>(value));
        else
            requireSame(format, format, static_cast<long>(value));
    } else if (kind == 1) {
        const double number = std::bit_cast<double>(value);
        const wchar_t conversion = L"eEfFgGaA"[letter % 8];
        const std::wstring end = {conversion, L'z'};
        if (!std::isnan(number)) // of which there are kinds here
            requireSame(start + end, withHexPlaces(start, conversion) + end, number);
    } else if (kind == 2 && start.find(L'0') == start.npos) { // the C library leaves 0 open there
        const std::wstring text = wideOf(choices.text(300));
        requireSame(start + L"sz", start + L"lsz", text.c_str());
    }
}

int lengthOf(const wchar_t* format, ...)
{
    va_list args;
    va_start(args, format);
    const int length = _vscwprintf(format, args);
    va_end(args);
    return length;
}

// A format of which no field is longer than four digits say, and which takes nothing larger
// than an argument's place.
std::wstring modest(const std::wstring& any)
{
    std::wstring format;
    int digits = 0;
    for (const wchar_t c : any.substr(0, any.find(L'\0'))) {
        digits = c >= L'0' && c <= L'9' ? digits + 1 : 0;
        if (digits <= 4 && c != L'L' && c != L'*')
            format += c;
    }
    return format;
}

// Texts as all arguments, which may be read as integers as well; eight doubles.
void checkAnyFormat(Choices& choices)
{
    const std::wstring format = modest(wideOf(choices.rest()));
    if (std::count(format.begin(), format.end(), L'%') > 12)
        return;
    const auto block = terminated(format);
    const wchar_t* const t = L"door 17";
    const int length = lengthOf(block.get(), t, t, t, t, t, t, t, t, t, t, t, t, t, t, t, t, t, t, t, t, t, t,
                                t, t, 1.5, -2e10, 1e300, -0.0, 1e-300, 12.0, 66.5, 1e20);
    require(length >= -1);
    if (length < 0 || length > 100000)
        return;
    const auto buffer = exactly(std::wstring(static_cast<std::size_t>(length) + 1, L'*'));
    require(swprintf(buffer.get(), block.get(), t, t, t, t, t, t, t, t, t, t, t, t, t, t, t, t, t, t, t, t, t,
                     t, t, t, 1.5, -2e10, 1e300, -0.0, 1e-300, 12.0, 66.5, 1e20) == length);
    require(buffer[static_cast<std::size_t>(length)] == 0);
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
    switch (choices.below(7)) {
    case 0:
        checkInteger(NumberText(choices.rest()));
        break;
    case 1:
        checkFloat(NumberText(choices.rest()));
        break;
    case 2:
        checkSplitPath(choices);
        break;
    case 3:
        checkFileName(choices);
        break;
    case 4:
        checkByteLength(choices);
        break;
    case 5:
        checkConversion(choices);
        break;
    default:
        checkAnyFormat(choices);
    }
    return 0;
}

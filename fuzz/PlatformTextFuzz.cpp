// Any text through the conversions under the Windows names, in buffers of any size: what the
// mapper makes of it, cut to the buffer as promised.
//
// Byte 0 chooses the page number, byte 1 the system code page, then come how the length is told
// and how large the buffer is; the rest is the text.
#include "TvCharMapper.h"
#include "TvCharOp.h"
#include "TvPlatformBase.h"
#include "TvPlatformText.h"

#include "FuzzInput.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cwctype>
#include <iterator>
#include <string>

namespace {

constexpr unsigned kNumbers[] = {0,    1,    2,    3,     42,    437,   775,        850,   852,   855,
                                 857,  860,  861,  863,   864,   865,   866,        869,   874,   932,
                                 936,  949,  950,  1200,  1250,  1251,  1252,       1253,  1254,  1255,
                                 1256, 1257, 1258, 1361,  10000, 20127, 20936,      28591, 28592, 28605,
                                 1600, 7000, 8000, 65000, 65001, 65535, 0x80000000u};
constexpr unsigned kSystemPages[] = {1252, 932, 936, 949, 950, 1251, 65001, 1361};

// The conversion of `source` by `convert`, of which `whole` is all that it may give.
template<class To, class From, class Convert>
void check(const std::basic_string<From>& source, std::basic_string<To> whole, bool isTerminated,
           std::size_t room, Convert convert)
{
    // The length that is told counts what stands behind a 0 as well; -1 does not.
    const std::size_t reached = isTerminated ? std::min(source.find(From(0)), source.size()) : source.size();
    const int length = isTerminated ? -1 : static_cast<int>(source.size());
    if (isTerminated || reached == 0)
        whole += To(0);
    const auto block = isTerminated ? terminated(source) : exactly(source);
    const auto size = static_cast<int>(whole.size());
    if (length == 0) {
        require(convert(block.get(), length, static_cast<To*>(nullptr), 0) == 0);
        return;
    }
    require(convert(block.get(), length, static_cast<To*>(nullptr), 0) == size);

    room %= whole.size() + 20;
    const auto buffer = exactly(std::basic_string<To>(room, To('*')));
    std::basic_string<To> after(room, To('*'));
    const bool fits = room >= whole.size();
    if (fits)
        std::copy(whole.begin(), whole.end(), after.begin());
    if (room > 0 && (!fits || whole.empty()))
        after[0] = To(0);
    require(convert(block.get(), length, buffer.get(), static_cast<int>(room)) ==
            (fits || room == 0 ? size : 0));
    require(std::equal(after.begin(), after.end(), buffer.get()));
}

template<class T>
std::basic_string<T> textOf(const TvVector<T>& result)
{
    return result.isEmpty()
               ? std::basic_string<T>()
               : std::basic_string<T>(result.asArrayPtr(), static_cast<std::size_t>(result.length()) - 1);
}

void checkTypes(const std::wstring& text)
{
    const auto block = exactly(text);
    const auto types = exactly(std::basic_string<unsigned short>(text.size(), 0));
    const int length = static_cast<int>(text.size());
    require(TvCharOp::GetStringType(1, block.get(), length, types.get()) == (length > 0));
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto c = static_cast<std::wint_t>(text[i]);
        const int expected =
            (std::iswalpha(c) ? 0x100 : 0) | (std::iswupper(c) ? 1 : 0) | (std::iswlower(c) ? 2 : 0) |
            (std::iswdigit(c) ? 4 : 0) | (std::iswspace(c) ? 8 : 0) | (std::iswpunct(c) ? 0x10 : 0) |
            (std::iswcntrl(c) ? 0x20 : 0) | (std::iswblank(c) ? 0x40 : 0) | (std::iswxdigit(c) ? 0x80 : 0);
        require(types[i] == expected);
    }
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
    const unsigned number = kNumbers[choices.below(std::size(kNumbers))];
    tvPlatformSetACP(kSystemPages[choices.below(std::size(kSystemPages))]);
    const bool isTerminated = choices.below(2) != 0;
    const auto room = static_cast<std::size_t>(choices.number(2));
    const std::string bytes = choices.rest();
    const std::wstring wide = wideOf(bytes);

    const code_page_id id = TvCodePageMapper::ansiCpToOrnaCp(static_cast<int>(number));
    TvVector<wchar_t> toWide;
    TvCharMapper::multiByteToWideChar(id, bytes.data(), static_cast<int>(bytes.size()), toWide);
    check<wchar_t>(bytes, textOf(toWide), isTerminated, room,
                   [&](const char* src, int n, wchar_t* dst, int most) {
                       return MultiByteToWideChar(number, 0, src, n, dst, most);
                   });
    TvVector<char> toBytes;
    TvCharMapper::wideCharToMultiByte(id, wide.data(), static_cast<int>(wide.size()), toBytes);
    check<char>(wide, textOf(toBytes), isTerminated, room,
                [&](const wchar_t* src, int n, char* dst, int most) {
                    return WideCharToMultiByte(number, 0, src, n, dst, most, nullptr, nullptr);
                });
    for (const char b : bytes)
        require(IsDBCSLeadByteEx(number, static_cast<unsigned char>(b)) ==
                tvIsLeadByte(static_cast<unsigned char>(b), id));
    checkTypes(wide);
    return 0;
}

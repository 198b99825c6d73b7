// Formats from outside for the output engine; the arguments are fixed.
//
// The lowest bit of the second byte chooses them: small integers, where %s stands for no text
// and is left out, or pointers to texts, which every integer conversion may read as well.
#include "TvFormat.h"

#include "FuzzInput.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cwchar>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

namespace {

// More than any format here may take: each `%` and each `*` takes at most one.
constexpr std::size_t kMostItems = 40;

const wchar_t* const kTexts[] = {L"", L"door", L"-1.5", L"a longer text than most fields are wide"};

template<std::size_t... I>
int formatTexts(wchar_t* buffer, int capacity, const wchar_t* format, std::index_sequence<I...>)
{
    return FormatUtil::outputStringWithFormat(buffer, capacity, format, kTexts[I % std::size(kTexts)]..., 1.5,
                                              -2.5e10, 1e300, -0.0, 1e-300, 12.0, 66.5, 1e20);
}

template<std::size_t... I>
int formatIntegers(wchar_t* buffer, int capacity, const wchar_t* format, std::index_sequence<I...>)
{
    return FormatUtil::outputStringWithFormat(buffer, capacity, format,
                                              static_cast<long long>(I) * 7 - (I % 3 == 1 ? 12 : 0) +
                                                  (I % 5 == 4 ? 0x80000000LL : 0)...,
                                              1.5, -2.5e10, 1e300, -0.0, 1e-300, 12.0, 66.5, 1e20);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size < 2)
        return 0;
    const int capacity = data[0] | (data[1] >> 4) << 8;
    const bool texts = data[1] & 1;
    std::vector<wchar_t> format(data + 2, data + size);
    const auto items =
        std::count(format.begin(), format.end(), L'%') + std::count(format.begin(), format.end(), L'*');
    if (items > static_cast<std::ptrdiff_t>(kMostItems))
        return 0;
    if (!texts)
        format.erase(std::remove(format.begin(), format.end(), L's'), format.end());
    format.push_back(0);

    const auto run = [&](int room, wchar_t* buffer) {
        constexpr auto arguments = std::make_index_sequence<kMostItems>();
        const int result = texts ? formatTexts(buffer, room, format.data(), arguments)
                                 : formatIntegers(buffer, room, format.data(), arguments);
        require(result >= -1 && (result <= 0 || result < room));
        require(room == 0 || std::wmemchr(buffer, 0, static_cast<std::size_t>(room)));
        return result;
    };
    const auto buffer = exactly(std::wstring(static_cast<std::size_t>(capacity), L'#'));
    const int result = run(capacity, buffer.get());
    if (result <= 0)
        return 0;
    // A text that fits is the same with more room, and in just its own.
    const int room = result + 1 + 50 * (capacity & 1);
    const auto other = exactly(std::wstring(static_cast<std::size_t>(room), L'#'));
    require(run(room, other.get()) == result);
    require(std::wmemcmp(buffer.get(), other.get(), static_cast<std::size_t>(result) + 1) == 0);
    return 0;
}

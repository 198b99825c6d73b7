// Any double with any letter and precision: the output engine's integer path against the
// binary128 arithmetic that defines it, and the engine's text against both.
#include "TvFormat.h"
#include "format/QuadDecimal.h"
#include "format/RealText.h"

#include "FuzzInput.h"

#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cwchar>
#include <string>

using namespace TvFormatDetail;

namespace {

// Into a block of just the room that is promised.
template<class Write>
std::wstring written(Write write)
{
    const auto room = exactly(std::wstring(kRealTextRoom, L'#'));
    const int length = write(room.get());
    require(length >= 0 && length < kRealTextRoom && room[static_cast<std::size_t>(length)] == 0);
    return room.get();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Choices choices(data, size);
    const auto value = std::bit_cast<double>(choices.number(8));
    const std::uint8_t shape = choices.byte();
    const wchar_t letter = L"fegG"[shape & 3];
    const bool plus = (shape & 4) != 0;
    const auto precision = shape & 8 ? static_cast<int>(choices.number(4)) : choices.byte() % 40 - 4;
    if (!std::isfinite(value))
        return 0;
    const std::wstring expected =
        written([&](wchar_t* out) { return realTextQuad(out, value, letter, precision, plus); });
    require(written([&](wchar_t* out) { return realText(out, value, letter, precision, plus); }) == expected);

    if (precision < 0 || precision > 400)
        return 0;
    const std::wstring format =
        std::wstring(plus ? L"%+" : L"%") + L'.' + std::to_wstring(precision) + letter;
    const std::size_t room = expected.size() + 1;
    const auto text = exactly(std::wstring(room, L'#'));
    const int length =
        FormatUtil::outputStringWithFormat(text.get(), static_cast<int>(room), format.c_str(), value);
    require(length == static_cast<int>(expected.size()) && expected == text.get());
    const auto little = exactly(std::wstring(expected.size(), L'#'));
    require(FormatUtil::outputStringWithFormat(little.get(), static_cast<int>(expected.size()),
                                               format.c_str(), value) == -1);
    return 0;
}

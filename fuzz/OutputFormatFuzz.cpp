// Formats from outside for the output engine; the arguments are fixed.
#include "TvFormat.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cwchar>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size < 2)
        return 0;
    const int capacity = data[0] | (data[1] & 0x0F) << 8;
    std::vector<wchar_t> format;
    for (std::size_t i = 2; i < size; ++i) {
        if (data[i] == L's') // no argument is a text: one would be read from a number
            return 0;
        format.push_back(static_cast<wchar_t>(data[i]));
    }
    format.push_back(0);
    std::vector<wchar_t> buffer(static_cast<std::size_t>(capacity), L'#');

    const int result =
        FormatUtil::outputStringWithFormat(buffer.data(), capacity, format.data(), 1, -2, 3, 4, 5, 6, 7, 8, 9,
                                           10, 11, 12, 1.5, -2.5e10, 1e300, -0.0, 1e-300, 12.0, 66.5, 1e20);

    if (result < -1 || (result > 0 && result >= capacity))
        std::abort();
    if (capacity > 0 && !std::wmemchr(buffer.data(), 0, buffer.size()))
        std::abort();
    return 0;
}

// Formats and texts from outside for the input engine: a format, a 0, the text.
#include "TvScan.h"

#include <algorithm>
#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

namespace {

constexpr int kTargets = 24;

int scan(const wchar_t* text, const wchar_t* format, ...)
{
    va_list args;
    va_start(args, format);
    const int result = InputWithFormat(false, text, format, &args);
    va_end(args);
    return result;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::uint8_t* const end = data + size;
    const std::uint8_t* const zero = std::find(data, end, 0);
    std::vector<wchar_t> format(data, zero);
    std::vector<wchar_t> text(zero == end ? end : zero + 1, end);
    // One target a conversion, each as large as the whole text.
    if (std::count(format.begin(), format.end(), L'%') > kTargets || text.size() > 4096)
        return 0;
    format.push_back(0);
    text.push_back(0);
    alignas(8) static wchar_t t[kTargets][4100];
    const int result =
        scan(text.data(), format.data(), t[0], t[1], t[2], t[3], t[4], t[5], t[6], t[7], t[8], t[9], t[10],
             t[11], t[12], t[13], t[14], t[15], t[16], t[17], t[18], t[19], t[20], t[21], t[22], t[23]);
    if (result < -1 || result > kTargets)
        std::abort();
    return 0;
}

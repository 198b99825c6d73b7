// Formats and texts from outside for the input engine: a format, a 0, the text. The scan by
// pointer against the one through the character source.
#include "TvScan.h"
#include "format/ScanEngines.h"

#include "FuzzInput.h"

#include <algorithm>
#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

namespace {

constexpr int kTargets = 24;
constexpr std::size_t kLongest = 500; // of a text; a target holds as much

using Engine = int (*)(const wchar_t* text, const wchar_t* format, va_list* args);

int throughSource(const wchar_t* text, const wchar_t* format, va_list* args)
{
    return TvFormatDetail::scanSourceBuf(false, text, format, args);
}

int asCalled(const wchar_t* text, const wchar_t* format, va_list* args)
{
    return InputWithFormat(false, text, format, args);
}

int call(Engine engine, const wchar_t* text, const wchar_t* format, ...)
{
    va_list args;
    va_start(args, format);
    const int result = engine(text, format, &args);
    va_end(args);
    return result;
}

// What one scan left behind.
struct Outcome {
    int result;
    alignas(8) wchar_t stored[kTargets][kLongest + 4];
};

void scan(Engine engine, const std::wstring& text, const std::wstring& format, Outcome& outcome)
{
    std::memset(&outcome, 0x5A, sizeof outcome);
    auto& t = outcome.stored;
    outcome.result = call(engine, terminated(text).get(), terminated(format).get(), t[0], t[1], t[2], t[3],
                          t[4], t[5], t[6], t[7], t[8], t[9], t[10], t[11], t[12], t[13], t[14], t[15], t[16],
                          t[17], t[18], t[19], t[20], t[21], t[22], t[23]);
    require(outcome.result >= -1 && outcome.result <= kTargets);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::uint8_t* const end = data + size;
    const std::uint8_t* const zero = std::find(data, end, 0);
    const std::wstring format(data, zero);
    const std::wstring text(zero == end ? end : zero + 1, end);
    // One target a conversion, each as large as the whole text.
    if (std::count(format.begin(), format.end(), L'%') > kTargets || text.size() > kLongest)
        return 0;
    static Outcome expected, outcome;
    scan(throughSource, text, format, expected);
    for (const Engine engine : {Engine(TvFormatDetail::scanWideText), Engine(asCalled)}) {
        scan(engine, text, format, outcome);
        require(std::memcmp(&outcome, &expected, sizeof outcome) == 0);
    }
    return 0;
}

// Bytes as a text to read a number from, and as a value with a way to write it.
//
// What is read is compared with strtod, wide text with narrow; fast digits are compared with
// those of big integers, narrow layouts with wide ones, and the shortest digits read back.
#include "TvAlloc.h"
#include "TvGdImpl.h"
#include "TvNumber.h"

#include "FuzzInput.h"

#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace {

std::uint64_t bitsOf(double value) { return std::bit_cast<std::uint64_t>(value); }

// In vectors of exactly their size, so that the sanitizer sees every read behind them.
template<class Char>
double readText(const std::uint8_t* data, std::size_t size, std::size_t& used)
{
    std::vector<Char> text(data, data + size);
    text.push_back(0);
    text.shrink_to_fit();
    Char* end = nullptr;
    const double value = tvStrToD(text.data(), &end);
    used = static_cast<std::size_t>(end - text.data());
    require(used < text.size());
    return value;
}

void checkReading(const std::uint8_t* data, std::size_t size)
{
    std::size_t used = 0, usedWide = 0;
    const double value = readText<char>(data, size, used);
    require(bitsOf(readText<wchar_t>(data, size, usedWide)) == bitsOf(value));
    require(usedWide == used);
    // What was used is a number to the C library too.
    if (used == 0) {
        require(bitsOf(value) == 0);
    } else {
        const std::string number(data, data + used);
        char* end = nullptr;
        require(bitsOf(std::strtod(number.c_str(), &end)) == bitsOf(value));
        require(*end == '\0');
    }
}

std::string digitsOf(double value, int mode, int ndigits)
{
    int point = 0, sign = 0;
    char* end = nullptr;
    char* digits = TvGdImpl::dtoa(value, mode, ndigits, &point, &sign, &end);
    require(digits && *end == '\0' && static_cast<std::size_t>(end - digits) == std::strlen(digits));
    const std::string text = (sign ? "-" : "") + std::string(digits) + "@" + std::to_string(point);
    TvGdImpl::freedtoa(digits);
    return text;
}

void requireSame(const char* narrow, wchar_t* owned)
{
    const std::wstring wide = owned;
    _tvFree(owned);
    require(std::wstring(narrow, narrow + std::strlen(narrow)) == wide);
}

void checkWriting(double value, int count, int style)
{
    for (int mode = 2; mode <= 5; ++mode)
        require(digitsOf(value, mode, count) == digitsOf(value, mode + 4, count));

    char text[1024];
    tvFltToF(text, value, count);
    requireSame(text, tvFltToF(value, count));
    tvFltToE(text, value, count, 'e');
    requireSame(text, tvFltToE(value, count, 'e'));
    tvFltToG(text, value, count, 'e', style);
    requireSame(text, tvFltToG(value, count, 'e', style));

    if (!std::isfinite(value))
        return;
    int point, sign;
    char* end;
    char* digits = TvGdImpl::dtoa(value, 0, 0, &point, &sign, &end);
    CvtFormatter<char>::formatG(text, digits, static_cast<int>(end - digits), 17, point, sign, 'e', style);
    TvGdImpl::freedtoa(digits);
    require(bitsOf(tvStrToD(text, nullptr)) == bitsOf(value));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    checkReading(data, size);
    std::uint64_t bits;
    if (size >= sizeof bits + 2) {
        std::memcpy(&bits, data, sizeof bits);
        checkWriting(std::bit_cast<double>(bits), static_cast<std::int8_t>(data[8]), data[9] % 6 - 1);
    }
    return 0;
}

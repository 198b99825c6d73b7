// The digits of a double in every mode.
#include "TvGdImpl.h"

#include "numconv/DigitsByScaling.h"
#include "numconv/DigitsExact.h"
#include "numconv/DoubleBits.h"
#include "numconv/NumberKernels.h"
#include "numconv/TvDigitBlocks.h"

#include <cstring>

namespace {

constexpr int kPointOfWords = 9999;

// Zero, infinity or NaN.
[[gnu::noinline, gnu::cold]] char* fixedWord(std::uint64_t bits, int* point, char** rve)
{
    if (bits == 0) {
        *point = 1;
        return TvGdImpl::nrv_alloc("0", rve, 1);
    }
    *point = kPointOfWords;
    return TvGdImpl::nrv_alloc(bits == kInfinityBits ? "Infinity" : "NaN", rve, 0);
}

// The digits by big integers in every mode of exactDigits().
[[gnu::noinline, gnu::cold]] char* exactText(std::uint64_t bits, int mode, int ndigits, int* point,
                                             char** rve)
{
    DigitText exact;
    if (!exactDigits(bits, mode, ndigits, exact))
        return nullptr;
    char* text = TvGdImpl::rv_alloc(exact.count);
    if (text) {
        std::memcpy(text, exact.digits, static_cast<std::size_t>(exact.count));
        text[exact.count] = '\0';
        *point = exact.point;
        if (rve)
            *rve = text + exact.count;
    }
    return text;
}

// By one multiplication where that can tell, in modes 0 and 2 to 5.
[[gnu::always_inline]] inline char* scaledText(std::uint64_t bits, int mode, int ndigits, int* point,
                                               char** rve)
{
    char* text = TvDigitBlocks::take();
    if (!text)
        return nullptr;
    const int count =
        mode == 0 ? shortestScaledDigits(bits, text, point) : scaledDigits(bits, mode, ndigits, text, point);
    if (count < 0) [[unlikely]] {
        TvGdImpl::freedtoa(text);
        return exactText(bits, mode, ndigits, point, rve);
    }
    if (rve)
        *rve = text + count;
    return text;
}

[[gnu::noinline]] char* textInMode(std::uint64_t bits, int mode, int ndigits, int* point, char** rve)
{
    if (mode == 0)
        return scaledText(bits, 0, 0, point, rve);
    if (mode >= 6 && mode <= 9)
        return exactText(bits, mode - 4, ndigits, point, rve);
    if (mode == 1)
        return exactText(bits, mode, ndigits, point, rve);
    return scaledText(bits, static_cast<unsigned>(mode) > 5 ? 0 : mode, ndigits, point, rve);
}

} // namespace

char* plainText(double value, int mode, int ndigits, int* decpt, int* sign, char** rve)
{
    const std::uint64_t bits = bitsOf(value) & ~kSignBit;
    *sign = (bitsOf(value) & kSignBit) != 0;
    if (bits - 1 >= kInfinityBits - 1) [[unlikely]]
        return fixedWord(bits, decpt, rve);
    return textInMode(bits, mode, ndigits, decpt, rve);
}

char* plainShortestText(double value, int* decpt, char** rve)
{
    return scaledText(bitsOf(value) & ~kSignBit, 0, 0, decpt, rve);
}

char* TvGdImpl::dtoa(double value, int mode, int ndigits, int* decpt, int* sign, char** rve)
{
    if (mode == 0)
        return numberKernels().shortestText(value, mode, ndigits, decpt, sign, rve);
    return plainText(value, mode, ndigits, decpt, sign, rve);
}

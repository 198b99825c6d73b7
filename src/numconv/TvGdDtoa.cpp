// The digits of a double in every mode.
#include "TvGdImpl.h"

#include "numconv/DigitsByScaling.h"
#include "numconv/DigitsExact.h"
#include "numconv/DoubleBits.h"
#include "numconv/TvDigitBlocks.h"

#include <cstring>

namespace {

constexpr int kPointOfWords = 9999;

char* exactText(std::uint64_t bits, int mode, int ndigits, int* point, int* count)
{
    DigitText exact;
    if (!exactDigits(bits, mode, ndigits, exact))
        return nullptr;
    char* text = TvGdImpl::rv_alloc(exact.count);
    if (text) {
        std::memcpy(text, exact.digits, static_cast<std::size_t>(exact.count));
        *point = exact.point;
        *count = exact.count;
    }
    return text;
}

} // namespace

char* TvGdImpl::dtoa(double value, int mode, int ndigits, int* decpt, int* sign, char** rve)
{
    const std::uint64_t bits = bitsOf(value) & ~kSignBit;
    *sign = (bitsOf(value) & kSignBit) != 0;
    if (bits >= kInfinityBits) {
        *decpt = kPointOfWords;
        return nrv_alloc(bits == kInfinityBits ? "Infinity" : "NaN", rve, 0);
    }
    if (bits == 0) {
        *decpt = 1;
        return nrv_alloc("0", rve, 1);
    }
    const bool exactOnly = mode >= 6 && mode <= 9;
    if (exactOnly)
        mode -= 4;
    else if (static_cast<unsigned>(mode) > 5)
        mode = 0;

    int count = -1;
    char* text = nullptr;
    if (!exactOnly && mode != 1) {
        text = TvDigitBlocks::take();
        if (!text)
            return nullptr;
        count = scaledDigits(bits, mode, ndigits, text, decpt);
        if (count < 0)
            freedtoa(text);
    }
    if (count < 0) {
        text = exactText(bits, mode, ndigits, decpt, &count);
        if (!text)
            return nullptr;
    }
    text[count] = '\0';
    if (rve)
        *rve = text + count;
    return text;
}

#include "numconv/NumberKernels.h"

#include "runtime/CpuFeatures.h"

const NumberKernels g_plainNumberKernels = {"plain",        plainText,         plainGeneralLayout,
                                            plainFixedText, plainExponentText, plainGeneralText};

namespace {

const NumberKernels& choose() noexcept
{
    const NumberKernels& best = bestNumberKernels();
    g_numberKernels.store(&best, std::memory_order_relaxed);
    return best;
}

char* chooseForText(double value, int mode, int ndigits, int* decpt, int* sign, char** rve)
{
    return choose().shortestText(value, mode, ndigits, decpt, sign, rve);
}

void chooseForLayout(char* out, const char* digits, int n, int precision, int decpt, int expChar)
{
    choose().generalLayout(out, digits, n, precision, decpt, expChar);
}

bool chooseForFixed(char* out, double value, int precision)
{
    return choose().fixedText(out, value, precision);
}

bool chooseForExponent(char* out, double value, int precision, int expChar)
{
    return choose().exponentText(out, value, precision, expChar);
}

bool chooseForGeneral(char* out, double value, int precision, int expChar, int style)
{
    return choose().generalText(out, value, precision, expChar, style);
}

constexpr NumberKernels g_choosing = {
    "", chooseForText, chooseForLayout, chooseForFixed, chooseForExponent, chooseForGeneral};

} // namespace

constinit std::atomic<const NumberKernels*> g_numberKernels{&g_choosing};

const NumberKernels& bestNumberKernels() noexcept
{
#ifdef TV_NUMBERS_BY_AVX512
    if (CPU_FEATURE_ACTIVE(AVX512F) && CPU_FEATURE_ACTIVE(AVX512BW) && CPU_FEATURE_ACTIVE(AVX512VL) &&
        CPU_FEATURE_ACTIVE(AVX512DQ) && CPU_FEATURE_ACTIVE(AVX512_IFMA) && CPU_FEATURE_ACTIVE(AVX512_VBMI) &&
        CPU_FEATURE_ACTIVE(BMI1) && CPU_FEATURE_ACTIVE(BMI2) && CPU_FEATURE_ACTIVE(LZCNT))
        return g_avx512NumberKernels;
#endif
    return g_plainNumberKernels;
}

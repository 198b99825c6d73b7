// Which ways from doubles to text this machine runs.
//
// Every set gives the same results; the plain one is the reference.
#ifndef TV_NUMBER_KERNELS_H
#define TV_NUMBER_KERNELS_H

#include <atomic>

struct NumberKernels {
    const char* name;

    /// TvGdImpl::dtoa in mode 0.
    char* (*shortestText)(double value, int mode, int ndigits, int* decpt, int* sign, char** rve);

    /// CvtFormatter<char>::formatG in style 0 without a sign, 1 <= n <= precision <= 17, the last
    /// digit not 0.
    void (*generalLayout)(char* out, const char* digits, int n, int precision, int decpt, int expChar);

    /// As in LayoutByScaling.h.
    bool (*fixedText)(char* out, double value, int precision);
    bool (*exponentText)(char* out, double value, int precision, int expChar);
    bool (*generalText)(char* out, double value, int precision, int expChar, int style);
};

/// TvGdImpl::dtoa for every argument; and in mode 0 for finite values but 0, without the sign.
char* plainText(double value, int mode, int ndigits, int* decpt, int* sign, char** rve);
char* plainShortestText(double value, int* decpt, char** rve);

void plainGeneralLayout(char* out, const char* digits, int n, int precision, int decpt, int expChar);

bool plainFixedText(char* out, double value, int precision);
bool plainExponentText(char* out, double value, int precision, int expChar);
bool plainGeneralText(char* out, double value, int precision, int expChar, int style);

extern const NumberKernels g_plainNumberKernels;
#if defined(__x86_64__) && !defined(TV_PLAIN_NUMBERS)
#define TV_NUMBERS_BY_AVX512 1
extern const NumberKernels g_avx512NumberKernels;
#endif

/// The set in use; the first call through it chooses one.
[[gnu::visibility("hidden")]] extern std::atomic<const NumberKernels*> g_numberKernels;

/// The best set of this machine.
const NumberKernels& bestNumberKernels() noexcept;

inline const NumberKernels& numberKernels() { return *g_numberKernels.load(std::memory_order_relaxed); }

#endif

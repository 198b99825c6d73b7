// Numbers of a text as doubles, and doubles as text that reads back the same.
#include <TvOsBase.h>

#include <cerrno>
#include <cstdio>

int main()
{
    // One number after the other; what is no number ends the list.
    const char* text = "0.1 -12.5e1 1e400 end";
    for (;;) {
        char* end;
        errno = 0;
        const double value = tvStrToD(text, &end);
        if (end == text)
            break;
        char shown[32];
        tvFltToG(shown, value, 17, 'e', 0); // 17 digits always read back
        std::printf("%s%s\n", shown, errno == ERANGE ? " (out of range)" : "");
        text = end;
    }
    std::printf("stopped at \"%s\"\n", text);

    char fixed[32], exponent[32];
    tvFltToF(fixed, 1234.5678, 2);
    tvFltToE(exponent, 1234.5678, 3, 'e');
    std::printf("%s %s\n", fixed, exponent);

    // The fewest digits that read back: value = 0.d1d2... times 10 to the power `point`.
    int point, negative;
    char* digits = TvGdImpl::dtoa(-0.05, 0, 0, &point, &negative, nullptr);
    if (digits)
        std::printf("%s0.%s * 10^%d\n", negative ? "-" : "", digits, point);
    TvGdImpl::freedtoa(digits);
}

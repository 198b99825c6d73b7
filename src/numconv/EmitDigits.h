// Integers to decimal characters, sixteen at a time.
#ifndef TV_EMIT_DIGITS_H
#define TV_EMIT_DIGITS_H

#include "numconv/SixteenDigits.h"

#include <bit>
#include <cstdint>

constexpr std::uint64_t g_tens[20] = {1u,
                                      10u,
                                      100u,
                                      1000u,
                                      10000u,
                                      100000u,
                                      1000000u,
                                      10000000u,
                                      100000000u,
                                      1000000000u,
                                      10000000000u,
                                      100000000000u,
                                      1000000000000u,
                                      10000000000000u,
                                      100000000000000u,
                                      1000000000000000u,
                                      10000000000000000u,
                                      100000000000000000u,
                                      1000000000000000000u,
                                      10000000000000000000u};

/// Decimal digits of `n`, 1 for 0.
inline int decimalWidth(std::uint64_t n)
{
    const int guess = (std::bit_width(n | 1) * 1233) >> 12;
    return guess + (n >= g_tens[guess] ? 1 : 0) + (n == 0 ? 1 : 0);
}

/// Writes the digits of `n` != 0 without leading and trailing zeros; may write 17 bytes.
/// Answers how many digits count; `*width` receives the digits of `n`, zeros included.
inline int emitDigits(std::uint64_t n, char* out, int* width)
{
    *width = decimalWidth(n);
    if (*width > 17) {
        int count = *width;
        for (; n % 10 == 0; n /= 10)
            --count;
        for (int i = count; i-- > 0; n /= 10)
            out[i] = static_cast<char>('0' + n % 10);
        return count;
    }
    // Made 17 digits wide, as zeros on the right are cut anyway.
    n *= g_tens[17 - *width];
    const std::uint64_t first = n / g_tens[16];
    const SixteenDigits rest(n - first * g_tens[16]);
    out[0] = static_cast<char>('0' + first);
    rest.store(out + 1);
    return 1 + rest.significant();
}

#endif

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
    const auto guess = static_cast<int>((std::bit_width(n | 1) * 1233) >> 12);
    return guess + (n >= g_tens[guess] ? 1 : 0) + (n == 0 ? 1 : 0);
}

/// emitDigits for more than seventeen digits.
[[gnu::noinline, gnu::cold]] inline int emitDigitsOneByOne(std::uint64_t n, char* out, int width)
{
    int count = width;
    for (; n % 10 == 0; n /= 10)
        --count;
    out[count] = '\0';
    for (int i = count; i-- > 0; n /= 10)
        out[i] = static_cast<char>('0' + n % 10);
    return count;
}

/// Writes the sixteen digits of `sixteen` and the digit `last` without trailing zeros, terminated;
/// 18 bytes. Answers how many there are.
[[gnu::always_inline]] inline int emitSixteenAndOne(std::uint64_t sixteen, unsigned last, char* out)
{
    const SixteenDigits digits(sixteen);
    const int count = digits.significant(last != 0);
    digits.characters().putTerminated(out, count);
    out[16] = static_cast<char>(last + (last != 0 ? '0' : 0));
    out[17] = '\0';
    return count;
}

/// The same for the digits of `n`, which has seventeen.
[[gnu::always_inline]] inline int emitSeventeenDigits(std::uint64_t n, char* out)
{
    const std::uint64_t upper = n / 10;
    return emitSixteenAndOne(upper, static_cast<unsigned>(n - upper * 10), out);
}

/// Writes the digits of `n` != 0 without leading and trailing zeros, terminated; may write
/// 19 bytes. Answers how many digits count; `*width` receives the digits of `n`, zeros
/// included.
[[gnu::always_inline]] inline int emitDigits(std::uint64_t n, char* out, int* width)
{
    *width = decimalWidth(n);
    if (*width > 17) [[unlikely]]
        return emitDigitsOneByOne(n, out, *width);
    // Zeros on the right are cut anyway.
    return emitSeventeenDigits(n * g_tens[17 - *width], out);
}

#endif

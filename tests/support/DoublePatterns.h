// DoublePatterns.h - the doubles where conversions go wrong first.
#ifndef TV_TEST_DOUBLE_PATTERNS_H
#define TV_TEST_DOUBLE_PATTERNS_H

#include <bit>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

/// Every power of two and of ten with both neighbours, the bounds of the subnormal range,
/// the neighbourhood of 2^53, the largest doubles: finite, positive, not 0.
inline std::vector<double> edgeDoubles()
{
    std::vector<std::uint64_t> patterns;
    const auto around = [&patterns](std::uint64_t bits, std::uint64_t reach) {
        for (std::uint64_t b = bits > reach ? bits - reach : 1; b <= bits + reach; ++b) {
            if (b < std::uint64_t{0x7FF} << 52)
                patterns.push_back(b);
        }
    };
    for (std::uint64_t field = 0; field < 0x7FF; ++field)
        around(field << 52, 1);
    for (int bit = 0; bit < 52; ++bit)
        around(std::uint64_t{1} << bit, 1);
    for (int p = -323; p <= 308; ++p)
        around(std::bit_cast<std::uint64_t>(std::strtod(("1e" + std::to_string(p)).c_str(), nullptr)), 1);
    around(std::bit_cast<std::uint64_t>(0x1p53), 40);
    around(std::uint64_t{1} << 52, 20);
    around((std::uint64_t{0x7FF} << 52) - 20, 19);
    std::vector<double> values;
    for (const std::uint64_t bits : patterns)
        values.push_back(std::bit_cast<double>(bits));
    return values;
}

#endif

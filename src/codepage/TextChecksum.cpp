// TextChecksum.cpp - weighted sums over text.
#include "TvCharMapper.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

double TvCharMapper::getCheckSumUnicode(const void* p, int n)
{
    double sum = 0.0;
    for (int i = 0; p && i < n; ++i) {
        std::uint32_t value;
        std::memcpy(&value, static_cast<const char*>(p) + static_cast<std::size_t>(i) * sizeof value,
                    sizeof value);
        sum += (static_cast<std::uint32_t>(i) + 1) * value;
    }
    return sum;
}

double TvCharMapper::getCheckSumAnsi(const void* p, int n)
{
    double sum = 0.0;
    for (int i = 0; p && i < n; ++i) {
        // The product is formed unsigned, where it wraps, and read as signed.
        const auto value = static_cast<std::uint32_t>(static_cast<const signed char*>(p)[i]);
        sum += static_cast<std::int32_t>((static_cast<std::uint32_t>(i) + 1) * value);
    }
    return sum;
}

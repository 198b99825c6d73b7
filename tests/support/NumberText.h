// NumberText.h - digits of a double as a test compares them.
#ifndef TV_TEST_NUMBER_TEXT_H
#define TV_TEST_NUMBER_TEXT_H

#include "TvGdImpl.h"

#include "ExactDecimal.h"

#include <bit>
#include <cstdint>
#include <cstring>
#include <random>
#include <string>

/// "digits@point", with a minus in front when the sign was set.
inline std::string dtoaText(double value, int mode, int ndigits)
{
    int point = 0, sign = 0;
    char* end = nullptr;
    char* digits = TvGdImpl::dtoa(value, mode, ndigits, &point, &sign, &end);
    if (!digits)
        return "null";
    std::string text = (sign ? "-" : "") + std::string(digits) + "@" + std::to_string(point);
    if (end != digits + std::strlen(digits))
        text += " wrong end";
    TvGdImpl::freedtoa(digits);
    return text;
}

inline std::string textOf(const ExactDecimal& x) { return x.digits + "@" + std::to_string(x.point); }

inline std::uint64_t bitsOfDouble(double value) { return std::bit_cast<std::uint64_t>(value); }
inline double doubleOfBits(std::uint64_t bits) { return std::bit_cast<double>(bits); }

/// Finite positive values, not 0, of many kinds in turn: all bit patterns, integers,
/// short decimals, short binary fractions, patterns with few bits set, subnormals.
class RandomDoubles {
public:
    explicit RandomDoubles(std::uint64_t seed) : m_random(seed) {}

    double next()
    {
        for (;;) {
            const double value = candidate();
            const std::uint64_t bits = bitsOfDouble(value) & ~(std::uint64_t{1} << 63);
            if (bits != 0 && bits < std::uint64_t{0x7FF} << 52)
                return doubleOfBits(bits);
        }
    }

    std::uint64_t bits() { return m_random(); }

private:
    double candidate()
    {
        const std::uint64_t b = m_random();
        switch (m_kind++ & 7) {
        case 0:
            return static_cast<double>(b >> (b & 63));
        case 1:
            return static_cast<double>(static_cast<std::int64_t>(b) >> 34) / 1e4;
        case 2:
            return static_cast<double>(b >> 44) * doubleOfBits((1023 - (b & 63)) << 52);
        case 3:
            return doubleOfBits((b & (std::uint64_t{0x7FF} << 52)) + (b & 7) - 4);
        case 4:
            return doubleOfBits(b >> (12 + (b & 31)));
        default:
            return doubleOfBits(b);
        }
    }

    std::mt19937_64 m_random;
    unsigned m_kind = 0;
};

#endif

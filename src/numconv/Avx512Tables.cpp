#include "numconv/Avx512Tables.h"

#include "numconv/NumberKernels.h"

#ifdef TV_NUMBERS_BY_AVX512

namespace {

constexpr Avx512Tables makeTables()
{
    Avx512Tables t{};
    std::uint64_t power = 100000000;
    for (int i = 0; i < 8; ++i, power /= 10) {
        t.tenths[i] = (std::uint64_t{1} << 52) / power;
        t.ten[i] = 10;
    }
    for (int i = 0; i < 32; ++i)
        t.zeros[i] = t.characters[i] = '0';
    t.characters[t.kMostDigits] = '.';
    t.behindHead[1] = '.';
    t.behindHead[2] = '0';

    for (unsigned char& from : t.block)
        from = 2; // a byte that is 0 in every vector of digits
    for (int i = 0; i < 8; ++i) {
        t.block[t.kTextInBlock + i] = static_cast<unsigned char>(8 * i);
        t.block[t.kTextInBlock + 8 + i] = static_cast<unsigned char>(64 + 8 * i);
    }
    t.block[t.kTextInBlock + 16] = 64 + 1;

    constexpr unsigned char kPoint = Avx512Tables::kMostDigits;
    constexpr unsigned char kZero = kPoint + 1;
    for (int point = t.kLowestPoint; point <= t.kMostDigits; ++point) {
        unsigned char* const row = t.layout[point - t.kLowestPoint];
        int at = 0;
        if (point < 1) {
            row[at++] = kZero;
            row[at++] = kPoint;
            for (int i = point; i < 0; ++i)
                row[at++] = kZero;
        }
        for (int digit = 0; digit < t.kMostDigits; ++digit) {
            if (digit == point && point > 0)
                row[at++] = kPoint;
            row[at++] = static_cast<unsigned char>(digit);
        }
    }
    return t;
}

} // namespace

constinit const Avx512Tables g_avx512Tables = makeTables();

#endif

// What the number kernels for 512-bit vectors load. The values stand in a file of their own, so
// that each is one load and not made in other registers first.
#ifndef TV_AVX512_TABLES_H
#define TV_AVX512_TABLES_H

#include <cstdint>

struct Avx512Tables {
    static constexpr int kTextInBlock = 4;
    static constexpr int kMostDigits = 17;
    static constexpr int kLowestPoint = -3; // of general text without an exponent

    /// 2^52 / 10^8, ... 2^52 / 10, rounded down.
    alignas(64) std::uint64_t tenths[8];
    alignas(64) std::uint64_t ten[8];

    /// Where the bytes of a block with text stand in the two vectors of digits: four zeros, the
    /// seventeen digits, zeros. From its second byte on: the same without the first digit, which
    /// must be 0.
    alignas(64) unsigned char block[64];

    /// For every place of the point where the characters of general text stand: digits are the
    /// bytes 0 to 16, then come a point and a 0.
    alignas(64) unsigned char layout[kMostDigits - kLowestPoint + 1][32];

    /// What stands behind sixteen characters of general text.
    alignas(16) char behindHead[16];

    /// Zeros, and zeros with a point behind seventeen of them.
    alignas(32) char zeros[32];
    alignas(32) char characters[32];
};

[[gnu::visibility("hidden")]] extern const Avx512Tables g_avx512Tables;

#endif

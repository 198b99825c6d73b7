// Masks of the first bytes of a vector.
#ifndef TV_BYTE_MASKS_H
#define TV_BYTE_MASKS_H

#include <emmintrin.h>

/// 32 bytes with all bits, 32 without any.
struct ByteMasks {
    unsigned char bytes[64];
};

constexpr ByteMasks makeByteMasks()
{
    ByteMasks masks{};
    for (int i = 0; i < 32; ++i)
        masks.bytes[i] = 0xFF;
    return masks;
}

alignas(64) inline constexpr ByteMasks g_byteMasks = makeByteMasks();

/// All bits in the first `count` <= 32 bytes, as far as there are as many.
inline __m128i firstBytes(int count)
{
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(g_byteMasks.bytes + 32 - count));
}

#endif

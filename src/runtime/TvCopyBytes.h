// TvCopyBytes.h - memmove for pieces that are mostly small, without a call for those.
#ifndef TV_COPY_BYTES_H
#define TV_COPY_BYTES_H

#include <cstddef>
#include <cstring>

namespace TvCopyDetail {

template<std::size_t Size>
struct Block {
    unsigned char bytes[Size];
};

// The first and the last `Size` bytes of `count`, which is `Size` to twice `Size`. Both are
// loaded before either is stored.
template<std::size_t Size>
inline void moveEnds(unsigned char* to, const unsigned char* from, std::size_t count)
{
    Block<Size> head;
    Block<Size> tail;
    std::memcpy(&head, from, Size); // a constant size is a few moves, not a call
    std::memcpy(&tail, from + count - Size, Size);
    std::memcpy(to, &head, Size);
    std::memcpy(to + count - Size, &tail, Size);
}

// The same for 32 to 64 bytes, by four pieces of 16: larger ones would pass through the stack.
inline void moveLongEnds(unsigned char* to, const unsigned char* from, std::size_t count)
{
    Block<16> pieces[4];
    std::memcpy(&pieces[0], from, 16);
    std::memcpy(&pieces[1], from + 16, 16);
    std::memcpy(&pieces[2], from + count - 32, 16);
    std::memcpy(&pieces[3], from + count - 16, 16);
    std::memcpy(to, &pieces[0], 16);
    std::memcpy(to + 16, &pieces[1], 16);
    std::memcpy(to + count - 32, &pieces[2], 16);
    std::memcpy(to + count - 16, &pieces[3], 16);
}

} // namespace TvCopyDetail

/// Copies `count` bytes between areas that may overlap.
inline void tvCopyBytes(unsigned char* to, const unsigned char* from, std::size_t count)
{
    using TvCopyDetail::moveEnds;
    if (count > 64)
        std::memmove(to, from, count);
    else if (count >= 32)
        TvCopyDetail::moveLongEnds(to, from, count);
    else if (count >= 16)
        moveEnds<16>(to, from, count);
    else if (count >= 8)
        moveEnds<8>(to, from, count);
    else if (count >= 4)
        moveEnds<4>(to, from, count);
    else if (count >= 2)
        moveEnds<2>(to, from, count);
    else if (count == 1)
        *to = *from;
}

#endif

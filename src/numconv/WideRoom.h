// WideRoom.h - characters that an allocated number takes, its terminator included.
#ifndef TV_NUMCONV_WIDE_ROOM_H
#define TV_NUMCONV_WIDE_ROOM_H

#include <algorithm>
#include <cstdint>
#include <cstdlib>

namespace TvDetail {

// Enough for a finite value of `n` digits from tvFcvt (F) or tvEcvt (E and G), their point
// behind `decpt` digits, and a precision that is not negative.

inline std::int64_t roomOfF(int n, int precision, int decpt)
{
    return std::int64_t{n} + 1 + precision + 1 + std::abs(decpt) + 1;
}

inline std::int64_t roomOfE(int n, int precision) { return std::int64_t{n} + 2 + precision + 6; }

// The sign is counted by itself: "-1.0e+000", one digit at precision 0, leaves no slack.
inline std::int64_t roomOfG(int n, int precision, int decpt)
{
    return 1 + std::int64_t{precision} + (std::int64_t{n} + 2) + std::max(5, decpt) + 1;
}

} // namespace TvDetail

#endif

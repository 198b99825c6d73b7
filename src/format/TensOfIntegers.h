// TensOfIntegers.h - powers of ten as integers.
#ifndef TV_FORMAT_TENS_OF_INTEGERS_H
#define TV_FORMAT_TENS_OF_INTEGERS_H

#include <cstdint>

namespace TvFormatDetail {

/// 10^0 to 10^16.
inline constexpr std::uint64_t kTens[] = {1,
                                          10,
                                          100,
                                          1000,
                                          10000,
                                          100000,
                                          1000000,
                                          10000000,
                                          100000000,
                                          1000000000,
                                          10000000000,
                                          100000000000,
                                          1000000000000,
                                          10000000000000,
                                          100000000000000,
                                          1000000000000000,
                                          10000000000000000};

} // namespace TvFormatDetail

#endif

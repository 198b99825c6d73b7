// The unit sizes of the pools, and what is derived from them.
#include "runtime/TvHeapFast.h"

template<>
constexpr short TvPoolConfigurator<34>::s_unitSizeOfPools[35] = {
    0,   512, 1024, 2048, 4096, 256, 240, 224, 208, 200, 192, 184, 176, 168, 160, 152, 144, 136,
    128, 120, 112,  104,  96,   88,  80,  72,  64,  56,  48,  40,  32,  24,  16,  8,   0};

template<>
const unsigned char TvPoolConfigurator<34>::s_poolIndexOfSize[257] = {
    0,                              // 0
    33, 33, 33, 33, 33, 33, 33, 33, // 1
    32, 32, 32, 32, 32, 32, 32, 32, // 9
    31, 31, 31, 31, 31, 31, 31, 31, // 17
    30, 30, 30, 30, 30, 30, 30, 30, // 25
    29, 29, 29, 29, 29, 29, 29, 29, // 33
    28, 28, 28, 28, 28, 28, 28, 28, // 41
    27, 27, 27, 27, 27, 27, 27, 27, // 49
    26, 26, 26, 26, 26, 26, 26, 26, // 57
    25, 25, 25, 25, 25, 25, 25, 25, // 65
    24, 24, 24, 24, 24, 24, 24, 24, // 73
    23, 23, 23, 23, 23, 23, 23, 23, // 81
    22, 22, 22, 22, 22, 22, 22, 22, // 89
    21, 21, 21, 21, 21, 21, 21, 21, // 97
    20, 20, 20, 20, 20, 20, 20, 20, // 105
    19, 19, 19, 19, 19, 19, 19, 19, // 113
    18, 18, 18, 18, 18, 18, 18, 18, // 121
    17, 17, 17, 17, 17, 17, 17, 17, // 129
    16, 16, 16, 16, 16, 16, 16, 16, // 137
    15, 15, 15, 15, 15, 15, 15, 15, // 145
    14, 14, 14, 14, 14, 14, 14, 14, // 153
    13, 13, 13, 13, 13, 13, 13, 13, // 161
    12, 12, 12, 12, 12, 12, 12, 12, // 169
    11, 11, 11, 11, 11, 11, 11, 11, // 177
    10, 10, 10, 10, 10, 10, 10, 10, // 185
    9,  9,  9,  9,  9,  9,  9,  9,  // 193
    8,  8,  8,  8,  8,  8,  8,  8,  // 201
    7,  7,  7,  7,  7,  7,  7,  7,  // 209
    7,  7,  7,  7,  7,  7,  7,  7,  // 217
    6,  6,  6,  6,  6,  6,  6,  6,  // 225
    6,  6,  6,  6,  6,  6,  6,  6,  // 233
    5,  5,  5,  5,  5,  5,  5,  5,  // 241
    5,  5,  5,  5,  5,  5,  5,  5,  // 249
};

namespace TvHeapInternals {
namespace {

constexpr std::array<UnitShape, 256> unitShapes()
{
    std::array<UnitShape, 256> shapes{};
    for (std::size_t i = 0; i <= kPools; ++i) {
        const int size = TvPoolConfigurator<kPools>::s_unitSizeOfPools[i];
        if (size != 0 && size <= static_cast<int>(kMaxSmallSize))
            shapes[i] = {static_cast<std::uint16_t>(size),
                         static_cast<std::uint16_t>(static_cast<int>(Heap::kBlockSize) / size)};
    }
    return shapes;
}

} // namespace

constexpr std::array<UnitShape, 256> kUnitShapes = unitShapes();

} // namespace TvHeapInternals

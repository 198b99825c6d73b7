#include "runtime/TvHeapFast.h"

namespace TvHeapInternals {
namespace {

// Pools 5 to 33 serve requests of up to 256 bytes.
constexpr int kUnitSizes[kPools + 1] = {0,   0,   0,   0,   0,   256, 240, 224, 208, 200, 192, 184,
                                        176, 168, 160, 152, 144, 136, 128, 120, 112, 104, 96,  88,
                                        80,  72,  64,  56,  48,  40,  32,  24,  16,  8,   0};

constexpr std::array<UnitShape, kPools + 1> unitShapes()
{
    std::array<UnitShape, kPools + 1> shapes{};
    for (std::size_t i = 0; i < shapes.size(); ++i)
        if (kUnitSizes[i] != 0)
            shapes[i] = {static_cast<std::uint16_t>(kUnitSizes[i]),
                         static_cast<std::uint16_t>(static_cast<int>(Heap::kBlockSize) / kUnitSizes[i])};
    return shapes;
}

} // namespace

constexpr std::array<UnitShape, kPools + 1> kUnitShapes = unitShapes();

void threadFast(Block& block, void* unit, std::size_t unitSize) { pushUnit(block, unit, unitSize); }

} // namespace TvHeapInternals

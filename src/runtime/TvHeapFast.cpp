#include "runtime/TvHeapFast.h"

namespace TvHeapInternals {

void threadFast(Block& block, void* unit, std::size_t unitSize) { pushUnit(block, unit, unitSize); }

} // namespace TvHeapInternals

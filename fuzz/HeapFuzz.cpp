// Bytes as a program for the pooled heap, six a step: the operation, how often to repeat it,
// two arguments. The whole heap is checked after each step, and at the end nothing is in use.
#include "FuzzInput.h"
#include "HeapTraffic.h"
#include "PooledHeap.h"
#include "runtime/TvHeapCheck.h"

#include <cstddef>
#include <cstdint>

namespace {

constexpr std::size_t kBytesPerStep = 6;

unsigned word(const std::uint8_t* bytes) { return bytes[0] | static_cast<unsigned>(bytes[1]) << 8; }

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    requireNothing(runPageSearchDown() ? nullptr : "no reserved range in this process");
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const long before = pooledUnitsInUse();
    {
        HeapTraffic traffic;
        for (; size >= kBytesPerStep; data += kBytesPerStep, size -= kBytesPerStep) {
            for (unsigned i = 0; i <= data[1]; ++i)
                requireNothing(traffic.step(data[0], word(data + 2), word(data + 4) + i));
            requireNothing(TvHeapInternals::checkHeap(g_tvGlobalHeap));
        }
    }
    requireNothing(TvHeapInternals::checkHeap(g_tvGlobalHeap));
    requireNothing(pooledUnitsInUse() == before ? nullptr : "units in use that nobody owns");
    return 0;
}

// Any bytes as operations on a few vectors that share elements, beside std::vector. Byte 0
// chooses the kind of vector.
#include "FuzzInput.h"
#include "VectorTraffic.h"
#include "VectorValues.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace {

template<class Vector, class T, class Policy = TvVectorDefaultGrowPolicy>
void run(Choices choices)
{
    const int before = gEmptyVectorData.refCount;
    {
        VectorTraffic<Vector, T, Policy> traffic([&](unsigned int n) { return choices.below(n); });
        while (!choices.isEmpty())
            requireNothing(traffic.step());
    }
    require(gEmptyVectorData.refCount == before);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Choices choices(data, size);
    switch (choices.below(4)) {
    case 0:
        run<TvVector<int>, int>(choices);
        break;
    case 1:
        run<TvVector<std::string>, std::string>(choices);
        break;
    case 2:
        run<TvVector<std::string, TvDelegateMemAllocator<std::string>>, std::string>(choices);
        break;
    default:
        run<ByteVector, unsigned char, TvVectorFlatMemBufGrowPolicy>(choices);
    }
    return 0;
}

// Any bytes as operations on a memory stream, beside a plain model.
#include "FuzzInput.h"
#include "MemoryTraffic.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Choices choices(data, size);
    const std::uint32_t capacity = choices.below(100);
    MemoryTraffic traffic(StreamChoices([&](std::uint32_t n) { return choices.below(n); }), capacity);
    while (!choices.isEmpty())
        requireNothing(traffic.step());
    return 0;
}

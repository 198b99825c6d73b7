// Any bytes as operations on a few strings that share texts, beside a plain model.
#include "FuzzInput.h"
#include "StringModel.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Choices choices(data, size);
    StringTraffic traffic([&](unsigned int n) { return choices.below(n); });
    while (!choices.isEmpty())
        requireNothing(traffic.step());
    return 0;
}

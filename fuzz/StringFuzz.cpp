// Any bytes as operations on a few strings that share texts, beside a plain model.
#include "StringModel.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::uint8_t* const end = data + size;
    // One byte for a small choice, two for a large one; 0 when there are no more.
    StringTraffic traffic([&data, end](unsigned int n) {
        unsigned int value = data < end ? *data++ : 0u;
        if (n > 256)
            value = value << 8 | (data < end ? *data++ : 0u);
        return value % n;
    });
    while (data < end)
        if (traffic.step())
            std::abort();
    return 0;
}

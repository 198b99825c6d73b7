// Random operations on a few vectors that share elements, beside std::vector.
#include "VectorTraffic.h"
#include "TestScale.h"
#include "VectorValues.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace {

template<class Vector, class T, class Policy = TvVectorDefaultGrowPolicy>
void runTraffic()
{
    const std::uint64_t seed = testSeed(20260121);
    SCOPED_TRACE("TV_TEST_SEED=" + std::to_string(seed));
    const int before = gEmptyVectorData.refCount;
    {
        std::mt19937_64 random(seed);
        VectorTraffic<Vector, T, Policy> traffic(
            [&random](unsigned int n) { return static_cast<unsigned int>(random() % n); });
        const long steps = scaled(100000);
        for (long step = 0; step < steps; ++step)
            ASSERT_STREQ(traffic.step(), nullptr) << "in step " << step;
    }
    EXPECT_EQ(gEmptyVectorData.refCount, before);
}

TEST(VectorTraffic, IntsAgreeWithTheModel) { runTraffic<TvVector<int>, int>(); }

TEST(VectorTraffic, WideCharactersAgreeWithTheModel) { runTraffic<TvVector<wchar_t>, wchar_t>(); }

TEST(VectorTraffic, StringsAgreeWithTheModel) { runTraffic<TvVector<std::string>, std::string>(); }

TEST(VectorTraffic, StringsInRawMemoryAgreeWithTheModel)
{
    runTraffic<TvVector<std::string, TvDelegateMemAllocator<std::string>>, std::string>();
}

TEST(VectorTraffic, BytesOfStreamsAgreeWithTheModel)
{
    runTraffic<ByteVector, unsigned char, TvVectorFlatMemBufGrowPolicy>();
}

} // namespace

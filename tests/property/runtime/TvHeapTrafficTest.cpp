// Random traffic against a plain model of who owns what; the checker walks the whole heap
// all the while.
#include "HeapTraffic.h"
#include "PooledHeap.h"
#include "TestScale.h"
#include "runtime/TvHeapCheck.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace {

void run(std::uint64_t seed, long steps, int bias)
{
    SCOPED_TRACE(::testing::Message() << "TV_TEST_SEED=" << seed);
    std::mt19937_64 random(seed);
    HeapTraffic traffic;
    for (long i = 0; i < steps; ++i) {
        const std::uint64_t bits = random();
        // Waves: phases that mostly take and phases that mostly give.
        const int wave = ((i / 2000) % 2 == 0 ? -bias : bias);
        const int what = std::clamp(static_cast<int>(bits & 0xFF) + wave, 0, 255);
        ASSERT_STREQ(traffic.step(static_cast<unsigned char>(what), static_cast<unsigned>(bits >> 8) & 0xFFFF,
                                  static_cast<unsigned>(bits >> 24) & 0xFFFF),
                     nullptr)
            << "step " << i;
        if (i % 500 == 0) {
            ASSERT_STREQ(TvHeapInternals::checkHeap(g_tvGlobalHeap), nullptr) << "step " << i;
        }
    }
}

class TvHeapTraffic : public ::testing::TestWithParam<int> {};

TEST_P(TvHeapTraffic, ListsCountsAndContentsHold)
{
    runPageSearchDown();
    const long before = pooledUnitsInUse();
    run(testSeed(0xC0FFEEu + static_cast<unsigned>(GetParam())), scaled(60000), GetParam() * 40);
    EXPECT_EQ(pooledUnitsInUse(), before);
    EXPECT_STREQ(TvHeapInternals::checkHeap(g_tvGlobalHeap), nullptr);
}

INSTANTIATE_TEST_SUITE_P(Waves, TvHeapTraffic, ::testing::Values(0, 1, 2));

} // namespace

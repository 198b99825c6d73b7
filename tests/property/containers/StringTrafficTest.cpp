// Random operations on a few strings that share texts, beside a plain model.
#include "StringModel.h"
#include "TestScale.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace {

TEST(StringTraffic, StringsAgreeWithTheModel)
{
    const std::uint64_t seed = testSeed(20260122);
    SCOPED_TRACE("TV_TEST_SEED=" + std::to_string(seed));
    const std::uint32_t before = TvStrHeaderA::sm_EmptyStrA.refCount;
    {
        std::mt19937_64 random(seed);
        StringTraffic traffic([&random](unsigned int n) { return static_cast<unsigned int>(random() % n); });
        const long steps = scaled(100000);
        for (long step = 0; step < steps; ++step)
            ASSERT_STREQ(traffic.step(), nullptr) << "in step " << step;
    }
    EXPECT_EQ(TvStrHeaderA::sm_EmptyStrA.refCount, before);
}

} // namespace
